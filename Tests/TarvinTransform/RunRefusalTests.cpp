// SPDX-License-Identifier: MIT
#include "RunFixture.h"

#include "CoreUObject/GarbageCollector.h"
#include "CoreUObject/Package.h"
#include "Editor/AssetTools.h"
#include "Editor/ScopedTransaction.h"
#include "Engine/BodySetup.h"
#include "TarvinTransformOp.h"

namespace
{
using EChoice = ETarvinSharedAssetChoice;
using FCounts = std::vector<int32>;
using FLines = std::vector<std::string>;

const FTransform Tenfold(FQuat::Identity, FVector(500, -200, 30), FVector(10, 10, 10));
const FTransform Flat(FQuat::Identity, FVector(1, 2, 3), FVector(1, 0, 1));

/// Asset tools that answer a wish for a copy with whatever they are given.
class FStubbornAssetTools final : public IAssetTools
{
public:
	FStubbornAssetTools() { Module().SetOverride(this); }
	~FStubbornAssetTools() override { Module().SetOverride(nullptr); }

	void CreateUniqueAssetName(const FString& Base, const FString&, FString& OutPackage, FString& OutAsset) override
	{
		OutPackage = Base;
		OutAsset = FPackageName::GetShortName(Base);
	}
	UObject* DuplicateAsset(const FString&, const FString&, UObject*) override { return Answer; }

	UObject* Answer = nullptr;

private:
	static FAssetToolsModule& Module()
	{
		return FModuleManager::Get().LoadModuleChecked<FAssetToolsModule>(TEXT("AssetTools"));
	}
};

class RunRefusals : public FRunTest
{
protected:
	/// A transaction in the buffer that is undone, so that there is something to redo.
	void MakeSomethingToRedo()
	{
		{
			const FScopedTransaction Transaction(TEXT("Elsewhere"), FText::FromString(TEXT("Move")), nullptr);
			USceneComponent* const Frame = PlaceFrame(FTransform());
			Frame->Modify();
		}
		ASSERT_TRUE(Transactions().Undo());
	}
};

TEST_F(RunRefusals, NoItemsMeanNoTransactionAndNoNewBatch)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Tenfold);
	Run();
	EXPECT_EQ(Counts(RunOn({}, {})), (FCounts{0, 0, 0, 0}));
	EXPECT_EQ(Transactions().GetQueueLength(), 1);
	FTarvinTransformOp::RebuildMeshesAfterUndo();
	EXPECT_EQ(OpLines(), (FLines{"Log: Undo/redo: rebuilt 1 mesh(es)"}));
}

TEST_F(RunRefusals, WithoutADelegateASharedAssetIsLeftAloneSilently)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	PlaceSelected(Rock, Tenfold);
	Place(Rock);
	const FWorldState Before = State();
	FTarvinRunResult Skips;
	const FTarvinOperation Operation = FTarvinOperation::RotationScaleBake();
	const FTarvinRunResult Result = FTarvinSelectionAction::Run(
		FTarvinSelectionAction::GatherFromSelection(Skips, Operation), World(), FTarvinOnSharedAsset(), Operation);
	EXPECT_EQ(Counts(Result), (FCounts{0, 0, 0, 1}));
	EXPECT_TRUE(IsSameState(Before, State()));
	EXPECT_EQ(Log.Records().Num(), 0);
}

TEST_F(RunRefusals, WithoutADelegateASoleUserIsBakedAllTheSame)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Tenfold);
	FTarvinRunResult Skips;
	const FTarvinOperation Operation = FTarvinOperation::RotationScaleBake();
	const FTarvinRunResult Result = FTarvinSelectionAction::Run(
		FTarvinSelectionAction::GatherFromSelection(Skips, Operation), World(), FTarvinOnSharedAsset(), Operation);
	EXPECT_EQ(Counts(Result), (FCounts{1, 1, 0, 0}));
}

TEST_F(RunRefusals, RefusedDuplicateIsLoggedAndTheRestGoesOn)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Shared = PlaceSelected(Rock, Tenfold);
	Place(Rock);
	UStaticMeshComponent* const Sole = PlaceSelected(MakeMesh(TEXT("Stone")), Tenfold);
	const FStubbornAssetTools Refusing;
	EXPECT_EQ(Counts(Run(EChoice::Duplicate)), (FCounts{1, 1, 0, 1}));
	EXPECT_EQ(ActionLines(), (FLines{"Warning: Rock: duplicate could not be created -- skipped"}));
	EXPECT_EQ(Shared->GetComponentTransform(), Tenfold);
	EXPECT_EQ(MeshOf(Shared), Rock);
	EXPECT_EQ(Sole->GetComponentTransform(), At(FVector(500, -200, 30)));
}

