// SPDX-License-Identifier: MIT
#include "Viewport/ViewportModel.h"

#include "CoreUObject/GarbageCollector.h"
#include "Editor/ScopedTransaction.h"
#include "Engine/Actor.h"
#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/TestMeshes.h"

namespace
{
class ViewportModel : public FEditorFixture
{
protected:
	ViewportModel() { Mesh = MakeUnevenMesh(TEXT("/Test/Uneven")); }

	int32 Changes = 0;
	UStaticMesh* Mesh = nullptr;
};
}

TEST_F(ViewportModel, AsksForAPictureWheneverTheEditorAWorldOrAMeshHasChanged)
{
	FViewportModel Model([this] { ++Changes; });
	const auto Told = [&](auto&& Action)
	{
		Changes = 0;
		Action();
		return Changes > 0;
	};
	UStaticMeshComponent* Component = nullptr;
	EXPECT_TRUE(Told([&] { Component = MakeActor(World(), Mesh); }));
	EXPECT_TRUE(Told([&] { GEditor->SelectActor(Component->GetOwner(), true); }));
	EXPECT_TRUE(Told([&] { GEditor->RedrawLevelEditingViewports(); }));
	EXPECT_TRUE(Told([&] { Mesh->PostEditChange(); }));
	EXPECT_TRUE(Told([&] { GEditor->StartPlaySession(); }));
	EXPECT_TRUE(Told([&] { GEditor->EndPlaySession(); }));
	EXPECT_FALSE(Told([] {}));
}

TEST_F(ViewportModel, LeavesNoListenerBehind)
{
	{
		const FViewportModel Model([this] { ++Changes; });
		EXPECT_TRUE(GEditor->OnRedraw().IsBound());
		EXPECT_TRUE(GEditor->GetSelectedActors()->OnChanged().IsBound());
		EXPECT_TRUE(GEditor->OnPlaySession().IsBound());
		EXPECT_TRUE(UWorld::OnActorListChanged().IsBound());
		EXPECT_TRUE(UStaticMesh::OnMeshEdited().IsBound());
	}
	EXPECT_FALSE(GEditor->OnRedraw().IsBound());
	EXPECT_FALSE(GEditor->GetSelectedActors()->OnChanged().IsBound());
	EXPECT_FALSE(GEditor->OnPlaySession().IsBound());
	EXPECT_FALSE(UWorld::OnActorListChanged().IsBound());
	EXPECT_FALSE(UStaticMesh::OnMeshEdited().IsBound());
}

TEST_F(ViewportModel, FollowsTheEditorThatComesAfterTheFirst)
{
	FViewportModel Model([this] { ++Changes; });
	UEditorEngine::Destroy();
	CollectGarbage();
	Model.Update(1000.0);
	UEditorEngine::Create();
	Model.Update(1000.0);
	MakeActor(World(), Mesh);
	Changes = 0;
	GEditor->RedrawLevelEditingViewports();
	EXPECT_EQ(Changes, 1);
	Model.Update(1000.0);
	EXPECT_EQ(Model.GetScene().GetItems().size(), 1u);
}

TEST_F(ViewportModel, FramesAllAtFirstAndTheSelectionWhenAsked)
{
	UStaticMeshComponent* const Far = MakeActor(World(), Mesh, FTransform(FVector(1000.0, 0.0, 0.0)));
	MakeActor(World(), Mesh);
	FViewportModel Model([] {});
	Model.GetCamera().SetPictureSize(800.0, 600.0);
	EXPECT_TRUE(Model.Update(1000.0));
	EXPECT_TRUE(Model.GetCamera().GetTarget().Equals(Model.GetScene().GetBounds().GetCenter()));
	GEditor->SelectActor(Far->GetOwner(), true);
	Model.FrameSelection();
	EXPECT_TRUE(Model.GetCamera().GetTarget().Equals({1000.5, 1.5, 4.0}));
	EXPECT_LT(Model.GetCamera().GetDistance(), 50.0);
	Model.Orbit(10.0, 0.0);
	Model.Update(1000.0);
	EXPECT_TRUE(Model.GetCamera().GetTarget().Equals({1000.5, 1.5, 4.0}));
	GEditor->SelectNone();
	Model.FrameSelection();
	Model.Update(1000.0);
	EXPECT_TRUE(Model.GetCamera().GetTarget().Equals(Model.GetScene().GetBounds().GetCenter()));
}

TEST_F(ViewportModel, LooksAtNothingThatIsHalfDone)
{
	FViewportModel Model([] {});
	Model.Update(1000.0);
	{
		const FScopedTransaction Transaction(TEXT(""), FText::FromString(TEXT("Make")), nullptr);
		MakeActor(World(), Mesh);
		EXPECT_FALSE(Model.Update(1000.0));
		EXPECT_TRUE(Model.GetScene().GetItems().empty());
	}
	EXPECT_TRUE(Model.Update(1000.0));
	EXPECT_EQ(Model.GetScene().GetItems().size(), 1u);
}

TEST_F(ViewportModel, ShowsThePivotOnlyOfASelection)
{
	UStaticMeshComponent* const Component = MakeActor(World(), Mesh, FTransform(FVector(2.0, 3.0, 5.0)));
	FVector Pivot(7.0, 7.0, 7.0);
	EXPECT_FALSE(FViewportModel::FindPivot(Pivot));
	EXPECT_EQ(Pivot, FVector(7.0, 7.0, 7.0));
	GEditor->SelectActor(Component->GetOwner(), true);
	GEditor->UpdatePivotLocationForSelection();
	ASSERT_TRUE(FViewportModel::FindPivot(Pivot));
	EXPECT_EQ(Pivot, FVector(2.0, 3.0, 5.0));
}

TEST_F(ViewportModel, AnEmptyWorldIsAGroundToLookAt)
{
	FViewportModel Model([] {});
	Model.GetCamera().SetPictureSize(800.0, 600.0);
	EXPECT_TRUE(Model.Update(0.0));
	EXPECT_EQ(Model.GetCamera().GetTarget(), FVector::ZeroVector);
	EXPECT_LT(Model.GetCamera().GetPitch(), 0.0);
	Model.FrameSelection();
	EXPECT_TRUE(Model.Update(0.0));
}
