// SPDX-License-Identifier: MIT
#include "TarvinSelectionAction.h"

#include "Platform/Editor.h"
#include "Platform/Slate.h"
#include "TarvinRun.h"
#include "TarvinSharedAssetPrompt.h"
#include "TarvinTolerance.h"
#include "TarvinTransformLog.h"

namespace
{
/// Seconds that the toast stays.
constexpr float ToastDuration = 4.0f;

/// Adds the item that the component makes, or counts why it makes none.
void GatherComponent(UStaticMeshComponent* Component, FTarvinRunResult& Skips, const FTarvinOperation& Operation,
	TArray<FTarvinItem>& Items)
{
	if (Component->IsA<UInstancedStaticMeshComponent>())
	{
		++Skips.SkippedInstanced;
	}
	else if (Component->CreationMethod != EComponentCreationMethod::Native)
	{
		++Skips.SkippedBlueprint;
	}
	else if (!Component->GetStaticMesh())
	{
		++Skips.SkippedNoMesh;
	}
	else if (Operation.bRejectUnrepresentableParent && FTarvinSelectionAction::HasUnrepresentableParent(Component))
	{
		++Skips.SkippedUnrepresentable;
		HOST_LOG(LogTarvinAction, Warning,
			TEXT("%s: parent combines non-uniform scale with rotation -- the residual cannot be represented as an "
				 "FTransform, skipped"),
			*Component->GetPathName());
	}
	else
	{
		Items.Add({Component, Component->GetStaticMesh(), Component->GetComponentTransform()});
	}
}

UWorld* EditorWorld()
{
	UWorld* const World = GEditor ? GEditor->GetEditorWorldContext().World() : nullptr;
	return IsValid(World) ? World : nullptr;
}

FString MakeMessage(
	const FTarvinOperation& Operation, bool bNoItems, const FTarvinRunResult& Gathered, const FTarvinRunResult& Run)
{
	const int32 NumSkipped = Gathered.SkippedInstanced + Gathered.SkippedBlueprint + Gathered.SkippedNoMesh +
							 Gathered.SkippedUnrepresentable;
	if (bNoItems && NumSkipped == 0)
	{
		return TEXT("No static mesh selected");
	}
	FString Message = Operation.FormatSummary ? Operation.FormatSummary(Run.Baked)
											  : FString::Printf(TEXT("Baked %d mesh(es)"), Run.Baked);
	const auto AppendIfAny = [&Message](int32 Count, const FString& Text)
	{
		if (Count > 0)
		{
			Message += Text;
		}
	};
	AppendIfAny(Gathered.SkippedInstanced,
		FString::Printf(TEXT(" \u00B7 %d instanced component(s) skipped"), Gathered.SkippedInstanced));
	AppendIfAny(Gathered.SkippedBlueprint,
		FString::Printf(TEXT(" \u00B7 %d blueprint component(s) skipped"), Gathered.SkippedBlueprint));
	AppendIfAny(Gathered.SkippedNoMesh,
		FString::Printf(TEXT(" \u00B7 %d component(s) without a mesh skipped"), Gathered.SkippedNoMesh));
	AppendIfAny(Gathered.SkippedUnrepresentable,
		FString::Printf(
			TEXT(" \u00B7 %d skipped (rotated, non-uniformly scaled parent)"), Gathered.SkippedUnrepresentable));
	AppendIfAny(Run.Duplicated, FString::Printf(TEXT(" \u00B7 %d new asset(s)"), Run.Duplicated));
	AppendIfAny(Run.NotBaked, FString::Printf(TEXT(" \u00B7 %d asset(s) not baked"), Run.NotBaked));
	return Message;
}
} // namespace

void FTarvinSelectionAction::ExecuteFromEditorSelection()
{
	Execute(FTarvinOperation::RotationScaleBake());
}

void FTarvinSelectionAction::ExecuteSetPivot(ETarvinPivotPosition Position)
{
	Execute(FTarvinOperation::SetPivot(Position));
}

void FTarvinSelectionAction::Execute(const FTarvinOperation& Operation)
{
	FTarvinRunResult Gathered;
	const TArray<FTarvinItem> Items = GatherFromSelection(Gathered, Operation);

	bool bApplyToRest = false;
	ETarvinSharedAssetChoice RememberedChoice = ETarvinSharedAssetChoice::Cancel;
	FTarvinOnSharedAsset OnSharedAsset;
	OnSharedAsset.BindLambda(
		[&bApplyToRest, &RememberedChoice](UStaticMesh* Mesh, int32 OtherUsers, bool bInPlaceAllowed)
		{
			if (bApplyToRest)
			{
				return ResolveRememberedChoice(RememberedChoice, bInPlaceAllowed);
			}
			RememberedChoice = TarvinSharedAssetPrompt::Ask(Mesh, OtherUsers, bInPlaceAllowed, &bApplyToRest);
			return RememberedChoice;
		});
	const FTarvinRunResult Result = TarvinRun::Run(Items, EditorWorld(), OnSharedAsset, Operation, bApplyToRest);
	const FString Message = MakeMessage(Operation, Items.IsEmpty(), Gathered, Result);

	if (Result.Baked > 0 && GEditor)
	{
		GEditor->UpdatePivotLocationForSelection(true);
		GEditor->RedrawLevelEditingViewports(true);
	}
	HOST_LOG(LogTarvinAction, Log, TEXT("%s"), *Message);
	FNotificationInfo Toast(FText::FromString(Message));
	Toast.ExpireDuration = ToastDuration;
	FSlateNotificationManager::Get().AddNotification(Toast);
}

TArray<FTarvinItem> FTarvinSelectionAction::GatherFromSelection(
	FTarvinRunResult& Skips, const FTarvinOperation& Operation)
{
	TArray<FTarvinItem> Items;
	const USelection* const Selection = GEditor ? GEditor->GetSelectedActors() : nullptr;
	for (int32 Index = 0; Selection && Index < Selection->Num(); ++Index)
	{
		const AActor* const Actor = Cast<AActor>(Selection->GetSelectedObject(Index));
		if (!Actor)
		{
			continue;
		}
		for (UStaticMeshComponent* Component : Actor->GetComponentsOf<UStaticMeshComponent>())
		{
			GatherComponent(Component, Skips, Operation, Items);
		}
	}
	return Items;
}

bool FTarvinSelectionAction::HasUnrepresentableParent(const USceneComponent* Component)
{
	const USceneComponent* const Parent = Component ? Component->GetAttachParent() : nullptr;
	if (!Parent)
	{
		return false;
	}
	const FTransform& World = Parent->GetComponentTransform();
	return !TarvinTolerance::IsUniformScale(World.GetScale3D()) &&
		   !TarvinTolerance::IsSameRotation(World.GetRotation(), FQuat::Identity);
}
