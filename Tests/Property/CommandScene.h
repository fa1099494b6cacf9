// SPDX-License-Identifier: MIT
#pragma once

#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/TestMeshes.h"
#include "Support/WorldGenerators.h"
#include "Support/WorldState.h"

#include "TarvinOperation.h"

#include <map>
#include <vector>

/// A random world in which a command is run, and where every vertex of every component was before it.
class FCommandScene
{
public:
	/// Draws meshes, a forest of components that show them, a selection of actors and the answers to questions. With
	/// `bEvenScales`, scales are the same along all axes, mirrored or not.
	static FCommandScene Draw(UWorld* World, bool bEvenScales = false);

	/// Runs the operation on the selection, answering as drawn.
	FTarvinRunResult Run(const FTarvinOperation& Operation);

	const std::vector<UStaticMeshComponent*>& Components() const { return AllComponents; }
	const std::vector<UStaticMesh*>& Meshes() const { return AllMeshes; }

	/// The largest coordinate or extent of any vertex in the world.
	double Size() const;

	/// The components whose vertices the run was free to move: those outside the selection that use an asset that was
	/// answered "apply to all", and those that the run merged into a bake that differs from their own by a tolerance.
	bool MayMove(const UStaticMeshComponent* Component) const;

	/// The largest distance by which a vertex of a component that may not move has moved since the scene was drawn.
	double LargestMove() const;

	/// Where the component's vertices were when the scene was drawn.
	const TArray<FVector>& OldPositions(UStaticMeshComponent* Component) const { return Positions.at(Component); }
	const FTransform& OldWorld(UStaticMeshComponent* Component) const { return Worlds.at(Component); }
	bool WasItem(const UStaticMeshComponent* Component) const;

	/// The state of everything, drawn objects and those made since.
	FWorldState State() const;

private:
	UWorld* World = nullptr;
	std::vector<UStaticMesh*> AllMeshes;
	std::vector<UStaticMeshComponent*> AllComponents;
	std::vector<ETarvinSharedAssetChoice> Answers;
	std::map<UStaticMeshComponent*, TArray<FVector>> Positions;
	std::map<UStaticMeshComponent*, FTransform> Worlds;
	std::vector<UStaticMesh*> AppliedToAll;
	TArray<FTarvinItem> Items;
};
