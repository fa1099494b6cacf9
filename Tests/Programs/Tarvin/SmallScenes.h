// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// How a scene and its buffer are kept together.
enum class ESceneContainer
{
	Binary,   ///< .glb
	External, ///< .gltf and scene.bin
	Embedded, ///< .gltf with a data URI
};

/// A scene in its parts, so that each can be damaged by itself.
struct FSmallScene
{
	ESceneContainer Container = ESceneContainer::Binary;
	std::string Json;
	std::string Buffer; ///< empty where it stands in the text

	const char* FileName() const { return Container == ESceneContainer::Binary ? "scene.glb" : "scene.gltf"; }

	/// The bytes of the scene file, with lengths that fit its parts.
	std::string SceneBytes() const;
};

/// Scenes of some kilobytes that together have everything that is read from scenes.
namespace SmallScenes
{
/// Lists, strips, fans, sparse and interleaved accessors, morph targets, levels, instances, lights, collision, sockets,
/// colliders, an animation and a skin; nodes with something to bake, one of them given by a matrix, one mirrored.
FSmallScene Everything(ESceneContainer Container);

/// Quantised attributes that are meshopt data.
FSmallScene Meshopt();

/// A Draco primitive.
FSmallScene Draco();
}
