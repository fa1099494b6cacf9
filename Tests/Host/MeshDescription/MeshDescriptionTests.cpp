// SPDX-License-Identifier: MIT
#include "MeshShapes.h"
#include "Support/ThrowingAssertions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

TEST(MeshDescription, StartsEmptyWithoutAttributes)
{
	const FMeshDescription Mesh;
	EXPECT_TRUE(Mesh.IsEmpty());
	EXPECT_EQ(Mesh.Vertices().Num(), 0);
	EXPECT_EQ(Mesh.GetAttributes(), EVertexInstanceAttributes::None);
	EXPECT_TRUE(Mesh.GetNormals().empty());
	EXPECT_EQ(Mesh.GetNumUVChannels(), 0);
	EXPECT_FALSE(Mesh.ComputeBoundingBox().IsValid);
	EXPECT_TRUE(Mesh.IsConsistent());
}

TEST(MeshDescription, VerticesAreVisitedByAscendingNumberAcrossGaps)
{
	FMeshDescription Mesh;
	Mesh.CreateVertex({2.f, 3.f, 5.f});
	Mesh.CreateVertexWithID(FVertexID(4), {7.f, 11.f, 13.f});
	Mesh.CreateVertexWithID(FVertexID(2), {17.f, 19.f, 23.f});
	Mesh.CreateVertex({29.f, 31.f, 37.f});
	Mesh.DeleteVertex(FVertexID(0));

	std::vector<int32> Numbers;
	for (const FVertexID Vertex : Mesh.Vertices().GetElementIDs())
	{
		Numbers.push_back(Vertex.GetValue());
	}
	EXPECT_EQ(Numbers, (std::vector<int32>{2, 4, 5}));
	EXPECT_EQ(Mesh.Vertices().Num(), 3);
	EXPECT_EQ(Mesh.Vertices().GetArraySize(), 6);
	EXPECT_EQ(Mesh.GetVertexPosition(FVertexID(4)), FVector3f(7.f, 11.f, 13.f));
	EXPECT_FALSE(Mesh.Vertices().IsValid(FVertexID(3)));
	EXPECT_FALSE(Mesh.Vertices().IsValid(FVertexID()));
}

TEST(MeshDescription, ReadingWhatIsNotThereFailsACheck)
{
	FThrowingAssertions Throwing;
	FMeshDescription Mesh;
	const FVertexID Vertex = Mesh.CreateVertex();
	Mesh.CreateVertexWithID(FVertexID(2));
	const FVertexInstanceID Instance = Mesh.CreateVertexInstance(Vertex);
	EXPECT_ANY_THROW(Mesh.GetVertexPosition(FVertexID(1)));
	EXPECT_ANY_THROW(Mesh.GetVertexPosition(FVertexID(3)));
	EXPECT_ANY_THROW(Mesh.GetVertexPosition(FVertexID()));
	EXPECT_ANY_THROW(Mesh.CreateVertexWithID(FVertexID(2)));
	EXPECT_ANY_THROW(Mesh.CreateVertexInstance(FVertexID(1)));
	EXPECT_ANY_THROW(Mesh.GetVertexInstanceNormal(Instance));
	EXPECT_ANY_THROW(Mesh.GetVertexInstanceUV(Instance, 0));
	EXPECT_ANY_THROW(Mesh.CreateTriangle(FPolygonGroupID(0), {Instance, Instance, Instance}));
	EXPECT_ANY_THROW(Mesh.DeleteTriangle(FTriangleID(0)));
}

