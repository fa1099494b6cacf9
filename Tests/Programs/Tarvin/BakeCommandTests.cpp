// SPDX-License-Identifier: MIT
#include "TarvinProcess.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace
{
class BakeCommand : public FYardFixture
{
};
} // namespace

TEST_F(BakeCommand, KeepsThePictureOfTheYard)
{
	const FTarvinRun Run = RunTarvin({"bake", Yard(), "-o", Path("baked.gltf"), "--verify"});
	EXPECT_EQ(Run.ExitCode, 0) << Run.Errors;
	EXPECT_THAT(
		Run.Output, HasSubstr("12 node(s) baked, 4 new asset(s), 1 with nothing to bake, 7 left out, 0 not baked"));
	EXPECT_THAT(Run.Output, HasSubstr("0 triangle(s) turned over"));
	EXPECT_EQ(RunTarvin({"diff", Yard(), Path("baked.gltf")}).ExitCode, 0);
}

TEST_F(BakeCommand, KeepsThePictureOfABinaryYard)
{
	ASSERT_EQ(RunTarvin({"demo", Path("yard.glb")}).ExitCode, 0);
	EXPECT_EQ(RunTarvin({"bake", Path("yard.glb"), "-o", Path("baked.glb"), "--verify"}).ExitCode, 0);
	EXPECT_EQ(RunTarvin({"diff", Yard(), Path("baked.glb")}).ExitCode, 0);
}

TEST_F(BakeCommand, NamesWhatIsLeftOutAndWhy)
{
	const std::string Output = RunTarvin({"bake", Yard(), "--dry-run"}).Output;
	EXPECT_THAT(Output, HasSubstr("left out, it is skinned: Figure"));
	EXPECT_THAT(Output, HasSubstr("left out, it is animated: Flag"));
	EXPECT_THAT(Output, HasSubstr("left out, it is instanced: Fence"));
	EXPECT_THAT(Output, HasSubstr("left out, it is a moving body, whose motion is said in its own space: Ball"));
	EXPECT_THAT(Output, HasSubstr("left out, its world transform has shear: Skewed parent/Leaning post"));
	EXPECT_THAT(
		Output, HasSubstr("left out, its parent combines rotation with uneven scale: Skewed parent/Straight post"));
	EXPECT_THAT(Output, HasSubstr("left out, it is a level of detail, which follows 'Statue': Statue LOD1"));
}

TEST_F(BakeCommand, ChangesNothingTheSecondTime)
{
	ASSERT_EQ(RunTarvin({"bake", Yard(), "-o", Path("once.gltf")}).ExitCode, 0);
	const FTarvinRun Run = RunTarvin({"bake", Path("once.gltf"), "-o", Path("twice.gltf")});
	EXPECT_EQ(Run.ExitCode, 0);
	EXPECT_THAT(Run.Output, HasSubstr("0 node(s) baked"));
	EXPECT_EQ(ReadAll(Path("once.gltf")), ReadAll(Path("twice.gltf")));
}

TEST_F(BakeCommand, WritesNothingInADryRun)
{
	const std::string Before = ReadAll(Yard());
	const FTarvinRun Run = RunTarvin({"bake", Yard(), "--dry-run"});
	EXPECT_EQ(Run.ExitCode, 0);
	EXPECT_THAT(Run.Output, HasSubstr("(dry run): 12 node(s) baked"));
	EXPECT_EQ(ReadAll(Yard()), Before);
	EXPECT_EQ(std::distance(std::filesystem::directory_iterator(Folder), {}), 1);
}

TEST_F(BakeCommand, WritesOverItsInputWhereNoOutputIsNamed)
{
	const std::string Before = ReadAll(Yard());
	WriteAll(Path("copy.gltf"), Before);
	EXPECT_EQ(RunTarvin({"bake", Path("copy.gltf"), "--verify"}).ExitCode, 0);
	EXPECT_NE(ReadAll(Path("copy.gltf")), Before);
	EXPECT_EQ(RunTarvin({"diff", Yard(), Path("copy.gltf")}).ExitCode, 0);
}

TEST_F(BakeCommand, WorksOnSelectedNodesOnly)
{
	const FTarvinRun Run =
		RunTarvin({"bake", Yard(), "-o", Path("some.gltf"), "--select", "Crate", "Shed/D*", "--verify"});
	EXPECT_EQ(Run.ExitCode, 0) << Run.Errors;
	EXPECT_THAT(Run.Output, HasSubstr("2 node(s) baked"));
}

