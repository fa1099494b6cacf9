// SPDX-License-Identifier: MIT
#pragma once

// Worlds, actors, components and static meshes.
// IWYU pragma: begin_exports
#include "Engine/Actor.h"
#include "Engine/BodySetup.h"
#include "Engine/InstancedStaticMeshComponent.h"
#include "Engine/SceneComponent.h"
#include "Engine/StaticMesh.h"
#include "Engine/StaticMeshComponent.h"
#include "Engine/StaticMeshSocket.h"
#include "Engine/World.h"
// IWYU pragma: end_exports
