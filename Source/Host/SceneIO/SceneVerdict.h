// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/NodeReferences.h"
#include "SceneIO/SceneTree.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

/// What is about to be done to nodes.
enum class ESceneCommand : uint8
{
	BakeTransform,
	SetPivot,
};

/// Why a node is left out that a bake could not hold below its parent.
inline constexpr const char* UnevenParentReason = "its parent combines rotation with uneven scale";

/// Whether a node can be worked on such that every viewer shows the same picture afterwards.
struct FSceneVerdict
{
	enum class EKind : uint8
	{
		NoMesh,        ///< nothing to work on
		NothingToBake, ///< its world transform has neither rotation nor scale
		LeftOut,       ///< see the reason
		Candidate,
	};

	EKind Kind = EKind::NoMesh;
	std::string Reason; ///< of a node that is left out: "it is skinned"
};

/// Judges the nodes of a scene, from true matrices, as its world stands now. What keeps a node for good from being
/// worked on keeps its copies, too.
///
/// `IsWanted` says which nodes the user asked for. A node that is asked for, but whose children would suffer, is left
/// out; children that are candidates themselves do not suffer.
class FSceneJudge
{
public:
	explicit FSceneJudge(const FScene& InScene);

	/// The nodes of the file.
	std::vector<FSceneVerdict> Judge(ESceneCommand Command, const std::vector<bool>& bWanted) const;

	/// All nodes of a tree, which must be that of the scene's world now: those of the file, and copies and other
	/// actors.
	std::vector<FSceneVerdict> Judge(
		ESceneCommand Command, const FSceneTree& Tree, const std::vector<bool>& bWanted) const;

	/// What keeps a node for good from being worked on; empty for nothing.
	const std::string& StaticReason(FGltfIndex Node) const { return StaticReasons[std::size_t(Node)]; }

	/// The node's world matrix as it stands in the world now, from the relative transforms.
	std::vector<FMatrix> WorldMatrices() const;

private:
	void FindAnimated();
	void FindJoints();
	std::string FindStaticReason(FGltfIndex Node) const;
	std::string ReasonOfNode(const FGltfNode& Node, FGltfIndex Index) const;
	std::string ReasonOfMesh(const FGltfMesh& Mesh) const;
	std::vector<FMatrix> WorldMatrices(const FSceneTree& Tree) const;
	bool HasMesh(const FSceneTree& Tree, FGltfIndex Index) const;
	std::string ReasonForGood(const FSceneTree& Tree, FGltfIndex Index) const;
	std::string ReasonOfPlace(
		ESceneCommand Command, FGltfIndex Node, const FSceneTree& Tree, const std::vector<FMatrix>& Worlds) const;
	std::string ReasonOfChild(
		ESceneCommand Command, FGltfIndex Child, const FSceneTree& Tree, const std::vector<FMatrix>& Worlds) const;

	const FScene& Scene;
	std::vector<bool> bAnimated; ///< has a channel of its own
	std::vector<FGltfIndex> AnimatedAncestor;
	std::vector<bool> bJoint;
	std::vector<bool> bJointOfBodies;
	std::map<FGltfIndex, FNodeReference> ShapeOf; ///< nodes that another's collider or trigger names
	std::vector<std::string> StaticReasons;
};
