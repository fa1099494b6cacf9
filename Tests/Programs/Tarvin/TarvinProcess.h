// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

/// How a run of the program ended, and what it printed.
struct FTarvinRun
{
	int ExitCode = -1; ///< the negative number of a signal that ended it
	std::string Output;
	std::string Errors;
};

/// Runs the program with these arguments, without a terminal, and waits for it.
FTarvinRun RunTarvin(const std::vector<std::string>& Arguments);

/// The same for any program.
FTarvinRun RunProgram(const std::vector<std::string>& CommandLine);

std::string ReadAll(const std::filesystem::path& Path);
void WriteAll(const std::filesystem::path& Path, const std::string& Content);

/// A folder of its own for each test, gone afterwards, with the sample yard in it.
class FYardFixture : public testing::Test
{
protected:
	FYardFixture();
	~FYardFixture() override;

	std::string Path(const std::string& Name) const { return (Folder / Name).string(); }
	std::string Yard() const { return Path("yard.gltf"); }

	std::filesystem::path Folder;
};
