// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfStorage.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>

/// The decompressed bytes of a buffer view.
struct FMeshoptBytes
{
	std::unique_ptr<std::byte[]> Data;
	std::size_t Size = 0;
};

/// Decompresses a buffer view whose record passed the document's checks. On failure the result is empty and `OutWhy`
/// ends a sentence about the buffer view. Values are not checked: indices may be out of range.
std::optional<FMeshoptBytes> DecodeMeshopt(
	const FGltfMeshopt& Packed, std::span<const std::byte> Compressed, std::string& OutWhy);
