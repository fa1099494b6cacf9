// SPDX-License-Identifier: MIT
#include "RunFixture.h"

#include "CoreUObject/GarbageCollector.h"
#include "CoreUObject/Package.h"
#include "Engine/InstancedStaticMeshComponent.h"
#include "TarvinTransformOp.h"

#include <gmock/gmock.h>

/// Counts how often it is given a mesh.
class UWatchfulComponent : public UStaticMeshComponent
{
	DECLARE_CLASS(UWatchfulComponent, UStaticMeshComponent)

public:
	bool SetStaticMesh(UStaticMesh* NewMesh) override
	{
		++NumSets;
		return Super::SetStaticMesh(NewMesh);
	}

	int32 NumSets = 0;
};
DEFINE_CLASS(UWatchfulComponent)

namespace
{
using EChoice = ETarvinSharedAssetChoice;
using FCounts = std::vector<int32>;

const FTransform Tilted(Turn(FVector(1, 2, 3).GetSafeNormal(), 50), FVector(500, -200, 30), FVector(2, -3, 5));
const FTransform Tenfold(FQuat::Identity, FVector(500, -200, 30), FVector(10, 10, 10));

class Running : public FRunTest
{
};

TEST_F(Running, SoleUserIsBakedWithoutAQuestion)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Component = PlaceSelected(Rock, Tenfold);
	const TArray<FVector> Before = LocalPositions(Rock);
	EXPECT_EQ(Counts(Run()), (FCounts{1, 1, 0, 0}));
	EXPECT_TRUE(Questions.empty());
	EXPECT_EQ(Component->GetComponentTransform(), At(FVector(500, -200, 30)));
	EXPECT_EQ(MeshOf(Component), Rock);
	EXPECT_TRUE(
		Near(LocalPositions(Rock), Transformed(Before, FTransform(FQuat::Identity, FVector(), FVector(10, 10, 10)))));
}

TEST_F(Running, NothingMovesInTheWorld)
{
	UStaticMeshComponent* const Component = PlaceSelected(MakeMesh(TEXT("Rock")), Tilted);
	const TArray<FVector> Before = WorldPositions(Component);
	Run();
	EXPECT_TRUE(Near(WorldPositions(Component), Before));
	EXPECT_EQ(Component->GetComponentTransform(), At(FVector(500, -200, 30)));
}

TEST_F(Running, OtherUsersAreTheUnselectedComponentsOfThatWorld)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Selected = Place(Rock);
	UStaticMeshComponent* const OtherOne = Place(Rock);
	const auto Count = [&] { return FTarvinSelectionAction::CountOtherUsers(Rock, {Selected}, World()); };
	EXPECT_EQ(Count(), 1);
	Place(Rock);
	EXPECT_EQ(Count(), 2);

	// None of these is one.
	Place(MakeMesh(TEXT("Stone")));
	Place(nullptr);
	UWorld* const OtherWorld = UWorld::Create(EWorldType::Editor);
	OtherWorld->SpawnActor<AActor>()->AddComponent<UStaticMeshComponent>()->SetStaticMesh(Rock);
	Cast<UStaticMeshComponent>(UStaticMeshComponent::StaticClass()->GetDefaultObject())->SetStaticMesh(Rock);
	NewObject<UStaticMeshComponent>()->SetStaticMesh(Rock);
	NewObject<UStaticMeshComponent>(Selected->GetOwner(), NAME_None, RF_NeedLoad)->SetStaticMesh(Rock);
	EXPECT_EQ(Count(), 2);

	// All of these are, also two of one actor, and some that could not be baked themselves.
	Selected->GetOwner()->AddComponent<UInstancedStaticMeshComponent>()->SetStaticMesh(Rock);
	OtherOne->GetOwner()
		->AddComponent<UStaticMeshComponent>(NAME_None, EComponentCreationMethod::UserConstructionScript)
		->SetStaticMesh(Rock);
	EXPECT_EQ(Count(), 4);
	EXPECT_EQ(FTarvinSelectionAction::CountOtherUsers(Rock, {}, OtherWorld), 1);

	World()->DestroyActor(OtherOne->GetOwner());
	EXPECT_EQ(Count(), 2);
	Cast<UStaticMeshComponent>(UStaticMeshComponent::StaticClass()->GetDefaultObject())->SetStaticMesh(nullptr);
	OtherWorld->Destroy();
}

