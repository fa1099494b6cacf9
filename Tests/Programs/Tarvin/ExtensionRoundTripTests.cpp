// SPDX-License-Identifier: MIT
// What scenes say in the project's own extensions, and their levels of detail, through a bake and back.
#include "TarvinProcess.h"

#include "Engine/BodySetup.h"
#include "Engine/StaticMeshComponent.h"
#include "Engine/StaticMeshSocket.h"
#include "Host/SceneIO/SceneText.h"
#include "SceneIO/Scene.h"
#include "Support/EditorFixture.h"

#include <gmock/gmock.h>

#include <array>

using testing::HasSubstr;

namespace
{
/// Five thousandths of a millimetre, in the host's units: sizes are kept in single precision.
constexpr double Tolerance = 5e-6 * 128.0;

const std::string Sockets =
	R"("sockets":[{"name":"Lid","translation":[0.2,0.5,-0.3],"rotation":[0,0.6,0,0.8],"scale":[1,2,3]},{"name":"Foot","translation":[0,-1,0]}])";
const std::string Collision =
	R"("collision":[{"type":"sphere","translation":[0.3,0.5,-0.7],"radius":0.25},)"
	R"({"type":"box","translation":[0,1,0],"rotation":[0.6,0,0,0.8],"size":[1,2,3]},)"
	R"({"type":"capsule","translation":[0.5,0,0],"rotation":[0,0,0.6,0.8],"radius":0.25,"length":0.75},)"
	R"({"type":"taperedCapsule","translation":[0,0,2],"rotation":[0.8,0,0,0.6],"radiusTop":0.125,"radiusBottom":0.5,"length":0.375},)"
	R"({"type":"convex","translation":[0,0.25,0],"rotation":[0,0.6,0,0.8],"scale":[1,2,1],"points":[[-1,0,-1],[1,0,-1],[0,0,1],[0,3,0]]}])";

/// A crate with everything of the extensions, shown at two scales, and a tower of two levels.
std::string CrateAndTower()
{
	FSceneText Scene;
	for (const float Size : {1.f, 1.5f, 3.f, 2.5f, 0.75f})
	{
		const int Position = Scene.AddVec3({0, 0, 0, Size, 0, 0, 0, 2 * Size, 0.5f}, R"(,"min":[0,0,0],"max":[9,9,9])");
		Scene.AddMesh("\"POSITION\":" + std::to_string(Position));
	}
	Scene.Meshes[0].insert(Scene.Meshes[0].size() - 2,
		R"(,"extensions":{"TARVIN_static_mesh":{"hiRes":1,"acme":[1.50],)" + Sockets + "," + Collision + "}}");
	Scene.AddNode(
		R"("name":"Large","mesh":0,"translation":[3,5,-7],"rotation":[0,0.6,0,0.8],"scale":[2,2,2],"extensions":{"TARVIN_component":{"creationMethod":"native"}})");
	Scene.AddNode(R"("name":"Small","mesh":0,"translation":[-2,0,1],"rotation":[0.6,0,0,0.8],"scale":[0.5,0.5,0.5])");
	const std::string Place = R"(,"translation":[9,0,2],"rotation":[0,0,0.6,0.8],"scale":[1.5,1.5,1.5])";
	Scene.AddNode(R"("name":"Tower","mesh":2,"extensions":{"MSFT_lod":{"ids":[3]}})" + Place);
	Scene.AddNode(R"("name":"Tower low","mesh":3)" + Place);
	Scene.AddNode(
		R"("name":"Scripted","mesh":4,"scale":[2,2,2],"extensions":{"TARVIN_component":{"creationMethod":"constructionScript"}})");
	Scene.Root = R"(,"scene":0,"scenes":[{"nodes":[0,1,2,4]}],)"
				 R"("extensionsUsed":["TARVIN_static_mesh","TARVIN_component","MSFT_lod"])";
	return Scene.Text("");
}

class ExtensionRoundTrip : public FYardFixture
{
protected:
	ExtensionRoundTrip()
	{
		DestroyEditorAndAssets();
		UEditorEngine::Create();
		WriteAll(Path("before.gltf"), CrateAndTower());
	}
	~ExtensionRoundTrip() override
	{
		Before.reset();
		After.reset();
		DestroyEditorAndAssets();
	}

	/// Bakes with the program, and loads both scenes.
	void Bake(const std::vector<std::string>& More = {"--all"})
	{
		std::vector<std::string> Arguments = {
			"bake", Path("before.gltf"), "-o", Path("after.gltf"), "--shared", "duplicate", "--verify"};
		Arguments.insert(Arguments.end(), More.begin(), More.end());
		Run = RunTarvin(Arguments);
		ASSERT_EQ(Run.ExitCode, 0) << Run.Errors << Run.Output;
		Before = Load("before.gltf");
		After = Load("after.gltf");
		ASSERT_TRUE(Before && After);
	}

