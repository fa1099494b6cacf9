// SPDX-License-Identifier: MIT
#include "Editor/EditorEngine.h"

#include "CoreUObject/Archive.h"
#include "Editor/TransBuffer.h"
#include "Engine/Actor.h"
#include "Engine/SceneComponent.h"

UEditorEngine* GEditor = nullptr;

DEFINE_CLASS(UEditorEngine)

UEditorEngine* UEditorEngine::Create()
{
	check(!GEditor);
	GEditor = NewObject<UEditorEngine>();
	GEditor->AddToRoot();
	GEditor->SelectedActors = NewObject<USelection>(GEditor);
	GEditor->Trans = NewObject<UTransBuffer>(GEditor);
	GEditor->EditorWorldContext.SetCurrentWorld(UWorld::Create(EWorldType::Editor));
	return GEditor;
}

void UEditorEngine::Destroy()
{
	check(GEditor);
	GEditor->EndPlaySession();
	GEditor->SelectNone();
	if (GEditor->Trans)
	{
		GEditor->Trans->Reset();
	}
	if (UWorld* const World = GEditor->EditorWorldContext.World())
	{
		World->Destroy();
	}
	GEditor->RemoveFromRoot();
	GEditor = nullptr;
}

void UEditorEngine::SelectActor(AActor* Actor, bool bSelected)
{
	if (bSelected)
	{
		SelectedActors->Select(Actor);
	}
	else
	{
		SelectedActors->Deselect(Actor);
	}
}

void UEditorEngine::SelectNone()
{
	SelectedActors->DeselectAll();
}

int32 UEditorEngine::BeginTransaction(const TCHAR* Context, const FText& Description, UObject* PrimaryObject)
{
	return Trans ? Trans->Begin({FString(Context), Description, PrimaryObject}) : INDEX_NONE;
}

int32 UEditorEngine::EndTransaction()
{
	return Trans ? Trans->End() : INDEX_NONE;
}

void UEditorEngine::CancelTransaction(int32 StartIndex)
{
	if (Trans)
	{
		Trans->Cancel(StartIndex);
	}
}

bool UEditorEngine::UndoTransaction()
{
	return StepTransaction(true);
}

bool UEditorEngine::RedoTransaction()
{
	return StepTransaction(false);
}

bool UEditorEngine::StepTransaction(bool bUndo)
{
	if (!Trans || !(bUndo ? Trans->Undo() : Trans->Redo()))
	{
		return false;
	}
	UpdatePivotLocationForSelection(true);
	RedrawLevelEditingViewports(true);
	return true;
}

void UEditorEngine::UpdatePivotLocationForSelection(bool)
{
	++NumPivotUpdates;
	PivotLocation = FVector::ZeroVector;
	for (UObject* Object : SelectedActors->GetSelectedObjects())
	{
		if (const AActor* const Actor = Cast<AActor>(Object))
		{
			PivotLocation = Actor->GetActorTransform().GetTranslation();
		}
	}
}

void UEditorEngine::RedrawLevelEditingViewports(bool bInvalidateHitProxies)
{
	++NumRedraws;
	RedrawEvent.Broadcast(bInvalidateHitProxies);
}

bool UEditorEngine::StartPlaySession()
{
	UWorld* const World = EditorWorldContext.World();
	if (PlayWorld || !World)
	{
		return false;
	}
	PlayWorld = World->DuplicateForPlay();
	PlaySessionEvent.Broadcast(true);
	return true;
}

void UEditorEngine::EndPlaySession()
{
	if (UWorld* const World = PlayWorld)
	{
		PlayWorld = nullptr;
		World->Destroy();
		PlaySessionEvent.Broadcast(false);
	}
}

void UEditorEngine::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << Trans << PlayWorld << SelectedActors << EditorWorldContext.ThisWorld;
}
