// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfPatch.h"
#include "SceneIO/GltfSave.h"
#include "SceneIO/Scene.h"

/// Works out what has changed in a scene's world and assets since it was read, as a patch of its document: node
/// transforms and names, meshes changed where they stand, new meshes for the copies that nodes show, nodes for the
/// actors that were made, and nodes that were attached elsewhere or deleted. Nodes keep their indices: new ones come
/// last, and a deleted one is left behind blank. Copies of assets that no node shows are not written. Numbers that
/// differ from the file's by rounding only stay the file's. Fails when geometry that is needed cannot be decoded, and
/// where the file cannot say what the world has become; see CheckSceneTree.
TSceneResult<FGltfPatch> MakeScenePatch(const FScene& Scene);

/// Saves the scene's changes to `Path`; see SaveGltf.
TSceneResult<FSaveReport> SaveScene(const FScene& Scene, const std::string& Path);
