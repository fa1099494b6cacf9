// SPDX-License-Identifier: MIT
// What concerns a mesh as a whole: bounds, consistency, equality, size.
#include "MeshDescription/MeshDescription.h"

#include "MeshDescription/MeshSource.h"
#include "MeshDescription/MeshTransformKernels.h"

#include <algorithm>
#include <cstring>
#include <utility>

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
}

FMeshDescription::FMeshDescription(std::shared_ptr<const FMeshSource> Source)
	: Deferred(std::make_shared<const FDeferredMesh>(FDeferredMesh{std::move(Source), {}}))
{
}

int32 FMeshDescription::NumVertices() const
{
	return Deferred ? Deferred->Source->NumVertices() : Taken.VertexSlots.GetNumAllocated();
}

void FMeshDescription::Defer(const FMeshTransform& Transform)
{
	check(Deferred);
	FDeferredMesh Next = *Deferred;
	Next.Transforms.push_back(Transform);
	Deferred = std::make_shared<const FDeferredMesh>(std::move(Next));
}

void FMeshDescription::TakeIn() const
{
	const std::shared_ptr<const FDeferredMesh> Now = std::exchange(Deferred, nullptr);
	FMeshDescription Filled;
	Now->Source->Fill(Filled);
	for (const FMeshTransform& Transform : Now->Transforms)
	{
		Transform.Apply(Filled);
	}
	Taken = std::move(Filled.Taken);
}

FBox FMeshDescription::ComputeBoundingBox() const
{
	if (Deferred)
	{
		return Deferred->Source->Measure(Deferred->Transforms).Bounds;
	}
	const TMeshArray<FVector3f>& Positions = Taken.Positions;
	FVector3f Min = MeshTransformKernels::EmptyMin;
	FVector3f Max = MeshTransformKernels::EmptyMax;
	if (!Taken.VertexSlots.HasGaps())
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
	return MeshTransformKernels::MakeBox(Min, Max);
}

int32 FMeshDescription::CountNonFiniteVertices() const
{
	if (Deferred)
	{
		return Deferred->Source->Measure(Deferred->Transforms).NumNonFinite;
	}
	const std::size_t InSlots = MeshTransformKernels::CountNonFinite(Taken.Positions.data(), Taken.Positions.size());
	if (InSlots == 0 || !Taken.VertexSlots.HasGaps())
	{
		return static_cast<int32>(InSlots);
	}
	// Slots without a vertex hold anything.
	int32 Count = 0;
	for (const FVertexID Vertex : Vertices().GetElementIDs())
	{
		Count += GetVertexPosition(Vertex).ContainsNaN() ? 1 : 0;
	}
	return Count;
}

bool FMeshDescription::IsConsistent() const
{
	for (const FVertexInstanceID Instance : VertexInstances().GetElementIDs())
	{
		if (!Vertices().IsValid(GetVertexInstanceVertex(Instance)))
		{
			return false;
		}
	}
	for (const FTriangleID Triangle : Triangles().GetElementIDs())
	{
		const FTriangleCorners Corners = GetTriangleVertexInstances(Triangle);
		const bool bCornersExist = std::all_of(Corners.begin(), Corners.end(),
			[this](FVertexInstanceID Corner) { return VertexInstances().IsValid(Corner); });
		if (!bCornersExist || !PolygonGroups().IsValid(GetTrianglePolygonGroup(Triangle)))
		{
			return false;
		}
	}
	return true;
}

bool FMeshDescription::operator==(const FMeshDescription& Other) const
{
	const FElements& A = Elements();
	const FElements& B = Other.Elements();
	if (A.Attributes != B.Attributes || A.UVs.size() != B.UVs.size() || !(A.VertexSlots == B.VertexSlots) ||
		!(A.InstanceSlots == B.InstanceSlots) || !(A.TriangleSlots == B.TriangleSlots) ||
		!(A.GroupSlots == B.GroupSlots))
	{
		return false;
	}
	for (std::size_t Channel = 0; Channel < A.UVs.size(); ++Channel)
	{
		if (!SameBits(A.InstanceSlots, A.UVs[Channel], B.UVs[Channel]))
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
	return SameBits(A.VertexSlots, A.Positions, B.Positions) &&
		   SameBits(A.InstanceSlots, A.InstanceVertices, B.InstanceVertices) &&
		   SameBits(A.InstanceSlots, A.Normals, B.Normals) && SameBits(A.InstanceSlots, A.Tangents, B.Tangents) &&
		   SameBits(A.InstanceSlots, A.BinormalSigns, B.BinormalSigns) &&
		   SameBits(A.InstanceSlots, A.Colors, B.Colors) &&
		   SameBits(A.TriangleSlots, A.TriangleCorners, B.TriangleCorners) &&
		   SameBits(A.TriangleSlots, A.TriangleGroups, B.TriangleGroups);
}

uint64 FMeshDescription::MemoryBytes() const
{
	const FElements& T = Taken;
	uint64 Bytes = sizeof(*this) + T.Positions.MemoryBytes() + T.InstanceVertices.MemoryBytes() +
				   T.Normals.MemoryBytes() + T.Tangents.MemoryBytes() + T.BinormalSigns.MemoryBytes() +
				   T.Colors.MemoryBytes() + T.TriangleCorners.MemoryBytes() + T.TriangleGroups.MemoryBytes() +
				   T.MaterialSlotNames.capacity() * sizeof(FName) + T.UVs.capacity() * sizeof(TMeshArray<FVector2f>);
	for (const TMeshArray<FVector2f>& Channel : T.UVs)
	{
		Bytes += Channel.MemoryBytes();
	}
	for (const FMeshElementSlots* Slots : {&T.VertexSlots, &T.InstanceSlots, &T.TriangleSlots, &T.GroupSlots})
	{
		Bytes += Slots->MemoryBytes();
	}
	return Bytes + (Deferred ? sizeof(FDeferredMesh) + Deferred->Transforms.capacity() * sizeof(FMeshTransform) : 0);
}
