// SPDX-License-Identifier: MIT
// Scenes in which a bake is easily got wrong, judged by a viewer of the test's own.
#include "PlainViewer.h"
#include "TarvinProcess.h"

#include "Host/SceneIO/SceneText.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>

using testing::HasSubstr;

namespace
{
const std::string Turn = R"("rotation":[0.1,0.5,-0.3,0.806225774829855])";

class BakeTrap : public FYardFixture
{
protected:
	FTarvinRun Bake(const FSceneText& Scene, const std::vector<std::string>& More = {},
		const std::vector<std::string>& Command = {"bake"}) const
	{
		WriteAll(Path("in.gltf"), Scene.Text(""));
		std::vector<std::string> Words = Command;
		Words.insert(Words.end(), {Path("in.gltf"), "-o", Path("out.gltf"), "--verify"});
		Words.insert(Words.end(), More.begin(), More.end());
		return RunTarvin(Words);
	}

	std::shared_ptr<const FGltfDocument> Before() const { return MustLoad(Path("in.gltf")); }
	std::shared_ptr<const FGltfDocument> After() const { return MustLoad(Path("out.gltf")); }

	/// Bakes, and fails unless that many nodes were baked and every node looks as it did.
	void ExpectSameLook(
		const FSceneText& Scene, int NumBaked, const std::vector<std::string>& More = {}, double Tolerance = 1e-5) const
	{
		const FTarvinRun Run = Bake(Scene, More);
		ASSERT_EQ(Run.ExitCode, 0) << Run.Errors << Run.Output;
		EXPECT_THAT(Run.Output, HasSubstr(": " + std::to_string(NumBaked) + " node(s) baked"));
		const auto Old = Before();
		const auto New = After();
		int NumPlain = 0;
		for (FGltfIndex Node = 0; Node < FGltfIndex(Old->Model().Nodes.size()); ++Node)
		{
			if (Old->Node(Node).Mesh != NoIndex)
			{
				EXPECT_TRUE(IsShownAlike(ShowNode(Old, Node), ShowNode(New, Node), Tolerance)) << "node " << Node;
				NumPlain += IsPlain(ShownPlace(*New, Node)) ? 1 : 0;
			}
		}
		EXPECT_GE(NumPlain, NumBaked);
	}

	/// Neither rotation nor scale.
	static bool IsPlain(const std::array<double, 16>& Place)
	{
		bool bPlain = true;
		for (std::size_t Cell = 0; Cell < 12; ++Cell)
		{
			bPlain = bPlain && std::abs(Place[Cell] - (Cell % 5 == 0 ? 1.0 : 0.0)) <= 1e-9;
		}
		return bPlain;
	}

	/// Fails unless no node is baked, for that reason, and the scene stays as it was to the byte.
	void ExpectLeftOut(const FSceneText& Scene, const std::string& Reason) const
	{
		const FTarvinRun Run = Bake(Scene);
		EXPECT_EQ(Run.ExitCode, 0) << Run.Errors;
		EXPECT_THAT(Run.Output, HasSubstr("left out, " + Reason));
		EXPECT_EQ(ReadAll(Path("out.gltf")), ReadAll(Path("in.gltf")));
	}

	/// Six vertices that are no two alike, with normals that are not at right angles to anything, and tangents of both
	/// sides. Returns the members of "attributes".
	static std::string AddVertices(FSceneText& Scene)
	{
		const int Position = Scene.AddVec3({0, 0, 0, 2, 0.5f, 0, 0.25f, 3, 5, -1, 2, -4, 3, -2, 1, -0.5f, -0.75f, 2},
			R"(,"min":[-1,-2,-4],"max":[3,3,5])");
		const int Normal = Scene.AddVec3(
			{0, 0, 1, 0, 0.6f, 0.8f, 0.6f, 0, -0.8f, -0.8f, 0.6f, 0, 0.48f, 0.6f, 0.64f, -0.48f, -0.6f, 0.64f});
		const int Tangent = Scene.AddVec4({1, 0, 0, 1, 0, 0.8f, -0.6f, -1, 0.8f, 0, 0.6f, 1, 0.6f, 0.8f, 0, -1, 0.64f,
			-0.8f, 0.27f, 1, 0.8f, 0.6f, 0, -1});
		return "\"POSITION\":" + std::to_string(Position) + ",\"NORMAL\":" + std::to_string(Normal) +
			   ",\"TANGENT\":" + std::to_string(Tangent);
	}
};
} // namespace

