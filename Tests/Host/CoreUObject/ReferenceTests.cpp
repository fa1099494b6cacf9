// SPDX-License-Identifier: MIT
#include "TestObjects.h"

#include "Support/ThrowingAssertions.h"

#include <unordered_set>

namespace
{
class FWeakReference : public FObjectTest
{
};
class FTrackedPointer : public FObjectTest
{
};

/// Makes objects until one lies in the slot that `Handle` names.
UTestNode* MakeInSlotOf(FObjectHandle Handle)
{
	UTestNode* Node = NewObject<UTestNode>();
	for (int32 Attempt = 0; Node->GetHandle().Slot != Handle.Slot && Attempt < 100000; ++Attempt)
	{
		Node = NewObject<UTestNode>();
	}
	return Node;
}

TEST_F(FWeakReference, ResolvesToItsObjectWhileThatLives)
{
	UTestNode* const Node = NewObject<UTestNode>();
	const TWeakObjectPtr<UTestNode> Weak(Node);
	EXPECT_EQ(Weak.Get(), Node);
	EXPECT_TRUE(Weak.IsValid());
	EXPECT_FALSE(Weak.IsStale());
	EXPECT_TRUE(static_cast<bool>(Weak));
}

TEST_F(FWeakReference, ToNothingIsStale)
{
	EXPECT_TRUE(FWeakObjectPtr().IsStale());
	EXPECT_EQ(FWeakObjectPtr(nullptr).Get(), nullptr);
	EXPECT_FALSE(static_cast<bool>(TWeakObjectPtr<UTestNode>()));
}

TEST_F(FWeakReference, IsStaleAsSoonAsTheObjectIsDestroyedAndFreshAgainWhenThatIsUndone)
{
	UTestNode* const Node = NewObject<UTestNode>();
	const FWeakObjectPtr Weak(Node);
	Node->MarkAsGarbage();
	EXPECT_TRUE(Weak.IsStale());
	EXPECT_EQ(Weak.Get(), nullptr);
	Node->ClearGarbage();
	EXPECT_EQ(Weak.Get(), Node);
}

TEST_F(FWeakReference, KeepsNothingAliveAndIsStaleAfterCollection)
{
	const FWeakObjectPtr Weak(NewObject<UTestNode>());
	CollectGarbage();
	EXPECT_TRUE(Weak.IsStale());
}

TEST_F(FWeakReference, NeverResolvesToALaterObjectInTheSameSlot)
{
	const FWeakObjectPtr Weak(NewObject<UTestNode>());
	CollectGarbage();
	const UTestNode* const Later = MakeInSlotOf(Weak.GetHandle());
	ASSERT_EQ(Later->GetHandle().Slot, Weak.GetHandle().Slot);
	EXPECT_NE(Later->GetHandle().Serial, Weak.GetHandle().Serial);
	EXPECT_EQ(Weak.Get(), nullptr);
	EXPECT_EQ(ResolveObject(Weak.GetHandle()), nullptr);
	EXPECT_FALSE(Weak == FWeakObjectPtr(Later));
}

TEST_F(FWeakReference, StaysStaleThroughManyReusesOfItsSlot)
{
	const FWeakObjectPtr First(NewObject<UTestNode>());
	std::unordered_set<uint32> Serials{First.GetHandle().Serial};
	for (int32 Round = 0; Round < 50; ++Round)
	{
		CollectGarbage();
		const UTestNode* const Later = MakeInSlotOf(First.GetHandle());
		ASSERT_EQ(Later->GetHandle().Slot, First.GetHandle().Slot);
		EXPECT_TRUE(Serials.insert(Later->GetHandle().Serial).second);
		EXPECT_TRUE(First.IsStale());
	}
}

TEST_F(FWeakReference, EqualsAnotherToTheSameObjectAndNoneToAnotherObject)
{
	const UTestNode* const A = NewObject<UTestNode>();
	const UTestNode* const B = NewObject<UTestNode>();
	EXPECT_TRUE(FWeakObjectPtr(A) == FWeakObjectPtr(A));
	EXPECT_FALSE(FWeakObjectPtr(A) == FWeakObjectPtr(B));
	EXPECT_FALSE(FWeakObjectPtr(A) == FWeakObjectPtr());
}

TEST_F(FWeakReference, StaleOnesAreEqualWhateverTheyReferredTo)
{
	const FWeakObjectPtr ToCollected(NewObject<UTestNode>());
	CollectGarbage();
	const UTestNode* const Live = NewObject<UTestNode>();
	UTestNode* const Destroyed = NewObject<UTestNode>();
	const FWeakObjectPtr ToDestroyed(Destroyed);
	Destroyed->MarkAsGarbage();
	EXPECT_TRUE(ToCollected == ToDestroyed);
	EXPECT_TRUE(ToDestroyed == ToCollected);
	EXPECT_TRUE(ToCollected == FWeakObjectPtr());
	EXPECT_FALSE(ToCollected == FWeakObjectPtr(Live));
}

TEST_F(FWeakReference, ResetRefersToNothing)
{
	TWeakObjectPtr<UTestNode> Weak(NewObject<UTestNode>());
	Weak.Reset();
	EXPECT_TRUE(Weak.IsStale());
	EXPECT_TRUE(Weak == TWeakObjectPtr<UTestNode>());
}

TEST_F(FTrackedPointer, IsTheObjectWhileItExistsDestroyedOrNot)
{
	UTestNode* const Node = NewObject<UTestNode>();
	const TObjectPtr<UTestNode> Pointer = Node;
	EXPECT_EQ(Pointer, Node);
	Node->MarkAsGarbage();
	EXPECT_EQ(Pointer.Get(), Node);
	EXPECT_FALSE(IsValid(Pointer));
}

TEST_F(FTrackedPointer, OutsideObjectsIsNullAfterItsObjectWasCollected)
{
	const TObjectPtr<UTestNode> Pointer = NewObject<UTestNode>();
	CollectGarbage();
	EXPECT_EQ(Pointer.Get(), nullptr);
	EXPECT_TRUE(Pointer == nullptr);
	EXPECT_FALSE(static_cast<bool>(Pointer));
	EXPECT_EQ(Pointer, TObjectPtr<UTestNode>());
}

TEST_F(FTrackedPointer, NeverBecomesALaterObjectInTheSameSlot)
{
	const TObjectPtr<UTestNode> Pointer = NewObject<UTestNode>();
	CollectGarbage();
	ASSERT_EQ(MakeInSlotOf(Pointer.GetHandle())->GetHandle().Slot, Pointer.GetHandle().Slot);
	EXPECT_EQ(Pointer.Get(), nullptr);
}

TEST_F(FTrackedPointer, InAnObjectKeepsWhatItPointsAt)
{
	const TRooted<UTestNode> Node(NewObject<UTestNode>());
	Node->Next = NewObject<UTestLeaf>();
	CollectGarbage();
	EXPECT_TRUE(IsValid(Node->Next));
}

TEST_F(FTrackedPointer, ConvertsToPointersToItsBaseClasses)
{
	const TObjectPtr<UTestLeaf> Leaf = NewObject<UTestLeaf>();
	const TObjectPtr<UTestNode> Node = Leaf;
	EXPECT_EQ(Node.Get(), Leaf.Get());
}

TEST_F(FTrackedPointer, FollowingANullOneIsABrokenPrecondition)
{
	const FThrowingAssertions Throwing;
	const TObjectPtr<UTestNode> Pointer = NewObject<UTestNode>();
	CollectGarbage();
	EXPECT_THROW(Pointer->Link(nullptr), FAssertionFailed);
	EXPECT_THROW(TWeakObjectPtr<UTestNode>()->Link(nullptr), FAssertionFailed);
}
} // namespace
