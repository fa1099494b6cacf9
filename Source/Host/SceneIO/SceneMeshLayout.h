// SPDX-License-Identifier: MIT
#pragma once

#include "MeshDescription/MeshDescription.h"
#include "SceneIO/GltfDocument.h"

#include <vector>

/// Vertices of a mesh of the file that share their accessors, and where they stand in its description.
struct FSceneVertexBlock
{
	FGltfIndex Position = NoIndex;
	FGltfIndex Normal = NoIndex;
	FGltfIndex Tangent = NoIndex;
	int32 FirstSlot = 0;
	int32 Count = 0;
	std::vector<std::size_t> Primitives; ///< that draw them
};

/// How a mesh of the file becomes a description: one vertex, and one vertex instance of the same number, for each
/// vertex of the file; one polygon group for each primitive; triangle lists. Known without decoding anything.
struct FSceneMeshLayout
{
	std::vector<FSceneVertexBlock> Blocks;
	std::vector<std::size_t> BlockOfPrimitive;
	int64 NumSlots = 0;
	bool bHasNormals = false;
	bool bHasTangents = false;
};

FSceneMeshLayout MakeMeshLayout(const FGltfDocument& Document, FGltfIndex Mesh);

/// Puts the mesh into an empty description. Fails where its data cannot be decoded; the description is then of no use.
FSceneStatus DecodeMesh(const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Mesh,
	const FSceneMeshLayout& Layout, FMeshDescription& Description);
