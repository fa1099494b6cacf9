// SPDX-License-Identifier: MIT
#include "TestObjects.h"

#include "CoreUObject/Package.h"
#include "CoreUObject/Transaction.h"
#include "Support/ThrowingAssertions.h"

#include <set>
#include <string>

namespace
{
class FObject : public FObjectTest
{
};

TEST_F(FObject, BearsTheNameItWasGiven)
{
	EXPECT_EQ(NewObject<UTestNode>(nullptr, TEXT("Rock"))->GetName(), TEXT("Rock"));
	EXPECT_EQ(NewObject<UTestNode>(nullptr, TEXT("Rock"))->GetFName(), FName(TEXT("Rock")));
}

TEST_F(FObject, WithoutANameGetsItsClassNameAndANumberThatNoneBeforeItHad)
{
	std::set<std::wstring> Names;
	for (int32 Index = 0; Index < 100; ++Index)
	{
		const FString Name = NewObject<UTestLeaf>()->GetName();
		EXPECT_TRUE(Name.StartsWith(TEXT("TestLeaf_"))) << Name;
		EXPECT_TRUE(Names.insert(*Name).second) << Name;
		if (Index % 10 == 0)
		{
			CollectGarbage();
		}
	}
}

TEST_F(FObject, WithoutAnOuterLiesInTheTransientPackage)
{
	UTestNode* const Node = NewObject<UTestNode>();
	EXPECT_EQ(Node->GetOuter(), GetTransientPackage());
	EXPECT_EQ(Node->GetOutermost(), GetTransientPackage());
	EXPECT_EQ(NewObject<UPackage>()->GetOuter(), nullptr);
}

TEST_F(FObject, PathNameNamesPackageAssetAndInnerObjects)
{
	UPackage* const Package = CreatePackage(TEXT("/Scene/Yard/Rock"));
	UTestNode* const Asset = NewObject<UTestNode>(Package, TEXT("Rock"));
	UTestNode* const Inner = NewObject<UTestNode>(Asset, TEXT("Body"));
	UTestNode* const Innermost = NewObject<UTestNode>(Inner, TEXT("Shape"));
	EXPECT_EQ(Package->GetPathName(), TEXT("/Scene/Yard/Rock"));
	EXPECT_EQ(Asset->GetPathName(), TEXT("/Scene/Yard/Rock.Rock"));
	EXPECT_EQ(Inner->GetPathName(), TEXT("/Scene/Yard/Rock.Rock:Body"));
	EXPECT_EQ(Innermost->GetPathName(), TEXT("/Scene/Yard/Rock.Rock:Body.Shape"));
}

TEST_F(FObject, OutermostIsThePackageAtTheEndOfTheOuterChain)
{
	UPackage* const Package = CreatePackage(TEXT("/Scene/Outermost"));
	UTestNode* const Asset = NewObject<UTestNode>(Package);
	EXPECT_EQ(NewObject<UTestNode>(Asset)->GetOutermost(), Package);
	EXPECT_EQ(Package->GetOutermost(), Package);
}

TEST_F(FObject, IsInEveryObjectOfItsOuterChainButNotInItself)
{
	UTestNode* const Asset = NewObject<UTestNode>();
	UTestNode* const Inner = NewObject<UTestNode>(Asset);
	UTestNode* const Innermost = NewObject<UTestNode>(Inner);
	EXPECT_TRUE(Innermost->IsIn(Inner));
	EXPECT_TRUE(Innermost->IsIn(Asset));
	EXPECT_TRUE(Innermost->IsIn(GetTransientPackage()));
	EXPECT_FALSE(Innermost->IsIn(Innermost));
	EXPECT_FALSE(Asset->IsIn(Inner));
	EXPECT_FALSE(Asset->IsIn(nullptr));
}

TEST_F(FObject, TypedOuterIsTheNearestOuterOfThatClass)
{
	UTestLeaf* const Far = NewObject<UTestLeaf>();
	UTestLeaf* const Near = NewObject<UTestLeaf>(Far);
	UTestNode* const Between = NewObject<UTestNode>(Near);
	UTestLeaf* const Innermost = NewObject<UTestLeaf>(Between);
	EXPECT_EQ(Innermost->GetTypedOuter<UTestLeaf>(), Near);
	EXPECT_EQ(Innermost->GetTypedOuter<UTestNode>(), Between);
	EXPECT_EQ(Innermost->GetTypedOuter<UTestOther>(), nullptr);
}

TEST_F(FObject, RenamingKeepsTheOuterUnlessAnotherIsGiven)
{
	UTestNode* const First = NewObject<UTestNode>();
	UTestNode* const Second = NewObject<UTestNode>();
	UTestNode* const Inner = NewObject<UTestNode>(First, TEXT("Old"));
	Inner->Rename(TEXT("New"));
	EXPECT_EQ(Inner->GetName(), TEXT("New"));
	EXPECT_EQ(Inner->GetOuter(), First);
	Inner->Rename(TEXT("Newer"), Second);
	EXPECT_EQ(Inner->GetOuter(), Second);
}

TEST_F(FObject, FlagsAreSetAndClearedOneByOne)
{
	UTestNode* const Node = NewObject<UTestNode>(nullptr, NAME_None, RF_Transient | RF_NeedLoad);
	EXPECT_TRUE(Node->HasAnyFlags(RF_Transient));
	Node->ClearFlags(RF_NeedLoad);
	EXPECT_FALSE(Node->HasAnyFlags(RF_NeedLoad));
	EXPECT_TRUE(Node->HasAnyFlags(RF_Transient | RF_NeedLoad));
}

TEST_F(FObject, IsValidUntilItIsDestroyedAndAgainWhenThatIsUndone)
{
	UTestNode* const Node = NewObject<UTestNode>();
	EXPECT_TRUE(IsValid(Node));
	Node->MarkAsGarbage();
	EXPECT_FALSE(IsValid(Node));
	Node->ClearGarbage();
	EXPECT_TRUE(IsValid(Node));
	EXPECT_FALSE(IsValid(nullptr));
}

TEST_F(FObject, MayMakeInnerObjectsWhileItIsMade)
{
	UTestMaker* const Maker = NewObject<UTestMaker>(nullptr, TEXT("Maker"));
	EXPECT_EQ(Maker->GetName(), TEXT("Maker"));
	EXPECT_EQ(Maker->GetClass(), UTestMaker::StaticClass());
	ASSERT_TRUE(IsValid(Maker->Part));
	EXPECT_EQ(Maker->Part->GetOuter(), Maker);
	EXPECT_EQ(Maker->Part->GetClass(), UTestNode::StaticClass());
}

TEST_F(FObject, IsMadeByNewObjectOnly)
{
	const FThrowingAssertions Throwing;
	EXPECT_THROW(UTestOther(), FAssertionFailed);
}

TEST_F(FObject, CheckedCastOfAnotherClassOrOfNullIsABrokenPrecondition)
{
	const FThrowingAssertions Throwing;
	UObject* const Node = NewObject<UTestNode>();
	EXPECT_EQ(CastChecked<UTestNode>(Node), Node);
	EXPECT_THROW(CastChecked<UTestOther>(Node), FAssertionFailed);
	EXPECT_THROW(CastChecked<UTestNode>(nullptr), FAssertionFailed);
}

/// Counts what it is asked to record.
struct FCountingTransaction final : ITransaction
{
	FCountingTransaction() { GUndo = this; }
	~FCountingTransaction() override { GUndo = nullptr; }
	void SaveObject(UObject*) override { ++NumSaved; }
	void SaveCreation(UObject*) override {}
	int32 NumSaved = 0;
};

TEST_F(FObject, ModifyWithoutATransactionRecordsNothingButMarksThePackageDirty)
{
	UPackage* const Package = CreatePackage(TEXT("/Scene/Modify"));
	UTestNode* const Asset = NewObject<UTestNode>(Package);
	EXPECT_FALSE(Asset->Modify(false));
	EXPECT_FALSE(Package->IsDirty());
	EXPECT_FALSE(Asset->Modify());
	EXPECT_TRUE(Package->IsDirty());
}

TEST_F(FObject, ModifyInATransactionRecordsTheObjectAndMarksThePackageDirty)
{
	FCountingTransaction Transaction;
	UPackage* const Package = CreatePackage(TEXT("/Scene/ModifyInTransaction"));
	UTestNode* const Inner = NewObject<UTestNode>(NewObject<UTestNode>(Package));
	EXPECT_TRUE(Inner->Modify(false));
	EXPECT_EQ(Transaction.NumSaved, 1);
	EXPECT_TRUE(Package->IsDirty());
}

TEST_F(FObject, DefaultObjectsAreNeverRecorded)
{
	FCountingTransaction Transaction;
	EXPECT_FALSE(UTestNode::StaticClass()->GetDefaultObject()->Modify());
	EXPECT_EQ(Transaction.NumSaved, 0);
}
} // namespace
