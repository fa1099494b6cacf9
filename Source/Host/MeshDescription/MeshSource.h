// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Box.h"
#include "MeshDescription/MeshTransform.h"

#include <memory>
#include <span>
#include <vector>

class FMeshDescription;

/// Where the vertices of a mesh are.
struct FMeshMeasure
{
	FBox Bounds;            ///< see FMeshDescription::ComputeBoundingBox
	int32 NumNonFinite = 0; ///< see FMeshDescription::CountNonFiniteVertices
};

/// Geometry that can be taken in later: immutable, always the same, and known to be readable.
class FMeshSource
{
public:
	virtual ~FMeshSource() = default;

	/// Puts all elements into an empty description.
	virtual void Fill(FMeshDescription& Empty) const = 0;

	virtual int32 NumVertices() const = 0;

	/// What the positions are like once the transforms are applied, in their order.
	virtual FMeshMeasure Measure(std::span<const FMeshTransform> Transforms) const = 0;

protected:
	FMeshSource() = default;
	FMeshSource(const FMeshSource&) = delete;
	FMeshSource& operator=(const FMeshSource&) = delete;
};

/// What a description that was not looked at yet is to hold.
struct FDeferredMesh
{
	std::shared_ptr<const FMeshSource> Source;
	std::vector<FMeshTransform> Transforms; ///< to be applied in this order
};
