// SPDX-License-Identifier: MIT
#include "SceneIO/NodeReferences.h"

#include <algorithm>
#include <charconv>

namespace
{
void AddNamedByNode(const FGltfModel& Model, FGltfIndex Owner, std::vector<FNodeReference>& Out)
{
	const auto& Extensions = Model.Nodes[std::size_t(Owner)].Extensions;
	if (!Extensions)
	{
		return;
	}
	const auto Add = [&](FGltfIndex Node, ENodeReference Kind)
	{
		if (Node != NoIndex)
		{
			Out.push_back({Node, Kind, Owner, NoJson});
		}
	};
	for (const FGltfIndex Level : Extensions->LodNodes)
	{
		Add(Level, ENodeReference::Level);
	}
	if (!Extensions->RigidBody)
	{
		return;
	}
	const FGltfRigidBody& Body = *Extensions->RigidBody;
	Add(Body.Collider ? Body.Collider->Geometry.Node : NoIndex, ENodeReference::Collider);
	Add(Body.Joint ? Body.Joint->ConnectedNode : NoIndex, ENodeReference::JoinedBody);
	if (Body.Trigger)
	{
		Add(Body.Trigger->Geometry.Node, ENodeReference::Trigger);
		for (const FGltfIndex Node : Body.Trigger->Nodes)
		{
			Add(Node, ENodeReference::Trigger);
		}
	}
}

void AddNamedByAnimation(const FGltfModel& Model, FGltfIndex Owner, std::vector<FNodeReference>& Out)
{
	for (const FGltfChannel& Channel : Model.Animations[std::size_t(Owner)].Channels)
	{
		const FGltfIndex Pointed = NodeOfPointer(Channel.Pointer);
		if (Pointed >= 0 && Pointed < FGltfIndex(Model.Nodes.size()))
		{
			Out.push_back({Pointed, ENodeReference::Pointer, Owner, Channel.Json});
		}
		if (Channel.Node != NoIndex)
		{
			Out.push_back({Channel.Node, ENodeReference::Channel, Owner, Channel.Json});
		}
	}
}
} // namespace

FGltfIndex NodeOfPointer(std::string_view Pointer)
{
	constexpr std::string_view Prefix = "/nodes/";
	FGltfIndex Node = NoIndex;
	if (Pointer.starts_with(Prefix))
	{
		std::from_chars(Pointer.data() + Prefix.size(), Pointer.data() + Pointer.size(), Node);
	}
	return Node;
}

std::vector<FNodeReference> FindNodeReferences(const FGltfDocument& Document)
{
	const FGltfModel& Model = Document.Model();
	std::vector<FNodeReference> References;
	for (std::size_t Skin = 0; Skin < Model.Skins.size(); ++Skin)
	{
		for (const FGltfIndex Joint : Model.Skins[Skin].Joints)
		{
			References.push_back({Joint, ENodeReference::Joint, FGltfIndex(Skin), NoJson});
		}
		if (Model.Skins[Skin].Skeleton != NoIndex)
		{
			References.push_back({Model.Skins[Skin].Skeleton, ENodeReference::Skeleton, FGltfIndex(Skin), NoJson});
		}
	}
	for (std::size_t Animation = 0; Animation < Model.Animations.size(); ++Animation)
	{
		AddNamedByAnimation(Model, FGltfIndex(Animation), References);
	}
	for (std::size_t Node = 0; Node < Model.Nodes.size(); ++Node)
	{
		AddNamedByNode(Model, FGltfIndex(Node), References);
	}
	return References;
}

std::vector<bool> FindListedNodes(const FGltfDocument& Document)
{
	std::vector<bool> bListed(Document.Model().Nodes.size(), false);
	for (const FGltfScene& Scene : Document.Model().Scenes)
	{
		for (const FGltfIndex Root : Scene.Nodes)
		{
			bListed[std::size_t(Root)] = true;
		}
	}
	return bListed;
}

bool SaysNothing(const FJsonText& Json, FJsonIndex Node)
{
	const std::uint32_t NumMembers = Json.Count(Node);
	return NumMembers == 0 || (NumMembers == 1 && Json.Find(Node, "name") != NoJson);
}

std::vector<bool> FindBlankNodes(const FGltfDocument& Document)
{
	const std::vector<FGltfNode>& Nodes = Document.Model().Nodes;
	std::vector<bool> bBlank(Nodes.size(), false);
	bool bAny = false;
	for (std::size_t Node = 0; Node < Nodes.size(); ++Node)
	{
		bBlank[Node] = Nodes[Node].Parent == NoIndex && SaysNothing(Document.Json(), Nodes[Node].Json);
		bAny = bAny || bBlank[Node];
	}
	if (!bAny)
	{
		return bBlank;
	}
	const std::vector<bool> bListed = FindListedNodes(Document);
	std::transform(bBlank.begin(), bBlank.end(), bListed.begin(), bBlank.begin(),
		[](bool bIsBlank, bool bIsListed) { return bIsBlank && !bIsListed; });
	for (const FNodeReference& Reference : FindNodeReferences(Document))
	{
		// The channels of a deleted node have lost it; what else names a node needs it.
		bBlank[std::size_t(Reference.Node)] = false;
	}
	return bBlank;
}
