// SPDX-License-Identifier: MIT
#include "SceneIO/SceneTreePatch.h"

#include "SceneIO/JsonWrite.h"
#include "SceneIO/NodeReferences.h"
#include "SceneIO/PrintableText.h"

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

std::string IndexList(const std::vector<FGltfIndex>& Indices)
{
	std::string Text;
	for (const FGltfIndex Index : Indices)
	{
		Text += (Text.empty() ? "" : ",") + Integer(Index);
	}
	return "[" + Text + "]";
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
{
}

FSceneStatus FSceneTreePatch::Write()
{
	FindScenes();
	if (FSceneStatus Status = WriteScenes(); !Status)
	{
		return Status;
	}
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		if (Tree.Node(Node).Actor)
		{
			WriteName(Node);
			WriteChildren(Node);
		}
	}
	for (FGltfIndex Index = Scene.NumNodes(); Index < Tree.Num(); ++Index)
	{
		std::string Text = NewNode(Index);
		const bool bUnlinked = Tree.Node(Index).Parent == NoIndex && !IsListedNow(Index);
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
		Edit.SetMember(Empty->Root(), "children", ChildList(Index));
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
	if (Node.Children.empty())
	{
		Edit.RemoveMember(Source.Json, "children");
	}
	else
	{
		Edit.SetMember(Source.Json, "children", ChildList(Index));
	}
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
	return IndexList(Added);
}

std::string FSceneTreePatch::ChildList(FGltfIndex Index) const
{
	return IndexList(Tree.Node(Index).Children);
}

void FSceneTreePatch::WriteName(FGltfIndex Node)
{
	const FString Label = Tree.Node(Node).Actor->GetActorLabel();
	if (Label != Scene.NodeName(Node))
	{
		Patch.Json().SetMember(Document.Node(Node).Json, "name", JsonWrite::String(Label.ToUtf8()));
	}
}

void FSceneTreePatch::WriteChildren(FGltfIndex Node)
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
	WriteList(Old.Json, "children", Gone, Added);
}

