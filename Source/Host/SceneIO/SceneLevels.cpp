// SPDX-License-Identifier: MIT
// The levels of detail of a scene's assets, and reading ahead what they are made of.
#include "Core/Map.h"
#include "Engine/StaticMeshComponent.h"
#include "SceneIO/NodeReferences.h"
#include "SceneIO/Scene.h"
#include "SceneIO/SceneMeshData.h"
#include "SceneIO/SceneSpace.h"

#include <algorithm>

#include <tbb/parallel_for_each.h>

namespace
{
/// Which nodes are named as a lower level, and how often.
std::vector<int32> CountLevelUses(const FGltfDocument& Document)
{
	std::vector<int32> Uses(Document.Model().Nodes.size(), 0);
	for (const FGltfNode& Node : Document.Model().Nodes)
	{
		for (const FGltfIndex Level : Node.Extensions ? Node.Extensions->LodNodes : std::vector<FGltfIndex>())
		{
			++Uses[std::size_t(Level)];
		}
	}
	return Uses;
}

/// The nodes that a scene lists, or another node has as its child.
std::vector<bool> FindPlacedNodes(const FGltfDocument& Document)
{
	std::vector<bool> bPlaced = FindListedNodes(Document);
	for (std::size_t Index = 0; Index < bPlaced.size(); ++Index)
	{
		bPlaced[Index] = bPlaced[Index] || Document.Model().Nodes[Index].Parent != NoIndex;
	}
	return bPlaced;
}
} // namespace

void FScene::MakeLevels()
{
	const std::vector<int32> LevelUses = CountLevelUses(*Source);
	const std::vector<bool> bPlaced = FindPlacedNodes(*Source);
	// Level lists of each mesh. An asset has one list of levels: all nodes that show it must agree on it.
	TMap<FGltfIndex, TArray<FGltfIndex>> LevelsOfMesh;
	std::set<FGltfIndex> Disputed;
	std::vector<int32> ShownBy(Source->Model().Meshes.size(), 0);
	for (FGltfIndex Index = 0; Index < NumNodes(); ++Index)
	{
		const FGltfNode& Shown = Source->Node(Index);
		if (Shown.Mesh == NoIndex)
		{
			continue;
		}
		if (LevelUses[std::size_t(Index)] == 0)
		{
			++ShownBy[std::size_t(Shown.Mesh)];
			TArray<FGltfIndex> Levels;
			for (const FGltfIndex Level : Shown.Extensions ? Shown.Extensions->LodNodes : std::vector<FGltfIndex>())
			{
				Levels.Add(Source->Node(Level).Mesh);
			}
			const TArray<FGltfIndex>* const Known = LevelsOfMesh.Find(Shown.Mesh);
			if (Known && !(*Known == Levels))
			{
				Disputed.insert(Shown.Mesh);
			}
			LevelsOfMesh.Add(Shown.Mesh, Levels);
		}
	}
	const auto CanTakeIn = [&](FGltfIndex Owner)
	{
		const FGltfNode& Shown = Source->Node(Owner);
		return !Disputed.contains(Shown.Mesh) &&
			   std::ranges::all_of(Shown.Extensions->LodNodes,
				   [&](FGltfIndex Level)
				   {
					   const FGltfNode& LevelNode = Source->Node(Level);
					   const std::size_t At = std::size_t(Level);
					   return LevelUses[At] == 1 && !bPlaced[At] && LevelNode.Mesh != NoIndex &&
							  LevelNode.Children.empty() && ShownBy[std::size_t(LevelNode.Mesh)] == 0 &&
							  LevelNode.Mesh != Shown.Mesh &&
							  RelativeDifference(Node(Level).TrueLocal, Node(Owner).TrueLocal) == 0.0;
				   });
	};
	// The list is taken in where every node that shows the mesh can take it in: then the levels have no other user.
	std::set<FGltfIndex> Refused;
	for (FGltfIndex Index = 0; Index < NumNodes(); ++Index)
	{
		const FGltfNode& Shown = Source->Node(Index);
		const bool bHasLevels = Shown.Mesh != NoIndex && Shown.Extensions && !Shown.Extensions->LodNodes.empty();
		if (bHasLevels && (LevelUses[std::size_t(Index)] > 0 || !CanTakeIn(Index)))
		{
			Refused.insert(Shown.Mesh);
		}
	}
	for (FGltfIndex Index = 0; Index < NumNodes(); ++Index)
	{
		const FGltfNode& Shown = Source->Node(Index);
		if (Shown.Mesh != NoIndex && Shown.Extensions && !Shown.Extensions->LodNodes.empty() &&
			!Refused.contains(Shown.Mesh))
		{
			TakeInLevels(Index);
		}
	}
}

void FScene::TakeInLevels(FGltfIndex Owner)
{
	const FGltfNode& Shown = Source->Node(Owner);
	UStaticMesh* const Asset = MeshAssets[std::size_t(Shown.Mesh)];
	FAssetMeshes& Meshes = MeshesOfAssets[std::size_t(Shown.Mesh)];
	const bool bFirst = Meshes.Lods.Num() == 1;
	for (const FGltfIndex Level : Shown.Extensions->LodNodes)
	{
		const FGltfIndex LevelMesh = Source->Node(Level).Mesh;
		if (bFirst)
		{
			Meshes.Lods.Add(LevelMesh);
			Asset->SetNumSourceModels(Meshes.Lods.Num());
			Asset->GetSourceModel(Meshes.Lods.Num() - 1).SetBulkData(MeshData(LevelMesh));
		}
		Nodes[std::size_t(Owner)].LodNodes.Add(Level);
		// The level is part of the asset now; its node shows nothing of its own.
		CastChecked<UStaticMeshComponent>(Node(Level).Component.Get())->SetStaticMesh(nullptr);
		Nodes[std::size_t(Level)].LevelOf = Owner;
	}
}

void FScene::ReadAhead(const std::set<FGltfIndex>& Meshes) const
{
	std::set<FGltfIndex> Sources;
	for (const FGltfIndex Mesh : Meshes)
	{
		const FAssetMeshes& Asset = AssetMeshes(Mesh);
		Sources.insert(Asset.Lods.begin(), Asset.Lods.end());
		Sources.insert(Asset.HiRes);
	}
	Sources.erase(NoIndex);
	tbb::parallel_for_each(Sources, [this](FGltfIndex Mesh) { MeshData(Mesh)->ReadAhead(); });
}
