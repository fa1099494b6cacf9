// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "CoreUObject/ObjectPtr.h"
#include "Engine/Actor.h"

class UStaticMesh;
class UStaticMeshComponent;

/// Short ways to the edited level and what is selected in it. Everything is empty where there is no editor engine.
namespace SelectionQueries
{
/// The world that is edited; null for none.
UWorld* EditedWorld();

/// The selected actors that are alive, in the order of selection.
TArray<AActor*> SelectedActors();

/// Replaces the selection, tells the pivot display, and asks for a new picture.
void Select(const TArray<AActor*>& Actors);

/// The mesh that the actor's root shows; null for none.
UStaticMesh* MeshOf(const AActor& Actor);

/// The actor that this one's root is attached to; null for none.
AActor* ParentOf(const AActor& Actor);

/// The actors whose roots are attached to this one, in the order of attaching.
TArray<AActor*> ChildrenOf(const AActor& Actor);
} // namespace SelectionQueries
