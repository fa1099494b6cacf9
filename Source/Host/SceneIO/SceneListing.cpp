// SPDX-License-Identifier: MIT
#include "SceneIO/SceneListing.h"

#include "SceneIO/PrintableText.h"

#include <algorithm>

FSceneListing::FSceneListing(const FScene& InScene, const FSceneTree& InTree, FGltfPatch& InPatch)
	: Scene(InScene)
	, Tree(InTree)
	, Document(*InScene.Document())
	, Patch(InPatch)
	, ListedBy(Document.Model().Nodes.size())
	, AddedRoots(Document.Model().Scenes.size())
	, bListed(std::size_t(InTree.Num()), false)
{
	for (std::size_t Index = 0; Index < Document.Model().Scenes.size(); ++Index)
	{
		for (const FGltfIndex Root : Document.Model().Scenes[Index].Nodes)
		{
			ListedBy[std::size_t(Root)].push_back(Index);
		}
	}
}

void FSceneListing::FindAdded()
{
	const std::vector<FGltfScene>& Scenes = Document.Model().Scenes;
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
			bListed[std::size_t(Index)] = true;
			const bool bThere = !Tree.IsNew(Index) && std::ranges::count(ListedBy[std::size_t(Index)], InScene) > 0;
			if (!bThere)
			{
				AddedRoots[InScene].push_back(Index);
			}
		}
	}
}

/// The scenes that show the node in the file: that list it, or a node above it.
std::vector<std::size_t> FSceneListing::ScenesInFile(FGltfIndex Node) const
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

FSceneStatus FSceneListing::Write()
{
	FindAdded();
	for (std::size_t Index = 0; Index < Document.Model().Scenes.size(); ++Index)
	{
		if (FSceneStatus Status = WriteScene(Index); !Status)
		{
			return Status;
		}
	}
	return {};
}

FSceneStatus FSceneListing::WriteScene(std::size_t SceneIndex)
{
	const FGltfScene& Listed = Document.Model().Scenes[SceneIndex];
	std::vector<FJsonIndex> Gone;
	for (std::size_t Root = 0; Root < Listed.Nodes.size(); ++Root)
	{
		bool bStays = true;
		if (FSceneStatus Status = StaysListed(SceneIndex, Listed.Nodes[Root], bStays); !Status)
		{
			return Status;
		}
		if (!bStays)
		{
			Gone.push_back(Document.Json().Elements(Document.Json().Find(Listed.Json, "nodes"))[Root]);
		}
		else
		{
			bListed[std::size_t(Listed.Nodes[Root])] = true;
		}
	}
	EditIndexList(Patch.Json(), Document.Json(), Listed.Json, "nodes", {Gone, AddedRoots[SceneIndex]});
	return {};
}

/// A scene may list a child only where nothing above it moves it.
FSceneStatus FSceneListing::StaysListed(std::size_t SceneIndex, FGltfIndex Node, bool& bStays) const
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