TEST(MeshDescription, AttributesAreAddedWhenFirstSetAndOtherInstancesGetNeutralValues)
{
	FMeshDescription Mesh;
	const FVertexID Vertex = Mesh.CreateVertex();
	const FVertexInstanceID First = Mesh.CreateVertexInstance(Vertex);
	const FVertexInstanceID Second = Mesh.CreateVertexInstance(Vertex);
	Mesh.SetVertexInstanceNormal(Second, {0.f, 0.f, 1.f});
	Mesh.SetVertexInstanceUV(Second, 1, {0.25f, 0.75f});

	EXPECT_EQ(Mesh.GetAttributes(), EVertexInstanceAttributes::Normals);
	EXPECT_EQ(Mesh.GetVertexInstanceNormal(First), FVector3f(0.f, 0.f, 0.f));
	EXPECT_EQ(Mesh.GetVertexInstanceNormal(Second), FVector3f(0.f, 0.f, 1.f));
	EXPECT_EQ(Mesh.GetNumUVChannels(), 2);
	EXPECT_EQ(Mesh.GetVertexInstanceUV(Second, 0), FVector2f(0.f, 0.f));
	EXPECT_EQ(Mesh.GetVertexInstanceUV(Second, 1), FVector2f(0.25f, 0.75f));

	Mesh.AddAttributes(EVertexInstanceAttributes::All);
	const FVertexInstanceID Third = Mesh.CreateVertexInstance(Vertex);
	EXPECT_EQ(Mesh.GetVertexInstanceNormal(Second), FVector3f(0.f, 0.f, 1.f));
	EXPECT_EQ(Mesh.GetVertexInstanceBinormalSign(First), 1.f);
	EXPECT_EQ(Mesh.GetVertexInstanceColor(Third), FVector4f(1.f, 1.f, 1.f, 1.f));
}

TEST(MeshDescription, TrianglesKnowTheirCornersAndGroup)
{
	const FMeshDescription Mesh = MeshShapes::Box({-50, -20, 0}, {50, 20, 100});
	EXPECT_EQ(Mesh.Vertices().Num(), 8);
	EXPECT_EQ(Mesh.VertexInstances().Num(), 24);
	EXPECT_EQ(Mesh.Triangles().Num(), 12);
	EXPECT_EQ(Mesh.PolygonGroups().Num(), 1);
	EXPECT_EQ(Mesh.GetMaterialSlotName(Mesh.GetTrianglePolygonGroup(FTriangleID(7))), FName(TEXT("Bricks")));
	const std::array<FVertexID, 3> Corners = Mesh.GetTriangleVertices(FTriangleID(2));
	EXPECT_EQ(Corners, (std::array{FVertexID(4), FVertexID(5), FVertexID(7)}));
	EXPECT_EQ(FStaticMeshOperations::ComputeTriangleNormal(Mesh, FTriangleID(2)), FVector::UpVector);
	EXPECT_NEAR(FStaticMeshOperations::ComputeSignedVolume(Mesh), 100.0 * 40.0 * 100.0, 1.e-6);
	EXPECT_TRUE(Mesh.IsConsistent());
}

TEST(MeshDescription, WholeArraysAreFilledAtOnce)
{
	FMeshDescription Mesh;
	const std::span<FVector3f> Positions = Mesh.AppendVertices(3);
	for (std::size_t Index = 0; Index < 3; ++Index)
	{
		Positions[Index] = FVector3f(static_cast<float>(Index), 2.f, 3.f);
	}
	Mesh.AddAttributes(EVertexInstanceAttributes::Normals);
	EXPECT_EQ(Mesh.AppendVertexInstances(3), FVertexInstanceID(0));
	for (int32 Index = 0; Index < 3; ++Index)
	{
		Mesh.GetVertexInstanceVertices()[static_cast<std::size_t>(Index)] = FVertexID(2 - Index);
	}
	std::ranges::fill(Mesh.GetNormals(), FVector3f(0.f, 1.f, 0.f));
	const FPolygonGroupID Group = Mesh.CreatePolygonGroup();
	Mesh.AppendTriangles(Group, 1)[0] = {FVertexInstanceID(0), FVertexInstanceID(1), FVertexInstanceID(2)};

	EXPECT_TRUE(Mesh.IsConsistent());
	EXPECT_EQ(Mesh.GetVertexPosition(FVertexID(1)), FVector3f(1.f, 2.f, 3.f));
	EXPECT_EQ(Mesh.GetTriangleVertices(FTriangleID(0)), (std::array{FVertexID(2), FVertexID(1), FVertexID(0)}));
	EXPECT_EQ(Mesh.GetTrianglePolygonGroup(FTriangleID(0)), Group);

	const std::vector<uint8> bUsed = {1, 1, 0};
	Mesh.KeepOnlyVertices(bUsed);
	EXPECT_EQ(Mesh.Vertices().Num(), 2);
	EXPECT_FALSE(Mesh.IsConsistent());
}

