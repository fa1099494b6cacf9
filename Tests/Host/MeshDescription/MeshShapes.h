// SPDX-License-Identifier: MIT
#pragma once

#include "MeshDescription/StaticMeshOperations.h"

/// Small meshes for tests, with all attributes.
namespace MeshShapes
{
/// A quadrilateral of two triangles, corners counter-clockwise seen from outside, four instances of its own with the
/// flat normal, a tangent from corner 0 to corner 1, and texture coordinates.
inline void AddQuad(FMeshDescription& Mesh, FPolygonGroupID Group, const std::array<FVertexID, 4>& Vertices)
{
	const auto Position = [&](std::size_t Corner) { return FVector(Mesh.GetVertexPosition(Vertices[Corner])); };
	const FVector Tangent = (Position(1) - Position(0)).GetSafeNormal();
	const FVector Normal = ((Position(1) - Position(0)) ^ (Position(2) - Position(0))).GetSafeNormal();
	std::array<FVertexInstanceID, 4> Instances;
	for (std::size_t Corner = 0; Corner < 4; ++Corner)
	{
		Instances[Corner] = Mesh.CreateVertexInstance(Vertices[Corner]);
		Mesh.SetVertexInstanceNormal(Instances[Corner], FVector3f(Normal));
		Mesh.SetVertexInstanceTangent(Instances[Corner], FVector3f(Tangent));
		Mesh.SetVertexInstanceBinormalSign(Instances[Corner], 1.f);
		Mesh.SetVertexInstanceColor(Instances[Corner], FVector4f(0.25f, 0.5f, 0.75f, 1.f));
		const bool bFar = Corner == 1 || Corner == 2;
		Mesh.SetVertexInstanceUV(Instances[Corner], 0, FVector2f(bFar ? 1.f : 0.f, Corner >= 2 ? 1.f : 0.f));
	}
	Mesh.CreateTriangle(Group, {Instances[0], Instances[1], Instances[2]});
	Mesh.CreateTriangle(Group, {Instances[0], Instances[2], Instances[3]});
}

/// A closed box between two corners: 8 vertices, 24 instances, 12 triangles, one group.
inline FMeshDescription Box(const FVector& Min, const FVector& Max)
{
	FMeshDescription Mesh;
	Mesh.AddAttributes(EVertexInstanceAttributes::All);
	Mesh.SetNumUVChannels(1);
	const FPolygonGroupID Group = Mesh.CreatePolygonGroup(FName(TEXT("Bricks")));
	std::array<FVertexID, 8> V;
	for (std::size_t Corner = 0; Corner < 8; ++Corner)
	{
		V[Corner] = Mesh.CreateVertex(
			FVector3f(FVector(Corner & 1 ? Max.X : Min.X, Corner & 2 ? Max.Y : Min.Y, Corner & 4 ? Max.Z : Min.Z)));
	}
	AddQuad(Mesh, Group, {V[0], V[2], V[3], V[1]}); // down
	AddQuad(Mesh, Group, {V[4], V[5], V[7], V[6]}); // up
	AddQuad(Mesh, Group, {V[0], V[1], V[5], V[4]}); // -Y
	AddQuad(Mesh, Group, {V[2], V[6], V[7], V[3]}); // +Y
	AddQuad(Mesh, Group, {V[0], V[4], V[6], V[2]}); // -X
	AddQuad(Mesh, Group, {V[1], V[3], V[7], V[5]}); // +X
	return Mesh;
}

/// A closed, slanted tetrahedron: no face along an axis, uneven edges.
inline FMeshDescription Wedge()
{
	FMeshDescription Mesh;
	const FPolygonGroupID Group = Mesh.CreatePolygonGroup(FName(TEXT("Slate")));
	const FVertexID V[4] = {Mesh.CreateVertex({0.5f, -1.f, 0.25f}), Mesh.CreateVertex({7.f, 2.f, -0.5f}),
		Mesh.CreateVertex({1.f, 5.f, 0.75f}), Mesh.CreateVertex({2.f, 1.f, 11.f})};
	const std::size_t Faces[4][3] = {{0, 2, 1}, {0, 1, 3}, {1, 2, 3}, {2, 0, 3}};
	for (const auto& Face : Faces)
	{
		FTriangleCorners Corners;
		for (std::size_t Corner = 0; Corner < 3; ++Corner)
		{
			Corners[Corner] = Mesh.CreateVertexInstance(V[Face[Corner]]);
		}
		const FTriangleID Triangle = Mesh.CreateTriangle(Group, Corners);
		const FVector Normal = FStaticMeshOperations::ComputeTriangleNormal(Mesh, Triangle);
		const FVector Edge = FVector(Mesh.GetVertexPosition(V[Face[1]])) - FVector(Mesh.GetVertexPosition(V[Face[0]]));
		for (const FVertexInstanceID Corner : Corners)
		{
			Mesh.SetVertexInstanceNormal(Corner, FVector3f(Normal));
			Mesh.SetVertexInstanceTangent(Corner, FVector3f(Edge.GetSafeNormal()));
			Mesh.SetVertexInstanceBinormalSign(Corner, -1.f);
		}
	}
	return Mesh;
}
}
