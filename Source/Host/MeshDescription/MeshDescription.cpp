// SPDX-License-Identifier: MIT
// What concerns a mesh as a whole: bounds, consistency, equality, size.
#include "MeshDescription/MeshDescription.h"

#include "MeshDescription/MeshTransformKernels.h"

#include <algorithm>
#include <cstring>

namespace
{
/// Equal bits in every allocated slot. Arrays of an attribute that both lack are equal.
template <typename T>
bool SameBits(const FMeshElementSlots& Slots, const TMeshArray<T>& A, const TMeshArray<T>& B)
{
	if (A.empty() != B.empty() && Slots.GetNumAllocated() > 0)
	{
		return false;
	}
	if (A.empty() || B.empty())
	{
		return true;
	}
	if (!Slots.HasGaps())
	{
		return std::memcmp(A.data(), B.data(), static_cast<std::size_t>(Slots.GetNumSlots()) * sizeof(T)) == 0;
	}
	for (int32 Index = Slots.FindNext(0); Index < Slots.GetNumSlots(); Index = Slots.FindNext(Index + 1))
	{
		const std::size_t Slot = static_cast<std::size_t>(Index);
		if (std::memcmp(&A[Slot], &B[Slot], sizeof(T)) != 0)
		{
			return false;
		}
	}
	return true;
}

FBox BoxFromSinglePrecision(const FVector3f& Min, const FVector3f& Max)
{
	// No vertex, or no coordinate of any vertex that is a number.
	if (!(Min.X <= Max.X && Min.Y <= Max.Y && Min.Z <= Max.Z))
	{
		return FBox();
	}
	return FBox(FVector(Min), FVector(Max));
}
}

FBox FMeshDescription::ComputeBoundingBox() const
{
	FVector3f Min = MeshTransformKernels::EmptyMin;
	FVector3f Max = MeshTransformKernels::EmptyMax;
	if (!VertexSlots.HasGaps())
	{
		MeshTransformKernels::GrowBounds(Positions.data(), Positions.size(), Min, Max);
	}
	else
	{
		for (const FVertexID Vertex : Vertices().GetElementIDs())
		{
			MeshTransformKernels::GrowBoundsByPoint(Positions[static_cast<std::size_t>(Vertex.Value)], Min, Max);
		}
	}
	return BoxFromSinglePrecision(Min, Max);
}

bool FMeshDescription::IsConsistent() const
{
	for (const FVertexInstanceID Instance : VertexInstances().GetElementIDs())
	{
		if (!VertexSlots.IsAllocated(GetVertexInstanceVertex(Instance).Value))
		{
			return false;
		}
	}
	for (const FTriangleID Triangle : Triangles().GetElementIDs())
	{
		const FTriangleCorners Corners = GetTriangleVertexInstances(Triangle);
		const bool bCornersExist = std::all_of(Corners.begin(), Corners.end(),
			[this](FVertexInstanceID Corner) { return InstanceSlots.IsAllocated(Corner.Value); });
		if (!bCornersExist || !GroupSlots.IsAllocated(GetTrianglePolygonGroup(Triangle).Value))
		{
			return false;
		}
	}
	return true;
}

bool FMeshDescription::operator==(const FMeshDescription& Other) const
{
	if (Attributes != Other.Attributes || UVs.size() != Other.UVs.size() || !(VertexSlots == Other.VertexSlots) ||
		!(InstanceSlots == Other.InstanceSlots) || !(TriangleSlots == Other.TriangleSlots) ||
		!(GroupSlots == Other.GroupSlots))
	{
		return false;
	}
	for (std::size_t Channel = 0; Channel < UVs.size(); ++Channel)
	{
		if (!SameBits(InstanceSlots, UVs[Channel], Other.UVs[Channel]))
		{
			return false;
		}
	}
	for (const FPolygonGroupID Group : PolygonGroups().GetElementIDs())
	{
		if (!(GetMaterialSlotName(Group) == Other.GetMaterialSlotName(Group)))
		{
			return false;
		}
	}
	return SameBits(VertexSlots, Positions, Other.Positions) &&
		   SameBits(InstanceSlots, InstanceVertices, Other.InstanceVertices) &&
		   SameBits(InstanceSlots, Normals, Other.Normals) && SameBits(InstanceSlots, Tangents, Other.Tangents) &&
		   SameBits(InstanceSlots, BinormalSigns, Other.BinormalSigns) &&
		   SameBits(InstanceSlots, Colors, Other.Colors) &&
		   SameBits(TriangleSlots, TriangleCorners, Other.TriangleCorners) &&
		   SameBits(TriangleSlots, TriangleGroups, Other.TriangleGroups);
}

uint64 FMeshDescription::MemoryBytes() const
{
	uint64 Bytes = sizeof(*this) + Positions.MemoryBytes() + InstanceVertices.MemoryBytes() + Normals.MemoryBytes() +
				   Tangents.MemoryBytes() + BinormalSigns.MemoryBytes() + Colors.MemoryBytes() +
				   TriangleCorners.MemoryBytes() + TriangleGroups.MemoryBytes() +
				   MaterialSlotNames.capacity() * sizeof(FName) + UVs.capacity() * sizeof(TMeshArray<FVector2f>);
	for (const TMeshArray<FVector2f>& Channel : UVs)
	{
		Bytes += Channel.MemoryBytes();
	}
	for (const FMeshElementSlots* Slots : {&VertexSlots, &InstanceSlots, &TriangleSlots, &GroupSlots})
	{
		Bytes += Slots->MemoryBytes();
	}
	return Bytes;
}
