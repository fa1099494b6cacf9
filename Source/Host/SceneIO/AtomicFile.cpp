// SPDX-License-Identifier: MIT
#include "SceneIO/AtomicFile.h"

#include "SceneIO/PrintableText.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <optional>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr std::string_view HiddenMark = ".tarvin-save-";

/// Names of hidden files: ".<name>.tarvin-save-<random>". The name is cut so that the whole stays within what folders
/// allow.
std::string HiddenPrefix(const std::string& Name)
{
	constexpr std::size_t MaxNameBytes = 200;
	return "." + Name.substr(0, MaxNameBytes) + std::string(HiddenMark);
}

std::string RandomSuffix()
{
	std::random_device Random;
	char Text[24];
	std::snprintf(Text, sizeof(Text), "%08x%08x", Random(), Random());
	return Text;
}

/// The permissions of the file that is to be replaced; empty where there is none.
std::optional<mode_t> ModeOf(const std::string& Path)
{
	struct stat Stat = {};
	return stat(Path.c_str(), &Stat) == 0 ? std::optional<mode_t>(Stat.st_mode & 07777) : std::nullopt;
}
}

FAtomicFile::~FAtomicFile()
{
	Discard();
}

std::string FAtomicFile::PathOf(const std::string& InName) const
{
	return (Folder == "/" ? Folder : Folder + "/") + InName;
}

FSceneStatus FAtomicFile::Fail(const std::string& Why)
{
	Discard();
	return FSceneError{"Cannot write \"" + PrintableText(PathOf(Name)) + "\": " + Why + "."};
}

void FAtomicFile::Discard()
{
	if (!HiddenName.empty())
	{
		unlink(PathOf(HiddenName).c_str());
		HiddenName.clear();
	}
	if (File >= 0)
	{
		close(File);
		File = -1;
	}
}

/// A save that is still going on holds a lock on its file; one that was killed does not any more.
void FAtomicFile::RemoveStale() const
{
	DIR* const Listing = opendir(Folder.c_str());
	if (Listing == nullptr)
	{
		return;
	}
	const std::string Prefix = HiddenPrefix(Name);
	while (const dirent* const Entry = readdir(Listing))
	{
		if (!std::string_view(Entry->d_name).starts_with(Prefix))
		{
			continue;
		}
		const std::string Path = PathOf(Entry->d_name);
		const int Stale = open(Path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
		if (Stale >= 0)
		{
			if (flock(Stale, LOCK_EX | LOCK_NB) == 0)
			{
				unlink(Path.c_str());
			}
			close(Stale);
		}
	}
	closedir(Listing);
}

FSceneStatus FAtomicFile::Create(const std::string& InFolder, const std::string& InName, std::uint64_t ExpectedBytes)
{
	Folder = InFolder;
	Name = InName;
	RemoveStale();
	// Nobody is to read a part of what only some may read.
	const mode_t Mode = ModeOf(PathOf(Name)) ? 0600 : 0666;
	// A file without a name vanishes by itself when the program is killed; not every file system has them.
	File = open(Folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, Mode);
	if (File < 0)
	{
		HiddenName = HiddenPrefix(Name) + RandomSuffix();
		File = open(PathOf(HiddenName).c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC | O_NOFOLLOW, Mode);
		if (File < 0)
		{
			const int Error = errno;
			HiddenName.clear();
			return Fail(std::strerror(Error));
		}
	}
	flock(File, LOCK_EX | LOCK_NB);
	if (ExpectedBytes > 0 && fallocate(File, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(ExpectedBytes)) != 0 &&
		(errno == ENOSPC || errno == EFBIG || errno == EDQUOT))
	{
		return Fail(std::strerror(errno));
	}
	return {};
}

FSceneStatus FAtomicFile::Write(std::span<const std::byte> Bytes)
{
	while (!Bytes.empty())
	{
		const ssize_t Done = write(File, Bytes.data(), Bytes.size());
		if (Done < 0 && errno == EINTR)
		{
			continue;
		}
		if (Done <= 0)
		{
			// EFAULT: the bytes come from a mapped file that has become shorter.
			return Fail(
				Done < 0 && errno == EFAULT ? "a file that it takes bytes from changed on disk" : std::strerror(errno));
		}
		Written += static_cast<std::uint64_t>(Done);
		Bytes = Bytes.subspan(static_cast<std::size_t>(Done));
	}
	// Sends what has come together on its way to the disk, so that the flush at the end has little left to wait for.
	constexpr std::uint64_t BytesAtATime = 8u << 20;
	if (Written - Started >= BytesAtATime)
	{
		sync_file_range(
			File, static_cast<off_t>(Started), static_cast<off_t>(Written - Started), SYNC_FILE_RANGE_WRITE);
		Started = Written;
	}
	return {};
}

FSceneStatus FAtomicFile::Flush()
{
	const std::optional<mode_t> Mode = ModeOf(PathOf(Name));
	if ((Mode && fchmod(File, *Mode) != 0) || fsync(File) != 0)
	{
		return Fail(std::strerror(errno));
	}
	return {};
}

bool FAtomicFile::GiveHiddenName()
{
	if (!HiddenName.empty())
	{
		return true;
	}
	HiddenName = HiddenPrefix(Name) + RandomSuffix();
	const std::string Self = "/proc/self/fd/" + std::to_string(File);
	return linkat(AT_FDCWD, Self.c_str(), AT_FDCWD, PathOf(HiddenName).c_str(), AT_SYMLINK_FOLLOW) == 0;
}

FSceneStatus FAtomicFile::FlushFolder()
{
	const int Directory = open(Folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
	// Some file systems cannot flush a folder; the file is in its place either way.
	if (Directory >= 0)
	{
		fsync(Directory);
		close(Directory);
	}
	close(File);
	File = -1;
	return {};
}

FSceneStatus FAtomicFile::Replace()
{
	if (FSceneStatus Status = Flush(); !Status)
	{
		return Status;
	}
	if (!GiveHiddenName() || rename(PathOf(HiddenName).c_str(), PathOf(Name).c_str()) != 0)
	{
		return Fail(std::strerror(errno));
	}
	HiddenName.clear();
	return FlushFolder();
}

FSceneStatus FAtomicFile::PutNew(bool& bOutExists)
{
	bOutExists = false;
	if (FSceneStatus Status = Flush(); !Status)
	{
		return Status;
	}
	// Linking, unlike renaming, never takes the place of another file.
	const std::string Self = HiddenName.empty() ? "/proc/self/fd/" + std::to_string(File) : PathOf(HiddenName);
	if (linkat(AT_FDCWD, Self.c_str(), AT_FDCWD, PathOf(Name).c_str(), AT_SYMLINK_FOLLOW) != 0)
	{
		if (errno == EEXIST)
		{
			bOutExists = true;
			Discard();
			return {};
		}
		return Fail(std::strerror(errno));
	}
	if (!HiddenName.empty())
	{
		unlink(PathOf(HiddenName).c_str());
		HiddenName.clear();
	}
	return FlushFolder();
}
