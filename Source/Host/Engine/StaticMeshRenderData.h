// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Box.h"
#include "Core/SharedPointer.h"
#include "Core/Vector.h"
#include "MeshDescription/MeshBulkData.h"
#include "MeshDescription/MeshDescription.h"

#include <optional>

/// The triangles of one level of detail as a graphics card takes them: one entry per vertex instance.
struct FStaticMeshLodRenderData
{
	TArray<FVector3f> Positions;
	TArray<FVector3f> Normals; ///< taken from the triangles where the source has none
	TArray<uint32> Indices;    ///< three per triangle, counter-clockwise seen from outside
};

/// Makes the buffers of one level. Triangles whose corners are missing are left out.
FStaticMeshLodRenderData BuildLodRenderData(const FMeshDescription& Description);

/// What a mesh derives from its source, and the identity of the source that it was derived from.
struct FStaticMeshDerivedData
{
	using FSource = TArray<TSharedPtr<const FMeshBulkData>>;

	bool bBuilt = false;
	FSource Source;
	std::optional<FBox> Bounds; ///< made when first asked for, as the levels are
	TArray<TSharedPtr<FStaticMeshLodRenderData>> Lods;
};
