// SPDX-License-Identifier: MIT
#include "TransactionFixture.h"

#include "CoreUObject/Archive.h"
#include "CoreUObject/GarbageCollector.h"

#include <gmock/gmock.h>

/// A component that tells what an undo does to it, and in which order.
class UTestProbeComponent : public USceneComponent
{
	DECLARE_CLASS(UTestProbeComponent, USceneComponent)

public:
	void Serialize(FArchive& Archive) override
	{
		Super::Serialize(Archive);
		if (Archive.IsLoading())
		{
			Tell("swap");
		}
	}
	void DropDerivedData() override { Tell("drop"); }
	void PostEditUndo() override
	{
		Super::PostEditUndo();
		Tell(IsWorldTransformDerived(this) ? "notify" : "notify too early");
		if (OnNotify)
		{
			OnNotify();
		}
	}

	void Tell(const char* What) { Told.push_back(What + (" " + GetName().ToUtf8())); }

	static inline std::vector<std::string> Told;
	static inline std::function<void()> OnNotify;
};

DEFINE_CLASS(UTestProbeComponent)

namespace
{
using testing::ElementsAre;

class FUndoOrder : public FTransactionTest
{
protected:
	FUndoOrder()
	{
		UTestProbeComponent::Told.clear();
		UTestProbeComponent::OnNotify = nullptr;
	}
	~FUndoOrder() override { UTestProbeComponent::OnNotify = nullptr; }

	static UTestProbeComponent* Make(const TCHAR* Name, USceneComponent* Parent = nullptr)
	{
		UTestProbeComponent* const Component = World()->SpawnActor<AActor>()->AddComponent<UTestProbeComponent>(Name);
		if (Parent)
		{
			Component->AttachToComponent(Parent);
		}
		return Component;
	}
};

TEST_F(FUndoOrder, SwapsAllThenDropsAllThenNotifiesAll)
{
	UTestProbeComponent* const A = Make(TEXT("A"));
	UTestProbeComponent* const B = Make(TEXT("B"), A);
	{
		const FEditScope Scope;
		Move(B, UnevenPlace());
		Move(A, UnevenPlace());
	}
	UTestProbeComponent::Told.clear();
	Undo();
	EXPECT_THAT(UTestProbeComponent::Told, ElementsAre("swap B", "swap A", "drop B", "drop A", "notify B", "notify A"));
	UTestProbeComponent::Told.clear();
	Redo();
	EXPECT_THAT(UTestProbeComponent::Told, ElementsAre("swap B", "swap A", "drop B", "drop A", "notify B", "notify A"));
}

TEST_F(FUndoOrder, WorldTransformsOfUnrecordedDescendantsAreRightWhenAnyoneIsNotified)
{
	UTestProbeComponent* const Parent = Make(TEXT("Parent"));
	UTestProbeComponent* const Child = Make(TEXT("Child"), Parent);
	const USceneComponent* const Grandchild = Make(TEXT("Grandchild"), Child);
	Child->SetRelativeTransform(UnevenPlace());
	const FTransform Before = Grandchild->GetComponentTransform();
	{
		const FEditScope Scope;
		Move(Parent, FTransform(FVector(100, 200, 300)));
	}
	int32 NumNotified = 0;
	UTestProbeComponent::OnNotify = [&]()
	{
		++NumNotified;
		EXPECT_TRUE(IsWorldTransformDerived(Grandchild));
		EXPECT_TRUE(Grandchild->GetComponentTransform().Equals(Before, 0.0));
	};
	Undo();
	EXPECT_EQ(NumNotified, 1);
}

TEST_F(FUndoOrder, EventsComeAfterAllNotifications)
{
	UTestProbeComponent* const Component = Make(TEXT("A"));
	{
		const FEditScope Scope;
		Move(Component, UnevenPlace());
	}
	UTestProbeComponent::Told.clear();
	Transactions().OnUndo().AddLambda(
		[](const FTransactionContext&, bool) { UTestProbeComponent::Told.push_back("event"); });
	Undo();
	EXPECT_THAT(UTestProbeComponent::Told, ElementsAre("swap A", "drop A", "notify A", "event"));
}

TEST_F(FUndoOrder, WhoeverIsNotifiedCanNeitherUndoNorOpenATransactionNorCollect)
{
	UTestProbeComponent* const Component = Make(TEXT("A"));
	for (int32 Step = 1; Step <= 2; ++Step)
	{
		const FEditScope Scope;
		Move(Component, FTransform(FVector(Step, 0, 0)));
	}
	UTestProbeComponent::OnNotify = [&]()
	{
		FEditScope Scope;
		EXPECT_FALSE(Scope.IsOutstanding());
		EXPECT_FALSE(Component->Modify());
		EXPECT_FALSE(Undo());
		EXPECT_FALSE(Redo());
		EXPECT_FALSE(CollectGarbage());
	};
	EXPECT_TRUE(Undo());
	UTestProbeComponent::OnNotify = nullptr;
	EXPECT_EQ(Component->GetComponentLocation(), FVector(1, 0, 0));
	EXPECT_EQ(Stacks(), std::make_pair(1, 1));
	EXPECT_TRUE(Redo());
	EXPECT_EQ(Component->GetComponentLocation(), FVector(2, 0, 0));
}

TEST_F(FUndoOrder, AListenerOfTheEventMayCommitATransaction)
{
	UTestProbeComponent* const Component = Make(TEXT("A"));
	for (int32 Step = 1; Step <= 2; ++Step)
	{
		const FEditScope Scope;
		Move(Component, FTransform(FVector(Step, 0, 0)));
	}
	bool bDone = false;
	Transactions().OnUndo().AddLambda(
		[&](const FTransactionContext&, bool)
		{
			if (!bDone)
			{
				bDone = true;
				const FEditScope Scope;
				Move(Component, FTransform(FVector(0, 9, 0)));
			}
		});
	EXPECT_TRUE(Undo());
	EXPECT_EQ(Stacks(), std::make_pair(2, 0));
	EXPECT_TRUE(Undo());
	EXPECT_EQ(Component->GetComponentLocation(), FVector(1, 0, 0));
}
} // namespace
