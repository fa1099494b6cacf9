// SPDX-License-Identifier: MIT
#include "SceneIO/SceneVerdict.h"

#include "Engine/SceneComponent.h"

#include <algorithm>
#include <array>

namespace
{
/// Node extensions that neither have a direction nor a size, or that are understood.
constexpr std::array<std::string_view, 9> HarmlessOnNodes = {"EXT_mesh_gpu_instancing", "KHR_lights_punctual",
	"KHR_node_hoverability", "KHR_node_selectability", "KHR_node_visibility", "KHR_physics_rigid_bodies",
	"KHR_xmp_json_ld", "MSFT_lod", "TARVIN_component"};

/// Extensions of meshes and primitives that do not say where or how large anything is, or that are understood.
constexpr std::array<std::string_view, 10> HarmlessOnMeshes = {"CESIUM_primitive_outline", "EXT_mesh_features",
	"EXT_structural_metadata", "KHR_draco_mesh_compression", "KHR_materials_variants", "KHR_mesh_quantization",
	"KHR_xmp_json_ld", "MSFT_lod", "TARVIN_static_mesh", "EXT_mesh_primitive_edge_visibility"};

template <std::size_t N>
std::string FirstUnknown(const std::vector<std::string>& Names, const std::array<std::string_view, N>& Known)
{
	for (const std::string& Name : Names)
	{
		if (std::find(Known.begin(), Known.end(), Name) == Known.end())
		{
			return Name;
		}
	}
	return {};
}
} // namespace

FSceneJudge::FSceneJudge(const FScene& InScene)
	: Scene(InScene)
{
	FindAnimated();
	FindJoints();
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		StaticReasons.push_back(FindStaticReason(Node));
	}
}

void FSceneJudge::FindAnimated()
{
	const FGltfModel& Model = Scene.Document()->Model();
	bAnimated.assign(Model.Nodes.size(), false);
	for (const FGltfAnimation& Animation : Model.Animations)
	{
		for (const FGltfChannel& Channel : Animation.Channels)
		{
			const FGltfIndex Node = Channel.Pointer.empty() ? Channel.Node : NodeOfPointer(Channel.Pointer);
			if (Node >= 0 && Node < Scene.NumNodes())
			{
				bAnimated[std::size_t(Node)] = true;
			}
		}
	}
	AnimatedAncestor.assign(Model.Nodes.size(), NoIndex);
	const FSceneTree Tree(Scene);
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		FGltfIndex& Found = AnimatedAncestor[std::size_t(Node)];
		for (FGltfIndex Up = Tree.Node(Node).Parent; Up != NoIndex && Found == NoIndex; Up = Tree.Node(Up).Parent)
		{
			Found = !Tree.IsNew(Up) && bAnimated[std::size_t(Up)] ? Up : NoIndex;
		}
	}
}

void FSceneJudge::FindJoints()
{
	const FGltfModel& Model = Scene.Document()->Model();
	bJoint.assign(Model.Nodes.size(), false);
	bJointOfBodies.assign(Model.Nodes.size(), false);
	for (const FGltfSkin& Skin : Model.Skins)
	{
		for (const FGltfIndex Joint : Skin.Joints)
		{
			bJoint[std::size_t(Joint)] = true;
		}
	}
	for (const FNodeReference& Reference : FindNodeReferences(*Scene.Document()))
	{
		const bool bShape = Reference.Kind == ENodeReference::Collider || Reference.Kind == ENodeReference::Trigger;
		// What is in the shape of its own node changes with it.
		if (bShape && Reference.Owner != Reference.Node)
		{
			ShapeOf.emplace(Reference.Node, Reference);
		}
	}
	for (std::size_t Node = 0; Node < Model.Nodes.size(); ++Node)
	{
		const auto& Extensions = Model.Nodes[Node].Extensions;
		if (Extensions && Extensions->RigidBody && Extensions->RigidBody->Joint)
		{
			bJointOfBodies[Node] = true;
			const FGltfIndex Other = Extensions->RigidBody->Joint->ConnectedNode;
			if (Other != NoIndex)
			{
				bJointOfBodies[std::size_t(Other)] = true;
			}
		}
	}
}

std::string FSceneJudge::FindStaticReason(FGltfIndex Index) const
{
	const FGltfNode& Node = Scene.Document()->Node(Index);
	if (Node.Mesh == NoIndex)
	{
		return {};
	}
	std::string Reason = ReasonOfNode(Node, Index);
	if (Reason.empty())
	{
		Reason = ReasonOfMesh(Scene.Document()->Mesh(Node.Mesh));
	}
	return Reason;
}

std::string FSceneJudge::ReasonOfNode(const FGltfNode& Node, FGltfIndex Index) const
{
	if (Node.Skin != NoIndex)
	{
		return "it is skinned";
	}
	if (Node.bHasWeights || Scene.Document()->Mesh(Node.Mesh).IsMorphed())
	{
		return "its mesh is morphed";
	}
	if (bAnimated[std::size_t(Index)])
	{
		return "it is animated";
	}
	if (const FGltfIndex Ancestor = AnimatedAncestor[std::size_t(Index)]; Ancestor != NoIndex)
	{
		return "it is under the animated node '" + Scene.NodeName(Ancestor).ToUtf8() + "'";
	}
	if (bJoint[std::size_t(Index)])
	{
		return "it is a joint of a skin";
	}
	if (bJointOfBodies[std::size_t(Index)])
	{
		return "it is joined to another body";
	}
	if (const auto Shape = ShapeOf.find(Index); Shape != ShapeOf.end())
	{
		const bool bCollider = Shape->second.Kind == ENodeReference::Collider;
		return "it is named by the " + std::string(bCollider ? "collider" : "trigger") + " of '" +
			   Scene.NodeName(Shape->second.Owner).ToUtf8() + "'";
	}
	if (Scene.Node(Index).LevelOf != NoIndex)
	{
		return "it is a level of detail, which follows '" + Scene.NodeName(Scene.Node(Index).LevelOf).ToUtf8() + "'";
	}
	const USceneComponent* const Component = Scene.Node(Index).Component;
	if (Component && Component->CreationMethod != EComponentCreationMethod::Native)
	{
		return "its component was not created natively";
	}
	if (!Node.Extensions)
	{
		return {};
	}
	if (Node.Extensions->bInstanced)
	{
		return "it is instanced";
	}
	if (Node.Extensions->RigidBody && Node.Extensions->RigidBody->Motion != NoJson)
	{
		return "it is a moving body, whose motion is said in its own space";
	}
	if (!Node.Extensions->LodNodes.empty() && Scene.Node(Index).LodNodes.IsEmpty())
	{
		return "its levels of detail cannot follow: they are shared, placed on their own, or placed otherwise";
	}
	const std::string Unknown = FirstUnknown(Node.Extensions->Names, HarmlessOnNodes);
	return Unknown.empty() ? std::string() : "it carries " + Unknown;
}

std::string FSceneJudge::ReasonOfMesh(const FGltfMesh& Mesh) const
{
	std::string Unknown = FirstUnknown(Mesh.ExtensionNames, HarmlessOnMeshes);
	bool bHasPositions = false;
	for (const FGltfPrimitive& Primitive : Mesh.Primitives)
	{
		Unknown = Unknown.empty() ? FirstUnknown(Primitive.ExtensionNames, HarmlessOnMeshes) : Unknown;
		bHasPositions = bHasPositions || Primitive.FindAttribute("POSITION");
	}
	if (!Unknown.empty())
	{
		return "its mesh carries " + Unknown;
	}
	return bHasPositions ? std::string() : "its mesh has no positions";
}
