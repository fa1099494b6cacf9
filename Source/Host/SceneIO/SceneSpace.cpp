// SPDX-License-Identifier: MIT
#include "SceneIO/SceneSpace.h"

#include <algorithm>
#include <cmath>

namespace
{
/// For each host axis, the file's axis that it lies along, and its direction.
constexpr std::size_t FileAxis[3] = {2, 0, 1};
constexpr double FileSign[3] = {-1.0, -1.0, 1.0};
} // namespace

FVector SceneSpace::PointToHost(const std::array<double, 3>& Point)
{
	return FVector(-UnitsPerMetre * Point[2], -UnitsPerMetre * Point[0], UnitsPerMetre * Point[1]);
}

FQuat SceneSpace::RotationToHost(const std::array<double, 4>& Rotation)
{
	return FQuat(-Rotation[2], -Rotation[0], Rotation[1], Rotation[3]);
}

FVector SceneSpace::ScaleToHost(const std::array<double, 3>& Scale)
{
	return FVector(Scale[2], Scale[0], Scale[1]);
}

FMatrix SceneSpace::MatrixToHost(const std::array<double, 16>& Matrix)
{
	FMatrix Result;
	for (int From = 0; From < 3; ++From)
	{
		for (int To = 0; To < 3; ++To)
		{
			Result.M[From][To] = FileSign[From] * FileSign[To] * Matrix[FileAxis[From] * 4 + FileAxis[To]];
		}
		Result.M[3][From] = UnitsPerMetre * FileSign[From] * Matrix[12 + FileAxis[From]];
	}
	return Result;
}

std::array<double, 3> SceneSpace::PointToFile(const FVector& Point)
{
	return {-Point.Y / UnitsPerMetre, Point.Z / UnitsPerMetre, -Point.X / UnitsPerMetre};
}

std::array<double, 4> SceneSpace::RotationToFile(const FQuat& Rotation)
{
	return {-Rotation.Y, Rotation.Z, -Rotation.X, Rotation.W};
}

std::array<double, 3> SceneSpace::ScaleToFile(const FVector& Scale)
{
	return {Scale.Y, Scale.Z, Scale.X};
}

namespace
{
/// Any unit vector at a right angle to `Axis`, a unit vector.
FVector AnyPerpendicular(const FVector& Axis)
{
	const FVector Other = std::abs(Axis.X) < 0.6 ? FVector(1.0, 0.0, 0.0) : FVector(0.0, 1.0, 0.0);
	return (Axis ^ Other).GetSafeNormal();
}

/// Gives every axis of length zero a direction, so that the three can be a rotation.
void CompleteAxes(FVector (&Axes)[3], const double (&Lengths)[3])
{
	int Known[3];
	int NumKnown = 0;
	for (int Axis = 0; Axis < 3; ++Axis)
	{
		if (Lengths[Axis] > 0.0)
		{
			Known[NumKnown++] = Axis;
		}
	}
	if (NumKnown == 0)
	{
		Axes[0] = FVector(1.0, 0.0, 0.0);
		Axes[1] = FVector(0.0, 1.0, 0.0);
		Axes[2] = FVector(0.0, 0.0, 1.0);
	}
	else if (NumKnown == 1)
	{
		const int Next = (Known[0] + 1) % 3;
		Axes[Next] = AnyPerpendicular(Axes[Known[0]]);
		Axes[(Known[0] + 2) % 3] = Axes[Known[0]] ^ Axes[Next];
	}
	else if (NumKnown == 2)
	{
		const int Missing = 3 - Known[0] - Known[1];
		Axes[Missing] = (Axes[(Missing + 1) % 3] ^ Axes[(Missing + 2) % 3]).GetSafeNormal();
	}
}
} // namespace

FMatrixParts DecomposeMatrix(const FMatrix& Matrix)
{
	FVector Axes[3];
	double Lengths[3];
	for (int32 Axis = 0; Axis < 3; ++Axis)
	{
		const FVector Row = Matrix.GetRow(Axis);
		const double Length = std::hypot(Row.X, Row.Y, Row.Z);
		Lengths[Axis] = Length > 1e-30 ? Length : 0.0;
		Axes[Axis] =
			Lengths[Axis] > 0.0 ? FVector(Row.X / Length, Row.Y / Length, Row.Z / Length) : FVector::ZeroVector;
	}
	FMatrixParts Parts;
	Parts.Shear = std::max({std::abs(Axes[0] | Axes[1]), std::abs(Axes[1] | Axes[2]), std::abs(Axes[2] | Axes[0])});
	CompleteAxes(Axes, Lengths);
	if (((Axes[0] ^ Axes[1]) | Axes[2]) < 0.0)
	{
		Axes[0] = -Axes[0];
		Lengths[0] = -Lengths[0];
	}
	// Rounding, and what shear there is, must not leak into the quaternion.
	const FVector Y = (Axes[1] - Axes[0] * (Axes[0] | Axes[1])).GetSafeNormal();
	const FQuat Rotation = FQuat::FromAxes(Axes[0], Y, Axes[0] ^ Y).GetNormalized();
	Parts.Transform = FTransform(Rotation, Matrix.GetOrigin(), FVector(Lengths[0], Lengths[1], Lengths[2]));
	return Parts;
}

double RelativeDifference(const FMatrix& A, const FMatrix& B)
{
	double Linear = 0.0;
	double LinearSize = 0.0;
	double Origin = 0.0;
	double OriginSize = 0.0;
	for (int Column = 0; Column < 3; ++Column)
	{
		for (int Row = 0; Row < 3; ++Row)
		{
			Linear = std::max(Linear, std::abs(A.M[Row][Column] - B.M[Row][Column]));
			LinearSize = std::max(LinearSize, std::abs(B.M[Row][Column]));
		}
		Origin = std::max(Origin, std::abs(A.M[3][Column] - B.M[3][Column]));
		OriginSize = std::max(OriginSize, std::abs(B.M[3][Column]));
	}
	const double LinearShare = Linear > 0.0 ? Linear / std::max(LinearSize, 1e-300) : 0.0;
	const double OriginShare = Origin > 0.0 ? Origin / std::max({OriginSize, LinearSize, 1e-300}) : 0.0;
	return std::max(LinearShare, OriginShare);
}

double DistanceOf(const FVector& A, const FVector& B)
{
	const FVector Difference = A - B;
	const double Size = Difference.Size();
	// The squares of what is far away are beyond the range of numbers.
	return std::isinf(Size) ? std::hypot(Difference.X, Difference.Y, Difference.Z) : Size;
}
