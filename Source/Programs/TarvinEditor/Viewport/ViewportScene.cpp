// SPDX-License-Identifier: MIT
#include "ViewportScene.h"

#include "Editor/Selection.h"
#include "Engine/Actor.h"
#include "Engine/InstancedStaticMeshComponent.h"
#include "Engine/World.h"

#include <chrono>
#include <utility>

namespace
{
/// The transform as a matrix. Unlike `ToMatrixWithScale` it takes any quaternion: whoever draws must not stop at one.
FMatrix MatrixOf(const FTransform& Transform)
{
	return FMatrix(Transform.TransformVector({1.0, 0.0, 0.0}), Transform.TransformVector({0.0, 1.0, 0.0}),
		Transform.TransformVector({0.0, 0.0, 1.0}), Transform.GetTranslation());
}

TSharedPtr<const FMeshBulkData> SourceOf(const UStaticMesh& Mesh)
{
	return Mesh.IsMeshDescriptionValid(0) ? Mesh.GetSourceModel(0).GetBulkData() : nullptr;
}

/// Around the corners that are finite numbers: a single bad one must not take the mesh out of the picture.
FBox BoundsOf(const FStaticMeshLodRenderData& Data)
{
	FBox Box;
	for (const FVector3f& Position : Data.Positions)
	{
		if (!Position.ContainsNaN())
		{
			Box += FVector(Position);
		}
	}
	return Box;
}
}

void FViewportScene::Collect(UWorld* World)
{
	const std::vector<FViewportMesh> OldMeshes = std::exchange(Meshes, {});
	const std::unordered_map<FObjectHandle, int32> OldIndices = std::exchange(MeshIndices, {});
	Items.clear();
	Actors.clear();
	ActorIndices.clear();
	NumReady = 0;
	++Revision;
	++SelectionRevision;
	if (IsValid(World))
	{
		for (AActor* Actor : World->GetActors())
		{
			const int32 Index = int32(Actors.size());
			ActorIndices.emplace(Actor->GetHandle(), Index);
			FViewportActor Entry;
			Entry.Actor = Actor;
			Entry.Pivot = Actor->GetActorTransform().GetTranslation();
			Actors.push_back(Entry);
			for (const UStaticMeshComponent* Component : Actor->GetComponentsOf<UStaticMeshComponent>())
			{
				AddComponent(*Component, Index);
			}
		}
	}
	for (FViewportMesh& Mesh : Meshes)
	{
		const auto Old = OldIndices.find(Mesh.Mesh.GetHandle());
		if (Old != OldIndices.end() && OldMeshes[std::size_t(Old->second)].bReady)
		{
			Mesh = OldMeshes[std::size_t(Old->second)];
			++NumReady;
		}
	}
	RefreshMeshes();
	UpdateBounds();
}

void FViewportScene::AddComponent(const UStaticMeshComponent& Component, int32 Actor)
{
	UStaticMesh* const Mesh = Component.GetStaticMesh();
	if (!IsValid(Mesh))
	{
		return;
	}
	const int32 MeshIndex = FindOrAddMesh(Mesh);
	const FMatrix ComponentToWorld = MatrixOf(Component.GetComponentTransform());
	if (const auto* const Instanced = Cast<UInstancedStaticMeshComponent>(&Component))
	{
		for (const FTransform& Instance : Instanced->GetInstances())
		{
			AddItem(MatrixOf(Instance) * ComponentToWorld, MeshIndex, Actor);
		}
	}
	else
	{
		AddItem(ComponentToWorld, MeshIndex, Actor);
	}
}

void FViewportScene::AddItem(const FMatrix& LocalToWorld, int32 Mesh, int32 Actor)
{
	if (!LocalToWorld.ContainsNaN())
	{
		Items.push_back({LocalToWorld, FBox(), Mesh, Actor});
	}
}

int32 FViewportScene::FindOrAddMesh(UStaticMesh* Mesh)
{
	const auto [Place, bNew] = MeshIndices.try_emplace(Mesh->GetHandle(), int32(Meshes.size()));
	if (bNew)
	{
		FViewportMesh Entry;
		Entry.Mesh = Mesh;
		Meshes.push_back(std::move(Entry));
	}
	return Place->second;
}

void FViewportScene::UpdateSelection(const USelection* Selection)
{
	for (FViewportActor& Actor : Actors)
	{
		Actor.bSelected = false;
	}
	if (IsValid(Selection))
	{
		for (const UObject* Object : Selection->GetSelectedObjects())
		{
			const auto Place = ActorIndices.find(Object->GetHandle());
			if (Place != ActorIndices.end())
			{
				Actors[std::size_t(Place->second)].bSelected = true;
			}
		}
	}
	++SelectionRevision;
}

void FViewportScene::MakeReady(FViewportMesh& Entry)
{
	UStaticMesh* const Mesh = Entry.Mesh.Get();
	Entry.bReady = true;
	Entry.Bounds = FBox();
	Entry.Source = Mesh ? SourceOf(*Mesh) : nullptr;
	const FStaticMeshLodRenderData* const Data = Entry.Source ? Mesh->GetRenderData(0) : nullptr;
	if (Data && !Data->Indices.IsEmpty())
	{
		Entry.Bounds = BoundsOf(*Data);
	}
}

void FViewportScene::RefreshMeshes()
{
	bool bChanged = false;
	for (FViewportMesh& Entry : Meshes)
	{
		const UStaticMesh* const Mesh = Entry.Mesh.Get();
		if (Entry.bReady && Entry.Source != (Mesh ? SourceOf(*Mesh) : nullptr))
		{
			MakeReady(Entry);
			bChanged = true;
		}
	}
	if (bChanged)
	{
		++Revision;
		UpdateBounds();
	}
}

bool FViewportScene::Prepare(double Milliseconds)
{
	using FClock = std::chrono::steady_clock;
	const FClock::time_point End = FClock::now() + std::chrono::microseconds(int64(Milliseconds * 1000.0));
	bool bChanged = false;
	for (FViewportMesh& Entry : Meshes)
	{
		if (Entry.bReady)
		{
			continue;
		}
		if (bChanged && FClock::now() >= End)
		{
			break;
		}
		MakeReady(Entry);
		++NumReady;
		bChanged = true;
	}
	if (bChanged)
	{
		++Revision;
		UpdateBounds();
	}
	return IsPrepared();
}

void FViewportScene::UpdateBounds()
{
	Bounds = FBox();
	for (FViewportActor& Actor : Actors)
	{
		Actor.Bounds = FBox();
	}
	for (FViewportItem& Item : Items)
	{
		// A mesh whose corners are far apart, at a scale as large, may end beyond all numbers: nothing to frame there.
		const FBox Box = Meshes[std::size_t(Item.Mesh)].Bounds.TransformBy(Item.LocalToWorld);
		Item.WorldBounds = Box.Min.ContainsNaN() || Box.Max.ContainsNaN() ? FBox() : Box;
		Actors[std::size_t(Item.Actor)].Bounds += Item.WorldBounds;
		Bounds += Item.WorldBounds;
	}
}

FBox FViewportScene::GetSelectionBounds() const
{
	FBox Box;
	for (const FViewportActor& Actor : Actors)
	{
		if (!Actor.bSelected)
		{
			continue;
		}
		if (Actor.Bounds.IsValid)
		{
			Box += Actor.Bounds;
		}
		else
		{
			Box += Actor.Pivot;
		}
	}
	return Box;
}
