// SPDX-License-Identifier: MIT
#include "TestObjects.h"

#include "CoreUObject/ObjectSnapshot.h"
#include "CoreUObject/Package.h"

namespace
{
class FDuplication : public FObjectTest
{
};

TEST_F(FDuplication, CopiesTheStateAndTheClass)
{
	UTestNode* const Source = NewObject<UTestLeaf>();
	Source->Number = 5;
	Source->Pose = FTransform(FQuat::Identity, FVector(1, 2, 3), FVector(-2, 3, 5));
	UTestNode* const Copy = DuplicateObject(Source, nullptr);
	ASSERT_NE(Copy, nullptr);
	EXPECT_NE(Copy, Source);
	EXPECT_EQ(Copy->GetClass(), UTestLeaf::StaticClass());
	EXPECT_TRUE(FObjectSnapshot(*Copy) == FObjectSnapshot(*Source));
}

TEST_F(FDuplication, OfNullIsNull)
{
	EXPECT_EQ(DuplicateObject(static_cast<UTestNode*>(nullptr), nullptr), nullptr);
}

TEST_F(FDuplication, GivesTheCopyTheOuterAndTheNameThatAreAskedFor)
{
	UPackage* const Package = CreatePackage(TEXT("/Scene/Copies"));
	UTestNode* const Source = NewObject<UTestNode>(nullptr, TEXT("Rock"));
	UTestNode* const Named = DuplicateObject(Source, Package, TEXT("Rock_Baked"));
	EXPECT_EQ(Named->GetOuter(), Package);
	EXPECT_EQ(Named->GetName(), TEXT("Rock_Baked"));
	UTestNode* const First = DuplicateObject(Source, nullptr);
	UTestNode* const Second = DuplicateObject(Source, nullptr);
	EXPECT_EQ(First->GetOuter(), GetTransientPackage());
	EXPECT_FALSE(First->GetFName() == Source->GetFName());
	EXPECT_FALSE(First->GetFName() == Second->GetFName());
}

TEST_F(FDuplication, CopiesInnerObjectsUnderTheirNamesAndPointsTheCopyAtThem)
{
	UTestNode* const Source = NewObject<UTestNode>();
	UTestNode* const Inner = NewObject<UTestNode>(Source, TEXT("Body"));
	Inner->Number = 3;
	Inner->Next = Source;
	Source->Next = Inner;
	UTestNode* const Copy = DuplicateObject(Source, nullptr);
	ASSERT_NE(Copy->Next, nullptr);
	EXPECT_NE(Copy->Next.Get(), Inner);
	EXPECT_EQ(Copy->Next->GetOuter(), Copy);
	EXPECT_EQ(Copy->Next->GetName(), TEXT("Body"));
	EXPECT_EQ(Copy->Next->Number, 3);
	EXPECT_EQ(Copy->Next->Next, Copy);
	EXPECT_EQ(Source->Next, Inner);
	EXPECT_EQ(Inner->Next, Source);
}

TEST_F(FDuplication, CopiesAnInnerObjectOnceHoweverOftenItIsReferenced)
{
	UTestNode* const Source = NewObject<UTestNode>();
	UTestNode* const Inner = NewObject<UTestNode>(Source);
	Source->Next = Inner;
	Source->Link(Inner);
	Source->Link(Inner);
	UTestNode* const Copy = DuplicateObject(Source, nullptr);
	EXPECT_NE(Copy->Next.Get(), Inner);
	EXPECT_EQ(Copy->Links[0].Get(), Copy->Next.Get());
	EXPECT_EQ(Copy->Links[1].Get(), Copy->Next.Get());
}

TEST_F(FDuplication, KeepsTheNestingOfInnerObjectsEvenWhereOnlyTheInnermostIsReferenced)
{
	UTestNode* const Source = NewObject<UTestNode>();
	UTestNode* const Middle = NewObject<UTestNode>(Source, TEXT("Middle"));
	UTestNode* const Innermost = NewObject<UTestNode>(Middle, TEXT("Innermost"));
	Middle->Number = 11;
	Source->Next = Innermost;
	const UTestNode* const Copy = DuplicateObject(Source, nullptr);
	const UTestNode* const CopiedMiddle = Cast<UTestNode>(Copy->Next->GetOuter());
	ASSERT_NE(CopiedMiddle, nullptr);
	EXPECT_NE(CopiedMiddle, Middle);
	EXPECT_EQ(CopiedMiddle->GetName(), TEXT("Middle"));
	EXPECT_EQ(CopiedMiddle->Number, 11);
	EXPECT_EQ(CopiedMiddle->GetOuter(), Copy);
}

TEST_F(FDuplication, KeepsReferencesToObjectsOutside)
{
	UTestNode* const Outside = NewObject<UTestNode>();
	UTestNode* const Source = NewObject<UTestNode>();
	UTestNode* const Inner = NewObject<UTestNode>(Source);
	Source->Link(Inner);
	Source->Link(Outside);
	Inner->Link(Outside);
	UTestNode* const Copy = DuplicateObject(Source, nullptr);
	EXPECT_EQ(Copy->Links[1].Get(), Outside);
	EXPECT_EQ(Cast<UTestNode>(Copy->Links[0].Get())->Links[0].Get(), Outside);
}

TEST_F(FDuplication, LeavesDestroyedInnerObjectsBehind)
{
	UTestNode* const Source = NewObject<UTestNode>();
	UTestNode* const Inner = NewObject<UTestNode>(Source);
	Source->Next = Inner;
	Inner->MarkAsGarbage();
	const UTestNode* const Copy = DuplicateObject(Source, nullptr);
	EXPECT_FALSE(IsValid(Copy->Next));
}

TEST_F(FDuplication, SharesLargeData)
{
	UTestNode* const Source = NewObject<UTestNode>();
	Source->Blob = MakeShared<FTestBlob>(FTestBlob{uint64(1) << 40});
	const UTestNode* const Copy = DuplicateObject(Source, nullptr);
	EXPECT_EQ(Copy->Blob.Get(), Source->Blob.Get());
	EXPECT_EQ(Source->Blob.GetSharedReferenceCount(), 2);
}

TEST_F(FDuplication, TellsEveryCopyOnceAndNoOriginal)
{
	UTestNode* const Source = NewObject<UTestNode>();
	Source->Next = NewObject<UTestNode>(Source);
	const UTestNode* const Copy = DuplicateObject(Source, nullptr);
	EXPECT_EQ(Copy->NumPostDuplicates, 1);
	EXPECT_EQ(Copy->Next->NumPostDuplicates, 1);
	EXPECT_EQ(Source->NumPostDuplicates, 0);
	EXPECT_EQ(Source->Next->NumPostDuplicates, 0);
}

TEST_F(FDuplication, ObjectsThatMakeTheirPartsThemselvesAreCopiedWithTheCopiedParts)
{
	UTestMaker* const Source = NewObject<UTestMaker>();
	Source->Part->Number = 13;
	const UTestMaker* const Copy = DuplicateObject(Source, nullptr);
	EXPECT_NE(Copy->Part.Get(), Source->Part.Get());
	EXPECT_EQ(Copy->Part->GetOuter(), Copy);
	EXPECT_EQ(Copy->Part->Number, 13);
}

TEST_F(FDuplication, TheCopyLivesOnItsOwn)
{
	const TObjectPtr<UTestNode> Source = NewObject<UTestNode>();
	Source->Next = NewObject<UTestNode>(Source);
	const TRooted<UTestNode> Copy(DuplicateObject(Source.Get(), nullptr));
	CollectGarbage();
	EXPECT_EQ(Source.Get(), nullptr);
	EXPECT_TRUE(IsValid(Copy->Next));
	EXPECT_FALSE(Copy->IsGarbage());
}
} // namespace
