// SPDX-License-Identifier: MIT
#include "SceneFixture.h"

#include "CoreUObject/GarbageCollector.h"
#include "Editor/ScopedTransaction.h"
#include "Engine/StaticMeshComponent.h"
#include "SceneIO/SceneDiff.h"
#include "SceneIO/SceneVerdict.h"
#include "SceneIO/SceneWriter.h"

#include <gmock/gmock.h>

#include <fstream>

namespace
{
/// Edits of a scene's structure, as a user makes them, and what a save makes of them.
class SceneEdit : public FSceneFixture
{
protected:
	AActor* Actor(const FScene& Scene, FGltfIndex Node) { return Scene.Node(Node).Actor; }

	AActor* Duplicate(const FScene& Scene, FGltfIndex Node, const TCHAR* Label)
	{
		AActor* const Copy = World()->DuplicateActor(Actor(Scene, Node));
		Copy->SetActorLabel(Label);
		return Copy;
	}

	/// The world place of an actor in a point of the file.
	static FVector Place(const AActor* Of) { return Of->GetActorTransform().GetTranslation(); }
};

FScopedTransaction Edit()
{
	return FScopedTransaction(TEXT("Test"), FText::FromString(TEXT("Edit")), nullptr);
}
} // namespace

TEST_F(SceneEdit, LeavesADeletedNodeBlankAndOutOfEveryList)
{
	const std::unique_ptr<FScene> Scene = Load(
		OneMesh +
		R"("scenes":[{"nodes":[0, 2]},{"nodes":[3,0]}],"nodes":[{"name":"A","children":[1],"scale":[2.0,2,2]},{"name":"B\u0041","mesh":0,"extras":{"n":1.0}}, {"mesh":0}, {"name":"D"}])");
	World()->DestroyActor(Actor(*Scene, 1));
	World()->DestroyActor(Actor(*Scene, 2));
	EXPECT_EQ(Save(*Scene),
		OneMesh +
			R"("scenes":[{"nodes":[0]},{"nodes":[3,0]}],"nodes":[{"name":"A","scale":[2.0,2,2]},{"name":"B\u0041"}, {}, {"name":"D"}])");
}

TEST_F(SceneEdit, WritesNoEmptyLists)
{
	const std::unique_ptr<FScene> Scene = Load(
		R"("scenes":[{"name":"S","nodes":[0]}],"nodes":[{"name":"A","children":[1],"scale":[2,2,2]},{"name":"B"}])");
	World()->DestroyActor(Actor(*Scene, 1));
	World()->DestroyActor(Actor(*Scene, 0));
	EXPECT_EQ(Save(*Scene), R"("scenes":[{"name":"S"}],"nodes":[{"name":"A"},{"name":"B"}])");
}

TEST_F(SceneEdit, MakesNoActorOfABlankNode)
{
	const std::unique_ptr<FScene> Scene = Load(
		R"("scenes":[{"nodes":[1]}],"nodes":[{"name":"Gone"},{"name":"Listed","children":[2]},{},{"translation":[0,0,0]},{"name":"Moved"},{}],)"
		R"("animations":[{"channels":[{"sampler":0,"target":{"node":4,"path":"scale"}}],"samplers":[{"input":0,"output":0}]}],"accessors":[{"componentType":5126,"count":1,"type":"SCALAR"}])");
	EXPECT_FALSE(Scene->IsAlive(0));
	EXPECT_TRUE(Scene->IsAlive(1)) << "a scene lists it";
	EXPECT_TRUE(Scene->IsAlive(2)) << "it has a parent";
	EXPECT_TRUE(Scene->IsAlive(3)) << "it says something";
	EXPECT_TRUE(Scene->IsAlive(4)) << "an animation names it";
	EXPECT_FALSE(Scene->IsAlive(5));
	EXPECT_EQ(World()->GetActors().Num(), 4);
	EXPECT_EQ(FSceneJudge(*Scene).WorldMatrices().size(), 6u);
}

TEST_F(SceneEdit, KeepsTheChildrenOfADeletedNodeInTheirPlaceAndTheirScene)
{
	const std::unique_ptr<FScene> Scene = Load(
		R"("scenes":[{"nodes":[2]},{"nodes":[0]}],"nodes":[{"name":"A","translation":[1,2,3],"scale":[2,2,2],"children":[1]},{"name":"B","translation":[5,0,0]},{"name":"C","scale":[3,1,1]}])");
	World()->DestroyActor(Actor(*Scene, 0));
	EXPECT_EQ(Save(*Scene),
		R"("scenes":[{"nodes":[2]},{"nodes":[1]}],"nodes":[{"name":"A"},{"name":"B","translation":[11,2,3],"scale":[2,2,2]},{"name":"C","scale":[3,1,1]}])");
}

