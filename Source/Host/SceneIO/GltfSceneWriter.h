// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/AtomicFile.h"
#include "SceneIO/BufferWriter.h"
#include "SceneIO/GltfDocument.h"

#include <optional>
#include <string>

/// What a scene file is to consist of.
struct FSceneContent
{
	std::optional<std::string> Text;    ///< the new JSON text; empty: the old one, byte for byte
	const FBufferPlan* Chunk = nullptr; ///< what the binary chunk is to become; null: as it was
	bool bNewChunk = false;             ///< there was no binary chunk
};

/// The size of the scene file; fails where a binary scene would be larger than its 32-bit length can say.
TSceneResult<std::uint64_t> SceneFileLength(const FGltfDocument& Document, const FSceneContent& Content);

/// Sends the scene file. Without changes it is the old one, byte for byte; chunks that are not understood and bytes
/// behind the declared end are kept.
FSceneStatus WriteSceneFile(const FGltfDocument& Document, const FSceneContent& Content, const FByteSink& Sink);
