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

/// The descriptions of all levels of the mesh that have one, and of its HiRes source.
std::vector<const FMeshDescription*> SourcesOf(const UStaticMesh* Mesh);

/// A random world in which a command is run, and where every vertex of every component was before it.
class FCommandScene
{
public:
	/// Draws meshes (boxes and slanted ones, some with a second level or a HiRes source), a forest of components that
	/// show them, some of which want nearly the same bake as another, a selection of actors and the answers to
	/// questions. With `bEvenScales`, scales are the same along all axes, mirrored or not.
	static FCommandScene Draw(UWorld* World, bool bEvenScales = false);

	/// Runs the operation on the selection, answering as drawn.
	FTarvinRunResult Run(const FTarvinOperation& Operation);

	const std::vector<UStaticMeshComponent*>& Components() const { return AllComponents; }
	const std::vector<UStaticMesh*>& Meshes() const { return AllMeshes; }

	/// The largest coordinate or extent of any vertex in the world when the scene was drawn, and the farthest that one
	/// is now from its component's origin: single precision rounds in proportion to both.
	double Size() const;

	/// Whether the run was free to move the component's vertices: it is outside the selection and uses an asset that
	/// was answered "apply to all".
	bool MayMove(const UStaticMeshComponent* Component) const;

	/// The largest distance by which a vertex of a component that may not move has moved since the scene was drawn.
	/// What follows from one bake serving items that differ by the key's tolerance is taken off.
	double LargestMove() const;

	/// Where the component was in the world when the scene was drawn.
	const FTransform& OldWorld(UStaticMeshComponent* Component) const { return Worlds.at(Component); }
	bool WasItem(const UStaticMeshComponent* Component) const;

	/// The state of everything, drawn objects and those made since.
	FWorldState State() const;

private:
	/// How far the vertices of each item are from where its own bake would put them, for the bake of its group.
	void MeasureMerging(const FTarvinOperation& Operation);

	UWorld* World = nullptr;
	std::vector<UStaticMesh*> AllMeshes;
	std::vector<UStaticMeshComponent*> AllComponents;
	std::vector<ETarvinSharedAssetChoice> Answers;
	std::map<UStaticMeshComponent*, TArray<FVector>> Positions;
	std::map<UStaticMeshComponent*, FTransform> Worlds;
	std::vector<UStaticMesh*> AppliedToAll;
	std::map<UStaticMeshComponent*, double> MergingSlack;
	TArray<FTarvinItem> Items;
};
