// SPDX-License-Identifier: MIT
#include "SceneFixture.h"
#include "Support/WorldGenerators.h"

#include "Engine/BodySetup.h"
#include "Engine/InstancedStaticMeshComponent.h"
#include "Engine/StaticMeshSocket.h"
#include "SceneIO/JsonWrite.h"
#include "SceneIO/Scene.h"
#include "SceneIO/SceneSpace.h"
#include "SceneIO/SceneVerdict.h"
#include "SceneIO/SceneWriter.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>

namespace
{
using SceneWorld = FSceneFixture;

using FColumns = std::array<double, 16>;

/// The matrix of a node as viewers compute it, column by column: translation · rotation · scale.
FColumns ViewerMatrix(const std::array<double, 3>& T, const std::array<double, 4>& Q, const std::array<double, 3>& S)
{
	const auto [X, Y, Z, W] = Q;
	return {(1 - 2 * (Y * Y + Z * Z)) * S[0], 2 * (X * Y + Z * W) * S[0], 2 * (X * Z - Y * W) * S[0], 0,
		2 * (X * Y - Z * W) * S[1], (1 - 2 * (X * X + Z * Z)) * S[1], 2 * (Y * Z + X * W) * S[1], 0,
		2 * (X * Z + Y * W) * S[2], 2 * (Y * Z - X * W) * S[2], (1 - 2 * (X * X + Y * Y)) * S[2], 0, T[0], T[1], T[2],
		1};
}

std::array<double, 3> Apply(const FColumns& M, const std::array<double, 3>& P)
{
	std::array<double, 3> Result;
	for (std::size_t Row = 0; Row < 3; ++Row)
	{
		Result[Row] = M[Row] * P[0] + M[4 + Row] * P[1] + M[8 + Row] * P[2] + M[12 + Row];
	}
	return Result;
}

double DrawNumber()
{
	return double(*WorldGenerators::Index(8001) - 4000) / 1000.0;
}
} // namespace

RC_GTEST_FIXTURE_PROP(SceneWorld, PutsPointsWhereViewersPutThem, ())
{
	const std::array<double, 3> T = {DrawNumber(), DrawNumber(), DrawNumber()};
	std::array<double, 4> Q = {DrawNumber(), DrawNumber(), DrawNumber(), DrawNumber() + 5.0};
	const double Length = std::sqrt(Q[0] * Q[0] + Q[1] * Q[1] + Q[2] * Q[2] + Q[3] * Q[3]);
	for (double& Component : Q)
	{
		Component /= Length;
	}
	const std::array<double, 3> S = {DrawNumber() + 5.0, DrawNumber() - 5.0, DrawNumber() + 6.0};
	const std::array<double, 3> Point = {DrawNumber(), DrawNumber(), DrawNumber()};
	const FColumns Columns = ViewerMatrix(T, Q, S);
	const std::array<double, 3> Viewer = Apply(Columns, Point);

	// Once as translation, rotation and scale, and once as a matrix: the host must say what viewers say of both.
	const std::unique_ptr<FScene> Scene =
		Load(R"("nodes":[{"translation":)" + JsonWrite::Array(T) + R"(,"rotation":)" + JsonWrite::Array(Q) +
			 R"(,"scale":)" + JsonWrite::Array(S) + R"(},{"matrix":)" + JsonWrite::Array(Columns) + "}]");
	for (const FGltfIndex Node : {0, 1})
	{
		const FTransform& World = Scene->Node(Node).Component->GetComponentTransform();
		const std::array<double, 3> Host =
			SceneSpace::PointToFile(World.TransformPosition(SceneSpace::PointToHost(Point)));
		for (std::size_t Axis = 0; Axis < 3; ++Axis)
		{
			RC_ASSERT(std::abs(Host[Axis] - Viewer[Axis]) < 1e-9);
		}
	}
}

TEST_F(SceneWorld, MapsTheSidesOfTheFileToThoseOfTheHost)
{
	EXPECT_EQ(SceneSpace::PointToHost(std::array<double, 3>{0, 0, 1}), FVector(-128, 0, 0)) << "front";
	EXPECT_EQ(SceneSpace::PointToHost(std::array<double, 3>{1, 0, 0}), FVector(0, -128, 0)) << "left";
	EXPECT_EQ(SceneSpace::PointToHost(std::array<double, 3>{0, 1, 0}), FVector(0, 0, 128)) << "top";
}

