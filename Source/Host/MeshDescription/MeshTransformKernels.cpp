// SPDX-License-Identifier: MIT
#include "MeshDescription/MeshTransformKernels.h"

#include <cmath>
#include <utility>

// This source is compiled once for each instruction set.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "MeshDescription/MeshTransformKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#ifndef TARVIN_MESH_TRANSFORM_SCALAR
#define TARVIN_MESH_TRANSFORM_SCALAR
// One element at a time. The vector code below does the same operations in the same order, so both give the same bits;
// it comes back here for the ends of arrays and for directions outside the range in which it is accurate.
namespace MeshTransformScalar
{
using MeshTransformKernels::FLinear;

/// Squared lengths within which a reciprocal square root may start in single precision.
constexpr double LeastPlainSquare = 0x1p-100;
constexpr double GreatestPlainSquare = 0x1p100;

inline float* Floats(FVector3f* Vectors)
{
	return reinterpret_cast<float*>(Vectors);
}

inline const float* Floats(const FVector3f* Vectors)
{
	return reinterpret_cast<const float*>(Vectors);
}

inline void TransformPosition(FVector3f& P, const FMatrix& Matrix)
{
	P = FVector3f(Matrix.TransformPosition(FVector(P)));
}

/// 1 / sqrt(S). Within the plain range: a single-precision start and one Newton step, which leaves 2^-44, far below
/// what single precision shows, at a fraction of the cost of the double-precision root and quotient.
inline double ReciprocalRoot(double S)
{
	if (S >= LeastPlainSquare && S <= GreatestPlainSquare)
	{
		const double Start = static_cast<double>(1.0f / std::sqrt(static_cast<float>(S)));
		return Start * (1.5 - (0.5 * S) * (Start * Start));
	}
	return 1.0 / std::sqrt(S);
}

inline void TransformDirection(FVector3f& Direction, const FLinear& L)
{
	const double X = static_cast<double>(Direction.X);
	const double Y = static_cast<double>(Direction.Y);
	const double Z = static_cast<double>(Direction.Z);
	const double OutX = X * L.M[0][0] + Y * L.M[1][0] + Z * L.M[2][0];
	const double OutY = X * L.M[0][1] + Y * L.M[1][1] + Z * L.M[2][1];
	const double OutZ = X * L.M[0][2] + Y * L.M[1][2] + Z * L.M[2][2];
	const double Square = OutX * OutX + OutY * OutY + OutZ * OutZ;
	if (Square > 0.0 && Square <= std::numeric_limits<double>::max())
	{
		const double Scale = ReciprocalRoot(Square);
		Direction = FVector3f(FVector(OutX * Scale, OutY * Scale, OutZ * Scale));
	}
}
}
#endif