TEST_F(RunRefusals, DuplicateOfAnotherClassIsNone)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Shared = PlaceSelected(Rock, Tenfold);
	Place(Rock);
	FStubbornAssetTools Confused;
	Confused.Answer = NewObject<UBodySetup>();
	EXPECT_EQ(Counts(Run(EChoice::Duplicate)), (FCounts{0, 0, 0, 1}));
	EXPECT_EQ(ActionLines(), (FLines{"Warning: Rock: duplicate could not be created -- skipped"}));
	EXPECT_EQ(MeshOf(Shared), Rock);
}

TEST_F(RunRefusals, FailedBakeOfADuplicateLeavesTheCopyBehindAndTheComponentOnTheSource)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Selected = PlaceSelected(Rock, Flat);
	Place(Rock);
	EXPECT_EQ(Counts(Run(EChoice::Duplicate)), (FCounts{0, 0, 0, 1}));
	EXPECT_EQ(OpLines(), (FLines{"Warning: Rock_Baked: zero scale (X=1.000 Y=0.000 Z=1.000) -- bake cancelled"}));
	EXPECT_EQ(ActionLines(),
		(FLines{
			"Warning: /Yard/Props/Rock_Baked.Rock_Baked: bake failed -- the duplicate that was created is left behind, "
			"unused"}));
	EXPECT_EQ(MeshOf(Selected), Rock);
	EXPECT_EQ(Selected->GetComponentTransform(), Flat);
	UPackage* const Package = FindPackage(TEXT("/Yard/Props/Rock_Baked"));
	ASSERT_NE(Package, nullptr);
	EXPECT_NE(Package->FindAsset(TEXT("Rock_Baked")), nullptr);
	EXPECT_EQ(Transactions().GetQueueLength(), 0);
}

TEST_F(RunRefusals, FailedBakeInPlaceCountsAndSaysNothingOfADuplicate)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Flat);
	const FWorldState Before = State();
	EXPECT_EQ(Counts(Run()), (FCounts{0, 0, 0, 1}));
	EXPECT_TRUE(ActionLines().empty());
	EXPECT_EQ(OpLines(), (FLines{"Warning: Rock: zero scale (X=1.000 Y=0.000 Z=1.000) -- bake cancelled"}));
	EXPECT_TRUE(IsSameState(Before, State()));
}

TEST_F(RunRefusals, NothingBakedLeavesTheUndoBufferAsItWasAndWhatCanBeRedone)
{
	MakeSomethingToRedo();
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMesh* const Source = MakeMesh(TEXT("NoSource"), FMeshDescription());
	PlaceSelected(Rock, Tenfold);
	Place(Rock);
	PlaceSelected(MakeMesh(TEXT("Sheet")), Flat);
	PlaceSelected(Source, Tenfold);
	const FTransactionRecord* const Record = &Transactions().GetTransaction(0);
	const int32 NumRecorded = Record->Num();
	int32 Changes = 0;
	Transactions().OnChanged().AddLambda([&Changes] { ++Changes; });

	EXPECT_EQ(Counts(Run(EChoice::Cancel)), (FCounts{0, 0, 0, 3}));
	EXPECT_EQ(Transactions().GetQueueLength(), 1);
	EXPECT_EQ(Transactions().GetUndoCount(), 1);
	EXPECT_EQ(&Transactions().GetTransaction(0), Record);
	EXPECT_EQ(Record->Num(), NumRecorded);
	EXPECT_EQ(Changes, 0);
	EXPECT_FALSE(Transactions().IsActive());
	EXPECT_TRUE(Transactions().Redo());
}

TEST_F(RunRefusals, WhatOthersRecordedMeanwhileGoesWithTheCancelledTransaction)
{
	MakeSomethingToRedo();
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Selected = PlaceSelected(Rock, Tenfold);
	Place(Rock);
	const FTarvinRunResult Result = Run(
		[Selected](const FQuestion&)
		{
			EXPECT_TRUE(Selected->Modify());
			return EChoice::Cancel;
		});
	EXPECT_EQ(Counts(Result), (FCounts{0, 0, 0, 1}));
	EXPECT_EQ(Transactions().GetQueueLength(), 1);
	EXPECT_TRUE(Transactions().CanRedo());
}

TEST_F(RunRefusals, SomethingBakedDropsWhatCouldBeRedone)
{
	MakeSomethingToRedo();
	PlaceSelected(MakeMesh(TEXT("Rock")), Tenfold);
	Run();
	EXPECT_EQ(Transactions().GetQueueLength(), 1);
	EXPECT_FALSE(Transactions().CanRedo());
}

TEST_F(RunRefusals, ItemWithoutABakeIsNotEvenCounted)
{
	PlaceSelected(MakeMesh(TEXT("NoSource"), FMeshDescription()), Tenfold);
	EXPECT_EQ(
		Counts(Run(EChoice::Cancel, FTarvinOperation::SetPivot(ETarvinPivotPosition::Center))), (FCounts{0, 0, 0, 0}));
	EXPECT_EQ(Transactions().GetQueueLength(), 0);
}

