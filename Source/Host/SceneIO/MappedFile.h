// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/SceneResult.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

/// Which file stood at a path, and in which state.
struct FFileState
{
	std::uint64_t Device = 0;
	std::uint64_t Inode = 0;
	std::uint64_t Size = 0;
	std::int64_t ModifiedSeconds = 0;
	std::int64_t ModifiedNanoseconds = 0;

	bool operator==(const FFileState&) const = default;
	bool IsSameFile(const FFileState& Other) const { return Device == Other.Device && Inode == Other.Inode; }
};

/// A file's bytes, mapped for reading.
///
/// Another process may shorten the file while it is mapped. Reading past its new end then gives zeros, not a signal
/// that ends the program, and IsIntact says so afterwards: whoever has read must ask before relying on what was read.
class FMappedFile
{
public:
	/// Maps the regular file that `Descriptor` is open for (and leaves the descriptor to the caller).
	/// `Path` is for error sentences and for IsIntact.
	static TSceneResult<std::shared_ptr<const FMappedFile>> Map(int Descriptor, const std::string& Path);

	/// Opens and maps the regular file at `Path`; symbolic links are followed.
	static TSceneResult<std::shared_ptr<const FMappedFile>> Open(const std::string& Path);

	~FMappedFile();
	FMappedFile(const FMappedFile&) = delete;
	FMappedFile& operator=(const FMappedFile&) = delete;

	std::span<const std::byte> Bytes() const { return {Data, static_cast<std::size_t>(State.Size)}; }
	const std::string& Path() const { return FilePath; }
	const FFileState& StateWhenMapped() const { return State; }

	/// False when a read met bytes that were gone, or the same file now has another size or time of change.
	/// A file that was replaced or removed is intact: its mapping keeps the old bytes.
	bool IsIntact() const;

private:
	FMappedFile() = default;

	const std::byte* Data = nullptr;
	FFileState State;
	std::string FilePath;
	int GuardSlot = -1;
};

/// The state of the file at `Path`, links followed; empty where there is none.
std::optional<FFileState> ReadFileState(const std::string& Path);