TEST_F(BakeTrap, DirectionsAndSidesStayUnderAnyRotationAndScale)
{
	for (const char* Scale : {"[2,2,2]", "[1,2,5]", "[-1,2,5]", "[3,-3,3]", "[-1,-2,5]", "[-2,-2,-2]", "[-1,-1,-1]"})
	{
		for (const char* Mode : {"4", "5", "6"})
		{
			SCOPED_TRACE(std::string(Scale) + " in mode " + Mode);
			FSceneText Scene;
			const std::string Attributes = AddVertices(Scene);
			Scene.AddMesh(Attributes, std::string(",\"mode\":") + Mode);
			Scene.AddMesh(Attributes, std::string(",\"mode\":") + Mode +
										  ",\"indices\":" + std::to_string(Scene.AddIndices({5, 3, 1, 0, 2, 4})));
			const std::string Place = R"(,"translation":[5,-7,3],)" + Turn + ",\"scale\":" + Scale;
			Scene.AddNode("\"mesh\":0" + Place);
			Scene.AddNode("\"mesh\":1" + Place);
			ExpectSameLook(Scene, 2);
		}
	}
}

TEST_F(BakeTrap, NormalsUnderUnevenScaleAreTheSurfacesNotThePoints)
{
	FSceneText Scene;
	Scene.AddMesh(AddVertices(Scene));
	Scene.AddNode(R"("mesh":0,"scale":[1,2,-4])");
	ASSERT_EQ(Bake(Scene).ExitCode, 0);
	const std::vector<FShownPrimitive> Shown = ShowNode(After(), 0);
	// (0, 0.6, 0.8) by the inverse scale is (0, 0.3, -0.2).
	EXPECT_NEAR(Shown[0].Normals[1][1], 0.3 / std::hypot(0.3, 0.2), 1e-6);
	EXPECT_NEAR(Shown[0].Normals[1][2], -0.2 / std::hypot(0.3, 0.2), 1e-6);
	// (0, 0.8, -0.6) by the scale is (0, 1.6, 2.4); its side was -1.
	EXPECT_NEAR(Shown[0].Tangents[1][2], 2.4 / std::hypot(1.6, 2.4), 1e-6);
	EXPECT_EQ(Shown[0].Tangents[1][3], 1.0);
}

TEST_F(BakeTrap, OneMeshOnSeveralNodesOneOfThemMirrored)
{
	FSceneText Scene;
	Scene.AddMesh(AddVertices(Scene), ",\"indices\":" + std::to_string(Scene.AddIndices({0, 1, 2, 3, 4, 5})));
	Scene.AddNode(R"("mesh":0,"scale":[2,3,5])");
	Scene.AddNode(R"("mesh":0,"scale":[-2,3,5])");
	Scene.AddNode(R"("mesh":0)");
	ExpectSameLook(Scene, 2, {"--shared", "duplicate"});
	EXPECT_EQ(After()->Node(2).Mesh, 0);
	EXPECT_EQ(After()->Model().Meshes.size(), 3u);
	EXPECT_TRUE(After()->BufferBytes(0)->size() > Before()->BufferBytes(0)->size());
	ExpectSameLook(Scene, 0, {"--shared", "in-place"});
}

TEST_F(BakeTrap, AccessorsThatMeshesShareAreWorkedOnOnce)
{
	FSceneText Scene;
	const std::string Attributes = AddVertices(Scene);
	const std::string Indices = ",\"indices\":" + std::to_string(Scene.AddIndices({0, 1, 2, 3, 4, 5}));
	Scene.AddMesh(Attributes, Indices);
	Scene.AddMesh(Attributes, Indices);
	Scene.AddNode(R"("name":"A","mesh":0,"scale":[-2,3,5])");
	Scene.AddNode(R"("name":"B","mesh":1,)" + Turn + R"(,"scale":[1,1,4])");
	ExpectSameLook(Scene, 2);
	ExpectSameLook(Scene, 1, {"--select", "A"});
	ExpectSameLook(Scene, 1, {"--select", "B"});
}

TEST_F(BakeTrap, AccessorsThatPrimitivesShareAreWorkedOnOnce)
{
	FSceneText Scene;
	const std::string Attributes = AddVertices(Scene);
	Scene.AddMesh(Attributes + "}},{\"mode\":5,\"attributes\":{" + Attributes);
	Scene.AddNode("\"mesh\":0," + Turn + R"(,"scale":[-2,3,5])");
	ExpectSameLook(Scene, 1);
	EXPECT_EQ(After()->Model().Meshes[0].Primitives.size(), 2u);
}