TEST_F(Running, WithoutAMeshOrAWorldThereAreNoOtherUsers)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	Place(Rock);
	Place(nullptr);
	EXPECT_EQ(FTarvinSelectionAction::CountOtherUsers(nullptr, {}, World()), 0);
	EXPECT_EQ(FTarvinSelectionAction::CountOtherUsers(Rock, {}, nullptr), 0);
}

TEST_F(Running, SharedAssetIsAskedAboutAndCancelLeavesEverythingAsItWas)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	PlaceSelected(Rock, Tenfold);
	Place(Rock, Tilted);
	const FWorldState Before = State();
	EXPECT_EQ(Counts(Run(EChoice::Cancel)), (FCounts{0, 0, 0, 1}));
	EXPECT_EQ(Questions, (std::vector<FQuestion>{{Rock, 1, true}}));
	EXPECT_TRUE(IsSameState(Before, State()));
	EXPECT_EQ(Transactions().GetQueueLength(), 0);
	EXPECT_TRUE(ActionLines().empty());
	EXPECT_TRUE(OpLines().empty());
}

TEST_F(Running, ApplyToAllChangesTheAssetForEveryUserAndMovesOnlyTheSelected)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Selected = PlaceSelected(Rock, Tenfold);
	UStaticMeshComponent* const Other = Place(Rock, Tilted);
	const TArray<FVector> Before = LocalPositions(Rock);
	EXPECT_EQ(Counts(Run(EChoice::ApplyToAll)), (FCounts{1, 1, 0, 0}));
	EXPECT_TRUE(
		Near(LocalPositions(Rock), Transformed(Before, FTransform(FQuat::Identity, FVector(), FVector(10, 10, 10)))));
	EXPECT_EQ(MeshOf(Selected), Rock);
	EXPECT_EQ(MeshOf(Other), Rock);
	EXPECT_EQ(Other->GetComponentTransform(), Tilted);
}

TEST_F(Running, AnswerOfNoDefinedValueMeansApplyToAll)
{
	for (const int Value : {3, 7, 255})
	{
		UStaticMesh* const Rock = MakeMesh(*FString::Printf(TEXT("Rock%d"), Value));
		GEditor->SelectNone();
		UStaticMeshComponent* const Selected = PlaceSelected(Rock, Tenfold);
		Place(Rock);
		EXPECT_EQ(Counts(Run(static_cast<EChoice>(Value))), (FCounts{1, 1, 0, 0}));
		EXPECT_EQ(MeshOf(Selected), Rock);
		EXPECT_EQ(Selected->GetComponentTransform(), At(FVector(500, -200, 30)));
	}
}

TEST_F(Running, DuplicateIsBakedForTheSelectedAndTheSourceStaysForTheOthers)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Selected = PlaceSelected(Rock, Tilted);
	UStaticMeshComponent* const AlsoSelected = PlaceSelected(Rock, Tilted);
	UStaticMeshComponent* const Other = Place(Rock, Tenfold);
	const TArray<FVector> Before = LocalPositions(Rock);
	const TArray<FVector> WorldBefore = WorldPositions(Selected);
	EXPECT_EQ(Counts(Run(EChoice::Duplicate)), (FCounts{1, 2, 1, 0}));
	EXPECT_EQ(Questions, (std::vector<FQuestion>{{Rock, 1, true}}));

	UStaticMesh* const Copy = MeshOf(Selected);
	EXPECT_NE(Copy, Rock);
	EXPECT_EQ(MeshOf(AlsoSelected), Copy);
	EXPECT_EQ(Copy->GetPathName(), TEXT("/Yard/Props/Rock_Baked.Rock_Baked"));
	EXPECT_EQ(MeshOf(Other), Rock);
	EXPECT_EQ(Other->GetComponentTransform(), Tenfold);
	EXPECT_TRUE(Near(LocalPositions(Rock), Before, 0.0));
	EXPECT_TRUE(Near(
		LocalPositions(Copy), Transformed(Before, FTransform(Tilted.GetRotation(), FVector(), Tilted.GetScale3D()))));
	EXPECT_TRUE(Near(WorldPositions(Selected), WorldBefore));
}