TEST(MeshDescription, ATriangleOfADeletedInstanceIsInconsistent)
{
	FMeshDescription Mesh = MeshShapes::Wedge();
	Mesh.DeleteVertexInstance(FVertexInstanceID(4));
	EXPECT_FALSE(Mesh.IsConsistent());
	Mesh.DeleteTriangle(FTriangleID(1));
	EXPECT_TRUE(Mesh.IsConsistent());
	Mesh.DeletePolygonGroup(FPolygonGroupID(0));
	EXPECT_FALSE(Mesh.IsConsistent());
}

TEST(MeshDescription, BoxHoldsEveryVertexUsedOrNotButNoGap)
{
	FMeshDescription Mesh = MeshShapes::Box({-50, -20, 0}, {50, 20, 100});
	EXPECT_EQ(Mesh.ComputeBoundingBox(), FBox({-50, -20, 0}, {50, 20, 100}));
	Mesh.CreateVertex({1.f, 2.f, -300.f});
	EXPECT_EQ(Mesh.ComputeBoundingBox(), FBox({-50, -20, -300}, {50, 20, 100}));
	Mesh.DeleteVertex(FVertexID(8));
	Mesh.DeleteVertex(FVertexID(7));
	Mesh.DeleteVertex(FVertexID(5));
	Mesh.DeleteVertex(FVertexID(3));
	Mesh.DeleteVertex(FVertexID(1));
	EXPECT_EQ(Mesh.ComputeBoundingBox(), FBox({-50, -20, 0}, {-50, 20, 100}));
}

TEST(MeshDescription, BoxOfManyVerticesLeavesOutWhatIsNoNumber)
{
	FMeshDescription Mesh;
	const std::span<FVector3f> Positions = Mesh.AppendVertices(1001);
	for (std::size_t Index = 0; Index < Positions.size(); ++Index)
	{
		const float Value = static_cast<float>(Index);
		Positions[Index] = FVector3f(Value, -2.f * Value, 7.f);
	}
	Positions[500].Z = std::numeric_limits<float>::quiet_NaN();
	Positions[0].X = std::numeric_limits<float>::quiet_NaN();
	EXPECT_EQ(Mesh.ComputeBoundingBox(), FBox({1, -2000, 7}, {1000, 0, 7}));
	Mesh.CreateVertexWithID(FVertexID(2000), {0.f, 0.f, 9.f});
	EXPECT_EQ(Mesh.ComputeBoundingBox(), FBox({0, -2000, 7}, {1000, 0, 9}));
}

TEST(MeshDescription, EqualityIsBitForBit)
{
	const float NotANumber = std::numeric_limits<float>::quiet_NaN();
	FMeshDescription A = MeshShapes::Wedge();
	A.SetVertexPosition(FVertexID(1), {NotANumber, 0.f, 1.f});
	FMeshDescription B = A;
	EXPECT_TRUE(A == B);
	B.SetVertexPosition(FVertexID(1), {NotANumber, -0.f, 1.f});
	EXPECT_FALSE(A == B);
}