TEST_F(SceneEdit, CopiesANodeWithAllThatItCarries)
{
	const std::string Carried = R"("mesh":0,"camera":0,"extensions":{"ACME_x":{"a":[1.0, 2]}},"extras":{"k" : "v"})";
	const std::string Head =
		OneMesh +
		R"("extensionsUsed":["ACME_x"],"cameras":[{"type":"perspective","perspective":{"yfov":1,"znear":1}}],)";
	const std::unique_ptr<FScene> Scene =
		Load(Head + R"("scenes":[{},{"nodes":[0]}],"nodes":[{"name":"A","scale":[2.0,2,2],)" + Carried +
			 R"(,"children":[1]},{"name":"B"}])");
	AActor* const Copy = Duplicate(*Scene, 0, TEXT("A2"));
	FTransform Moved = Copy->GetRootComponent()->GetRelativeTransform();
	Moved.SetTranslation(FVector(-128 * 3, 0, 0));
	Copy->GetRootComponent()->SetRelativeTransform(Moved);
	EXPECT_EQ(Scene->NodeOf(Copy), NoIndex);
	EXPECT_EQ(Scene->SourceOf(Copy), 0);
	EXPECT_EQ(Save(*Scene), Head + R"("scenes":[{},{"nodes":[0,2]}],"nodes":[{"name":"A","scale":[2.0,2,2],)" +
								Carried + R"(,"children":[1]},{"name":"B"},{"name":"A2","scale":[2.0,2,2],)" + Carried +
								R"(,"translation":[0,0,3]}])");
}

TEST_F(SceneEdit, CopiesWhatIsBelowANodeWithIt)
{
	const std::unique_ptr<FScene> Scene =
		Load(R"("scenes":[{"nodes":[0]}],"nodes":[{"name":"A","children":[1]},{"name":"B","translation":[7,0,0]}])");
	AActor* const Top = Duplicate(*Scene, 0, TEXT("A2"));
	AActor* const Below = Duplicate(*Scene, 1, TEXT("B2"));
	Below->GetRootComponent()->AttachToComponent(Top->GetRootComponent());
	EXPECT_EQ(Save(*Scene),
		R"("scenes":[{"nodes":[0,2]}],"nodes":[{"name":"A","children":[1]},{"name":"B","translation":[7,0,0]},)"
		R"({"name":"A2","children":[3]},{"name":"B2","translation":[7,0,0]}])");
}

TEST_F(SceneEdit, ACopyOfACopyIsWrittenLikeOne)
{
	const std::unique_ptr<FScene> Scene =
		Load(R"("scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"name":"A","extras":7}])");
	AActor* const Copy = Duplicate(*Scene, 0, TEXT("A2"));
	World()->DuplicateActor(Copy)->SetActorLabel(TEXT("A3"));
	World()->DestroyActor(Copy);
	EXPECT_EQ(Save(*Scene),
		R"("scene":0,"scenes":[{"nodes":[0,1]}],"nodes":[{"name":"A","extras":7},{"name":"A3","extras":7}])");
}

TEST_F(SceneEdit, WritesAnActorFromNowhereIntoTheSceneThatViewersShow)
{
	const std::unique_ptr<FScene> Scene =
		Load(OneMesh + R"("scene":1,"scenes":[{},{}],"nodes":[{"name":"A","mesh":0}])");
	AActor* const Made = World()->SpawnActor<AActor>();
	Made->SetActorLabel(TEXT("New \"one\""));
	UStaticMeshComponent* const Component = Made->AddComponent<UStaticMeshComponent>();
	Component->SetStaticMesh(Scene->MeshAsset(0));
	Component->SetRelativeTransform(FTransform(FQuat::Identity, FVector(0, -256, 0), FVector(1, 2, 3)));
	EXPECT_EQ(Save(*Scene),
		OneMesh +
			R"("scene":1,"scenes":[{},{"nodes":[1]}],"nodes":[{"name":"A","mesh":0},{"name":"New \"one\"","translation":[2,0,0],"scale":[2,3,1],"mesh":0}])");
}

