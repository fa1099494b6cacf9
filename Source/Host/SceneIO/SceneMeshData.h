// SPDX-License-Identifier: MIT
#pragma once

#include "MeshDescription/MeshBulkData.h"
#include "SceneIO/GltfPatch.h"
#include "SceneIO/SceneMeshSource.h"

#include <memory>

/// Source geometry that stands in a scene file. It is read when it is asked for, and takes no memory before.
class FSceneMeshData final : public FMeshBulkData
{
public:
	FSceneMeshData(std::shared_ptr<const FGltfDocument> InDocument, FGltfIndex InMesh);

	/// The description, or the sentence that says why the file's data cannot be decoded. Elements are taken in at the
	/// first look, but for compressed ones.
	TSceneResult<TSharedPtr<FMeshDescription>> TryDecode() const;

	TSharedPtr<FMeshDescription> Decode() const override;

	/// Reads through the data now, so that TryDecode need not. May run on several threads, each for other data.
	void ReadAhead() const;

	bool IsEmpty() const override { return Layout.NumSlots == 0; }
	int32 NumVertices() const override { return int32(Layout.NumSlots); }
	uint64 MemoryBytes() const override { return sizeof(*this); }

	FGltfIndex GetMesh() const { return Mesh; }
	const FSceneMeshLayout& GetLayout() const { return Layout; }

	/// True for a description that was made from this data and has as many vertices, whatever was done to them.
	bool IsSourceOf(const FMeshDescription& Description) const;

	/// What the file must become for the mesh to be `Edited`, which came from this data: positions, normals and
	/// tangents, and, where the triangles were turned over, indices. Vertices that the mesh does not use keep their
	/// values. Fails where what is in the file cannot be decoded any more.
	TSceneResult<FGltfMeshChange> MakeChange(const FMeshDescription& Edited) const;

private:
	TSceneResult<std::shared_ptr<const FSceneMeshSource>> OpenSource() const;
	FGltfMeshChange CompareElements(const FMeshDescription& Original, const FMeshDescription& Edited) const;
	FGltfMeshChange TransformElements(const std::shared_ptr<const FDeferredMesh>& Deferred) const;
	FSceneStatus TurnOver(FGltfMeshChange& Change) const;

	std::shared_ptr<const FGltfDocument> Document;
	FGltfIndex Mesh;
	FSceneMeshLayout Layout;
	mutable std::shared_ptr<const FSceneMeshSource> Source; ///< once it was read through
};
