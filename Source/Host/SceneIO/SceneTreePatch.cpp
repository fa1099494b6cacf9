// SPDX-License-Identifier: MIT
#include "SceneIO/SceneTreePatch.h"

#include "SceneIO/JsonWrite.h"
#include "SceneIO/NodeReferences.h"
#include "SceneIO/SceneParts.h"

#include <algorithm>

namespace
{
/// A member that says no more than that the node is one: without it, a node that is listed nowhere and says nothing
/// would be taken for a deleted one.
constexpr std::string_view NoTranslation = "[0,0,0]";

std::string Integer(FGltfIndex Index)
{
	return JsonWrite::Integer(std::uint64_t(Index));
}

/// A node object that is not taken for a deleted one.
std::string WithSubstance(std::string Text)
{
	const TSceneResult<FJsonText> Json = FJsonText::Parse(Text, "");
	check(Json.IsOk());
	if (!SaysNothing(*Json, Json->Root()))
	{
		return Text;
	}
	FJsonEdit Edit(*Json);
	Edit.SetMember(Json->Root(), "translation", std::string(NoTranslation));
	return Edit.ApplyAll();
}
} // namespace

FSceneTreePatch::FSceneTreePatch(const FScene& InScene, const FSceneTree& InTree, FGltfPatch& InPatch,
	const std::vector<std::vector<FGltfIndex>>& InMeshes)
	: Scene(InScene)
	, Tree(InTree)
	, Document(*InScene.Document())
	, Patch(InPatch)
	, Meshes(InMeshes)
	, Listing(InScene, InTree, InPatch)
{
}

FSceneStatus FSceneTreePatch::Write()
{
	if (FSceneStatus Status = Listing.Write(); !Status)
	{
		return Status;
	}
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		if (Tree.Node(Node).Actor)
		{
			WriteName(Node);
			WriteChildren(Node, MoveParts(Node, Patch.Json()));
		}
	}
	for (FGltfIndex Index = Scene.NumNodes(); Index < Tree.Num(); ++Index)
	{
		std::string Text = NewNode(Index);
		const bool bUnlinked = Tree.Node(Index).Parent == NoIndex && !Listing.IsListed(Index);
		const FGltfIndex Added = Patch.AppendToRoot("nodes", bUnlinked ? WithSubstance(std::move(Text)) : Text);
		check(Added == Index);
	}
	for (const std::string& Text : Behind)
	{
		Patch.AppendToRoot("nodes", Text);
	}
	WriteDeleted();
	KeepAlive();
	return {};
}

FGltfIndex FSceneTreePatch::AddBehind(std::string Text)
{
	Behind.push_back(std::move(Text));
	return Tree.Num() + FGltfIndex(Behind.size()) - 1;
}

std::string FSceneTreePatch::NewNode(FGltfIndex Index)
{
	const FSceneTreeNode& Node = Tree.Node(Index);
	if (Node.Source != NoIndex)
	{
		return CopiedNode(Index);
	}
	const TSceneResult<FJsonText> Empty = FJsonText::Parse("{}", "");
	FJsonEdit Edit(*Empty);
	Edit.SetMember(Empty->Root(), "name", JsonWrite::String(Node.Actor->GetActorLabel().ToUtf8()));
	const FTransform Relative = Node.Root ? Node.Root->GetRelativeTransform() : FTransform();
	if (const auto Placement = ChangedPlacement(FGltfNode(), FTransform(), Relative))
	{
		EditNodeTransform(Edit, *Empty, Empty->Root(), *Placement);
	}
	if (!Meshes[std::size_t(Index)].empty())
	{
		Edit.SetMember(Empty->Root(), "mesh", Integer(Meshes[std::size_t(Index)].front()));
	}
	if (!Node.Children.empty())
	{
		Edit.SetMember(Empty->Root(), "children", JsonWrite::Indices(Node.Children));
	}
	return Edit.ApplyAll();
}

