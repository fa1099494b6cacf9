// SPDX-License-Identifier: MIT
#include "MeshShapes.h"

#include "MeshDescription/MeshBulkData.h"

#include <gtest/gtest.h>

TEST(MeshBulkData, TakesADescriptionOverWithoutCopyingIt)
{
	FMeshDescription Mesh = MeshShapes::Wedge();
	const FVector3f* Data = Mesh.GetVertexPositions().data();
	const TSharedPtr<const FMeshBulkData> Bulk = MakeShared<FDescriptionBulkData>(std::move(Mesh));
	ASSERT_NE(Bulk->GetDescription(), nullptr);
	EXPECT_EQ(Bulk->GetDescription()->GetVertexPositions().data(), Data);
	EXPECT_EQ(Bulk->NumVertices(), 4);
	EXPECT_FALSE(Bulk->IsEmpty());
	EXPECT_EQ(Bulk->MemoryBytes(), Bulk->GetDescription()->MemoryBytes());
}

TEST(MeshBulkData, DecodedDescriptionsAreCopiesThatLeaveTheStoredOneAlone)
{
	const TSharedPtr<const FMeshBulkData> Bulk = MakeShared<FDescriptionBulkData>(MeshShapes::Wedge());
	const TSharedPtr<FMeshDescription> Decoded = Bulk->Decode();
	ASSERT_TRUE(Decoded.IsValid());
	EXPECT_TRUE(*Decoded == MeshShapes::Wedge());
	FStaticMeshOperations::ApplyTransform(*Decoded, FTransform(FVector(1, 2, 3)).ToMatrixWithScale());
	EXPECT_FALSE(*Decoded == MeshShapes::Wedge());
	EXPECT_TRUE(*Bulk->GetDescription() == MeshShapes::Wedge());
}

TEST(MeshBulkData, OfAnEmptyDescriptionIsEmpty)
{
	const FDescriptionBulkData Bulk{FMeshDescription()};
	EXPECT_TRUE(Bulk.IsEmpty());
	EXPECT_EQ(Bulk.NumVertices(), 0);
	EXPECT_TRUE(Bulk.Decode().IsValid());
}
