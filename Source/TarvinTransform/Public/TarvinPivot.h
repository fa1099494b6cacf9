// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Core.h"
#include "TarvinTransformAPI.h"

class UStaticMesh;

/// Where a mesh's pivot can be put. The value is also the index of the pivot command.
enum class ETarvinPivotPosition : uint8
{
	Center = 0,
	Bottom = 1, ///< lowest Z
	Top = 2,    ///< highest Z
	Left = 3,   ///< lowest Y
	Right = 4,  ///< highest Y
	Front = 5,  ///< lowest X
	Back = 6,   ///< highest X
	WorldOrigin = 7,
};

/// Where pivots go. Points and boxes are in the mesh's local space.
namespace TarvinPivot
{
/// The position's name in running text: "center", "world origin"; "unknown" for a value out of range. Never null.
TARVINTRANSFORM_API const TCHAR* GetPositionName(ETarvinPivotPosition Position);

/// Measures the box of all vertices, used or not, of source LOD 0; those with a coordinate that is no number do not
/// count. Returns false when the mesh is null, has no LOD 0 description, or that has no vertices.
TARVINTRANSFORM_API bool ComputeLocalBounds(const UStaticMesh* Mesh, FBox& OutBounds);

/// Finds the point that the pivot is to be moved to. For `WorldOrigin` it is the place of the world's origin under the
/// component's world transform, where a scale of 0 (absolute value up to 1e-8) gives the coordinate 0, and the mesh is
/// not looked at. For all others it lies on the local bounds; returns false, leaving `OutPoint` alone, when there are
/// none.
TARVINTRANSFORM_API bool ComputePivotPoint(
	const UStaticMesh* Mesh, ETarvinPivotPosition Position, const FTransform& WorldTransform, FVector& OutPoint);
} // namespace TarvinPivot
