// SPDX-License-Identifier: MIT
#include "SceneFixture.h"

#include "Editor/ScopedTransaction.h"
#include "Engine/StaticMeshComponent.h"
#include "SceneIO/SceneParts.h"
#include "SceneIO/SceneVerdict.h"

#include <gmock/gmock.h>

namespace
{
/// What nodes carry beside their mesh, in the world and in what is saved.
class ScenePart : public FSceneFixture
{
protected:
	static USceneComponent& Root(const FScene& Scene, FGltfIndex Node) { return *Scene.Node(Node).Component; }

	/// Moves the actor's root as a bake does: what is attached keeps its place.
	static void MoveUnder(AActor* Actor, const FTransform& World)
	{
		UScenePartComponent* const Part = SceneParts::Find(Actor);
		const FTransform Kept = Part->GetComponentTransform();
		Actor->GetRootComponent()->Modify();
		Part->Modify();
		Actor->GetRootComponent()->SetWorldTransform(World);
		Part->SetWorldTransform(Kept);
	}
};

const std::string Head = OneMesh + R"("cameras":[{"type":"perspective","perspective":{"yfov":1,"znear":1}}],)";
const std::string Node = R"({"name":"A","mesh":0,"camera":0,"scale":[2,2,2]})";
} // namespace

TEST_F(ScenePart, AreComponentsOfNodesThatHaveAMeshToo)
{
	const std::unique_ptr<FScene> Scene = Load(Head + R"("nodes":[)" + Node + R"(,{"camera":0},{"mesh":0}])");
	const UScenePartComponent* const Part = SceneParts::Find(Scene->Node(0).Actor);
	ASSERT_NE(Part, nullptr);
	EXPECT_EQ(Part->GetAttachParent(), &Root(*Scene, 0));
	EXPECT_EQ(Part->GetRelativeTransform(), FTransform());
	EXPECT_EQ(SceneParts::Find(Scene->Node(1).Actor), nullptr);
	EXPECT_EQ(SceneParts::Find(Scene->Node(2).Actor), nullptr);
}

TEST_F(ScenePart, GoWhereTheUserMovesTheActor)
{
	const std::unique_ptr<FScene> Scene = Load(Head + R"("nodes":[)" + Node + "]");
	Root(*Scene, 0).SetWorldTransform(FTransform(FQuat::Identity, FVector(0, -128, 0), FVector(2, 2, 2)));
	EXPECT_EQ(
		Save(*Scene), Head + R"("nodes":[{"name":"A","mesh":0,"camera":0,"scale":[2,2,2],"translation":[1,0,0]}])");
}

TEST_F(ScenePart, GetAChildNodeOfTheirOwnWhereTheNodeLeavesThem)
{
	const std::unique_ptr<FScene> Scene = Load(Head + R"("nodes":[)" + Node + "]");
	{
		const FScopedTransaction Transaction(TEXT("Test"), FText::FromString(TEXT("Bake")), nullptr);
		MoveUnder(Scene->Node(0).Actor, FTransform(FVector(0, -128, 0)));
	}
	EXPECT_EQ(Save(*Scene),
		Head +
			R"("nodes":[{"name":"A","mesh":0,"translation":[1,0,0],"children":[1]},{"name":"A parts","camera":0,"translation":[-1,0,0],"scale":[2,2,2]}])");
	ASSERT_TRUE(Undo());
	Save(*Scene);
	EXPECT_EQ(ReadAll(Path("copy.gltf")), ReadAll(Path("scene.gltf")));
}

TEST_F(ScenePart, OfACopyAreItsOwn)
{
	const std::unique_ptr<FScene> Scene = Load(Head + R"("nodes":[)" + Node + "]");
	AActor* const Copy = World()->DuplicateActor(Scene->Node(0).Actor);
	Copy->SetActorLabel(TEXT("B"));
	ASSERT_NE(SceneParts::Find(Copy), nullptr);
	ASSERT_NE(SceneParts::Find(Copy), SceneParts::Find(Scene->Node(0).Actor));
	MoveUnder(Copy, FTransform(FVector(0, -128, 0)));
	EXPECT_EQ(Save(*Scene),
		Head + R"("nodes":[)" + Node +
			R"(,{"name":"B","mesh":0,"translation":[1,0,0],"children":[2]},{"name":"B parts","camera":0,"translation":[-1,0,0],"scale":[2,2,2]}])");
}

TEST_F(ScenePart, AColliderInTheShapeOfItsNodeIsInThatOfItsCopyThere)
{
	const auto Body = [](const char* Name, int Self)
	{
		return std::string(R"({"name":")") + Name +
			   R"(","mesh":0,"extensions":{"KHR_physics_rigid_bodies":{"collider":{"geometry":{"node":)" +
			   std::to_string(Self) + "}}}}}";
	};
	const std::unique_ptr<FScene> Scene =
		Load(OneMesh + R"("extensionsUsed":["KHR_physics_rigid_bodies"],"nodes":[)" + Body("A", 0) + "]");
	EXPECT_EQ(SceneParts::Find(Scene->Node(0).Actor), nullptr) << "it follows the mesh";
	World()->DuplicateActor(Scene->Node(0).Actor)->SetActorLabel(TEXT("B"));
	EXPECT_EQ(Save(*Scene), OneMesh + R"("extensionsUsed":["KHR_physics_rigid_bodies"],"nodes":[)" + Body("A", 0) +
								"," + Body("B", 1) + "]");
	World()->DestroyActor(Scene->Node(0).Actor);
	EXPECT_EQ(Save(*Scene),
		OneMesh + R"("extensionsUsed":["KHR_physics_rigid_bodies"],"nodes":[{"name":"A"},)" + Body("B", 1) + "]");
}

TEST_F(ScenePart, KeepNoNodeFromBeingWorkedOn)
{
	const std::unique_ptr<FScene> Scene = Load(Head + R"("nodes":[)" + Node + "]");
	EXPECT_EQ(FSceneJudge(*Scene).Judge(ESceneCommand::BakeTransform, {true})[0].Kind, FSceneVerdict::EKind::Candidate);
}
