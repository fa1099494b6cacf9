// SPDX-License-Identifier: MIT
#pragma once

#include "SceneText.h"

#include <cstdint>

/// The corners of the triangle that DracoTriangle packs.
inline const std::vector<float> TrianglePositions = {0, 0, 0, 2, 0, 0, 0, 3, 5};

/// A triangle as the Draco encoder packs it.
std::string DracoTriangle();

/// A scene of one mesh whose primitive is that stream, said to have so many vertices.
FSceneText DracoScene(const std::string& Compressed, std::size_t Vertices = 3, int UniqueId = 0);

/// Adds a view that is meshopt data, to be unfolded to `Count` elements of `Stride` bytes in the second buffer.
void AddPacked(FSceneText& Scene, const std::string& Packed, std::size_t Count, std::size_t Stride, const char* Mode,
	const char* Filter = "NONE");

/// Elements and triangles as the meshopt encoders pack them.
std::string PackedVertices(const void* Data, std::size_t Count, std::size_t Stride);
std::string PackedTriangles(const std::vector<std::uint32_t>& Indices, std::size_t Vertices);

/// The scene's text with a second buffer that has no data, as files without an uncompressed form have it.
std::string WithFallback(const FSceneText& Scene);

/// A scene of one triangle of such data.
FSceneText PackedScene(const std::string& Vertices, const std::string& Indices);