TEST_F(SceneEdit, AttachesAndDetaches)
{
	const std::unique_ptr<FScene> Scene = Load(
		R"("scenes":[{"nodes":[0,1]}],"nodes":[{"name":"A"},{"name":"B","children":[2]},{"name":"C","translation":[1,0,0]}])");
	Actor(*Scene, 2)->GetRootComponent()->DetachFromComponent();
	Actor(*Scene, 0)->GetRootComponent()->AttachToComponent(Actor(*Scene, 2)->GetRootComponent());
	EXPECT_EQ(Save(*Scene),
		R"("scenes":[{"nodes":[1,2]}],"nodes":[{"name":"A"},{"name":"B"},{"name":"C","translation":[1,0,0],"children":[0]}])");
}

TEST_F(SceneEdit, AttachingBackChangesNothing)
{
	const std::unique_ptr<FScene> Scene = Load(R"("nodes":[{"name":"A","children":[1,2]},{"name":"B"},{"name":"C"}])");
	USceneComponent* const Child = Actor(*Scene, 1)->GetRootComponent();
	Child->DetachFromComponent();
	Child->AttachToComponent(Actor(*Scene, 0)->GetRootComponent());
	Save(*Scene);
	EXPECT_EQ(ReadAll(Path("copy.gltf")), ReadAll(Path("scene.gltf")));
}

TEST_F(SceneEdit, ANodeThatIsOnlyDetachedIsNotTakenForADeletedOne)
{
	const std::unique_ptr<FScene> Scene = Load(R"("nodes":[{"name":"A","scale":[2,2,2],"children":[1]},{"name":"B"}])");
	Actor(*Scene, 1)->GetRootComponent()->DetachFromComponent(EAttachmentRule::KeepRelative);
	EXPECT_EQ(Save(*Scene), R"("nodes":[{"name":"A","scale":[2,2,2]},{"name":"B","translation":[0,0,0]}])");
}

TEST_F(SceneEdit, WritesNewNames)
{
	const std::unique_ptr<FScene> Scene =
		Load(R"("nodes":[{"name" : "A","scale":[2,2,2]},{"scale":[3,3,3]},{"scale":[4,4,4]}])");
	Actor(*Scene, 0)->SetActorLabel(TEXT("Tor \"1\""));
	Actor(*Scene, 1)->SetActorLabel(TEXT("New"));
	EXPECT_EQ(Save(*Scene),
		R"("nodes":[{"name" : "Tor \"1\"","scale":[2,2,2]},{"scale":[3,3,3],"name":"New"},{"scale":[4,4,4]}])");
}

TEST_F(SceneEdit, UndoLeavesTheSameBytes)
{
	const std::unique_ptr<FScene> Scene = Load(
		OneMesh +
		R"("scenes":[{"nodes":[0,2]}],"nodes":[{"name":"A","children":[1],"translation":[1.50,2,3]},{"name":"B","mesh":0},{"name":"C","rotation":[0,0,0.6,0.8]}])");
	{
		const FScopedTransaction Transaction = Edit();
		World()->DestroyActor(Actor(*Scene, 0));
		World()->DuplicateActor(Actor(*Scene, 1));
		Actor(*Scene, 1)->GetRootComponent()->AttachToComponent(
			Actor(*Scene, 2)->GetRootComponent(), EAttachmentRule::KeepWorld);
		Actor(*Scene, 2)->Modify();
		Actor(*Scene, 2)->SetActorLabel(TEXT("C2"));
	}
	const std::string Edited = Save(*Scene);
	EXPECT_THAT(Edited, testing::HasSubstr("C2"));
	ASSERT_TRUE(Undo());
	Save(*Scene);
	EXPECT_EQ(ReadAll(Path("copy.gltf")), ReadAll(Path("scene.gltf")));
	ASSERT_TRUE(Redo());
	EXPECT_EQ(Save(*Scene), Edited);
}

TEST_F(SceneEdit, SavesOnceTheDeletedActorsAreCollected)
{
	const std::unique_ptr<FScene> Scene =
		Load(R"("scenes":[{"nodes":[0,1]}],"nodes":[{"name":"A","scale":[2,2,2]},{"name":"B"}])");
	World()->DestroyActor(Actor(*Scene, 0));
	ASSERT_TRUE(CollectGarbage());
	EXPECT_FALSE(Scene->IsAlive(0));
	World()->SpawnActor<AActor>()->SetActorLabel(TEXT("Later")); // in the place of the old one, perhaps
	EXPECT_EQ(Save(*Scene), R"("scenes":[{"nodes":[1,2]}],"nodes":[{"name":"A"},{"name":"B"},{"name":"Later"}])");
}

