// SPDX-License-Identifier: MIT
#include "TransactionFixture.h"

#include "CoreUObject/GarbageCollector.h"
#include "Support/ThrowingAssertions.h"

#include <gmock/gmock.h>

namespace
{
using testing::ElementsAre;
using FPair = std::pair<int32, int32>;

class FTransaction : public FTransactionTest
{
};

TEST_F(FTransaction, IsTakenBackAndDoneAgainToTheBit)
{
	UStaticMesh* const Mesh = MakeUnevenMesh();
	UStaticMeshComponent* const Component = MakeActor(World(), Mesh);
	const FWorldState Before = State();
	{
		const FEditScope Scope;
		Move(Component, UnevenPlace());
		MoveFirstVertex(Mesh, FVector3f(-7.f, 0.1f, 1e-30f));
	}
	const FWorldState After = State();
	ASSERT_FALSE(Before == After);
	EXPECT_TRUE(Undo());
	EXPECT_TRUE(IsSameState(Before, State()));
	EXPECT_TRUE(Redo());
	EXPECT_TRUE(IsSameState(After, State()));
}

TEST_F(FTransaction, StaysExactThroughManyUndosAndRedos)
{
	UStaticMesh* const Mesh = MakeUnevenMesh();
	UStaticMeshComponent* const Parent = MakeActor(World(), Mesh, UnevenPlace());
	MakeActor(World(), Mesh, UnevenPlace(), Parent);
	const FWorldState Before = State();
	{
		const FEditScope Scope;
		Move(Parent,
			FTransform(FQuat(FVector(3, 1, 2).GetSafeNormal(), 2.1), FVector(1. / 3, 0.1, -7), FVector(0.1, 3, 7)));
		MoveFirstVertex(Mesh, FVector3f(-7.f, 0.1f, 1.f));
	}
	const FWorldState After = State();
	for (int32 Round = 0; Round < 200; ++Round)
	{
		ASSERT_TRUE(Undo());
		ASSERT_TRUE(IsSameState(Before, State()));
		ASSERT_TRUE(Redo());
		ASSERT_TRUE(IsSameState(After, State()));
	}
}

TEST_F(FTransaction, RecordsAnObjectBeforeItsFirstChangeOnly)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	const FWorldState Before = State();
	{
		const FEditScope Scope;
		Move(Component, UnevenPlace());
		Move(Component, FTransform(FVector(9, 9, 9)));
	}
	EXPECT_EQ(Transactions().GetTransaction(0).Num(), 1);
	Undo();
	EXPECT_TRUE(IsSameState(Before, State()));
}

TEST_F(FTransaction, ChangesOutsideATransactionAreNotUndone)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	Move(Component, UnevenPlace());
	EXPECT_EQ(Stacks(), FPair(0, 0));
	EXPECT_FALSE(Undo());
	EXPECT_TRUE(Component->GetRelativeTransform().Equals(UnevenPlace(), 0.0));
}

TEST_F(FTransaction, SeveralAreTakenBackInReverseOrder)
{
	UStaticMeshComponent* const Component = MakeActor(World(), MakeUnevenMesh());
	std::vector<FWorldState> States{State()};
	for (int32 Step = 1; Step <= 5; ++Step)
	{
		const FEditScope Scope;
		Move(Component, FTransform(FVector(Step, 0, -Step)));
		MoveFirstVertex(Component->GetStaticMesh(), FVector3f(float(-Step), 0.f, 0.f));
		States.push_back(State());
	}
	for (std::size_t Step = 5; Step-- > 0;)
	{
		ASSERT_TRUE(Undo());
		EXPECT_TRUE(IsSameState(States[Step], State())) << Step;
	}
	EXPECT_FALSE(Undo());
	for (std::size_t Step = 1; Step <= 5; ++Step)
	{
		ASSERT_TRUE(Redo());
		EXPECT_TRUE(IsSameState(States[Step], State())) << Step;
	}
	EXPECT_FALSE(Redo());
}

