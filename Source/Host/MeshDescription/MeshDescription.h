// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Box.h"
#include "Core/Name.h"
#include "MeshDescription/MeshArray.h"
#include "MeshDescription/MeshElementSlots.h"

#include <array>
#include <memory>
#include <span>

class FMeshSource;
class FMeshTransform;
struct FDeferredMesh;

/// The vertex instances at a triangle's corners. Seen from outside the shape they run counter-clockwise: the geometric
/// normal is (corner 1 - corner 0) x (corner 2 - corner 0).
using FTriangleCorners = std::array<FVertexInstanceID, 3>;

/// Attributes that the vertex instances of a mesh may or may not have. A mesh is not given what its source lacks.
enum class EVertexInstanceAttributes : uint8
{
	None = 0,
	Normals = 1,       ///< unit vector, away from the surface
	Tangents = 2,      ///< unit vector along the surface, where the first texture coordinate grows
	BinormalSigns = 4, ///< binormal = sign * (normal x tangent)
	Colors = 8,        ///< linear red, green, blue, alpha
	All = 15,
};

constexpr EVertexInstanceAttributes operator|(EVertexInstanceAttributes A, EVertexInstanceAttributes B)
{
	return static_cast<EVertexInstanceAttributes>(static_cast<uint8>(A) | static_cast<uint8>(B));
}

constexpr bool HasAny(EVertexInstanceAttributes Set, EVertexInstanceAttributes Wanted)
{
	return (static_cast<uint8>(Set) & static_cast<uint8>(Wanted)) != 0;
}

/// Editable triangle mesh: positions in single precision, in the mesh's own space and the host's units. Every attribute
/// is one contiguous array, indexed by the element's number; a number may have no element (a gap), whose entries mean
/// nothing.
///
/// Accessors take the number of an element that exists: checked. Spans over whole arrays include the gaps, and are
/// valid until elements or attributes of that kind are added.
///
/// A description may take its elements in only when somebody looks at them: made from a source, it holds nothing, and
/// FStaticMeshOperations::ApplyTransform only notes what is to be done. No caller sees a difference, time and memory
/// aside. The first look is no more thread-safe than a change.
class FMeshDescription
{
public:
	FMeshDescription() = default;

	/// The elements that the source gives, taken in when they are first looked at.
	explicit FMeshDescription(std::shared_ptr<const FMeshSource> Source);

	/// Where the elements will come from; null once they are here.
	const std::shared_ptr<const FDeferredMesh>& GetDeferred() const { return Deferred; }

	/// Transforms the elements once they are taken in. They must not be here yet: checked.
	void Defer(const FMeshTransform& Transform);

	TMeshElements<FVertexID> Vertices() const { return TMeshElements<FVertexID>(Elements().VertexSlots); }
	TMeshElements<FVertexInstanceID> VertexInstances() const
	{
		return TMeshElements<FVertexInstanceID>(Elements().InstanceSlots);
	}
	TMeshElements<FTriangleID> Triangles() const { return TMeshElements<FTriangleID>(Elements().TriangleSlots); }
	TMeshElements<FPolygonGroupID> PolygonGroups() const
	{
		return TMeshElements<FPolygonGroupID>(Elements().GroupSlots);
	}

	bool IsEmpty() const { return NumVertices() == 0; }
	/// As Vertices().Num(), without taking elements in.
	int32 NumVertices() const;

	// Vertices

	FVertexID CreateVertex(const FVector3f& Position = FVector3f(0.f, 0.f, 0.f));
	/// Makes the vertex of a given, free number; numbers that this leaves out become gaps.
	void CreateVertexWithID(FVertexID Vertex, const FVector3f& Position = FVector3f(0.f, 0.f, 0.f));
	/// Deletes a vertex. Its vertex instances go first; one that is left makes the mesh inconsistent.
	void DeleteVertex(FVertexID Vertex);
	FVector3f GetVertexPosition(FVertexID Vertex) const;
	void SetVertexPosition(FVertexID Vertex, const FVector3f& Position);
	void ReserveVertices(int32 Num) { Elements().Positions.reserve(static_cast<std::size_t>(Num)); }

