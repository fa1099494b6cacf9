// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Transform.h"
#include "Engine/Actor.h"
#include "Engine/StaticMeshComponent.h"
#include "Engine/World.h"

class UStaticMesh;

/// Spawns an actor whose root shows `Mesh` (null for none) at `Relative`, attached to `Parent` if one is given. Returns
/// that root; its owner is the actor. Recorded for undo as far as a transaction is open.
UStaticMeshComponent* MakeActor(
	UWorld* World, UStaticMesh* Mesh, const FTransform& Relative = FTransform(), USceneComponent* Parent = nullptr);

/// Adds a component that shows `Mesh` at `Relative` to `Parent`'s actor, attached to `Parent`.
UStaticMeshComponent* AddMeshComponent(
	USceneComponent* Parent, UStaticMesh* Mesh, const FTransform& Relative = FTransform());

/// Where the vertices of the level that the component shows are in the world.
TArray<FVector> WorldPositions(const UStaticMeshComponent* Component, int32 Lod = 0);

/// True when the world transforms of the component and of all above it are relative · parent's world, to the bit.
bool IsWorldTransformDerived(const USceneComponent* Component);