TEST_F(FTransaction, ASecondEditAfterAnUndoStartsFromTheUndoneGeometry)
{
	UStaticMesh* const Mesh = MakeUnevenMesh(TEXT("/Scene/Second/Rock"));
	{
		const FEditScope Scope;
		MoveFirstVertex(Mesh, FVector3f(-100.f, -2.f, -3.f));
	}
	EXPECT_EQ(Mesh->GetBoundingBox().Min, FVector(-100, -2, -3));
	Undo();
	EXPECT_EQ(LocalPositions(Mesh)[0], FVector(-1, -2, -3));
	EXPECT_EQ(Mesh->GetBoundingBox().Min, FVector(-1, -2, -3));
	{
		const FEditScope Scope;
		Mesh->ModifyMeshDescription(0);
		Mesh->GetMeshDescription(0)->SetVertexPosition(FVertexID(7), FVector3f(50.f, 5.f, 11.f));
		Mesh->CommitMeshDescription(0);
	}
	EXPECT_EQ(Mesh->GetBoundingBox(), FBox(FVector(-1, -2, -3), FVector(50, 5, 11)));
	EXPECT_EQ(Stacks(), FPair(1, 0));
}

TEST_F(FTransaction, AnUndoDropsAnEditThatWasNotCommitted)
{
	UStaticMesh* const Mesh = MakeUnevenMesh(TEXT("/Scene/Dropped/Rock"));
	{
		const FEditScope Scope;
		MoveFirstVertex(Mesh, FVector3f(-100.f, -2.f, -3.f));
	}
	Mesh->GetMeshDescription(0)->SetVertexPosition(FVertexID(0), FVector3f(-500.f, 0.f, 0.f));
	Undo();
	EXPECT_EQ(LocalPositions(Mesh)[0], FVector(-1, -2, -3));
}

TEST_F(FTransaction, WithNothingRecordedLeavesBothStacksAsTheyWere)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	for (int32 Step = 0; Step < 2; ++Step)
	{
		const FEditScope Scope;
		Move(Component, FTransform(FVector(Step, 0, 0)));
	}
	Undo();
	ASSERT_EQ(Stacks(), FPair(1, 1));
	{
		const FEditScope Scope;
	}
	EXPECT_EQ(Stacks(), FPair(1, 1));
	EXPECT_TRUE(Redo());
}

TEST_F(FTransaction, OpeningTouchesNeitherStackAndCommittingDropsWhatWasThereToRedo)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	for (int32 Step = 0; Step < 3; ++Step)
	{
		const FEditScope Scope;
		Move(Component, FTransform(FVector(Step, 0, 0)));
	}
	Undo();
	Undo();
	{
		const FEditScope Scope;
		EXPECT_EQ(Stacks(), FPair(1, 2));
		Move(Component, UnevenPlace());
		EXPECT_EQ(Stacks(), FPair(1, 2));
	}
	EXPECT_EQ(Stacks(), FPair(2, 0));
	EXPECT_FALSE(Redo());
	EXPECT_TRUE(Undo());
	EXPECT_EQ(Component->GetComponentLocation(), FVector(0, 0, 0));
}

TEST_F(FTransaction, CancellingRevertsNothingAndLeavesBothStacksAsFound)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	for (int32 Step = 0; Step < 2; ++Step)
	{
		const FEditScope Scope;
		Move(Component, FTransform(FVector(Step + 1, 0, 0)));
	}
	Undo();
	{
		FEditScope Scope;
		Move(Component, FTransform(FVector(5, 6, 7)));
		Scope.Cancel();
		EXPECT_FALSE(Scope.IsOutstanding());
		EXPECT_FALSE(Transactions().IsActive());
	}
	EXPECT_EQ(Component->GetComponentLocation(), FVector(5, 6, 7));
	EXPECT_EQ(Stacks(), FPair(1, 1));
	EXPECT_TRUE(Redo());
	EXPECT_EQ(Component->GetComponentLocation(), FVector(2, 0, 0));
}

