// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/SceneTree.h"

/// Whether the tree that a scene's world has become can stand in the file. Fails, with a sentence that names the node,
/// where a deleted node is needed by something that is still there (a skin, a body, levels of detail, an animation of
/// one of its properties), where the joints of a skin have lost their common root, and where nodes nest too deeply to
/// be read again.
FSceneStatus CheckSceneTree(const FScene& Scene, const FSceneTree& Tree);
