// SPDX-License-Identifier: MIT
#include "TempFolder.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

FTempFolder::FTempFolder()
	: FTempFolder(std::filesystem::temp_directory_path())
{
}

FTempFolder::FTempFolder(const std::filesystem::path& Parent)
{
	std::string Pattern = (Parent / "sceneio-XXXXXX").string();
	// A folder that cannot be made shows in every use of it.
	Root = std::filesystem::canonical(mkdtemp(Pattern.data()));
}

FTempFolder::~FTempFolder()
{
	std::error_code Ignored;
	std::filesystem::remove_all(Root, Ignored);
}

std::string FTempFolder::Write(const std::string& Name, std::string_view Content) const
{
	const std::filesystem::path Target = Root / Name;
	std::filesystem::create_directories(Target.parent_path());
	std::ofstream(Target, std::ios::binary) << Content;
	return Target.string();
}

std::string FTempFolder::Read(const std::string& Name) const
{
	std::ifstream File(Root / Name, std::ios::binary);
	return {std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>()};
}

std::vector<std::string> FTempFolder::Names() const
{
	std::vector<std::string> Out;
	for (const auto& Entry : std::filesystem::recursive_directory_iterator(Root))
	{
		if (!Entry.is_directory())
		{
			Out.push_back(std::filesystem::relative(Entry.path(), Root).string());
		}
	}
	std::sort(Out.begin(), Out.end());
	return Out;
}

std::string AsText(std::span<const std::byte> Bytes)
{
	return {reinterpret_cast<const char*>(Bytes.data()), Bytes.size()};
}

std::span<const std::byte> AsBytes(std::string_view Text)
{
	return std::as_bytes(std::span(Text));
}