TEST_F(SceneEdit, SavesOverItsOwnFileAgainAndAgain)
{
	const std::unique_ptr<FScene> Scene =
		Load(R"("scenes":[{"nodes":[0,1]}],"nodes":[{"name":"A","scale":[2,2,2]},{"name":"B"}])");
	Duplicate(*Scene, 1, TEXT("C"));
	ASSERT_TRUE(SaveScene(*Scene, Path("scene.gltf")).IsOk());
	World()->DestroyActor(Actor(*Scene, 0));
	ASSERT_TRUE(SaveScene(*Scene, Path("scene.gltf")).IsOk());
	EXPECT_THAT(ReadAll(Path("scene.gltf")),
		testing::HasSubstr(R"("scenes":[{"nodes":[1,2]}],"nodes":[{"name":"A"},{"name":"B"},{"name":"C"}])"));
}

TEST_F(SceneEdit, ACopyOfANodeWithLevelsHasLevelsOfItsOwn)
{
	const std::string Head =
		ThreeVertices +
		R"("meshes":[{"name":"H","primitives":[{"attributes":{"POSITION":0}}]},{"name":"L","primitives":[{"attributes":{"POSITION":0}}]}],"extensionsUsed":["MSFT_lod"],)";
	const std::unique_ptr<FScene> Scene = Load(
		Head +
		R"("scenes":[{"nodes":[0]}],"nodes":[{"name":"A","mesh":0,"extensions":{"MSFT_lod":{"ids":[1]}}},{"name":"A1","mesh":1}])");
	ASSERT_EQ(Scene->MeshAsset(0)->GetNumSourceModels(), 2);
	AActor* const Copy = Duplicate(*Scene, 0, TEXT("B"));
	Copy->GetRootComponent()->SetRelativeTransform(FTransform(FVector(0, 0, 128)));
	EXPECT_EQ(Save(*Scene),
		Head +
			R"("scenes":[{"nodes":[0,2]}],"nodes":[{"name":"A","mesh":0,"extensions":{"MSFT_lod":{"ids":[1]}}},{"name":"A1","mesh":1},)"
			R"({"name":"B","mesh":0,"extensions":{"MSFT_lod":{"ids":[3]}},"translation":[0,1,0]},{"name":"A1","mesh":1,"translation":[0,1,0]}])");
	const std::unique_ptr<FScene> Again = LoadFile("copy.gltf");
	EXPECT_EQ(Again->Node(2).LodNodes.Num(), 1) << "both nodes have taken their levels in";
}

TEST_F(SceneEdit, DeletesTheLevelsOfADeletedNode)
{
	const std::string Head =
		ThreeVertices +
		R"("meshes":[{"name":"H","primitives":[{"attributes":{"POSITION":0}}]},{"name":"L","primitives":[{"attributes":{"POSITION":0}}]}],"extensionsUsed":["MSFT_lod"],)";
	const std::unique_ptr<FScene> Scene = Load(
		Head +
		R"("scenes":[{"nodes":[0,2]}],"nodes":[{"name":"A","mesh":0,"extensions":{"MSFT_lod":{"ids":[1]}}},{"name":"A1","mesh":1},{"name":"C"}])");
	World()->DestroyActor(Actor(*Scene, 0));
	EXPECT_EQ(Save(*Scene), Head + R"("scenes":[{"nodes":[2]}],"nodes":[{"name":"A"},{"name":"A1"},{"name":"C"}])");
}

TEST_F(SceneEdit, TakesADeletedNodeOutOfAnimations)
{
	const std::string Head =
		R"("accessors":[{"componentType":5126,"count":1,"type":"SCALAR"}],"animations":[{"samplers":[{"input":0,"output":0}],"channels":[)";
	const std::unique_ptr<FScene> Scene = Load(
		Head +
		R"({"sampler":0,"target":{"node":0,"path":"scale"}},{"sampler":0,"target":{"node":1,"path":"scale"}}]}],"nodes":[{"name":"A","scale":[2,2,2]},{"name":"B","scale":[2,2,2]}])");
	World()->DestroyActor(Actor(*Scene, 0));
	EXPECT_EQ(Save(*Scene),
		Head +
			R"({"sampler":0,"target":{"path":"scale"}},{"sampler":0,"target":{"node":1,"path":"scale"}}]}],"nodes":[{"name":"A"},{"name":"B","scale":[2,2,2]}])");
}

