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
	Elements().Positions.push_back(Position);
	return FVertexID(Elements().VertexSlots.Append());
}

void FMeshDescription::CreateVertexWithID(FVertexID Vertex, const FVector3f& Position)
{
	Elements().VertexSlots.AllocateAt(Vertex.Value);
	const int32 OldSize = static_cast<int32>(Elements().Positions.size());
	if (Elements().VertexSlots.GetNumSlots() > OldSize)
	{
		Elements().Positions.resize(Slot(Elements().VertexSlots.GetNumSlots()));
		SetRange(Elements().Positions, OldSize, FVector3f(0.f, 0.f, 0.f));
	}
	Elements().Positions[Slot(Vertex.Value)] = Position;
}

void FMeshDescription::DeleteVertex(FVertexID Vertex)
{
	Elements().VertexSlots.Free(Vertex.Value);
}

FVector3f FMeshDescription::GetVertexPosition(FVertexID Vertex) const
{
	return ElementAt(Elements().Positions, Elements().VertexSlots, Vertex);
}

void FMeshDescription::SetVertexPosition(FVertexID Vertex, const FVector3f& Position)
{
	ElementAt(Elements().Positions, Elements().VertexSlots, Vertex) = Position;
}

std::span<FVector3f> FMeshDescription::AppendVertices(int32 Num)
{
	const int32 First = Elements().VertexSlots.Append(Num);
	Elements().Positions.resize(Slot(Elements().VertexSlots.GetNumSlots()));
	return std::span(Elements().Positions).subspan(Slot(First));
}

FVertexInstanceID FMeshDescription::CreateVertexInstance(FVertexID Vertex)
{
	check(Elements().VertexSlots.IsAllocated(Vertex.Value));
	Elements().InstanceVertices.push_back(Vertex);
	if (HasAttributes(EVertexInstanceAttributes::Normals))
	{
		Elements().Normals.push_back(NoDirection);
	}
	if (HasAttributes(EVertexInstanceAttributes::Tangents))
	{
		Elements().Tangents.push_back(NoDirection);
	}
	if (HasAttributes(EVertexInstanceAttributes::BinormalSigns))
	{
		Elements().BinormalSigns.push_back(PositiveSign);
	}
	if (HasAttributes(EVertexInstanceAttributes::Colors))
	{
		Elements().Colors.push_back(White);
	}
	for (TMeshArray<FVector2f>& Channel : Elements().UVs)
	{
		Channel.push_back(NoUV);
	}
	return FVertexInstanceID(Elements().InstanceSlots.Append());
}

void FMeshDescription::DeleteVertexInstance(FVertexInstanceID Instance)
{
	Elements().InstanceSlots.Free(Instance.Value);
}

FVertexID FMeshDescription::GetVertexInstanceVertex(FVertexInstanceID Instance) const
{
	return ElementAt(Elements().InstanceVertices, Elements().InstanceSlots, Instance);
}

void FMeshDescription::ReserveVertexInstances(int32 Num)
{
	const std::size_t Count = Slot(Num);
	Elements().InstanceVertices.reserve(Count);
	Elements().Normals.reserve(HasAttributes(EVertexInstanceAttributes::Normals) ? Count : 0);
	Elements().Tangents.reserve(HasAttributes(EVertexInstanceAttributes::Tangents) ? Count : 0);
	Elements().BinormalSigns.reserve(HasAttributes(EVertexInstanceAttributes::BinormalSigns) ? Count : 0);
	Elements().Colors.reserve(HasAttributes(EVertexInstanceAttributes::Colors) ? Count : 0);
	for (TMeshArray<FVector2f>& Channel : Elements().UVs)
	{
		Channel.reserve(Count);
	}
}

FVertexInstanceID FMeshDescription::AppendVertexInstances(int32 Num)
{
	const int32 First = Elements().InstanceSlots.Append(Num);
	ResizeInstances(Elements().InstanceSlots.GetNumSlots());
	return FVertexInstanceID(First);
}

