// SPDX-License-Identifier: MIT
#include "SceneIO/SceneTreeCheck.h"

#include "SceneIO/NodeReferences.h"
#include "SceneIO/PrintableText.h"
#include "SceneIO/SceneLimits.h"

#include <algorithm>

namespace
{
std::string Quoted(const std::string& Name)
{
	return "'" + PrintableText(Name) + "'";
}

std::string Named(const std::string& Kind, const std::string& Name, FGltfIndex Index)
{
	return Name.empty() ? Kind + " " + std::to_string(Index) : Kind + " " + Quoted(Name);
}

class FSceneTreeCheck
{
public:
	FSceneTreeCheck(const FScene& InScene, const FSceneTree& InTree)
		: Scene(InScene)
		, Tree(InTree)
		, Document(*InScene.Document())
	{
	}

	FSceneStatus Run() const
	{
		for (const FNodeReference& Reference : FindNodeReferences(Document))
		{
			if (Tree.IsDeleted(Reference.Node) && IsNeeded(Reference))
			{
				return Refusal(NodeName(Reference.Node) + " was deleted, but " + Need(Reference));
			}
		}
		for (std::size_t Skin = 0; Skin < Document.Model().Skins.size(); ++Skin)
		{
			if (HasLostItsRoot(Document.Model().Skins[Skin]))
			{
				return Refusal("the joints of " + Named("skin", Document.Model().Skins[Skin].Name, FGltfIndex(Skin)) +
							   " have no common root any more");
			}
		}
		return CheckDepth();
	}

private:
	FSceneStatus Refusal(const std::string& Why) const
	{
		return FSceneError{"Cannot save \"" + PrintableText(Document.Place().Path()) + "\": " + Why + "."};
	}

	std::string NodeName(FGltfIndex Node) const { return Quoted(Scene.NodeName(Node).ToUtf8()); }

	/// A channel can do without its node: then it moves nothing. What only deleted nodes name is needed no longer.
	bool IsNeeded(const FNodeReference& Reference) const
	{
		switch (Reference.Kind)
		{
		case ENodeReference::Channel:
			return false;
		case ENodeReference::Joint:
		case ENodeReference::Skeleton:
		case ENodeReference::Pointer:
			return true;
		default:
			return IsCarried(Reference);
		}
	}

	/// By the node itself, or by a copy of it. A copy has levels of its own, and points at itself where the node did.
	bool IsCarried(const FNodeReference& Reference) const
	{
		if (Reference.Owner == Reference.Node)
		{
			return false;
		}
		if (!Tree.IsDeleted(Reference.Owner))
		{
			return true;
		}
		const bool bOwnLevels =
			Reference.Kind == ENodeReference::Level && !Scene.Node(Reference.Owner).LodNodes.IsEmpty();
		for (FGltfIndex Index = Scene.NumNodes(); Index < Tree.Num() && !bOwnLevels; ++Index)
		{
			if (Tree.Node(Index).Source == Reference.Owner)
			{
				return true;
			}
		}
		return false;
	}

	std::string Need(const FNodeReference& Reference) const
	{
		const FGltfModel& Model = Document.Model();
		const std::size_t Owner = std::size_t(Reference.Owner);
		switch (Reference.Kind)
		{
		case ENodeReference::Joint:
			return Named("skin", Model.Skins[Owner].Name, Reference.Owner) + " has it as a joint";
		case ENodeReference::Skeleton:
			return Named("skin", Model.Skins[Owner].Name, Reference.Owner) + " has it as its skeleton";
		case ENodeReference::Pointer:
			return Named("animation", Model.Animations[Owner].Name, Reference.Owner) + " changes a property of it";
		case ENodeReference::Collider:
			return NodeName(Reference.Owner) + " has it as the shape of its collider";
		case ENodeReference::Trigger:
			return NodeName(Reference.Owner) + " has it in its trigger";
		case ENodeReference::JoinedBody:
			return NodeName(Reference.Owner) + " is joined to it";
		default:
			return NodeName(Reference.Owner) + " has it as a level of detail";
		}
	}

	FGltfIndex TopInFile(FGltfIndex Node) const
	{
		while (Document.Node(Node).Parent != NoIndex)
		{
			Node = Document.Node(Node).Parent;
		}
		return Node;
	}

	bool HasLostItsRoot(const FGltfSkin& Skin) const
	{
		const auto Differ = [&](auto TopOf)
		{
			return std::ranges::any_of(
				Skin.Joints, [&](FGltfIndex Joint) { return TopOf(Joint) != TopOf(Skin.Joints.front()); });
		};
		return Differ([this](FGltfIndex Joint) { return Tree.TopOf(Joint); }) &&
			   !Differ([this](FGltfIndex Joint) { return TopInFile(Joint); });
	}

	FSceneStatus CheckDepth() const
	{
		std::vector<std::pair<FGltfIndex, std::size_t>> Pending;
		for (FGltfIndex Index = 0; Index < Tree.Num(); ++Index)
		{
			if (Tree.Node(Index).Parent == NoIndex)
			{
				Pending.emplace_back(Index, 0);
			}
		}
		while (!Pending.empty())
		{
			const auto [Index, Depth] = Pending.back();
			Pending.pop_back();
			if (Depth > SceneLimits::MaxNodeDepth)
			{
				return Refusal(Quoted(Tree.Node(Index).Actor->GetActorLabel().ToUtf8()) + " lies more than " +
							   std::to_string(SceneLimits::MaxNodeDepth) + " levels below its root");
			}
			for (const FGltfIndex Child : Tree.Node(Index).Children)
			{
				Pending.emplace_back(Child, Depth + 1);
			}
		}
		return {};
	}

	const FScene& Scene;
	const FSceneTree& Tree;
	const FGltfDocument& Document;
};
} // namespace

FSceneStatus CheckSceneTree(const FScene& Scene, const FSceneTree& Tree)
{
	return FSceneTreeCheck(Scene, Tree).Run();
}