TEST_F(RunRefusals, CollectedComponentIsPassedOverWhileItsMeshIsBaked)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Live = PlaceSelected(Rock, Tenfold);
	const TArray<FTarvinItem> Items = {
		{NewObject<UStaticMeshComponent>(), Rock, Tenfold}, {nullptr, Rock, Tenfold}, {Live, Rock, Tenfold}};
	CollectGarbage();
	ASSERT_EQ(Items[0].Component.Get(), nullptr);
	EXPECT_EQ(Counts(RunOn(Items, {})), (FCounts{1, 1, 0, 0}));
	EXPECT_EQ(Live->GetComponentTransform(), At(FVector(500, -200, 30)));
}

TEST_F(RunRefusals, DeletedComponentIsPassedOver)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Deleted = Place(Rock, Tenfold);
	const TArray<FTarvinItem> Items = {{Deleted, Rock, Tenfold}};
	World()->DestroyActor(Deleted->GetOwner());
	EXPECT_EQ(Counts(RunOn(Items, {})), (FCounts{1, 0, 0, 0}));
	EXPECT_EQ(Deleted->GetComponentTransform(), Tenfold);
}

TEST_F(RunRefusals, CollectedMeshIsInNoGroup)
{
	UStaticMeshComponent* const Component = Place(nullptr, Tenfold);
	const TArray<FTarvinItem> Items = {{Component, NewObject<UStaticMesh>(), Tenfold}};
	CollectGarbage();
	ASSERT_EQ(Items[0].Mesh.Get(), nullptr);
	EXPECT_EQ(Counts(RunOn(Items, {})), (FCounts{0, 0, 0, 0}));
	EXPECT_EQ(Component->GetComponentTransform(), Tenfold);
}

TEST_F(RunRefusals, MeshThatIsDeletedDuringTheRunCountsAsNotBakedWithoutAQuestion)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMesh* const Doomed = MakeMesh(TEXT("Doomed"));
	PlaceSelected(Rock, Tenfold);
	Place(Rock);
	PlaceSelected(Doomed, Tenfold);
	Place(Doomed);
	const FTarvinRunResult Result = Run(
		[Doomed](const FQuestion&)
		{
			Doomed->MarkAsGarbage();
			return EChoice::ApplyToAll;
		});
	EXPECT_EQ(Counts(Result), (FCounts{1, 1, 0, 1}));
	EXPECT_EQ(Questions, (std::vector<FQuestion>{{Rock, 1, true}}));
}

TEST_F(RunRefusals, MeshInTwoShapesThatIsDeletedDuringTheRunIsAskedAboutAndHasNoDuplicate)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMesh* const Doomed = MakeMesh(TEXT("Doomed"));
	PlaceSelected(Rock, Tenfold);
	Place(Rock);
	PlaceSelected(Doomed, Tenfold);
	PlaceSelected(Doomed, FTransform(FVector(1, 2, 3)));
	const FTarvinRunResult Result = Run(
		[Doomed](const FQuestion&)
		{
			Doomed->MarkAsGarbage();
			return EChoice::Duplicate;
		});
	EXPECT_EQ(Counts(Result), (FCounts{1, 1, 1, 2}));
	EXPECT_EQ(Questions, (std::vector<FQuestion>{{Rock, 1, true}, {nullptr, 0, false}, {nullptr, 0, false}}));
	EXPECT_EQ(ActionLines(), (FLines{"Warning: None: duplicate could not be created -- skipped",
								 "Warning: None: duplicate could not be created -- skipped"}));
}

TEST_F(RunRefusals, ChildThatWasDeletedIsNotPutBack)
{
	UStaticMeshComponent* const Parent = PlaceSelected(MakeMesh(TEXT("Rock")), Tenfold);
	USceneComponent* const Child = PlaceFrame(FTransform(FVector(1, 2, 3)));
	Child->AttachToComponent(Parent, EAttachmentRule::KeepWorld);
	const FTransform Relative = Child->GetRelativeTransform();
	Child->MarkAsGarbage();
	EXPECT_EQ(Counts(Run()), (FCounts{1, 1, 0, 0}));
	EXPECT_EQ(Child->GetRelativeTransform(), Relative);
	EXPECT_EQ(Child->GetOwner()->GetNumFinishedMoves(), 0);
}

TEST_F(RunRefusals, WithoutAnEditorTheItemsAreBakedWithoutUndo)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UWorld* const Own = UWorld::Create(EWorldType::Editor);
	UStaticMeshComponent* const Component = Own->SpawnActor<AActor>()->AddComponent<UStaticMeshComponent>();
	Component->SetStaticMesh(Rock);
	Component->SetWorldTransform(Tenfold);
	UEditorEngine::Destroy();
	const FTarvinRunResult Result = FTarvinSelectionAction::Run(
		{{Component, Rock, Tenfold}}, Own, FTarvinOnSharedAsset(), FTarvinOperation::RotationScaleBake());
	EXPECT_EQ(Counts(Result), (FCounts{1, 1, 0, 0}));
	EXPECT_EQ(Component->GetComponentTransform(), At(FVector(500, -200, 30)));
	Own->Destroy();
}
}
