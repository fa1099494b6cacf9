// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfPatch.h"
#include "SceneIO/SceneResult.h"

#include <string>
#include <vector>

/// What a save did beside writing the scene.
struct FSaveReport
{
	std::string Path;                       ///< where the scene was written; symbolic links are resolved
	bool bWritten = false;                  ///< false: nothing differed, and the file was left alone
	std::vector<std::string> FilesWritten;  ///< other files that were written: buffers, and what was taken along
	std::vector<std::string> FilesLeftOver; ///< buffer files that this scene used before and does not any more
	std::vector<std::string> FilesMissing;  ///< files that the scene names and that could not be taken along
};

/// Saves a document with a patch to `Path`, which may be the file that was read, or any other.
///
/// Without edits the same bytes are written. The scene is replaced in one step, after everything it names is on the
/// disk: an external buffer that changes gets a new file under a new name ("name-1.bin"), so that at no moment a scene
/// and a buffer that do not belong together can be seen. In another folder, files that the scene names are taken along
/// under their relative names; where another file with other content has the name, under a new one.
///
/// On failure the sentence says which file could not be written and why; the old scene is untouched, and files that the
/// save made are removed. Fails also when a source file changed on disk since it was read.
TSceneResult<FSaveReport> SaveGltf(FGltfPatch Patch, const std::string& Path);
