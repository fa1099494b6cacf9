// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfModel.h"

#include <cstdint>
#include <span>
#include <vector>

/// What indices mean in the primitive modes. A primitive without indices is one with the indices 0, 1, 2 …
namespace PrimitiveTopology
{
bool HasTriangles(EGltfMode Mode);

/// 0, 1, 2 … VertexCount - 1.
std::vector<std::uint32_t> Sequence(std::uint32_t VertexCount);

/// Three indices for each triangle, wound as the mode says. Triangles of strips and fans that use a vertex twice only
/// join others and are left out; so are one or two indices too many at the end of a list. Empty for points and lines.
std::vector<std::uint32_t> TriangleList(EGltfMode Mode, std::span<const std::uint32_t> Indices);

/// True when any triangle has three different vertices, so that its winding can be seen.
bool HasSides(EGltfMode Mode, std::span<const std::uint32_t> Indices);

/// Indices of the same mode that make the same triangles with the other winding, in the same order where the mode
/// allows it. Points and lines are returned as they are. A strip of even length becomes longer by one index.
std::vector<std::uint32_t> Flipped(EGltfMode Mode, std::span<const std::uint32_t> Indices);
}
