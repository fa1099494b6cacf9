// SPDX-License-Identifier: MIT
#include "SceneIO/GltfReader.h"
#include "SceneIO/PrintableText.h"

#include <algorithm>

namespace
{
const FGltfAccessor& Accessor(const FGltfReader& Reader, FGltfIndex Index)
{
	return Reader.Model.Accessors[static_cast<std::size_t>(Index)];
}

bool ReadAttributes(FGltfReader& Reader, FJsonIndex Object, std::vector<FGltfAttribute>& Out)
{
	for (const FJsonMember& Member : Reader.Json.Members(Object))
	{
		FGltfAttribute& Attribute = Out.emplace_back();
		Attribute.Semantic = *Reader.Json.String(Member.Key);
		Attribute.Json = Member.Value;
		if (!Reader.IndexValue(Member.Value, Reader.Model.Accessors.size(), "accessors", Attribute.Accessor))
		{
			return false;
		}
	}
	return true;
}

/// The attributes that are read as geometry must mean something; all others are carried along.
bool CheckAttributeType(FGltfReader& Reader, const FGltfAttribute& Attribute)
{
	const FGltfAccessor& Data = Accessor(Reader, Attribute.Accessor);
	const bool bVec3 = Attribute.Semantic == "POSITION" || Attribute.Semantic == "NORMAL";
	const bool bVec4 = Attribute.Semantic == "TANGENT";
	if (!bVec3 && !bVec4)
	{
		return true;
	}
	if (Data.Component == EGltfComponent::Unknown || Data.Component == EGltfComponent::UnsignedInt)
	{
		return Reader.Fail(Attribute.Json, "names accessor " + std::to_string(Attribute.Accessor) +
											   ", whose componentType is not one for " + Attribute.Semantic);
	}
	return Data.Type == (bVec3 ? EGltfType::Vec3 : EGltfType::Vec4) ||
		   Reader.Fail(Attribute.Json, "names accessor " + std::to_string(Attribute.Accessor) + " of type " +
										   TypeName(Data.Type) + ", but " + Attribute.Semantic + " is " +
										   (bVec3 ? "VEC3" : "VEC4"));
}

bool CheckAttributes(FGltfReader& Reader, const FGltfPrimitive& Primitive)
{
	const FGltfAttribute* const Position = Primitive.FindAttribute("POSITION");
	for (const FGltfAttribute& Attribute : Primitive.Attributes)
	{
		if (!CheckAttributeType(Reader, Attribute))
		{
			return false;
		}
		// A surplus is never reached; with too few, vertices would be read from beyond the end.
		if (Position != nullptr &&
			Accessor(Reader, Attribute.Accessor).Count < Accessor(Reader, Position->Accessor).Count)
		{
			return Reader.Fail(Attribute.Json, "names accessor " + std::to_string(Attribute.Accessor) + " with " +
												   std::to_string(Accessor(Reader, Attribute.Accessor).Count) +
												   " elements, but POSITION has " +
												   std::to_string(Accessor(Reader, Position->Accessor).Count));
		}
	}
	return true;
}

bool CheckIndices(FGltfReader& Reader, const FGltfPrimitive& Primitive)
{
	if (Primitive.Indices == NoIndex)
	{
		return true;
	}
	const FGltfAccessor& Indices = Accessor(Reader, Primitive.Indices);
	const bool bUnsigned = Indices.Component == EGltfComponent::UnsignedByte ||
						   Indices.Component == EGltfComponent::UnsignedShort ||
						   Indices.Component == EGltfComponent::UnsignedInt;
	return (bUnsigned && Indices.Type == EGltfType::Scalar) ||
		   Reader.FailMember(Primitive.Json, "indices",
			   "names accessor " + std::to_string(Primitive.Indices) + ", which does not hold unsigned whole numbers");
}

bool ReadDraco(FGltfReader& Reader, FGltfPrimitive& Primitive)
{
	FJsonIndex Object = NoJson;
	if (!Reader.Extension(Primitive.Json, "KHR_draco_mesh_compression", Object) || Object == NoJson)
	{
		return Object == NoJson;
	}
	FGltfDraco& Draco = Primitive.Draco.emplace();
	FJsonIndex Attributes = NoJson;
	if (!Reader.Required(Object, "bufferView") || !Reader.Required(Object, "attributes") ||
		!Reader.Index(Object, "bufferView", Reader.Model.BufferViews.size(), "buffer views", Draco.View) ||
		!Reader.ObjectMember(Object, "attributes", Attributes))
	{
		return false;
	}
	for (const FJsonMember& Member : Reader.Json.Members(Attributes))
	{
		const std::optional<std::uint64_t> Id = Reader.Json.Unsigned(Member.Value);
		FGltfDraco::FAttribute& Attribute = Draco.Attributes.emplace_back();
		Attribute.Semantic = *Reader.Json.String(Member.Key);
		if (!Id || *Id > 0xFFFFFFFFu)
		{
			return Reader.Fail(Member.Value, "is not the number of a compressed attribute");
		}
		Attribute.UniqueId = static_cast<std::uint32_t>(*Id);
		if (Primitive.FindAttribute(Attribute.Semantic) == nullptr)
		{
			return Reader.Fail(Member.Value, "compresses an attribute that the primitive does not have");
		}
	}
	const bool bTriangles = Primitive.Mode == EGltfMode::Triangles || Primitive.Mode == EGltfMode::TriangleStrip;
	return bTriangles || Reader.Fail(Object, "compresses a primitive that is neither triangles nor a triangle strip");
}

bool ReadTargets(FGltfReader& Reader, FGltfPrimitive& Primitive)
{
	std::vector<FJsonIndex> Targets;
	if (!Reader.Objects(Primitive.Json, "targets", Targets))
	{
		return false;
	}
	for (const FJsonIndex Target : Targets)
	{
		if (!ReadAttributes(Reader, Target, Primitive.Targets.emplace_back()))
		{
			return false;
		}
	}
	return true;
}

bool ReadPrimitive(FGltfReader& Reader, FJsonIndex Object, FGltfPrimitive& Primitive)
{
	Primitive.Json = Object;
	FJsonIndex Attributes = NoJson;
	std::uint64_t Mode = static_cast<std::uint64_t>(EGltfMode::Triangles);
	if (!Reader.Required(Object, "attributes") || !Reader.ObjectMember(Object, "attributes", Attributes) ||
		!Reader.Unsigned(Object, "mode", Mode))
	{
		return false;
	}
	if (Mode > static_cast<std::uint64_t>(EGltfMode::TriangleFan))
	{
		return Reader.FailMember(Object, "mode", "is " + std::to_string(Mode) + ", which is no primitive mode");
	}
	Primitive.Mode = static_cast<EGltfMode>(Mode);
	Primitive.ExtensionNames = Reader.ExtensionNames(Object);
	return ReadAttributes(Reader, Attributes, Primitive.Attributes) &&
		   Reader.Index(Object, "indices", Reader.Model.Accessors.size(), "accessors", Primitive.Indices) &&
		   Reader.Index(Object, "material", Reader.Model.Materials.size(), "materials", Primitive.Material) &&
		   ReadTargets(Reader, Primitive) && CheckAttributes(Reader, Primitive) && CheckIndices(Reader, Primitive) &&
		   ReadDraco(Reader, Primitive);
}
}

bool ReadGltfMeshes(FGltfReader& Reader)
{
	std::vector<FJsonIndex> Meshes;
	if (!Reader.Objects(Reader.Json.Root(), "meshes", Meshes))
	{
		return false;
	}
	Reader.Model.Meshes.reserve(Meshes.size());
	for (const FJsonIndex Object : Meshes)
	{
		FGltfMesh& Mesh = Reader.Model.Meshes.emplace_back();
		Mesh.Json = Object;
		Mesh.Name = Reader.Name(Object);
		Mesh.ExtensionNames = Reader.ExtensionNames(Object);
		std::vector<FJsonIndex> Primitives;
		if (!Reader.Required(Object, "primitives") || !Reader.Objects(Object, "primitives", Primitives))
		{
			return false;
		}
		Mesh.Primitives.reserve(Primitives.size());
		for (const FJsonIndex Primitive : Primitives)
		{
			if (!ReadPrimitive(Reader, Primitive, Mesh.Primitives.emplace_back()))
			{
				return false;
			}
		}
	}
	return true;
}
