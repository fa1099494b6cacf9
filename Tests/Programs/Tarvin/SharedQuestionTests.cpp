// SPDX-License-Identifier: MIT
#include "TarvinProcess.h"

#include <gmock/gmock.h>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

using testing::HasSubstr;

namespace
{
class SharedQuestion : public FYardFixture
{
protected:
	/// Runs the program on a terminal of its own, types `Typed`, and returns all that the terminal showed.
	FTarvinRun RunOnTerminal(std::vector<std::string> Arguments, const std::string& Typed)
	{
		Arguments.insert(Arguments.begin(), TARVIN_PROGRAM);
		std::vector<char*> Argv;
		for (std::string& Argument : Arguments)
		{
			Argv.push_back(Argument.data());
		}
		Argv.push_back(nullptr);
		int Terminal = -1;
		const pid_t Child = forkpty(&Terminal, nullptr, nullptr, nullptr);
		if (Child == 0)
		{
			execv(Argv[0], Argv.data());
			_exit(127);
		}
		EXPECT_EQ(write(Terminal, Typed.data(), Typed.size()), ssize_t(Typed.size()));
		FTarvinRun Run;
		char Buffer[4096];
		for (ssize_t Num; (Num = read(Terminal, Buffer, sizeof(Buffer))) > 0;)
		{
			Run.Output.append(Buffer, std::size_t(Num));
		}
		int Status = 0;
		waitpid(Child, &Status, 0);
		close(Terminal);
		Run.ExitCode = WIFEXITED(Status) ? WEXITSTATUS(Status) : -WTERMSIG(Status);
		return Run;
	}
};
} // namespace

TEST_F(SharedQuestion, IsAskedOnATerminal)
{
	const FTarvinRun Run = RunOnTerminal({"bake", Yard(), "-o", Path("asked.gltf"), "--select", "Wall A"}, "1\n");
	EXPECT_EQ(Run.ExitCode, 0) << Run.Output;
	EXPECT_THAT(Run.Output, HasSubstr("'Wall' is also used by 3 other actor(s)."));
	EXPECT_THAT(Run.Output, HasSubstr("Create new asset"));
	EXPECT_THAT(Run.Output, HasSubstr("Apply to all"));
	EXPECT_THAT(Run.Output, HasSubstr("1 node(s) baked, 1 new asset(s)"));
}

TEST_F(SharedQuestion, LeavesTheAssetAloneWhenCancelled)
{
	const FTarvinRun Run = RunOnTerminal({"bake", Yard(), "-o", Path("asked.gltf"), "--select", "Wall A"}, "3\n");
	EXPECT_EQ(Run.ExitCode, 1) << Run.Output;
	EXPECT_THAT(Run.Output, HasSubstr("0 node(s) baked, 0 new asset(s)"));
	EXPECT_EQ(ReadAll(Path("asked.gltf")), ReadAll(Yard()));
}

TEST_F(SharedQuestion, OffersOnlyACopyForTwoShapes)
{
	const FTarvinRun Run =
		RunOnTerminal({"bake", Yard(), "-o", Path("asked.gltf"), "--select", "Wall A", "Wall C"}, "1\n1\n");
	EXPECT_EQ(Run.ExitCode, 0) << Run.Output;
	EXPECT_THAT(Run.Output, HasSubstr("appears in the selection with two different rotation/scale values."));
	EXPECT_THAT(Run.Output, testing::Not(HasSubstr("Apply to all")));
	EXPECT_THAT(Run.Output, HasSubstr("2 node(s) baked, 2 new asset(s)"));
}

TEST_F(SharedQuestion, IsAnsweredByTheOptionInPlace)
{
	const FTarvinRun Run = RunTarvin(
		{"bake", Yard(), "-o", Path("in-place.gltf"), "--shared", "in-place", "--select", "Wall A", "--verify"});
	EXPECT_EQ(Run.ExitCode, 0) << Run.Errors;
	EXPECT_THAT(Run.Output, HasSubstr("1 node(s) baked, 0 new asset(s)"));
}

TEST_F(SharedQuestion, IsRefusedInPlaceByNameWhereAUserCannotFollow)
{
	const FTarvinRun Run = RunTarvin({"bake", Yard(), "-o", Path("in-place.gltf"), "--shared", "in-place", "--verify"});
	EXPECT_EQ(Run.ExitCode, 0) << Run.Errors;
	EXPECT_THAT(Run.Output, HasSubstr("left out, baking 'Picket' in place would change 'Fence', which cannot follow "
									  "(it is instanced): Lone picket"));
}

TEST_F(SharedQuestion, TellsWhyAUserCannotFollowInPlace)
{
	const auto Refusal = [this](const std::string& Other)
	{
		WriteAll(Path("two.gltf"),
			R"({"asset":{"version":"2.0"},"accessors":[{"componentType":5126,"count":3,"type":"VEC3"}],)"
			R"("meshes":[{"name":"Rock","primitives":[{"attributes":{"POSITION":0}}]}],)"
			R"("nodes":[{"name":"A","mesh":0,"scale":[2,2,2]},{"name":"B","mesh":0)" +
				Other + "}]}");
		return RunTarvin({"bake", Path("two.gltf"), "--dry-run", "--shared", "in-place"}).Output;
	};
	const std::string Head = "left out, baking 'Rock' in place would change 'B', which cannot follow ";
	EXPECT_THAT(Refusal(""), HasSubstr(Head + "(it has nothing to bake): A"));
	EXPECT_THAT(Refusal(R"(,"scale":[2,2,2],"extensions":{"TARVIN_component":{"creationMethod":"instance"}})"),
		HasSubstr(Head + "(its component was not created natively): A"));
	EXPECT_THAT(Refusal(R"(,"scale":[0,2,2])"), HasSubstr(Head + "(its scale in the world is zero): A"));
	EXPECT_THAT(Refusal(R"(,"scale":[2,2.00005,2])"), HasSubstr(Head + "(it is not baked in the same step): A"));
}

TEST_F(SharedQuestion, LeavesWhatOtherScenesShowOutOfInPlaceBakes)
{
	const auto Bake = [this](const std::string& Scenes, const std::string& Selected)
	{
		WriteAll(Path("scenes.gltf"),
			R"({"asset":{"version":"2.0"},"accessors":[{"componentType":5126,"count":3,"type":"VEC3"}],)"
			R"("meshes":[{"name":"Rock","primitives":[{"attributes":{"POSITION":0}}]}],)"
			R"("nodes":[{"name":"A","mesh":0,"scale":[2,2,2]},{"name":"B","children":[2]},)"
			R"({"name":"C","mesh":0,"scale":[2,2,2]}],"scenes":[)" +
				Scenes + "]}");
		return RunTarvin({"bake", Path("scenes.gltf"), "--dry-run", "--shared", "in-place", "--select", Selected})
			.Output;
	};
	const std::string Head = "left out, baking 'Rock' in place would change 'C', which cannot follow ";
	EXPECT_THAT(Bake(R"({"nodes":[0]},{"nodes":[1]})", "A"), HasSubstr(Head + "(it is in another scene): A"));
	EXPECT_THAT(Bake(R"({"nodes":[0]})", "A"), HasSubstr(Head + "(it is in no scene): A"));
	EXPECT_THAT(Bake(R"({"nodes":[0]},{"nodes":[0,1]})", "A"), HasSubstr("1 node(s) baked"));
	EXPECT_THAT(Bake(R"({"nodes":[0]},{"nodes":[1]})", "*"), HasSubstr("2 node(s) baked"));
}
