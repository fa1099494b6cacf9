// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Vector.h"

/// A 4x4 matrix for row vectors: p' = p * M, the first three rows are where the axes go, the fourth is the translation.
/// The identity by default. Points are taken as affine: the fourth column plays no part in transforming them.
struct FMatrix
{
	double M[4][4] = {{1.0, 0.0, 0.0, 0.0}, {0.0, 1.0, 0.0, 0.0}, {0.0, 0.0, 1.0, 0.0}, {0.0, 0.0, 0.0, 1.0}};

	static const FMatrix Identity;

	constexpr FMatrix() = default;
	/// An affine matrix from its four rows.
	constexpr FMatrix(const FVector& XAxis, const FVector& YAxis, const FVector& ZAxis, const FVector& Origin)
		: M{{XAxis.X, XAxis.Y, XAxis.Z, 0.0}, {YAxis.X, YAxis.Y, YAxis.Z, 0.0}, {ZAxis.X, ZAxis.Y, ZAxis.Z, 0.0},
			  {Origin.X, Origin.Y, Origin.Z, 1.0}}
	{
	}

	bool operator==(const FMatrix& Other) const;

	/// `A * B` applies A first, then B.
	FMatrix operator*(const FMatrix& Other) const;

	FVector TransformPosition(const FVector& P) const { return TransformVector(P) + GetOrigin(); }

	/// Transforms a direction: the linear part without the translation.
	FVector TransformVector(const FVector& V) const
	{
		return {V.X * M[0][0] + V.Y * M[1][0] + V.Z * M[2][0], V.X * M[0][1] + V.Y * M[1][1] + V.Z * M[2][1],
			V.X * M[0][2] + V.Y * M[1][2] + V.Z * M[2][2]};
	}

	FVector GetOrigin() const { return GetRow(3); }

	/// The first three entries of a row: where an axis goes (0 to 2), or the translation (3).
	FVector GetRow(int32 Row) const;

	/// Determinant of all four rows.
	double Determinant() const;

	/// Determinant of the linear part: negative when the matrix mirrors.
	double LinearDeterminant() const;

	/// The inverse matrix. The matrix must have one: checked. `TryInverse` answers instead.
	FMatrix Inverse() const;

	/// Writes the inverse and returns true; returns false, leaving `OutInverse` alone, when the matrix is singular or
	/// not finite.
	bool TryInverse(FMatrix& OutInverse) const;

	FMatrix GetTransposed() const;

	/// True when every entry differs by at most `Tolerance`.
	bool Equals(const FMatrix& Other, double Tolerance = KINDA_SMALL_NUMBER) const;

	bool ContainsNaN() const;
};

inline constexpr FMatrix FMatrix::Identity{};
