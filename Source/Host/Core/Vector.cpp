// SPDX-License-Identifier: MIT
#include "Core/Vector.h"

double& FVector::operator[](int32 Index)
{
	check(Index >= 0 && Index < 3);
	return Index == 0 ? X : (Index == 1 ? Y : Z);
}

double FVector::operator[](int32 Index) const
{
	check(Index >= 0 && Index < 3);
	return Index == 0 ? X : (Index == 1 ? Y : Z);
}

FVector FVector::GetSafeNormal(double Tolerance) const
{
	const double LengthSquared = SizeSquared();
	if (!(LengthSquared > Tolerance))
	{
		return ZeroVector;
	}
	return *this / std::sqrt(LengthSquared);
}

bool FVector::ContainsNaN() const
{
	return !std::isfinite(X) || !std::isfinite(Y) || !std::isfinite(Z);
}

FString FVector::ToString() const
{
	return FString::Printf(TEXT("X=%3.3f Y=%3.3f Z=%3.3f"), X, Y, Z);
}
