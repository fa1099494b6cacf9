// SPDX-License-Identifier: MIT
#include "Core/Rotator.h"

FQuat FRotator::Quaternion() const
{
	double SinPitch, CosPitch, SinYaw, CosYaw, SinRoll, CosRoll;
	FMath::SinCosDegrees(Pitch * 0.5, SinPitch, CosPitch);
	FMath::SinCosDegrees(Yaw * 0.5, SinYaw, CosYaw);
	FMath::SinCosDegrees(Roll * 0.5, SinRoll, CosRoll);

	// Positive pitch and roll turn about -Y and -X.
	const FQuat AboutX(-SinRoll, 0.0, 0.0, CosRoll);
	const FQuat AboutY(0.0, -SinPitch, 0.0, CosPitch);
	const FQuat AboutZ(0.0, 0.0, SinYaw, CosYaw);
	return AboutZ * AboutY * AboutX;
}

double FRotator::NormalizeAxis(double Degrees)
{
	const double Remainder = std::fmod(Degrees, 360.0);
	if (Remainder > 180.0)
	{
		return Remainder - 360.0;
	}
	if (Remainder <= -180.0)
	{
		return Remainder + 360.0;
	}
	return Remainder;
}

bool FRotator::Equals(const FRotator& R, double Tolerance) const
{
	return FMath::IsNearlyZero(NormalizeAxis(Pitch - R.Pitch), Tolerance) &&
		   FMath::IsNearlyZero(NormalizeAxis(Yaw - R.Yaw), Tolerance) &&
		   FMath::IsNearlyZero(NormalizeAxis(Roll - R.Roll), Tolerance);
}

bool FRotator::ContainsNaN() const
{
	return !std::isfinite(Pitch) || !std::isfinite(Yaw) || !std::isfinite(Roll);
}

FString FRotator::ToString() const
{
	return FString::Printf(TEXT("P=%3.3f Y=%3.3f R=%3.3f"), Pitch, Yaw, Roll);
}
