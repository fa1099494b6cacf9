// SPDX-License-Identifier: MIT
#pragma once

#include "Core/MathUtility.h"
#include "Core/String.h"

/// Two single-precision coordinates, for texture coordinates. Trivial: a default-initialised one is indeterminate.
struct FVector2f
{
	float X;
	float Y;

	FVector2f() = default;
	constexpr FVector2f(float InX, float InY)
		: X(InX)
		, Y(InY)
	{
	}

	constexpr bool operator==(const FVector2f&) const = default;
};

/// Four single-precision components, for vertex colours (red, green, blue, alpha). Trivial like FVector2f.
struct FVector4f
{
	float X;
	float Y;
	float Z;
	float W;

	FVector4f() = default;
	constexpr FVector4f(float InX, float InY, float InZ, float InW)
		: X(InX)
		, Y(InY)
		, Z(InZ)
		, W(InW)
	{
	}

	constexpr bool operator==(const FVector4f&) const = default;
};

struct FVector3f;

/// A point, direction or scale in double precision. Zero by default.
struct FVector
{
	double X = 0.0;
	double Y = 0.0;
	double Z = 0.0;

	static const FVector ZeroVector;
	static const FVector OneVector;
	static const FVector ForwardVector; ///< +X
	static const FVector RightVector;   ///< +Y
	static const FVector UpVector;      ///< +Z

	constexpr FVector() = default;
	constexpr FVector(double InX, double InY, double InZ)
		: X(InX)
		, Y(InY)
		, Z(InZ)
	{
	}
	constexpr explicit FVector(double All)
		: X(All)
		, Y(All)
		, Z(All)
	{
	}
	constexpr explicit FVector(const FVector3f& Single);

	constexpr FVector operator+(const FVector& V) const { return {X + V.X, Y + V.Y, Z + V.Z}; }
	constexpr FVector operator-(const FVector& V) const { return {X - V.X, Y - V.Y, Z - V.Z}; }
	constexpr FVector operator*(const FVector& V) const { return {X * V.X, Y * V.Y, Z * V.Z}; }
	constexpr FVector operator/(const FVector& V) const { return {X / V.X, Y / V.Y, Z / V.Z}; }
	constexpr FVector operator*(double S) const { return {X * S, Y * S, Z * S}; }
	constexpr FVector operator/(double S) const { return {X / S, Y / S, Z / S}; }
	constexpr FVector operator-() const { return {-X, -Y, -Z}; }
	constexpr FVector& operator+=(const FVector& V) { return *this = *this + V; }
	constexpr FVector& operator-=(const FVector& V) { return *this = *this - V; }
	constexpr FVector& operator*=(const FVector& V) { return *this = *this * V; }
	constexpr FVector& operator*=(double S) { return *this = *this * S; }
	constexpr FVector& operator/=(double S) { return *this = *this / S; }

	/// Dot product.
	constexpr double operator|(const FVector& V) const { return X * V.X + Y * V.Y + Z * V.Z; }
	/// Cross product.
	constexpr FVector operator^(const FVector& V) const
	{
		return {Y * V.Z - Z * V.Y, Z * V.X - X * V.Z, X * V.Y - Y * V.X};
	}

	constexpr bool operator==(const FVector&) const = default;

	/// Component 0, 1 or 2; any other index fails a check.
	double& operator[](int32 Index);
	double operator[](int32 Index) const;

	static constexpr double DotProduct(const FVector& A, const FVector& B) { return A | B; }
	static constexpr FVector CrossProduct(const FVector& A, const FVector& B) { return A ^ B; }
	static double Dist(const FVector& A, const FVector& B) { return (A - B).Size(); }

	constexpr double SizeSquared() const { return *this | *this; }
	double Size() const { return std::sqrt(SizeSquared()); }

	/// The unit vector of this direction, or the zero vector when the squared length is `Tolerance` or less.
	FVector GetSafeNormal(double Tolerance = SMALL_NUMBER) const;

