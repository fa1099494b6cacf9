// SPDX-License-Identifier: MIT
#pragma once

#include "TarvinOperation.h"

/// The commands, and the steps that they go through.
class TARVINTRANSFORM_API FTarvinSelectionAction
{
public:
	/// Runs "Bake Transform" on the selected actors.
	static void ExecuteFromEditorSelection();

	/// Runs "Set Pivot" on the selected actors.
	static void ExecuteSetPivot(ETarvinPivotPosition Position);

	/// Gathers the selection, runs the operation on it, and reports in the log and in a toast. Asks the user about
	/// shared assets; an answer that is to hold for the remaining assets is remembered until the command is done.
	static void Execute(const FTarvinOperation& Operation);

	/// Lists the usable static-mesh components of the selected actors, in order of selection, and adds the others to
	/// the four skip counters of `Skips`.
	static TArray<FTarvinItem> GatherFromSelection(FTarvinRunResult& Skips, const FTarvinOperation& Operation);

	/// True when the component's attach parent has, in the world, both rotation and non-uniform scale, so that what
	/// must stay on the component cannot be written as a relative transform.
	static bool HasUnrepresentableParent(const USceneComponent* Component);

	/// Bakes the items' assets and moves their components, inside one transaction, which is cancelled when nothing was
	/// baked. Other users of an asset are counted in `World`. Without a bound delegate, assets that need an answer are
	/// left unbaked.
	static FTarvinRunResult Run(const TArray<FTarvinItem>& Items, UWorld* World,
		const FTarvinOnSharedAsset& OnSharedAsset, const FTarvinOperation& Operation);

	/// Counts the components of `World` that use the mesh and are not in `Selected`. 0 when mesh or world is null.
	static int32 CountOtherUsers(UStaticMesh* Mesh, const TSet<UStaticMeshComponent*>& Selected, UWorld* World);

	/// What a remembered answer means for an asset: one that cannot be baked in place is duplicated instead.
	static ETarvinSharedAssetChoice ResolveRememberedChoice(ETarvinSharedAssetChoice Remembered, bool bInPlaceAllowed);
};
