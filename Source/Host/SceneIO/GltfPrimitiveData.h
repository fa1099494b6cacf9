// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfElements.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// One attribute of a primitive, decoded as far as it must be.
struct FVertexAttribute
{
	std::string Semantic;
	FElementView Elements;
};

/// A primitive's geometry: attributes as they are stored, indices as 32-bit numbers, each below VertexCount.
struct FPrimitiveData
{
	EGltfMode Mode = EGltfMode::Triangles;
	std::uint32_t VertexCount = 0; ///< of POSITION; zero for a primitive without one, which has no geometry
	std::vector<FVertexAttribute> Attributes;
	bool bIndexed = false;
	std::vector<std::uint32_t> Indices;
	bool bWasCompressed = false; ///< with Draco: it has no bytes of its own that could be written over

	/// Null where there is no such attribute.
	const FVertexAttribute* Find(std::string_view Semantic) const;
};

/// Decodes a primitive, decompressing it where it is compressed. Fails for indices of vertices that do not exist or
/// that mean "primitive restart", for buffers without data, and for damaged compressed data.
TSceneResult<FPrimitiveData> ReadPrimitive(
	const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Mesh, std::size_t Primitive);

/// Hands all indices of an accessor, checked as ReadPrimitive checks them, to `Take(first, indices)` piece by piece: in
/// any order, on several threads at once. Fails where there is a bad one, whose piece is not handed out.
FSceneStatus ForEachIndex(const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Accessor,
	std::uint32_t VertexCount, const std::function<void(std::size_t, std::span<const std::uint32_t>)>& Take);
