// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

/// What a scene file may ask for at most. A file that asks for more is refused with a sentence that says so.
namespace SceneLimits
{
constexpr std::uint64_t KiB = 1024;
constexpr std::uint64_t MiB = 1024 * KiB;
constexpr std::uint64_t GiB = 1024 * MiB;

/// The JSON text. Each of its values costs 16 bytes besides.
constexpr std::uint64_t MaxJsonBytes = 512 * MiB;

/// Levels of arrays and objects.
constexpr std::size_t MaxJsonDepth = 1024;

/// Levels of nodes below a root. Code above this layer may walk the tree by recursion.
constexpr std::size_t MaxNodeDepth = 2048;

/// External buffer files that are mapped at a time; well below the number of mappings that a process may have.
constexpr std::size_t MaxExternalFiles = 16384;

/// Geometry that a scene may unfold to, above a fixed share of its own size: the sum over its meshes of what their
/// accessors hold, decompressed. A compressed or repeating file of some kilobytes cannot ask for more than the floor.
/// A bake holds a mesh before and after, and its triangles, and takes up to ten times as much.
constexpr std::uint64_t DecodedBytesFloor = 256 * MiB;
constexpr std::uint64_t DecodedBytesPerFileByte = 64;
constexpr std::uint64_t DecodedBytesCeiling = 64 * GiB;

/// Copies of vertices that a bake may make for nodes that share meshes, each counted as so many bytes, above a share of
/// the file's size. A bake takes two to four times as much.
constexpr std::uint64_t CopiedBytesFloor = 2 * GiB;
constexpr std::uint64_t CopiedBytesPerVertex = 32;

/// One run of the Draco decoder: address space, processor time and wall time of its own process.
constexpr std::uint64_t DracoAddressSpace = 2 * GiB;
constexpr unsigned DracoCpuSeconds = 30;
constexpr unsigned DracoWallSeconds = 120;

/// The cap for a scene whose files have `FileBytes` bytes together.
constexpr std::uint64_t DecodedBytes(std::uint64_t FileBytes)
{
	const std::uint64_t Share = FileBytes > DecodedBytesCeiling / DecodedBytesPerFileByte
									? DecodedBytesCeiling
									: FileBytes * DecodedBytesPerFileByte;
	return Share > DecodedBytesCeiling - DecodedBytesFloor ? DecodedBytesCeiling : DecodedBytesFloor + Share;
}
/// The cap of copies for a scene file of `FileBytes` bytes.
constexpr std::uint64_t CopiedBytes(std::uint64_t FileBytes)
{
	return DecodedBytes(FileBytes) - DecodedBytesFloor + CopiedBytesFloor;
}
}
