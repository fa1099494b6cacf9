// SPDX-License-Identifier: MIT
#pragma once

#include "ViewportCamera.h"
#include "ViewportScene.h"

/// A rectangle in a picture, by any two opposite corners.
struct FViewportRectangle
{
	FViewportPoint From;
	FViewportPoint To;
};

/// The first thing that a ray meets.
struct FViewportHit
{
	int32 Item = INDEX_NONE; ///< in the scene's items; INDEX_NONE: nothing was met
	double Distance = 0.0;   ///< along the ray
	FVector Location;

	bool IsHit() const { return Item != INDEX_NONE; }
};

/// The nearest triangle that the ray meets, from either side, of all meshes of the scene that are ready. Linear in the
/// items, and in the triangles of those whose bounds the ray meets.
FViewportHit PickNearest(const FViewportScene& Scene, const FViewportRay& Ray);

/// The actors, as indices into the scene's, of which an item's box shows in the rectangle, at least in part; and those
/// without a mesh whose place is in it. In scene order.
std::vector<int32> PickInRectangle(
	const FViewportScene& Scene, const FViewportCamera& Camera, const FViewportRectangle& Rectangle);
