// SPDX-License-Identifier: MIT
#include "LevelActions.h"

#include "Core/Map.h"
#include "Core/Set.h"
#include "Editor/EditorEngine.h"
#include "Editor/ScopedTransaction.h"
#include "Engine/StaticMeshComponent.h"
#include "LevelCommands.h"
#include "SceneIO/SceneSpace.h"
#include "SelectionQueries.h"
#include "Slate/SlateNotificationManager.h"
#include "Slate/UICommandList.h"

using namespace SelectionQueries;

namespace
{
constexpr const TCHAR* ContextName = TEXT("LevelEditor");

/// How far a place may be off, as a share of its largest number, to count as kept.
constexpr double PlaceTolerance = 1e-6;

bool CanEdit()
{
	return EditedWorld() && !GEditor->PlayWorld;
}

bool HasSelection()
{
	return CanEdit() && !SelectedActors().IsEmpty();
}

bool CanDetach()
{
	if (!CanEdit())
	{
		return false;
	}
	for (const AActor* Actor : SelectedActors())
	{
		if (ParentOf(*Actor))
		{
			return true;
		}
	}
	return false;
}

void Redraw()
{
	GEditor->UpdatePivotLocationForSelection();
	GEditor->RedrawLevelEditingViewports(true);
}

/// Whether a component may be attached to another one without moving.
bool KeepsPlaceBelow(const USceneComponent& Component, const USceneComponent& Parent)
{
	const FTransform& World = Component.GetComponentTransform();
	const FTransform& Below = Parent.GetComponentTransform();
	const FMatrix Again = World.GetRelativeTransform(Below).ToMatrixWithScale() * Below.ToMatrixWithScale();
	return RelativeDifference(Again, World.ToMatrixWithScale()) <= PlaceTolerance;
}

FString UniqueLabel(const FString& Label, TSet<FString>& Taken)
{
	FString Stem = Label;
	const int32 Underscore = int32(Label.ToUtf8().find_last_of('_'));
	int32 Number = 0;
	if (Underscore > 0 && LexFromString(Number, *Label.Right(Label.Len() - Underscore - 1)))
	{
		Stem = Label.Left(Underscore);
	}
	FString Unique;
	Number = Number < 2 ? 2 : Number + 1;
	do
	{
		Unique = FString::Printf(TEXT("%s_%d"), *Stem, Number++);
	} while (Taken.Contains(Unique));
	Taken.Add(Unique);
	return Unique;
}
} // namespace

void LevelActions::Map(FUICommandList& Commands, TFunction<void()> Focus)
{
	const FLevelCommands& Set = FLevelCommands::Get();
	const auto MapTo = [&](const TSharedPtr<FUICommandInfo>& Command, void (*Run)(), bool (*Can)())
	{ Commands.MapAction(Command, FExecuteAction::CreateStatic(Run), FCanExecuteAction::CreateStatic(Can)); };
	const auto Step = [&](const TSharedPtr<FUICommandInfo>& Command, bool bUndo)
	{
		Commands.MapAction(Command,
			FExecuteAction::CreateLambda(
				[bUndo] { static_cast<void>(bUndo ? GEditor->UndoTransaction() : GEditor->RedoTransaction()); }),
			FCanExecuteAction::CreateLambda(
				[bUndo] {
					return CanEdit() && GEditor->Trans &&
						   (bUndo ? GEditor->Trans->CanUndo() : GEditor->Trans->CanRedo());
				}),
			EUIActionRepeatMode::RepeatEnabled);
	};
	Step(Set.Undo, true);
	Step(Set.Redo, false);
	MapTo(Set.SelectAll, &SelectAll, &CanEdit);
	MapTo(Set.SelectNone, &SelectNone, &CanEdit);
	MapTo(Set.SelectSameMesh, &SelectSameMesh, &HasSelection);
	MapTo(Set.SelectChildren, &SelectChildren, &HasSelection);
	Commands.MapAction(Set.FocusSelection, FExecuteAction::CreateLambda([Focus] { Focus(); }),
		FCanExecuteAction::CreateStatic(&CanEdit));
	MapTo(Set.Delete, &DeleteSelected, &HasSelection);
	MapTo(Set.Duplicate, &DuplicateSelected, &HasSelection);
	MapTo(Set.AttachToLast, &AttachSelectedToLast, [] { return CanEdit() && SelectedActors().Num() > 1; });
	MapTo(
		Set.Detach, [] { Detach(SelectedActors()); }, &CanDetach);
}

void LevelActions::Unmap(FUICommandList& Commands)
{
	for (const TSharedRef<FUICommandInfo>& Command :
		FInputBindingManager::Get().GetCommandInfosFromContext(FLevelCommands::Get().GetContextName()))
	{
		Commands.UnmapAction(Command);
	}
}

void LevelActions::SelectAll()
{
	Select(EditedWorld()->GetActors());
}

void LevelActions::SelectNone()
{
	Select({});
}

void LevelActions::SelectSameMesh()
{
	TSet<const UStaticMesh*> Meshes;
	TArray<AActor*> Selection = SelectedActors();
	for (const AActor* Actor : Selection)
	{
		Meshes.Add(MeshOf(*Actor));
	}
	for (AActor* Actor : EditedWorld()->GetActors())
	{
		const UStaticMesh* const Mesh = MeshOf(*Actor);
		if (Mesh && Meshes.Contains(Mesh) && !GEditor->GetSelectedActors()->IsSelected(Actor))
		{
			Selection.Add(Actor);
		}
	}
	Select(Selection);
}

