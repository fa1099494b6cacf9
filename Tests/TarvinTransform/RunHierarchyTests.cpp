// SPDX-License-Identifier: MIT
#include "RunFixture.h"

namespace
{
using FCounts = std::vector<int32>;

const FVector Up(0, 0, 1);
const FQuat Turned30 = Turn(FVector(1, 2, 3).GetSafeNormal(), 30);

class RunInATree : public FRunTest
{
protected:
	UStaticMeshComponent* PlaceUnder(USceneComponent* Parent, const FTransform& Relative, const TCHAR* MeshName)
	{
		UStaticMeshComponent* const Component = Place(MakeMesh(MeshName));
		Component->AttachToComponent(Parent);
		Component->SetRelativeTransform(Relative);
		return Component;
	}

	static USceneComponent* PlaceFrameUnder(USceneComponent* Parent, const FTransform& Relative)
	{
		USceneComponent* const Frame = PlaceFrame(FTransform());
		Frame->AttachToComponent(Parent);
		Frame->SetRelativeTransform(Relative);
		return Frame;
	}
};

TEST_F(RunInATree, LightOnABakedPropKeepsItsPlaceRotationAndScale)
{
	UStaticMeshComponent* const Prop =
		PlaceSelected(MakeMesh(TEXT("Rock")), FTransform(Turned30, FVector(500, -200, 30), FVector(10, 10, 10)));
	USceneComponent* const Light =
		PlaceFrameUnder(Prop, FTransform(Turn(Up, 40), FVector(7, 8, 9), FVector(0.5, 0.25, 2)));
	const FTransform Before = Light->GetComponentTransform();
	EXPECT_EQ(Counts(Run()), (FCounts{1, 1, 0, 0})) << "the light itself is not counted";
	EXPECT_EQ(Prop->GetComponentTransform(), At(FVector(500, -200, 30)));
	EXPECT_TRUE(Near(Light->GetComponentTransform(), Before, 1.e-9));
	EXPECT_TRUE(Near(Light->GetRelativeTransform().GetScale3D(), FVector(5, 2.5, 20), 1.e-9));
}

TEST_F(RunInATree, ComponentOfTheSameActorKeepsItsPlaceToo)
{
	UStaticMeshComponent* const Prop =
		PlaceSelected(MakeMesh(TEXT("Rock")), FTransform(Turned30, FVector(1, 2, 3), FVector(2, 2, 2)));
	USceneComponent* const Lamp = Prop->GetOwner()->AddComponent<USceneComponent>();
	Lamp->SetRelativeTransform(FTransform(FVector(7, 8, 9)));
	const FTransform Before = Lamp->GetComponentTransform();
	Run();
	EXPECT_TRUE(Near(Lamp->GetComponentTransform(), Before, 1.e-9));
	EXPECT_EQ(Prop->GetOwner()->GetNumFinishedMoves(), 1);
}

TEST_F(RunInATree, SelectedChildAndParentBothStayInPlaceAndLoseRotationAndScale)
{
	for (const bool bChildSelectedFirst : {false, true})
	{
		GEditor->SelectNone();
		UStaticMeshComponent* const Parent = Place(MakeMesh(bChildSelectedFirst ? TEXT("Rock1") : TEXT("Rock0")),
			FTransform(Turned30, FVector(500, -200, 30), FVector(-2, -2, -2)));
		UStaticMeshComponent* const Child =
			PlaceUnder(Parent, FTransform(Turn(Up, 70), FVector(7, 8, 9), FVector(3, 5, 7)),
				bChildSelectedFirst ? TEXT("C1") : TEXT("C0"));
		Select(bChildSelectedFirst ? Child : Parent);
		Select(bChildSelectedFirst ? Parent : Child);
		const FVector ChildPlace = Child->GetComponentLocation();
		const TArray<FVector> ParentBefore = WorldPositions(Parent);
		const TArray<FVector> ChildBefore = WorldPositions(Child);
		EXPECT_EQ(Counts(Run()), (FCounts{2, 2, 0, 0}));
		EXPECT_TRUE(Near(Parent->GetComponentTransform(), At(FVector(500, -200, 30)), 1.e-9));
		EXPECT_TRUE(Near(Child->GetComponentTransform(), At(ChildPlace), 1.e-9));
		EXPECT_TRUE(Near(WorldPositions(Parent), ParentBefore));
		EXPECT_TRUE(Near(WorldPositions(Child), ChildBefore));
	}
}

TEST_F(RunInATree, UnselectedChildBetweenTwoBakedOnesIsPutBackBeforeTheDeeperOneGetsItsPlace)
{
	UStaticMeshComponent* const Root =
		PlaceSelected(MakeMesh(TEXT("Root")), FTransform(Turned30, FVector(500, -200, 30), FVector(10, 10, 10)));
	USceneComponent* const Between =
		PlaceFrameUnder(Root, FTransform(Turn(Up, 25), FVector(7, 8, 9), FVector(2, 2, 2)));
	UStaticMeshComponent* const Grandchild =
		PlaceUnder(Between, FTransform(Turn(FVector(1, 0, 0), 50), FVector(3, -4, 5), FVector(1, 2, 3)), TEXT("Leaf"));
	Select(Grandchild);
	const FTransform BetweenBefore = Between->GetComponentTransform();
	const FVector GrandchildPlace = Grandchild->GetComponentLocation();
	const TArray<FVector> GrandchildBefore = WorldPositions(Grandchild);
	EXPECT_EQ(Counts(Run()), (FCounts{2, 2, 0, 0}));
	EXPECT_EQ(Root->GetComponentTransform(), At(FVector(500, -200, 30)));
	EXPECT_TRUE(Near(Between->GetComponentTransform(), BetweenBefore, 1.e-9));
	EXPECT_TRUE(Near(Grandchild->GetComponentTransform(), At(GrandchildPlace), 1.e-9));
	EXPECT_TRUE(Near(WorldPositions(Grandchild), GrandchildBefore));
}

TEST_F(RunInATree, DeeperDescendantsFollowTheirRestoredParentUnrecorded)
{
	UStaticMeshComponent* const Root =
		PlaceSelected(MakeMesh(TEXT("Root")), FTransform(Turned30, FVector(1, 2, 3), FVector(2, 2, 2)));
	USceneComponent* const Child = PlaceFrameUnder(Root, FTransform(Turn(Up, 25), FVector(7, 8, 9)));
	USceneComponent* const Grandchild = PlaceFrameUnder(Child, FTransform(Turn(Up, 5), FVector(4, 5, 6)));
	const FTransform Relative = Grandchild->GetRelativeTransform();
	const FTransform Before = Grandchild->GetComponentTransform();
	Run();
	EXPECT_EQ(Grandchild->GetRelativeTransform(), Relative);
	EXPECT_TRUE(Near(Grandchild->GetComponentTransform(), Before, 1.e-9));
	EXPECT_FALSE(Transactions().GetTransaction(0).GetObjects().Contains(Grandchild));
	EXPECT_EQ(Grandchild->GetOwner()->GetNumFinishedMoves(), 0);
}

TEST_F(RunInATree, ChildrenOfAnAssetThatWasLeftAloneAreNotTouched)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Cancelled = PlaceSelected(Rock, FTransform(Turned30, FVector(), FVector(2, 2, 2)));
	Place(Rock);
	USceneComponent* const Child = PlaceFrameUnder(Cancelled, FTransform(FVector(7, 8, 9)));
	PlaceSelected(MakeMesh(TEXT("Stone")), FTransform(Turned30));
	const FTransform Relative = Child->GetRelativeTransform();
	EXPECT_EQ(Counts(Run(ETarvinSharedAssetChoice::Cancel)), (FCounts{1, 1, 0, 1}));
	EXPECT_EQ(Child->GetRelativeTransform(), Relative);
	EXPECT_EQ(Child->GetOwner()->GetNumFinishedMoves(), 0);
}