void FMeshDescription::ResizeInstances(int32 NumSlots)
{
	const std::size_t Count = Slot(NumSlots);
	Elements().InstanceVertices.resize(Count);
	Elements().Normals.resize(HasAttributes(EVertexInstanceAttributes::Normals) ? Count : 0);
	Elements().Tangents.resize(HasAttributes(EVertexInstanceAttributes::Tangents) ? Count : 0);
	Elements().BinormalSigns.resize(HasAttributes(EVertexInstanceAttributes::BinormalSigns) ? Count : 0);
	Elements().Colors.resize(HasAttributes(EVertexInstanceAttributes::Colors) ? Count : 0);
	for (TMeshArray<FVector2f>& Channel : Elements().UVs)
	{
		Channel.resize(Count);
	}
}

void FMeshDescription::AddAttributes(EVertexInstanceAttributes Wanted)
{
	const EVertexInstanceAttributes Before = Elements().Attributes;
	if ((Before | Wanted) == Before)
	{
		return;
	}
	const auto IsNew = [Before, Wanted](EVertexInstanceAttributes One)
	{ return HasAny(Wanted, One) && !HasAny(Before, One); };
	Elements().Attributes = Elements().Attributes | Wanted;
	ResizeInstances(Elements().InstanceSlots.GetNumSlots());
	if (IsNew(EVertexInstanceAttributes::Normals))
	{
		SetRange(Elements().Normals, 0, NoDirection);
	}
	if (IsNew(EVertexInstanceAttributes::Tangents))
	{
		SetRange(Elements().Tangents, 0, NoDirection);
	}
	if (IsNew(EVertexInstanceAttributes::BinormalSigns))
	{
		SetRange(Elements().BinormalSigns, 0, PositiveSign);
	}
	if (IsNew(EVertexInstanceAttributes::Colors))
	{
		SetRange(Elements().Colors, 0, White);
	}
}

void FMeshDescription::SetNumUVChannels(int32 Num)
{
	check(Num >= 0);
	const std::size_t Before = Elements().UVs.size();
	Elements().UVs.resize(Slot(Num));
	for (std::size_t Channel = Before; Channel < Elements().UVs.size(); ++Channel)
	{
		Elements().UVs[Channel].resize(Slot(Elements().InstanceSlots.GetNumSlots()));
		SetRange(Elements().UVs[Channel], 0, NoUV);
	}
}

FVector3f FMeshDescription::GetVertexInstanceNormal(FVertexInstanceID Instance) const
{
	return ElementAt(Elements().Normals, Elements().InstanceSlots, Instance);
}

FVector3f FMeshDescription::GetVertexInstanceTangent(FVertexInstanceID Instance) const
{
	return ElementAt(Elements().Tangents, Elements().InstanceSlots, Instance);
}

float FMeshDescription::GetVertexInstanceBinormalSign(FVertexInstanceID Instance) const
{
	return ElementAt(Elements().BinormalSigns, Elements().InstanceSlots, Instance);
}

FVector4f FMeshDescription::GetVertexInstanceColor(FVertexInstanceID Instance) const
{
	return ElementAt(Elements().Colors, Elements().InstanceSlots, Instance);
}

FVector2f FMeshDescription::GetVertexInstanceUV(FVertexInstanceID Instance, int32 Channel) const
{
	check(Channel >= 0 && Channel < GetNumUVChannels());
	return ElementAt(Elements().UVs[Slot(Channel)], Elements().InstanceSlots, Instance);
}

void FMeshDescription::SetVertexInstanceNormal(FVertexInstanceID Instance, const FVector3f& Normal)
{
	AddAttributes(EVertexInstanceAttributes::Normals);
	ElementAt(Elements().Normals, Elements().InstanceSlots, Instance) = Normal;
}

void FMeshDescription::SetVertexInstanceTangent(FVertexInstanceID Instance, const FVector3f& Tangent)
{
	AddAttributes(EVertexInstanceAttributes::Tangents);
	ElementAt(Elements().Tangents, Elements().InstanceSlots, Instance) = Tangent;
}

void FMeshDescription::SetVertexInstanceBinormalSign(FVertexInstanceID Instance, float Sign)
{
	AddAttributes(EVertexInstanceAttributes::BinormalSigns);
	ElementAt(Elements().BinormalSigns, Elements().InstanceSlots, Instance) = Sign;
}