void LevelActions::SelectChildren()
{
	TArray<AActor*> Selection = SelectedActors();
	TSet<const AActor*> Known;
	for (const AActor* Actor : Selection)
	{
		Known.Add(Actor);
	}
	for (int32 Index = 0; Index < Selection.Num(); ++Index)
	{
		for (AActor* Child : ChildrenOf(*Selection[Index]))
		{
			if (!Known.Contains(Child))
			{
				Known.Add(Child);
				Selection.Add(Child);
			}
		}
	}
	Select(Selection);
}

void LevelActions::DeleteSelected()
{
	const TArray<AActor*> Doomed = SelectedActors();
	if (Doomed.IsEmpty())
	{
		return;
	}
	{
		const FScopedTransaction Transaction(
			ContextName, NSLOCTEXT("TarvinEditor", "DeleteActors", "Delete Actors"), Doomed[0]);
		GEditor->SelectNone();
		for (AActor* Actor : Doomed)
		{
			EditedWorld()->DestroyActor(Actor);
		}
	}
	Redraw();
}

void LevelActions::DuplicateSelected()
{
	const TArray<AActor*> Originals = SelectedActors();
	if (Originals.IsEmpty())
	{
		return;
	}
	TSet<FString> Labels;
	for (const AActor* Actor : EditedWorld()->GetActors())
	{
		Labels.Add(Actor->GetActorLabel());
	}
	TArray<AActor*> Copies;
	{
		const FScopedTransaction Transaction(
			ContextName, NSLOCTEXT("TarvinEditor", "DuplicateActors", "Duplicate Actors"), Originals[0]);
		TMap<const AActor*, AActor*> CopyOf;
		for (AActor* Original : Originals)
		{
			AActor* const Copy = EditedWorld()->DuplicateActor(Original);
			Copy->SetActorLabel(UniqueLabel(Original->GetActorLabel(), Labels));
			CopyOf.Add(Original, Copy);
			Copies.Add(Copy);
		}
		for (const AActor* Original : Originals)
		{
			const AActor* const Parent = ParentOf(*Original);
			AActor* const* const CopiedParent = Parent ? CopyOf.Find(Parent) : nullptr;
			if (CopiedParent)
			{
				(*CopyOf.Find(Original))
					->GetRootComponent()
					->AttachToComponent((*CopiedParent)->GetRootComponent(), EAttachmentRule::KeepRelative);
			}
		}
	}
	Select(Copies);
	Redraw();
}

int32 LevelActions::Attach(const TArray<AActor*>& Actors, AActor* Parent)
{
	USceneComponent* const ParentRoot = Parent ? Parent->GetRootComponent() : nullptr;
	int32 NumAttached = 0;
	int32 NumKept = 0;
	{
		const FScopedTransaction Transaction(
			ContextName, NSLOCTEXT("TarvinEditor", "AttachActors", "Attach Actors"), Parent);
		for (AActor* Actor : Actors)
		{
			USceneComponent* const Root = Actor->GetRootComponent();
			if (!Root || !ParentRoot || Actor == Parent || Root->GetAttachParent() == ParentRoot)
			{
				continue;
			}
			const bool bAttached =
				KeepsPlaceBelow(*Root, *ParentRoot) && Root->AttachToComponent(ParentRoot, EAttachmentRule::KeepWorld);
			++(bAttached ? NumAttached : NumKept);
		}
	}
	if (NumKept > 0)
	{
		FSlateNotificationManager::Get().AddNotification(FNotificationInfo(FText::Format(
			NSLOCTEXT("TarvinEditor", "NotAttached", "{0} actor(s) not attached: they would move, or are above"),
			FText::AsNumber(NumKept))));
	}
	if (NumAttached > 0)
	{
		Redraw();
	}
	return NumAttached;
}

void LevelActions::AttachSelectedToLast()
{
	TArray<AActor*> Actors = SelectedActors();
	if (Actors.Num() > 1)
	{
		AActor* const Parent = Actors.Pop();
		Attach(Actors, Parent);
	}
}

void LevelActions::Detach(const TArray<AActor*>& Actors)
{
	{
		const FScopedTransaction Transaction(ContextName, NSLOCTEXT("TarvinEditor", "DetachActors", "Detach Actors"),
			Actors.IsEmpty() ? nullptr : Actors[0]);
		for (AActor* Actor : Actors)
		{
			if (USceneComponent* const Root = Actor->GetRootComponent(); Root && Root->GetAttachParent())
			{
				Root->DetachFromComponent(EAttachmentRule::KeepWorld);
			}
		}
	}
	Redraw();
}

void LevelActions::ChangeTransforms(
	const TArray<AActor*>& Actors, const FText& Title, const TFunction<FTransform(const FTransform&)>& Change)
{
	{
		const FScopedTransaction Transaction(ContextName, Title, Actors.IsEmpty() ? nullptr : Actors[0]);
		for (AActor* Actor : Actors)
		{
			USceneComponent* const Root = Actor->GetRootComponent();
			const FTransform Changed = Root ? Change(Root->GetRelativeTransform()) : FTransform();
			if (Root && !(Changed == Root->GetRelativeTransform()))
			{
				Root->Modify();
				Root->SetRelativeTransform(Changed);
				Actor->PostEditMove(true);
			}
		}
	}
	Redraw();
}

void LevelActions::Rename(AActor* Actor, const FString& Label)
{
	if (!IsValid(Actor) || Label.IsEmpty() || Label == Actor->GetActorLabel())
	{
		return;
	}
	const FScopedTransaction Transaction(ContextName, NSLOCTEXT("TarvinEditor", "RenameActor", "Rename Actor"), Actor);
	Actor->Modify();
	Actor->SetActorLabel(Label);
}
