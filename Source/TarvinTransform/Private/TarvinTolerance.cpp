// SPDX-License-Identifier: MIT
#include "TarvinTolerance.h"

#include <cmath>

bool TarvinTolerance::IsSameRotation(const FQuat& A, const FQuat& B)
{
	const bool bSame = std::abs(A.X - B.X) <= Equal && std::abs(A.Y - B.Y) <= Equal && std::abs(A.Z - B.Z) <= Equal &&
					   std::abs(A.W - B.W) <= Equal;
	const bool bNegated = std::abs(A.X + B.X) <= Equal && std::abs(A.Y + B.Y) <= Equal &&
						  std::abs(A.Z + B.Z) <= Equal && std::abs(A.W + B.W) <= Equal;
	return bSame || bNegated;
}

bool TarvinTolerance::IsSameScale(const FVector& A, const FVector& B)
{
	return std::abs(A.X - B.X) <= Equal && std::abs(A.Y - B.Y) <= Equal && std::abs(A.Z - B.Z) <= Equal;
}

bool TarvinTolerance::IsUniformScale(const FVector& Scale)
{
	const double X = std::abs(Scale.X);
	return std::abs(X - std::abs(Scale.Y)) <= Uniform && std::abs(X - std::abs(Scale.Z)) <= Uniform;
}
