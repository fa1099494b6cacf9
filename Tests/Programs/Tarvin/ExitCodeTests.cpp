// SPDX-License-Identifier: MIT
#include "TarvinProcess.h"

#include <gmock/gmock.h>

using testing::HasSubstr;

namespace
{
class ExitCode : public FYardFixture
{
};

/// One line that begins with the program's name.
void ExpectOneLine(const std::string& Errors)
{
	EXPECT_THAT(Errors, testing::StartsWith("tarvin: "));
	EXPECT_EQ(Errors.find('\n'), Errors.size() - 1) << Errors;
}
} // namespace

TEST_F(ExitCode, IsTwoForWrongUsage)
{
	const FTarvinRun Nothing = RunTarvin({});
	EXPECT_EQ(Nothing.ExitCode, 2);
	EXPECT_THAT(Nothing.Errors, HasSubstr("Usage: tarvin"));
	const std::vector<std::string> Wrong[] = {{"burn", Yard()}, {"bake"}, {"bake", Yard(), "--shared", "maybe"},
		{"bake", Yard(), "--all", "--select", "Crate"}, {"bake", Yard(), "--jobs", "0"}, {"bake", Yard(), "--select"},
		{"bake", Yard(), "--colour"}, {"pivot", "sideways", Yard()}, {"pivot", Yard()}, {"diff", Yard()}, {"info"}};
	for (const std::vector<std::string>& Words : Wrong)
	{
		const FTarvinRun Run = RunTarvin(Words);
		EXPECT_EQ(Run.ExitCode, 2);
		EXPECT_EQ(Run.Output, "");
		ExpectOneLine(Run.Errors);
	}
	EXPECT_EQ(RunTarvin({"bake"}).Errors, "tarvin: IN is required; see `tarvin bake --help`.\n");
	EXPECT_THAT(RunTarvin({"b\x1b[31m\nx"}).Errors, HasSubstr("b\\x1B[31m\\x0Ax; see `tarvin --help`."));
}

TEST_F(ExitCode, IsTwoForOneOutputOfSeveralInputs)
{
	const FTarvinRun Run = RunTarvin({"bake", Yard(), Yard(), "-o", Path("one.gltf")});
	EXPECT_EQ(Run.ExitCode, 2);
	ExpectOneLine(Run.Errors);
}

TEST_F(ExitCode, IsTwoForASelectionThatMatchesNothing)
{
	const FTarvinRun Run = RunTarvin({"bake", Yard(), "-o", Path("none.gltf"), "--select", "Nobody*"});
	EXPECT_EQ(Run.ExitCode, 2);
	EXPECT_THAT(Run.Errors, HasSubstr("--select 'Nobody*' matches no node"));
	EXPECT_FALSE(std::filesystem::exists(Path("none.gltf")));
}

TEST_F(ExitCode, IsZeroForHelp)
{
	for (const char* Command : {"bake", "pivot", "info", "diff", "demo"})
	{
		const FTarvinRun Run = RunTarvin({Command, "--help"});
		EXPECT_EQ(Run.ExitCode, 0);
		EXPECT_THAT(Run.Output, HasSubstr("Usage:"));
	}
	EXPECT_THAT(RunTarvin({"bake", "--help"}).Output, HasSubstr("Examples:"));
	EXPECT_THAT(RunTarvin({"--help"}).Output, HasSubstr("Exit codes:"));
}

TEST_F(ExitCode, IsZeroForTheManualPageAndTheCompletions)
{
	const FTarvinRun Manual = RunTarvin({"--generate", "man"});
	const FTarvinRun Completions = RunTarvin({"--generate", "bash"});
	EXPECT_EQ(Manual.ExitCode, 0);
	for (const char* Command : {"bake", "pivot", "info", "diff", "demo"})
	{
		EXPECT_THAT(Manual.Output, HasSubstr(std::string(".SS ") + Command));
	}
	EXPECT_THAT(Manual.Output, HasSubstr("\\-\\-dry\\-run"));
	WriteAll(Path("completions"), Completions.Output);
	const FTarvinRun Completed = RunProgram(
		{"bash", "-c", "source \"$0\"; COMP_WORDS=(tarvin bake --dry); COMP_CWORD=2; _tarvin; echo ${COMPREPLY[@]}",
			Path("completions")});
	EXPECT_EQ(Completed.Output, "--dry-run\n");
}

