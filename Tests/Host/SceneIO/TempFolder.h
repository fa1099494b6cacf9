// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A folder of its own for one test, gone with it.
class FTempFolder
{
public:
	FTempFolder();
	/// Below another folder than the one for temporary files.
	explicit FTempFolder(const std::filesystem::path& Parent);
	~FTempFolder();
	FTempFolder(const FTempFolder&) = delete;
	FTempFolder& operator=(const FTempFolder&) = delete;

	std::string Path(const std::string& Name = "") const { return (Root / Name).string(); }
	/// Writes a file, and the folders on the way to it; returns its path.
	std::string Write(const std::string& Name, std::string_view Content) const;
	std::string Read(const std::string& Name) const;
	/// All names below the folder, sorted, folders left out.
	std::vector<std::string> Names() const;

private:
	std::filesystem::path Root;
};

std::string AsText(std::span<const std::byte> Bytes);
std::span<const std::byte> AsBytes(std::string_view Text);
