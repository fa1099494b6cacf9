// SPDX-License-Identifier: MIT
#include "SceneIO/GltfDocument.h"

#include "SceneText.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;
using testing::StartsWith;

namespace
{
/// A scene of text with the version and further members of the root.
std::string Root(const std::string& Members)
{
	return "{\"asset\":{\"version\":\"2.0\"}" + (Members.empty() ? "" : "," + Members) + "}";
}

std::string Because(const std::string& Why)
{
	return "Cannot read \"scene.gltf\": " + Why + ".";
}
}

TEST(Document, ATextSceneIsReadWithItsBuffer)
{
	const FTempFolder Folder;
	const auto Document = MustLoad(TriangleScene().WriteText(Folder));
	EXPECT_FALSE(Document->IsBinary());
	ASSERT_EQ(Document->Model().Nodes.size(), 1u);
	EXPECT_EQ(Document->Node(0).Name, "A");
	EXPECT_EQ(Document->Node(0).Scale, (std::array<double, 3>{2, 3, 5}));
	EXPECT_EQ(Document->Node(0).Rotation, (std::array<double, 4>{0, 0, 1, 0}));
	EXPECT_EQ(Document->Mesh(0).Primitives[0].Attributes.size(), 2u);
	EXPECT_TRUE(Document->BufferBytes(0).IsOk());
}

TEST(Document, AllContainersHoldTheSameBytes)
{
	const FTempFolder Folder;
	const FSceneText Scene = TriangleScene();
	for (const std::string& Path :
		{Scene.WriteText(Folder), Scene.WriteEmbedded(Folder, "e.gltf"), Scene.WriteBinary(Folder)})
	{
		const auto Document = MustLoad(Path);
		EXPECT_EQ(AsText(*Document->BufferBytes(0)), Scene.Bytes) << Path;
	}
}

TEST(Document, ABinarySceneIsKnownByItsContent)
{
	const FTempFolder Folder;
	EXPECT_TRUE(MustLoad(TriangleScene().WriteBinary(Folder, "odd.name"))->IsBinary());
}

TEST(Document, BinaryChunksAreReadAsViewersReadThem)
{
	const FTempFolder Folder;
	const std::string Plain = BinaryScene(Root("\"buffers\":[{\"byteLength\":4}]"), "abcd");
	std::string Tail = Plain + "tail";
	EXPECT_EQ(AsText(*MustLoad(Folder.Write("tail.glb", Tail))->BufferBytes(0)), "abcd");

	std::string Unknown = Plain;
	Unknown += std::string("\x04\0\0\0XYZWxyzw", 12);
	Unknown[8] = static_cast<char>(Unknown.size());
	EXPECT_EQ(MustLoad(Folder.Write("unknown.glb", Unknown))->File().Chunks.size(), 2u);

	std::string Twice = Plain + Plain.substr(Plain.size() - 12);
	Twice[8] = static_cast<char>(Twice.size());
	EXPECT_THAT(RefusalOf(Folder.Write("twice.glb", Twice)), HasSubstr("two binary chunks"));

	std::string NotJson = Plain;
	NotJson.replace(16, 4, "NOSJ");
	EXPECT_THAT(RefusalOf(Folder.Write("nojson.glb", NotJson)), HasSubstr("its first chunk is not JSON"));
}

TEST(Document, AnyOtherVersionIsRefused)
{
	EXPECT_EQ(RefusalOfText("{\"asset\":{\"version\":\"1.0\"}}"),
		Because("/asset/version is 1.0, but only version 2 can be read"));
	EXPECT_EQ(RefusalOfText("{}"), Because("/asset is missing"));
	EXPECT_EQ(RefusalOfText("{\"asset\":{\"version\":\"2.1\"}}"), "accepted");
}

TEST(Document, RequiredExtensionsThatAreNotSupportedAreNamed)
{
	EXPECT_EQ(RefusalOfText(Root("\"extensionsRequired\":[\"KHR_materials_unlit\",\"ACME_geometry\"]")),
		Because("/extensionsRequired asks for the extension ACME_geometry, which is not supported"));
	EXPECT_EQ(RefusalOfText(Root("\"extensionsUsed\":[\"ACME_geometry\"]")), "accepted");
}

