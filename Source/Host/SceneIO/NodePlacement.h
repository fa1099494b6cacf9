// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfModel.h"

#include <array>
#include <optional>

struct FTransform;

/// A node's local transform in the numbers of the file.
struct FNodePlacement
{
	std::array<double, 3> Translation = {0, 0, 0};
	std::array<double, 4> Rotation = {0, 0, 0, 1};
	std::array<double, 3> Scale = {1, 1, 1};
};

/// The numbers that put a node at `Relative` (in the host), or nothing where it is there but for rounding. `Own` is the
/// node as the file has it and `Loaded` what was made of it: numbers that differ from the file's by rounding only stay
/// the file's.
std::optional<FNodePlacement> ChangedPlacement(
	const FGltfNode& Own, const FTransform& Loaded, const FTransform& Relative);