	/// Makes `Num` vertices at once and returns their positions, to be filled by the caller.
	std::span<FVector3f> AppendVertices(int32 Num);
	/// Deletes every vertex whose entry is zero: one entry per slot.
	void KeepOnlyVertices(std::span<const uint8> bUsed) { Elements().VertexSlots.AllocateOnly(bUsed); }
	std::span<FVector3f> GetVertexPositions() { return Elements().Positions; }
	std::span<const FVector3f> GetVertexPositions() const { return Elements().Positions; }

	// Vertex instances

	/// Makes an instance of a vertex: zero normal and tangent, positive binormal sign, white, texture coordinates zero,
	/// as far as the mesh has these.
	FVertexInstanceID CreateVertexInstance(FVertexID Vertex);
	/// Deletes an instance. Its triangles go first; one that is left makes the mesh inconsistent.
	void DeleteVertexInstance(FVertexInstanceID Instance);
	FVertexID GetVertexInstanceVertex(FVertexInstanceID Instance) const;
	void ReserveVertexInstances(int32 Num);

	/// Makes `Num` instances at once. Their vertices and all attributes that the mesh has are to be filled by the
	/// caller through the spans below. Returns the first.
	FVertexInstanceID AppendVertexInstances(int32 Num);
	void KeepOnlyVertexInstances(std::span<const uint8> bUsed) { Elements().InstanceSlots.AllocateOnly(bUsed); }
	std::span<FVertexID> GetVertexInstanceVertices() { return Elements().InstanceVertices; }
	std::span<const FVertexID> GetVertexInstanceVertices() const { return Elements().InstanceVertices; }

	// Attributes of vertex instances

	/// What the instances have, texture coordinates aside.
	EVertexInstanceAttributes GetAttributes() const { return Elements().Attributes; }
	bool HasAttributes(EVertexInstanceAttributes Wanted) const { return HasAny(Elements().Attributes, Wanted); }
	/// Gives all instances these attributes, with the values of `CreateVertexInstance`. Those that they have stay.
	void AddAttributes(EVertexInstanceAttributes Wanted);
	/// Adds or drops texture coordinate channels; new ones are zero.
	void SetNumUVChannels(int32 Num);
	int32 GetNumUVChannels() const { return static_cast<int32>(Elements().UVs.size()); }

	/// Value of an attribute, which the mesh must have: checked.
	FVector3f GetVertexInstanceNormal(FVertexInstanceID Instance) const;
	FVector3f GetVertexInstanceTangent(FVertexInstanceID Instance) const;
	float GetVertexInstanceBinormalSign(FVertexInstanceID Instance) const;
	FVector4f GetVertexInstanceColor(FVertexInstanceID Instance) const;
	FVector2f GetVertexInstanceUV(FVertexInstanceID Instance, int32 Channel) const;

	/// Sets the value for one instance; an attribute that the mesh lacks is added first.
	void SetVertexInstanceNormal(FVertexInstanceID Instance, const FVector3f& Normal);
	void SetVertexInstanceTangent(FVertexInstanceID Instance, const FVector3f& Tangent);
	void SetVertexInstanceBinormalSign(FVertexInstanceID Instance, float Sign);
	void SetVertexInstanceColor(FVertexInstanceID Instance, const FVector4f& Color);
	void SetVertexInstanceUV(FVertexInstanceID Instance, int32 Channel, const FVector2f& UV);

