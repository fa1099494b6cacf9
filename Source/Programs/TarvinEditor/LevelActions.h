// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Function.h"
#include "Core/Text.h"
#include "Core/Transform.h"
#include "Engine/Actor.h"

class FUICommandList;

/// What the level editor's commands do with actors. Every change is one transaction; all of it works on the edited
/// world, and nothing happens where there is nothing to do it with.
namespace LevelActions
{
/// Says what the level editor's commands do, in the list that its keys go to. `Focus` shows the selection.
void Map(FUICommandList& Commands, TFunction<void()> Focus);

/// Takes the commands out of the list again.
void Unmap(FUICommandList& Commands);

void SelectAll();
void SelectNone();

/// Selects every actor that shows a mesh which a selected one shows.
void SelectSameMesh();

/// Adds everything below the selected actors to the selection.
void SelectChildren();

/// Removes the selected actors; what was attached to them keeps its place.
void DeleteSelected();

/// Copies the selected actors, meshes shared, and selects the copies. What was copied with its parent is attached to
/// the copy of the parent.
void DuplicateSelected();

/// Attaches `Actors` to `Parent` where each keeps its place in the world. Those that cannot, because their place cannot
/// be said below that parent, or because they are above it, stay as they are: a notification counts them. Returns how
/// many were attached.
int32 Attach(const TArray<AActor*>& Actors, AActor* Parent);

/// Attaches the selected actors to the one selected last.
void AttachSelectedToLast();

/// Detaches actors; they keep their places, as far as a transform can say them.
void Detach(const TArray<AActor*>& Actors);

/// Gives each actor's root the relative transform that `Change` makes of its present one. Unchanged ones are not
/// recorded. `Title` names the transaction.
void ChangeTransforms(
	const TArray<AActor*>& Actors, const FText& Title, const TFunction<FTransform(const FTransform&)>& Change);

/// Gives an actor another label. Empty and unchanged ones are ignored.
void Rename(AActor* Actor, const FString& Label);
} // namespace LevelActions
