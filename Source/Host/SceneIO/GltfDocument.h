// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/DracoProcess.h"
#include "SceneIO/GltfContainer.h"
#include "SceneIO/GltfModel.h"
#include "SceneIO/JsonText.h"
#include "SceneIO/SceneFolder.h"
#include "SceneIO/SceneResult.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

/// A glTF 2.0 file as it was read: its text, its records, and its bytes, which stay in the mapped files until they are
/// asked for. It never changes; edits are kept in an FGltfPatch. All functions may be called from several threads.
///
/// Everything that the records say is checked: indices, ranges, hierarchy, required extensions, and that unfolding all
/// meshes stays within SceneLimits. What geometry says (indices of vertices) is checked where it is decoded.
class FGltfDocument : public std::enable_shared_from_this<FGltfDocument>
{
public:
	/// Reads the scene at `Path` and maps its external buffers. A sentence says what was wrong, and where.
	static TSceneResult<std::shared_ptr<const FGltfDocument>> Load(const std::string& Path);

	/// As Load, for a scene file that is already mapped and whose other files lie below `Place`.Folder.
	static TSceneResult<std::shared_ptr<const FGltfDocument>> Load(
		std::shared_ptr<const FMappedFile> File, const FScenePlace& Place);

	~FGltfDocument();
	FGltfDocument(const FGltfDocument&) = delete;
	FGltfDocument& operator=(const FGltfDocument&) = delete;

	const FScenePlace& Place() const { return ScenePlace; }
	bool IsBinary() const { return Container.bBinary; }
	const FGltfContainer& File() const { return Container; }
	const FJsonText& Json() const { return Text; }
	const FGltfModel& Model() const { return Records; }

	const FGltfNode& Node(FGltfIndex Index) const { return Records.Nodes[static_cast<std::size_t>(Index)]; }
	const FGltfMesh& Mesh(FGltfIndex Index) const { return Records.Meshes[static_cast<std::size_t>(Index)]; }
	const FGltfAccessor& Accessor(FGltfIndex Index) const { return Records.Accessors[static_cast<std::size_t>(Index)]; }
	const FGltfBufferView& View(FGltfIndex Index) const { return Records.BufferViews[static_cast<std::size_t>(Index)]; }
	const FGltfBuffer& Buffer(FGltfIndex Index) const { return Records.Buffers[static_cast<std::size_t>(Index)]; }

	/// The ByteLength bytes of a buffer. They live as long as the document. Fails for a buffer of kind None.
	/// Embedded data is decoded on first use and kept.
	TSceneResult<std::span<const std::byte>> BufferBytes(FGltfIndex Index) const;

	/// The bytes of a buffer view, decompressed (on first use, and kept) where it is compressed.
	TSceneResult<std::span<const std::byte>> ViewBytes(FGltfIndex Index) const;

	/// Runs the Draco decoder of this document; see FDracoProcess::Decode.
	std::optional<FDracoOutput> DecodeDraco(std::span<const std::byte> Compressed,
		std::span<const DracoProtocol::FAttribute> Attributes, std::uint32_t ExpectedVertices,
		std::string& OutWhy) const;

	/// The mapped file of a buffer of kind File; null for any other.
	std::shared_ptr<const FMappedFile> BufferFile(FGltfIndex Index) const;

	/// Fails when the scene file or an external buffer changed on disk since it was mapped, so that what was read from
	/// it cannot be relied on.
	FSceneStatus CheckIntact() const;

	/// "Cannot read "<file>": <JSON pointer of At> <Why>."
	FSceneError Error(FJsonIndex At, const std::string& Why) const;

private:
	FGltfDocument() = default;

	FSceneStatus Read();
	FSceneStatus MapFiles();
	FSceneStatus CheckDecodedSize() const;
	std::uint64_t FileBytes() const;

	FScenePlace ScenePlace;
	FGltfContainer Container;
	FJsonText Text;
	FGltfModel Records;
	std::vector<std::shared_ptr<const FMappedFile>> BufferFiles; ///< one for each buffer, null for other kinds

	mutable std::mutex CacheMutex;
	mutable std::vector<std::shared_ptr<const std::vector<std::byte>>> EmbeddedBytes;
	struct FPlainView;
	mutable std::vector<std::shared_ptr<const FPlainView>> PlainViews;
	mutable std::mutex DracoMutex;
	mutable FDracoProcess Draco;
};