TEST_F(SceneEdit, RefusesToSaveWhatStillNeedsADeletedNode)
{
	const std::string Shapes = R"("extensionsUsed":["KHR_implicit_shapes","KHR_physics_rigid_bodies"],)";
	const auto Body = [](const char* What)
	{ return std::string(R"({"name":"Body","extensions":{"KHR_physics_rigid_bodies":{)") + What + "}}}"; };
	const std::pair<std::string, const char*> Cases[] = {
		{R"("skins":[{"name":"S","joints":[0]}],"nodes":[{"name":"A"}])",
			"'A' was deleted, but skin 'S' has it as a joint."},
		{R"("skins":[{"joints":[1],"skeleton":0}],"nodes":[{"name":"A"},{}])",
			"'A' was deleted, but skin 0 has it as its skeleton."},
		{Shapes + R"("nodes":[{"name":"A"},)" + Body(R"("collider":{"geometry":{"node":0}})") + "]",
			"'A' was deleted, but 'Body' has it as the shape of its collider."},
		{Shapes + R"("nodes":[{"name":"A"},)" + Body(R"("trigger":{"nodes":[0]})") + "]",
			"'A' was deleted, but 'Body' has it in its trigger."},
		{Shapes + R"("extensions":{"KHR_physics_rigid_bodies":{"physicsJoints":[{}]}},"nodes":[{"name":"A"},)" +
				Body(R"("joint":{"connectedNode":0,"joint":0})") + "]",
			"'A' was deleted, but 'Body' is joined to it."},
		{R"("extensionsUsed":["MSFT_lod"],"nodes":[{"name":"A"},{"name":"Body","extensions":{"MSFT_lod":{"ids":[0]}}}])",
			"'A' was deleted, but 'Body' has it as a level of detail."},
		{R"("accessors":[{"componentType":5126,"count":1,"type":"SCALAR"}],"animations":[{"name":"Blink","samplers":[{"input":0,"output":0}],"channels":[{"sampler":0,"target":{"path":"pointer","extensions":{"KHR_animation_pointer":{"pointer":"/nodes/0/extensions/KHR_node_visibility/visible"}}}}]}],"nodes":[{"name":"A"}])",
			"'A' was deleted, but animation 'Blink' changes a property of it."},
	};
	for (const auto& [Members, Sentence] : Cases)
	{
		const std::unique_ptr<FScene> Scene = Load(Members);
		ASSERT_TRUE(Scene) << Members;
		World()->DestroyActor(Actor(*Scene, 0));
		EXPECT_EQ(SaveError(*Scene), "Cannot save \"" + Path("scene.gltf") + "\": " + Sentence);
		EXPECT_FALSE(std::filesystem::exists(Path("copy.gltf")));
	}
}

TEST_F(SceneEdit, DeletesANodeTogetherWithAllThatNeedsIt)
{
	const std::string Head =
		R"("extensionsUsed":["KHR_physics_rigid_bodies"],"nodes":[{"name":"A","mesh":0},{"name":"Body")";
	const std::unique_ptr<FScene> Scene =
		Load(OneMesh + Head + R"(,"extensions":{"KHR_physics_rigid_bodies":{"collider":{"geometry":{"node":0}}}}}])");
	World()->DestroyActor(Actor(*Scene, 1));
	World()->DestroyActor(Actor(*Scene, 0));
	EXPECT_EQ(Save(*Scene),
		OneMesh + R"("extensionsUsed":["KHR_physics_rigid_bodies"],"nodes":[{"name":"A"},{"name":"Body"}])");
}

TEST_F(SceneEdit, RefusesToPullTheJointsOfASkinApart)
{
	const std::unique_ptr<FScene> Scene =
		Load(R"("skins":[{"name":"S","joints":[0,1]}],"nodes":[{"name":"A","children":[1]},{"name":"B"}])");
	Actor(*Scene, 1)->GetRootComponent()->DetachFromComponent();
	EXPECT_THAT(SaveError(*Scene), testing::HasSubstr("the joints of skin 'S' have no common root any more."));
}

