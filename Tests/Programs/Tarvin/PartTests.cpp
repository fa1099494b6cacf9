// SPDX-License-Identifier: MIT
#include "TarvinProcess.h"

#include "SceneIO/GltfDocument.h"
#include "SceneIO/SceneDiff.h"
#include "SceneIO/ScenePicture.h"
#include "SceneIO/SceneSpace.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace
{
const std::string Used =
	R"("extensionsUsed":["KHR_implicit_shapes","KHR_lights_punctual","KHR_physics_rigid_bodies"],)";
const std::string Lists = R"("cameras":[{"type":"perspective","perspective":{"yfov":1,"znear":1}}],)"
						  R"("extensions":{"KHR_lights_punctual":{"lights":[{"type":"spot","spot":{}}]},)"
						  R"("KHR_implicit_shapes":{"shapes":[{"type":"box","box":{"size":[1,2,3]}}]},)"
						  R"("KHR_physics_rigid_bodies":{"physicsMaterials":[{}]}},)";
const std::string Triangle =
	R"("buffers":[{"byteLength":36,"uri":"data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAAEAAAEBA"}],)"
	R"("bufferViews":[{"buffer":0,"byteLength":36}],"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,2,3]}],)"
	R"("meshes":[{"name":"Rock","primitives":[{"attributes":{"POSITION":0}}]}],)";
const std::string Camera = R"("camera":0)";
const std::string Light = R"("extensions":{"KHR_lights_punctual":{"light":0}})";

/// A collider, trigger or whatever stands in the text, on a node.
std::string Body(const std::string& Members)
{
	return R"("extensions":{"KHR_physics_rigid_bodies":{)" + Members + "}}";
}
const std::string BoxCollider = R"("collider":{"geometry":{"shape":0},"physicsMaterial":0})";
const std::string All = Camera + R"(,"extensions":{"KHR_lights_punctual":{"light":0},"KHR_physics_rigid_bodies":{)" +
						BoxCollider + R"(,"trigger":{"geometry":{"shape":0}}}})";

/// Scenes whose nodes carry more than a mesh, and what the program makes of them.
class CarriedParts : public FYardFixture
{
protected:
	/// Writes a scene of one triangle mesh and these nodes.
	void Write(const std::string& Nodes) const
	{
		WriteAll(Path("in.gltf"),
			R"({"asset":{"version":"2.0"},)" + Used + Lists + Triangle + R"("nodes":[)" + Nodes + "]}");
	}

	FTarvinRun Run(const std::string& Shared = "duplicate", const std::vector<std::string>& Command = {"bake"}) const
	{
		std::vector<std::string> Words = Command;
		Words.insert(Words.end(), {Path("in.gltf"), "-o", Path("out.gltf"), "--shared", Shared, "--verify"});
		return RunTarvin(Words);
	}

	std::shared_ptr<const FGltfDocument> Load(const char* Name) const
	{
		TSceneResult<std::shared_ptr<const FGltfDocument>> Document = FGltfDocument::Load(Path(Name));
		EXPECT_TRUE(Document.IsOk()) << (Document ? "" : Document.Error().Message);
		return Document ? Document.Take() : nullptr;
	}

	/// The nodes of the result, as text.
	std::string NodesOut() const
	{
		const std::string Text = ReadAll(Path("out.gltf"));
		return Text.substr(Text.find("\"nodes\":") + 8);
	}
};

/// How far the node of the one scene is from that of the other, in the world.
double WorldDifference(const std::shared_ptr<const FGltfDocument>& A, FGltfIndex NodeA,
	const std::shared_ptr<const FGltfDocument>& B, FGltfIndex NodeB)
{
	return RelativeDifference(FScenePicture(A).World(NodeA), FScenePicture(B).World(NodeB));
}
} // namespace

