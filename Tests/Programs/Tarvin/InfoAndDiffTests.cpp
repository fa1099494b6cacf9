// SPDX-License-Identifier: MIT
#include "TarvinProcess.h"

#include <gmock/gmock.h>

using testing::HasSubstr;

namespace
{
class InfoCommand : public FYardFixture
{
};

class DiffCommand : public FYardFixture
{
};
} // namespace

TEST_F(InfoCommand, SaysWhatABakeWouldDoWithEachNode)
{
	const FTarvinRun Run = RunTarvin({"info", Yard()});
	EXPECT_EQ(Run.ExitCode, 0);
	EXPECT_THAT(Run.Output, HasSubstr("25 node(s), 16 mesh(es)"));
	EXPECT_THAT(Run.Output,
		HasSubstr(
			"'Crate' mesh 1 at (-4.000 1.000 2.000) scale (2.000 2.000 2.000) turned (0.0 30.0 0.0) -- candidate"));
	EXPECT_THAT(Run.Output,
		HasSubstr(
			"'Ground' mesh 0 at (0.000 0.000 0.000) scale (1.000 1.000 1.000) turned (0.0 0.0 0.0) -- nothingToBake"));
	EXPECT_THAT(Run.Output, HasSubstr("-- leftOut: it is skinned"));
	EXPECT_THAT(Run.Output, HasSubstr("'Crate' 1 user(s), 24 vertices, 1 level(s), 2 socket(s), 5 collision shape(s)"));
	EXPECT_THAT(Run.Output, HasSubstr("'Statue' 1 user(s), 24 vertices, 2 level(s)"));
}

TEST_F(InfoCommand, EscapesControlCharactersInNames)
{
	WriteAll(Path("evil.gltf"), R"({"asset":{"version":"2.0"},"nodes":[{"name":"a\u001b[31mb"}]})");
	const FTarvinRun Run = RunTarvin({"info", Path("evil.gltf")});
	EXPECT_EQ(Run.ExitCode, 0);
	EXPECT_EQ(Run.Output.find('\x1b'), std::string::npos);
	EXPECT_THAT(Run.Output, HasSubstr("a\\x1B[31mb"));
}

TEST_F(DiffCommand, FindsAMissingNode)
{
	WriteAll(Path("none.gltf"), R"({"asset":{"version":"2.0"}})");
	const FTarvinRun Run = RunTarvin({"diff", Yard(), Path("none.gltf")});
	EXPECT_EQ(Run.ExitCode, 5);
	EXPECT_THAT(Run.Output, HasSubstr("node 0 'Ground' is in the first scene only"));
}

TEST_F(DiffCommand, FindsTurnedTriangles)
{
	std::string Scene = ReadAll(Yard());
	const std::string Place = R"("scale":[-1,1.5,1])";
	ASSERT_NE(Scene.find(Place), std::string::npos);
	Scene.replace(Scene.find(Place), Place.size(), R"("scale":[1,1.5,1])");
	WriteAll(Path("unmirrored.gltf"), Scene);
	const FTarvinRun Run = RunTarvin({"diff", Yard(), Path("unmirrored.gltf")});
	EXPECT_EQ(Run.ExitCode, 5);
	EXPECT_THAT(Run.Output, testing::Not(HasSubstr(" 0 triangle(s) turned over")));
}

TEST_F(DiffCommand, FindsNothingBetweenAFileAndItself)
{
	const FTarvinRun Run = RunTarvin({"diff", Yard(), Yard()});
	EXPECT_EQ(Run.ExitCode, 0);
	EXPECT_THAT(Run.Output, HasSubstr("Largest deviation 0 of a size of 24 (0)"));
}