	/// Whole arrays, one entry per slot; empty when the mesh lacks the attribute.
	std::span<FVector3f> GetNormals() { return Elements().Normals; }
	std::span<const FVector3f> GetNormals() const { return Elements().Normals; }
	std::span<FVector3f> GetTangents() { return Elements().Tangents; }
	std::span<const FVector3f> GetTangents() const { return Elements().Tangents; }
	std::span<float> GetBinormalSigns() { return Elements().BinormalSigns; }
	std::span<const float> GetBinormalSigns() const { return Elements().BinormalSigns; }
	std::span<FVector4f> GetColors() { return Elements().Colors; }
	std::span<const FVector4f> GetColors() const { return Elements().Colors; }
	std::span<FVector2f> GetUVs(int32 Channel);
	std::span<const FVector2f> GetUVs(int32 Channel) const;

	// Triangles

	FTriangleID CreateTriangle(FPolygonGroupID Group, const FTriangleCorners& Corners);
	/// Deletes a triangle; its vertex instances and vertices stay.
	void DeleteTriangle(FTriangleID Triangle);
	FTriangleCorners GetTriangleVertexInstances(FTriangleID Triangle) const;
	std::array<FVertexID, 3> GetTriangleVertices(FTriangleID Triangle) const;
	FPolygonGroupID GetTrianglePolygonGroup(FTriangleID Triangle) const;
	void ReserveTriangles(int32 Num);

	/// Makes `Num` triangles of one group at once and returns their corners, to be filled by the caller.
	std::span<FTriangleCorners> AppendTriangles(FPolygonGroupID Group, int32 Num);
	std::span<FTriangleCorners> GetTriangleCorners() { return Elements().TriangleCorners; }
	std::span<const FTriangleCorners> GetTriangleCorners() const { return Elements().TriangleCorners; }

	// Polygon groups

	FPolygonGroupID CreatePolygonGroup(const FName& MaterialSlotName = NAME_None);
	/// Deletes a group. Its triangles go first; one that is left makes the mesh inconsistent.
	void DeletePolygonGroup(FPolygonGroupID Group);
	FName GetMaterialSlotName(FPolygonGroupID Group) const;
	void SetMaterialSlotName(FPolygonGroupID Group, const FName& Name);

	// The whole

	/// The box around all vertices, whether or not a triangle uses them; invalid without vertices. Coordinates that are
	/// no numbers are left out.
	FBox ComputeBoundingBox() const;

	/// Vertices with a coordinate that is infinite or no number.
	int32 CountNonFiniteVertices() const;

	/// True when every triangle, instance and group that is referred to exists.
	bool IsConsistent() const;

	/// True when both have the same elements under the same numbers, and the same attributes to the last bit (two NaNs
	/// of one pattern are the same, zeros of different signs are not). What lies in gaps does not matter.
	bool operator==(const FMeshDescription& Other) const;

	/// Bytes that the arrays occupy, reserved ones included.
	uint64 MemoryBytes() const;

	/// Removes everything, attributes included.
	void Empty() { *this = FMeshDescription(); }

private:
	/// All there is, once it is here.
	struct FElements
	{
		FMeshElementSlots VertexSlots;
		FMeshElementSlots InstanceSlots;
		FMeshElementSlots TriangleSlots;
		FMeshElementSlots GroupSlots;

		TMeshArray<FVector3f> Positions;

		EVertexInstanceAttributes Attributes = EVertexInstanceAttributes::None;
		TMeshArray<FVertexID> InstanceVertices;
		TMeshArray<FVector3f> Normals;
		TMeshArray<FVector3f> Tangents;
		TMeshArray<float> BinormalSigns;
		TMeshArray<FVector4f> Colors;
		std::vector<TMeshArray<FVector2f>> UVs;

		TMeshArray<FTriangleCorners> TriangleCorners;
		TMeshArray<FPolygonGroupID> TriangleGroups;

		std::vector<FName> MaterialSlotNames;
	};

	FElements& Elements()
	{
		if (Deferred)
		{
			TakeIn();
		}
		return Taken;
	}
	const FElements& Elements() const { return const_cast<FMeshDescription*>(this)->Elements(); }
	void TakeIn() const;
	void ResizeInstances(int32 NumSlots);

	mutable FElements Taken;
	mutable std::shared_ptr<const FDeferredMesh> Deferred; ///< null: all is taken in
};
