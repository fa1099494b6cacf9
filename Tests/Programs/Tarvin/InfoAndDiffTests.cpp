// SPDX-License-Identifier: MIT
#include "TarvinProcess.h"

#include "Host/SceneIO/SceneText.h"

#include <gmock/gmock.h>

#include <limits>

using testing::HasSubstr;

namespace
{
class InfoCommand : public FYardFixture
{
};

class DiffCommand : public FYardFixture
{
protected:
	/// Writes a scene of one triangle under an uneven scale, with these normals if there are any.
	void WriteTriangle(const char* Name, const std::vector<float>& Normals) const
	{
		FSceneText Scene;
		std::string Attributes = "\"POSITION\":" + std::to_string(Scene.AddVec3({0, 0, 0, 2, 0, 0, 0, 3, 5}));
		if (!Normals.empty())
		{
			Attributes += ",\"NORMAL\":" + std::to_string(Scene.AddVec3(Normals));
		}
		Scene.AddMesh(Attributes);
		Scene.AddNode(R"("name":"A","mesh":0,"scale":[20000,-30000,50000])");
		WriteAll(Path(Name), Scene.Text(""));
	}

	/// The exit code for a triangle with these normals beside one whose normals look along Z.
	FTarvinRun CompareWithUpright(const std::vector<float>& Normals) const
	{
		WriteTriangle("upright.gltf", {0, 0, 1, 0, 0, 1, 0, 0, 1});
		WriteTriangle("other.gltf", Normals);
		return RunTarvin({"diff", Path("upright.gltf"), Path("other.gltf")});
	}
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

TEST_F(InfoCommand, SaysWhatTheBakeItselfSays)
{
	const std::string Turned = R"("mesh":0,"rotation":[0,0.6,0,0.8],"scale":[1,2,5])";
	WriteAll(Path("tree.gltf"),
		R"({"asset":{"version":"2.0"},"accessors":[{"componentType":5126,"count":3,"type":"VEC3"}],)"
		R"("meshes":[{"primitives":[{"attributes":{"POSITION":0}}]}],"extensionsUsed":["TARVIN_component"],"nodes":[)"
		R"({"name":"Up",)" +
			Turned + R"(,"children":[1]},{"name":"Low","mesh":0,"children":[2]},{"name":"Lowest","mesh":0},)" +
			R"({"name":"Frame","rotation":[0,0.6,0,0.8],"scale":[1,2,5],"children":[4]},{"name":"Post","mesh":0},)" +
			R"({"name":"Scripted","extensions":{"TARVIN_component":{"creationMethod":"instance"}},)" + Turned + "}]}");
	const std::string Info = RunTarvin({"info", Path("tree.gltf")}).Output;
	for (const char* Name : {"Up", "Up/Low", "Up/Low/Lowest"})
	{
		EXPECT_THAT(Info, testing::ContainsRegex("'" + std::string(Name) + "' [^\n]*-- candidate\n"));
	}
	EXPECT_THAT(Info,
		testing::ContainsRegex("'Frame/Post' [^\n]*-- leftOut: its parent combines rotation with uneven scale\n"));
	EXPECT_THAT(Info, testing::ContainsRegex("'Scripted' [^\n]*-- leftOut: its component was not created natively\n"));
	const std::string Bake = RunTarvin({"bake", Path("tree.gltf"), "--dry-run"}).Output;
	EXPECT_THAT(Bake, HasSubstr("3 node(s) baked"));
	EXPECT_THAT(Bake, HasSubstr("left out, its parent combines rotation with uneven scale: Frame/Post"));
	EXPECT_THAT(Bake, HasSubstr("left out, its component was not created natively: Scripted"));
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

TEST_F(DiffCommand, FindsTurnedNormals)
{
	EXPECT_EQ(CompareWithUpright({0, 0, 1, 0, 0, 1, 0, 0.6f, 0.8f}).ExitCode, 5);
	EXPECT_EQ(CompareWithUpright({0, 0, 1, 0, 0, 1, 0, 0, -1}).ExitCode, 5);
	EXPECT_EQ(CompareWithUpright({0, 0, 1, 0, 0, 1, 0, 0.001f, 1}).ExitCode, 5);
	EXPECT_EQ(CompareWithUpright({0, 0, 1, 0, 0, 1, 0, 0, 1}).ExitCode, 0);
	EXPECT_EQ(CompareWithUpright({0, 0, 1, 0, 0, 1, 0, 0, 1e-5f}).ExitCode, 0) << "its length says nothing";
}

TEST_F(DiffCommand, FindsNormalsThatPointNowhereOrAreLost)
{
	const float NaN = std::numeric_limits<float>::quiet_NaN();
	EXPECT_EQ(CompareWithUpright({0, 0, 1, 0, 0, 1, 0, 0, 0}).ExitCode, 5);
	EXPECT_EQ(CompareWithUpright({0, 0, 1, 0, 0, 1, NaN, 0, 1}).ExitCode, 5);
	const FTarvinRun Lost = CompareWithUpright({});
	EXPECT_EQ(Lost.ExitCode, 5);
	EXPECT_THAT(Lost.Output, HasSubstr("node 0 'A' has normals in the first scene only"));
	EXPECT_THAT(RunTarvin({"diff", Path("other.gltf"), Path("upright.gltf")}).Output,
		HasSubstr("node 0 'A' has normals in the second scene only"));

	WriteTriangle("dirty.gltf", {0, 0, 1, 0, 0, 0, NaN, 0, 1});
	EXPECT_EQ(RunTarvin({"diff", Path("dirty.gltf"), Path("dirty.gltf")}).ExitCode, 0) << "nowhere in both";
}

TEST_F(DiffCommand, FindsNothingBetweenAFileAndItself)
{
	const FTarvinRun Run = RunTarvin({"diff", Yard(), Yard()});
	EXPECT_EQ(Run.ExitCode, 0);
	EXPECT_THAT(Run.Output, HasSubstr("Largest deviation 0 of a size of 24 (0)"));
}
