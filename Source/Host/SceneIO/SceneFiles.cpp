// SPDX-License-Identifier: MIT
#include "SceneIO/SceneFiles.h"

#include "SceneIO/AtomicFile.h"
#include "SceneIO/PrintableText.h"
#include "SceneIO/SceneFolder.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
/// "folder/name-3.bin" taken apart; what a number may be put behind.
struct FNumberedName
{
	std::string Stem; ///< with its folders
	std::string Extension;
	std::uint64_t Number = 0;

	explicit FNumberedName(const std::string& Path)
	{
		const std::size_t Slash = Path.rfind('/');
		const std::size_t NameBegin = Slash == std::string::npos ? 0 : Slash + 1;
		const std::size_t Dot = Path.rfind('.');
		const bool bExtension = Dot != std::string::npos && Dot > NameBegin;
		Stem = bExtension ? Path.substr(0, Dot) : Path;
		Extension = bExtension ? Path.substr(Dot) : std::string();
		// A name that was numbered before is numbered on, and does not grow with every save.
		const std::size_t Dash = Stem.rfind('-');
		constexpr std::size_t MaxDigits = 9;
		if (Dash != std::string::npos && Dash > NameBegin && Dash + 1 < Stem.size() &&
			Stem.size() - Dash - 1 <= MaxDigits && Stem.find_first_not_of("0123456789", Dash + 1) == std::string::npos)
		{
			Number = std::strtoull(Stem.c_str() + Dash + 1, nullptr, 10);
			Stem.resize(Dash);
		}
	}

	std::string Next() { return Stem + "-" + std::to_string(++Number) + Extension; }
};
}

FSceneFiles::~FSceneFiles()
{
	if (!bKeep)
	{
		for (const std::string& Path : Paths)
		{
			unlink(Path.c_str());
		}
	}
}

std::string FSceneFiles::PathOf(const std::string& Relative) const
{
	return (Folder == "/" ? Folder : Folder + "/") + Relative;
}

FSceneStatus FSceneFiles::MakeFolders(const std::string& Relative)
{
	int Current = open(Folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
	std::size_t Begin = 0;
	while (Current >= 0)
	{
		const std::size_t Slash = Relative.find('/', Begin);
		if (Slash == std::string::npos)
		{
			close(Current);
			return {};
		}
		const std::string Part = Relative.substr(Begin, Slash - Begin);
		mkdirat(Current, Part.c_str(), 0777);
		// A symbolic link in place of a folder could lead anywhere.
		const int Next = openat(Current, Part.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
		const int Error = errno;
		close(Current);
		errno = Error;
		Current = Next;
		Begin = Slash + 1;
	}
	const std::string Why = errno == ELOOP || errno == ENOTDIR ? "a folder on the way is no folder or a symbolic link"
															   : std::strerror(errno);
	return FSceneError{"Cannot write \"" + PrintableText(PathOf(Relative)) + "\": " + Why + "."};
}

TSceneResult<FSceneFiles::EFound> FSceneFiles::Compare(
	const std::string& Relative, std::uint64_t Length, const FContentWriter& Content) const
{
	struct stat Stat = {};
	if (lstat(PathOf(Relative).c_str(), &Stat) != 0)
	{
		return EFound::Nothing;
	}
	if (!S_ISREG(Stat.st_mode) || static_cast<std::uint64_t>(Stat.st_size) != Length)
	{
		return EFound::Other;
	}
	TSceneResult<std::shared_ptr<const FMappedFile>> File = SceneFolder::MapBeneath(Folder, Relative);
	if (!File)
	{
		return EFound::Other;
	}
	const std::span<const std::byte> Old = (*File)->Bytes();
	std::size_t At = 0;
	bool bSame = Old.size() == Length;
	const FSceneStatus Status = Content(
		[&](std::span<const std::byte> Bytes) -> FSceneStatus
		{
			bSame = bSame && Bytes.size() <= Old.size() - At &&
					std::memcmp(Bytes.data(), Old.data() + At, Bytes.size()) == 0;
			At += bSame ? Bytes.size() : 0;
			return {};
		});
	if (!Status)
	{
		return Status.Error();
	}
	return bSame && At == Old.size() && (*File)->IsIntact() ? EFound::Same : EFound::Other;
}

TSceneResult<std::string> FSceneFiles::Put(
	const std::string& Wanted, bool bNewName, std::uint64_t Length, const FContentWriter& Content)
{
	FNumberedName Numbered(Wanted);
	std::string Relative = bNewName ? Numbered.Next() : Wanted;
	if (const FSceneStatus Status = MakeFolders(Relative); !Status)
	{
		return Status.Error();
	}
	while (true)
	{
		TSceneResult<EFound> Found = Compare(Relative, Length, Content);
		if (!Found)
		{
			return Found.Error();
		}
		if (*Found == EFound::Same)
		{
			return Relative;
		}
		bool bTaken = *Found == EFound::Other;
		if (!bTaken)
		{
			const std::string Path = PathOf(Relative);
			const std::size_t Slash = Path.rfind('/');
			FAtomicFile File;
			FSceneStatus Status = File.Create(Slash == 0 ? "/" : Path.substr(0, Slash), Path.substr(Slash + 1), Length);
			Status = Status ? Content([&File](std::span<const std::byte> Bytes) { return File.Write(Bytes); }) : Status;
			Status = Status ? File.PutNew(bTaken) : Status;
			if (!Status)
			{
				return Status.Error();
			}
			if (!bTaken)
			{
				Paths.push_back(Path);
				return Relative;
			}
		}
		Relative = Numbered.Next();
	}
}
