// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Matrix.h"
#include "Core/Quat.h"
#include "Core/Rotator.h"

/// A rotation, a translation and a scale along the three axes: p maps to R * (S (x) p) + T. Scales may be negative (a
/// mirror), uneven or zero. The identity by default. Rotations are expected to be unit quaternions.
struct FTransform
{
	static const FTransform Identity;

	constexpr FTransform() = default;
	constexpr FTransform(
		const FQuat& InRotation, const FVector& InTranslation, const FVector& InScale = FVector::OneVector)
		: Rotation(InRotation)
		, Translation(InTranslation)
		, Scale3D(InScale)
	{
	}
	FTransform(const FRotator& InRotation, const FVector& InTranslation, const FVector& InScale = FVector::OneVector)
		: FTransform(InRotation.Quaternion(), InTranslation, InScale)
	{
	}
	constexpr explicit FTransform(const FVector& InTranslation)
		: Translation(InTranslation)
	{
	}
	constexpr explicit FTransform(const FQuat& InRotation)
		: Rotation(InRotation)
	{
	}
	explicit FTransform(const FRotator& InRotation)
		: Rotation(InRotation.Quaternion())
	{
	}

	constexpr bool operator==(const FTransform&) const = default;

	constexpr const FQuat& GetRotation() const { return Rotation; }
	constexpr const FVector& GetTranslation() const { return Translation; }
	constexpr const FVector& GetLocation() const { return Translation; }
	constexpr const FVector& GetScale3D() const { return Scale3D; }
	FRotator Rotator() const { return Rotation.Rotator(); }

	constexpr void SetRotation(const FQuat& InRotation) { Rotation = InRotation; }
	constexpr void SetTranslation(const FVector& InTranslation) { Translation = InTranslation; }
	constexpr void SetLocation(const FVector& InTranslation) { Translation = InTranslation; }
	constexpr void SetScale3D(const FVector& InScale) { Scale3D = InScale; }

	/// `A * B` applies A first, then B. Exact, within rounding, whenever the combined map can be written as a
	/// transform.
	///
	/// It cannot where an uneven |scale| of B meets axes of A that are turned against B's: that product has shear. The
	/// result then has the turned frame of A, the lengths that A's scaled axes really take, and the true translation.
	FTransform operator*(const FTransform& Other) const;
	FTransform& operator*=(const FTransform& Other) { return *this = *this * Other; }

	/// The transform R with `R * Base == *this`; undoes the steps of `operator*`, so that
	/// `(A * B).GetRelativeTransform(B)` is A within rounding for every A, whether or not A * B lost shear.
	/// What a zero scale component of Base has flattened comes back as zero.
	FTransform GetRelativeTransform(const FTransform& Base) const;

	constexpr FVector TransformPosition(const FVector& P) const { return TransformVector(P) + Translation; }
	/// Rotates and scales a direction; no translation.
	constexpr FVector TransformVector(const FVector& V) const { return Rotation.RotateVector(Scale3D * V); }

	/// The point that this transform maps to `P`; a coordinate along a zero scale is 0.
	FVector InverseTransformPosition(const FVector& P) const { return InverseTransformVector(P - Translation); }
	FVector InverseTransformVector(const FVector& V) const;

	/// This transform as a matrix for row vectors: the rotated axes, each times its scale, then the translation.
	/// The rotation must be normalised: checked.
	FMatrix ToMatrixWithScale() const;

	/// Product of the scale components: negative when the transform mirrors.
	constexpr double GetDeterminant() const { return Scale3D.X * Scale3D.Y * Scale3D.Z; }

	constexpr bool IsRotationNormalized() const { return Rotation.IsNormalized(); }

	/// True when rotation (a quaternion and its negative being the same), translation and scale each differ by at most
	/// `Tolerance` in every component.
	constexpr bool Equals(const FTransform& Other, double Tolerance = KINDA_SMALL_NUMBER) const
	{
		return Rotation.Equals(Other.Rotation, Tolerance) && Translation.Equals(Other.Translation, Tolerance) &&
			   Scale3D.Equals(Other.Scale3D, Tolerance);
	}

	bool ContainsNaN() const { return Rotation.ContainsNaN() || Translation.ContainsNaN() || Scale3D.ContainsNaN(); }

	/// True when every number is finite and the rotation is normalised.
	bool IsValid() const { return !ContainsNaN() && IsRotationNormalized(); }

	/// Component-wise reciprocal; a component of absolute value at most 1e-8 gives 0.
	static FVector GetSafeScaleReciprocal(const FVector& Scale);

	/// Translation, rotation (as pitch, yaw, roll) and scale in one line.
	FString ToString() const;

private:
	FQuat Rotation;
	FVector Translation;
	FVector Scale3D{1.0, 1.0, 1.0};
};

inline constexpr FTransform FTransform::Identity{};