/// A parent, a component in it, and the place of its vertices before.
struct FAncestorCase
{
	const char* Name;
	std::vector<FTransform> Ancestors; ///< from the outermost to the parent, each relative to the one before
};

class BakeUnder : public RunInATree, public testing::WithParamInterface<FAncestorCase>
{
};

TEST_P(BakeUnder, KeepsEveryVertexAndLeavesAPlainPlace)
{
	USceneComponent* Parent = PlaceFrame(FTransform(FVector(1, 2, 3)));
	for (const FTransform& Relative : GetParam().Ancestors)
	{
		Parent = PlaceFrameUnder(Parent, Relative);
	}
	const std::pair<const TCHAR*, FTransform> Cases[] = {{TEXT("Plain"), FTransform(FVector(7, 8, 9))},
		{TEXT("Quarter"), FTransform(Turn(Up, 90), FVector(7, 8, 9), FVector(2, 3, 5))},
		{TEXT("Mirrored"), FTransform(Turn(FVector(1, 0, 0), 180), FVector(7, 8, 9), FVector(-2, 3, 5))}};
	for (const auto& [MeshName, Relative] : Cases)
	{
		UStaticMeshComponent* const Component = PlaceUnder(Parent, Relative, MeshName);
		GEditor->SelectNone();
		Select(Component);
		const TArray<FVector> Before = WorldPositions(Component);
		const FVector Location = Component->GetComponentLocation();
		EXPECT_EQ(Counts(Run()), (FCounts{1, 1, 0, 0}));
		EXPECT_TRUE(Near(WorldPositions(Component), Before, 1.e-3));
		EXPECT_TRUE(Near(Component->GetComponentTransform(), At(Location), 1.e-9));
	}
}

