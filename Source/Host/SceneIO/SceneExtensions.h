// SPDX-License-Identifier: MIT
#pragma once

#include "Engine/ActorComponent.h"
#include "Engine/StaticMesh.h"
#include "SceneIO/GltfDocument.h"

#include <string>

/// What the format has no word for and the project's own extensions say: `TARVIN_static_mesh` on meshes (sockets,
/// collision, HiRes source), `TARVIN_component` on nodes (how the component came to be). Their schema stands in the
/// documentation of the scene format.
namespace SceneExtensions
{
inline constexpr const char* StaticMesh = "TARVIN_static_mesh";
inline constexpr const char* Component = "TARVIN_component";

/// The mesh whose geometry is the HiRes source of `Mesh`; NoIndex where none is named. Fails for what is no mesh, or
/// the mesh itself.
TSceneResult<FGltfIndex> ReadHiRes(const FGltfDocument& Document, FGltfIndex Mesh);

/// Gives the asset the sockets and the collision that the mesh's extension describes.
FSceneStatus ReadStaticMesh(const FGltfDocument& Document, FGltfIndex Mesh, UStaticMesh& Asset);

/// How the node's component came to be; native where nothing is said.
TSceneResult<EComponentCreationMethod> ReadCreationMethod(const FGltfDocument& Document, FGltfIndex Node);

/// Whether the mesh carries the extension.
bool HasStaticMesh(const FGltfDocument& Document, FGltfIndex Mesh);

/// The new text of the mesh's "extensions" object in which sockets and collision are those of the asset, and the HiRes
/// source is the mesh `NewHiRes` (NoIndex: as it was). Members that are not understood stay. Empty when nothing differs
/// from what the file says.
std::string WriteStaticMesh(
	const FGltfDocument& Document, FGltfIndex Mesh, const UStaticMesh& Asset, FGltfIndex NewHiRes);
} // namespace SceneExtensions
