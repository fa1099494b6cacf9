// SPDX-License-Identifier: MIT
#include "TarvinProcess.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
class SaveSafety : public FYardFixture
{
protected:
	/// Everything in the folder but these names.
	std::vector<std::string> OtherFiles(const std::vector<std::string>& Known) const
	{
		std::vector<std::string> Others;
		for (const auto& Entry : std::filesystem::directory_iterator(Folder))
		{
			const std::string Name = Entry.path().filename().string();
			if (std::find(Known.begin(), Known.end(), Name) == Known.end())
			{
				Others.push_back(Name);
			}
		}
		return Others;
	}
};

/// Starts the program, kills it after `Microseconds`, and waits for its end.
void KillAfter(const std::vector<std::string>& Arguments, int Microseconds)
{
	std::vector<char*> Argv = {const_cast<char*>(TARVIN_PROGRAM)};
	for (const std::string& Argument : Arguments)
	{
		Argv.push_back(const_cast<char*>(Argument.c_str()));
	}
	Argv.push_back(nullptr);
	const pid_t Child = fork();
	if (Child == 0)
	{
		const int Null = open("/dev/null", O_RDWR);
		dup2(Null, STDOUT_FILENO);
		dup2(Null, STDERR_FILENO);
		execv(Argv[0], Argv.data());
		_exit(127);
	}
	usleep(useconds_t(Microseconds));
	kill(Child, SIGKILL);
	int Status = 0;
	waitpid(Child, &Status, 0);
}
} // namespace

TEST_F(SaveSafety, LeavesTheOldSceneOrTheNewOneWhenKilled)
{
	const std::string Old = ReadAll(Yard());
	ASSERT_EQ(RunTarvin({"bake", Yard(), "-o", Path("baked.gltf")}).ExitCode, 0);
	const std::string New = ReadAll(Path("baked.gltf"));
	for (int Try = 0; Try < 60; ++Try)
	{
		WriteAll(Path("victim.gltf"), Old);
		KillAfter({"bake", Path("victim.gltf")}, Try * 700);
		const std::string Found = ReadAll(Path("victim.gltf"));
		EXPECT_TRUE(Found == Old || Found == New) << "killed after " << Try * 700 << " microseconds";
	}
}

TEST_F(SaveSafety, LeavesTheOldSceneWhenTheDiskIsFull)
{
	const std::string Old = ReadAll(Yard());
	WriteAll(Path("victim.gltf"), Old);
	// A limit on the size of files fails writes as a full disk does.
	const FTarvinRun Run = RunProgram(
		{"bash", "-c", "ulimit -f 8; trap '' XFSZ; exec \"$0\" \"$@\"", TARVIN_PROGRAM, "bake", Path("victim.gltf")});
	EXPECT_EQ(Run.ExitCode, 4) << Run.Errors;
	EXPECT_THAT(Run.Errors, testing::HasSubstr("victim.gltf"));
	EXPECT_EQ(ReadAll(Path("victim.gltf")), Old);
	EXPECT_THAT(OtherFiles({"yard.gltf", "victim.gltf"}), testing::IsEmpty());
}

TEST_F(SaveSafety, SurvivesEveryShorteningOfAScene)
{
	const std::string Whole = ReadAll(Yard());
	for (std::size_t Length = 0; Length < Whole.size(); Length += Whole.size() / 60)
	{
		WriteAll(Path("cut.gltf"), Whole.substr(0, Length));
		const FTarvinRun Run = RunTarvin({"bake", Path("cut.gltf"), "-o", Path("out.gltf")});
		EXPECT_EQ(Run.ExitCode, 3) << Length << Run.Errors;
	}
}
