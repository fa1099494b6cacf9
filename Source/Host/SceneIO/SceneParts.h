// SPDX-License-Identifier: MIT
#pragma once

#include "Engine/SceneComponent.h"
#include "SceneIO/GltfDocument.h"
#include "SceneIO/JsonEdit.h"

#include <string>

class AActor;

/// Where the things are that a node with a mesh carries beside it: a camera, a light, a collider, a trigger.
///
/// A component of the node's actor, below its root. It goes wherever the actor is moved to, and is held in its place in
/// the world when the mesh is baked, as anything attached is. A save that finds it away from the root makes a child
/// node of it.
class UScenePartComponent : public USceneComponent
{
	DECLARE_CLASS(UScenePartComponent, USceneComponent)
};

/// What nodes carry that has a direction or a size, and can be moved to a child node as it is.
namespace SceneParts
{
/// True for a node with a mesh that carries such a thing. A collider or trigger whose geometry is the node itself
/// follows its mesh, a trigger that is made of other nodes has no place, and joints and motions are not moved.
bool HasParts(const FGltfDocument& Document, FGltfIndex Node);

/// The actor's part component; null for none.
UScenePartComponent* Find(const AActor* Actor);

/// The name of what the node carries, for sentences: "camera", "light", "collider", "trigger"; the first of them.
const char* NameOfPart(const FGltfDocument& Document, FGltfIndex Node);

/// Takes the parts out of the node's object in `Edit`, and returns the object of a child node that carries them at
/// `Relative` (in the host) of the node. `NodeName` is what the node is called now, for the child's name.
std::string MoveToChild(FJsonEdit& Edit, const FGltfDocument& Document, FGltfIndex Node, const FTransform& Relative,
	const std::string& NodeName);
} // namespace SceneParts
