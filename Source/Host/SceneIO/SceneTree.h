// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/Scene.h"

#include <unordered_map>
#include <vector>

/// A node as the world has it now.
struct FSceneTreeNode
{
	AActor* Actor = nullptr; ///< null for a node that has none (any more)
	USceneComponent* Root = nullptr;
	FGltfIndex Source = NoIndex; ///< the node of the file that it is, or was copied from; NoIndex for neither
	FGltfIndex Parent = NoIndex;
	std::vector<FGltfIndex> Children;
};

/// The nodes that a scene's world makes: those of the file, by their indices there, and behind them one for each actor
/// that the file did not make, in the order of the world. Good until an actor is made, deleted or attached.
class FSceneTree
{
public:
	explicit FSceneTree(const FScene& InScene);

	FGltfIndex Num() const { return FGltfIndex(Nodes.size()); }
	const FSceneTreeNode& Node(FGltfIndex Index) const { return Nodes[std::size_t(Index)]; }

	/// The node of an actor; NoIndex for one that the tree does not have.
	FGltfIndex IndexOf(const AActor* Actor) const;

	/// Not of the file.
	bool IsNew(FGltfIndex Index) const { return Index >= Scene.NumNodes(); }

	/// Had an actor when the file was read, and has none now. The levels of a deleted node are deleted with it.
	bool IsDeleted(FGltfIndex Index) const
	{
		return !IsNew(Index) && Scene.Node(Index).bHadActor && !Node(Index).Actor;
	}

	/// True when the world has deleted, made or attached nothing since the file was read.
	bool IsAsInFile() const;

	/// The node above all others that the node is below; itself for a root.
	FGltfIndex TopOf(FGltfIndex Index) const;

private:
	void FindActors();
	void FindParents();

	const FScene& Scene;
	std::vector<FSceneTreeNode> Nodes;
	std::unordered_map<const AActor*, FGltfIndex> NewNodes;
};
