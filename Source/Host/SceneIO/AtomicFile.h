// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/SceneResult.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

/// A file that is written whole before it can be seen: under no name, or a hidden one beside its place, then flushed to
/// the disk, then given its name in one step. Until then, and after any failure, what stood under the name stays as it
/// was.
class FAtomicFile
{
public:
	FAtomicFile() = default;
	~FAtomicFile();
	FAtomicFile(const FAtomicFile&) = delete;
	FAtomicFile& operator=(const FAtomicFile&) = delete;

	/// Begins a file that is to be called `InName` in `InFolder`. Removes what an interrupted save of the same name
	/// left there. `ExpectedBytes` are reserved, so that a full disk is noticed before anything is written.
	FSceneStatus Create(const std::string& InFolder, const std::string& InName, std::uint64_t ExpectedBytes);

	FSceneStatus Write(std::span<const std::byte> Bytes);

	/// Flushes the file and puts it in the place of what has its name, keeping that one's permissions.
	FSceneStatus Replace();

	/// Flushes the file and gives it its name. `bOutExists` says whether another file had it, which is then untouched;
	/// the file is discarded.
	FSceneStatus PutNew(bool& bOutExists);

private:
	FSceneStatus Fail(const std::string& Why);
	FSceneStatus Flush();
	FSceneStatus FlushFolder();
	bool GiveHiddenName();
	void RemoveStale() const;
	void Discard();
	std::string PathOf(const std::string& InName) const;

	std::string Folder;
	std::string Name;
	std::string HiddenName; ///< empty while the file has no name at all
	int File = -1;
	std::uint64_t Written = 0;
	std::uint64_t Started = 0; ///< bytes whose way to the disk has begun
};
