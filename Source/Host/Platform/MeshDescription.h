// SPDX-License-Identifier: MIT
#pragma once

// Mesh descriptions and what transforms them.
// IWYU pragma: begin_exports
#include "MeshDescription/MeshDescription.h"
#include "MeshDescription/StaticMeshOperations.h"
// IWYU pragma: end_exports
