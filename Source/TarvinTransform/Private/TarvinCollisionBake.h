// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Core.h"

class UStaticMesh;
struct FTarvinTransformStats;

/// Carries along what is placed in a mesh's own space.
namespace TarvinCollisionBake
{
/// Composes each socket's relative transform with the bake transform. Under a non-uniform scale a rotated socket cannot
/// be exact; that is logged, and flagged in the stats.
void BakeSockets(UStaticMesh* Mesh, const FTransform& BakeTransform, FTarvinTransformStats& Stats);

/// Transforms spheres, boxes, capsules and convex elements of the mesh's body setup; the other kinds are only counted.
/// Where a shape cannot express a non-uniform scale, the closest shape is made; that is logged, and flagged in the
/// stats. The cooked shapes are dropped, and made again at once when `bRecreatePhysicsNow` is set.
void BakeSimpleCollision(
	UStaticMesh* Mesh, const FTransform& BakeTransform, bool bRecreatePhysicsNow, FTarvinTransformStats& Stats);
} // namespace TarvinCollisionBake