void FMeshDescription::SetVertexInstanceColor(FVertexInstanceID Instance, const FVector4f& Color)
{
	AddAttributes(EVertexInstanceAttributes::Colors);
	ElementAt(Elements().Colors, Elements().InstanceSlots, Instance) = Color;
}

void FMeshDescription::SetVertexInstanceUV(FVertexInstanceID Instance, int32 Channel, const FVector2f& UV)
{
	SetNumUVChannels(FMath::Max(GetNumUVChannels(), Channel + 1));
	check(Channel >= 0);
	ElementAt(Elements().UVs[Slot(Channel)], Elements().InstanceSlots, Instance) = UV;
}

std::span<FVector2f> FMeshDescription::GetUVs(int32 Channel)
{
	check(Channel >= 0 && Channel < GetNumUVChannels());
	return Elements().UVs[Slot(Channel)];
}

std::span<const FVector2f> FMeshDescription::GetUVs(int32 Channel) const
{
	check(Channel >= 0 && Channel < GetNumUVChannels());
	return Elements().UVs[Slot(Channel)];
}

FTriangleID FMeshDescription::CreateTriangle(FPolygonGroupID Group, const FTriangleCorners& Corners)
{
	check(Elements().GroupSlots.IsAllocated(Group.Value));
	for (const FVertexInstanceID Corner : Corners)
	{
		check(Elements().InstanceSlots.IsAllocated(Corner.Value));
	}
	Elements().TriangleCorners.push_back(Corners);
	Elements().TriangleGroups.push_back(Group);
	return FTriangleID(Elements().TriangleSlots.Append());
}

void FMeshDescription::DeleteTriangle(FTriangleID Triangle)
{
	Elements().TriangleSlots.Free(Triangle.Value);
}

FTriangleCorners FMeshDescription::GetTriangleVertexInstances(FTriangleID Triangle) const
{
	return ElementAt(Elements().TriangleCorners, Elements().TriangleSlots, Triangle);
}

std::array<FVertexID, 3> FMeshDescription::GetTriangleVertices(FTriangleID Triangle) const
{
	const FTriangleCorners Corners = GetTriangleVertexInstances(Triangle);
	return {
		GetVertexInstanceVertex(Corners[0]), GetVertexInstanceVertex(Corners[1]), GetVertexInstanceVertex(Corners[2])};
}

FPolygonGroupID FMeshDescription::GetTrianglePolygonGroup(FTriangleID Triangle) const
{
	return ElementAt(Elements().TriangleGroups, Elements().TriangleSlots, Triangle);
}

void FMeshDescription::ReserveTriangles(int32 Num)
{
	Elements().TriangleCorners.reserve(Slot(Num));
	Elements().TriangleGroups.reserve(Slot(Num));
}

std::span<FTriangleCorners> FMeshDescription::AppendTriangles(FPolygonGroupID Group, int32 Num)
{
	check(Elements().GroupSlots.IsAllocated(Group.Value));
	const int32 First = Elements().TriangleSlots.Append(Num);
	Elements().TriangleCorners.resize(Slot(Elements().TriangleSlots.GetNumSlots()));
	Elements().TriangleGroups.resize(Slot(Elements().TriangleSlots.GetNumSlots()));
	SetRange(Elements().TriangleGroups, First, Group);
	return std::span(Elements().TriangleCorners).subspan(Slot(First));
}

FPolygonGroupID FMeshDescription::CreatePolygonGroup(const FName& MaterialSlotName)
{
	Elements().MaterialSlotNames.push_back(MaterialSlotName);
	return FPolygonGroupID(Elements().GroupSlots.Append());
}

void FMeshDescription::DeletePolygonGroup(FPolygonGroupID Group)
{
	Elements().GroupSlots.Free(Group.Value);
}

FName FMeshDescription::GetMaterialSlotName(FPolygonGroupID Group) const
{
	check(Elements().GroupSlots.IsAllocated(Group.Value));
	return Elements().MaterialSlotNames[Slot(Group.Value)];
}

void FMeshDescription::SetMaterialSlotName(FPolygonGroupID Group, const FName& Name)
{
	check(Elements().GroupSlots.IsAllocated(Group.Value));
	Elements().MaterialSlotNames[Slot(Group.Value)] = Name;
}
