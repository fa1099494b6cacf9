// SPDX-License-Identifier: MIT
#include "MeshDescription/StaticMeshOperations.h"

#include "MeshDescription/MeshTransform.h"

namespace
{
FVector CornerPosition(const FMeshDescription& Mesh, FVertexID Vertex)
{
	return FVector(Mesh.GetVertexPosition(Vertex));
}
}

void FStaticMeshOperations::ApplyTransform(
	FMeshDescription& Mesh, const FMatrix& Matrix, bool bApplyCorrectNormalTransform)
{
	if (Matrix == FMatrix::Identity)
	{
		return;
	}
	const FMeshTransform Transform(Matrix, bApplyCorrectNormalTransform);
	Mesh.GetDeferred() ? Mesh.Defer(Transform) : Transform.Apply(Mesh);
}

FVector FStaticMeshOperations::ComputeTriangleNormal(const FMeshDescription& Mesh, FTriangleID Triangle)
{
	const auto [A, B, C] = Mesh.GetTriangleVertices(Triangle);
	const FVector Origin = CornerPosition(Mesh, A);
	const FVector Cross = (CornerPosition(Mesh, B) - Origin) ^ (CornerPosition(Mesh, C) - Origin);
	return Cross.GetSafeNormal(0.0);
}

double FStaticMeshOperations::ComputeSignedVolume(const FMeshDescription& Mesh)
{
	double SixTimes = 0.0;
	for (const FTriangleID Triangle : Mesh.Triangles().GetElementIDs())
	{
		const auto [A, B, C] = Mesh.GetTriangleVertices(Triangle);
		SixTimes += CornerPosition(Mesh, A) | (CornerPosition(Mesh, B) ^ CornerPosition(Mesh, C));
	}
	return SixTimes / 6.0;
}
