// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Transform.h"

/// An axis-aligned box. Empty and invalid, with zero corners, until something is added to it.
struct FBox
{
	FVector Min;
	FVector Max;
	bool IsValid = false;

	constexpr FBox() = default;
	/// A valid box between two corners.
	constexpr FBox(const FVector& InMin, const FVector& InMax)
		: Min(InMin)
		, Max(InMax)
		, IsValid(true)
	{
	}

	/// Equal corners and validity.
	constexpr bool operator==(const FBox&) const = default;

	/// Makes the box empty and invalid again.
	void Init() { *this = FBox(); }

	/// Grows the box to hold the point. The first point makes it valid.
	FBox& operator+=(const FVector& Point);
	/// Grows the box to hold the other one; an invalid one adds nothing.
	FBox& operator+=(const FBox& Other);
	FBox operator+(const FBox& Other) const { return FBox(*this) += Other; }

	constexpr FVector GetCenter() const { return (Min + Max) * 0.5; }
	/// Half the size along each axis.
	constexpr FVector GetExtent() const { return (Max - Min) * 0.5; }
	constexpr FVector GetSize() const { return Max - Min; }

	/// The smallest box around this one after the transform; an invalid box stays invalid.
	FBox TransformBy(const FTransform& Transform) const { return TransformBy(Transform.ToMatrixWithScale()); }
	FBox TransformBy(const FMatrix& Matrix) const;

	/// True when the point lies inside a valid box or on its surface.
	bool IsInside(const FVector& Point) const;
	/// True when a valid box holds all of the other, valid one.
	bool IsInside(const FBox& Other) const;
	/// True when two valid boxes share a point.
	bool Intersect(const FBox& Other) const;
};
