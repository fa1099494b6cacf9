// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Vector.h"

struct FRotator;

/// A rotation as a unit quaternion: (X, Y, Z) is the axis times the sine of half the angle, W the cosine of half the
/// angle. q and -q are the same rotation. The identity by default.
struct FQuat
{
	double X = 0.0;
	double Y = 0.0;
	double Z = 0.0;
	double W = 1.0;

	static const FQuat Identity;

	constexpr FQuat() = default;
	constexpr FQuat(double InX, double InY, double InZ, double InW)
		: X(InX)
		, Y(InY)
		, Z(InZ)
		, W(InW)
	{
	}

	/// The turn by `AngleRad` radians about `Axis` (a unit vector): a quarter turn about +Z takes +X to +Y.
	FQuat(const FVector& Axis, double AngleRad);

	/// The rotation that takes the X, Y and Z unit vectors to these three, which must be orthonormal with
	/// determinant 1.
	static FQuat FromAxes(const FVector& XAxis, const FVector& YAxis, const FVector& ZAxis);

	/// Quaternion algebra: `A * B` turns by B first, then by A.
	constexpr FQuat operator*(const FQuat& Q) const
	{
		return {W * Q.X + X * Q.W + Y * Q.Z - Z * Q.Y, W * Q.Y - X * Q.Z + Y * Q.W + Z * Q.X,
			W * Q.Z + X * Q.Y - Y * Q.X + Z * Q.W, W * Q.W - X * Q.X - Y * Q.Y - Z * Q.Z};
	}
	constexpr FQuat operator-() const { return {-X, -Y, -Z, -W}; }
	constexpr bool operator==(const FQuat&) const = default;

	constexpr FVector GetVector() const { return {X, Y, Z}; }

	constexpr FVector RotateVector(const FVector& V) const
	{
		const FVector Axis = GetVector();
		const FVector Twice = (Axis ^ V) * 2.0;
		return V + Twice * W + (Axis ^ Twice);
	}
	constexpr FVector UnrotateVector(const FVector& V) const { return Inverse().RotateVector(V); }

	/// The opposite rotation: the conjugate, which is the inverse of a unit quaternion.
	constexpr FQuat Inverse() const { return {-X, -Y, -Z, W}; }

	constexpr FVector GetAxisX() const { return RotateVector(FVector(1.0, 0.0, 0.0)); }
	constexpr FVector GetAxisY() const { return RotateVector(FVector(0.0, 1.0, 0.0)); }
	constexpr FVector GetAxisZ() const { return RotateVector(FVector(0.0, 0.0, 1.0)); }

	constexpr double SizeSquared() const { return X * X + Y * Y + Z * Z + W * W; }

	/// This quaternion at length one; the identity when its squared length is at most 1e-8 or not finite.
	FQuat GetNormalized() const;

	/// True when the squared length differs from 1 by at most 0.01.
	constexpr bool IsNormalized() const { return FMath::IsNearlyEqual(SizeSquared(), 1.0, 0.01); }

	/// True when every component differs by at most `Tolerance` from Q's, or from those of -Q.
	constexpr bool Equals(const FQuat& Q, double Tolerance = KINDA_SMALL_NUMBER) const
	{
		return IsNear(Q, Tolerance) || IsNear(-Q, Tolerance);
	}
	constexpr bool IsIdentity(double Tolerance = KINDA_SMALL_NUMBER) const { return Equals(FQuat(), Tolerance); }

	/// The angle in radians, from 0 to pi, between the two rotations; accurate for small angles too.
	double AngularDistance(const FQuat& Q) const;

	/// This rotation as pitch, yaw and roll; at the poles (pitch of +-90 degrees) roll is 0.
	FRotator Rotator() const;

	bool ContainsNaN() const;

	/// "X=0.000 Y=0.000 Z=0.000 W=1.000"
	FString ToString() const;

private:
	constexpr bool IsNear(const FQuat& Q, double Tolerance) const
	{
		return FMath::IsNearlyEqual(X, Q.X, Tolerance) && FMath::IsNearlyEqual(Y, Q.Y, Tolerance) &&
			   FMath::IsNearlyEqual(Z, Q.Z, Tolerance) && FMath::IsNearlyEqual(W, Q.W, Tolerance);
	}
};

inline constexpr FQuat FQuat::Identity{0.0, 0.0, 0.0, 1.0};
