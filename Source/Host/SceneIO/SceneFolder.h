// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/MappedFile.h"
#include "SceneIO/SceneResult.h"

#include <memory>
#include <string>

/// Where a scene file really lies: symbolic links in the path that a user gave are resolved, once and for all.
struct FScenePlace
{
	std::string Folder; ///< absolute
	std::string Name;   ///< of the file in it

	std::string Path() const { return Folder == "/" ? "/" + Name : Folder + "/" + Name; }
};

/// Opening files below a scene's folder, and never above it.
///
/// A symbolic link below the folder is followed as long as it stays below it; one that leads out of it, or is absolute,
/// is refused. The check and the opening are one step, so that a folder that changes in between cannot lead astray.
namespace SceneFolder
{
/// The place of `Path`, which need not exist yet (its folder must).
TSceneResult<FScenePlace> Resolve(const std::string& Path);

/// A descriptor for reading the regular file at `Relative` below `Folder`; negative, with errno set, where that fails.
int OpenBeneath(const std::string& Folder, const std::string& Relative, int Flags);

/// Maps the file at `Relative` (see SceneUri::Parse) below `Folder`.
TSceneResult<std::shared_ptr<const FMappedFile>> MapBeneath(const std::string& Folder, const std::string& Relative);
}
