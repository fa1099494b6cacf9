// SPDX-License-Identifier: MIT
#include "SceneFixture.h"
#include "Support/WorldGenerators.h"

#include "Editor/ScopedTransaction.h"
#include "Engine/StaticMeshComponent.h"
#include "SceneIO/JsonWrite.h"

#include <cmath>
#include <map>

namespace
{
using SceneEditProperty = FSceneFixture;

int32 Draw(int32 Count)
{
	return *WorldGenerators::Index(Count);
}

/// A random forest in random scenes, by text. Nodes have even scales, so that nothing is sheared.
std::string AnyScene(int32 NumNodes)
{
	std::vector<std::string> Children(static_cast<std::size_t>(NumNodes));
	std::vector<std::string> Roots(2);
	const auto Append = [](std::string& List, int32 Index)
	{ List += (List.empty() ? "" : ",") + std::to_string(Index); };
	for (int32 Node = 0; Node < NumNodes; ++Node)
	{
		const int32 Parent = Draw(Node + 1);
		const int32 In = Draw(3);
		if (Parent < Node)
		{
			Append(Children[std::size_t(Parent)], Node);
		}
		else if (In < 2)
		{
			Append(Roots[std::size_t(In)], Node);
		}
	}
	std::string Nodes;
	for (int32 Node = 0; Node < NumNodes; ++Node)
	{
		const std::string& List = Children[std::size_t(Node)];
		std::string Text = R"({"name":"n)" + std::to_string(Node) + "\"";
		Text += Draw(3) == 0 ? std::string() : R"(,"mesh":)" + std::to_string(Draw(2));
		Text += Draw(2) == 0 ? std::string() : R"( , "translation":[)" + std::to_string(Draw(9)) + ".50,0,2]";
		Text += Draw(3) == 0 ? R"(,"rotation":[0.6,0,0,0.8])" : "";
		Text += Draw(3) == 0 ? R"(,"scale":[2,2,2])" : "";
		Text += Draw(4) == 0 ? R"(,"extras":{"k":1.0})" : "";
		Nodes += (Nodes.empty() ? "" : ",\n") + Text + (List.empty() ? "" : R"(,"children":[)" + List + "]") + "}";
	}
	std::string Scenes;
	for (const std::string& List : Roots)
	{
		Scenes += (Scenes.empty() ? "{" : ",{") + (List.empty() ? "" : R"("nodes":[)" + List + "]") + "}";
	}
	return ThreeVertices +
		   R"("meshes":[{"name":"M0","primitives":[{"attributes":{"POSITION":0}}]},{"name":"M1","primitives":[{"attributes":{"POSITION":0}}]}],"scenes":[)" +
		   Scenes + "],\"nodes\":[" + Nodes + "]";
}

/// What a user sees of an actor.
struct FSeen
{
	std::string Parent;
	std::string Mesh;
	FTransform World;
};

std::map<std::string, FSeen> Look(UWorld* World)
{
	std::map<std::string, FSeen> Seen;
	for (const AActor* Actor : World->GetActors())
	{
		const USceneComponent* const Root = Actor->GetRootComponent();
		const USceneComponent* const Above = Root->GetAttachParent();
		const UStaticMeshComponent* const Shown = Cast<UStaticMeshComponent>(Root);
		FSeen Here;
		Here.Parent = Above ? Above->GetOwner()->GetActorLabel().ToUtf8() : std::string();
		Here.Mesh = Shown && Shown->GetStaticMesh() ? Shown->GetStaticMesh()->GetName().ToUtf8() : std::string();
		Here.World = Root->GetComponentTransform();
		const bool bNew = Seen.emplace(Actor->GetActorLabel().ToUtf8(), Here).second;
		EXPECT_TRUE(bNew) << "labels are made unique here";
	}
	return Seen;
}

/// One edit of a user, in a transaction of its own.
void EditOnce(UWorld* World, int32 Number)
{
	const FScopedTransaction Transaction(TEXT("Test"), FText::FromString(TEXT("Edit")), nullptr);
	const TArray<AActor*> Actors = World->GetActors();
	if (Actors.IsEmpty())
	{
		return;
	}
	AActor* const Actor = Actors[Draw(Actors.Num())];
	AActor* const Other = Actors[Draw(Actors.Num())];
	USceneComponent* const Root = Actor->GetRootComponent();
	const FString Label = FString::Printf(TEXT("edit %d"), Number);
	switch (Draw(6))
	{
	case 0:
		World->DestroyActor(Actor);
		break;
	case 1:
		World->DuplicateActor(Actor)->SetActorLabel(Label);
		break;
	case 2:
		Root->AttachToComponent(
			Other->GetRootComponent(), Draw(2) == 0 ? EAttachmentRule::KeepWorld : EAttachmentRule::KeepRelative);
		break;
	case 3:
		Root->DetachFromComponent(Draw(2) == 0 ? EAttachmentRule::KeepWorld : EAttachmentRule::KeepRelative);
		break;
	case 4:
		Actor->Modify();
		Actor->SetActorLabel(Label);
		break;
	default:
		Root->Modify();
		Root->SetWorldTransform(FTransform(FQuat(FVector(0, 0, 1), 0.3), FVector(64 * Number, 3, 1), FVector(2, 2, 2)));
	}
}
} // namespace

RC_GTEST_FIXTURE_PROP(SceneEditProperty, TheReloadedWorldIsTheEditedOne, ())
{
	std::unique_ptr<FScene> Scene = Load(AnyScene(1 + Draw(8)));
	RC_ASSERT(Scene != nullptr);
	const int32 NumEdits = 1 + Draw(10);
	for (int32 Number = 0; Number < NumEdits; ++Number)
	{
		EditOnce(World(), Number);
		if (Draw(4) == 0)
		{
			Undo();
		}
	}
	const std::map<std::string, FSeen> Edited = Look(World());
	const std::string Saved = Save(*Scene);
	Transactions().Reset();
	Scene.reset();

	const std::unique_ptr<FScene> Again = LoadFile("copy.gltf");
	RC_ASSERT(Again != nullptr);
	const std::map<std::string, FSeen> Reloaded = Look(World());
	for (const auto& [Label, Seen] : Edited)
	{
		const auto Found = Reloaded.find(Label);
		RC_ASSERT(Found != Reloaded.end());
		RC_ASSERT(Found->second.Parent == Seen.Parent);
		RC_ASSERT(Found->second.Mesh == Seen.Mesh);
		RC_ASSERT(Found->second.World.Equals(Seen.World, 1e-6));
	}
	RC_ASSERT(Reloaded.size() == Edited.size());

	// What was read again is what was written: a second save changes no byte.
	RC_ASSERT(Save(*Again) == Saved);
}

RC_GTEST_FIXTURE_PROP(SceneEditProperty, UndoOfEveryEditLeavesTheSameBytes, ())
{
	const std::unique_ptr<FScene> Scene = Load(AnyScene(1 + Draw(8)));
	RC_ASSERT(Scene != nullptr);
	const int32 NumEdits = 1 + Draw(6);
	for (int32 Number = 0; Number < NumEdits; ++Number)
	{
		EditOnce(World(), Number);
	}
	while (Undo())
	{
	}
	Save(*Scene);
	RC_ASSERT(ReadAll(Path("copy.gltf")) == ReadAll(Path("scene.gltf")));
}