TEST_F(CarriedParts, StayInTheirPlaceWhenTheirMeshIsBaked)
{
	const std::string Rotation = R"("rotation":[0.1,0.5,-0.3,0.806225774829855])";
	const std::string Places[] = {
		Rotation + R"(,"scale":[2,2,2],"translation":[5,-7,3])",
		Rotation + R"(,"scale":[-2,2,2],"translation":[5,-7,3])",
		Rotation + R"(,"scale":[2,0.5,7],"translation":[5,-7,3])",
		Rotation + R"(,"scale":[2,-0.5,7])",
		R"("matrix":[0,0,-2,0,0,3,0,0,5,0,0,0,1,2,3,1])",
	};
	for (const std::string& Place : Places)
	{
		for (const bool bUnderParent : {false, true})
		{
			SCOPED_TRACE(Place);
			const std::string Parent = R"(,{"name":"Up",)" + Rotation + R"(,"scale":[3,3,3],"children":[0]})";
			Write(R"({"name":"N","mesh":0,)" + Place + "," + All + "}" + (bUnderParent ? Parent : ""));
			const FTarvinRun Done = Run();
			ASSERT_EQ(Done.ExitCode, 0) << Done.Output << Done.Errors;
			ASSERT_THAT(Done.Output, HasSubstr(": 1 node(s) baked"));
			const auto Before = Load("in.gltf");
			const auto After = Load("out.gltf");
			const FGltfIndex Child = After->Node(0).Children.at(0);
			EXPECT_LE(WorldDifference(Before, 0, After, Child), 1e-12);
			EXPECT_GT(WorldDifference(Before, 0, After, 0), 1e-1) << "the node itself has been baked";
			EXPECT_EQ(After->Node(0).Camera, NoIndex);
			EXPECT_EQ(After->Node(0).Extensions, nullptr);
			EXPECT_EQ(After->Node(Child).Camera, 0);
			EXPECT_EQ(After->Node(Child).Mesh, NoIndex);
			EXPECT_EQ(After->Node(Child).Extensions->Light, 0);
			EXPECT_EQ(After->Node(Child).Extensions->RigidBody->Collider->Geometry.Shape, 0);
			EXPECT_EQ(After->Node(Child).Extensions->RigidBody->Trigger->Geometry.Shape, 0);
		}
	}
}

TEST_F(CarriedParts, ARotatedShapeGetsAChildNode)
{
	Write(R"({"name":"Wall","mesh":0,"rotation":[0,0.6,0,0.8],"children":[1],)" + Body(BoxCollider) +
		  R"(},{"name":"Low"})");
	ASSERT_EQ(Run().ExitCode, 0);
	EXPECT_EQ(NodesOut(),
		R"([{"name":"Wall","mesh":0,"children":[1,2]},{"name":"Low","rotation":[0,0.6,0,0.8]},{"name":"Wall parts",)" +
			Body(BoxCollider) + R"(,"rotation":[0,0.6,0,0.8]}]})");
}

TEST_F(CarriedParts, OnlyWhatHasAPlaceIsMoved)
{
	const std::string Kept = R"("KHR_node_visibility":{"visible":true})";
	Write(R"({"name":"A","mesh":0,"scale":[2,2,2],"extras":7,"extensions":{)" + Kept +
		  R"(,"KHR_lights_punctual":{"light":0}}})");
	ASSERT_EQ(Run().ExitCode, 0);
	EXPECT_EQ(NodesOut(), R"([{"name":"A","mesh":0,"extras":7,"extensions":{)" + Kept +
							  R"(},"children":[1]},{"name":"A parts",)" + Light + R"(,"scale":[2,2,2]}]})");
}

TEST_F(CarriedParts, MoveWithAPivotOnlyAsFarAsTheNodeDoes)
{
	Write(R"({"mesh":0,"rotation":[0,0.6,0,0.8],"scale":[2,3,-5],)" + Camera + "}");
	ASSERT_EQ(Run("duplicate", {"pivot", "center"}).ExitCode, 0);
	const auto After = Load("out.gltf");
	EXPECT_LE(WorldDifference(Load("in.gltf"), 0, After, 1), 1e-12);
	EXPECT_EQ(After->Node(1).Rotation, (std::array<double, 4>{0, 0, 0, 1}));
	EXPECT_EQ(After->Node(1).Scale, (std::array<double, 3>{1, 1, 1}));
	EXPECT_EQ(After->Node(1).Name, "parts");
}

