// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/SceneDiff.h"
#include "SceneIO/ScenePicture.h"

/// Compares where cameras, lights, colliders and triggers are in two scenes, and adds what it finds to `Result`, whose
/// size grows by the places of the first scene's (in the host's units). A part is the same in both scenes where the
/// same node carries it, or in one of them a child of that node. Fails when the mesh of a collider can be decoded in
/// one scene only.
FSceneStatus ComparePartPlaces(FScenePicture& A, FScenePicture& B, FSceneDeviation& Result);
