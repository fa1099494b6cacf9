// SPDX-License-Identifier: MIT
#include "TarvinRun.h"

#include "Platform/CoreUObject.h"
#include "Platform/Editor.h"
#include "Platform/Engine.h"
#include "TarvinAssetDuplicator.h"
#include "TarvinGrouping.h"
#include "TarvinTransformLog.h"
#include "TarvinTransformOp.h"

namespace
{
/// A component that is to be given a world transform.
struct FTarvinPendingTransform
{
	TObjectPtr<USceneComponent> Component;
	FTransform Transform;
	int32 Depth = 0;     ///< attach parents above the component
	bool bBaked = false; ///< false for an unselected child that is put back where it was
};

/// The object that a tracked pointer points at, unless it was deleted or collected.
template <class T>
T* Resolve(const TObjectPtr<T>& Pointer)
{
	T* const Object = Pointer;
	return IsValid(Object) ? Object : nullptr;
}

/// Calls `Visit` for each live component of the world that shows a static mesh and is not selected.
template <class TVisit>
void ForEachOtherUser(const TSet<UStaticMeshComponent*>& Selected, UWorld* World, const TVisit& Visit)
{
	TArray<UObject*> Components;
	GetObjectsOfClass(UStaticMeshComponent::StaticClass(), Components, true, RF_ClassDefaultObject | RF_NeedLoad);
	for (UObject* Object : Components)
	{
		UStaticMeshComponent* const Component = static_cast<UStaticMeshComponent*>(Object);
		if (IsValid(Component) && Component->GetWorld() == World && !Selected.Contains(Component))
		{
			Visit(*Component);
		}
	}
}

FString NameOf(const UObject* Object)
{
	return Object ? Object->GetName() : FString(TEXT("None"));
}

void ModifyWithOwner(USceneComponent* Component)
{
	Component->Modify(true);
	if (AActor* const Owner = Component->GetOwner())
	{
		Owner->Modify(true);
	}
}

/// One run over one selection.
class FTarvinRun
{
public:
	FTarvinRun(const TArray<FTarvinItem>& InItems, UWorld* InWorld, const FTarvinOnSharedAsset& InOnSharedAsset,
		const FTarvinOperation& InOperation, const bool& bInAnswersAreRemembered)
		: Items(InItems)
		, World(InWorld)
		, OnSharedAsset(InOnSharedAsset)
		, Operation(InOperation)
		, bAnswersAreRemembered(bInAnswersAreRemembered)
	{
		for (const FTarvinItem& Item : Items)
		{
			if (UStaticMeshComponent* const Component = Resolve(Item.Component))
			{
				SelectedComponents.Add(Component);
			}
		}
	}

	void BakeGroup(const FTarvinGroup& Group)
	{
		UStaticMesh* const Source = Resolve(Group.Mesh);
		UStaticMesh* Target = Source;
		if (!ChooseTarget(Group, Source, Target))
		{
			++Result.NotBaked;
			return;
		}
		const bool bDuplicated = Target != Source;
		FTarvinTransformOptions Options;
		Options.bRebuild = true;
		Options.bBakeCollision = true;
		Options.bBakeSockets = true;
		FTarvinTransformStats Stats;
		if (!FTarvinTransformOp::BakeIntoMesh(Target, Group.Bake, Options, Stats))
		{
			++Result.NotBaked;
			if (bDuplicated)
			{
				HOST_LOG(LogTarvinAction, Warning,
					TEXT("%s: bake failed -- the duplicate that was created is left behind, unused"),
					*Target->GetPathName());
			}
			return;
		}
		++Result.Baked;
		Result.Duplicated += bDuplicated ? 1 : 0;
		for (const int32 ItemIndex : Group.ItemIndices)
		{
			Retarget(Items[ItemIndex], Group.Bake, Target);
		}
	}

	/// Gives the components their new places, and puts their unselected children back into their old ones.
	void MoveComponents()
	{
		if (Pending.IsEmpty())
		{
			return;
		}
		CollectChildren();
		// Parents first: a restored child must be back in its place before a baked component below it gets its own.
		Pending.StableSort(
			[](const FTarvinPendingTransform& A, const FTarvinPendingTransform& B) { return A.Depth < B.Depth; });
		for (const FTarvinPendingTransform& Record : Pending)
		{
			USceneComponent* const Component = Resolve(Record.Component);
			if (!Component)
			{
				continue;
			}
			ModifyWithOwner(Component);
			Component->SetWorldTransform(Record.Transform, false, nullptr, ETeleportType::None);
			if (Record.bBaked)
			{
				Component->MarkRenderStateDirty();
			}
		}
		NotifyOwners();
	}

	const FTarvinRunResult& GetResult() const { return Result; }

private:
	/// Decides which asset is baked for the group: its own, or a new duplicate. False when it is to be left alone.
	bool ChooseTarget(const FTarvinGroup& Group, UStaticMesh* Source, UStaticMesh*& OutTarget)
	{
		const int32 OtherUsers = CountOtherUsers(Source);
		if (OtherUsers <= 0 && !Group.bConflict)
		{
			return true;
		}
		if (!OnSharedAsset.IsBound())
		{
			return false;
		}
		// Whoever is asked may do more than answer: the users are counted anew for the next group.
		bCounted = bCounted && bAnswersAreRemembered;
		switch (OnSharedAsset.Execute(Source, OtherUsers, !Group.bConflict))
		{
		case ETarvinSharedAssetChoice::Cancel:
			return false;
		case ETarvinSharedAssetChoice::Duplicate:
			OutTarget = FTarvinAssetDuplicator::Duplicate(Source);
			if (!OutTarget)
			{
				HOST_LOG(
					LogTarvinAction, Warning, TEXT("%s: duplicate could not be created -- skipped"), *NameOf(Source));
			}
			return OutTarget != nullptr;
		default:
			return true;
		}
	}

