// SPDX-License-Identifier: MIT
#pragma once

#include "MeshDescription/MeshBulkData.h"
#include "SceneIO/GltfDocument.h"
#include "SceneIO/GltfPatch.h"

#include <memory>
#include <string>
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

/// Source geometry that stands in a scene file. It is decoded when it is asked for, and takes no memory before.
class FSceneMeshData final : public FMeshBulkData
{
public:
	FSceneMeshData(std::shared_ptr<const FGltfDocument> InDocument, FGltfIndex InMesh);

	/// The description, or the sentence that says why the file's data cannot be decoded.
	TSceneResult<TSharedPtr<FMeshDescription>> TryDecode() const;

	TSharedPtr<FMeshDescription> Decode() const override;
	bool IsEmpty() const override { return Layout.NumSlots == 0; }
	int32 NumVertices() const override { return int32(Layout.NumSlots); }
	uint64 MemoryBytes() const override { return sizeof(*this); }

	FGltfIndex GetMesh() const { return Mesh; }
	const FSceneMeshLayout& GetLayout() const { return Layout; }

	/// What the file must become for the mesh to be `Edited`, which came from this data: positions, normals and
	/// tangents, and, where the triangles were turned over, indices. `Original` is this data's own description.
	/// Vertices that the mesh does not use keep their values.
	TSceneResult<FGltfMeshChange> MakeChange(const FMeshDescription& Original, const FMeshDescription& Edited) const;

private:
	std::shared_ptr<const FGltfDocument> Document;
	FGltfIndex Mesh;
	FSceneMeshLayout Layout;
};