TEST_F(ExitCode, IsThreeForAnInputThatIsNotThere)
{
	for (const char* Command : {"bake", "info"})
	{
		const FTarvinRun Run = RunTarvin({Command, Path("missing.gltf")});
		EXPECT_EQ(Run.ExitCode, 3);
		ExpectOneLine(Run.Errors);
		EXPECT_THAT(Run.Errors, HasSubstr("missing.gltf"));
	}
}

TEST_F(ExitCode, IsThreeForBrokenScenes)
{
	const std::string Scene = ReadAll(Yard());
	const std::pair<const char*, std::string> Broken[] = {{"empty", ""}, {"text", "hello"},
		{"cut", Scene.substr(0, Scene.size() / 2)}, {"version", R"({"asset":{"version":"3.0"}})"},
		{"cycle", R"({"asset":{"version":"2.0"},"nodes":[{"children":[1]},{"children":[0]}]})"},
		{"index", R"({"asset":{"version":"2.0"},"nodes":[{"mesh":7}]})"},
		{"required", R"({"asset":{"version":"2.0"},"extensionsUsed":["ACME_x"],"extensionsRequired":["ACME_x"]})"}};
	for (const auto& [Name, Content] : Broken)
	{
		WriteAll(Path("broken.gltf"), Content);
		const FTarvinRun Run = RunTarvin({"bake", Path("broken.gltf"), "-o", Path("out.gltf")});
		EXPECT_EQ(Run.ExitCode, 3) << Name;
		ExpectOneLine(Run.Errors);
		EXPECT_THAT(Run.Errors, HasSubstr("broken.gltf")) << Name;
		EXPECT_FALSE(std::filesystem::exists(Path("out.gltf"))) << Name;
	}
}

TEST_F(ExitCode, IsFourForAnOutputThatCannotBeWritten)
{
	const FTarvinRun Run = RunTarvin({"bake", Yard(), "-o", Path("no/such/folder/out.gltf")});
	EXPECT_EQ(Run.ExitCode, 4);
	ExpectOneLine(Run.Errors);
	EXPECT_EQ(RunTarvin({"demo", Path("no/such/folder/yard.gltf")}).ExitCode, 4);
}

TEST_F(ExitCode, IsFiveForScenesThatLookDifferent)
{
	std::string Scene = ReadAll(Yard());
	const std::string Place = R"("name":"Crate","translation":[-4,1,2])";
	ASSERT_NE(Scene.find(Place), std::string::npos);
	Scene.replace(Scene.find(Place), Place.size(), R"("name":"Crate","translation":[-4,1.5,2])");
	WriteAll(Path("moved.gltf"), Scene);
	const FTarvinRun Run = RunTarvin({"diff", Yard(), Path("moved.gltf")});
	EXPECT_EQ(Run.ExitCode, 5);
	EXPECT_THAT(Run.Output, HasSubstr("Largest deviation 0.5 of a size of 24"));
}

TEST_F(ExitCode, IsOneForAssetsThatWereLeftUnbaked)
{
	const FTarvinRun Run = RunTarvin({"bake", Yard(), "-o", Path("skip.gltf"), "--shared", "skip", "--verify"});
	EXPECT_EQ(Run.ExitCode, 1) << Run.Errors;
	EXPECT_THAT(Run.Output, HasSubstr("not baked, its asset is shared:"));
}

TEST_F(ExitCode, IsOneForNodesLeftOutUnderStrict)
{
	EXPECT_EQ(RunTarvin({"bake", Yard(), "-o", Path("lax.gltf"), "--select", "Flag"}).ExitCode, 0);
	EXPECT_EQ(RunTarvin({"bake", Yard(), "-o", Path("strict.gltf"), "--select", "Flag", "--strict"}).ExitCode, 1);
}

TEST_F(ExitCode, IsTheWorstOfSeveralInputs)
{
	WriteAll(Path("broken.gltf"), "{");
	const FTarvinRun Run = RunTarvin({"bake", Yard(), Path("broken.gltf"), "--out-dir", Path("out"), "--jobs", "2"});
	EXPECT_EQ(Run.ExitCode, 3);
	EXPECT_TRUE(std::filesystem::exists(Path("out/yard.gltf")));
}