TEST_F(CarriedParts, ASecondBakeChangesNothing)
{
	Write(R"({"mesh":0,"scale":[2,2,2],)" + All + "}");
	ASSERT_EQ(Run().ExitCode, 0);
	ASSERT_EQ(RunTarvin({"bake", Path("out.gltf"), "-o", Path("again.gltf")}).ExitCode, 0);
	EXPECT_EQ(ReadAll(Path("out.gltf")), ReadAll(Path("again.gltf")));
}

TEST_F(CarriedParts, OfANodeThatStaysAreNotTouched)
{
	Write(R"({"name":"A","mesh":0,)" + All + R"(},{"name":"B","scale":[2,2,2],)" + All + "}");
	ASSERT_EQ(Run().ExitCode, 0);
	EXPECT_EQ(ReadAll(Path("out.gltf")), ReadAll(Path("in.gltf")));
}

TEST_F(CarriedParts, TheMotionOfABodyStaysInItsSpace)
{
	const std::string Motion = R"("motion":{"linearVelocity":[1,2,3],"centerOfMass":[0.1,0,0]})";
	Write(R"({"name":"Ball","mesh":0,"scale":[2,2,2],)" + Body(Motion + "," + BoxCollider) + R"(,"children":[1]},)" +
		  R"({"name":"Part","mesh":0,"rotation":[0,0.6,0,0.8],)" + Body(BoxCollider) + "}");
	const FTarvinRun Done = Run();
	ASSERT_EQ(Done.ExitCode, 0);
	EXPECT_THAT(Done.Output, HasSubstr("left out, it is a moving body, whose motion is said in its own space: Ball"));
	const auto After = Load("out.gltf");
	EXPECT_THAT(
		NodesOut(), HasSubstr(R"([{"name":"Ball","mesh":0,"scale":[2,2,2],)" + Body(Motion + "," + BoxCollider)));
	EXPECT_EQ(After->Node(2).Parent, 1) << "the collider still belongs to the body above it";
	EXPECT_LE(WorldDifference(Load("in.gltf"), 1, After, 2), 1e-12);
}

TEST_F(CarriedParts, NodesThatShapeTheCollidersOfOthersKeepTheirMesh)
{
	// Once the shape is a visible node, once a node of no scene.
	for (const bool bVisible : {true, false})
	{
		Write(R"({"name":"Shape","mesh":0,"scale":[2,2,2]},{"name":"Door","rotation":[0,0.6,0,0.8],)" +
			  Body(R"("collider":{"geometry":{"node":0}})") +
			  R"(},{"name":"Shown","mesh":0,"scale":[3,2,2]}],"scenes":[{"nodes":[)" + (bVisible ? "0," : "") +
			  "1,2]}");
		const FTarvinRun Copied = Run("duplicate");
		EXPECT_EQ(Copied.ExitCode, 0) << Copied.Errors;
		EXPECT_THAT(Copied.Output, HasSubstr("left out, it is named by the collider of 'Door': Shape"));
		EXPECT_THAT(Copied.Output, HasSubstr("1 node(s) baked, 1 new asset(s)"));
		const auto After = Load("out.gltf");
		EXPECT_EQ(After->Node(0).Mesh, 0);
		EXPECT_EQ(After->Node(2).Mesh, 1);
		const auto Deviation = CompareScenes(Load("in.gltf"), After);
		ASSERT_EQ(Deviation->Parts.size(), 1u);
		EXPECT_TRUE(Deviation->Parts[0].bOfMesh);
		EXPECT_EQ(Deviation->Parts[0].Position, 0.0);

		const FTarvinRun InPlace = Run("in-place");
		EXPECT_THAT(InPlace.Output, HasSubstr("0 node(s) baked"));
		EXPECT_THAT(InPlace.Output,
			HasSubstr("left out, baking 'Rock' in place would change 'Shape', which cannot follow (it is named by the "
					  "collider of 'Door'): Shown"));
		EXPECT_EQ(ReadAll(Path("out.gltf")), ReadAll(Path("in.gltf")));
	}
}

