// SPDX-License-Identifier: MIT
// The elements of a mesh, one by one and in bulk.
#include "MeshDescription/MeshDescription.h"

#include <algorithm>

namespace
{
constexpr FVector3f NoDirection(0.f, 0.f, 0.f);
constexpr float PositiveSign = 1.f;
constexpr FVector4f White(1.f, 1.f, 1.f, 1.f);
constexpr FVector2f NoUV(0.f, 0.f);

std::size_t Slot(int32 Index)
{
	return static_cast<std::size_t>(Index);
}

template <typename T>
void SetRange(TMeshArray<T>& Array, int32 First, const T& Value)
{
	std::fill(Array.begin() + First, Array.end(), Value);
}

template <typename T, typename IDType>
T& ElementAt(TMeshArray<T>& Array, const FMeshElementSlots& Slots, IDType ID)
{
	check(Slots.IsAllocated(ID.Value) && Slot(ID.Value) < Array.size());
	return Array[Slot(ID.Value)];
}

template <typename T, typename IDType>
const T& ElementAt(const TMeshArray<T>& Array, const FMeshElementSlots& Slots, IDType ID)
{
	check(Slots.IsAllocated(ID.Value) && Slot(ID.Value) < Array.size());
	return Array[Slot(ID.Value)];
}
}

FVertexID FMeshDescription::CreateVertex(const FVector3f& Position)
{
	Positions.push_back(Position);
	return FVertexID(VertexSlots.Append());
}

void FMeshDescription::CreateVertexWithID(FVertexID Vertex, const FVector3f& Position)
{
	VertexSlots.AllocateAt(Vertex.Value);
	const int32 OldSize = static_cast<int32>(Positions.size());
	if (VertexSlots.GetNumSlots() > OldSize)
	{
		Positions.resize(Slot(VertexSlots.GetNumSlots()));
		SetRange(Positions, OldSize, FVector3f(0.f, 0.f, 0.f));
	}
	Positions[Slot(Vertex.Value)] = Position;
}

void FMeshDescription::DeleteVertex(FVertexID Vertex)
{
	VertexSlots.Free(Vertex.Value);
}

FVector3f FMeshDescription::GetVertexPosition(FVertexID Vertex) const
{
	return ElementAt(Positions, VertexSlots, Vertex);
}

void FMeshDescription::SetVertexPosition(FVertexID Vertex, const FVector3f& Position)
{
	ElementAt(Positions, VertexSlots, Vertex) = Position;
}

std::span<FVector3f> FMeshDescription::AppendVertices(int32 Num)
{
	const int32 First = VertexSlots.Append(Num);
	Positions.resize(Slot(VertexSlots.GetNumSlots()));
	return std::span(Positions).subspan(Slot(First));
}

FVertexInstanceID FMeshDescription::CreateVertexInstance(FVertexID Vertex)
{
	check(VertexSlots.IsAllocated(Vertex.Value));
	InstanceVertices.push_back(Vertex);
	if (HasAttributes(EVertexInstanceAttributes::Normals))
	{
		Normals.push_back(NoDirection);
	}
	if (HasAttributes(EVertexInstanceAttributes::Tangents))
	{
		Tangents.push_back(NoDirection);
	}
	if (HasAttributes(EVertexInstanceAttributes::BinormalSigns))
	{
		BinormalSigns.push_back(PositiveSign);
	}
	if (HasAttributes(EVertexInstanceAttributes::Colors))
	{
		Colors.push_back(White);
	}
	for (TMeshArray<FVector2f>& Channel : UVs)
	{
		Channel.push_back(NoUV);
	}
	return FVertexInstanceID(InstanceSlots.Append());
}

void FMeshDescription::DeleteVertexInstance(FVertexInstanceID Instance)
{
	InstanceSlots.Free(Instance.Value);
}

FVertexID FMeshDescription::GetVertexInstanceVertex(FVertexInstanceID Instance) const
{
	return ElementAt(InstanceVertices, InstanceSlots, Instance);
}

