// SPDX-License-Identifier: MIT
#include "Viewport/ViewportScene.h"

#include "CoreUObject/GarbageCollector.h"
#include "Editor/ScopedTransaction.h"
#include "Engine/InstancedStaticMeshComponent.h"
#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/TestMeshes.h"
#include "Viewport/ViewportInstances.h"

#include <cmath>

namespace
{
class ViewportScene : public FEditorFixture
{
protected:
	void CollectAll()
	{
		Scene.Collect(World());
		while (!Scene.Prepare(1000.0))
		{
		}
	}

	FViewportScene Scene;
};

const FTransform Uneven(FQuat({0.0, 0.0, 1.0}, 0.5), {7.0, 11.0, 13.0}, {2.0, -3.0, 5.0});
}

TEST_F(ViewportScene, HasAnItemForEveryMeshComponentAndEveryInstance)
{
	UStaticMesh* const Mesh = MakeUnevenMesh();
	UStaticMeshComponent* const Root = MakeActor(World(), Mesh);
	AddMeshComponent(Root, MakeUnevenMesh(), Uneven);
	auto* const Instanced = Root->GetOwner()->AddComponent<UInstancedStaticMeshComponent>();
	Instanced->SetStaticMesh(Mesh);
	Instanced->AddInstance(FTransform(FVector(1.0, 2.0, 3.0)));
	Instanced->AddInstance(Uneven);
	MakeActor(World(), nullptr);
	CollectAll();
	EXPECT_EQ(Scene.GetItems().size(), 4u);
	EXPECT_EQ(Scene.GetMeshes().size(), 2u);
	EXPECT_EQ(Scene.GetActors().size(), 2u);
}

TEST_F(ViewportScene, KeepsTheShearOfAnInstanceUnderAnUnevenParent)
{
	UStaticMesh* const Mesh = MakeUnevenMesh();
	AActor* const Actor = World()->SpawnActor<AActor>();
	auto* const Instanced = Actor->AddComponent<UInstancedStaticMeshComponent>();
	Instanced->SetStaticMesh(Mesh);
	const FTransform Turned(FQuat({1.0, 0.0, 0.0}, 0.7), {1.0, 2.0, 3.0});
	Instanced->AddInstance(Turned);
	Instanced->SetRelativeTransform(Uneven);
	CollectAll();
	ASSERT_EQ(Scene.GetItems().size(), 1u);
	FBox Expected;
	for (const FVector& Local : LocalPositions(Mesh))
	{
		Expected += Uneven.TransformPosition(Turned.TransformPosition(Local));
	}
	const FVector Local(2.0, 3.0, 5.0);
	EXPECT_TRUE(Scene.GetItems()[0].LocalToWorld.TransformPosition(Local).Equals(
		Uneven.TransformPosition(Turned.TransformPosition(Local)), 1.e-9));
	EXPECT_TRUE(
		Scene.GetItems()[0].WorldBounds.IsInside(FBox(Expected.Min + FVector(1.e-6), Expected.Max - FVector(1.e-6))));
}

TEST_F(ViewportScene, MeshesAppearOneByOneWhereThereIsNoTime)
{
	MakeActor(World(), MakeUnevenMesh());
	MakeActor(World(), MakeUnevenMesh(), FTransform(FVector(100.0, 0.0, 0.0)));
	Scene.Collect(World());
	EXPECT_FALSE(Scene.IsPrepared());
	EXPECT_FALSE(Scene.GetBounds().IsValid);
	EXPECT_FALSE(Scene.Prepare(0.0));
	EXPECT_LT(Scene.GetBounds().Max.X, 50.0);
	EXPECT_TRUE(Scene.Prepare(0.0));
	EXPECT_GT(Scene.GetBounds().Max.X, 50.0);
}

TEST_F(ViewportScene, WhatHasAppearedStaysWhenTheWorldIsLookedAtAgain)
{
	UStaticMesh* const Mesh = MakeUnevenMesh();
	MakeActor(World(), Mesh);
	CollectAll();
	const int32 Builds = Mesh->GetNumBuilds();
	MakeActor(World(), Mesh, Uneven);
	Scene.Collect(World());
	EXPECT_TRUE(Scene.IsPrepared());
	EXPECT_EQ(Scene.GetItems().size(), 2u);
	EXPECT_TRUE(Scene.GetItems()[1].WorldBounds.IsValid);
	EXPECT_EQ(Mesh->GetNumBuilds(), Builds);
}

TEST_F(ViewportScene, SeesAnEditOfAMeshThatNobodyTold)
{
	UStaticMesh* const Mesh = MakeUnevenMesh();
	MakeActor(World(), Mesh);
	CollectAll();
	const uint32 Revision = Scene.GetRevision();
	Scene.RefreshMeshes();
	EXPECT_EQ(Scene.GetRevision(), Revision);
	Mesh->SetMeshDescription(0, MakeBoxDescription({0.0, 0.0, 0.0}, {20.0, 30.0, 50.0}));
	Scene.RefreshMeshes();
	EXPECT_NE(Scene.GetRevision(), Revision);
	EXPECT_EQ(Scene.GetBounds(), FBox({0.0, 0.0, 0.0}, {20.0, 30.0, 50.0}));
}