HWY_BEFORE_NAMESPACE();
namespace MeshTransformVector
{
namespace HWY_NAMESPACE
{
using namespace MeshTransformScalar;

// The emulated targets clamp when they narrow a number, where the processor's rounding gives infinity.
#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

void TransformPositions(FVector3f* Positions, std::size_t Num, const FMatrix& Matrix)
{
	for (std::size_t Index = 0; Index < Num; ++Index)
	{
		TransformPosition(Positions[Index], Matrix);
	}
}

void TransformDirections(FVector3f* Directions, std::size_t Num, const FLinear& Linear)
{
	for (std::size_t Index = 0; Index < Num; ++Index)
	{
		TransformDirection(Directions[Index], Linear);
	}
}

void GrowBounds(const FVector3f* Points, std::size_t Num, FVector3f& Min, FVector3f& Max)
{
	for (std::size_t Index = 0; Index < Num; ++Index)
	{
		MeshTransformKernels::GrowBoundsByPoint(Points[Index], Min, Max);
	}
}

#else

namespace hn = hwy::HWY_NAMESPACE;

using FDoubles = hn::ScalableTag<double>;
using FFloats = hn::Rebind<float, FDoubles>; // as many lanes, half the width
using FVecD = hn::Vec<FDoubles>;
using FVecF = hn::Vec<FFloats>;

/// (X * A + Y * B) + Z * C, each product rounded: fused ones would give other bits where the processor has them.
HWY_INLINE FVecD Combine3(FVecD X, FVecD A, FVecD Y, FVecD B, FVecD Z, FVecD C)
{
	return hn::Add(hn::Add(hn::Mul(X, A), hn::Mul(Y, B)), hn::Mul(Z, C));
}

void TransformPositions(FVector3f* Positions, std::size_t Num, const FMatrix& Matrix)
{
	const FDoubles D;
	const FFloats F;
	const std::size_t Lanes = hn::Lanes(D);
	const auto& M = Matrix.M;
	const FVecD M00 = hn::Set(D, M[0][0]), M01 = hn::Set(D, M[0][1]), M02 = hn::Set(D, M[0][2]);
	const FVecD M10 = hn::Set(D, M[1][0]), M11 = hn::Set(D, M[1][1]), M12 = hn::Set(D, M[1][2]);
	const FVecD M20 = hn::Set(D, M[2][0]), M21 = hn::Set(D, M[2][1]), M22 = hn::Set(D, M[2][2]);
	const FVecD M30 = hn::Set(D, M[3][0]), M31 = hn::Set(D, M[3][1]), M32 = hn::Set(D, M[3][2]);
	std::size_t Index = 0;
	for (; Index + Lanes <= Num; Index += Lanes)
	{
		float* Place = Floats(Positions + Index);
		FVecF XF, YF, ZF;
		hn::LoadInterleaved3(F, Place, XF, YF, ZF);
		const FVecD X = hn::PromoteTo(D, XF), Y = hn::PromoteTo(D, YF), Z = hn::PromoteTo(D, ZF);
		const FVecD OutX = hn::Add(Combine3(X, M00, Y, M10, Z, M20), M30);
		const FVecD OutY = hn::Add(Combine3(X, M01, Y, M11, Z, M21), M31);
		const FVecD OutZ = hn::Add(Combine3(X, M02, Y, M12, Z, M22), M32);
		hn::StoreInterleaved3(hn::DemoteTo(F, OutX), hn::DemoteTo(F, OutY), hn::DemoteTo(F, OutZ), F, Place);
	}
	for (; Index < Num; ++Index)
	{
		TransformPosition(Positions[Index], Matrix);
	}
}

void TransformDirections(FVector3f* Directions, std::size_t Num, const FLinear& Linear)
{
	const FDoubles D;
	const FFloats F;
	const std::size_t Lanes = hn::Lanes(D);
	const auto& L = Linear.M;
	const FVecD L00 = hn::Set(D, L[0][0]), L01 = hn::Set(D, L[0][1]), L02 = hn::Set(D, L[0][2]);
	const FVecD L10 = hn::Set(D, L[1][0]), L11 = hn::Set(D, L[1][1]), L12 = hn::Set(D, L[1][2]);
	const FVecD L20 = hn::Set(D, L[2][0]), L21 = hn::Set(D, L[2][1]), L22 = hn::Set(D, L[2][2]);
	const FVecD Least = hn::Set(D, LeastPlainSquare), Greatest = hn::Set(D, GreatestPlainSquare);
	const FVecD Half = hn::Set(D, 0.5), OneAndHalf = hn::Set(D, 1.5);
	const FVecF One = hn::Set(F, 1.0f);
	std::size_t Index = 0;
	for (; Index + Lanes <= Num; Index += Lanes)
	{
		float* Place = Floats(Directions + Index);
		FVecF XF, YF, ZF;
		hn::LoadInterleaved3(F, Place, XF, YF, ZF);
		const FVecD X = hn::PromoteTo(D, XF), Y = hn::PromoteTo(D, YF), Z = hn::PromoteTo(D, ZF);
		const FVecD OutX = Combine3(X, L00, Y, L10, Z, L20);
		const FVecD OutY = Combine3(X, L01, Y, L11, Z, L21);
		const FVecD OutZ = Combine3(X, L02, Y, L12, Z, L22);
		const FVecD Square = Combine3(OutX, OutX, OutY, OutY, OutZ, OutZ);
		if (HWY_UNLIKELY(!hn::AllTrue(D, hn::And(hn::Ge(Square, Least), hn::Le(Square, Greatest)))))
		{
			for (std::size_t Lane = 0; Lane < Lanes; ++Lane)
			{
				TransformDirection(Directions[Index + Lane], Linear);
			}
			continue;
		}
		const FVecD Start = hn::PromoteTo(D, hn::Div(One, hn::Sqrt(hn::DemoteTo(F, Square))));
		const FVecD Scale = hn::Mul(Start, hn::Sub(OneAndHalf, hn::Mul(hn::Mul(Half, Square), hn::Mul(Start, Start))));
		hn::StoreInterleaved3(hn::DemoteTo(F, hn::Mul(OutX, Scale)), hn::DemoteTo(F, hn::Mul(OutY, Scale)),
			hn::DemoteTo(F, hn::Mul(OutZ, Scale)), F, Place);
	}
	for (; Index < Num; ++Index)
	{
		TransformDirection(Directions[Index], Linear);
	}
}

using FWideFloats = hn::ScalableTag<float>;
using FVecWide = hn::Vec<FWideFloats>;

void GrowBounds(const FVector3f* Points, std::size_t Num, FVector3f& Min, FVector3f& Max)
{
	const FWideFloats F;
	const std::size_t Lanes = hn::Lanes(F);
	FVecWide MinX = hn::Set(F, Min.X), MinY = hn::Set(F, Min.Y), MinZ = hn::Set(F, Min.Z);
	FVecWide MaxX = hn::Set(F, Max.X), MaxY = hn::Set(F, Max.Y), MaxZ = hn::Set(F, Max.Z);
	// Comparing, not Min and Max: what those do with NaN differs from target to target.
	const auto Smaller = [](FVecWide A, FVecWide B) HWY_ATTR { return hn::IfThenElse(hn::Lt(A, B), A, B); };
	const auto Greater = [](FVecWide A, FVecWide B) HWY_ATTR { return hn::IfThenElse(hn::Gt(A, B), A, B); };
	std::size_t Index = 0;
	for (; Index + Lanes <= Num; Index += Lanes)
	{
		FVecWide X, Y, Z;
		hn::LoadInterleaved3(F, Floats(Points + Index), X, Y, Z);
		MinX = Smaller(X, MinX);
		MinY = Smaller(Y, MinY);
		MinZ = Smaller(Z, MinZ);
		MaxX = Greater(X, MaxX);
		MaxY = Greater(Y, MaxY);
		MaxZ = Greater(Z, MaxZ);
	}
	Min = FVector3f(hn::GetLane(hn::MinOfLanes(F, MinX)), hn::GetLane(hn::MinOfLanes(F, MinY)),
		hn::GetLane(hn::MinOfLanes(F, MinZ)));
	Max = FVector3f(hn::GetLane(hn::MaxOfLanes(F, MaxX)), hn::GetLane(hn::MaxOfLanes(F, MaxY)),
		hn::GetLane(hn::MaxOfLanes(F, MaxZ)));
	for (; Index < Num; ++Index)
	{
		MeshTransformKernels::GrowBoundsByPoint(Points[Index], Min, Max);
	}
}

#endif
}
}
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace MeshTransformVector
{
HWY_EXPORT(TransformPositions);
HWY_EXPORT(TransformDirections);
HWY_EXPORT(GrowBounds);
}

