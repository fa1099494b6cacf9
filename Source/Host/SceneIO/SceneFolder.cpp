// SPDX-License-Identifier: MIT
#include "SceneIO/SceneFolder.h"

#include "SceneIO/PrintableText.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{
std::optional<std::string> RealPath(const std::string& Path)
{
	char* const Resolved = realpath(Path.c_str(), nullptr);
	if (Resolved == nullptr)
	{
		return std::nullopt;
	}
	std::string Out = Resolved;
	std::free(Resolved);
	return Out;
}

FScenePlace SplitPath(const std::string& Absolute)
{
	const std::size_t Slash = Absolute.rfind('/');
	return {Slash == 0 ? "/" : Absolute.substr(0, Slash), Absolute.substr(Slash + 1)};
}

/// For kernels that cannot confine the resolution of a path: opens part by part, and follows no link at all.
int OpenPartByPart(int Folder, const std::string& Relative, int Flags)
{
	int Current = dup(Folder);
	std::size_t Begin = 0;
	while (Current >= 0)
	{
		const std::size_t Slash = Relative.find('/', Begin);
		const std::string Part = Relative.substr(Begin, Slash == std::string::npos ? Slash : Slash - Begin);
		const bool bLast = Slash == std::string::npos;
		const int Next = openat(Current, Part.c_str(), O_NOFOLLOW | O_CLOEXEC | (bLast ? Flags : O_PATH | O_DIRECTORY));
		const int Error = errno;
		close(Current);
		errno = Error;
		if (bLast)
		{
			return Next;
		}
		Current = Next;
		Begin = Slash + 1;
	}
	return -1;
}
}

TSceneResult<FScenePlace> SceneFolder::Resolve(const std::string& Path)
{
	if (const std::optional<std::string> Existing = RealPath(Path))
	{
		return SplitPath(*Existing);
	}
	const std::size_t Slash = Path.rfind('/');
	const std::string Folder = Slash == std::string::npos ? "." : Slash == 0 ? "/" : Path.substr(0, Slash);
	const std::string Name = Slash == std::string::npos ? Path : Path.substr(Slash + 1);
	const std::optional<std::string> RealFolder = RealPath(Folder);
	if (!RealFolder)
	{
		return FSceneError{"Cannot open \"" + PrintableText(Path) + "\": its folder does not exist."};
	}
	if (Name.empty() || Name == "." || Name == "..")
	{
		return FSceneError{"Cannot open \"" + PrintableText(Path) + "\": it names no file."};
	}
	return FScenePlace{*RealFolder, Name};
}

int SceneFolder::OpenBeneath(const std::string& Folder, const std::string& Relative, int Flags)
{
	const int Root = open(Folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
	if (Root < 0)
	{
		return -1;
	}
	open_how How = {};
	How.flags = static_cast<decltype(How.flags)>(Flags | O_CLOEXEC);
	How.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
	int File = static_cast<int>(syscall(SYS_openat2, Root, Relative.c_str(), &How, sizeof(How)));
	if (File < 0 && (errno == ENOSYS || errno == EPERM))
	{
		File = OpenPartByPart(Root, Relative, Flags);
	}
	const int Error = errno;
	close(Root);
	errno = Error;
	return File;
}

TSceneResult<std::shared_ptr<const FMappedFile>> SceneFolder::MapBeneath(
	const std::string& Folder, const std::string& Relative)
{
	const std::string Path = (Folder == "/" ? Folder : Folder + "/") + Relative;
	const int File = OpenBeneath(Folder, Relative, O_RDONLY | O_NONBLOCK | O_NOCTTY);
	if (File < 0)
	{
		const std::string Why = errno == ENOENT || errno == ENOTDIR ? "there is no such file"
								: errno == EXDEV || errno == ELOOP  ? "a symbolic link leads out of the scene's folder"
																	: std::strerror(errno);
		return FSceneError{"Cannot read \"" + PrintableText(Path) + "\": " + Why + "."};
	}
	TSceneResult<std::shared_ptr<const FMappedFile>> Mapped = FMappedFile::Map(File, Path);
	close(File);
	return Mapped;
}
