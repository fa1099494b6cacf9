// SPDX-License-Identifier: MIT
#include "CollisionFixture.h"

#include "Core/Rotator.h"

namespace
{
const FRotator Turned45(0, 45, 0);

class CollisionBake : public FCollisionTest
{
};

TEST_F(CollisionBake, BoxUnderUniformScaleMovesAndGrowsExactly)
{
	Shapes().BoxElems.Add({FVector(5, 0, 0), FRotator(), 10, 10, 10});
	EXPECT_TRUE(Bake(Scaled(2, 2, 2)));
	EXPECT_EQ(Shapes().BoxElems[0], (FKBoxElem{FVector(10, 0, 0), FRotator(), 20, 20, 20}));
	EXPECT_FALSE(Stats.bCollisionApproximate);
	EXPECT_TRUE(OpLines().empty());
}

TEST_F(CollisionBake, OneOfEachKindUnderUniformScaleIsDoubledAndCounted)
{
	Shapes().SphereElems.Add({FVector(1, 2, 3), 4});
	Shapes().BoxElems.Add({FVector(5, 6, 7), FRotator(), 1, 2, 3});
	Shapes().SphylElems.Add({FVector(-1, -2, -3), FRotator(), 3, 7});
	Shapes().ConvexElems.Add(MakeHull());
	EXPECT_TRUE(Bake(Scaled(2, 2, 2)));
	EXPECT_EQ(Shapes().SphereElems[0], (FKSphereElem{FVector(2, 4, 6), 8}));
	EXPECT_EQ(Shapes().BoxElems[0], (FKBoxElem{FVector(10, 12, 14), FRotator(), 2, 4, 6}));
	EXPECT_EQ(Shapes().SphylElems[0], (FKSphylElem{FVector(-2, -4, -6), FRotator(), 6, 14}));
	const TArray<FVector> Hull = MakeHull().VertexData;
	for (int32 Index = 0; Index < Hull.Num(); ++Index)
	{
		EXPECT_EQ(Shapes().ConvexElems[0].VertexData[Index], Hull[Index] * 2.0);
	}
	EXPECT_EQ(Stats.NumCollisionElemsBaked, 4);
	EXPECT_FALSE(Stats.bCollisionApproximate);
	EXPECT_TRUE(OpLines().empty());
}

TEST_F(CollisionBake, PlacesAreScaledTurnedAndMoved)
{
	const FTransform Move(Turn(FVector(0, 0, 1), 90), FVector(10, 20, 30), FVector(2, 2, 2));
	Shapes().SphereElems.Add({FVector(1, 2, 3), 4});
	Shapes().BoxElems.Add({FVector(1, 2, 3), FRotator(0, 30, 0), 1, 2, 3});
	Shapes().SphylElems.Add({FVector(1, 2, 3), FRotator(0, 0, 40), 3, 7});
	EXPECT_TRUE(Bake(Move));
	EXPECT_TRUE(Near(Shapes().SphereElems[0].Center, FVector(6, 22, 36), 1.e-9));
	EXPECT_TRUE(Near(Shapes().BoxElems[0].Center, FVector(6, 22, 36), 1.e-9));
	EXPECT_TRUE(Near(Shapes().SphylElems[0].Center, FVector(6, 22, 36), 1.e-9));
	EXPECT_TRUE(Shapes().BoxElems[0].Rotation.Equals(FRotator(0, 120, 0), 1.e-9));
	EXPECT_TRUE(Shapes().SphylElems[0].Rotation.Equals(FRotator(0, 90, 40), 1.e-9));
}

TEST_F(CollisionBake, SphereUnderUnevenScaleTakesTheSmallestFactorAndIsApproximate)
{
	Shapes().SphereElems.Add({FVector(1, 1, 1), 4});
	EXPECT_TRUE(Bake(Scaled(1, 2, 3)));
	EXPECT_EQ(Shapes().SphereElems[0], (FKSphereElem{FVector(1, 2, 3), 4}));
	EXPECT_TRUE(Stats.bCollisionApproximate);
	EXPECT_EQ(Stats.NumCollisionElemsBaked, 1);
	EXPECT_EQ(OpLines(),
		(FLines{
			"Warning: Rock: non-uniform scale (X=1.000 Y=2.000 Z=3.000) -- sphere / capsule / rotated box collision is "
			"approximate"}));
}

TEST_F(CollisionBake, SmallestFactorCountsWithoutItsSign)
{
	Shapes().SphereElems.Add({FVector(1, 1, 1), 4});
	EXPECT_TRUE(Bake(Scaled(3, 5, -2)));
	EXPECT_EQ(Shapes().SphereElems[0], (FKSphereElem{FVector(3, 5, -2), 8}));
}

TEST_F(CollisionBake, CapsuleTakesTheWiderFactorAcrossAndItsHeightAlong)
{
	struct FCase
	{
		FVector Scale;
		float Radius, Length;       ///< before
		float NewRadius, NewLength; ///< after
	};
	const FCase Cases[] = {
		{FVector(2, 2, 1), 10, 20, 20, 0.1f},  // h = 20, so that nothing is left between the half balls
		{FVector(2, 3, 5), 10, 20, 30, 140},   // h = 100
		{FVector(-3, 2, -5), 10, 20, 30, 140}, // signs do not matter
		{FVector(5, 5, 0.5), 10, 20, 10, 0.1f},
		{FVector(1, 1, 0.001), 10, 20, 0.1f, 0.1f},
		{FVector(0.001, 0.001, 2), 10, 20, 0.1f, 79.8f},
	};
	for (const FCase& Case : Cases)
	{
		Shapes() = FKAggregateGeom();
		Shapes().SphylElems.Add({FVector(1, 2, 3), FRotator(), Case.Radius, Case.Length});
		EXPECT_TRUE(Bake(FTransform(FQuat::Identity, FVector(), Case.Scale)));
		EXPECT_FLOAT_EQ(Shapes().SphylElems[0].Radius, Case.NewRadius) << Utf8(Case.Scale.ToString());
		EXPECT_FLOAT_EQ(Shapes().SphylElems[0].Length, Case.NewLength) << Utf8(Case.Scale.ToString());
		EXPECT_TRUE(Stats.bCollisionApproximate);
	}
}

TEST_F(CollisionBake, UnturnedBoxUnderUnevenScaleIsExactAndATurnedOneIsNot)
{
	Shapes().BoxElems.Add({FVector(1, 1, 1), FRotator(), 1, 2, 3});
	EXPECT_TRUE(Bake(Scaled(2, -3, 5)));
	EXPECT_EQ(Shapes().BoxElems[0].Center, FVector(2, -3, 5));
	EXPECT_EQ(Shapes().BoxElems[0].X, 2.f);
	EXPECT_EQ(Shapes().BoxElems[0].Y, 6.f);
	EXPECT_EQ(Shapes().BoxElems[0].Z, 15.f);
	EXPECT_FALSE(Stats.bCollisionApproximate);
	EXPECT_TRUE(OpLines().empty());

	Shapes().BoxElems[0] = {FVector(1, 1, 1), Turned45, 1, 2, 3};
	EXPECT_TRUE(Bake(Scaled(2, 3, 5)));
	EXPECT_EQ(Shapes().BoxElems[0].X, 2.f) << "sizes go by the factors of the mesh's axes";
	EXPECT_EQ(Shapes().BoxElems[0].Y, 6.f);
	EXPECT_EQ(Shapes().BoxElems[0].Z, 15.f);
	EXPECT_TRUE(Stats.bCollisionApproximate);
	EXPECT_EQ(OpLines().size(), 1u);
}

TEST_F(CollisionBake, WholeTurnsCountAsUnturned)
{
	for (const FRotator& Rotation : {FRotator(0, 360, 0), FRotator(-360, 0, 720), FRotator(9.e-5, -9.e-5, 0)})
	{
		Shapes() = FKAggregateGeom();
		Shapes().BoxElems.Add({FVector(), Rotation, 1, 2, 3});
		EXPECT_TRUE(Bake(Scaled(1, 2, 3)));
		EXPECT_FALSE(Stats.bCollisionApproximate);
	}
	for (const FRotator& Rotation : {FRotator(1.1e-4, 0, 0), FRotator(0, 359.9998, 0), FRotator(0, 0, -1.1e-4)})
	{
		Shapes() = FKAggregateGeom();
		Shapes().BoxElems.Add({FVector(), Rotation, 1, 2, 3});
		EXPECT_TRUE(Bake(Scaled(1, 2, 3)));
		EXPECT_TRUE(Stats.bCollisionApproximate);
	}
}

TEST_F(CollisionBake, HullTakesItsOwnPlacementAndTheBakeIntoItsPoints)
{
	const FTransform Own(Turn(FVector(0, 0, 1), 90), FVector(1, 2, 3), FVector(1, 2, 1));
	const FTransform Move(Turn(FVector(1, 0, 0), 90), FVector(4, 5, 6), FVector(2, 3, 5));
	FKConvexElem Hull = MakeHull();
	Hull.SetTransform(Own);
	Hull.IndexData = {0, 1, 2};
	Shapes().ConvexElems.Add(Hull);
	EXPECT_TRUE(Bake(Move));
	const FKConvexElem& Baked = Shapes().ConvexElems[0];
	EXPECT_EQ(Baked.GetTransform(), FTransform());
	EXPECT_EQ(Baked.IndexData.Num(), 0);
	FBox Box;
	for (int32 Index = 0; Index < Hull.VertexData.Num(); ++Index)
	{
		EXPECT_EQ(Baked.VertexData[Index], Move.TransformPosition(Own.TransformPosition(Hull.VertexData[Index])));
		Box += Baked.VertexData[Index];
	}
	EXPECT_EQ(Baked.ElemBox, Box);
	EXPECT_FALSE(Stats.bCollisionApproximate) << "a hull is exact under any scale";
	EXPECT_TRUE(OpLines().empty());
}

TEST_F(CollisionBake, MirroredUniformScaleIsExact)
{
	Shapes().SphereElems.Add({FVector(1, 2, 3), 4});
	Shapes().BoxElems.Add({FVector(1, 2, 3), Turned45, 1, 2, 3});
	Shapes().SphylElems.Add({FVector(1, 2, 3), FRotator(), 3, 7});
	EXPECT_TRUE(Bake(Scaled(-1, -1, -1)));
	EXPECT_FALSE(Stats.bCollisionApproximate);
	EXPECT_TRUE(OpLines().empty());
	EXPECT_EQ(Shapes().SphereElems[0], (FKSphereElem{FVector(-1, -2, -3), 4}));
	EXPECT_EQ(Shapes().BoxElems[0].X, 1.f);
	EXPECT_EQ(Shapes().SphylElems[0].Radius, 3.f);
	EXPECT_EQ(Shapes().SphylElems[0].Length, 7.f);
}

TEST_F(CollisionBake, ScaleIsUniformUpToAThousandth)
{
	Shapes().SphereElems.Add({FVector(), 4});
	EXPECT_TRUE(Bake(Scaled(2, 2.0009, -1.9991)));
	EXPECT_FALSE(Stats.bCollisionApproximate);
	EXPECT_TRUE(Bake(Scaled(2, 2.0011, 2)));
	EXPECT_TRUE(Stats.bCollisionApproximate);
}

TEST_F(CollisionBake, UnsupportedKindsAreLeftAloneAndTold)
{
	Shapes().TaperedCapsuleElems.Add({FVector(1, 2, 3), Turned45, 3, 2, 7});
	Shapes().LevelSetElems.SetNum(1);
	Shapes().SkinnedLevelSetElems.SetNum(2);
	Shapes().MLLevelSetElems.SetNum(1);
	Shapes().SkinnedTriangleMeshElems.SetNum(1);
	const FKAggregateGeom Before = Shapes();
	EXPECT_TRUE(Bake(Scaled(2, 2, 2)));
	EXPECT_EQ(Shapes(), Before);
	EXPECT_TRUE(Stats.bCollisionApproximate);
	EXPECT_EQ(Stats.NumCollisionElemsBaked, 0);
	EXPECT_EQ(OpLines(), (FLines{"Warning: Rock: 6 collision element(s) (tapered capsule / level set / skinned) were "
								 "not transformed -- they "
								 "keep their old transform"}));
}

TEST_F(CollisionBake, EachUnsupportedKindIsCounted)
{
	const auto ExpectToldUnder = [this](auto FKAggregateGeom::*List)
	{
		Shapes() = FKAggregateGeom();
		(Shapes().*List).SetNum(1);
		Log.Clear();
		EXPECT_TRUE(Bake(Scaled(2, 2, 2)));
		EXPECT_EQ(OpLines().size(), 1u);
	};
	ExpectToldUnder(&FKAggregateGeom::TaperedCapsuleElems);
	ExpectToldUnder(&FKAggregateGeom::LevelSetElems);
	ExpectToldUnder(&FKAggregateGeom::SkinnedLevelSetElems);
	ExpectToldUnder(&FKAggregateGeom::MLLevelSetElems);
	ExpectToldUnder(&FKAggregateGeom::SkinnedTriangleMeshElems);
}

TEST_F(CollisionBake, UnsupportedKindsUnderUnevenScaleAreNotCalledApproximateShapes)
{
	Shapes().TaperedCapsuleElems.Add({});
	Shapes().BoxElems.Add({});
	EXPECT_TRUE(Bake(Scaled(1, 2, 3)));
	EXPECT_TRUE(Stats.bCollisionApproximate);
	EXPECT_EQ(OpLines().size(), 1u);
}

TEST_F(CollisionBake, BothLinesComeInThisOrderWhenBothApply)
{
	Shapes().TaperedCapsuleElems.Add({});
	Shapes().SphereElems.Add({});
	EXPECT_TRUE(Bake(Scaled(1, 2, 3)));
	EXPECT_EQ(Stats.NumCollisionElemsBaked, 1);
	EXPECT_EQ(OpLines(),
		(FLines{"Warning: Rock: 1 collision element(s) (tapered capsule / level set / skinned) were not transformed -- "
				"they "
				"keep their old transform",
			"Warning: Rock: non-uniform scale (X=1.000 Y=2.000 Z=3.000) -- sphere / capsule / rotated box collision is "
			"approximate"}));
}

TEST_F(CollisionBake, FlagThatTheCallerLeftSetIsToldAgain)
{
	Shapes().BoxElems.Add({});
	FTarvinTransformStats Reused;
	Reused.bCollisionApproximate = true;
	EXPECT_TRUE(FTarvinTransformOp::BakeIntoMesh(Rock, Scaled(2, 2, 2), {}, Reused));
	EXPECT_TRUE(Reused.bCollisionApproximate);
	EXPECT_EQ(OpLines().size(), 1u);
}
}
