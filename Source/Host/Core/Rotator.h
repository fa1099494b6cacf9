// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Quat.h"

/// A rotation as three angles in degrees, applied in the order roll, pitch, yaw. Positive yaw turns +X towards +Y,
/// positive pitch turns +X towards +Z, positive roll turns +Z towards +Y.
struct FRotator
{
	double Pitch = 0.0;
	double Yaw = 0.0;
	double Roll = 0.0;

	static const FRotator ZeroRotator;

	constexpr FRotator() = default;
	constexpr FRotator(double InPitch, double InYaw, double InRoll)
		: Pitch(InPitch)
		, Yaw(InYaw)
		, Roll(InRoll)
	{
	}
	explicit FRotator(const FQuat& Rotation)
		: FRotator(Rotation.Rotator())
	{
	}

	constexpr bool operator==(const FRotator&) const = default;

	/// The same rotation as a unit quaternion; exact zeros at half turns.
	FQuat Quaternion() const;

	FVector RotateVector(const FVector& V) const { return Quaternion().RotateVector(V); }

	/// The same angle within (-180, 180].
	static double NormalizeAxis(double Degrees);

	FRotator GetNormalized() const { return {NormalizeAxis(Pitch), NormalizeAxis(Yaw), NormalizeAxis(Roll)}; }

	/// True when every angle, whole turns aside, differs by at most `Tolerance` degrees. Different angles that make the
	/// same rotation are not equal: compare quaternions for that.
	bool Equals(const FRotator& R, double Tolerance = KINDA_SMALL_NUMBER) const;

	bool IsNearlyZero(double Tolerance = KINDA_SMALL_NUMBER) const { return Equals(FRotator(), Tolerance); }

	bool ContainsNaN() const;

	/// "P=0.000 Y=0.000 R=0.000"
	FString ToString() const;
};

inline constexpr FRotator FRotator::ZeroRotator{0.0, 0.0, 0.0};
