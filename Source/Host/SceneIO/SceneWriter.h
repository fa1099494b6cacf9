// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfPatch.h"
#include "SceneIO/GltfSave.h"
#include "SceneIO/Scene.h"

/// Works out what has changed in a scene's world and assets since it was read, as a patch of its document: node
/// transforms, meshes changed where they stand, and new meshes for the copies that nodes show. Copies that no node
/// shows are not written. Numbers that differ from the file's by rounding only stay the file's. Fails when geometry
/// that is needed cannot be decoded.
TSceneResult<FGltfPatch> MakeScenePatch(const FScene& Scene);

/// Saves the scene's changes to `Path`; see SaveGltf.
TSceneResult<FSaveReport> SaveScene(const FScene& Scene, const std::string& Path);
