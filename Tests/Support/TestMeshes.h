// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Box.h"
#include "Engine/StaticMesh.h"

/// A closed box with a vertex at each corner and, for each of its six faces, two triangles and four vertex instances
/// with normals, tangents, binormal signs, texture coordinates and colours of their own. Its triangles face outwards.
FMeshDescription MakeBoxDescription(const FVector& Min, const FVector& Max);

/// A mesh whose level 0 is that box: an asset of the package `PackageName`, named as its last part says, or a transient
/// mesh where none is given. Its package is clean.
UStaticMesh* MakeBoxMesh(const FVector& Min, const FVector& Max, const FString& PackageName = FString());

/// The same with a box that is uneven in every respect: from (-1, -2, -3) to (2, 5, 11).
UStaticMesh* MakeUnevenMesh(const FString& PackageName = FString());

/// A mesh of `NumVertices` vertices and no triangles, quickly made: for measuring what large meshes cost.
UStaticMesh* MakeLargeMesh(int32 NumVertices);

/// All vertex positions of a level in the mesh's local space; empty where it has none.
TArray<FVector> LocalPositions(const UStaticMesh* Mesh, int32 Lod = 0);
