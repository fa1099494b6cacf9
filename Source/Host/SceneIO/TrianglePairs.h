// SPDX-License-Identifier: MIT
#pragma once

#include "MeshDescription/MeshDescription.h"

#include <cstddef>
#include <span>
#include <vector>

/// For each triangle of `A` the triangle of `B` with the same corners, whatever their order; `A` and `B` are equally
/// long. A fan or strip that is turned over may list its triangles the other way round. Empty where the triangles of
/// the same index belong together, which is the usual case; triangles without a partner get one of those that are left.
std::vector<std::size_t> PairTriangles(std::span<const FTriangleCorners> A, std::span<const FTriangleCorners> B);