TEST_F(CarriedParts, AColliderInTheShapeOfItsOwnNodeFollowsTheMesh)
{
	const std::string Self = Body(R"("collider":{"geometry":{"node":0,"convexHull":true}})");
	Write(R"({"name":"A","mesh":0,"rotation":[0,0.6,0,0.8],"scale":[2,-3,5],)" + Self + "}");
	const FTarvinRun Done = Run();
	ASSERT_EQ(Done.ExitCode, 0) << Done.Output;
	EXPECT_EQ(NodesOut(), R"([{"name":"A","mesh":0,)" + Self + "}]}");
	const auto Deviation = CompareScenes(Load("in.gltf"), Load("out.gltf"));
	ASSERT_EQ(Deviation->Parts.size(), 1u);
	EXPECT_LE(Deviation->Parts[0].Position, 1e-6);
}

TEST_F(CarriedParts, ThatCannotBeHeldExactlyLeaveTheirNodeOut)
{
	// A shear that no viewer shows, and a physics engine might.
	const std::string Place = R"("matrix":[2,0,0,0,3e-8,2,0,0,0,0,2,0,0,0,0,1])";
	Write(R"({"name":"A","mesh":0,)" + Place + "," + Light + R"(},{"name":"B","mesh":0,)" + Place + "}");
	EXPECT_THAT(Run().Output, HasSubstr("left out, its light cannot be held in its place exactly: A\n"));
	EXPECT_THAT(Run().Output, HasSubstr(": 1 node(s) baked"));
}

TEST_F(CarriedParts, ThatMovedWronglyAreFound)
{
	const std::pair<std::string, const char*> Cases[] = {{Camera, "camera"}, {Light, "light"},
		{Body(BoxCollider), "collider"}, {Body(R"("trigger":{"geometry":{"shape":0}})"), "trigger"}};
	for (const auto& [Part, Name] : Cases)
	{
		Write(R"({"name":"A","mesh":0,"children":[1]},{"name":"P","rotation":[0,0.6,0,0.8],)" + Part + "}");
		WriteAll(Path("out.gltf"), ReadAll(Path("in.gltf")));
		Write(R"({"name":"A","mesh":0,"children":[1]},{"name":"P","rotation":[0,0.8,0,0.6],)" + Part + "}");
		EXPECT_EQ(RunTarvin({"diff", Path("in.gltf"), Path("in.gltf")}).ExitCode, 0);
		EXPECT_EQ(RunTarvin({"diff", Path("in.gltf"), Path("out.gltf")}).ExitCode, 5) << Name;

		Write(R"({"name":"A","mesh":0,"children":[1]},{"name":"P","rotation":[0,0.6,0,0.8]})");
		const FTarvinRun Lost = RunTarvin({"diff", Path("in.gltf"), Path("out.gltf")});
		EXPECT_EQ(Lost.ExitCode, 5);
		EXPECT_THAT(Lost.Output, HasSubstr(std::string("the ") + Name + " of node 1 'P' is in the second scene only"));
	}
}

TEST_F(CarriedParts, ThatMovedToAChildAreTheSameEitherWay)
{
	Write(R"({"mesh":0,"rotation":[0,0.6,0,0.8],)" + All + "}");
	ASSERT_EQ(Run().ExitCode, 0);
	for (const auto& [A, B] : {std::pair("in.gltf", "out.gltf"), {"out.gltf", "in.gltf"}})
	{
		const auto Deviation = CompareScenes(Load(A), Load(B));
		ASSERT_EQ(Deviation->Parts.size(), 4u);
		EXPECT_EQ(Deviation->NumDifferent, 0u);
		EXPECT_LE(Deviation->Position, 1e-6);
	}
}