TEST_F(FTransaction, ANestedOneJoinsTheOuterOne)
{
	UStaticMeshComponent* const A = MakeActor(World(), nullptr);
	UStaticMeshComponent* const B = MakeActor(World(), nullptr);
	const FWorldState Before = State();
	{
		const FEditScope Outer(TEXT("Outer"));
		Move(A, UnevenPlace());
		{
			const FEditScope Inner(TEXT("Inner"));
			Move(B, UnevenPlace());
		}
		EXPECT_EQ(Stacks(), FPair(0, 0));
		EXPECT_TRUE(Transactions().IsActive());
	}
	EXPECT_EQ(Stacks(), FPair(1, 0));
	Undo();
	EXPECT_TRUE(IsSameState(Before, State()));
	EXPECT_THAT(Told, ElementsAre("undo Test:Outer"));
}

TEST_F(FTransaction, CancellingANestedOneDropsItsRecordsAndKeepsThoseOfTheOuterOne)
{
	UStaticMeshComponent* const A = MakeActor(World(), nullptr);
	UStaticMeshComponent* const B = MakeActor(World(), nullptr);
	{
		const FEditScope Outer;
		Move(A, FTransform(FVector(1, 0, 0)));
		FEditScope Inner;
		Move(A, FTransform(FVector(2, 0, 0)));
		Move(B, FTransform(FVector(3, 0, 0)));
		Inner.Cancel();
		EXPECT_TRUE(Transactions().IsActive());
	}
	EXPECT_EQ(A->GetComponentLocation(), FVector(2, 0, 0));
	EXPECT_EQ(B->GetComponentLocation(), FVector(3, 0, 0));
	Undo();
	EXPECT_EQ(A->GetComponentLocation(), FVector(0, 0, 0));
	EXPECT_EQ(B->GetComponentLocation(), FVector(3, 0, 0));
}

TEST_F(FTransaction, AfterANestedCancelTheOuterOneRecordsTheObjectAnew)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	{
		const FEditScope Outer;
		{
			FEditScope Inner;
			Move(Component, FTransform(FVector(1, 0, 0)));
			Inner.Cancel();
		}
		Move(Component, FTransform(FVector(2, 0, 0)));
	}
	Undo();
	EXPECT_EQ(Component->GetComponentLocation(), FVector(1, 0, 0));
}

TEST_F(FTransaction, CancellingTheOuterOneEndsTheNestedOnesToo)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	{
		FEditScope Outer;
		const FEditScope Inner;
		Move(Component, UnevenPlace());
		Outer.Cancel();
		EXPECT_FALSE(Transactions().IsActive());
	}
	EXPECT_EQ(Stacks(), FPair(0, 0));
	EXPECT_FALSE(Component->Modify());
}

TEST_F(FTransaction, LeavingByAnEarlyReturnCommitsIt)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	const auto Edit = [&](bool bEarly)
	{
		const FEditScope Scope;
		Move(Component, UnevenPlace());
		if (bEarly)
		{
			return;
		}
		Move(Component, FTransform());
	};
	Edit(true);
	EXPECT_FALSE(Transactions().IsActive());
	EXPECT_EQ(Stacks(), FPair(1, 0));
	Undo();
	EXPECT_EQ(Component->GetComponentLocation(), FVector());
}

TEST_F(FTransaction, EventsCarryTheContextAndWhetherItSucceeded)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	{
		const FEditScope Scope(TEXT("Bake Transform"));
		Move(Component, UnevenPlace());
	}
	Redo();
	Undo();
	Undo();
	Redo();
	EXPECT_THAT(
		Told, ElementsAre("redo : failed", "undo Test:Bake Transform", "undo : failed", "redo Test:Bake Transform"));
}

TEST_F(FTransaction, ContextKeepsThePrimaryObject)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	UStaticMesh* const Mesh = MakeUnevenMesh();
	{
		const FEditScope Scope(TEXT("Edit"), Mesh);
		Move(Component, UnevenPlace());
	}
	CollectGarbage();
	EXPECT_EQ(Transactions().GetTransaction(0).GetContext().PrimaryObject, Mesh);
	EXPECT_TRUE(IsValid(Mesh));
}

TEST_F(FTransaction, UndoAndRedoAreRefusedWhileOneIsOpen)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	{
		const FEditScope Scope;
		Move(Component, UnevenPlace());
	}
	{
		const FEditScope Scope;
		EXPECT_FALSE(Transactions().CanUndo());
		EXPECT_FALSE(Undo());
	}
	EXPECT_TRUE(Undo());
	{
		const FEditScope Scope;
		EXPECT_FALSE(Redo());
	}
	EXPECT_THAT(Told, ElementsAre("undo : failed", "undo Test:Edit", "redo : failed"));
}

