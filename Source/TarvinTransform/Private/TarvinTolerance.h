// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Core.h"

/// The comparisons that several steps share. All of them look at absolute differences of single components.
namespace TarvinTolerance
{
/// Rotations, scales and angles closer than this are equal. Single precision, widened: where it was chosen, it was a
/// float.
inline constexpr double Equal = double(1.e-4f);

/// Scale components of absolute values closer than this make a scale uniform.
inline constexpr double Uniform = 0.001;

/// A scale component of absolute value up to this counts as zero.
inline constexpr double Zero = 1.e-8;

/// The same rotation: a quaternion and its negation are one.
bool IsSameRotation(const FQuat& A, const FQuat& B);

/// The same scale, signs included.
bool IsSameScale(const FVector& A, const FVector& B);

/// The same factor along all axes, mirrored or not.
bool IsUniformScale(const FVector& Scale);
} // namespace TarvinTolerance