INSTANTIATE_TEST_SUITE_P(Ancestors, BakeUnder,
	testing::Values(FAncestorCase{"Mirrored", {FTransform(Turned30, FVector(4, 5, 6), FVector(-2, 2, 2))}},
		FAncestorCase{"MirroredTwice", {FTransform(FQuat::Identity, FVector(4, 5, 6), FVector(-1, 1, 1)),
										   FTransform(Turned30, FVector(-4, 5, 6), FVector(3, -3, 3))}},
		FAncestorCase{
			"QuarterTurned", {FTransform(Turn(Up, 90), FVector(4, 5, 6), FVector(3, 3, 3)),
								 FTransform(Turn(FVector(1, 0, 0), -90), FVector(-4, 5, 6), FVector(1, -1, 1))}},
		FAncestorCase{"UnevenUnturned", {FTransform(FQuat::Identity, FVector(4, 5, 6), FVector(1, -2, 3))}},
		FAncestorCase{"QuarterTurnThatIsTakenBack", {FTransform(FQuat::Identity, FVector(4, 5, 6), FVector(1, 2, 3)),
														FTransform(Turn(Up, 90)), FTransform(Turn(Up, -90))}}),
	[](const testing::TestParamInfo<FAncestorCase>& Info) { return Info.param.Name; });

TEST_F(RunInATree, ComponentUnderAShearedParentIsSkipped)
{
	USceneComponent* const Stretched = PlaceFrame(FTransform(FQuat::Identity, FVector(1, 2, 3), FVector(1, 2, 3)));
	USceneComponent* const Sheared = PlaceFrameUnder(Stretched, FTransform(Turn(Up, 30)));
	UStaticMeshComponent* const Component = PlaceUnder(Sheared, FTransform(FVector(7, 8, 9)), TEXT("Rock"));
	Select(Component);
	const FWorldState Before = State();
	FTarvinRunResult Skips;
	EXPECT_EQ(FTarvinSelectionAction::GatherFromSelection(Skips, FTarvinOperation::RotationScaleBake()).Num(), 0);
	EXPECT_EQ(Skips.SkippedUnrepresentable, 1);
	EXPECT_EQ(Counts(Run()), (FCounts{0, 0, 0, 0}));
	EXPECT_TRUE(IsSameState(Before, State()));
}

TEST_F(RunInATree, ComponentBelowAShearedAncestorIsBakedWhenItsOwnParentIsPlain)
{
	USceneComponent* const Stretched = PlaceFrame(FTransform(FQuat::Identity, FVector(1, 2, 3), FVector(1, 2, 3)));
	USceneComponent* const Sheared = PlaceFrameUnder(Stretched, FTransform(Turn(Up, 30)));
	USceneComponent* const Plain = PlaceFrameUnder(Sheared, FTransform());
	Plain->SetWorldTransform(FTransform(Turn(Up, 10), FVector(4, 5, 6), FVector(2, 2, 2)));
	UStaticMeshComponent* const Component =
		PlaceUnder(Plain, FTransform(Turned30, FVector(7, 8, 9), FVector(3, -5, 7)), TEXT("Rock"));
	Select(Component);
	const TArray<FVector> Before = WorldPositions(Component);
	const FVector Location = Component->GetComponentLocation();
	EXPECT_EQ(Counts(Run()), (FCounts{1, 1, 0, 0}));
	EXPECT_TRUE(Near(WorldPositions(Component), Before, 1.e-3));
	EXPECT_TRUE(Near(Component->GetComponentTransform(), At(Location), 1.e-9));
}
}