TEST_F(Running, AssetInTwoShapesIsAskedAboutForEachOfThemAndInPlaceIsRuledOut)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Big = PlaceSelected(Rock, Tenfold);
	UStaticMeshComponent* const Turned = PlaceSelected(Rock, Tilted);
	EXPECT_EQ(Counts(Run(EChoice::Duplicate)), (FCounts{2, 2, 2, 0}));
	EXPECT_EQ(Questions, (std::vector<FQuestion>{{Rock, 0, false}, {Rock, 0, false}}));
	EXPECT_EQ(MeshOf(Big)->GetName(), TEXT("Rock_Baked"));
	EXPECT_TRUE(MeshOf(Turned)->GetName().StartsWith(TEXT("Rock_Baked_")));
}

TEST_F(Running, AssetInTwoShapesIsBakedInPlaceForBothIfThatIsTheAnswer)
{
	for (const int Value : {1, 7})
	{
		GEditor->SelectNone();
		UStaticMesh* const Rock = MakeMesh(*FString::Printf(TEXT("Rock%d"), Value));
		UStaticMeshComponent* const Big = PlaceSelected(Rock, Tenfold);
		UStaticMeshComponent* const Turned = PlaceSelected(Rock, Tilted);
		const TArray<FVector> Before = LocalPositions(Rock);
		EXPECT_EQ(Counts(Run(static_cast<EChoice>(Value))), (FCounts{2, 2, 0, 0}));
		const FTransform First(FQuat::Identity, FVector(), Tenfold.GetScale3D());
		const FTransform Second(Tilted.GetRotation(), FVector(), Tilted.GetScale3D());
		EXPECT_TRUE(Near(LocalPositions(Rock), Transformed(Transformed(Before, First), Second), 1.e-3))
			<< "one bake after the other: what may be answered is for whoever asks to offer";
		EXPECT_EQ(MeshOf(Big), Rock);
		EXPECT_EQ(MeshOf(Turned), Rock);
		EXPECT_EQ(Big->GetComponentTransform(), At(FVector(500, -200, 30)));
		EXPECT_EQ(Turned->GetComponentTransform(), At(FVector(500, -200, 30)));
	}
}

TEST_F(Running, QuestionsAreAskedInsideTheTransactionBeforeAnythingIsRecorded)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Selected = PlaceSelected(Rock, Tenfold);
	Place(Rock);
	Rock->GetOutermost()->SetDirtyFlag(false);
	const FWorldState Before = State();
	const FTarvinRunResult Result = Run(
		[&](const FQuestion&)
		{
			EXPECT_TRUE(Transactions().IsActive());
			EXPECT_TRUE(IsSameState(Before, State()));
			EXPECT_FALSE(Rock->GetOutermost()->IsDirty());
			return EChoice::ApplyToAll;
		});
	EXPECT_EQ(Counts(Result), (FCounts{1, 1, 0, 0}));
	EXPECT_FALSE(Transactions().IsActive());
	EXPECT_EQ(Selected->GetComponentTransform(), At(FVector(500, -200, 30)));
}

TEST_F(Running, WithoutAWorldNobodyElseIsKnownToUseTheAsset)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	PlaceSelected(Rock, Tenfold);
	Place(Rock);
	FTarvinRunResult Skips;
	const FTarvinOperation Operation = FTarvinOperation::RotationScaleBake();
	const FTarvinRunResult Result = FTarvinSelectionAction::Run(
		FTarvinSelectionAction::GatherFromSelection(Skips, Operation), nullptr, FTarvinOnSharedAsset(), Operation);
	EXPECT_EQ(Counts(Result), (FCounts{1, 1, 0, 0}));
}

