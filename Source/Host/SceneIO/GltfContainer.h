// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/MappedFile.h"
#include "SceneIO/SceneResult.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

/// A chunk of a .glb after the first, in file order.
struct FGltfChunk
{
	std::uint32_t Type = 0;
	std::uint64_t Offset = 0; ///< of its data, from the start of the file
	std::uint64_t Length = 0;
};

/// A scene file taken apart into its JSON text and the rest.
///
/// A .glb is known by its first four bytes, not by its name. Read as viewers read it: chunks of any length, unknown
/// chunks, bytes after the declared length. Refused: a first chunk that is not JSON, two binary chunks, lengths beyond
/// the end.
struct FGltfContainer
{
	static constexpr std::uint32_t JsonChunk = 0x4E4F534A;
	static constexpr std::uint32_t BinaryChunk = 0x004E4942;
	static constexpr std::uint32_t Magic = 0x46546C67;
	static constexpr std::uint64_t HeaderBytes = 12;
	static constexpr std::uint64_t ChunkHeaderBytes = 8;

	std::shared_ptr<const FMappedFile> File;
	bool bBinary = false;
	std::string JsonText; ///< a copy, so that the file may change under it; empty once the document has taken it
	std::uint64_t JsonChunkLength = 0;
	std::vector<FGltfChunk> Chunks;
	std::int32_t BinaryChunkIndex = -1; ///< in Chunks; -1 where there is none
	std::uint64_t TailOffset = 0;       ///< where the declared length ends; bytes from there on belong to nobody

	/// The data of a chunk, as mapped.
	std::span<const std::byte> ChunkBytes(std::int32_t Index) const;
};

TSceneResult<FGltfContainer> OpenGltfContainer(std::shared_ptr<const FMappedFile> File);
