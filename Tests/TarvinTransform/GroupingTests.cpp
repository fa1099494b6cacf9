// SPDX-License-Identifier: MIT
#include "ModuleFixture.h"
#include "TarvinGrouping.h"

#include "CoreUObject/GarbageCollector.h"

#include <gmock/gmock.h>

namespace
{
using testing::ElementsAre;

constexpr double Tolerance = 9.999999747378752e-05;

class Grouping : public FModuleTest
{
protected:
	void Add(UStaticMesh* Mesh, const FVector& Scale, const FQuat& Rotation = FQuat::Identity,
		const FVector& Location = FVector::ZeroVector)
	{
		Items.Add({nullptr, Mesh, FTransform(Rotation, Location, Scale)});
	}

	/// Whether one item of that transform would join a first one of the other.
	bool AreOneGroup(const FTransform& First, const FTransform& Second)
	{
		Items.Reset();
		Items.Add({nullptr, A, First});
		Items.Add({nullptr, A, Second});
		return FTarvinGrouping::Build(Items).Num() == 1;
	}

	UStaticMesh* A = MakeMesh(TEXT("A"));
	UStaticMesh* B = MakeMesh(TEXT("B"));
	TArray<FTarvinItem> Items;
};

TEST_F(Grouping, NothingGivesNothing)
{
	EXPECT_EQ(FTarvinGrouping::Build({}).Num(), 0);
}

TEST_F(Grouping, OneGroupForEachAssetAndScaleInTheOrderOfTheirFirstItems)
{
	Add(A, FVector(10, 10, 10));
	Add(A, FVector(10, 10, 10), FQuat::Identity, FVector(500, -200, 30));
	Add(A, FVector(5, 5, 5));
	Add(B, FVector(10, 10, 10));
	const TArray<FTarvinGroup> Groups = FTarvinGrouping::Build(Items);
	ASSERT_EQ(Groups.Num(), 3);
	EXPECT_EQ(Groups[0].Mesh.Get(), A);
	EXPECT_THAT(Groups[0].ItemIndices, ElementsAre(0, 1));
	EXPECT_EQ(Groups[1].Mesh.Get(), A);
	EXPECT_THAT(Groups[1].ItemIndices, ElementsAre(2));
	EXPECT_EQ(Groups[2].Mesh.Get(), B);
	EXPECT_THAT(Groups[2].ItemIndices, ElementsAre(3));
	EXPECT_TRUE(Groups[0].bConflict);
	EXPECT_TRUE(Groups[1].bConflict);
	EXPECT_FALSE(Groups[2].bConflict);
}

TEST_F(Grouping, GroupBakesRotationAndScaleOfItsFirstItemWithoutItsPlace)
{
	const FQuat Rotation = Turn(FVector(0, 1, 0), 30);
	Add(A, FVector(2, -3, 5), Rotation, FVector(7, 8, 9));
	EXPECT_EQ(FTarvinGrouping::Build(Items)[0].Bake, FTransform(Rotation, FVector(0, 0, 0), FVector(2, -3, 5)));
}

TEST_F(Grouping, ItemsOfAGroupNeedNotBeNeighbours)
{
	Add(A, FVector(2, 2, 2));
	Add(B, FVector(2, 2, 2));
	Add(A, FVector(2, 2, 2));
	const TArray<FTarvinGroup> Groups = FTarvinGrouping::Build(Items);
	ASSERT_EQ(Groups.Num(), 2);
	EXPECT_THAT(Groups[0].ItemIndices, ElementsAre(0, 2));
	EXPECT_THAT(Groups[1].ItemIndices, ElementsAre(1));
	EXPECT_FALSE(Groups[0].bConflict);
}

TEST_F(Grouping, ScalesAreEqualUpToTheTolerance)
{
	const FTransform Unit;
	const auto Scaled = [](double X, double Y, double Z)
	{ return FTransform(FQuat::Identity, FVector(), FVector(X, Y, Z)); };
	EXPECT_TRUE(AreOneGroup(Unit, Scaled(1 + 9.9e-5, 1 - 9.9e-5, 1 + 9.9e-5)));
	EXPECT_FALSE(AreOneGroup(Unit, Scaled(1.00011, 1, 1)));
	EXPECT_FALSE(AreOneGroup(Unit, Scaled(1, 0.99989, 1)));
	EXPECT_FALSE(AreOneGroup(Unit, Scaled(1, 1, 1.00011)));
	EXPECT_FALSE(AreOneGroup(Unit, Scaled(1, 1, -1))) << "a mirror is another shape";
	// The edge itself, from zero, where no bit is lost.
	EXPECT_TRUE(AreOneGroup(Scaled(0, 1, 1), Scaled(Tolerance, 1, 1)));
	EXPECT_FALSE(AreOneGroup(Scaled(0, 1, 1), Scaled(1.e-4, 1, 1)));
}

TEST_F(Grouping, RotationsAreEqualUpToTheToleranceInEveryComponent)
{
	const FTransform Unturned;
	EXPECT_TRUE(AreOneGroup(Unturned, FTransform(FQuat(9.9e-5, -9.9e-5, 9.9e-5, 1))));
	EXPECT_TRUE(AreOneGroup(Unturned, FTransform(FQuat(0, 0, Tolerance, 1))));
	EXPECT_FALSE(AreOneGroup(Unturned, FTransform(FQuat(0, 0, 1.e-4, 1))));
	EXPECT_FALSE(AreOneGroup(Unturned, FTransform(FQuat(1.1e-4, 0, 0, 1))));
}

TEST_F(Grouping, QuaternionAndItsNegationAreOneRotation)
{
	const FQuat Rotation = Turn(FVector(1, 0, 0), 77);
	const FQuat Negated(-Rotation.X, -Rotation.Y, -Rotation.Z, -Rotation.W);
	EXPECT_TRUE(AreOneGroup(FTransform(Rotation), FTransform(Negated)));
	const FQuat NearlyNegated(-Rotation.X + 9.e-5, -Rotation.Y, -Rotation.Z, -Rotation.W);
	EXPECT_TRUE(AreOneGroup(FTransform(Rotation), FTransform(NearlyNegated)));
}

TEST_F(Grouping, FirstItemFixesTheBakeHoweverFarAChainOfNeighboursReaches)
{
	for (const double X : {1.0, 1.00009, 1.00018})
	{
		Add(A, FVector(X, 1, 1));
	}
	const TArray<FTarvinGroup> Groups = FTarvinGrouping::Build(Items);
	ASSERT_EQ(Groups.Num(), 2) << "the third is compared with the first, not with the second";
	EXPECT_THAT(Groups[0].ItemIndices, ElementsAre(0, 1));
	EXPECT_EQ(Groups[0].Bake.GetScale3D(), FVector(1, 1, 1));
}

TEST_F(Grouping, ItemThatFitsTwoGroupsJoinsTheFirst)
{
	for (const double X : {1.0, 1.00015, 1.00008})
	{
		Add(A, FVector(X, 1, 1));
	}
	const TArray<FTarvinGroup> Groups = FTarvinGrouping::Build(Items);
	ASSERT_EQ(Groups.Num(), 2);
	EXPECT_THAT(Groups[0].ItemIndices, ElementsAre(0, 2));
}

TEST_F(Grouping, BakesThatDifferInTranslationOnlyAreOneGroupWithTheFirstsTransform)
{
	Add(A, FVector(1, 1, 1), FQuat::Identity, FVector(7, 0, 0));
	Add(A, FVector(1, 1, 1), FQuat::Identity, FVector(0, -9, 0));
	const TArray<FTarvinGroup> Groups = FTarvinGrouping::Build(Items,
		[](const FTarvinItem& Item, FTransform& OutBake)
		{
			OutBake = FTransform(Item.WorldTransform.GetTranslation());
			return true;
		});
	ASSERT_EQ(Groups.Num(), 1);
	EXPECT_THAT(Groups[0].ItemIndices, ElementsAre(0, 1));
	EXPECT_EQ(Groups[0].Bake.GetTranslation(), FVector(7, 0, 0));
	EXPECT_FALSE(Groups[0].bConflict);
}

TEST_F(Grouping, ItemWithoutAMeshOrABakeIsInNoGroupAndMakesNoConflict)
{
	Add(nullptr, FVector(2, 2, 2));
	Add(A, FVector(2, 2, 2));
	Add(A, FVector(3, 3, 3));
	Add(B, FVector(5, 5, 5));
	int32 Asked = 0;
	const TArray<FTarvinGroup> Groups = FTarvinGrouping::Build(Items,
		[&Asked](const FTarvinItem& Item, FTransform& OutBake)
		{
			++Asked;
			EXPECT_EQ(OutBake, FTransform()) << "preset to the identity";
			OutBake.SetScale3D(Item.WorldTransform.GetScale3D());
			return OutBake.GetScale3D().X != 3.0;
		});
	EXPECT_EQ(Asked, 3) << "an item without a mesh is not asked about";
	ASSERT_EQ(Groups.Num(), 2);
	EXPECT_THAT(Groups[0].ItemIndices, ElementsAre(1));
	EXPECT_FALSE(Groups[0].bConflict);
	EXPECT_THAT(Groups[1].ItemIndices, ElementsAre(3));
}

TEST_F(Grouping, ItemWhoseMeshWasDeletedIsInNoGroupEvenBeforeItIsCollected)
{
	Add(A, FVector(2, 2, 2));
	Add(A, FVector(3, 3, 3));
	A->MarkAsGarbage();
	ASSERT_EQ(Items[0].Mesh.Get(), A);
	EXPECT_EQ(FTarvinGrouping::Build(Items).Num(), 0);
}

TEST_F(Grouping, ItemWhoseMeshWasDeletedOrCollectedIsInNoGroup)
{
	Add(A, FVector(2, 2, 2));
	Add(B, FVector(3, 3, 3));
	UStaticMesh* const Unused = NewObject<UStaticMesh>();
	Add(Unused, FVector(4, 4, 4));
	A->MarkAsGarbage();
	CollectGarbage();
	ASSERT_EQ(Items[2].Mesh.Get(), nullptr);
	const TArray<FTarvinGroup> Groups = FTarvinGrouping::Build(Items);
	ASSERT_EQ(Groups.Num(), 1);
	EXPECT_THAT(Groups[0].ItemIndices, ElementsAre(1));
}

TEST_F(Grouping, ThreeShapesOfOneAssetAreThreeConflicts)
{
	for (const double Scale : {2.0, 3.0, 5.0})
	{
		Add(A, FVector(Scale, Scale, Scale));
	}
	const TArray<FTarvinGroup> Groups = FTarvinGrouping::Build(Items);
	ASSERT_EQ(Groups.Num(), 3);
	for (const FTarvinGroup& Group : Groups)
	{
		EXPECT_TRUE(Group.bConflict);
	}
}
}
