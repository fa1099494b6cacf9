// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfPatch.h"
#include "SceneIO/SceneListing.h"

#include <string>
#include <vector>

/// Puts the tree that a scene's world has become into a patch of its document: nodes that were made, deleted, attached
/// or renamed, and things that nodes carry which have come to stand elsewhere than their node. Nodes keep their
/// indices; a deleted one is left behind blank, out of every list.
class FSceneTreePatch
{
public:
	/// All must outlive this. `InMeshes` has, for each node of the tree, the meshes that it shows in the patched
	/// document, its levels included; none for nodes without.
	FSceneTreePatch(const FScene& InScene, const FSceneTree& InTree, FGltfPatch& InPatch,
		const std::vector<std::vector<FGltfIndex>>& InMeshes);

	/// Called once, after everything else is in the patch. Fails where a scene lists a node that its parents have come
	/// to move.
	FSceneStatus Write();

private:
	std::string NewNode(FGltfIndex Index);
	std::string CopiedNode(FGltfIndex Index);
	std::string LevelList(FGltfIndex Index);
	FGltfIndex AddBehind(std::string Text);
	FGltfIndex MoveParts(FGltfIndex Index, FJsonEdit& Edit);
	void PointAtItself(FGltfIndex Index, FJsonEdit& Edit) const;
	void WriteName(FGltfIndex Node);
	void WriteChildren(FGltfIndex Node, FGltfIndex Parts);
	void WriteDeleted();
	void KeepAlive();

	const FScene& Scene;
	const FSceneTree& Tree;
	const FGltfDocument& Document;
	FGltfPatch& Patch;
	const std::vector<std::vector<FGltfIndex>>& Meshes;
	FSceneListing Listing;
	std::vector<std::string> Behind; ///< the texts of nodes behind those of the tree
};