TEST_F(SceneEdit, RefusesAnAssetThatTheFileDoesNotKnow)
{
	const std::unique_ptr<FScene> Scene = Load(OneMesh + R"("nodes":[{"mesh":0}])");
	UStaticMesh* const Other = NewObject<UStaticMesh>(nullptr, FName(TEXT("Other")));
	Other->SetNumSourceModels(1);
	CastChecked<UStaticMeshComponent>(Scene->Node(0).Component.Get())->SetStaticMesh(Other);
	EXPECT_THAT(SaveError(*Scene), testing::HasSubstr("the asset 'Other' comes from no mesh of the file."));
}

TEST_F(SceneEdit, ShowsAnotherMeshOfTheFileWhereTheUserSaysSo)
{
	const std::string Head =
		ThreeVertices +
		R"("meshes":[{"primitives":[{"attributes":{"POSITION":0}}]},{"primitives":[{"attributes":{"POSITION":0}}]}],)";
	const std::unique_ptr<FScene> Scene = Load(Head + R"("nodes":[{"mesh":0}])");
	CastChecked<UStaticMeshComponent>(Scene->Node(0).Component.Get())->SetStaticMesh(Scene->MeshAsset(1));
	EXPECT_EQ(Save(*Scene), Head + R"("nodes":[{"mesh":1}])");
}

TEST_F(SceneEdit, JudgesNodesByWhatTheyAreAttachedToNow)
{
	const std::unique_ptr<FScene> Scene = Load(
		OneMesh +
		R"("nodes":[{"name":"A","rotation":[0,0,0.6,0.8],"scale":[2,1,1]},{"name":"B","mesh":0,"rotation":[0,0,0.6,0.8]}])");
	const auto Reason = [&] { return FSceneJudge(*Scene).Judge(ESceneCommand::BakeTransform, {true, true})[1].Reason; };
	EXPECT_EQ(Reason(), "");
	Actor(*Scene, 1)->GetRootComponent()->AttachToComponent(Actor(*Scene, 0)->GetRootComponent());
	EXPECT_EQ(Reason(), "its world transform has shear");
	World()->DestroyActor(Actor(*Scene, 1));
	EXPECT_EQ(
		FSceneJudge(*Scene).Judge(ESceneCommand::BakeTransform, {true, true})[1].Kind, FSceneVerdict::EKind::NoMesh);
}

TEST_F(SceneEdit, JudgesCopiesToo)
{
	const std::unique_ptr<FScene> Scene = Load(
		OneMesh +
		R"("nodes":[{"name":"A","rotation":[0,0,0.6,0.8],"scale":[2,1,1]},{"name":"B","mesh":0,"rotation":[0,0,0.6,0.8]},{"name":"C","mesh":0,"extensions":{"ACME_x":{}}}],"extensionsUsed":["ACME_x"])");
	const AActor* const CopyOfB = Duplicate(*Scene, 1, TEXT("B2"));
	const AActor* const CopyOfC = Duplicate(*Scene, 2, TEXT("C2"));
	const auto Verdict = [&](const AActor* Of)
	{
		const FSceneTree Tree(*Scene);
		const std::vector<bool> bAll(std::size_t(Tree.Num()), true);
		return FSceneJudge(*Scene).Judge(ESceneCommand::BakeTransform, Tree, bAll)[std::size_t(Tree.IndexOf(Of))];
	};
	EXPECT_EQ(Verdict(CopyOfB).Kind, FSceneVerdict::EKind::Candidate);
	EXPECT_EQ(Verdict(CopyOfC).Reason, "it carries ACME_x");
	EXPECT_EQ(Verdict(Actor(*Scene, 0)).Kind, FSceneVerdict::EKind::NoMesh);
	CopyOfB->GetRootComponent()->AttachToComponent(Actor(*Scene, 0)->GetRootComponent());
	EXPECT_EQ(Verdict(CopyOfB).Reason, "its world transform has shear");
}

TEST_F(SceneEdit, DestroysCopiesTogetherWithTheScene)
{
	std::unique_ptr<FScene> Scene = Load(R"("nodes":[{"name":"A","scale":[2,2,2]}])");
	Duplicate(*Scene, 0, TEXT("B"));
	AActor* const Own = World()->SpawnActor<AActor>();
	Scene.reset();
	EXPECT_THAT(World()->GetActors(), testing::ElementsAre(Own));
}