/// The object of the node that it was copied from, with all that it carries, and what differs.
std::string FSceneTreePatch::CopiedNode(FGltfIndex Index)
{
	const FSceneTreeNode& Node = Tree.Node(Index);
	const FGltfNode& Source = Document.Node(Node.Source);
	const FJsonText& Json = Document.Json();
	FJsonEdit Edit(Json);
	if (Node.Actor->GetActorLabel() != Scene.NodeName(Node.Source))
	{
		Edit.SetMember(Source.Json, "name", JsonWrite::String(Node.Actor->GetActorLabel().ToUtf8()));
	}
	const FTransform Relative = Node.Root ? Node.Root->GetRelativeTransform() : FTransform();
	if (const auto Placement = ChangedPlacement(Source, Scene.Node(Node.Source).LoadedRelative, Relative))
	{
		EditNodeTransform(Edit, Json, Source.Json, *Placement);
	}
	const std::vector<FGltfIndex>& Shown = Meshes[std::size_t(Index)];
	if (Shown.empty())
	{
		for (const char* const Key : {"mesh", "skin", "weights"})
		{
			Edit.RemoveMember(Source.Json, Key);
		}
	}
	else if (Shown.front() != Source.Mesh)
	{
		Edit.SetMember(Source.Json, "mesh", Integer(Shown.front()));
	}
	std::vector<FGltfIndex> Children = Node.Children;
	if (const FGltfIndex Parts = MoveParts(Index, Edit); Parts != NoIndex)
	{
		Children.push_back(Parts);
	}
	if (Children.empty())
	{
		Edit.RemoveMember(Source.Json, "children");
	}
	else
	{
		Edit.SetMember(Source.Json, "children", JsonWrite::Indices(Children));
	}
	PointAtItself(Index, Edit);
	if (!Scene.Node(Node.Source).LodNodes.IsEmpty() && !Shown.empty())
	{
		Edit.SetMember(Json.Find(Json.Find(Source.Json, "extensions"), "MSFT_lod"), "ids", LevelList(Index));
	}
	return Edit.Apply(Source.Json);
}

/// Levels of its own, in the place of the node that they belong to.
std::string FSceneTreePatch::LevelList(FGltfIndex Index)
{
	const FSceneTreeNode& Node = Tree.Node(Index);
	const TArray<FGltfIndex>& Levels = Scene.Node(Node.Source).LodNodes;
	std::vector<FGltfIndex> Added;
	for (int32 Level = 0; Level < Levels.Num(); ++Level)
	{
		const FGltfNode& Source = Document.Node(Levels[Level]);
		FJsonEdit Edit(Document.Json());
		const FTransform& Loaded = Scene.Node(Levels[Level]).LoadedRelative;
		if (const auto Placement = ChangedPlacement(Source, Loaded, Node.Root->GetRelativeTransform()))
		{
			EditNodeTransform(Edit, Document.Json(), Source.Json, *Placement);
		}
		Edit.SetMember(Source.Json, "mesh", Integer(Meshes[std::size_t(Index)][std::size_t(Level) + 1]));
		Added.push_back(AddBehind(Edit.Apply(Source.Json)));
	}
	return JsonWrite::Indices(Added);
}

/// A collider or trigger in the shape of its own node is in that of the copy there.
void FSceneTreePatch::PointAtItself(FGltfIndex Index, FJsonEdit& Edit) const
{
	const FGltfIndex SourceIndex = Tree.Node(Index).Source;
	const auto& Extensions = Document.Node(SourceIndex).Extensions;
	if (!Extensions || !Extensions->RigidBody)
	{
		return;
	}
	const auto Point = [&](const FGltfGeometry& Geometry)
	{
		if (Geometry.Node == SourceIndex)
		{
			Edit.SetMember(Geometry.Json, "node", Integer(Index));
		}
	};
	const FGltfRigidBody& Body = *Extensions->RigidBody;
	Point(Body.Collider ? Body.Collider->Geometry : FGltfGeometry());
	Point(Body.Trigger ? Body.Trigger->Geometry : FGltfGeometry());
}

void FSceneTreePatch::WriteName(FGltfIndex Node)
{
	const FString Label = Tree.Node(Node).Actor->GetActorLabel();
	if (Label != Scene.NodeName(Node))
	{
		Patch.Json().SetMember(Document.Node(Node).Json, "name", JsonWrite::String(Label.ToUtf8()));
	}
}