TEST_F(Running, EachAssetIsAskedAboutInTheOrderOfTheGroupsAlsoAfterACancel)
{
	UStaticMesh* const Meshes[] = {MakeMesh(TEXT("A")), MakeMesh(TEXT("B")), MakeMesh(TEXT("C"))};
	std::vector<UStaticMeshComponent*> Selected;
	for (UStaticMesh* Mesh : Meshes)
	{
		Selected.push_back(PlaceSelected(Mesh, Tenfold));
		Place(Mesh);
	}
	const FTarvinRunResult Result = Run(
		[&](const FQuestion& Question) { return Question.Mesh == Meshes[0] ? EChoice::Cancel : EChoice::ApplyToAll; });
	EXPECT_EQ(Counts(Result), (FCounts{2, 2, 0, 1}));
	EXPECT_EQ(Questions, (std::vector<FQuestion>{{Meshes[0], 1, true}, {Meshes[1], 1, true}, {Meshes[2], 1, true}}));
	EXPECT_EQ(Selected[0]->GetComponentTransform(), Tenfold);
	EXPECT_EQ(Selected[2]->GetComponentTransform(), At(FVector(500, -200, 30)));
}

TEST_F(Running, UsersAreCountedAnewAfterEachQuestion)
{
	UStaticMesh* const Meshes[] = {MakeMesh(TEXT("A")), MakeMesh(TEXT("B")), MakeMesh(TEXT("C"))};
	for (UStaticMesh* Mesh : Meshes)
	{
		PlaceSelected(Mesh, Tenfold);
	}
	Place(Meshes[0]);
	UStaticMeshComponent* const Other = Place(Meshes[1]);
	const FTarvinRunResult Result = Run(
		[&](const FQuestion&)
		{
			World()->DestroyActor(Other->GetOwner());
			Place(Meshes[2]);
			Place(Meshes[2]);
			return EChoice::ApplyToAll;
		});
	EXPECT_EQ(Counts(Result), (FCounts{3, 3, 0, 0}));
	EXPECT_EQ(Questions, (std::vector<FQuestion>{{Meshes[0], 1, true}, {Meshes[2], 2, true}}));
}

TEST_F(Running, OneBakeServesAllItemsOfAGroup)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Here = PlaceSelected(Rock, Tenfold);
	UStaticMeshComponent* const There =
		PlaceSelected(Rock, FTransform(FQuat::Identity, FVector(7, 8, 9), FVector(10, 10, 10)));
	EXPECT_EQ(Counts(Run()), (FCounts{1, 2, 0, 0}));
	EXPECT_EQ(Rock->GetNumBuilds(), 1);
	EXPECT_EQ(Here->GetComponentTransform(), At(FVector(500, -200, 30)));
	EXPECT_EQ(There->GetComponentTransform(), At(FVector(7, 8, 9)));
}

TEST_F(Running, SkipCountersStayWithGathering)
{
	PlaceSelected(nullptr);
	PlaceSelected(MakeMesh(TEXT("Rock")), Tenfold);
	const FTarvinRunResult Result = Run();
	EXPECT_EQ(
		Result.SkippedNoMesh + Result.SkippedInstanced + Result.SkippedBlueprint + Result.SkippedUnrepresentable, 0);
}

TEST_F(Running, LeavesOneTransactionNamedAfterTheOperation)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Tenfold);
	PlaceSelected(MakeMesh(TEXT("Stone")), Tilted);
	Run();
	Run(EChoice::Cancel, FTarvinOperation::SetPivot(ETarvinPivotPosition::Top));
	ASSERT_EQ(Transactions().GetQueueLength(), 2);
	const TCHAR* const Titles[] = {TEXT("Bake Transform"), TEXT("Set Pivot")};
	for (const int32 Index : {0, 1})
	{
		const FTransactionContext& Context = Transactions().GetTransaction(Index).GetContext();
		EXPECT_EQ(Context.Context, TEXT("TarvinTransform"));
		EXPECT_EQ(Context.Title.ToString(), Titles[Index]);
		EXPECT_EQ(Context.PrimaryObject.Get(), nullptr);
	}
}

