// SPDX-License-Identifier: MIT
#include "SceneIO/MappedFile.h"

#include "SceneIO/MappedFileGuard.h"
#include "SceneIO/PrintableText.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
FSceneError CannotRead(const std::string& Path, const std::string& Why)
{
	return FSceneError{"Cannot read \"" + PrintableText(Path) + "\": " + Why + "."};
}

FFileState FromStat(const struct stat& Stat)
{
	FFileState State;
	State.Device = static_cast<std::uint64_t>(Stat.st_dev);
	State.Inode = static_cast<std::uint64_t>(Stat.st_ino);
	State.Size = static_cast<std::uint64_t>(Stat.st_size);
	State.ModifiedSeconds = static_cast<std::int64_t>(Stat.st_mtim.tv_sec);
	State.ModifiedNanoseconds = static_cast<std::int64_t>(Stat.st_mtim.tv_nsec);
	return State;
}
}

std::optional<FFileState> ReadFileState(const std::string& Path)
{
	struct stat Stat = {};
	return stat(Path.c_str(), &Stat) == 0 ? std::optional<FFileState>(FromStat(Stat)) : std::nullopt;
}

TSceneResult<std::shared_ptr<const FMappedFile>> FMappedFile::Map(int Descriptor, const std::string& Path)
{
	struct stat Stat = {};
	if (fstat(Descriptor, &Stat) != 0)
	{
		return CannotRead(Path, std::strerror(errno));
	}
	if (!S_ISREG(Stat.st_mode))
	{
		return CannotRead(Path, S_ISDIR(Stat.st_mode) ? "it is a folder" : "it is not a regular file");
	}
	std::shared_ptr<FMappedFile> File(new FMappedFile());
	File->State = FromStat(Stat);
	File->FilePath = Path;
	const std::size_t Size = static_cast<std::size_t>(File->State.Size);
	if (Size > 0)
	{
		void* const Address = mmap(nullptr, Size, PROT_READ, MAP_SHARED, Descriptor, 0);
		if (Address == MAP_FAILED)
		{
			File->State.Size = 0;
			return CannotRead(Path, std::strerror(errno));
		}
		File->Data = static_cast<const std::byte*>(Address);
		File->GuardSlot = MappedFileGuard::Register(Address, Size);
	}
	return std::shared_ptr<const FMappedFile>(std::move(File));
}

TSceneResult<std::shared_ptr<const FMappedFile>> FMappedFile::Open(const std::string& Path)
{
	// Without O_NONBLOCK a pipe in place of the file would hold the program up.
	const int Descriptor = open(Path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
	if (Descriptor < 0)
	{
		return CannotRead(Path, errno == ENOENT ? "there is no such file" : std::strerror(errno));
	}
	TSceneResult<std::shared_ptr<const FMappedFile>> File = Map(Descriptor, Path);
	close(Descriptor);
	return File;
}

FMappedFile::~FMappedFile()
{
	if (Data != nullptr)
	{
		MappedFileGuard::Unregister(GuardSlot);
		munmap(const_cast<std::byte*>(Data), static_cast<std::size_t>(State.Size));
	}
}

bool FMappedFile::IsIntact() const
{
	if (MappedFileGuard::WasHit(GuardSlot))
	{
		return false;
	}
	const std::optional<FFileState> Now = ReadFileState(FilePath);
	return !Now || !Now->IsSameFile(State) || *Now == State;
}