TEST_F(SceneWorld, SharesOneAssetAmongNodesOfOneMesh)
{
	const std::unique_ptr<FScene> Scene =
		Load(OneMesh + R"("nodes":[{"mesh":0},{"mesh":0,"children":[2]},{"name":"Low"}])");
	const auto MeshOf = [&](FGltfIndex Node)
	{ return CastChecked<UStaticMeshComponent>(Scene->Node(Node).Component.Get())->GetStaticMesh(); };
	EXPECT_EQ(MeshOf(0), MeshOf(1));
	EXPECT_EQ(MeshOf(0)->GetPathName().ToUtf8(), "/Scene/scene/Rock.Rock");
	EXPECT_EQ(Scene->Node(2).Component->GetAttachParent(), Scene->Node(1).Component.Get());
	EXPECT_EQ(Scene->Node(2).Actor->GetActorLabel().ToUtf8(), "Low");
}

TEST_F(SceneWorld, MakesNamesOfAssetsUniqueAndPlain)
{
	const std::string Primitive = R"("primitives":[{"attributes":{"POSITION":0}}])";
	const std::unique_ptr<FScene> Scene = Load(ThreeVertices + R"("meshes":[{"name":"A/B",)" + Primitive +
											   R"(},{"name":"A_B",)" + Primitive + "},{" + Primitive + "}]");
	EXPECT_EQ(Scene->MeshAsset(0)->GetName().ToUtf8(), "A_B");
	EXPECT_EQ(Scene->MeshAsset(1)->GetName().ToUtf8(), "A_B_2");
	EXPECT_EQ(Scene->MeshAsset(2)->GetName().ToUtf8(), "mesh 2");
}

TEST_F(SceneWorld, CountsAnInstancedNodeAsAnInstancedComponent)
{
	const std::unique_ptr<FScene> Scene = Load(
		OneMesh +
		R"("extensionsUsed":["EXT_mesh_gpu_instancing"],"nodes":[{"mesh":0,"extensions":{"EXT_mesh_gpu_instancing":{"attributes":{"TRANSLATION":0}}}}])");
	EXPECT_TRUE(Scene->Node(0).Component->IsA<UInstancedStaticMeshComponent>());
}

TEST_F(SceneWorld, ReadsSocketsAndCollisionOfItsOwnExtension)
{
	const std::unique_ptr<FScene> Scene = Load(
		ThreeVertices +
		R"("meshes":[{"primitives":[{"attributes":{"POSITION":0}}],"extensions":{"TARVIN_static_mesh":{"sockets":[{"name":"Tip","translation":[1,2,3]}],)"
		R"("collision":[{"type":"sphere","radius":0.5},{"type":"capsule","radius":1,"length":2}]}}}],"extensionsUsed":["TARVIN_static_mesh"])");
	const UStaticMesh& Asset = *Scene->MeshAsset(0);
	ASSERT_EQ(Asset.Sockets.Num(), 1);
	EXPECT_EQ(Asset.Sockets[0]->RelativeLocation, FVector(-384, -128, 256));
	EXPECT_EQ(Asset.GetBodySetup()->AggGeom.SphereElems[0].Radius, 64.f);
	EXPECT_EQ(Asset.GetBodySetup()->AggGeom.SphylElems[0].Length, 256.f);
}

TEST_F(SceneWorld, RefusesItsOwnExtensionWhereItIsWrong)
{
	const auto Error = [this](const std::string& Extension)
	{
		return LoadError(
			ThreeVertices +
			R"("meshes":[{"primitives":[{"attributes":{"POSITION":0}}],"extensions":{"TARVIN_static_mesh":)" +
			Extension + "}}]");
	};
	EXPECT_THAT(Error(R"({"sockets":[{}]})"), testing::HasSubstr("/meshes/0/extensions/TARVIN_static_mesh/sockets/0"));
	EXPECT_THAT(Error(R"({"collision":[{"type":"cone"}]})"), testing::HasSubstr("/collision/0/type"));
	EXPECT_THAT(Error(R"({"collision":[{"type":"sphere","radius":-1}]})"), testing::HasSubstr("/collision/0/radius"));
	EXPECT_THAT(Error(R"({"hiRes":7})"), testing::HasSubstr("/hiRes"));
	EXPECT_THAT(Error(R"({"collision":[{"type":"convex","points":[[1,2]]}]})"), testing::HasSubstr("/points/0"));
	for (const char* TooLarge : {R"({"collision":[{"type":"box","size":[1,1e38,1]}]})",
			 R"({"collision":[{"type":"sphere","radius":2e15}]})", R"({"sockets":[{"name":"A","scale":[1,1,-3e15]}]})",
			 R"({"collision":[{"type":"convex","points":[[0,0,1e400]]}]})"})
	{
		EXPECT_THAT(Error(TooLarge), testing::HasSubstr("is too large a number")) << TooLarge;
	}
}

