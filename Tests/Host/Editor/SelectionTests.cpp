// SPDX-License-Identifier: MIT
#include "CoreUObject/GarbageCollector.h"
#include "Editor/ScopedTransaction.h"
#include "Engine/Actor.h"
#include "Support/EditorFixture.h"

#include <gmock/gmock.h>

namespace
{
using testing::ElementsAre;

class FSelection : public FEditorFixture
{
protected:
	FSelection()
		: Selection(GEditor->GetSelectedActors())
	{
		Selection->OnChanged().AddLambda([this]() { ++NumChanges; });
	}
	~FSelection() override { Selection->OnChanged().Clear(); }

	static AActor* Make() { return World()->SpawnActor<AActor>(); }
	void Select(AActor* Actor) { GEditor->SelectActor(Actor, true); }

	USelection* const Selection;
	int32 NumChanges = 0;
};

TEST_F(FSelection, KeepsTheOrderInWhichObjectsWereSelected)
{
	AActor* const A = Make();
	AActor* const B = Make();
	AActor* const C = Make();
	Select(C);
	Select(A);
	Select(B);
	EXPECT_THAT(Selection->GetSelectedObjects(), ElementsAre(C, A, B));
	EXPECT_EQ(Selection->Num(), 3);
	EXPECT_EQ(Selection->GetSelectedObject(0), C);
	EXPECT_EQ(Selection->GetSelectedObject(2), B);
	GEditor->SelectActor(A, false);
	EXPECT_THAT(Selection->GetSelectedObjects(), ElementsAre(C, B));
	Select(A);
	EXPECT_THAT(Selection->GetSelectedObjects(), ElementsAre(C, B, A));
}

TEST_F(FSelection, HoldsAnObjectOnceAndKeepsItsPlace)
{
	AActor* const A = Make();
	AActor* const B = Make();
	Select(A);
	Select(B);
	Select(A);
	EXPECT_THAT(Selection->GetSelectedObjects(), ElementsAre(A, B));
	EXPECT_EQ(NumChanges, 2);
}

TEST_F(FSelection, IgnoresNullAndDestroyedObjectsAndIndicesOutOfRange)
{
	AActor* const Destroyed = Make();
	World()->DestroyActor(Destroyed);
	Select(nullptr);
	Select(Destroyed);
	GEditor->SelectActor(nullptr, false);
	EXPECT_EQ(Selection->Num(), 0);
	EXPECT_EQ(Selection->GetSelectedObject(0), nullptr);
	EXPECT_EQ(Selection->GetSelectedObject(-1), nullptr);
	EXPECT_FALSE(Selection->IsSelected(nullptr));
	EXPECT_EQ(NumChanges, 0);
}

TEST_F(FSelection, EntriesOfDestroyedObjectsReadAsNullAndComeBackWithAnUndo)
{
	AActor* const A = Make();
	AActor* const B = Make();
	Select(A);
	Select(B);
	{
		const FScopedTransaction Transaction(TEXT("Test"), FText::FromString(TEXT("Delete")), nullptr);
		World()->DestroyActor(A);
	}
	EXPECT_EQ(Selection->Num(), 2);
	EXPECT_EQ(Selection->GetSelectedObject(0), nullptr);
	EXPECT_FALSE(Selection->IsSelected(A));
	EXPECT_THAT(Selection->GetSelectedObjects(), ElementsAre(B));
	CollectGarbage();
	Undo();
	EXPECT_THAT(Selection->GetSelectedObjects(), ElementsAre(A, B));
	EXPECT_TRUE(Selection->IsSelected(A));
}

TEST_F(FSelection, KeepsNothingAlive)
{
	AActor* const Actor = Make();
	const TWeakObjectPtr<AActor> Weak(Actor);
	Select(Actor);
	World()->DestroyActor(Actor);
	CollectGarbage();
	EXPECT_TRUE(Weak.IsStale());
	EXPECT_EQ(ResolveObject(Weak.GetHandle()), nullptr);
	EXPECT_EQ(Selection->Num(), 1);
	EXPECT_EQ(Selection->GetSelectedObject(0), nullptr);
}

TEST_F(FSelection, IsEmptiedAtOnceAndTellsOnlyOfChanges)
{
	AActor* const A = Make();
	Select(A);
	Select(Make());
	GEditor->SelectNone();
	EXPECT_EQ(Selection->Num(), 0);
	EXPECT_FALSE(Selection->IsSelected(A));
	EXPECT_EQ(NumChanges, 3);
	GEditor->SelectNone();
	GEditor->SelectActor(A, false);
	EXPECT_EQ(NumChanges, 3);
	Select(A);
	EXPECT_THAT(Selection->GetSelectedObjects(), ElementsAre(A));
}

TEST_F(FSelection, PutsThePivotAtTheActorThatWasSelectedLast)
{
	AActor* const A = Make();
	AActor* const B = Make();
	A->AddComponent<USceneComponent>()->SetRelativeTransform(FTransform(FVector(2, 3, 5)));
	B->AddComponent<USceneComponent>()->SetRelativeTransform(FTransform(FVector(-7, 11, 13)));
	Select(B);
	Select(A);
	GEditor->UpdatePivotLocationForSelection();
	EXPECT_EQ(GEditor->GetPivotLocation(), FVector(2, 3, 5));
	GEditor->SelectActor(A, false);
	GEditor->UpdatePivotLocationForSelection();
	EXPECT_EQ(GEditor->GetPivotLocation(), FVector(-7, 11, 13));
	GEditor->SelectNone();
	GEditor->UpdatePivotLocationForSelection();
	EXPECT_EQ(GEditor->GetPivotLocation(), FVector());
	EXPECT_EQ(GEditor->GetNumPivotUpdates(), 3);
}
} // namespace
