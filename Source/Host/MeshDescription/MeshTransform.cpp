// SPDX-License-Identifier: MIT
#include "MeshDescription/MeshTransform.h"

#include "Core/MathUtility.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace
{
using MeshTransformKernels::FLinear;

/// Elements to a task. A smaller array is not worth waking another core for.
constexpr std::size_t TaskSize = std::size_t(1) << 15;

/// Runs Loop(first element, count) over pieces of the array, on all cores if there is enough to do. Elements are
/// independent of each other, so the cuts do not show in the result.
template <typename T, typename LoopType>
void ForPieces(std::span<T> Array, const LoopType& Loop)
{
	if (Array.size() < 2 * TaskSize)
	{
		Loop(Array.data(), Array.size());
		return;
	}
	tbb::parallel_for(tbb::blocked_range<std::size_t>(0, Array.size(), TaskSize),
		[&](const tbb::blocked_range<std::size_t>& Piece) { Loop(Array.data() + Piece.begin(), Piece.size()); });
}

FLinear GetLinear(const FMatrix& Matrix)
{
	FLinear Result;
	for (int Row = 0; Row < 3; ++Row)
	{
		for (int Column = 0; Column < 3; ++Column)
		{
			Result.M[Row][Column] = Matrix.M[Row][Column];
		}
	}
	return Result;
}

/// The same directions with entries of moderate size: a power of two takes no digit from any of them, and lengths of
/// results do not matter.
FLinear WithModerateEntries(const FLinear& Linear)
{
	double Largest = 0.0;
	for (const auto& Row : Linear.M)
	{
		for (const double Entry : Row)
		{
			Largest = FMath::Max(Largest, FMath::Abs(Entry));
		}
	}
	if (!(Largest > 0.0) || !FMath::IsFinite(Largest))
	{
		return Linear;
	}
	FLinear Result = Linear;
	const int Exponent = std::ilogb(Largest);
	for (auto& Row : Result.M)
	{
		for (double& Entry : Row)
		{
			Entry = std::scalbn(Entry, -Exponent);
		}
	}
	return Result;
}

double Determinant(const FLinear& Linear)
{
	const auto& M = Linear.M;
	return M[0][0] * (M[1][1] * M[2][2] - M[1][2] * M[2][1]) + M[0][1] * (M[1][2] * M[2][0] - M[1][0] * M[2][2]) +
		   M[0][2] * (M[1][0] * M[2][1] - M[1][1] * M[2][0]);
}

/// The inverse transpose, times a positive number.
FLinear InverseTranspose(const FLinear& Linear)
{
	// The matrix of cofactors is the determinant times the inverse transpose, and exists for singular matrices too. A
	// negative determinant would turn every normal to the other side of its surface.
	const auto& M = Linear.M;
	const double Sign = FMath::SignOrPositive(Determinant(Linear));
	FLinear Result;
	for (int Row = 0; Row < 3; ++Row)
	{
		for (int Column = 0; Column < 3; ++Column)
		{
			const int R1 = (Row + 1) % 3, R2 = (Row + 2) % 3, C1 = (Column + 1) % 3, C2 = (Column + 2) % 3;
			Result.M[Row][Column] = Sign * (M[R1][C1] * M[R2][C2] - M[R1][C2] * M[R2][C1]);
		}
	}
	return Result;
}

/// True for a positive multiple of the identity: it turns no direction.
bool KeepsDirections(const FLinear& Linear)
{
	const auto& M = Linear.M;
	return M[0][0] > 0.0 && M[0][0] == M[1][1] && M[0][0] == M[2][2] && M[0][1] == 0.0 && M[0][2] == 0.0 &&
		   M[1][0] == 0.0 && M[1][2] == 0.0 && M[2][0] == 0.0 && M[2][1] == 0.0;
}

void TransformDirections(std::span<FVector3f> Directions, const FLinear& Linear)
{
	ForPieces(Directions, [&Linear](FVector3f* Piece, std::size_t Num)
		{ MeshTransformKernels::TransformDirections(Piece, Num, Linear); });
}
}

FMeshTransform::FMeshTransform(const FMatrix& InMatrix, bool bApplyCorrectNormalTransform)
	: Matrix(InMatrix)
	, ForTangents(WithModerateEntries(GetLinear(InMatrix)))
{
	ForNormals = WithModerateEntries(bApplyCorrectNormalTransform ? InverseTranspose(ForTangents) : ForTangents);
	bKeepsDirections = ::KeepsDirections(ForTangents);
	bMirrors = Determinant(ForTangents) < 0.0;
}

void FMeshTransform::TransformPositions(std::span<FVector3f> Positions) const
{
	ForPieces(Positions,
		[this](FVector3f* Piece, std::size_t Num) { MeshTransformKernels::TransformPositions(Piece, Num, Matrix); });
}

void FMeshTransform::TransformNormals(std::span<FVector3f> Normals) const
{
	if (!bKeepsDirections)
	{
		TransformDirections(Normals, ForNormals);
	}
}

void FMeshTransform::TransformTangents(std::span<FVector3f> Tangents) const
{
	if (!bKeepsDirections)
	{
		TransformDirections(Tangents, ForTangents);
	}
}

void FMeshTransform::TransformBinormalSigns(std::span<float> Signs) const
{
	if (bMirrors)
	{
		ForPieces(Signs, MeshTransformKernels::NegateSigns);
	}
}

void FMeshTransform::Apply(FMeshDescription& Mesh) const
{
	TransformPositions(Mesh.GetVertexPositions());
	TransformNormals(Mesh.GetNormals());
	TransformTangents(Mesh.GetTangents());
	TransformBinormalSigns(Mesh.GetBinormalSigns());
	if (bMirrors)
	{
		ForPieces(Mesh.GetTriangleCorners(), MeshTransformKernels::ReverseWinding);
	}
}