TEST(Document, IndicesBeyondTheirListsAreRefused)
{
	EXPECT_EQ(RefusalOfText(Root("\"nodes\":[{\"mesh\":0}]")), Because("/nodes/0/mesh is 0, but there are 0 meshes"));
	EXPECT_EQ(RefusalOfText(Root("\"nodes\":[{\"children\":[3]}]")),
		Because("/nodes/0/children/0 is 3, but there are 1 nodes"));
	EXPECT_EQ(RefusalOfText(Root("\"nodes\":[{\"camera\":-1}]")), Because("/nodes/0/camera is not an index"));
	EXPECT_EQ(RefusalOfText(Root("\"bufferViews\":[{\"buffer\":0,\"byteLength\":1}]")),
		Because("/bufferViews/0/buffer is 0, but there are 0 buffers"));
}

TEST(Document, CyclesAndSecondParentsAreRefused)
{
	EXPECT_EQ(RefusalOfText(Root("\"nodes\":[{\"children\":[1]},{\"children\":[0]}]")),
		Because("/nodes/0 is its own ancestor, or lies below a node that is"));
	EXPECT_EQ(RefusalOfText(Root("\"nodes\":[{\"children\":[0]}]")),
		Because("/nodes/0 is its own ancestor, or lies below a node that is"));
	EXPECT_EQ(RefusalOfText(Root("\"nodes\":[{\"children\":[2]},{\"children\":[2]},{}]")),
		Because("/nodes/1/children holds node 2, which is already a child of node 0"));
}

TEST(Document, ASceneMayListAChildOnlyWhereNothingMovesIt)
{
	EXPECT_EQ(RefusalOfText(Root("\"scenes\":[{\"nodes\":[1]}],\"nodes\":[{\"children\":[1]},{}]")), "accepted");
	EXPECT_EQ(RefusalOfText(Root("\"scenes\":[{\"nodes\":[1]}],\"nodes\":[{\"children\":[1],\"scale\":[2,2,2]},{}]")),
		Because("/scenes/0/nodes holds node 1, which is no root: it is moved as a child of node 0"));
}

TEST(Document, DepthOfTheNodeTreeIsBounded)
{
	std::string Nodes;
	for (int I = 0; I < 3000; ++I)
	{
		Nodes += "{\"children\":[" + std::to_string(I + 1) + "]},";
	}
	EXPECT_EQ(RefusalOfText(Root("\"nodes\":[" + Nodes + "{}]")),
		Because("/nodes/2049 lies more than 2048 levels below its root"));
}

TEST(Document, RangesAreCheckedWithoutOverflow)
{
	const std::string Views = "\"buffers\":[{\"byteLength\":16}],\"bufferViews\":[";
	EXPECT_EQ(
		RefusalOfText(Root(Views + "{\"buffer\":0,\"byteOffset\":9007199254740991,\"byteLength\":9007199254740991}]")),
		Because(
			"/bufferViews/0 reaches from byte 9007199254740991 over 9007199254740991 bytes, but its buffer has 16"));
	const auto Accessor = [&](const std::string& Members, const std::string& Stride = "")
	{
		return RefusalOfText(
			Root(Views + "{\"buffer\":0,\"byteLength\":16" + Stride +
				 "}],\"accessors\":[{\"bufferView\":0,\"componentType\":5126,\"type\":\"VEC3\"," + Members + "}]"));
	};
	EXPECT_EQ(Accessor("\"count\":1,\"byteOffset\":4"), "accepted");
	EXPECT_EQ(
		Accessor("\"count\":1,\"byteOffset\":5"), Because("/accessors/0 reaches beyond the end of its buffer view: 1 "
														  "elements of 12 bytes every 12 from byte 5 do not "
														  "fit in 16 bytes"));
	EXPECT_THAT(Accessor("\"count\":4294967295"), HasSubstr("reaches beyond the end of its buffer view"));
	EXPECT_EQ(Accessor("\"count\":9007199254740991"), Because("/accessors/0/count is larger than 2^32 - 1"));
	EXPECT_EQ(Accessor("\"count\":1", ",\"byteStride\":8"),
		Because("/accessors/0 has elements of 12 bytes, but the byteStride of its buffer view is 8"));
	EXPECT_EQ(Accessor("\"count\":1.5"), Because("/accessors/0/count is not a whole number from 0 to 2^53"));
	EXPECT_EQ(Accessor("\"count\":1e400"), Because("/accessors/0/count is not a whole number from 0 to 2^53"));
}

