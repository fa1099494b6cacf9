// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Box.h"
#include "Core/Matrix.h"
#include "Core/SharedPointer.h"
#include "CoreUObject/ObjectPtr.h"
#include "Engine/StaticMesh.h"

#include <unordered_map>
#include <vector>

class AActor;
class USelection;
class UStaticMeshComponent;
class UWorld;

/// A mesh as the viewport knows it.
struct FViewportMesh
{
	TWeakObjectPtr<UStaticMesh> Mesh;
	/// The source of level 0 that `Bounds` are of, and that a graphics card's copy is of; null until it was looked at.
	TSharedPtr<const FMeshBulkData> Source;
	bool bReady = false; ///< bounds and render data were made; false for a mesh that is yet to appear
	FBox Bounds;         ///< local space; invalid for a mesh without triangles
};

/// One mesh at one place. Sheared places are kept as they are.
struct FViewportItem
{
	FMatrix LocalToWorld;
	FBox WorldBounds; ///< invalid until the mesh is ready
	int32 Mesh = INDEX_NONE;
	int32 Actor = INDEX_NONE;
};

/// An actor of the world that is shown.
struct FViewportActor
{
	TWeakObjectPtr<AActor> Actor;
	FVector Pivot;
	FBox Bounds; ///< of its ready meshes, in the world
	bool bSelected = false;
};

/// What there is to see of a world: each mesh at each of its places, instances included. It refers to objects weakly,
/// and so may be older than the world. Meshes are decoded little by little: see `Prepare`.
class FViewportScene
{
public:
	/// Looks at the whole world again; null empties the scene. Meshes that were ready stay so.
	void Collect(UWorld* World);

	/// Marks the selected actors.
	void UpdateSelection(const USelection* Selection);

	/// Makes ready again what was ready and whose mesh has other data now, so that nothing stale is drawn or picked.
	void RefreshMeshes();

	/// Makes further meshes ready, in scene order, until `Milliseconds` are over: one at least, if there are any left.
	/// Returns whether all are ready.
	bool Prepare(double Milliseconds);
	bool IsPrepared() const { return NumReady == int32(Meshes.size()); }

	const std::vector<FViewportMesh>& GetMeshes() const { return Meshes; }
	const std::vector<FViewportItem>& GetItems() const { return Items; }
	const std::vector<FViewportActor>& GetActors() const { return Actors; }

	/// Around everything that is ready.
	const FBox& GetBounds() const { return Bounds; }
	/// Around the selected actors; those without a mesh count as the point where they are. Invalid when none is.
	FBox GetSelectionBounds() const;

	/// Grow whenever the items or their meshes, and whenever the selected actors, are others.
	uint32 GetRevision() const { return Revision; }
	uint32 GetSelectionRevision() const { return SelectionRevision; }

private:
	int32 FindOrAddMesh(UStaticMesh* Mesh);
	void AddComponent(const UStaticMeshComponent& Component, int32 Actor);
	void AddItem(const FMatrix& LocalToWorld, int32 Mesh, int32 Actor);
	void MakeReady(FViewportMesh& Entry);
	void UpdateBounds();

	std::vector<FViewportMesh> Meshes;
	std::vector<FViewportItem> Items;
	std::vector<FViewportActor> Actors;
	std::unordered_map<FObjectHandle, int32> MeshIndices;
	std::unordered_map<FObjectHandle, int32> ActorIndices;
	FBox Bounds;
	int32 NumReady = 0;
	uint32 Revision = 1;
	uint32 SelectionRevision = 1;
};
