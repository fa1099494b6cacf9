// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Matrix.h"
#include "MeshDescription/MeshDescription.h"

/// Operations on whole static meshes.
class FStaticMeshOperations
{
public:
	/// Transforms a mesh in place by an affine matrix (p' = p * M). Counts, numbers and all other attributes stay.
	///
	/// - Positions are computed in double precision and rounded once.
	/// - Normals go by the inverse transpose, so that they stay perpendicular to their triangles and on their side, or
	/// by
	///   the linear part alone when `bApplyCorrectNormalTransform` is false; tangents go by the linear part, which
	///   keeps them on the surface. Both come out at length one. Those that are zero or no number, or would become so,
	///   stay.
	/// - Where the linear part is the identity or a positive multiple of it, normals and tangents stay bit for bit.
	/// - A matrix that mirrors also negates every binormal sign and reverses the winding of every triangle, so that the
	///   geometric normals keep pointing out of the shape.
	///
	/// Runs on all cores for large meshes; the result is the same to the bit on any number of cores and any processor.
	static void ApplyTransform(FMeshDescription& Mesh, const FMatrix& Matrix, bool bApplyCorrectNormalTransform = true);

	/// The unit geometric normal of a triangle, by its winding: counter-clockwise seen from its tip. Zero for a
	/// triangle without area.
	static FVector ComputeTriangleNormal(const FMeshDescription& Mesh, FTriangleID Triangle);

	/// The volume that the triangles enclose, positive when their normals point outwards; means something for closed
	/// surfaces only. Tells whether the winding of a mesh is right, whatever its shape.
	static double ComputeSignedVolume(const FMeshDescription& Mesh);
};