TEST_F(FTransaction, NothingIsCollectedWhileOneIsOpen)
{
	{
		const FEditScope Scope;
		EXPECT_FALSE(CollectGarbage());
		FEditScope Inner;
		Inner.Cancel();
		EXPECT_FALSE(CollectGarbage());
	}
	EXPECT_TRUE(CollectGarbage());
}

TEST_F(FTransaction, WithoutAnEditorOrATransactionSystemDoesNothing)
{
	GEditor->Trans = nullptr;
	{
		FEditScope Scope;
		EXPECT_FALSE(Scope.IsOutstanding());
		Scope.Cancel();
	}
	EXPECT_FALSE(GEditor->UndoTransaction());
	GEditor->Trans = NewObject<UTransactor>(GEditor);
	{
		const FEditScope Scope;
		EXPECT_FALSE(Scope.IsOutstanding());
	}
	EXPECT_FALSE(GEditor->UndoTransaction());
	EXPECT_FALSE(GEditor->RedoTransaction());
	UEditorEngine::Destroy();
	FEditScope Scope;
	EXPECT_FALSE(Scope.IsOutstanding());
	Scope.Cancel();
}

TEST_F(FTransaction, ThatShouldNotTransactRecordsNothing)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	{
		const FScopedTransaction Off(TEXT("Test"), FText::FromString(TEXT("Off")), nullptr, false);
		EXPECT_FALSE(Component->Modify());
	}
	EXPECT_EQ(Stacks(), FPair(0, 0));
}

TEST_F(FTransaction, ResetForgetsEverythingAndLetsTheObjectsGo)
{
	const FWeakObjectPtr Actor(MakeActor(World(), nullptr)->GetOwner());
	{
		const FEditScope Scope;
		World()->DestroyActor(Cast<AActor>(Actor.Get()));
	}
	Transactions().Reset();
	EXPECT_EQ(Stacks(), FPair(0, 0));
	EXPECT_FALSE(Undo());
	CollectGarbage();
	EXPECT_EQ(ResolveObject(Actor.GetHandle()), nullptr);
}

TEST_F(FTransaction, TellsOfEveryChangeOfTheStack)
{
	int32 NumChanges = 0;
	Transactions().OnChanged().AddLambda([&]() { ++NumChanges; });
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	{
		FEditScope Scope;
		Move(Component, UnevenPlace());
		Scope.Cancel();
	}
	{
		const FEditScope Scope;
	}
	EXPECT_EQ(NumChanges, 0);
	{
		const FEditScope Scope;
		Move(Component, UnevenPlace());
	}
	EXPECT_EQ(NumChanges, 1);
	Undo();
	Redo();
	EXPECT_EQ(NumChanges, 3);
	Undo();
	Transactions().Reset();
	EXPECT_EQ(NumChanges, 5);
}

TEST_F(FTransaction, NamesTheStateThatStepsHaveLedTo)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	const auto Edit = [&]
	{
		const FEditScope Scope;
		Move(Component, UnevenPlace());
	};
	const uint64 Start = Transactions().GetStateId();
	Edit();
	const uint64 First = Transactions().GetStateId();
	Edit();
	const uint64 Second = Transactions().GetStateId();
	EXPECT_NE(Start, First);
	EXPECT_NE(First, Second);
	Undo();
	EXPECT_EQ(Transactions().GetStateId(), First);
	Undo();
	EXPECT_EQ(Transactions().GetStateId(), Start);
	Redo();
	EXPECT_EQ(Transactions().GetStateId(), First);
	Edit();
	EXPECT_NE(Transactions().GetStateId(), Second) << "another state in the place of one that is lost";

	const uint64 Last = Transactions().GetStateId();
	Transactions().SetMemoryLimit(0);
	EXPECT_EQ(Transactions().GetStateId(), Last);
	Undo();
	EXPECT_EQ(Transactions().GetStateId(), First) << "all older steps were dropped";
	Transactions().Reset();
	EXPECT_EQ(Transactions().GetStateId(), First);
}
} // namespace