TEST_F(BakeCommand, CallsNodesWithoutANameByTheirNumber)
{
	WriteAll(Path("plain.gltf"),
		R"({"asset":{"version":"2.0"},"accessors":[{"componentType":5126,"count":3,"type":"VEC3"}],)"
		R"("meshes":[{"primitives":[{"attributes":{"POSITION":0}}]}],)"
		R"("nodes":[{"children":[1]},{"mesh":0,"scale":[2,0,2]},{"mesh":0,"scale":[2,2,2]}]})");
	const FTarvinRun Run = RunTarvin({"bake", Path("plain.gltf"), "--dry-run"});
	EXPECT_THAT(Run.Output, HasSubstr("left out, its scale in the world is zero: node 0/node 1\n"));
	EXPECT_THAT(RunTarvin({"info", Path("plain.gltf")}).Output, HasSubstr("  2 'node 2' mesh 0"));
	for (const char* Pattern : {"node 2", "node [12]", "node 2*"})
	{
		EXPECT_THAT(RunTarvin({"bake", Path("plain.gltf"), "--dry-run", "--select", Pattern}).Output,
			HasSubstr("1 node(s) baked"));
	}
}

TEST_F(BakeCommand, TakesEveryPivotPosition)
{
	for (const char* Position : {"center", "bottom", "top", "left", "right", "front", "back", "world-origin"})
	{
		const FTarvinRun Run =
			RunTarvin({"pivot", Position, Yard(), "-o", Path("pivot.gltf"), "--shared", "duplicate", "--verify"});
		EXPECT_EQ(Run.ExitCode, 0) << Position << Run.Errors;
		EXPECT_THAT(Run.Output, HasSubstr("node(s) re-pivoted"));
		EXPECT_THAT(Run.Output, Not(HasSubstr(": 0 node(s) re-pivoted"))) << Position;
	}
}

TEST_F(BakeCommand, WorksOnSeveralInputsAtATime)
{
	ASSERT_EQ(RunTarvin({"demo", Path("second.glb")}).ExitCode, 0);
	const FTarvinRun Run =
		RunTarvin({"bake", Yard(), Path("second.glb"), "--out-dir", Path("made/here"), "--jobs", "2", "--verify"});
	EXPECT_EQ(Run.ExitCode, 0) << Run.Errors;
	EXPECT_LT(Run.Output.find("yard.gltf: 12 node(s) baked"), Run.Output.find("second.glb: 12 node(s) baked"));
	EXPECT_EQ(RunTarvin({"diff", Yard(), Path("made/here/yard.gltf")}).ExitCode, 0);
	EXPECT_EQ(RunTarvin({"diff", Yard(), Path("made/here/second.glb")}).ExitCode, 0);
}

TEST_F(BakeCommand, KeepsWhatItDoesNotKnow)
{
	std::string Scene = ReadAll(Yard());
	const std::string Extras = R"( "extras" : { "mine": [1.50, 2e0,  3] },)";
	const std::string Unknown = R"("ACME_unknown" :{"keep" : "me"},)";
	const std::string Extensions = R"("extensions":{"KHR_lights)";
	ASSERT_NE(Scene.find(Extensions), std::string::npos);
	Scene.insert(Scene.find(Extensions) + 14, Unknown);
	Scene.insert(1, Extras);
	WriteAll(Path("extra.gltf"), Scene);
	const FTarvinRun Run = RunTarvin({"bake", Path("extra.gltf"), "-o", Path("baked.gltf"), "--select", "Crate"});
	ASSERT_EQ(Run.ExitCode, 0) << Run.Errors;
	const std::string Baked = ReadAll(Path("baked.gltf"));
	EXPECT_THAT(Baked, testing::StartsWith("{" + Extras));
	EXPECT_THAT(Baked, HasSubstr("\"extensions\":{" + Unknown));
}

TEST_F(BakeCommand, RefusesMoreCopiesThanASmallFileMayAskFor)
{
	// Zeros that take no bytes, shown in many shapes.
	const auto Scene = [](int NumNodes)
	{
		std::string Nodes;
		for (int Node = 0; Node < NumNodes; ++Node)
		{
			Nodes +=
				(Node == 0 ? "" : ",") + std::string(R"({"mesh":0,"scale":[3,5,)") + std::to_string(2 + Node) + "]}";
		}
		return R"({"asset":{"version":"2.0"},"accessors":[{"componentType":5126,"count":50000,"type":"VEC3"}],)"
			   R"("meshes":[{"primitives":[{"attributes":{"POSITION":0}}]}],"nodes":[)" +
			   Nodes + "]}";
	};
	WriteAll(Path("many.gltf"), Scene(1500));
	const FTarvinRun Run = RunTarvin({"bake", Path("many.gltf"), "-o", Path("out.gltf")});
	EXPECT_EQ(Run.ExitCode, 3);
	EXPECT_THAT(Run.Errors, HasSubstr("many.gltf\": the copies of meshes that its nodes need would take more than"));
	EXPECT_FALSE(std::filesystem::exists(Path("out.gltf")));
	WriteAll(Path("few.gltf"), Scene(3));
	EXPECT_EQ(RunTarvin({"bake", Path("few.gltf"), "-o", Path("out.gltf")}).ExitCode, 0);
}