/// Takes elements out of a list of indices and puts others behind. The format has no empty lists.
void FSceneTreePatch::WriteList(
	FJsonIndex Owner, const char* Key, const std::vector<FJsonIndex>& Gone, const std::vector<FGltfIndex>& Added)
{
	const FJsonIndex Array = Document.Json().Find(Owner, Key);
	if (Array == NoJson)
	{
		if (!Added.empty())
		{
			Patch.Json().SetMember(Owner, Key, IndexList(Added));
		}
		return;
	}
	if (Added.empty() && !Gone.empty() && Gone.size() == Document.Json().Count(Array))
	{
		Patch.Json().RemoveMember(Owner, Key);
		return;
	}
	for (const FJsonIndex Element : Gone)
	{
		Patch.Json().RemoveElement(Array, Element);
	}
	for (const FGltfIndex Index : Added)
	{
		Patch.Json().AppendElement(Array, Integer(Index));
	}
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

void FSceneTreePatch::FindScenes()
{
	const std::vector<FGltfScene>& Scenes = Document.Model().Scenes;
	ListedBy.resize(std::size_t(Scene.NumNodes()));
	AddedRoots.resize(Scenes.size());
	bListedNow.assign(std::size_t(Tree.Num()), false);
	for (std::size_t Index = 0; Index < Scenes.size(); ++Index)
	{
		for (const FGltfIndex Root : Scenes[Index].Nodes)
		{
			ListedBy[std::size_t(Root)].push_back(Index);
		}
	}
	for (FGltfIndex Index = 0; Index < Tree.Num(); ++Index)
	{
		const FSceneTreeNode& Node = Tree.Node(Index);
		const bool bWasRoot = !Tree.IsNew(Index) && Document.Node(Index).Parent == NoIndex;
		if (!Node.Actor || Node.Parent != NoIndex || bWasRoot)
		{
			continue;
		}
		// What leaves its parent, or is copied, stays in the scenes that it was in; what comes from nowhere is put
		// where viewers look first.
		std::vector<std::size_t> In;
		if (Node.Source != NoIndex)
		{
			In = ScenesInFile(Node.Source);
		}
		else if (!Scenes.empty())
		{
			In.push_back(Document.Model().DefaultScene == NoIndex ? 0 : std::size_t(Document.Model().DefaultScene));
		}
		for (const std::size_t InScene : In)
		{
			bListedNow[std::size_t(Index)] = true;
			const bool bThere = !Tree.IsNew(Index) && std::ranges::count(ListedBy[std::size_t(Index)], InScene) > 0;
			if (!bThere)
			{
				AddedRoots[InScene].push_back(Index);
			}
		}
	}
}

/// The scenes that show the node in the file: that list it, or a node above it.
std::vector<std::size_t> FSceneTreePatch::ScenesInFile(FGltfIndex Node) const
{
	std::vector<std::size_t> Result;
	for (FGltfIndex At = Node; At != NoIndex; At = Document.Node(At).Parent)
	{
		for (const std::size_t Index : ListedBy[std::size_t(At)])
		{
			if (std::ranges::count(Result, Index) == 0)
			{
				Result.push_back(Index);
			}
		}
	}
	return Result;
}

FSceneStatus FSceneTreePatch::WriteScenes()
{
	for (std::size_t Index = 0; Index < Document.Model().Scenes.size(); ++Index)
	{
		if (FSceneStatus Status = WriteScene(Index); !Status)
		{
			return Status;
		}
	}
	return {};
}

FSceneStatus FSceneTreePatch::WriteScene(std::size_t SceneIndex)
{
	const FGltfScene& Listing = Document.Model().Scenes[SceneIndex];
	std::vector<FJsonIndex> Gone;
	for (std::size_t Root = 0; Root < Listing.Nodes.size(); ++Root)
	{
		bool bStays = true;
		if (FSceneStatus Status = StaysListed(SceneIndex, Listing.Nodes[Root], bStays); !Status)
		{
			return Status;
		}
		if (!bStays)
		{
			Gone.push_back(Document.Json().Elements(Document.Json().Find(Listing.Json, "nodes"))[Root]);
		}
		else
		{
			bListedNow[std::size_t(Listing.Nodes[Root])] = true;
		}
	}
	WriteList(Listing.Json, "nodes", Gone, AddedRoots[SceneIndex]);
	return {};
}

/// A scene may list a child only where nothing above it moves it.
FSceneStatus FSceneTreePatch::StaysListed(std::size_t SceneIndex, FGltfIndex Node, bool& bStays) const
{
	const FGltfIndex Parent = Tree.Node(Node).Parent;
	bStays = !Tree.IsDeleted(Node) && (Parent == NoIndex || Parent == Document.Node(Node).Parent);
	if (!bStays || Parent == NoIndex)
	{
		return {};
	}
	bool bMoved = false;
	bool bShownByOther = false;
	for (FGltfIndex At = Parent; At != NoIndex; At = Tree.Node(At).Parent)
	{
		bMoved = bMoved || !(Tree.Node(At).Root->GetRelativeTransform() == FTransform());
		bShownByOther =
			bShownByOther || (!Tree.IsNew(At) && std::ranges::count(ListedBy[std::size_t(At)], SceneIndex) > 0);
	}
	bStays = !bMoved;
	if (bMoved && !bShownByOther)
	{
		return FSceneError{"Cannot save \"" + PrintableText(Document.Place().Path()) + "\": a scene lists '" +
						   PrintableText(Scene.NodeName(Node).ToUtf8()) + "' without its parent, which now moves it."};
	}
	return {};
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
			Tree.Node(Index).Actor && Tree.Node(Index).Parent == NoIndex && !IsListedNow(Index) && bMayBeBare;
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
