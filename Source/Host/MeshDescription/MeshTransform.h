// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Matrix.h"
#include "MeshDescription/MeshTransformKernels.h"

#include <span>

/// What an affine matrix (p' = p * M) does to each of a mesh's arrays; see FStaticMeshOperations::ApplyTransform for
/// the rules. Every element is treated on its own: an array may be given in pieces. Large pieces are split over all
/// cores.
class FMeshTransform
{
public:
	FMeshTransform(const FMatrix& InMatrix, bool bApplyCorrectNormalTransform);

	void TransformPositions(std::span<FVector3f> Positions) const;
	void TransformNormals(std::span<FVector3f> Normals) const;
	void TransformTangents(std::span<FVector3f> Tangents) const;
	void TransformBinormalSigns(std::span<float> Signs) const;

	/// True where normals and tangents stay as they are.
	bool KeepsDirections() const { return bKeepsDirections; }

	/// True where binormal signs and the winding of triangles change.
	bool Mirrors() const { return bMirrors; }

	/// Transforms all arrays of a mesh in place.
	void Apply(FMeshDescription& Mesh) const;

private:
	FMatrix Matrix;
	MeshTransformKernels::FLinear ForNormals;
	MeshTransformKernels::FLinear ForTangents;
	bool bKeepsDirections = false;
	bool bMirrors = false;
};
