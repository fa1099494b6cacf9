// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfPatch.h"
#include "SceneIO/Scene.h"

#include <map>
#include <string>
#include <vector>

/// Puts the assets that a scene's world shows into a patch of its document, each once.
class FSceneMeshPatch
{
public:
	/// Both must outlive this.
	FSceneMeshPatch(const FScene& InScene, FGltfPatch& InPatch);

	/// The meshes of the file that the asset's levels are in the patched document, finest first; changed where they
	/// stand, or added, as need be. `Mesh` is the mesh of the node that shows the asset: what a copy was copied from
	/// (NoIndex where that is not known; then the asset must be one that was written before, or made of the file).
	/// Fails when geometry that is needed cannot be decoded, and for an asset that comes from no mesh of the file.
	TSceneResult<std::vector<FGltfIndex>> Write(const UStaticMesh& Asset, FGltfIndex Mesh);

private:
	TSceneResult<std::vector<FGltfIndex>> WriteAs(FGltfIndex Mesh, const UStaticMesh& Asset);
	bool ComesFrom(FGltfIndex Mesh, const UStaticMesh& Asset) const;
	FGltfIndex Apply(FGltfIndex Source, bool bCopy, std::string Name, FGltfMeshChange Change);
	TSceneResult<FGltfMeshChange> MakeChange(FGltfIndex Source, const FStaticMeshSourceModel& Model) const;
	FSceneStatus AddExtension(FGltfIndex Mesh, const UStaticMesh& Asset, FGltfIndex HiRes, FGltfMeshChange& Change);

	const FScene& Scene;
	const FGltfDocument& Document;
	FGltfPatch& Patch;
	std::map<const UStaticMesh*, FGltfIndex> MeshOfLoaded;
	std::map<const UStaticMesh*, std::vector<FGltfIndex>> Written;
};