TEST_F(BakeTrap, QuantisedAttributesAreWrittenAsWhatTheyMean)
{
	for (const bool bNormalized : {false, true})
	{
		for (const char* Place : {R"("scale":[2,2,2])", R"("scale":[0.01,0.01,0.01])", R"("rotation":[0,0,1,0])"})
		{
			SCOPED_TRACE(std::string(Place) + (bNormalized ? " normalised" : ""));
			FSceneText Scene;
			const std::string Normalized = bNormalized ? ",\"normalized\":true" : "";
			const std::vector<std::int16_t> Positions = {
				-32767, 0, 32767, 0, 123, -20000, 7, 0, 32767, 32767, -32767, 0};
			Scene.AddView({reinterpret_cast<const char*>(Positions.data()), 24}, ",\"byteStride\":8");
			Scene.AddAccessor(0, 5122, 3, "VEC3", Normalized);
			const std::vector<std::int8_t> Normals = {0, 0, 127, 0, 0, 76, 102, 0, -102, 0, 76, 0};
			Scene.AddView({reinterpret_cast<const char*>(Normals.data()), 12}, ",\"byteStride\":4");
			Scene.AddAccessor(1, 5120, 3, "VEC3", ",\"normalized\":true");
			Scene.AddMesh("\"POSITION\":0,\"NORMAL\":1");
			Scene.AddNode(std::string("\"mesh\":0,") + Place);
			Scene.Root =
				R"(,"extensionsUsed":["KHR_mesh_quantization"],"extensionsRequired":["KHR_mesh_quantization"])";
			ExpectSameLook(Scene, 1, {}, bNormalized ? 1e-6 : 1e-2);
		}
	}
}

TEST_F(BakeTrap, MatricesGiveWayToPlaces)
{
	FSceneText Scene;
	Scene.AddMesh(AddVertices(Scene));
	Scene.AddMesh(AddVertices(Scene));
	Scene.AddNode(R"("name":"M","matrix":[0,0,-2,0,0,3,0,0,5,0,0,0,1,2,3,1],"mesh":0)");
	Scene.AddNode(R"("matrix":[2,0,0,0,0,2,0,0,0,0,2,0,0,0,9,1],"children":[2])");
	Scene.AddNode(R"("mesh":1,"matrix":[0,2,0,0,-2,0,0,0,0,0,-2,0,3,5,7,1])");
	ExpectSameLook(Scene, 2);
	EXPECT_THAT(ReadAll(Path("out.gltf")), HasSubstr(R"({ "name":"M","mesh":0,"translation":[1,2,3] })"));
}

TEST_F(BakeTrap, ChildrenOfABakedNodeStayWhereTheyAre)
{
	FSceneText Scene;
	for (int Mesh = 0; Mesh < 3; ++Mesh)
	{
		Scene.AddMesh(AddVertices(Scene));
	}
	Scene.AddNode(R"("name":"Up","mesh":0,"translation":[5,-7,3],"scale":[-3,3,3],)" + Turn + R"(,"children":[1])");
	Scene.AddNode(R"("name":"Mid","translation":[1,2,3],"scale":[2,2,2],)" + Turn + R"(,"children":[2])");
	Scene.AddNode(R"("name":"Low","mesh":1,"translation":[0,2,0],"scale":[1,2,5],)" + Turn + R"(,"children":[3])");
	Scene.AddNode(R"("name":"Flat","mesh":2,"translation":[0,0,1],"scale":[2,1,1])");
	for (const char* Selected : {"Up", "Low", "[UL]*"})
	{
		SCOPED_TRACE(Selected);
		ExpectSameLook(Scene, std::string(Selected) == "[UL]*" ? 2 : 1, {"--select", Selected});
	}
	ExpectSameLook(Scene, 3); // the lowest one once its parent is even
}

TEST_F(BakeTrap, MorphedMeshesStayAsTheyAre)
{
	FSceneText Scene;
	const std::string Attributes = AddVertices(Scene);
	Scene.AddMesh(Attributes, R"(,"targets":[{"POSITION":0}])");
	Scene.AddNode(R"("name":"M","mesh":0,"scale":[2,2,2])");
	ExpectLeftOut(Scene, "its mesh is morphed: M");
	EXPECT_THAT(Bake(Scene, {}, {"pivot", "top"}).Output, HasSubstr("left out, its mesh is morphed: M"));
	EXPECT_EQ(ReadAll(Path("out.gltf")), ReadAll(Path("in.gltf")));
}

