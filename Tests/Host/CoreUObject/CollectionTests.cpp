// SPDX-License-Identifier: MIT
#include "TestObjects.h"

#include "CoreUObject/ObjectIterator.h"
#include "CoreUObject/Package.h"

namespace
{
class FCollection : public FObjectTest
{
protected:
	/// Makes a node that nothing keeps.
	static TObjectPtr<UTestNode> MakeLoose(UObject* Outer = nullptr) { return NewObject<UTestNode>(Outer); }

	static bool Exists(const TObjectPtr<UTestNode>& Pointer) { return Pointer.Get() != nullptr; }
};

TEST_F(FCollection, FreesWhatNothingReferencesAndRunsItsDestructor)
{
	const TObjectPtr<UTestNode> Loose = MakeLoose();
	const int32 NumObjects = FObjectArray::Get().Num();
	const int32 NumFreed = UTestNode::NumFreed;
	EXPECT_TRUE(CollectGarbage());
	EXPECT_FALSE(Exists(Loose));
	EXPECT_EQ(UTestNode::NumFreed, NumFreed + 1);
	EXPECT_EQ(FObjectArray::Get().Num(), NumObjects - 1);
}

TEST_F(FCollection, KeepsRootedObjectsAndAllThatTheyReach)
{
	const TRooted<UTestNode> Root(NewObject<UTestNode>());
	Root->Next = NewObject<UTestNode>();
	Root->Next->Next = NewObject<UTestNode>();
	const TObjectPtr<UTestNode> Last = Root->Next->Next;
	CollectGarbage();
	EXPECT_TRUE(Root->IsRooted());
	EXPECT_TRUE(Exists(Last));
	EXPECT_TRUE(IsValid(Last));
	EXPECT_FALSE(Last->IsUnreachable());
}

TEST_F(FCollection, FreesARootThatWasLetGoHoweverOftenItWasRooted)
{
	const TObjectPtr<UTestNode> Node = MakeLoose();
	Node->AddToRoot();
	Node->AddToRoot();
	Node->RemoveFromRoot();
	CollectGarbage();
	EXPECT_FALSE(Exists(Node));
}

TEST_F(FCollection, FreesWhatIsNoLongerReferenced)
{
	const TRooted<UTestNode> Root(NewObject<UTestNode>());
	const TObjectPtr<UTestNode> Node = MakeLoose();
	Root->Link(Node);
	CollectGarbage();
	EXPECT_TRUE(Exists(Node));
	Root->Links.Empty();
	CollectGarbage();
	EXPECT_FALSE(Exists(Node));
}

TEST_F(FCollection, FreesCyclesThatNoRootReaches)
{
	const TObjectPtr<UTestNode> A = MakeLoose();
	const TObjectPtr<UTestNode> B = MakeLoose();
	A->Next = B;
	B->Next = A;
	const TObjectPtr<UTestNode> Selfish = MakeLoose();
	Selfish->Next = Selfish;
	CollectGarbage();
	EXPECT_FALSE(Exists(A) || Exists(B) || Exists(Selfish));
}

TEST_F(FCollection, KeepsCyclesThatARootReaches)
{
	const TRooted<UTestNode> Root(NewObject<UTestNode>());
	const TObjectPtr<UTestNode> Other = MakeLoose();
	Root->Next = Other;
	Other->Next = Root.Get();
	CollectGarbage();
	EXPECT_TRUE(Exists(Other));
}

TEST_F(FCollection, KeepsTheOutersOfWhatItKeepsButNotTheirOtherInnerObjects)
{
	const TObjectPtr<UTestNode> Outer = MakeLoose();
	const TRooted<UTestNode> Inner(NewObject<UTestNode>(Outer));
	const TObjectPtr<UTestNode> Sibling = MakeLoose(Outer);
	CollectGarbage();
	EXPECT_TRUE(Exists(Outer));
	EXPECT_FALSE(Exists(Sibling));
}

TEST_F(FCollection, KeepsPackagesWithAssetsAndFreesEmptyOnes)
{
	UPackage* const Package = CreatePackage(TEXT("/Scene/Kept"));
	const TObjectPtr<UTestNode> Asset = MakeLoose(Package);
	const TObjectPtr<UTestNode> Used = MakeLoose(GetTransientPackage());
	Package->AddAsset(Asset);
	Asset->Next = Used;
	CreatePackage(TEXT("/Scene/Empty"));
	CollectGarbage();
	EXPECT_EQ(FindPackage(TEXT("/Scene/Kept")), Package);
	EXPECT_TRUE(Exists(Asset));
	EXPECT_TRUE(Exists(Used));
	EXPECT_EQ(FindPackage(TEXT("/Scene/Empty")), nullptr);
	Package->RemoveAsset(Asset);
	CollectGarbage();
	EXPECT_EQ(FindPackage(TEXT("/Scene/Kept")), nullptr);
	EXPECT_FALSE(Exists(Asset));
}

TEST_F(FCollection, FreesAPackageWhoseAssetsWereAllDestroyed)
{
	UPackage* const Package = CreatePackage(TEXT("/Scene/AllDestroyed"));
	const TObjectPtr<UTestNode> Asset = MakeLoose(Package);
	Package->AddAsset(Asset);
	Asset->MarkAsGarbage();
	CollectGarbage();
	EXPECT_FALSE(Exists(Asset));
	EXPECT_EQ(FindPackage(TEXT("/Scene/AllDestroyed")), nullptr);
}

TEST_F(FCollection, TransientPackageStaysAndKeepsNothingAlive)
{
	const TObjectPtr<UTestNode> Node = MakeLoose(GetTransientPackage());
	CollectGarbage();
	EXPECT_TRUE(IsValid(GetTransientPackage()));
	EXPECT_FALSE(Exists(Node));
}

TEST_F(FCollection, LiveObjectsDoNotKeepDestroyedOnesAndReadThemAsNullAfterwards)
{
	const TRooted<UTestNode> Root(NewObject<UTestNode>());
	Root->Next = NewObject<UTestNode>();
	Root->Next->Next = NewObject<UTestNode>();
	const TObjectPtr<UTestNode> Behind = Root->Next->Next;
	Root->Next->MarkAsGarbage();
	CollectGarbage();
	EXPECT_EQ(Root->Next.Get(), nullptr);
	EXPECT_FALSE(Exists(Behind));
}

TEST_F(FCollection, ReferenceSourcesKeepLiveObjectsWhileTheyExist)
{
	const TObjectPtr<UTestNode> Live = MakeLoose();
	const TObjectPtr<UTestNode> Destroyed = MakeLoose();
	Live->Next = NewObject<UTestNode>();
	Destroyed->MarkAsGarbage();
	{
		FTestSource Source(false);
		Source.Keep(Live);
		Source.Keep(Destroyed);
		CollectGarbage();
		EXPECT_TRUE(Exists(Live));
		EXPECT_TRUE(Exists(Live->Next));
		EXPECT_FALSE(Exists(Destroyed));
	}
	CollectGarbage();
	EXPECT_FALSE(Exists(Live));
}

TEST_F(FCollection, AnUndoHistoryKeepsDestroyedObjectsAndAllThatThoseReference)
{
	const TObjectPtr<UTestNode> Destroyed = MakeLoose();
	Destroyed->Next = NewObject<UTestNode>();
	Destroyed->Next->Next = NewObject<UTestNode>();
	const TObjectPtr<UTestNode> Inner = Destroyed->Next;
	const TObjectPtr<UTestNode> BehindInner = Inner->Next;
	Destroyed->MarkAsGarbage();
	Inner->MarkAsGarbage();
	FTestSource History(true);
	History.Keep(Destroyed);
	CollectGarbage();
	EXPECT_TRUE(Exists(Destroyed));
	EXPECT_TRUE(Exists(Inner));
	EXPECT_TRUE(Exists(BehindInner));
	EXPECT_FALSE(IsValid(Destroyed));
	EXPECT_TRUE(FWeakObjectPtr(Destroyed.Get()).IsStale());
}

TEST_F(FCollection, SourcesMayNameNothingAndFreedObjects)
{
	FTestSource Source(true);
	const TObjectPtr<UTestNode> Node = MakeLoose();
	const FObjectHandle Freed = Node.GetHandle();
	CollectGarbage();
	struct FNaming final : FReferenceSource
	{
		explicit FNaming(FObjectHandle InHandle)
			: Handle(InHandle)
		{
		}
		void AddReferences(const FReferenceCollector& Collector) override
		{
			Collector.Keep(Handle);
			Collector.Keep(FObjectHandle());
		}
		FObjectHandle Handle;
	};
	const FNaming Naming(Freed);
	EXPECT_TRUE(CollectGarbage());
	EXPECT_EQ(ResolveObject(Freed), nullptr);
}

TEST_F(FCollection, DoesNothingWhileALockExists)
{
	const TObjectPtr<UTestNode> Loose = MakeLoose();
	EXPECT_FALSE(FCollectionLock::IsLocked());
	{
		const FCollectionLock Outer;
		{
			const FCollectionLock Inner;
		}
		EXPECT_TRUE(FCollectionLock::IsLocked());
		EXPECT_FALSE(CollectGarbage());
		EXPECT_TRUE(Exists(Loose));
	}
	EXPECT_FALSE(FCollectionLock::IsLocked());
	EXPECT_TRUE(CollectGarbage());
	EXPECT_FALSE(Exists(Loose));
}

TEST_F(FCollection, FollowsAChainOfAHundredThousandObjects)
{
	const TRooted<UTestNode> Root(NewObject<UTestNode>());
	UTestNode* Last = Root;
	for (int32 Index = 0; Index < 100000; ++Index)
	{
		Last->Next = NewObject<UTestNode>();
		Last = Last->Next;
	}
	const TObjectPtr<UTestNode> End = Last;
	CollectGarbage();
	EXPECT_TRUE(Exists(End));
	Root->Next = nullptr;
	CollectGarbage();
	EXPECT_FALSE(Exists(End));
}

TEST_F(FCollection, DestroyedRootsStayUntilTheyAreLetGo)
{
	const TRooted<UTestNode> Root(NewObject<UTestNode>());
	Root->MarkAsGarbage();
	CollectGarbage();
	EXPECT_NE(Root.Get(), nullptr);
}
} // namespace
