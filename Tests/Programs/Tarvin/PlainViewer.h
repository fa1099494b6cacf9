// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfDocument.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <set>
#include <vector>

/// What a viewer shows of one primitive of a node, in the world and in the file's axes.
struct FShownPrimitive
{
	std::vector<std::array<double, 3>> Positions;
	std::vector<std::array<double, 3>> Normals;  ///< of unit length; empty where there are none
	std::vector<std::array<double, 4>> Tangents; ///< of unit length, with the side of the binormal
	/// The corners of every triangle, counter-clockwise on the side that shows, smallest first; sorted.
	std::multiset<std::array<std::uint32_t, 3>> Triangles;
};

/// Shows a node as the format says, plainly and by itself: nothing of the host's maths and geometry is used, so that
/// what the host gets wrong twice is seen all the same.
std::vector<FShownPrimitive> ShowNode(const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Node);

/// The matrix that takes the node's space to the world, column by column.
std::array<double, 16> ShownPlace(const FGltfDocument& Document, FGltfIndex Node);

/// Same vertices, normals and tangents, each component within `Tolerance`, and the same triangles.
testing::AssertionResult IsShownAlike(
	const std::vector<FShownPrimitive>& A, const std::vector<FShownPrimitive>& B, double Tolerance = 1e-5);