TEST_F(SceneWorld, SavesTheSameBytesWhenNothingChanged)
{
	const std::unique_ptr<FScene> Scene = Load(OneMesh + R"(  "nodes" : [ {"mesh": 0, "scale":[1.0,2.50,1e0]} ])");
	const TSceneResult<FSaveReport> Saved = SaveScene(*Scene, Path("copy.gltf"));
	ASSERT_TRUE(Saved.IsOk());
	EXPECT_EQ(ReadAll(Path("copy.gltf")), ReadAll(Path("scene.gltf")));
}

TEST_F(SceneWorld, WritesOnlyTheTransformThatChanged)
{
	const std::unique_ptr<FScene> Scene =
		Load(R"("nodes":[{"name":"A","translation":[1.50,0,0],"extras":{"n":1.0}},{"name":"B"}])");
	USceneComponent& Moved = *Scene->Node(0).Component;
	Moved.SetRelativeTransform(
		FTransform(FQuat::Identity, Moved.GetRelativeTransform().GetTranslation(), FVector(2, 2, 2)));
	ASSERT_TRUE(SaveScene(*Scene, Path("copy.gltf")).IsOk());
	EXPECT_EQ(ReadAll(Path("copy.gltf")),
		R"({"asset":{"version":"2.0"},"nodes":[{"name":"A","translation":[1.50,0,0],"extras":{"n":1.0},"scale":[2,2,2]},{"name":"B"}]})");
}

namespace
{
std::string ReasonOf(const FScene& Scene, FGltfIndex Node)
{
	const FSceneJudge Judge(Scene);
	return Judge
		.Judge(ESceneCommand::BakeTransform, std::vector<bool>(std::size_t(Scene.NumNodes()), true))[std::size_t(Node)]
		.Reason;
}
} // namespace

TEST_F(SceneWorld, LeavesOutNodesWhosePictureABakeWouldChange)
{
	const std::pair<const char*, const char*> Cases[] = {
		{R"("extensionsUsed":["KHR_physics_rigid_bodies"],"nodes":[{"mesh":0,"scale":[2,2,2],"extensions":{"KHR_physics_rigid_bodies":{"motion":{}}}}])",
			"it is a moving body, whose motion is said in its own space"},
		{R"("extensionsUsed":["ACME_x"],"nodes":[{"mesh":0,"scale":[2,2,2],"extensions":{"ACME_x":{}}}])",
			"it carries ACME_x"},
		{R"("nodes":[{"mesh":0,"scale":[2,0,2]}])", "its scale in the world is zero"},
		{R"("nodes":[{"mesh":0,"scale":[2,-3e15,2]}])", "its place or scale is too large"},
		{R"("nodes":[{"mesh":0,"scale":[2,2,2],"rotation":[0,0,0,2]}])", "its rotation is not a unit quaternion"},
		{R"("nodes":[{"mesh":0,"scale":[2,2,2],"rotation":[0,0.6,0,0.80001]}])",
			"its rotation is not a unit quaternion"},
		{R"("nodes":[{"mesh":0,"matrix":[1,0,0,0,1,1,0,0,0,0,1,0,0,0,0,1]}])", "its world transform has shear"},
		{R"("nodes":[{"mesh":0,"scale":[2,1,1],"children":[1]},{"name":"Leaf","rotation":[0,0,0.3826834323650898,0.9238795325112867]}])",
			"its child 'Leaf' would be sheared"},
	};
	for (const auto& [Nodes, Reason] : Cases)
	{
		const std::unique_ptr<FScene> Scene = Load(OneMesh + Nodes);
		ASSERT_TRUE(Scene) << Nodes;
		EXPECT_EQ(ReasonOf(*Scene, 0), Reason);
	}
}

TEST_F(SceneWorld, TakesRotationsThatAreOffByRounding)
{
	for (const char* Rotation : {"[0,0.707107,0,0.707107]", "[0,0.70710677,0,0.70710677]", "[0.6000001,0,0,0.8]"})
	{
		const std::unique_ptr<FScene> Scene =
			Load(OneMesh + R"("nodes":[{"mesh":0,"scale":[2,2,2],"rotation":)" + Rotation + "}]");
		EXPECT_EQ(ReasonOf(*Scene, 0), "");
	}
}