	std::unique_ptr<FScene> Load(const std::string& Name)
	{
		TSceneResult<std::unique_ptr<FScene>> Scene =
			FScene::Load(Path(Name), GEditor->GetEditorWorldContext().World());
		EXPECT_TRUE(Scene.IsOk()) << (Scene ? "" : Scene.Error().Message);
		return Scene ? Scene.Take() : nullptr;
	}

	FTarvinRun Run;
	std::unique_ptr<FScene> Before;
	std::unique_ptr<FScene> After;
};

UStaticMesh& AssetOf(const FScene& Scene, FGltfIndex Node)
{
	return *CastChecked<UStaticMeshComponent>(Scene.Node(Node).Component.Get())->GetStaticMesh();
}

const FTransform& WorldOf(const FScene& Scene, FGltfIndex Node)
{
	return Scene.Node(Node).Component->GetComponentTransform();
}

void ExpectNear(const TArray<FVector>& A, const TArray<FVector>& B, const char* What)
{
	ASSERT_EQ(A.Num(), B.Num()) << What;
	EXPECT_GT(A.Num(), 0) << What;
	for (int32 Index = 0; Index < A.Num(); ++Index)
	{
		EXPECT_LT((A[Index] - B[Index]).Size(), Tolerance) << What << " " << Index;
	}
}

/// The origin of a frame and its three tips, in the world.
void AddFrame(const FTransform& Frame, const FTransform& World, TArray<FVector>& Points)
{
	for (const FVector& Tip : {FVector(0, 0, 0), FVector(1, 0, 0), FVector(0, 1, 0), FVector(0, 0, 1)})
	{
		Points.Add(World.TransformPosition(Frame.TransformPosition(Tip)));
	}
}

TArray<FVector> SocketPlaces(const FScene& Scene, FGltfIndex Node)
{
	TArray<FVector> Points;
	for (const TObjectPtr<UStaticMeshSocket>& Socket : AssetOf(Scene, Node).Sockets)
	{
		AddFrame(FTransform(Socket->RelativeRotation, Socket->RelativeLocation, Socket->RelativeScale),
			WorldOf(Scene, Node), Points);
	}
	return Points;
}

/// Points that fix where balls, boxes, capsules and hulls are in the world, and their sizes there.
TArray<FVector> ShapePlaces(const FScene& Scene, FGltfIndex Node)
{
	const FTransform& World = WorldOf(Scene, Node);
	const double Scale = World.GetScale3D().X;
	const FKAggregateGeom& Geometry = AssetOf(Scene, Node).GetBodySetup()->AggGeom;
	TArray<FVector> Points;
	for (const FKSphereElem& Sphere : Geometry.SphereElems)
	{
		Points.Add(World.TransformPosition(Sphere.Center));
		Points.Add(FVector(Sphere.Radius * Scale, 0, 0));
	}
	for (const FKBoxElem& Box : Geometry.BoxElems)
	{
		AddFrame(FTransform(Box.Rotation, Box.Center, FVector(Box.X, Box.Y, Box.Z)), World, Points);
	}
	for (const FKSphylElem& Capsule : Geometry.SphylElems)
	{
		const FVector HalfAxis(0, 0, Capsule.Length * 0.5);
		const FTransform Place(Capsule.Rotation, Capsule.Center, FVector::OneVector);
		Points.Add(World.TransformPosition(Place.TransformPosition(HalfAxis)));
		Points.Add(World.TransformPosition(Place.TransformPosition(-HalfAxis)));
		Points.Add(FVector(Capsule.Radius * Scale, 0, 0));
	}
	for (const FKConvexElem& Convex : Geometry.ConvexElems)
	{
		for (const FVector& Point : Convex.VertexData)
		{
			Points.Add(World.TransformPosition(Convex.GetTransform().TransformPosition(Point)));
		}
	}
	return Points;
}

TArray<FVector> VertexPlaces(const FMeshDescription* Description, const FTransform& World)
{
	TArray<FVector> Points;
	for (const FVector3f& Position : Description ? Description->GetVertexPositions() : std::span<const FVector3f>())
	{
		Points.Add(World.TransformPosition(FVector(Position)));
	}
	return Points;
}
} // namespace

TEST_F(ExtensionRoundTrip, SocketsKeepTheirPlacesInTheWorld)
{
	Bake();
	for (const FGltfIndex Node : {0, 1})
	{
		EXPECT_NE(WorldOf(*Before, Node).GetScale3D(), FVector::OneVector);
		EXPECT_EQ(WorldOf(*After, Node).GetScale3D(), FVector::OneVector);
		EXPECT_EQ(AssetOf(*After, Node).Sockets[0]->SocketName, FName(TEXT("Lid")));
		ExpectNear(SocketPlaces(*Before, Node), SocketPlaces(*After, Node), "socket");
	}
}

TEST_F(ExtensionRoundTrip, ShapesOfCollisionKeepTheirPlacesAndSizesInTheWorld)
{
	Bake();
	for (const FGltfIndex Node : {0, 1})
	{
		ExpectNear(ShapePlaces(*Before, Node), ShapePlaces(*After, Node), "shape");
	}
}