TEST(Document, WhatAFileUnfoldsToIsBounded)
{
	// Zeros without a buffer view cost nothing in the file.
	EXPECT_THAT(RefusalOfText(Root("\"accessors\":[{\"componentType\":5126,\"type\":\"VEC3\",\"count\":4000000000}],"
								   "\"meshes\":[{\"primitives\":[{\"attributes\":{\"POSITION\":0}}]}]")),
		StartsWith("Cannot read \"scene.gltf\": /meshes/0 makes the scene unfold to more than 256 MiB"));
}

TEST(Document, KeysThatStandTwiceAreRefusedOutsideExtras)
{
	EXPECT_EQ(RefusalOfText(Root("\"nodes\":[{\"mesh\":0,\"mesh\":1}]")), Because("/nodes/0/mesh stands there twice"));
	EXPECT_EQ(RefusalOfText(Root("\"nodes\":[{\"extras\":{\"a\":1,\"a\":[{\"b\":1,\"b\":2}]}}]")), "accepted");
}

TEST(Document, NumbersThatAreNoNumbersToWorkWithAreRefusedInTransforms)
{
	EXPECT_EQ(RefusalOfText(Root("\"nodes\":[{\"translation\":[0,1e400,0]}]")),
		Because("/nodes/0/translation/1 is too large a number"));
	EXPECT_EQ(
		RefusalOfText(Root("\"nodes\":[{\"scale\":[1,1]}]")), Because("/nodes/0/scale is not an array of 3 numbers"));
	EXPECT_EQ(RefusalOfText(Root("\"nodes\":[{\"rotation\":[0,0,0,0],\"scale\":[0,0,0]}]")), "accepted");
}

TEST(Document, UrisThatLeaveTheFolderAreRefused)
{
	const auto Buffer = [](const std::string& Uri)
	{ return RefusalOfText(Root("\"buffers\":[{\"byteLength\":1,\"uri\":\"" + Uri + "\"}]")); };
	EXPECT_EQ(Buffer("../secret.bin"), Because("/buffers/0/uri (\"../secret.bin\") leads out of the scene's folder"));
	EXPECT_THAT(Buffer("https://example.org/a.bin"), HasSubstr("names a scheme or a drive"));
	EXPECT_THAT(Buffer("missing.bin"), HasSubstr("/buffers/0 names a file that cannot be read"));
	EXPECT_EQ(Buffer("data:application/octet-stream;base64,A!=="),
		Because("/buffers/0/uri is a data URI that is not valid base64"));
}

TEST(Document, SymbolicLinksOutOfTheFolderAreRefusedAndOthersFollowed)
{
	const FTempFolder Outside;
	Outside.Write("secret.bin", "abcdefgh");
	const FTempFolder Folder;
	Folder.Write("data/real.bin", "abcdefgh");
	std::filesystem::create_symlink(Outside.Path("secret.bin"), Folder.Path("out.bin"));
	std::filesystem::create_symlink("real.bin", Folder.Path("data/in.bin"));
	const auto Scene = [](const std::string& Uri)
	{ return Root("\"buffers\":[{\"byteLength\":8,\"uri\":\"" + Uri + "\"}]"); };
	EXPECT_THAT(RefusalOf(Folder.Write("a.gltf", Scene("out.bin"))),
		HasSubstr("a symbolic link leads out of the scene's folder"));
	EXPECT_EQ(AsText(*MustLoad(Folder.Write("b.gltf", Scene("data/in.bin")))->BufferBytes(0)), "abcdefgh");
}

