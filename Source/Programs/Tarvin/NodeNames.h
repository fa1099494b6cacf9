// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfDocument.h"

#include <optional>
#include <string>
#include <vector>

/// The node's name; "node 7" for one that has none.
std::string NodeName(const FGltfDocument& Document, FGltfIndex Node);

/// The node's name with those of its parents before it, "Yard/Shed/Door".
std::string NodePath(const FGltfDocument& Document, FGltfIndex Node);

/// Which nodes one of the patterns matches: its name, or, where the pattern has a "/", its path. `*`, `?` and `[…]` as
/// in a shell. Without patterns, all. Fails with the first pattern that matches nothing.
struct FNodeChoice
{
	std::vector<bool> bChosen;
	std::optional<std::string> Unmatched;
};
FNodeChoice ChooseNodes(const FGltfDocument& Document, const std::vector<std::string>& Patterns);