TEST_F(Running, AllThatIsChangedIsRecordedAndNothingElse)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Baked = PlaceSelected(Rock, Tenfold);
	USceneComponent* const Child = PlaceFrame(Tilted);
	Child->AttachToComponent(Baked, EAttachmentRule::KeepWorld);
	USceneComponent* const Grandchild = PlaceFrame(Tilted);
	Grandchild->AttachToComponent(Child, EAttachmentRule::KeepWorld);
	Place(MakeMesh(TEXT("Wall")));
	Run();
	EXPECT_THAT(Transactions().GetTransaction(0).GetObjects(),
		testing::UnorderedElementsAre(Rock, Baked, Baked->GetOwner(), Child, Child->GetOwner()));
}

TEST_F(Running, MeshIsSetWhereItIsAnotherAndThroughTheComponentsOwnSetter)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMesh* const Stone = MakeMesh(TEXT("Stone"));
	std::vector<UWatchfulComponent*> Components;
	for (UStaticMesh* Mesh : {Rock, Stone})
	{
		AActor* const Actor = World()->SpawnActor<AActor>();
		Components.push_back(Actor->AddComponent<UWatchfulComponent>());
		Components.back()->SetStaticMesh(Mesh);
		Components.back()->NumSets = 0;
		GEditor->SelectActor(Actor, true);
	}
	Place(Rock);
	EXPECT_EQ(Counts(Run(EChoice::Duplicate)), (FCounts{2, 2, 1, 0}));
	EXPECT_EQ(Components[0]->NumSets, 1);
	EXPECT_EQ(Components[1]->NumSets, 0);
}

TEST_F(Running, ChangedAssetsAreDirtyAndTheOthersAreNot)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMesh* const Stone = MakeMesh(TEXT("Stone"));
	UStaticMeshComponent* const Selected = PlaceSelected(Rock, Tenfold);
	PlaceSelected(Stone, Tenfold);
	Place(Rock);
	Run(EChoice::Duplicate);
	EXPECT_FALSE(Rock->GetOutermost()->IsDirty());
	EXPECT_TRUE(Stone->GetOutermost()->IsDirty());
	EXPECT_TRUE(MeshOf(Selected)->GetOutermost()->IsDirty());
}

TEST_F(Running, OwnersAreToldOnceThatTheMoveIsOver)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const First = PlaceSelected(Rock, Tenfold);
	UStaticMeshComponent* const Second = First->GetOwner()->AddComponent<UStaticMeshComponent>();
	Second->SetStaticMesh(MakeMesh(TEXT("Stone")));
	USceneComponent* const Child = PlaceFrame(Tilted);
	Child->AttachToComponent(First, EAttachmentRule::KeepWorld);
	UStaticMeshComponent* const Unconcerned = Place(MakeMesh(TEXT("Wall")));
	Run();
	EXPECT_EQ(First->GetOwner()->GetNumFinishedMoves(), 1);
	EXPECT_EQ(Child->GetOwner()->GetNumFinishedMoves(), 1) << "it was put back into its place";
	EXPECT_EQ(Unconcerned->GetOwner()->GetNumFinishedMoves(), 0);
}

TEST_F(Running, OnlyBakedComponentsAreDrawnAnew)
{
	UStaticMeshComponent* const Baked = PlaceSelected(MakeMesh(TEXT("Rock")), Tenfold);
	UStaticMeshComponent* const Child = Place(MakeMesh(TEXT("Stone")), Tilted);
	Child->AttachToComponent(Baked, EAttachmentRule::KeepWorld);
	const uint32 BakedBefore = Baked->GetRenderStateRevision();
	const uint32 ChildBefore = Child->GetRenderStateRevision();
	Run();
	EXPECT_EQ(Baked->GetRenderStateRevision(), BakedBefore + 1);
	EXPECT_EQ(Child->GetRenderStateRevision(), ChildBefore);
}

TEST_F(Running, OtherUsersOfAnotherWorldAreNotAskedAbout)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	PlaceSelected(Rock, Tenfold);
	ASSERT_TRUE(GEditor->StartPlaySession());
	EXPECT_EQ(Counts(Run()), (FCounts{1, 1, 0, 0}));
	EXPECT_TRUE(Questions.empty());
}
}
