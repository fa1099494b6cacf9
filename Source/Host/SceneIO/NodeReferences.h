// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfDocument.h"

#include <string_view>
#include <vector>

/// How something in a file names a node, beside its parent and the scenes.
enum class ENodeReference : std::uint8_t
{
	Joint,      ///< of a skin
	Skeleton,   ///< of a skin
	Channel,    ///< of an animation
	Pointer,    ///< of an animation
	Collider,   ///< its geometry
	Trigger,    ///< its geometry, or one of its nodes
	JoinedBody, ///< the other end of a joint of bodies
	Level,      ///< a lower level of detail
};

/// One place where a node is named.
struct FNodeReference
{
	FGltfIndex Node = NoIndex;
	ENodeReference Kind = ENodeReference::Joint;
	FGltfIndex Owner = NoIndex; ///< the skin or the animation; for the last four kinds the node that carries it
	FJsonIndex Json = NoJson;   ///< of a channel: the channel
};

/// Every place in the document where a node is named by something that is understood.
std::vector<FNodeReference> FindNodeReferences(const FGltfDocument& Document);

/// The node that a JSON pointer of an animation points into, which need not exist; NoIndex where it points elsewhere.
FGltfIndex NodeOfPointer(std::string_view Pointer);

/// Which nodes a save has left blank because they were deleted: nodes that say nothing but their name, stand in no
/// scene, have no parent, and are named nowhere.
std::vector<bool> FindBlankNodes(const FGltfDocument& Document);

/// Which nodes a scene lists.
std::vector<bool> FindListedNodes(const FGltfDocument& Document);

/// True for a node object that says nothing but its name.
bool SaysNothing(const FJsonText& Json, FJsonIndex Node);
