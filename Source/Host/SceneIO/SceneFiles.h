// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/BufferWriter.h"
#include "SceneIO/SceneResult.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// Sends the content of a file to a sink; may be run more than once and then sends the same.
using FContentWriter = std::function<FSceneStatus(const FByteSink&)>;

/// Writes files below a folder, beside the scene file: never over a file with other content, and gone again unless
/// kept.
class FSceneFiles
{
public:
	explicit FSceneFiles(std::string InFolder)
		: Folder(std::move(InFolder))
	{
	}
	/// Removes what was written, unless Keep was called.
	~FSceneFiles();
	FSceneFiles(const FSceneFiles&) = delete;
	FSceneFiles& operator=(const FSceneFiles&) = delete;

	/// Makes a file with the content that `Content` sends and returns its path relative to the folder: `Wanted` (see
	/// SceneUri::Parse), or with a number behind its stem ("name-1.bin") where that is taken. A file that already has
	/// this name and this content is used as it is. With `bNewName`, `Wanted` itself counts as taken.
	TSceneResult<std::string> Put(
		const std::string& Wanted, bool bNewName, std::uint64_t Length, const FContentWriter& Content);

	void Keep() { bKeep = true; }
	const std::vector<std::string>& Written() const { return Paths; }

private:
	enum class EFound
	{
		Nothing,
		Same,
		Other,
	};

	FSceneStatus MakeFolders(const std::string& Relative);
	TSceneResult<EFound> Compare(
		const std::string& Relative, std::uint64_t Length, const FContentWriter& Content) const;
	std::string PathOf(const std::string& Relative) const;

	std::string Folder;
	std::vector<std::string> Paths;
	bool bKeep = false;
};