	constexpr FVector GetAbs() const { return {FMath::Abs(X), FMath::Abs(Y), FMath::Abs(Z)}; }
	constexpr double GetMin() const { return FMath::Min(FMath::Min(X, Y), Z); }
	constexpr double GetMax() const { return FMath::Max(FMath::Max(X, Y), Z); }
	constexpr double GetAbsMax() const { return GetAbs().GetMax(); }
	constexpr double GetAbsMin() const { return GetAbs().GetMin(); }

	static constexpr FVector Min(const FVector& A, const FVector& B)
	{
		return {FMath::Min(A.X, B.X), FMath::Min(A.Y, B.Y), FMath::Min(A.Z, B.Z)};
	}
	static constexpr FVector Max(const FVector& A, const FVector& B)
	{
		return {FMath::Max(A.X, B.X), FMath::Max(A.Y, B.Y), FMath::Max(A.Z, B.Z)};
	}

	/// True when every component differs by at most `Tolerance`.
	constexpr bool Equals(const FVector& V, double Tolerance = KINDA_SMALL_NUMBER) const
	{
		return FMath::IsNearlyEqual(X, V.X, Tolerance) && FMath::IsNearlyEqual(Y, V.Y, Tolerance) &&
			   FMath::IsNearlyEqual(Z, V.Z, Tolerance);
	}
	constexpr bool IsZero() const { return X == 0.0 && Y == 0.0 && Z == 0.0; }
	constexpr bool IsNearlyZero(double Tolerance = KINDA_SMALL_NUMBER) const { return Equals(ZeroVector, Tolerance); }

	/// True when a component is not a finite number, infinities included.
	bool ContainsNaN() const;

	/// "X=1.000 Y=2.000 Z=3.000"
	FString ToString() const;
};

inline constexpr FVector FVector::ZeroVector{0.0, 0.0, 0.0};
inline constexpr FVector FVector::OneVector{1.0, 1.0, 1.0};
inline constexpr FVector FVector::ForwardVector{1.0, 0.0, 0.0};
inline constexpr FVector FVector::RightVector{0.0, 1.0, 0.0};
inline constexpr FVector FVector::UpVector{0.0, 0.0, 1.0};

constexpr FVector operator*(double S, const FVector& V)
{
	return V * S;
}

/// Three single-precision coordinates, as mesh data stores them. Trivial: a default-initialised one is indeterminate,
/// so that large arrays are filled without being cleared first; `FVector3f{}` is zero.
struct FVector3f
{
	float X;
	float Y;
	float Z;

	FVector3f() = default;
	constexpr FVector3f(float InX, float InY, float InZ)
		: X(InX)
		, Y(InY)
		, Z(InZ)
	{
	}
	/// Rounds each coordinate to the nearest single-precision value.
	constexpr explicit FVector3f(const FVector& V)
		: X(static_cast<float>(V.X))
		, Y(static_cast<float>(V.Y))
		, Z(static_cast<float>(V.Z))
	{
	}

	constexpr FVector3f operator+(const FVector3f& V) const { return {X + V.X, Y + V.Y, Z + V.Z}; }
	constexpr FVector3f operator-(const FVector3f& V) const { return {X - V.X, Y - V.Y, Z - V.Z}; }
	constexpr FVector3f operator*(float S) const { return {X * S, Y * S, Z * S}; }
	constexpr FVector3f operator-() const { return {-X, -Y, -Z}; }
	constexpr bool operator==(const FVector3f&) const = default;

	constexpr bool Equals(const FVector3f& V, float Tolerance = 1.e-4f) const
	{
		return FMath::Abs(X - V.X) <= Tolerance && FMath::Abs(Y - V.Y) <= Tolerance && FMath::Abs(Z - V.Z) <= Tolerance;
	}
	/// True when a component is not a finite number, infinities included.
	bool ContainsNaN() const { return !std::isfinite(X) || !std::isfinite(Y) || !std::isfinite(Z); }
};

constexpr FVector::FVector(const FVector3f& Single)
	: X(static_cast<double>(Single.X))
	, Y(static_cast<double>(Single.Y))
	, Z(static_cast<double>(Single.Z))
{
}
