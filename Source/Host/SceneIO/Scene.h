// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Matrix.h"
#include "Engine/Actor.h"
#include "Engine/StaticMesh.h"
#include "Engine/World.h"
#include "SceneIO/GltfDocument.h"
#include "SceneIO/SceneMeshData.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

/// A node of the file in the world.
struct FSceneNode
{
	/// Null for a node that was blank in the file (see FindBlankNodes); destroyed, or null, once the user has
	/// deleted it: ask `FScene::IsAlive`.
	TObjectPtr<AActor> Actor;
	TObjectPtr<USceneComponent> Component; ///< the actor's root
	bool bHadActor = false;                ///< when the file was read
	FTransform LoadedRelative;             ///< as it was read, so that a save knows what changed
	FMatrix TrueLocal;                     ///< what a viewer computes, in the host's space and units
	FMatrix TrueWorld;
	double LocalShear = 0.0;      ///< of a node that is given by a matrix
	bool bUnitRotation = true;    ///< false for a rotation that is no unit quaternion
	TArray<FGltfIndex> LodNodes;  ///< the lower levels, where the node's asset has taken them in
	FGltfIndex LevelOf = NoIndex; ///< the node whose asset has taken this node's mesh in as a level
};

/// A scene file in a world: an actor for each node that is not blank, of all scenes and of none, and an asset for each
/// mesh.
///
/// The file's geometry stays in the file until it is asked for. The scene keeps the document; the world and the
/// packages keep the rest.
class FScene
{
public:
	/// Reads the file into `World`. Fails with a sentence that names the file, the place in it and what is wrong; then
	/// nothing was made.
	static TSceneResult<std::unique_ptr<FScene>> Load(const std::string& Path, UWorld* World);

	/// Destroys the scene's actors and all assets below its folder, so that they can be collected.
	~FScene();
	FScene(const FScene&) = delete;
	FScene& operator=(const FScene&) = delete;

	const std::shared_ptr<const FGltfDocument>& Document() const { return Source; }
	UWorld* GetWorld() const { return World; }

	/// The folder of the scene's packages: "/Scene/<file name without its ending>", with "_2", "_3" … behind it while
	/// another scene has that folder.
	const FString& GetPackageFolder() const { return PackageFolder; }

	FGltfIndex NumNodes() const { return FGltfIndex(Nodes.size()); }
	const FSceneNode& Node(FGltfIndex Index) const { return Nodes[std::size_t(Index)]; }

	/// Whether the node has an actor in the world now.
	bool IsAlive(FGltfIndex Index) const { return IsValid(Node(Index).Actor) && IsValid(Node(Index).Component); }

	/// The node whose actor this is; NoIndex for an actor that the file did not make.
	FGltfIndex NodeOf(const AActor* Actor) const;

	/// The node whose actor this is, or which it was copied from; NoIndex for an actor that neither is true of.
	FGltfIndex SourceOf(const AActor* Actor) const;

	/// The asset that was made of a mesh of the file; null for meshes that only serve other assets as levels or HiRes
	/// sources.
	UStaticMesh* MeshAsset(FGltfIndex Mesh) const { return MeshAssets[std::size_t(Mesh)]; }

	/// The meshes of the file that became the asset's levels, finest first, and its HiRes source (NoIndex for none).
	struct FAssetMeshes
	{
		TArray<FGltfIndex> Lods;
		FGltfIndex HiRes = NoIndex;
	};

	/// The meshes of the asset that was made of a mesh of the file.
	const FAssetMeshes& AssetMeshes(FGltfIndex Mesh) const { return MeshesOfAssets[std::size_t(Mesh)]; }

	/// The source geometry that was read from a mesh of the file. Never null.
	const TSharedPtr<const FSceneMeshData>& MeshData(FGltfIndex Mesh) const { return Data[std::size_t(Mesh)]; }

	/// Reads through the levels and HiRes sources of these meshes' assets, on all cores: see FSceneMeshData::ReadAhead.
	void ReadAhead(const std::set<FGltfIndex>& Meshes) const;

	/// The node's name, or "node 7" where it has none.
	FString NodeName(FGltfIndex Index) const;

private:
	FScene() = default;
	FSceneStatus MakeAssets();
	FSceneStatus MakeActors();
	static void PlaceNode(const FGltfNode& Node, FSceneNode& Entry);
	void AttachChildren();
	void MakeTrueMatrices();
	void MakeLevels();
	void TakeInLevels(FGltfIndex Owner);

	std::shared_ptr<const FGltfDocument> Source;
	TObjectPtr<UWorld> World;
	FString PackageFolder;
	std::vector<FSceneNode> Nodes;
	std::vector<TSharedPtr<const FSceneMeshData>> Data;
	std::vector<TObjectPtr<UStaticMesh>> MeshAssets;
	std::vector<FAssetMeshes> MeshesOfAssets;
	int32 Id = 0; ///< of this scene among all that were loaded
};

/// The instances of a node in its space, as the host sees it; empty for a node that is not instanced. Reads the file.
TSceneResult<std::vector<FTransform>> ReadSceneInstances(
	const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Node);
