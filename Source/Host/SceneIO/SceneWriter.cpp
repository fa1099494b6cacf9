// SPDX-License-Identifier: MIT
#include "SceneIO/SceneWriter.h"

#include "Engine/StaticMeshComponent.h"
#include "SceneIO/SceneMeshPatch.h"
#include "SceneIO/SceneTree.h"
#include "SceneIO/SceneTreeCheck.h"
#include "SceneIO/SceneTreePatch.h"

namespace
{
/// The change of one scene, in the making.
class FScenePatchMaker
{
public:
	explicit FScenePatchMaker(const FScene& InScene)
		: Scene(InScene)
		, Tree(InScene)
		, Document(*InScene.Document())
		, Patch(InScene.Document())
		, MeshPatch(InScene, Patch)
		, Meshes(std::size_t(Tree.Num()))
	{
	}

	TSceneResult<FGltfPatch> Run()
	{
		if (!Tree.IsAsInFile())
		{
			if (FSceneStatus Status = CheckSceneTree(Scene, Tree); !Status)
			{
				return Status.Error();
			}
		}
		if (FSceneStatus Status = WriteMeshes(); !Status)
		{
			return Status.Error();
		}
		for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
		{
			if (Tree.Node(Node).Actor)
			{
				PatchNode(Node);
			}
		}
		if (FSceneStatus Status = FSceneTreePatch(Scene, Tree, Patch, Meshes).Write(); !Status)
		{
			return Status.Error();
		}
		return std::move(Patch);
	}

private:
	/// Finds out which meshes nodes show. Those of which it is known what they were made of come first: what they show
	/// is then known of the others.
	FSceneStatus WriteMeshes()
	{
		for (const bool bKnown : {true, false})
		{
			for (FGltfIndex Index = 0; Index < Tree.Num(); ++Index)
			{
				const FGltfIndex Source = Tree.Node(Index).Source;
				const FGltfIndex Mesh = Source == NoIndex ? NoIndex : Document.Node(Source).Mesh;
				const UStaticMesh* const Asset = ShownAsset(Index);
				if (!Asset || (Mesh != NoIndex) != bKnown)
				{
					continue;
				}
				TSceneResult<std::vector<FGltfIndex>> Levels = MeshPatch.Write(*Asset, Mesh);
				if (!Levels)
				{
					return Levels.Error();
				}
				Meshes[std::size_t(Index)] = Levels.Take();
			}
		}
		return {};
	}

	/// A level shows what its owner's asset says.
	const UStaticMesh* ShownAsset(FGltfIndex Index) const
	{
		const UStaticMeshComponent* const Component = Cast<UStaticMeshComponent>(Tree.Node(Index).Root);
		const bool bLevel = !Tree.IsNew(Index) && Scene.Node(Index).LevelOf != NoIndex;
		return Component && !bLevel ? Component->GetStaticMesh() : nullptr;
	}

	void PatchNode(FGltfIndex Node)
	{
		const FTransform& Relative = Tree.Node(Node).Root->GetRelativeTransform();
		PatchTransform(Node, Relative);
		const TArray<FGltfIndex>& LodNodes = Scene.Node(Node).LodNodes;
		const std::vector<FGltfIndex>& Shown = Meshes[std::size_t(Node)];
		for (int32 Level = 0; Level < LodNodes.Num(); ++Level)
		{
			PatchTransform(LodNodes[Level], Relative);
			if (std::size_t(Level) + 1 < Shown.size())
			{
				PatchMesh(LodNodes[Level], Shown[std::size_t(Level) + 1]);
			}
		}
		if (!Shown.empty())
		{
			PatchMesh(Node, Shown.front());
		}
	}

	void PatchTransform(FGltfIndex Node, const FTransform& Relative)
	{
		if (const auto Placement = ChangedPlacement(Document.Node(Node), Scene.Node(Node).LoadedRelative, Relative))
		{
			Patch.SetNodeTransform(Node, Placement->Translation, Placement->Rotation, Placement->Scale);
		}
	}

	void PatchMesh(FGltfIndex Node, FGltfIndex Mesh)
	{
		if (Document.Node(Node).Mesh != Mesh)
		{
			Patch.SetNodeMesh(Node, Mesh);
		}
	}

	const FScene& Scene;
	const FSceneTree Tree;
	const FGltfDocument& Document;
	FGltfPatch Patch;
	FSceneMeshPatch MeshPatch;
	std::vector<std::vector<FGltfIndex>> Meshes; ///< that the nodes of the tree show, levels included
};
} // namespace

TSceneResult<FGltfPatch> MakeScenePatch(const FScene& Scene)
{
	return FScenePatchMaker(Scene).Run();
}

TSceneResult<FSaveReport> SaveScene(const FScene& Scene, const std::string& Path)
{
	TSceneResult<FGltfPatch> Patch = MakeScenePatch(Scene);
	if (!Patch)
	{
		return Patch.Error();
	}
	return SaveGltf(Patch.Take(), Path);
}