/// Gives what the node carries a child node of its own where it stands elsewhere than the node now. `Edit` is of the
/// node's object, or of a copy.
FGltfIndex FSceneTreePatch::MoveParts(FGltfIndex Index, FJsonEdit& Edit)
{
	const FSceneTreeNode& Node = Tree.Node(Index);
	const UScenePartComponent* const Parts = SceneParts::Find(Node.Actor);
	const bool bHasParts = Parts && Node.Source != NoIndex && SceneParts::HasParts(Document, Node.Source);
	if (!bHasParts || !ChangedPlacement(FGltfNode(), FTransform(), Parts->GetRelativeTransform()))
	{
		return NoIndex;
	}
	const FString Label = Node.Actor->GetActorLabel();
	const bool bRenamed = Label != Scene.NodeName(Node.Source);
	return AddBehind(SceneParts::MoveToChild(Edit, Document, Node.Source, Parts->GetRelativeTransform(),
		bRenamed ? Label.ToUtf8() : Document.Node(Node.Source).Name));
}

void FSceneTreePatch::WriteChildren(FGltfIndex Node, FGltfIndex Parts)
{
	const FGltfNode& Old = Document.Node(Node);
	std::vector<FJsonIndex> Gone;
	for (std::size_t Child = 0; Child < Old.Children.size(); ++Child)
	{
		if (Tree.Node(Old.Children[Child]).Parent != Node)
		{
			Gone.push_back(Document.Json().Elements(Document.Json().Find(Old.Json, "children"))[Child]);
		}
	}
	std::vector<FGltfIndex> Added;
	for (const FGltfIndex Child : Tree.Node(Node).Children)
	{
		if (Tree.IsNew(Child) || Document.Node(Child).Parent != Node)
		{
			Added.push_back(Child);
		}
	}
	if (Parts != NoIndex)
	{
		Added.push_back(Parts);
	}
	EditIndexList(Patch.Json(), Document.Json(), Old.Json, "children", {Gone, Added});
}

void FSceneTreePatch::WriteDeleted()
{
	const FJsonText& Json = Document.Json();
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		const FJsonIndex Object = Document.Node(Node).Json;
		if (Tree.IsDeleted(Node) && !SaysNothing(Json, Object))
		{
			const FJsonIndex Name = Json.Find(Object, "name");
			Patch.Json().Replace(
				Object, Name == NoJson ? std::string("{}") : "{\"name\":" + std::string(Json.Raw(Name)) + "}");
		}
	}
	// A channel without a node is legal, and moves nothing.
	for (const FNodeReference& Reference : FindNodeReferences(Document))
	{
		if (Reference.Kind == ENodeReference::Channel && Tree.IsDeleted(Reference.Node))
		{
			Patch.Json().RemoveMember(Json.Find(Reference.Json, "target"), "node");
		}
	}
}

/// Gives nodes that stand in no list any more something to say, so that they are not taken for deleted ones.
void FSceneTreePatch::KeepAlive()
{
	if (Patch.Json().IsEmpty())
	{
		return;
	}
	for (FGltfIndex Index = 0; Index < Scene.NumNodes(); ++Index)
	{
		const FGltfNode& Node = Document.Node(Index);
		const bool bMayBeBare = Node.Mesh == NoIndex && Node.Camera == NoIndex && !Node.Extensions && !Node.bHasExtras;
		const bool bUnlinked =
			Tree.Node(Index).Actor && Tree.Node(Index).Parent == NoIndex && !Listing.IsListed(Index) && bMayBeBare;
		if (!bUnlinked || (Node.Parent == NoIndex && SaysNothing(Document.Json(), Node.Json)))
		{
			continue;
		}
		const TSceneResult<FJsonText> Text = FJsonText::Parse(Patch.Json().Apply(Node.Json), "");
		check(Text.IsOk());
		if (SaysNothing(*Text, Text->Root()))
		{
			Patch.Json().SetMember(Node.Json, "translation", std::string(NoTranslation));
		}
	}
}
