// SPDX-License-Identifier: MIT
#include "CoreUObject/GarbageCollector.h"
#include "CoreUObject/ObjectIterator.h"
#include "Support/ThrowingAssertions.h"
#include "TransactionFixture.h"

#include <gmock/gmock.h>

namespace
{
using testing::ElementsAre;

class FEditorEngine : public FEditorFixture
{
};

TEST_F(FEditorEngine, StartsWithAnEmptyWorldAnEmptySelectionAndAnEmptyBuffer)
{
	ASSERT_NE(World(), nullptr);
	EXPECT_EQ(World()->GetWorldType(), EWorldType::Editor);
	EXPECT_TRUE(World()->GetActors().IsEmpty());
	EXPECT_EQ(GEditor->GetSelectedActors()->Num(), 0);
	EXPECT_EQ(Transactions().GetQueueLength(), 0);
	EXPECT_EQ(GEditor->PlayWorld.Get(), nullptr);
}

TEST_F(FEditorEngine, ThereIsOneAtATime)
{
	const FThrowingAssertions Throwing;
	EXPECT_THROW(UEditorEngine::Create(), FAssertionFailed);
}

TEST_F(FEditorEngine, SurvivesCollectionWithAllThatItHolds)
{
	MakeActor(World(), MakeUnevenMesh());
	CollectGarbage();
	EXPECT_TRUE(IsValid(GEditor));
	EXPECT_TRUE(IsValid(GEditor->GetSelectedActors()));
	EXPECT_TRUE(IsValid(GEditor->Trans));
	EXPECT_EQ(World()->GetActors().Num(), 1);
}

TEST_F(FEditorEngine, LeavesNothingBehindWhenItIsDestroyed)
{
	const FWeakObjectPtr Engine(GEditor);
	const FWeakObjectPtr EditedWorld(World());
	{
		const FEditScope Scope;
		MakeActor(World(), MakeUnevenMesh());
	}
	GEditor->StartPlaySession();
	UEditorEngine::Destroy();
	EXPECT_EQ(GEditor, nullptr);
	CollectGarbage();
	EXPECT_EQ(ResolveObject(Engine.GetHandle()), nullptr);
	EXPECT_EQ(ResolveObject(EditedWorld.GetHandle()), nullptr);
	EXPECT_TRUE(GetObjectsOf<AActor>().IsEmpty());
	EXPECT_TRUE(GetObjectsOf<UWorld>().IsEmpty());
}

TEST_F(FEditorEngine, CountsRedrawsAndTellsWhetherPickingIsToBeFresh)
{
	std::vector<bool> Told;
	GEditor->OnRedraw().AddLambda([&](bool bInvalidate) { Told.push_back(bInvalidate); });
	GEditor->RedrawLevelEditingViewports();
	GEditor->RedrawLevelEditingViewports(false);
	EXPECT_EQ(GEditor->GetNumRedraws(), 2);
	EXPECT_THAT(Told, ElementsAre(true, false));
}

TEST_F(FEditorEngine, UndoPutsThePivotBackAndRedraws)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr, FTransform(FVector(2, 3, 5)));
	GEditor->SelectActor(Component->GetOwner(), true);
	{
		const FEditScope Scope;
		Move(Component, FTransform(FVector(-7, 0, 0)));
	}
	GEditor->UpdatePivotLocationForSelection();
	const int32 NumRedraws = GEditor->GetNumRedraws();
	EXPECT_TRUE(Undo());
	EXPECT_EQ(GEditor->GetPivotLocation(), FVector(2, 3, 5));
	EXPECT_EQ(GEditor->GetNumRedraws(), NumRedraws + 1);
	EXPECT_FALSE(Undo());
	EXPECT_EQ(GEditor->GetNumRedraws(), NumRedraws + 1);
	EXPECT_TRUE(Redo());
	EXPECT_EQ(GEditor->GetPivotLocation(), FVector(-7, 0, 0));
}

TEST_F(FEditorEngine, PlaySessionRunsInACopyThatEndsWithIt)
{
	std::vector<bool> Told;
	GEditor->OnPlaySession().AddLambda([&](bool bStarted) { Told.push_back(bStarted); });
	UStaticMeshComponent* const Component = MakeActor(World(), MakeUnevenMesh(), UnevenPlace());
	EXPECT_TRUE(GEditor->StartPlaySession());
	EXPECT_FALSE(GEditor->StartPlaySession());
	UWorld* const Play = GEditor->PlayWorld;
	ASSERT_NE(Play, nullptr);
	EXPECT_NE(Play, World());
	ASSERT_EQ(Play->GetActors().Num(), 1);
	const FWorldState Before(World());
	Play->GetActors()[0]->GetRootComponent()->SetRelativeTransform(FTransform());
	EXPECT_TRUE(IsSameState(Before, FWorldState(World())));
	EXPECT_TRUE(Component->GetComponentTransform().Equals(UnevenPlace(), 0.0));
	GEditor->EndPlaySession();
	EXPECT_EQ(GEditor->PlayWorld.Get(), nullptr);
	EXPECT_EQ(GetObjectsOf<AActor>().Num(), 1);
	GEditor->EndPlaySession();
	EXPECT_THAT(Told, ElementsAre(true, false));
	EXPECT_TRUE(GEditor->StartPlaySession());
	GEditor->EndPlaySession();
}
} // namespace