TEST(Document, BuffersMustHoldWhatTheySay)
{
	const FTempFolder Folder;
	Folder.Write("short.bin", "abc");
	EXPECT_THAT(RefusalOf(Folder.Write("a.gltf", Root("\"buffers\":[{\"byteLength\":4,\"uri\":\"short.bin\"}]"))),
		HasSubstr("/buffers/0 says 4 bytes, but there are 3"));
	Folder.Write("long.bin", "abcdef");
	EXPECT_EQ(AsText(*MustLoad(Folder.Write("b.gltf", Root("\"buffers\":[{\"byteLength\":4,\"uri\":\"long.bin\"}]")))
						  ->BufferBytes(0)),
		"abcd");
}

TEST(Document, AFolderOrAPipeIsNoScene)
{
	const FTempFolder Folder;
	EXPECT_THAT(RefusalOf(Folder.Path()), HasSubstr("it is a folder"));
	EXPECT_THAT(RefusalOf("/dev/null"), HasSubstr("it is not a regular file"));
	EXPECT_THAT(RefusalOf(Folder.Path("none.gltf")), HasSubstr("there is no such file"));
}

TEST(Document, AttributesMustFitTheirVertices)
{
	FSceneText Scene;
	Scene.AddVec3({0, 0, 0, 2, 0, 0, 0, 3, 5});
	Scene.AddVec3({0, 0, 1});
	Scene.AddVec4({0, 0, 1, 1});
	const FTempFolder Folder;
	Scene.Meshes = {"{\"primitives\":[{\"attributes\":{\"POSITION\":0,\"NORMAL\":1}}]}"};
	EXPECT_THAT(RefusalOf(Scene.WriteText(Folder)), HasSubstr("names accessor 1 with 1 elements, but POSITION has 3"));
	Scene.Meshes = {"{\"primitives\":[{\"attributes\":{\"POSITION\":2}}]}"};
	EXPECT_THAT(RefusalOf(Scene.WriteText(Folder)), HasSubstr("of type VEC4, but POSITION is VEC3"));
	Scene.Meshes = {"{\"primitives\":[{\"attributes\":{\"POSITION\":0},\"indices\":1}]}"};
	EXPECT_THAT(RefusalOf(Scene.WriteText(Folder)), HasSubstr("which does not hold unsigned whole numbers"));
}

TEST(Document, NodeExtensionsAreRead)
{
	FSceneText Scene;
	const int Places = Scene.AddVec3({1, 2, 3, 4, 5, 6});
	Scene.AddMesh("\"POSITION\": 0");
	Scene.AddNode("\"mesh\":0,\"extensions\":{\"EXT_mesh_gpu_instancing\":{\"attributes\":{\"TRANSLATION\":" +
				  std::to_string(Places) + "}},\"ACME_thing\":{}}");
	Scene.AddNode(
		"\"extensions\":{\"MSFT_lod\":{\"ids\":[0]},\"KHR_lights_punctual\":{\"light\":0},"
		"\"KHR_physics_rigid_bodies\":{\"motion\":{\"mass\":2},\"collider\":{\"geometry\":{\"shape\":1}},"
		"\"trigger\":{\"geometry\":{\"node\":0,\"convexHull\":true}},\"joint\":{\"connectedNode\":0,\"joint\":0}}}");
	Scene.Root = ",\"extensions\":{\"KHR_lights_punctual\":{\"lights\":[{\"type\":\"point\",\"name\":\"L\"}]},"
				 "\"KHR_implicit_shapes\":{\"shapes\":[{\"type\":\"sphere\",\"sphere\":{\"radius\":7}},"
				 "{\"type\":\"capsule\",\"capsule\":{\"height\":3,\"radiusTop\":2}}]},"
				 "\"KHR_physics_rigid_bodies\":{\"physicsJoints\":[{}]}}";
	const FTempFolder Folder;
	const auto Document = MustLoad(Scene.WriteText(Folder));
	const FGltfNodeExtensions& Instanced = *Document->Node(0).Extensions;
	EXPECT_THAT(Instanced.Names, testing::ElementsAre("EXT_mesh_gpu_instancing", "ACME_thing"));
	EXPECT_TRUE(Instanced.bInstanced);
	EXPECT_EQ(Instanced.Instances[0].Semantic, "TRANSLATION");
	const FGltfNodeExtensions& Body = *Document->Node(1).Extensions;
	EXPECT_THAT(Body.LodNodes, testing::ElementsAre(0));
	EXPECT_EQ(Body.Light, 0);
	ASSERT_TRUE(Body.RigidBody && Body.RigidBody->Collider && Body.RigidBody->Trigger && Body.RigidBody->Joint);
	EXPECT_EQ(Body.RigidBody->Collider->Geometry.Shape, 1);
	EXPECT_TRUE(Body.RigidBody->Trigger->Geometry.bConvexHull);
	EXPECT_EQ(Document->Json().Raw(Body.RigidBody->Motion), "{\"mass\":2}");
	EXPECT_EQ(Document->Model().Shapes[0].Radius, 7);
	EXPECT_EQ(Document->Model().Shapes[1].Height, 3);
	EXPECT_EQ(Document->Model().Shapes[1].RadiusBottom, 0.25);
	EXPECT_EQ(Document->Model().Lights[0].Name, "L");
}