TEST(MeshDescription, EqualityCoversEveryAttribute)
{
	const FMeshDescription Box = MeshShapes::Box({-50, -20, 0}, {50, 20, 100});
	const FVertexInstanceID Instance(23);
	const auto DiffersAfter = [&Box](auto Change)
	{
		FMeshDescription Other = Box;
		Change(Other);
		return !(Other == Box) && !(Box == Other);
	};
	EXPECT_TRUE(DiffersAfter([&](auto& M) { M.SetVertexInstanceNormal(Instance, {0.f, 1.f, 0.f}); }));
	EXPECT_TRUE(DiffersAfter([&](auto& M) { M.SetVertexInstanceTangent(Instance, {1.f, 0.f, 0.f}); }));
	EXPECT_TRUE(DiffersAfter([&](auto& M) { M.SetVertexInstanceBinormalSign(Instance, -1.f); }));
	EXPECT_TRUE(DiffersAfter([&](auto& M) { M.SetVertexInstanceColor(Instance, {1.f, 0.f, 0.f, 1.f}); }));
	EXPECT_TRUE(DiffersAfter([&](auto& M) { M.SetVertexInstanceUV(Instance, 0, {0.125f, 0.f}); }));
	EXPECT_TRUE(DiffersAfter([&](auto& M) { M.SetNumUVChannels(2); }));
	EXPECT_TRUE(DiffersAfter([&](auto& M) { M.SetMaterialSlotName(FPolygonGroupID(0), FName(TEXT("Tiles"))); }));
	EXPECT_TRUE(DiffersAfter([&](auto& M) { M.CreatePolygonGroup(); }));
	EXPECT_TRUE(DiffersAfter([&](auto& M) { M.DeleteTriangle(FTriangleID(3)); }));
	EXPECT_TRUE(DiffersAfter([&](auto& M) { std::swap(M.GetTriangleCorners()[3][0], M.GetTriangleCorners()[3][1]); }));
	EXPECT_TRUE(DiffersAfter([&](auto& M) { M.GetVertexInstanceVertices()[3] = FVertexID(0); }));
	EXPECT_TRUE(DiffersAfter([&](auto& M) { M.CreateVertex(); }));
	EXPECT_FALSE(DiffersAfter([&](auto&) {}));
}

TEST(MeshDescription, WhatLiesInGapsDoesNotMatterForEquality)
{
	FMeshDescription A = MeshShapes::Wedge();
	FMeshDescription B = A;
	for (FMeshDescription* Mesh : {&A, &B})
	{
		Mesh->DeleteTriangle(FTriangleID(0));
		Mesh->CreateVertex({1.f, 2.f, 3.f});
		Mesh->DeleteVertex(FVertexID(4));
	}
	A.GetVertexPositions()[4] = FVector3f(9.f, 9.f, 9.f);
	EXPECT_TRUE(A == B);
	B.SetVertexPosition(FVertexID(3), {9.f, 9.f, 9.f});
	EXPECT_FALSE(A == B);
}

TEST(MeshDescription, MemoryIsWhatTheArraysHold)
{
	FMeshDescription Mesh;
	const uint64 Nothing = Mesh.MemoryBytes();
	Mesh.AppendVertices(1000);
	EXPECT_EQ(Mesh.MemoryBytes(), Nothing + 12'000);
	Mesh.AddAttributes(EVertexInstanceAttributes::All);
	Mesh.AppendVertexInstances(1000);
	EXPECT_EQ(Mesh.MemoryBytes(), Nothing + 12'000 + (4 + 12 + 12 + 4 + 16) * 1'000);
}

TEST(MeshDescription, MovingTakesEverythingAndLeavesAnEmptyMesh)
{
	FMeshDescription Source = MeshShapes::Box({-1, -2, -3}, {5, 7, 11});
	const FMeshDescription Copy = Source;
	const FVector3f* Data = Source.GetVertexPositions().data();
	const FMeshDescription Taken = std::move(Source);
	EXPECT_EQ(Taken.GetVertexPositions().data(), Data);
	EXPECT_TRUE(Taken == Copy);
	EXPECT_TRUE(Source.IsEmpty());
	EXPECT_EQ(Source.Triangles().GetArraySize(), 0);
}
