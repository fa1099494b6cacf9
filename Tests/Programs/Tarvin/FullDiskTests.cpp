// SPDX-License-Identifier: MIT
// Saves on a disk of some pages, a memory file system that only the program and the script around it see.
#include "SceneIO/Base64.h"
#include "TarvinProcess.h"

#include <gmock/gmock.h>

#include <sstream>

namespace
{
/// Copies the files of "$2" to the disk "$1" and saves there with ever more room, page by page, until that succeeds.
/// Prints a line for each try: the pages left, the exit code, whether the disk holds what it held, and the sentence.
constexpr const char* Script = R"sh(
Disk=$1 Before=$2; shift 2
mount -t tmpfs -o "$Options" none "$Disk" || exit 99
for ((Pages = 0; Pages < 200; ++Pages)); do
	cp "$Before"/* "$Disk/"
	cat /dev/zero >"$Disk/filler" 2>/dev/null
	truncate -s "-$((Pages * 4096))" "$Disk/filler"
	Errors=$("$@" 2>&1 >/dev/null)
	Code=$?
	rm "$Disk/filler"
	diff -r "$Before" "$Disk" >/dev/null && Held=same || Held=changed
	echo "$Pages $Code $Held $Errors"
	((Code == 4)) || exit 0
	rm -rf "${Disk:?}"/* "$Disk"/.[!.]*
done
)sh";

struct FTry
{
	int Pages = 0;
	int Code = -1;
	std::string Held;
	std::string Sentence;
};

class FullDisk : public FYardFixture
{
protected:
	FullDisk()
	{
		std::filesystem::create_directories(Folder / "disk");
		std::filesystem::create_directories(Folder / "before");
	}

	void SetUp() override
	{
		for (const std::vector<std::string>& Way :
			{std::vector<std::string>{"unshare", "-rm"}, std::vector<std::string>{"unshare", "-m"}})
		{
			std::vector<std::string> Probe = Way;
			Probe.insert(Probe.end(), {"mount", "-t", "tmpfs", "none", Path("disk")});
			if (RunProgram(Probe).ExitCode == 0)
			{
				Mounting = Way;
				return;
			}
		}
		GTEST_SKIP() << "no file system can be mounted here: neither as a user of its own namespace nor as root";
	}

	/// Saves with ever more room; `Arguments` are the program's.
	std::vector<FTry> SaveWithMoreAndMoreRoom(const std::vector<std::string>& Arguments)
	{
		std::vector<std::string> Command = Mounting;
		Command.insert(Command.end(),
			{"env", "Options=size=2m", "bash", "-c", Script, "bash", Path("disk"), Path("before"), TARVIN_PROGRAM});
		Command.insert(Command.end(), Arguments.begin(), Arguments.end());
		const FTarvinRun Run = RunProgram(Command);
		EXPECT_EQ(Run.ExitCode, 0) << Run.Errors;
		std::vector<FTry> Tries;
		std::istringstream Lines(Run.Output);
		for (FTry Try; Lines >> Try.Pages >> Try.Code >> Try.Held && std::getline(Lines, Try.Sentence);)
		{
			Tries.push_back(Try);
		}
		return Tries;
	}

	/// Every try failed as it must, but for the last one.
	static void ExpectTheOldScene(const std::vector<FTry>& Tries, const std::string& FileOfSentence)
	{
		ASSERT_GT(Tries.size(), 3u);
		EXPECT_EQ(Tries.back().Code, 0) << Tries.back().Sentence;
		EXPECT_EQ(Tries.back().Held, "changed");
		for (std::size_t Index = 0; Index + 1 < Tries.size(); ++Index)
		{
			const FTry& Try = Tries[Index];
			EXPECT_EQ(Try.Code, 4) << "with " << Try.Pages << " pages left:" << Try.Sentence;
			EXPECT_EQ(Try.Held, "same") << "with " << Try.Pages << " pages left";
			EXPECT_THAT(Try.Sentence, testing::HasSubstr(FileOfSentence));
			EXPECT_THAT(Try.Sentence, testing::EndsWith("No space left on device."));
		}
	}

	/// The yard as text whose buffer stands in a file beside it.
	void WriteExternalYard(const std::filesystem::path& Target)
	{
		std::string Text = ReadAll(Yard());
		const std::string Head = "data:application/octet-stream;base64,";
		const std::size_t Begin = Text.find(Head);
		ASSERT_NE(Begin, std::string::npos);
		const std::size_t Data = Begin + Head.size();
		const std::size_t End = Text.find('"', Data);
		const auto Bytes = Base64::Decode(Text.substr(Data, End - Data));
		ASSERT_TRUE(Bytes.has_value());
		WriteAll(Target / "yard.bin", std::string(reinterpret_cast<const char*>(Bytes->data()), Bytes->size()));
		WriteAll(Target / "yard.gltf", Text.replace(Begin, End - Begin, "yard.bin"));
	}

	std::vector<std::string> Mounting;
};
} // namespace

TEST_F(FullDisk, KeepsTheOldBinarySceneInPlace)
{
	ASSERT_EQ(RunTarvin({"demo", Path("before/yard.glb")}).ExitCode, 0);
	ExpectTheOldScene(SaveWithMoreAndMoreRoom({"bake", Path("disk/yard.glb")}), "yard.glb");
}

TEST_F(FullDisk, KeepsTheOldTextAndItsBufferInPlace)
{
	WriteExternalYard(Folder / "before");
	ExpectTheOldScene(SaveWithMoreAndMoreRoom({"bake", Path("disk/yard.gltf")}), "yard");
}

TEST_F(FullDisk, KeepsTheOldBinaryResult)
{
	ASSERT_EQ(RunTarvin({"demo", Path("yard.glb")}).ExitCode, 0);
	WriteAll(Path("before/out.glb"), "the result of another day");
	ExpectTheOldScene(SaveWithMoreAndMoreRoom({"bake", Path("yard.glb"), "-o", Path("disk/out.glb")}), "out.glb");
}

TEST_F(FullDisk, KeepsTheOldTextOfAResultAndLeavesNoBuffer)
{
	std::filesystem::create_directories(Folder / "yard");
	WriteExternalYard(Folder / "yard");
	WriteAll(Path("before/out.gltf"), "the result of another day");
	ExpectTheOldScene(SaveWithMoreAndMoreRoom({"bake", Path("yard/yard.gltf"), "-o", Path("disk/out.gltf")}), "disk");
}