void MeshTransformKernels::TransformPositions(FVector3f* Positions, std::size_t Num, const FMatrix& Matrix)
{
	using namespace MeshTransformVector;
	HWY_DYNAMIC_DISPATCH(TransformPositions)(Positions, Num, Matrix);
}

void MeshTransformKernels::TransformDirections(FVector3f* Directions, std::size_t Num, const FLinear& Linear)
{
	using namespace MeshTransformVector;
	HWY_DYNAMIC_DISPATCH(TransformDirections)(Directions, Num, Linear);
}

void MeshTransformKernels::GrowBounds(const FVector3f* Points, std::size_t Num, FVector3f& Min, FVector3f& Max)
{
	using namespace MeshTransformVector;
	HWY_DYNAMIC_DISPATCH(GrowBounds)(Points, Num, Min, Max);
}

std::size_t MeshTransformKernels::CountNonFinite(const FVector3f* Points, std::size_t Num)
{
	std::size_t Count = 0;
	for (std::size_t Index = 0; Index < Num; ++Index)
	{
		// Zero times a number is zero, whatever the number; times anything else it is no number.
		const FVector3f& P = Points[Index];
		Count += P.X * 0.f + P.Y * 0.f + P.Z * 0.f == 0.f ? 0u : 1u;
	}
	return Count;
}

void MeshTransformKernels::NegateSigns(float* Signs, std::size_t Num)
{
	for (std::size_t Index = 0; Index < Num; ++Index)
	{
		Signs[Index] = -Signs[Index];
	}
}

void MeshTransformKernels::ReverseWinding(FTriangleCorners* Triangles, std::size_t Num)
{
	for (std::size_t Index = 0; Index < Num; ++Index)
	{
		std::swap(Triangles[Index][1], Triangles[Index][2]);
	}
}
#endif