void FMeshDescription::ReserveVertexInstances(int32 Num)
{
	const std::size_t Count = Slot(Num);
	InstanceVertices.reserve(Count);
	Normals.reserve(HasAttributes(EVertexInstanceAttributes::Normals) ? Count : 0);
	Tangents.reserve(HasAttributes(EVertexInstanceAttributes::Tangents) ? Count : 0);
	BinormalSigns.reserve(HasAttributes(EVertexInstanceAttributes::BinormalSigns) ? Count : 0);
	Colors.reserve(HasAttributes(EVertexInstanceAttributes::Colors) ? Count : 0);
	for (TMeshArray<FVector2f>& Channel : UVs)
	{
		Channel.reserve(Count);
	}
}

FVertexInstanceID FMeshDescription::AppendVertexInstances(int32 Num)
{
	const int32 First = InstanceSlots.Append(Num);
	ResizeInstances(InstanceSlots.GetNumSlots());
	return FVertexInstanceID(First);
}

void FMeshDescription::ResizeInstances(int32 NumSlots)
{
	const std::size_t Count = Slot(NumSlots);
	InstanceVertices.resize(Count);
	Normals.resize(HasAttributes(EVertexInstanceAttributes::Normals) ? Count : 0);
	Tangents.resize(HasAttributes(EVertexInstanceAttributes::Tangents) ? Count : 0);
	BinormalSigns.resize(HasAttributes(EVertexInstanceAttributes::BinormalSigns) ? Count : 0);
	Colors.resize(HasAttributes(EVertexInstanceAttributes::Colors) ? Count : 0);
	for (TMeshArray<FVector2f>& Channel : UVs)
	{
		Channel.resize(Count);
	}
}

void FMeshDescription::AddAttributes(EVertexInstanceAttributes Wanted)
{
	const EVertexInstanceAttributes Before = Attributes;
	if ((Before | Wanted) == Before)
	{
		return;
	}
	const auto IsNew = [Before, Wanted](EVertexInstanceAttributes One)
	{ return HasAny(Wanted, One) && !HasAny(Before, One); };
	Attributes = Attributes | Wanted;
	ResizeInstances(InstanceSlots.GetNumSlots());
	if (IsNew(EVertexInstanceAttributes::Normals))
	{
		SetRange(Normals, 0, NoDirection);
	}
	if (IsNew(EVertexInstanceAttributes::Tangents))
	{
		SetRange(Tangents, 0, NoDirection);
	}
	if (IsNew(EVertexInstanceAttributes::BinormalSigns))
	{
		SetRange(BinormalSigns, 0, PositiveSign);
	}
	if (IsNew(EVertexInstanceAttributes::Colors))
	{
		SetRange(Colors, 0, White);
	}
}

void FMeshDescription::SetNumUVChannels(int32 Num)
{
	check(Num >= 0);
	const std::size_t Before = UVs.size();
	UVs.resize(Slot(Num));
	for (std::size_t Channel = Before; Channel < UVs.size(); ++Channel)
	{
		UVs[Channel].resize(Slot(InstanceSlots.GetNumSlots()));
		SetRange(UVs[Channel], 0, NoUV);
	}
}

FVector3f FMeshDescription::GetVertexInstanceNormal(FVertexInstanceID Instance) const
{
	return ElementAt(Normals, InstanceSlots, Instance);
}

FVector3f FMeshDescription::GetVertexInstanceTangent(FVertexInstanceID Instance) const
{
	return ElementAt(Tangents, InstanceSlots, Instance);
}

float FMeshDescription::GetVertexInstanceBinormalSign(FVertexInstanceID Instance) const
{
	return ElementAt(BinormalSigns, InstanceSlots, Instance);
}

FVector4f FMeshDescription::GetVertexInstanceColor(FVertexInstanceID Instance) const
{
	return ElementAt(Colors, InstanceSlots, Instance);
}

FVector2f FMeshDescription::GetVertexInstanceUV(FVertexInstanceID Instance, int32 Channel) const
{
	check(Channel >= 0 && Channel < GetNumUVChannels());
	return ElementAt(UVs[Slot(Channel)], InstanceSlots, Instance);
}

void FMeshDescription::SetVertexInstanceNormal(FVertexInstanceID Instance, const FVector3f& Normal)
{
	AddAttributes(EVertexInstanceAttributes::Normals);
	ElementAt(Normals, InstanceSlots, Instance) = Normal;
}

void FMeshDescription::SetVertexInstanceTangent(FVertexInstanceID Instance, const FVector3f& Tangent)
{
	AddAttributes(EVertexInstanceAttributes::Tangents);
	ElementAt(Tangents, InstanceSlots, Instance) = Tangent;
}

