// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Types.h"

#include <cmath>

/// The tolerance at which rotations, scales and positions count as equal: the single-precision value of 1e-4, widened.
inline constexpr double KINDA_SMALL_NUMBER = static_cast<double>(1.e-4f);

/// A scale component of this absolute value or less counts as zero.
inline constexpr double SMALL_NUMBER = 1.e-8;

inline constexpr double PI = 3.141592653589793238462643383279502884;

/// Scalar mathematics. Angles are radians unless a name says degrees.
struct FMath
{
	template <typename T>
	static constexpr T Abs(T Value)
	{
		return Value < T(0) ? -Value : Value;
	}

	template <typename T>
	static constexpr T Min(T A, T B)
	{
		return B < A ? B : A;
	}

	template <typename T>
	static constexpr T Max(T A, T B)
	{
		return A < B ? B : A;
	}

	template <typename T>
	static constexpr T Clamp(T Value, T Low, T High)
	{
		return Value < Low ? Low : (High < Value ? High : Value);
	}

	template <typename T>
	static constexpr T Square(T Value)
	{
		return Value * Value;
	}

	static constexpr double Lerp(double A, double B, double Alpha) { return A + Alpha * (B - A); }

	/// 1 or -1; zero of either sign counts as positive.
	static constexpr double SignOrPositive(double Value) { return Value < 0.0 ? -1.0 : 1.0; }

	static double Sqrt(double Value) { return std::sqrt(Value); }

	static bool IsFinite(double Value) { return std::isfinite(Value); }

	/// True when the two differ by at most `Tolerance`; never true for NaN.
	static constexpr bool IsNearlyEqual(double A, double B, double Tolerance = SMALL_NUMBER)
	{
		return Abs(A - B) <= Tolerance;
	}

	static constexpr bool IsNearlyZero(double Value, double Tolerance = SMALL_NUMBER)
	{
		return Abs(Value) <= Tolerance;
	}

	static constexpr double DegreesToRadians(double Degrees) { return Degrees * (PI / 180.0); }

	static constexpr double RadiansToDegrees(double Radians) { return Radians * (180.0 / PI); }

	/// Sine and cosine of an angle in degrees; exact at every multiple of 90.
	static void SinCosDegrees(double Degrees, double& OutSin, double& OutCos);
};
