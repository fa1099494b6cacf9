// SPDX-License-Identifier: MIT
#pragma once

#include "ViewportCamera.h"
#include "ViewportScene.h"

#include <array>

/// Where one instance is, for the graphics card: for each axis of the world, what a local point (X, Y, Z, 1) is
/// multiplied with. Relative to an origin near the scene, so that single precision will do.
struct FInstancePlace
{
	std::array<float, 12> Axes;
};

/// Instances of one mesh that are side by side in the list.
struct FInstanceRun
{
	int32 Mesh = INDEX_NONE;
	int32 First = 0;
	int32 Count = 0;
	bool bSpecks = false; ///< all of them are so small in the picture that a point stands for each
};

/// The places of a scene's items, grouped by mesh, and in each group in chunks of what is near each other, so that what
/// is out of view is left out by chunks and the list itself need not change when the camera moves.
class FViewportInstances
{
public:
	/// Lists the ready items of the scene, or only those of selected actors.
	void Build(const FViewportScene& Scene, const FVector& Origin, bool bSelectedOnly);

	const std::vector<FInstancePlace>& GetPlaces() const { return Places; }

	/// What of the list may show in the picture; neighbouring chunks make one run.
	std::vector<FInstanceRun> FindVisible(const FViewportCamera& Camera) const;

private:
	struct FChunk
	{
		FInstanceRun Run;
		FBox Bounds;
		double LargestSize = 0.0; ///< of an item: the diagonal of its box in the world
	};

	static bool AreSpecks(const FChunk& Chunk, const FViewportCamera& Camera);

	std::vector<FInstancePlace> Places;
	std::vector<FChunk> Chunks;
};
