// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

// Before Core's headers: it has functions named check, which is a macro there.
#include <rapidcheck/gtest.h>

#include "../Core/MathGenerators.h"
#include "MeshDescription/MeshBulkData.h"
#include "MeshDescription/MeshSource.h"
#include "MeshShapes.h"

namespace
{
/// A box that counts how often it is taken in.
class FBoxSource final : public FMeshSource
{
public:
	void Fill(FMeshDescription& Empty) const override
	{
		++NumFills;
		Empty = MeshShapes::Box({-1, -2, -3}, {5, 7, 11});
	}
	int32 NumVertices() const override { return 8; }
	FMeshMeasure Measure(std::span<const FMeshTransform> Transforms) const override
	{
		FMeshDescription Mesh = MeshShapes::Box({-1, -2, -3}, {5, 7, 11});
		for (const FMeshTransform& Transform : Transforms)
		{
			Transform.Apply(Mesh);
		}
		return {Mesh.ComputeBoundingBox(), 0};
	}

	mutable int NumFills = 0;
};

class DeferredMesh : public testing::Test
{
protected:
	std::shared_ptr<FBoxSource> Source = std::make_shared<FBoxSource>();
	FMatrix Mirror = FTransform(FQuat::Identity, {1, 2, 3}, {-2, 1, 1}).ToMatrixWithScale();
};
}

TEST_F(DeferredMesh, TakesNothingInUntilSomebodyLooks)
{
	FMeshDescription Mesh(Source);
	FStaticMeshOperations::ApplyTransform(Mesh, Mirror);
	FDescriptionBulkData Bulk(std::move(Mesh));
	EXPECT_FALSE(Bulk.IsEmpty());
	EXPECT_EQ(Bulk.NumVertices(), 8);
	EXPECT_LT(Bulk.MemoryBytes(), 4096u);
	EXPECT_EQ(Bulk.GetDescription()->ComputeBoundingBox(), FBox({-9, 0, 0}, {3, 9, 14}));
	const TSharedPtr<FMeshDescription> Copy = Bulk.Decode();
	FStaticMeshOperations::ApplyTransform(*Copy, Mirror);
	EXPECT_EQ(Source->NumFills, 0);

	EXPECT_EQ(Bulk.GetDescription()->Triangles().Num(), 12);
	EXPECT_EQ(Bulk.GetDescription()->Vertices().Num(), 8);
	EXPECT_EQ(Source->NumFills, 1) << "the second look finds what the first took in";
	EXPECT_EQ(Bulk.GetDescription()->GetDeferred(), nullptr);
	EXPECT_NE(Copy->GetDeferred(), nullptr) << "a copy is looked at on its own";
}

TEST_F(DeferredMesh, CopiesGoTheirOwnWays)
{
	FMeshDescription First(Source);
	FMeshDescription Second = First;
	FStaticMeshOperations::ApplyTransform(Second, Mirror);
	First.SetVertexPosition(FVertexID(0), {100, 0, 0});
	EXPECT_EQ(Second.GetVertexPosition(FVertexID(0)), FVector3f(3, 0, 0));
	EXPECT_EQ(First.GetVertexPosition(FVertexID(0)), FVector3f(100, 0, 0));
	EXPECT_EQ(First.GetVertexPosition(FVertexID(1)), FVector3f(5, -2, -3));
}

TEST_F(DeferredMesh, LeavesNothingBehindWhenItIsMovedOrEmptied)
{
	FMeshDescription Mesh(Source);
	const FMeshDescription Taken = std::move(Mesh);
	EXPECT_TRUE(Mesh.IsEmpty()); // NOLINT(bugprone-use-after-move): what is left is what is tested
	EXPECT_EQ(Taken.NumVertices(), 8);
	FMeshDescription Emptied(Source);
	Emptied.Empty();
	EXPECT_TRUE(Emptied.IsEmpty());
	EXPECT_EQ(Source->NumFills, 0);
}

RC_GTEST_PROP(DeferredMeshProperty, AnyTransformsGiveTheBitsThatTheyGiveAtOnce, ())
{
	const auto Source = std::make_shared<FBoxSource>();
	FMeshDescription Later(Source);
	FMeshDescription AtOnce;
	Source->Fill(AtOnce);
	for (int32 Left = *rc::gen::inRange(0, 5); Left > 0; --Left)
	{
		const FMatrix Matrix = (*MathGenerators::Transform(MathGenerators::NonZeroScale())).ToMatrixWithScale();
		const bool bCorrect = *rc::gen::inRange(0, 4) > 0;
		FStaticMeshOperations::ApplyTransform(Later, Matrix, bCorrect);
		FStaticMeshOperations::ApplyTransform(AtOnce, Matrix, bCorrect);
	}
	RC_ASSERT(Later.GetDeferred() != nullptr);
	RC_ASSERT(Later.ComputeBoundingBox() == AtOnce.ComputeBoundingBox());
	RC_ASSERT(Later == AtOnce);
}
