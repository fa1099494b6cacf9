// SPDX-License-Identifier: MIT
// The cooked shapes behind the collision, when collision is recorded, and collision that is no shape at all.
#include "CollisionFixture.h"

#include "CoreUObject/GarbageCollector.h"
#include "Editor/ScopedTransaction.h"
#include "Engine/CookedCollision.h"

#include <cmath>
#include <limits>

namespace
{
class CollisionCooking : public FCollisionTest
{
protected:
	/// The lines about elements that could not be cooked.
	FLines CookingLines() const { return Lines(TEXT("LogCollision")); }

	/// Where a ray down through (X, Y) meets the cooked shapes; NaN when it misses.
	double TopAt(double X, double Y)
	{
		FCollisionHit Hit;
		const bool bHit =
			Rock->GetBodySetup()->GetCookedCollision().RayCast(FVector(X, Y, 1000), FVector(X, Y, -1000), Hit);
		return bHit ? Hit.Point.Z : std::numeric_limits<double>::quiet_NaN();
	}

	/// Bakes inside a transaction, and says whether that recorded the body setup.
	bool RecordsBodySetup()
	{
		UBodySetup* const BodySetup = Rock->GetBodySetup();
		{
			const FScopedTransaction Transaction(TEXT("Test"), FText(), nullptr);
			EXPECT_TRUE(Bake(Scaled(2, 2, 2)));
		}
		return Transactions().GetTransaction(Transactions().GetQueueLength() - 1).GetObjects().Contains(BodySetup);
	}
};

TEST_F(CollisionCooking, MeshWithoutABodySetupGetsNone)
{
	EXPECT_TRUE(Bake(Scaled(1, 2, 3)));
	EXPECT_EQ(Rock->GetBodySetup(), nullptr);
	EXPECT_EQ(Stats.NumCollisionElemsBaked, 0);
	EXPECT_FALSE(Stats.bCollisionApproximate);
	EXPECT_TRUE(OpLines().empty());
}

TEST_F(CollisionCooking, BodySetupThatWasDeletedAndCollectedIsNone)
{
	Shapes().SphereElems.Add({});
	Rock->GetBodySetup()->MarkAsGarbage();
	ASSERT_TRUE(CollectGarbage());
	EXPECT_TRUE(Bake(Scaled(1, 2, 3)));
	EXPECT_EQ(Stats.NumCollisionElemsBaked, 0);
}

TEST_F(CollisionCooking, EmptyBodySetupIsNotRecordedAndOneWithAnyElementIs)
{
	Rock->CreateBodySetup();
	EXPECT_FALSE(RecordsBodySetup());
	Shapes().MLLevelSetElems.SetNum(1);
	EXPECT_TRUE(RecordsBodySetup());
}

TEST_F(CollisionCooking, CollisionStaysWhenItIsNotWanted)
{
	Shapes().SphereElems.Add({FVector(1, 2, 3), 4});
	EXPECT_TRUE(FTarvinTransformOp::BakeIntoMesh(Rock, Scaled(2, 2, 2), {true, false, true}, Stats));
	EXPECT_EQ(Shapes().SphereElems[0], (FKSphereElem{FVector(1, 2, 3), 4}));
	EXPECT_EQ(Stats.NumCollisionElemsBaked, 0);
}

TEST_F(CollisionCooking, CookedShapesAreThoseOfTheNewFieldsWithAndWithoutARebuild)
{
	for (const bool bRebuild : {true, false})
	{
		Shapes() = FKAggregateGeom();
		Shapes().SphereElems.Add({FVector(100, 0, 10), 4});
		Shapes().BoxElems.Add({FVector(200, 0, 10), FRotator(), 4, 6, 8});
		Shapes().SphylElems.Add({FVector(300, 0, 10), FRotator(), 3, 7});
		Shapes().ConvexElems.Add(MakeHull());
		EXPECT_NEAR(TopAt(200, 0), 14.0, 1.e-4);
		const double HullTop = TopAt(2.5, 1.5);
		EXPECT_TRUE(Bake(Scaled(2, 2, 2), bRebuild));
		EXPECT_TRUE(Rock->GetBodySetup()->HasPhysicsData()) << "made by the bake itself, not on first use";
		EXPECT_NEAR(TopAt(200, 0), 20.0 + 8.0, 1.e-3);
		EXPECT_NEAR(TopAt(400, 0), 20.0 + 8.0, 1.e-3);
		EXPECT_NEAR(TopAt(600, 0), 20.0 + 6.0 + 7.0, 1.e-3);
		EXPECT_NEAR(TopAt(5, 3), 2 * HullTop, 1.e-3);
		EXPECT_TRUE(std::isnan(TopAt(100, 0)));
		EXPECT_TRUE(std::isnan(TopAt(300, 0)));
	}
}

TEST_F(CollisionCooking, CookedShapesFollowUndoWithoutTheModule)
{
	Shapes().BoxElems.Add({FVector(200, 0, 10), FRotator(), 4, 6, 8});
	{
		const FScopedTransaction Transaction(TEXT("Test"), FText(), nullptr);
		EXPECT_TRUE(Bake(Scaled(2, 2, 2)));
	}
	ASSERT_TRUE(Transactions().Undo());
	EXPECT_NEAR(TopAt(200, 0), 14.0, 1.e-4);
	ASSERT_TRUE(Transactions().Redo());
	EXPECT_NEAR(TopAt(400, 0), 28.0, 1.e-4);
}

TEST_F(CollisionCooking, CookingThatStillRunsIsWaitedFor)
{
	for (int32 Index = 0; Index < 200; ++Index)
	{
		Shapes().ConvexElems.Add(MakeHull());
	}
	Rock->GetBodySetup()->BeginCooking();
	EXPECT_TRUE(Bake(Scaled(2, 2, 2)));
	EXPECT_EQ(Stats.NumCollisionElemsBaked, 200);
	EXPECT_GT(TopAt(5, 3), 11.0) << "higher than any hull was before";
}

TEST_F(CollisionCooking, ShapesOfZeroSizeStayOfZeroSizeAndAreLeftOutWithAWarning)
{
	Shapes().SphereElems.Add({FVector(1, 2, 3), 0});
	Shapes().BoxElems.Add({FVector(1, 2, 3), FRotator(), 4, 0, 8});
	EXPECT_TRUE(Bake(Scaled(2, 2, 2)));
	EXPECT_EQ(Shapes().SphereElems[0].Radius, 0.f);
	EXPECT_EQ(Shapes().BoxElems[0].Y, 0.f);
	EXPECT_EQ(Shapes().BoxElems[0].X, 8.f);
	EXPECT_EQ(Stats.NumCollisionElemsBaked, 2);
	EXPECT_EQ(CookingLines(), (FLines{"Warning: Rock: collision sphere 0 has a size that is not above zero -- left out",
								  "Warning: Rock: collision box 0 has a size that is not above zero -- left out"}));
	EXPECT_EQ(Rock->GetBodySetup()->GetCookedCollision().GetNumShapes(), 0);
}

TEST_F(CollisionCooking, CapsuleOfZeroSizeSwellsToTheSmallestOne)
{
	Shapes().SphylElems.Add({FVector(1, 2, 3), FRotator(), 0, 0});
	EXPECT_TRUE(Bake(Scaled(2, 2, 2)));
	EXPECT_FLOAT_EQ(Shapes().SphylElems[0].Radius, 0.1f);
	EXPECT_FLOAT_EQ(Shapes().SphylElems[0].Length, 0.1f);
	EXPECT_TRUE(CookingLines().empty());
	EXPECT_NEAR(TopAt(2, 4), 6.15, 1.e-4);
}

TEST_F(CollisionCooking, HullsOfTooFewPointsOrInAPlaneAreBakedAndLeftOutWithAWarning)
{
	FKConvexElem Three = MakeHull();
	Three.VertexData.Pop();
	FKConvexElem Flat = MakeHull();
	for (FVector& Vertex : Flat.VertexData)
	{
		Vertex.Z = 7;
	}
	Shapes().ConvexElems = {FKConvexElem(), Three, Flat, MakeHull()};
	EXPECT_TRUE(Bake(Scaled(2, 3, 5)));
	EXPECT_EQ(Stats.NumCollisionElemsBaked, 4);
	EXPECT_EQ(Shapes().ConvexElems[1].VertexData[1], FVector(14, 0, 5));
	EXPECT_EQ(Shapes().ConvexElems[2].VertexData[3], FVector(4, 3, 35));
	EXPECT_FALSE(Shapes().ConvexElems[0].ElemBox.IsValid);
	EXPECT_EQ(CookingLines(), (FLines{"Warning: Rock: collision convex 0 has fewer than four points -- left out",
								  "Warning: Rock: collision convex 1 has fewer than four points -- left out",
								  "Warning: Rock: collision convex 2 has no volume -- left out"}));
	EXPECT_EQ(Rock->GetBodySetup()->GetCookedCollision().GetNumShapes(), 1);
}

TEST_F(CollisionCooking, CoordinatesThatAreNotFiniteAreLeftOutAndHarmNoOthers)
{
	const double NaN = std::numeric_limits<double>::quiet_NaN();
	const double Infinity = std::numeric_limits<double>::infinity();
	Shapes().SphereElems.Add({FVector(NaN, 2, 3), 4});
	Shapes().SphereElems.Add({FVector(100, 0, 10), 4});
	Shapes().BoxElems.Add({FVector(1, 2, 3), FRotator(), std::numeric_limits<float>::infinity(), 6, 8});
	Shapes().SphylElems.Add({FVector(1, 2, 3), FRotator(NaN, 0, 0), 3, 7});
	Shapes().ConvexElems.Add(MakeHull());
	Shapes().ConvexElems[0].VertexData[2].Y = Infinity;
	EXPECT_TRUE(Bake(Scaled(2, 2, 2)));
	EXPECT_EQ(Stats.NumCollisionElemsBaked, 5);
	EXPECT_EQ(Shapes().SphereElems[1], (FKSphereElem{FVector(200, 0, 20), 8}));
	EXPECT_EQ(CookingLines(), (FLines{"Warning: Rock: collision sphere 0 has a place that is not finite -- left out",
								  "Warning: Rock: collision box 0 has a size that is not above zero -- left out",
								  "Warning: Rock: collision capsule 0 has a place that is not finite -- left out",
								  "Warning: Rock: collision convex 0 has a point that is not finite -- left out"}));
	EXPECT_NEAR(TopAt(200, 0), 28.0, 1.e-3);
}
}