TEST(Document, AnimationsNameTheirTargets)
{
	FSceneText Scene;
	Scene.Add<float>({0, 1}, 5126, "SCALAR", 1);
	Scene.AddNode("\"name\":\"x\"");
	Scene.Root = ",\"animations\":[{\"samplers\":[{\"input\":0,\"output\":0}],\"channels\":["
				 "{\"sampler\":0,\"target\":{\"node\":0,\"path\":\"rotation\"}},"
				 "{\"sampler\":0,\"target\":{\"path\":\"pointer\",\"extensions\":{\"KHR_animation_pointer\":"
				 "{\"pointer\":\"/nodes/0/scale\"}}}}]}]";
	const FTempFolder Folder;
	const auto Document = MustLoad(Scene.WriteText(Folder));
	const FGltfAnimation& Animation = Document->Model().Animations[0];
	EXPECT_EQ(Animation.Channels[0].Node, 0);
	EXPECT_EQ(Animation.Channels[0].Path, "rotation");
	EXPECT_EQ(Animation.Channels[1].Pointer, "/nodes/0/scale");
}

TEST(Document, AFileThatShrinksWhileMappedReadsAsZerosAndIsNotIntact)
{
	const FTempFolder Folder;
	const std::string Content(3 * 4096, 'x');
	Folder.Write("big.bin", Content);
	const auto Document =
		MustLoad(Folder.Write("a.gltf", Root("\"buffers\":[{\"byteLength\":12288,\"uri\":\"big.bin\"}]")));
	const std::span<const std::byte> Bytes = *Document->BufferBytes(0);
	EXPECT_TRUE(Document->CheckIntact().IsOk());
	std::filesystem::resize_file(Folder.Path("big.bin"), 100);
	EXPECT_EQ(Bytes[2 * 4096 + 7], std::byte{0});
	const FSceneStatus Status = Document->CheckIntact();
	ASSERT_FALSE(Status.IsOk());
	EXPECT_THAT(Status.Error().Message, HasSubstr("the file changed on disk since it was read"));
}

TEST(Document, AFileThatWasReplacedIsStillIntact)
{
	const FTempFolder Folder;
	const auto Document = MustLoad(TriangleScene().WriteText(Folder));
	Folder.Write("other.bin", std::string(500, 'y'));
	std::filesystem::rename(Folder.Path("other.bin"), Folder.Path("scene.bin"));
	EXPECT_TRUE(Document->CheckIntact().IsOk());
	EXPECT_EQ(AsText(*Document->BufferBytes(0)), TriangleScene().Bytes);
}