TEST_F(BakeTrap, MeshesThatCarryWhatNobodyKnowsStayAsTheyAre)
{
	FSceneText OfPrimitive;
	OfPrimitive.AddMesh(AddVertices(OfPrimitive), R"(,"extensions":{"ACME_strokes":{"width":2}})");
	OfPrimitive.AddNode(R"("name":"N","mesh":0,"scale":[2,2,2])");
	ExpectLeftOut(OfPrimitive, "its mesh carries ACME_strokes: N");

	FSceneText OfMesh;
	OfMesh.AddMesh(AddVertices(OfMesh));
	OfMesh.Meshes[0].insert(OfMesh.Meshes[0].size() - 2, R"(,"extensions":{"ACME_wind":{}})");
	OfMesh.AddNode(R"("name":"N","mesh":0,"scale":[2,2,2])");
	ExpectLeftOut(OfMesh, "its mesh carries ACME_wind: N");
}

TEST_F(BakeTrap, NodesAboveWhatIsAnimatedStayAsTheyAre)
{
	FSceneText Scene;
	Scene.AddMesh(AddVertices(Scene));
	const int Times = Scene.Add<float>({0, 1}, 5126, "SCALAR", 1, R"(,"min":[0],"max":[1])");
	const int Places = Scene.AddVec3({0, 0, 0, 1, 0, 0});
	Scene.AddNode(R"("name":"Cart","mesh":0,"scale":[2,2,2],"children":[1])");
	Scene.AddNode(R"("name":"Wheel")");
	Scene.Root = R"(,"animations":[{"samplers":[{"input":)" + std::to_string(Times) + R"(,"output":)" +
				 std::to_string(Places) + R"(}],"channels":[{"sampler":0,"target":{"node":1,"path":"translation"}}]}])";
	ExpectLeftOut(Scene, "its child 'Wheel' is animated: Cart");
}

TEST_F(BakeTrap, LevelsThatCannotFollowKeepTheirNodeAsItIs)
{
	FSceneText Scene;
	Scene.AddMesh(AddVertices(Scene));
	Scene.AddMesh(AddVertices(Scene));
	Scene.AddNode(R"("name":"Near","mesh":0,"scale":[2,2,2],"extensions":{"MSFT_lod":{"ids":[1]}})");
	Scene.AddNode(R"("name":"Far","mesh":1,"translation":[1,0,0])");
	Scene.Root = R"(,"scenes":[{"nodes":[0]}],"extensionsUsed":["MSFT_lod"])";
	ExpectLeftOut(Scene, "its levels of detail cannot follow: they are shared, placed on their own, or placed "
						 "otherwise: Near");
}

TEST_F(BakeTrap, NothingButTheChangedNumbersIsWritten)
{
	FSceneText Scene;
	Scene.AddVec3({0, 0, 0, 1, 0, 0, 0, 1, 3}, R"(, "max" : [1.0,1,3], "name":"places", "min" : [0,0,0.00])");
	Scene.Views[0].insert(1, R"( "extras" : [ 1.0, 2e0 ],)");
	Scene.AddMesh("\"POSITION\" : 0", R"(, "extras":{ "z" : 1, "a":{} }, "material":0)");
	Scene.AddNode(R"("extras" : {"b":1.50,"a":[ ]}, "scale" : [ 2.0, 2, 2 ], "mesh" : 0, "name":"\u0041\/B")");
	Scene.AddNode(R"("name":"A\/B", "scale":[ 1.0, 1, 1e0 ])");
	Scene.Root = R"(, "materials":[ { "name" : "m", "extensions":{ "ACME_m":{ "x":1.0 } } } ],
  "extras" : { "n" : 12345678901234567890123, "n":2 }, "extensions" : { "ACME_root" : { "deep":[[1e400]] } })";
	ASSERT_EQ(Bake(Scene).ExitCode, 0);
	std::string Expected = ReadAll(Path("in.gltf"));
	std::string Result = ReadAll(Path("out.gltf"));
	const auto Replace = [](std::string& Text, const std::string& Old, const std::string& New)
	{
		ASSERT_NE(Text.find(Old), std::string::npos) << Old;
		Text.replace(Text.find(Old), Old.size(), New);
	};
	Replace(Expected, "\"max\" : [1.0,1,3]", "\"max\" : [2,2,6]");
	Replace(Expected, ", \"scale\" : [ 2.0, 2, 2 ]", "");
	for (std::string* Text : {&Expected, &Result})
	{
		const std::size_t Data = Text->find("base64,") + 7;
		Text->erase(Data, Text->find('"', Data) - Data);
	}
	EXPECT_EQ(Result, Expected);
}
