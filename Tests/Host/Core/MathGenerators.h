// SPDX-License-Identifier: MIT
#pragma once

// Before Core's headers: it has functions named check, which is a macro there.
#include <rapidcheck.h>

#include "Core/Transform.h"

#include <iomanip>
#include <ostream>
#include <tuple>
#include <utility>

inline void showValue(const FVector& V, std::ostream& Out)
{
	Out << std::setprecision(17) << "(" << V.X << ", " << V.Y << ", " << V.Z << ")";
}

inline void showValue(const FQuat& Q, std::ostream& Out)
{
	Out << std::setprecision(17) << "(" << Q.X << ", " << Q.Y << ", " << Q.Z << ", " << Q.W << ")";
}

inline void showValue(const FTransform& Transform, std::ostream& Out)
{
	Out << "rotation ";
	showValue(Transform.GetRotation(), Out);
	Out << ", translation ";
	showValue(Transform.GetTranslation(), Out);
	Out << ", scale ";
	showValue(Transform.GetScale3D(), Out);
}

/// Generators of numbers, rotations and transforms for property tests. Every one covers the special cases (axes,
/// quarter and half turns, mirrors, zero) as well as the general one.
namespace MathGenerators
{
/// A double of either sign between `Low` and `High` in magnitude, spread evenly over the orders of magnitude.
inline rc::Gen<double> Magnitude(double Low, double High)
{
	return rc::gen::map(rc::gen::pair(rc::gen::inRange(0, 1000001), rc::gen::arbitrary<bool>()),
		[Low, High](const std::pair<int, bool>& Choice)
		{
			const double Value = Low * std::pow(High / Low, Choice.first / 1.0e6);
			return Choice.second ? -Value : Value;
		});
}

inline rc::Gen<FVector> Vector(rc::Gen<double> Component)
{
	return rc::gen::map(rc::gen::tuple(Component, Component, Component), [](const std::tuple<double, double, double>& C)
		{ return FVector(std::get<0>(C), std::get<1>(C), std::get<2>(C)); });
}

inline rc::Gen<FVector> Point()
{
	return Vector(rc::gen::oneOf(Magnitude(1.e-2, 1.e4), rc::gen::just(0.0)));
}

/// One of the 24 turns that take axes to axes.
inline rc::Gen<FQuat> AxisTurn()
{
	return rc::gen::map(rc::gen::tuple(rc::gen::inRange(0, 4), rc::gen::inRange(0, 4), rc::gen::inRange(0, 4)),
		[](const std::tuple<int, int, int>& Turns)
		{
			const FRotator Rotator(90.0 * std::get<0>(Turns), 90.0 * std::get<1>(Turns), 90.0 * std::get<2>(Turns));
			return Rotator.Quaternion();
		});
}

inline rc::Gen<FQuat> GeneralTurn()
{
	return rc::gen::map(rc::gen::tuple(Vector(Magnitude(1.e-3, 1.0)), Magnitude(1.e-3, 1.0)),
		[](const std::tuple<FVector, double>& Parts)
		{
			const FVector Axis = std::get<0>(Parts);
			return FQuat(Axis.X, Axis.Y, Axis.Z, std::get<1>(Parts)).GetNormalized();
		});
}

/// A turn about one coordinate axis.
inline rc::Gen<FQuat> PlaneTurn()
{
	return rc::gen::map(rc::gen::pair(rc::gen::inRange(0, 3), rc::gen::inRange(-3600, 3601)),
		[](const std::pair<int, int>& Choice)
		{
			FVector Axis;
			Axis[Choice.first] = 1.0;
			return FQuat(Axis, FMath::DegreesToRadians(Choice.second * 0.1));
		});
}

inline rc::Gen<FQuat> Rotation()
{
	return rc::gen::oneOf(AxisTurn(), GeneralTurn(), PlaneTurn());
}

/// Scales of any signs: uniform, even on two axes, general.
inline rc::Gen<FVector> NonZeroScale(double Low = 0.05, double High = 20.0)
{
	return rc::gen::map(rc::gen::tuple(Vector(Magnitude(Low, High)), rc::gen::inRange(0, 5)),
		[](const std::tuple<FVector, int>& Choice)
		{
			FVector Scale = std::get<0>(Choice);
			const int Kind = std::get<1>(Choice);
			if (Kind == 0)
			{
				Scale = FVector(
					std::copysign(Scale.X, Scale.X), std::copysign(Scale.X, Scale.Y), std::copysign(Scale.X, Scale.Z));
			}
			else if (Kind == 1)
			{
				Scale.Y = std::copysign(Scale.X, Scale.Y);
			}
			return Scale;
		});
}

/// As NonZeroScale, but one scale in three has zeros on some axes.
inline rc::Gen<FVector> AnyScale()
{
	return rc::gen::map(rc::gen::tuple(NonZeroScale(), rc::gen::inRange(0, 24)),
		[](const std::tuple<FVector, int>& Choice)
		{
			FVector Scale = std::get<0>(Choice);
			const int Zeros = std::get<1>(Choice);
			for (int32 Axis = 0; Zeros < 8 && Axis < 3; ++Axis)
			{
				Scale[Axis] = (Zeros >> Axis & 1) != 0 ? 0.0 : Scale[Axis];
			}
			return Scale;
		});
}

inline rc::Gen<FTransform> Transform(rc::Gen<FVector> Scale)
{
	return rc::gen::map(rc::gen::tuple(Rotation(), Point(), Scale), [](const std::tuple<FQuat, FVector, FVector>& Parts)
		{ return FTransform(std::get<0>(Parts), std::get<1>(Parts), std::get<2>(Parts)); });
}
}
