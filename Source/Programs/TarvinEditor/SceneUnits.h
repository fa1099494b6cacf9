// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Transform.h"

#include <array>

/// A transform as users of scene files read it: metres, degrees, the file's axes (Y is up).
struct FSceneTransform
{
	std::array<double, 3> Location{};
	/// Turns about X, Y and Z; Y is applied last, Z first.
	std::array<double, 3> Rotation{};
	std::array<double, 3> Scale{1.0, 1.0, 1.0};
};

/// The same transform in the file's terms.
FSceneTransform ToSceneTransform(const FTransform& Transform);

/// `Transform` with one number of it replaced, everything else as it is, bit for bit. The group is 0 for the location,
/// 1 for the rotation, 2 for the scale. Replacing an angle keeps the other two angles, as far as they are defined.
FTransform WithSceneNumber(const FTransform& Transform, int Group, int Axis, double Number);