TEST_F(ExtensionRoundTrip, TaperedCapsulesKeepTheirNumbersAndAreToldOf)
{
	Bake();
	EXPECT_THAT(Run.Output, HasSubstr("1 collision element(s) (tapered capsule / level set / skinned) were not "
									  "transformed -- they keep their old transform"));
	const TArray<FKTaperedCapsuleElem>& Old = AssetOf(*Before, 0).GetBodySetup()->AggGeom.TaperedCapsuleElems;
	const TArray<FKTaperedCapsuleElem>& New = AssetOf(*After, 0).GetBodySetup()->AggGeom.TaperedCapsuleElems;
	ASSERT_EQ(Old.Num(), 1);
	ASSERT_EQ(New.Num(), 1);
	EXPECT_EQ(New[0].Radius0, Old[0].Radius0);
	EXPECT_EQ(New[0].Radius1, Old[0].Radius1);
	EXPECT_EQ(New[0].Length, Old[0].Length);
	EXPECT_EQ(New[0].Center, Old[0].Center);
	EXPECT_TRUE(New[0].Rotation.Quaternion().Equals(Old[0].Rotation.Quaternion(), 1e-9));
}

TEST_F(ExtensionRoundTrip, HiResSourcesAreBakedAlong)
{
	Bake();
	for (const FGltfIndex Node : {0, 1})
	{
		ExpectNear(VertexPlaces(AssetOf(*Before, Node).GetHiResMeshDescription(), WorldOf(*Before, Node)),
			VertexPlaces(AssetOf(*After, Node).GetHiResMeshDescription(), WorldOf(*After, Node)), "HiRes vertex");
	}
	EXPECT_NE(After->AssetMeshes(After->Document()->Node(0).Mesh).HiRes, 1);
	EXPECT_NE(After->AssetMeshes(After->Document()->Node(0).Mesh).HiRes,
		After->AssetMeshes(After->Document()->Node(1).Mesh).HiRes);
}

TEST_F(ExtensionRoundTrip, LevelsAreBakedAlikeAndStayTogether)
{
	Bake();
	const UStaticMesh& Old = AssetOf(*Before, 2);
	const UStaticMesh& New = AssetOf(*After, 2);
	ASSERT_EQ(Old.GetNumSourceModels(), 2);
	ASSERT_EQ(New.GetNumSourceModels(), 2);
	EXPECT_EQ(After->Node(3).LevelOf, 2);
	for (const int32 Lod : {0, 1})
	{
		ExpectNear(VertexPlaces(Old.GetMeshDescription(Lod), WorldOf(*Before, 2)),
			VertexPlaces(New.GetMeshDescription(Lod), WorldOf(*After, 2)), "vertex of a level");
	}
	EXPECT_EQ(WorldOf(*After, 3).GetScale3D(), FVector::OneVector);
	EXPECT_NE(Old.GetMeshDescription(1)->GetVertexPositions()[1], New.GetMeshDescription(1)->GetVertexPositions()[1]);
}

TEST_F(ExtensionRoundTrip, ComponentsKeepHowTheyWereMade)
{
	Bake();
	EXPECT_EQ(After->Node(4).Component->CreationMethod, EComponentCreationMethod::SimpleConstructionScript);
	EXPECT_EQ(After->Node(0).Component->CreationMethod, EComponentCreationMethod::Native);
	// Only native components are worked on.
	EXPECT_EQ(WorldOf(*After, 4).GetScale3D(), FVector(2, 2, 2));
	EXPECT_THAT(ReadAll(Path("after.gltf")), HasSubstr(R"("creationMethod":"constructionScript")"));
}

TEST_F(ExtensionRoundTrip, WrittenExtensionsFollowTheirSchemas)
{
	Bake();
	const FTarvinRun Validation = RunProgram({"/usr/bin/python3", "-c",
		"import json, jsonschema, sys\n"
		"scene, count = json.load(open(sys.argv[1])), 0\n"
		"for kind, name in (('meshes', 'TARVIN_static_mesh'), ('nodes', 'TARVIN_component')):\n"
		"    schema = json.load(open(sys.argv[2] + '/' + name + '.schema.json'))\n"
		"    for owner in scene[kind]:\n"
		"        if name in owner.get('extensions', {}):\n"
		"            jsonschema.validate(owner['extensions'][name], schema)\n"
		"            count += 1\n"
		"print(count)",
		Path("after.gltf"), TARVIN_SCHEMAS});
	EXPECT_EQ(Validation.ExitCode, 0) << Validation.Errors;
	// The mesh and the one or two copies that the two nodes show, and two components.
	EXPECT_GE(std::stoi("0" + Validation.Output), 4);
	EXPECT_THAT(ReadAll(Path("after.gltf")), HasSubstr(R"("acme":[1.50])"));
}
