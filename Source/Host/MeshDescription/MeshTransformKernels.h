// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Matrix.h"
#include "MeshDescription/MeshDescription.h"

#include <limits>

/// The loops over contiguous mesh arrays: vectorised, the instruction set chosen at run time, the same bits on every
/// one. They run on the calling thread and treat every element on its own, so that an array can be cut anywhere.
namespace MeshTransformKernels
{
/// The linear part of a matrix in double precision, rows as in FMatrix.
struct FLinear
{
	double M[3][3];
};

/// p := p * M in double precision, rounded once.
void TransformPositions(FVector3f* Positions, std::size_t Num, const FMatrix& Matrix);

/// v := v * M at length one. Where that has no direction (v is zero or no number, or M takes it to zero), v stays.
void TransformDirections(FVector3f* Directions, std::size_t Num, const FLinear& Linear);

void NegateSigns(float* Signs, std::size_t Num);

/// Exchanges the second and third corner of every triangle.
void ReverseWinding(FTriangleCorners* Triangles, std::size_t Num);

/// Bounds of nothing: growing them by any point gives that point.
inline constexpr FVector3f EmptyMin(std::numeric_limits<float>::infinity(), std::numeric_limits<float>::infinity(),
	std::numeric_limits<float>::infinity());
inline constexpr FVector3f EmptyMax(-std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
	-std::numeric_limits<float>::infinity());

/// Grows the bounds to hold the point; a coordinate that is no number changes nothing.
inline void GrowBoundsByPoint(const FVector3f& Point, FVector3f& Min, FVector3f& Max)
{
	Min.X = Point.X < Min.X ? Point.X : Min.X;
	Min.Y = Point.Y < Min.Y ? Point.Y : Min.Y;
	Min.Z = Point.Z < Min.Z ? Point.Z : Min.Z;
	Max.X = Point.X > Max.X ? Point.X : Max.X;
	Max.Y = Point.Y > Max.Y ? Point.Y : Max.Y;
	Max.Z = Point.Z > Max.Z ? Point.Z : Max.Z;
}

/// As GrowBoundsByPoint, for all of the points.
void GrowBounds(const FVector3f* Points, std::size_t Num, FVector3f& Min, FVector3f& Max);

/// Points with a coordinate that is infinite or no number.
std::size_t CountNonFinite(const FVector3f* Points, std::size_t Num);

/// The bounds as a box, which is invalid when no coordinate was a number.
inline FBox MakeBox(const FVector3f& Min, const FVector3f& Max)
{
	return Min.X <= Max.X && Min.Y <= Max.Y && Min.Z <= Max.Z ? FBox(FVector(Min), FVector(Max)) : FBox();
}
}
