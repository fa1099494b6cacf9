// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfPatch.h"
#include "SceneIO/SceneTree.h"

#include <string>
#include <vector>

/// Puts the tree that a scene's world has become into a patch of its document: nodes that were made, deleted, attached
/// or renamed. Nodes keep their indices; a deleted one is left behind blank, out of every list.
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
	std::string ChildList(FGltfIndex Index) const;
	void WriteName(FGltfIndex Node);
	void WriteChildren(FGltfIndex Node);
	void WriteList(
		FJsonIndex Owner, const char* Key, const std::vector<FJsonIndex>& Gone, const std::vector<FGltfIndex>& Added);
	void WriteDeleted();
	FSceneStatus WriteScenes();
	FSceneStatus WriteScene(std::size_t SceneIndex);
	FSceneStatus StaysListed(std::size_t SceneIndex, FGltfIndex Node, bool& bStays) const;
	void FindScenes();
	std::vector<std::size_t> ScenesInFile(FGltfIndex Node) const;
	bool IsListedNow(FGltfIndex Node) const { return bListedNow[std::size_t(Node)]; }
	void KeepAlive();

	const FScene& Scene;
	const FSceneTree& Tree;
	const FGltfDocument& Document;
	FGltfPatch& Patch;
	const std::vector<std::vector<FGltfIndex>>& Meshes;
	std::vector<std::vector<std::size_t>> ListedBy;  ///< the scenes that list each node of the file
	std::vector<std::vector<FGltfIndex>> AddedRoots; ///< to each scene
	std::vector<bool> bListedNow;
	std::vector<std::string> Behind; ///< the texts of nodes behind those of the tree
};