void FMeshDescription::SetVertexInstanceBinormalSign(FVertexInstanceID Instance, float Sign)
{
	AddAttributes(EVertexInstanceAttributes::BinormalSigns);
	ElementAt(BinormalSigns, InstanceSlots, Instance) = Sign;
}

void FMeshDescription::SetVertexInstanceColor(FVertexInstanceID Instance, const FVector4f& Color)
{
	AddAttributes(EVertexInstanceAttributes::Colors);
	ElementAt(Colors, InstanceSlots, Instance) = Color;
}

void FMeshDescription::SetVertexInstanceUV(FVertexInstanceID Instance, int32 Channel, const FVector2f& UV)
{
	SetNumUVChannels(FMath::Max(GetNumUVChannels(), Channel + 1));
	check(Channel >= 0);
	ElementAt(UVs[Slot(Channel)], InstanceSlots, Instance) = UV;
}

std::span<FVector2f> FMeshDescription::GetUVs(int32 Channel)
{
	check(Channel >= 0 && Channel < GetNumUVChannels());
	return UVs[Slot(Channel)];
}

std::span<const FVector2f> FMeshDescription::GetUVs(int32 Channel) const
{
	check(Channel >= 0 && Channel < GetNumUVChannels());
	return UVs[Slot(Channel)];
}

FTriangleID FMeshDescription::CreateTriangle(FPolygonGroupID Group, const FTriangleCorners& Corners)
{
	check(GroupSlots.IsAllocated(Group.Value));
	for (const FVertexInstanceID Corner : Corners)
	{
		check(InstanceSlots.IsAllocated(Corner.Value));
	}
	TriangleCorners.push_back(Corners);
	TriangleGroups.push_back(Group);
	return FTriangleID(TriangleSlots.Append());
}

void FMeshDescription::DeleteTriangle(FTriangleID Triangle)
{
	TriangleSlots.Free(Triangle.Value);
}

FTriangleCorners FMeshDescription::GetTriangleVertexInstances(FTriangleID Triangle) const
{
	return ElementAt(TriangleCorners, TriangleSlots, Triangle);
}

std::array<FVertexID, 3> FMeshDescription::GetTriangleVertices(FTriangleID Triangle) const
{
	const FTriangleCorners Corners = GetTriangleVertexInstances(Triangle);
	return {
		GetVertexInstanceVertex(Corners[0]), GetVertexInstanceVertex(Corners[1]), GetVertexInstanceVertex(Corners[2])};
}

FPolygonGroupID FMeshDescription::GetTrianglePolygonGroup(FTriangleID Triangle) const
{
	return ElementAt(TriangleGroups, TriangleSlots, Triangle);
}

void FMeshDescription::ReserveTriangles(int32 Num)
{
	TriangleCorners.reserve(Slot(Num));
	TriangleGroups.reserve(Slot(Num));
}

std::span<FTriangleCorners> FMeshDescription::AppendTriangles(FPolygonGroupID Group, int32 Num)
{
	check(GroupSlots.IsAllocated(Group.Value));
	const int32 First = TriangleSlots.Append(Num);
	TriangleCorners.resize(Slot(TriangleSlots.GetNumSlots()));
	TriangleGroups.resize(Slot(TriangleSlots.GetNumSlots()));
	SetRange(TriangleGroups, First, Group);
	return std::span(TriangleCorners).subspan(Slot(First));
}

FPolygonGroupID FMeshDescription::CreatePolygonGroup(const FName& MaterialSlotName)
{
	MaterialSlotNames.push_back(MaterialSlotName);
	return FPolygonGroupID(GroupSlots.Append());
}

void FMeshDescription::DeletePolygonGroup(FPolygonGroupID Group)
{
	GroupSlots.Free(Group.Value);
}

FName FMeshDescription::GetMaterialSlotName(FPolygonGroupID Group) const
{
	check(GroupSlots.IsAllocated(Group.Value));
	return MaterialSlotNames[Slot(Group.Value)];
}

void FMeshDescription::SetMaterialSlotName(FPolygonGroupID Group, const FName& Name)
{
	check(GroupSlots.IsAllocated(Group.Value));
	MaterialSlotNames[Slot(Group.Value)] = Name;
}