	/// What `FTarvinSelectionAction::CountOtherUsers` says, counted for all meshes at once: the run itself changes
	/// selected components only.
	int32 CountOtherUsers(UStaticMesh* Mesh)
	{
		if (!Mesh || !World)
		{
			return 0;
		}
		if (!bCounted)
		{
			OtherUsersOfMesh.Empty();
			ForEachOtherUser(SelectedComponents, World,
				[this](const UStaticMeshComponent& Component)
				{ ++OtherUsersOfMesh.FindOrAdd(Component.GetStaticMesh()); });
			bCounted = true;
		}
		const int32* const Count = OtherUsersOfMesh.Find(Mesh);
		return Count ? *Count : 0;
	}

	void Retarget(const FTarvinItem& Item, const FTransform& Bake, UStaticMesh* Mesh)
	{
		UStaticMeshComponent* const Component = Resolve(Item.Component);
		if (!Component)
		{
			return;
		}
		ModifyWithOwner(Component);
		if (Component->GetStaticMesh() != Mesh)
		{
			Component->SetStaticMesh(Mesh);
		}
		Pending.Add({Component, Operation.ComputeNewComponentTransform(Item, Bake), Component->GetAttachDepth(), true});
		++Result.ComponentsUpdated;
	}

	/// Adds the direct children of the baked components that are not baked themselves, with the places that they have
	/// now, before anything has moved. What is deeper follows them.
	void CollectChildren()
	{
		TSet<USceneComponent*> BakedComponents;
		for (const FTarvinPendingTransform& Record : Pending)
		{
			BakedComponents.Add(Record.Component);
		}
		TArray<FTarvinPendingTransform> Children;
		for (const FTarvinPendingTransform& Record : Pending)
		{
			for (const TObjectPtr<USceneComponent>& Entry : Record.Component->GetAttachChildren())
			{
				USceneComponent* const Child = Resolve(Entry);
				if (Child && !BakedComponents.Contains(Child))
				{
					Children.Add({Child, Child->GetComponentTransform(), Child->GetAttachDepth(), false});
				}
			}
		}
		Pending.Append(Children);
	}

	void NotifyOwners()
	{
		TSet<AActor*> Known;
		TArray<TWeakObjectPtr<AActor>> Owners;
		for (const FTarvinPendingTransform& Record : Pending)
		{
			const USceneComponent* const Component = Record.Component;
			AActor* const Owner = Component ? Component->GetOwner() : nullptr;
			if (Owner && !Known.Contains(Owner))
			{
				Known.Add(Owner);
				Owners.Add(TWeakObjectPtr<AActor>(Owner));
			}
		}
		for (const TWeakObjectPtr<AActor>& Owner : Owners)
		{
			if (AActor* const Actor = Owner.Get())
			{
				Actor->PostEditMove(true);
			}
		}
	}

	const TArray<FTarvinItem>& Items;
	UWorld* const World;
	const FTarvinOnSharedAsset& OnSharedAsset;
	const FTarvinOperation& Operation;
	const bool& bAnswersAreRemembered;
	TSet<UStaticMeshComponent*> SelectedComponents;
	TMap<UStaticMesh*, int32> OtherUsersOfMesh;
	bool bCounted = false;
	TArray<FTarvinPendingTransform> Pending;
	FTarvinRunResult Result;
};
} // namespace

FTarvinRunResult FTarvinSelectionAction::Run(const TArray<FTarvinItem>& Items, UWorld* World,
	const FTarvinOnSharedAsset& OnSharedAsset, const FTarvinOperation& Operation)
{
	return TarvinRun::Run(Items, World, OnSharedAsset, Operation, false);
}

FTarvinRunResult TarvinRun::Run(const TArray<FTarvinItem>& Items, UWorld* World,
	const FTarvinOnSharedAsset& OnSharedAsset, const FTarvinOperation& Operation, const bool& bAnswersAreRemembered)
{
	if (Items.IsEmpty())
	{
		return FTarvinRunResult();
	}
	FTarvinTransformOp::BeginUndoTrackedBatch();
	const TArray<FTarvinGroup> Groups = FTarvinGrouping::Build(Items,
		[&Operation](const FTarvinItem& Item, FTransform& OutBake) { return Operation.ComputeBake(Item, OutBake); });
	FTarvinRun ThisRun(Items, World, OnSharedAsset, Operation, bAnswersAreRemembered);

	FScopedTransaction Transaction(TEXT("TarvinTransform"), Operation.TransactionText, nullptr, true);
	for (const FTarvinGroup& Group : Groups)
	{
		ThisRun.BakeGroup(Group);
	}
	ThisRun.MoveComponents();
	if (ThisRun.GetResult().Baked == 0)
	{
		Transaction.Cancel();
	}
	return ThisRun.GetResult();
}

int32 FTarvinSelectionAction::CountOtherUsers(
	UStaticMesh* Mesh, const TSet<UStaticMeshComponent*>& Selected, UWorld* World)
{
	if (!Mesh || !World)
	{
		return 0;
	}
	int32 Count = 0;
	ForEachOtherUser(Selected, World,
		[&](const UStaticMeshComponent& Component) { Count += Component.GetStaticMesh() == Mesh ? 1 : 0; });
	return Count;
}

ETarvinSharedAssetChoice FTarvinSelectionAction::ResolveRememberedChoice(
	ETarvinSharedAssetChoice Remembered, bool bInPlaceAllowed)
{
	return Remembered == ETarvinSharedAssetChoice::ApplyToAll && !bInPlaceAllowed ? ETarvinSharedAssetChoice::Duplicate
																				  : Remembered;
}
