// SPDX-License-Identifier: MIT
#include "Core/Box.h"

FBox& FBox::operator+=(const FVector& Point)
{
	if (!IsValid)
	{
		return *this = FBox(Point, Point);
	}
	Min = FVector::Min(Min, Point);
	Max = FVector::Max(Max, Point);
	return *this;
}

FBox& FBox::operator+=(const FBox& Other)
{
	if (Other.IsValid)
	{
		*this += Other.Min;
		*this += Other.Max;
	}
	return *this;
}

FBox FBox::TransformBy(const FMatrix& Matrix) const
{
	if (!IsValid)
	{
		return FBox();
	}
	// Along each output axis every input axis contributes at one of its two ends, independently of the others.
	FBox Result(Matrix.GetOrigin(), Matrix.GetOrigin());
	for (int32 Axis = 0; Axis < 3; ++Axis)
	{
		const FVector AtMin = Matrix.GetRow(Axis) * Min[Axis];
		const FVector AtMax = Matrix.GetRow(Axis) * Max[Axis];
		Result.Min += FVector::Min(AtMin, AtMax);
		Result.Max += FVector::Max(AtMin, AtMax);
	}
	return Result;
}

bool FBox::IsInside(const FVector& Point) const
{
	return IsValid && Point.X >= Min.X && Point.X <= Max.X && Point.Y >= Min.Y && Point.Y <= Max.Y &&
		   Point.Z >= Min.Z && Point.Z <= Max.Z;
}

bool FBox::IsInside(const FBox& Other) const
{
	return Other.IsValid && IsInside(Other.Min) && IsInside(Other.Max);
}

bool FBox::Intersect(const FBox& Other) const
{
	return IsValid && Other.IsValid && Min.X <= Other.Max.X && Other.Min.X <= Max.X && Min.Y <= Other.Max.Y &&
		   Other.Min.Y <= Max.Y && Min.Z <= Other.Max.Z && Other.Min.Z <= Max.Z;
}
