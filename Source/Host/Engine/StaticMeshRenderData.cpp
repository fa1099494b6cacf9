// SPDX-License-Identifier: MIT
#include "Engine/StaticMeshRenderData.h"

#include "MeshDescription/StaticMeshOperations.h"

#include <unordered_map>

namespace
{
/// Normals of zero length, and NaN, count as "none given": such corners are shaded flat.
bool IsUsableNormal(const FVector3f& Normal)
{
	const float SizeSquared = Normal.X * Normal.X + Normal.Y * Normal.Y + Normal.Z * Normal.Z;
	return SizeSquared > 1e-12f;
}
} // namespace

FStaticMeshLodRenderData BuildLodRenderData(const FMeshDescription& Description)
{
	FStaticMeshLodRenderData Data;
	const bool bHasNormals = Description.HasAttributes(EVertexInstanceAttributes::Normals);
	std::unordered_map<int32, uint32> EntryOfInstance;
	const auto AddCorner = [&](FVertexInstanceID Instance, const FVector3f& FlatNormal)
	{
		const FVector3f Normal = bHasNormals ? Description.GetVertexInstanceNormal(Instance) : FVector3f(0.f, 0.f, 0.f);
		const bool bOwnNormal = IsUsableNormal(Normal);
		const auto Known = EntryOfInstance.find(Instance.GetValue());
		if (bOwnNormal && Known != EntryOfInstance.end())
		{
			return Known->second;
		}
		const uint32 Entry = uint32(Data.Positions.Num());
		Data.Positions.Add(Description.GetVertexPosition(Description.GetVertexInstanceVertex(Instance)));
		Data.Normals.Add(bOwnNormal ? Normal : FlatNormal);
		if (bOwnNormal)
		{
			EntryOfInstance.emplace(Instance.GetValue(), Entry);
		}
		return Entry;
	};
	for (const FTriangleID Triangle : Description.Triangles().GetElementIDs())
	{
		const FVector3f FlatNormal = FVector3f(FStaticMeshOperations::ComputeTriangleNormal(Description, Triangle));
		for (const FVertexInstanceID Instance : Description.GetTriangleVertexInstances(Triangle))
		{
			Data.Indices.Add(AddCorner(Instance, FlatNormal));
		}
	}
	return Data;
}
