// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Core.h"
#include "TarvinTransformAPI.h"

class UStaticMesh;

/// What a bake carries along.
struct FTarvinTransformOptions
{
	bool bRebuild = true;       ///< rebuild the mesh afterwards, under a progress dialog
	bool bBakeCollision = true; ///< carry the simple collision along
	bool bBakeSockets = true;   ///< carry the sockets along
};

/// What bakes did. Only ever added to: zero it before each bake.
struct FTarvinTransformStats
{
	int32 NumLodsBaked = 0;             ///< source LODs transformed and committed
	bool bHiResBaked = false;           ///< whether the HiRes source was transformed and committed
	int32 NumSocketsBaked = 0;          ///< sockets whose relative transform was rewritten
	int32 NumCollisionElemsBaked = 0;   ///< simple-collision shapes that were transformed
	bool bCollisionApproximate = false; ///< some collision is not exact, or was not transformed at all
	bool bSocketsApproximate = false;   ///< a rotated socket met a non-uniform scale
};

/// Multiplies a static-mesh asset by a transform, and keeps it right across undo.
class TARVINTRANSFORM_API FTarvinTransformOp
{
public:
	/// Bakes a transform of normalised rotation into every source LOD and the HiRes source of the mesh, and, as the
	/// options say, into its sockets and simple collision. Returns false, changing nothing, for a null mesh, a scale
	/// with a component of absolute value up to 1e-8, a transform that is not finite, or a mesh without source geometry
	/// that can be read; all but the first are logged. True says that the stats record counts baked geometry.
	static bool BakeIntoMesh(UStaticMesh* Mesh, const FTransform& BakeTransform, const FTarvinTransformOptions& Options,
		FTarvinTransformStats& Stats);

	/// Forgets which meshes earlier commands baked.
	static void BeginUndoTrackedBatch();

	/// Tells each mesh that the latest command baked, and that still exists, that it was edited, so that it is built
	/// again.
	static void RebuildMeshesAfterUndo();
};
