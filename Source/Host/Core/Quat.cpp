// SPDX-License-Identifier: MIT
#include "Core/Quat.h"

#include "Core/Rotator.h"

FQuat::FQuat(const FVector& Axis, double AngleRad)
{
	const double HalfSin = std::sin(AngleRad * 0.5);
	X = Axis.X * HalfSin;
	Y = Axis.Y * HalfSin;
	Z = Axis.Z * HalfSin;
	W = std::cos(AngleRad * 0.5);
}

FQuat FQuat::FromAxes(const FVector& XAxis, const FVector& YAxis, const FVector& ZAxis)
{
	// Four times the square of each component is known from the diagonal; dividing by the largest keeps every digit.
	const double FourX = 1.0 + XAxis.X - YAxis.Y - ZAxis.Z;
	const double FourY = 1.0 - XAxis.X + YAxis.Y - ZAxis.Z;
	const double FourZ = 1.0 - XAxis.X - YAxis.Y + ZAxis.Z;
	const double FourW = 1.0 + XAxis.X + YAxis.Y + ZAxis.Z;

	FQuat Result;
	if (FourW >= FourX && FourW >= FourY && FourW >= FourZ)
	{
		Result = FQuat(YAxis.Z - ZAxis.Y, ZAxis.X - XAxis.Z, XAxis.Y - YAxis.X, FourW);
	}
	else if (FourX >= FourY && FourX >= FourZ)
	{
		Result = FQuat(FourX, XAxis.Y + YAxis.X, ZAxis.X + XAxis.Z, YAxis.Z - ZAxis.Y);
	}
	else if (FourY >= FourZ)
	{
		Result = FQuat(XAxis.Y + YAxis.X, FourY, YAxis.Z + ZAxis.Y, ZAxis.X - XAxis.Z);
	}
	else
	{
		Result = FQuat(ZAxis.X + XAxis.Z, YAxis.Z + ZAxis.Y, FourZ, XAxis.Y - YAxis.X);
	}
	return Result.GetNormalized();
}

FQuat FQuat::GetNormalized() const
{
	const double LengthSquared = SizeSquared();
	if (!(LengthSquared > SMALL_NUMBER) || !std::isfinite(LengthSquared))
	{
		return Identity;
	}
	const double Length = std::sqrt(LengthSquared);
	return {X / Length, Y / Length, Z / Length, W / Length};
}

double FQuat::AngularDistance(const FQuat& Q) const
{
	// The arc cosine of W has no digits left near zero; the arc tangent keeps them.
	const FQuat Difference = Inverse() * Q;
	return 2.0 * std::atan2(Difference.GetVector().Size(), std::abs(Difference.W));
}

FRotator FQuat::Rotator() const
{
	// In terms of the half angles (p, y, r) of FRotator::Quaternion():
	//   Z + X = (cos p + sin p) sin(y - r)     W - Y = (cos p + sin p) cos(y - r)
	//   Z - X = (cos p - sin p) sin(y + r)     W + Y = (cos p - sin p) cos(y + r)
	// Each pair is a vector whose length gives the pitch and whose direction gives the difference or the sum of yaw and
	// roll, without an arc sine, which would lose half the digits near the poles.
	const double DifferenceLength = std::hypot(Z + X, W - Y);
	const double SumLength = std::hypot(Z - X, W + Y);
	double HalfDifference = std::atan2(Z + X, W - Y);
	double HalfSum = std::atan2(Z - X, W + Y);

	// At a pole only one of the two is known. The other is rounding noise: take the one that makes roll zero.
	constexpr double PoleTolerance = 1.e-14;
	if (SumLength <= PoleTolerance * DifferenceLength)
	{
		HalfSum = HalfDifference;
	}
	else if (DifferenceLength <= PoleTolerance * SumLength)
	{
		HalfDifference = HalfSum;
	}

	const double Pitch = 2.0 * std::atan2(DifferenceLength, SumLength) - 0.5 * PI;
	return FRotator(FMath::RadiansToDegrees(Pitch),
		FRotator::NormalizeAxis(FMath::RadiansToDegrees(HalfSum + HalfDifference)),
		FRotator::NormalizeAxis(FMath::RadiansToDegrees(HalfSum - HalfDifference)));
}

bool FQuat::ContainsNaN() const
{
	return !std::isfinite(X) || !std::isfinite(Y) || !std::isfinite(Z) || !std::isfinite(W);
}

FString FQuat::ToString() const
{
	return FString::Printf(TEXT("X=%3.3f Y=%3.3f Z=%3.3f W=%3.3f"), X, Y, Z, W);
}
