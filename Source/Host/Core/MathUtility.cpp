// SPDX-License-Identifier: MIT
#include "Core/MathUtility.h"

void FMath::SinCosDegrees(double Degrees, double& OutSin, double& OutCos)
{
	// The remainder is exact, so a right angle stays one: pi / 2 is no double, 90 is.
	int Quadrant = 0;
	const double Radians = DegreesToRadians(std::remquo(Degrees, 90.0, &Quadrant));
	const double Sin = std::sin(Radians);
	const double Cos = std::cos(Radians);
	switch (static_cast<unsigned>(Quadrant) & 3u)
	{
	case 0:
		OutSin = Sin;
		OutCos = Cos;
		break;
	case 1:
		OutSin = Cos;
		OutCos = -Sin;
		break;
	case 2:
		OutSin = -Sin;
		OutCos = -Cos;
		break;
	default:
		OutSin = -Cos;
		OutCos = Sin;
		break;
	}
}
