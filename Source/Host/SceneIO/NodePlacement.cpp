// SPDX-License-Identifier: MIT
#include "SceneIO/NodePlacement.h"

#include "Core/Transform.h"
#include "SceneIO/SceneSpace.h"

#include <algorithm>
#include <cmath>

namespace
{
/// Differences below this, as a share of the value or of one, are rounding.
constexpr double RoundingTolerance = 1e-12;

template <std::size_t N>
bool IsRounding(const std::array<double, N>& A, const std::array<double, N>& B)
{
	double Size = 1.0;
	double Difference = 0.0;
	for (std::size_t Index = 0; Index < N; ++Index)
	{
		Size = std::max(Size, std::abs(B[Index]));
		Difference = std::max(Difference, std::abs(A[Index] - B[Index]));
	}
	return Difference <= RoundingTolerance * Size;
}

/// `Value`, or whichever of the others it equals but for rounding.
template <std::size_t N>
std::array<double, N> Settled(
	const std::array<double, N>& Value, const std::array<double, N>& Own, const std::array<double, N>& Plain)
{
	return IsRounding(Value, Own) ? Own : IsRounding(Value, Plain) ? Plain : Value;
}

/// Without negative zeros, which the change of axes makes and nobody wrote.
template <std::size_t N>
std::array<double, N> Plainly(std::array<double, N> Value)
{
	for (double& Component : Value)
	{
		Component += 0.0;
	}
	return Value;
}

/// The quaternion or its negation, whichever is nearer to the one that was read, or else to the identity.
std::array<double, 4> SameSide(std::array<double, 4> Rotation, const std::array<double, 4>& Own)
{
	double Dot = 0.0;
	for (std::size_t Index = 0; Index < 4; ++Index)
	{
		Dot += Rotation[Index] * Own[Index];
	}
	const bool bNegate = std::abs(Rotation[3]) > 1.0 - RoundingTolerance ? Rotation[3] < 0.0 : Dot < 0.0;
	for (double& Component : Rotation)
	{
		Component = bNegate ? -Component : Component;
	}
	return Rotation;
}

/// The file's own numbers where the value is theirs: reading has normalised quaternions. A node given by a matrix has
/// no numbers of its own to keep.
template <std::size_t N>
std::array<double, N> OwnNumbers(const std::array<double, N>& Value, const std::array<double, N>& Own, bool bHasMatrix)
{
	return !bHasMatrix && IsRounding(Value, Own) ? Own : Plainly(Value);
}
} // namespace

std::optional<FNodePlacement> ChangedPlacement(
	const FGltfNode& Own, const FTransform& Loaded, const FTransform& Relative)
{
	if (Relative == Loaded)
	{
		return std::nullopt;
	}
	// What was taken from a matrix stands for the numbers of its node.
	const std::array<double, 3> OldTranslation = SceneSpace::PointToFile(Loaded.GetTranslation());
	const std::array<double, 4> OldRotation = SceneSpace::RotationToFile(Loaded.GetRotation());
	const std::array<double, 3> OldScale = SceneSpace::ScaleToFile(Loaded.GetScale3D());
	const FNodePlacement Plain;
	const auto Translation =
		Settled(SceneSpace::PointToFile(Relative.GetTranslation()), OldTranslation, Plain.Translation);
	const auto Rotation =
		Settled(SameSide(SceneSpace::RotationToFile(Relative.GetRotation()), OldRotation), OldRotation, Plain.Rotation);
	const auto Scale = Settled(SceneSpace::ScaleToFile(Relative.GetScale3D()), OldScale, Plain.Scale);
	if (IsRounding(Translation, OldTranslation) && IsRounding(Rotation, OldRotation) && IsRounding(Scale, OldScale))
	{
		return std::nullopt;
	}
	return FNodePlacement{OwnNumbers(Translation, Own.Translation, Own.bHasMatrix),
		OwnNumbers(Rotation, Own.Rotation, Own.bHasMatrix), OwnNumbers(Scale, Own.Scale, Own.bHasMatrix)};
}
