// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfPatch.h"
#include "SceneIO/SceneTree.h"

#include <vector>

/// Which scenes of the file list which roots of the tree that a scene's world has become.
///
/// What leaves its parent, or is a copy, is in the scenes that showed it, or its source; what comes from nowhere is put
/// where viewers look first.
class FSceneListing
{
public:
	/// All must outlive this.
	FSceneListing(const FScene& InScene, const FSceneTree& InTree, FGltfPatch& InPatch);

	/// Puts the lists into the patch. Called once. Fails where a scene lists a node that its parents have come to move.
	FSceneStatus Write();

	/// Whether any scene lists the node, once written.
	bool IsListed(FGltfIndex Node) const { return bListed[std::size_t(Node)]; }

private:
	void FindAdded();
	FSceneStatus WriteScene(std::size_t SceneIndex);
	FSceneStatus StaysListed(std::size_t SceneIndex, FGltfIndex Node, bool& bStays) const;
	std::vector<std::size_t> ScenesInFile(FGltfIndex Node) const;

	const FScene& Scene;
	const FSceneTree& Tree;
	const FGltfDocument& Document;
	FGltfPatch& Patch;
	std::vector<std::vector<std::size_t>> ListedBy;  ///< the scenes that list each node of the file
	std::vector<std::vector<FGltfIndex>> AddedRoots; ///< to each scene
	std::vector<bool> bListed;
};
