// SPDX-License-Identifier: MIT
#pragma once

#include "TarvinOperation.h"

/// Sorts items into bakes.
class TARVINTRANSFORM_API FTarvinGrouping
{
public:
	/// Groups the items by asset, rotation and scale of what `ComputeBake` gives them (into a transform preset to the
	/// identity). Translations are not compared: the first item of a group fixes its transform. Items without a mesh,
	/// and those for which `ComputeBake` returns false, are left out. Groups come in the order of their first items.
	static TArray<FTarvinGroup> Build(
		const TArray<FTarvinItem>& Items, TFunctionRef<bool(const FTarvinItem&, FTransform&)> ComputeBake);

	/// The same for baking each item's world rotation and scale.
	static TArray<FTarvinGroup> Build(const TArray<FTarvinItem>& Items);
};
