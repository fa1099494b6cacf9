// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfPrimitiveData.h"

/// Fills `Out` with the indices and attributes that a Draco primitive holds compressed; the rest is left to the caller.
/// Checked after decompression: counts against the accessors, indices against the vertices.
FSceneStatus ReadDracoPrimitive(
	const std::shared_ptr<const FGltfDocument>& Document, const FGltfPrimitive& Record, FPrimitiveData& Out);