TEST_F(ViewportScene, LeavesOutDestroyedActorsAndTakesThemBackWithUndo)
{
	MakeActor(World(), MakeUnevenMesh());
	UStaticMeshComponent* const Gone = MakeActor(World(), MakeUnevenMesh());
	{
		const FScopedTransaction Transaction(TEXT(""), FText::FromString(TEXT("Delete")), nullptr);
		World()->DestroyActor(Gone->GetOwner());
	}
	CollectAll();
	EXPECT_EQ(Scene.GetItems().size(), 1u);
	ASSERT_TRUE(Undo());
	CollectAll();
	EXPECT_EQ(Scene.GetItems().size(), 2u);
}

TEST_F(ViewportScene, OutlivesTheWorldThatItWasCollectedFrom)
{
	MakeActor(World(), MakeUnevenMesh());
	CollectAll();
	DestroyEditorAndAssets();
	Scene.RefreshMeshes();
	Scene.UpdateSelection(nullptr);
	EXPECT_FALSE(Scene.GetActors()[0].Actor.IsValid());
	Scene.Collect(nullptr);
	EXPECT_TRUE(Scene.GetItems().empty());
}

TEST_F(ViewportScene, FramesSelectedActorsAndThePlacesOfThoseWithoutAMesh)
{
	UStaticMesh* const Mesh = MakeBoxMesh({-1.0, -2.0, -3.0}, {2.0, 5.0, 11.0});
	MakeActor(World(), Mesh, FTransform(FVector(500.0, 0.0, 0.0)));
	UStaticMeshComponent* const Shown = MakeActor(World(), Mesh);
	UStaticMeshComponent* const Empty = MakeActor(World(), nullptr, FTransform(FVector(0.0, 70.0, 0.0)));
	CollectAll();
	EXPECT_FALSE(Scene.GetSelectionBounds().IsValid);
	GEditor->SelectActor(Shown->GetOwner(), true);
	Scene.UpdateSelection(GEditor->GetSelectedActors());
	EXPECT_EQ(Scene.GetSelectionBounds(), FBox({-1.0, -2.0, -3.0}, {2.0, 5.0, 11.0}));
	GEditor->SelectActor(Empty->GetOwner(), true);
	Scene.UpdateSelection(GEditor->GetSelectedActors());
	EXPECT_EQ(Scene.GetSelectionBounds(), FBox({-1.0, -2.0, -3.0}, {2.0, 70.0, 11.0}));
}

TEST_F(ViewportScene, PassesOverPlacesThatAreNoNumbers)
{
	MakeActor(World(), MakeUnevenMesh(), FTransform(FVector(std::nan(""), 0.0, 0.0)));
	MakeActor(World(), MakeUnevenMesh());
	CollectAll();
	EXPECT_EQ(Scene.GetItems().size(), 1u);
	EXPECT_TRUE(Scene.GetBounds().IsValid);
}

TEST_F(ViewportScene, DrawsOnlyInstancesNearThePictureAndNoneTwice)
{
	UStaticMesh* const Mesh = MakeBoxMesh({-1.0, -1.0, -1.0}, {1.0, 1.0, 1.0});
	AActor* const Actor = World()->SpawnActor<AActor>();
	auto* const Instanced = Actor->AddComponent<UInstancedStaticMeshComponent>();
	Instanced->SetStaticMesh(Mesh);
	for (int32 X = 0; X < 100; ++X)
	{
		for (int32 Y = 0; Y < 100; ++Y)
		{
			Instanced->AddInstance(FTransform(FVector(X * 10.0, Y * 10.0, 0.0)));
		}
	}
	CollectAll();
	FViewportInstances Instances;
	Instances.Build(Scene, FVector(500.0, 500.0, 0.0), false);
	FViewportCamera Camera;
	Camera.SetPictureSize(300.0, 300.0);
	const auto NumVisible = [&]
	{
		int32 Count = 0;
		int32 End = 0;
		for (const FInstanceRun& Run : Instances.FindVisible(Camera))
		{
			EXPECT_GE(Run.First, End);
			End = Run.First + Run.Count;
			Count += Run.Count;
		}
		return Count;
	};
	Camera.Frame(Scene.GetBounds(), 1.0);
	EXPECT_EQ(NumVisible(), 10000);
	Camera.LookAt({500.0, 500.0, 0.0}, 100.0, 0.3, -1.2);
	const int32 Near = NumVisible();
	EXPECT_GT(Near, 0);
	EXPECT_LT(Near, 3000);
	Camera.LookAt({500.0, 500.0, 5000.0}, 100.0, 0.3, 1.2);
	EXPECT_EQ(NumVisible(), 0);
	// What is seen from far away is drawn as specks, what is near is not.
	const auto NumSpecks = [&]
	{
		int32 Count = 0;
		for (const FInstanceRun& Run : Instances.FindVisible(Camera))
		{
			Count += Run.bSpecks ? Run.Count : 0;
		}
		return Count;
	};
	Camera.LookAt({500.0, 500.0, 0.0}, 50000.0, 0.3, -1.2);
	EXPECT_EQ(NumSpecks(), 10000);
	Camera.LookAt({500.0, 500.0, 0.0}, 100.0, 0.3, -1.2);
	EXPECT_EQ(NumSpecks(), 0);
}
