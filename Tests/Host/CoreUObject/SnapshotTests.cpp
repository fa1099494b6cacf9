// SPDX-License-Identifier: MIT
#include "TestObjects.h"

#include "CoreUObject/ObjectSnapshot.h"
#include "Support/ThrowingAssertions.h"

#include <cmath>
#include <limits>

namespace
{
/// A node with something in every field.
UTestNode* MakeFullNode()
{
	UTestNode* const Node = NewObject<UTestNode>();
	Node->Number = -7;
	Node->Value = 2.5;
	Node->bFlag = true;
	Node->Door = ETestDoor::Ajar;
	Node->Tag = TEXT("Oak");
	Node->Text = TEXT("Eiche \x00E4\x4E2D");
	Node->Place = FVector(2, 3, -5);
	Node->Pose = FTransform(FQuat(0.5, -0.5, 0.5, 0.5), FVector(7, -11, 13), FVector(2, -3, 5));
	Node->Bounds = FBox(FVector(-1, -2, -3), FVector(4, 5, 6));
	Node->Numbers = {3, 1, 2};
	Node->Next = NewObject<UTestNode>();
	Node->Link(NewObject<UTestOther>());
	Node->Link(nullptr);
	Node->Blob = MakeShared<FTestBlob>(FTestBlob{1000000});
	return Node;
}

class FSnapshot : public FObjectTest
{
};

TEST_F(FSnapshot, GivesEveryFieldBack)
{
	UTestNode* const Node = MakeFullNode();
	const UTestNode* const Next = Node->Next;
	UObject* const Linked = Node->Links[0];
	const FTestBlob* const Blob = Node->Blob.Get();
	const FObjectSnapshot Before(*Node);

	FObjectSnapshot(*NewObject<UTestNode>()).Restore(*Node);
	ASSERT_EQ(Node->Number, 0);
	ASSERT_TRUE(Node->Links.IsEmpty());
	ASSERT_FALSE(Node->Blob.IsValid());

	Before.Restore(*Node);
	EXPECT_EQ(Node->Number, -7);
	EXPECT_EQ(Node->Value, 2.5);
	EXPECT_TRUE(Node->bFlag);
	EXPECT_EQ(Node->Door, ETestDoor::Ajar);
	EXPECT_EQ(Node->Tag, FName(TEXT("Oak")));
	EXPECT_EQ(Node->Text, TEXT("Eiche \x00E4\x4E2D"));
	EXPECT_EQ(Node->Place, FVector(2, 3, -5));
	EXPECT_EQ(Node->Pose.GetRotation(), FQuat(0.5, -0.5, 0.5, 0.5));
	EXPECT_EQ(Node->Pose.GetTranslation(), FVector(7, -11, 13));
	EXPECT_EQ(Node->Pose.GetScale3D(), FVector(2, -3, 5));
	EXPECT_EQ(Node->Bounds, FBox(FVector(-1, -2, -3), FVector(4, 5, 6)));
	EXPECT_EQ(Node->Numbers, (TArray<int32>{3, 1, 2}));
	EXPECT_EQ(Node->Next.Get(), Next);
	ASSERT_EQ(Node->Links.Num(), 2);
	EXPECT_EQ(Node->Links[0].Get(), Linked);
	EXPECT_EQ(Node->Links[1].Get(), nullptr);
	EXPECT_EQ(Node->Blob.Get(), Blob);
}

TEST_F(FSnapshot, OfTheSameStateIsEqualAndOfAnotherIsNot)
{
	UTestNode* const Node = MakeFullNode();
	const FObjectSnapshot Before(*Node);
	EXPECT_TRUE(FObjectSnapshot(*Node) == Before);
	const auto IsNoticed = [&](auto Change)
	{
		Change();
		const bool bDiffers = !(FObjectSnapshot(*Node) == Before);
		Before.Restore(*Node);
		return bDiffers && FObjectSnapshot(*Node) == Before;
	};
	EXPECT_TRUE(IsNoticed([&]() { Node->Number = -8; }));
	EXPECT_TRUE(IsNoticed([&]() { Node->Value = std::nextafter(2.5, 3.0); }));
	EXPECT_TRUE(IsNoticed([&]() { Node->bFlag = false; }));
	EXPECT_TRUE(IsNoticed([&]() { Node->Door = ETestDoor::Open; }));
	EXPECT_TRUE(IsNoticed([&]() { Node->Tag = TEXT("oak"); }));
	EXPECT_TRUE(IsNoticed([&]() { Node->Text += TEXT("!"); }));
	EXPECT_TRUE(IsNoticed([&]() { Node->Place.Z = 5; }));
	EXPECT_TRUE(IsNoticed([&]() { Node->Pose.SetScale3D(FVector(2, 3, 5)); }));
	EXPECT_TRUE(IsNoticed([&]() { Node->Bounds.IsValid = false; }));
	EXPECT_TRUE(IsNoticed([&]() { Node->Numbers.Add(4); }));
	EXPECT_TRUE(IsNoticed([&]() { Node->Next = nullptr; }));
	EXPECT_TRUE(IsNoticed([&]() { Node->Links.Swap(0, 1); }));
	EXPECT_TRUE(IsNoticed([&]() { Node->Blob = MakeShared<FTestBlob>(FTestBlob{1000000}); }));
	EXPECT_TRUE(IsNoticed([&]() { Node->MarkAsGarbage(); }));
}

TEST_F(FSnapshot, TellsZerosApartAndKeepsNotANumber)
{
	UTestNode* const Node = NewObject<UTestNode>();
	Node->Value = 0.0;
	const FObjectSnapshot Zero(*Node);
	Node->Value = -0.0;
	const FObjectSnapshot MinusZero(*Node);
	EXPECT_FALSE(Zero == MinusZero);
	Node->Place.X = std::numeric_limits<double>::quiet_NaN();
	const FObjectSnapshot WithNaN(*Node);
	MinusZero.Restore(*Node);
	EXPECT_TRUE(std::signbit(Node->Value));
	WithNaN.Restore(*Node);
	EXPECT_TRUE(std::isnan(Node->Place.X));
	EXPECT_TRUE(FObjectSnapshot(*Node) == WithNaN);
}

TEST_F(FSnapshot, KeepsTransformsThatAreNotNormalisedToTheBit)
{
	UTestNode* const Node = NewObject<UTestNode>();
	Node->Pose = FTransform(FQuat(0.1, 0.2, 0.3, 0.4), FVector(1e300, -0.0, 1e-300), FVector(0, -0.0, 1e-9));
	const FObjectSnapshot Before(*Node);
	Node->Pose = FTransform();
	Before.Restore(*Node);
	EXPECT_TRUE(FObjectSnapshot(*Node) == Before);
	EXPECT_EQ(Node->Pose.GetRotation(), FQuat(0.1, 0.2, 0.3, 0.4));
}

TEST_F(FSnapshot, KeepsTextThatHoldsAZeroCharacter)
{
	UTestNode* const Node = NewObject<UTestNode>();
	Node->Text = FString(FStringView(L"a\0b", 3));
	const FObjectSnapshot Before(*Node);
	Node->Text = FString();
	Before.Restore(*Node);
	EXPECT_EQ(Node->Text.Len(), 3);
	EXPECT_TRUE(FObjectSnapshot(*Node) == Before);
}

TEST_F(FSnapshot, RestoresDestructionAndItsUndoing)
{
	UTestNode* const Node = NewObject<UTestNode>();
	const FObjectSnapshot Alive(*Node);
	Node->MarkAsGarbage();
	const FObjectSnapshot Destroyed(*Node);
	EXPECT_TRUE(Destroyed.IsGarbage());
	Alive.Restore(*Node);
	EXPECT_TRUE(IsValid(Node));
	Destroyed.Restore(*Node);
	EXPECT_FALSE(IsValid(Node));
}

TEST_F(FSnapshot, SharesLargeDataAndCountsThemOnce)
{
	constexpr uint64 Large = uint64(1) << 40;
	UTestNode* const Node = NewObject<UTestNode>();
	Node->Blob = MakeShared<FTestBlob>(FTestBlob{Large});
	const FObjectSnapshot First(*Node);
	const FObjectSnapshot Second(*Node);
	EXPECT_EQ(Node->Blob.GetSharedReferenceCount(), 3);
	FSnapshotMemory Memory;
	First.AddMemory(Memory);
	EXPECT_GE(Memory.Bytes, Large);
	Second.AddMemory(Memory);
	EXPECT_GE(Memory.Bytes, Large);
	EXPECT_LT(Memory.Bytes, Large + 100000);
}

TEST_F(FSnapshot, ListsTheReferencedObjectsAndMapsThem)
{
	UTestNode* const Node = NewObject<UTestNode>();
	UTestNode* const Old = NewObject<UTestNode>();
	UTestNode* const New = NewObject<UTestNode>();
	Node->Next = Old;
	Node->Link(Old);
	Node->Link(Node);
	FObjectSnapshot Snapshot(*Node);
	EXPECT_EQ(Snapshot.GetReferences().size(), 3u);
	Snapshot.MapReferences(
		[&](FObjectHandle Handle) { return Handle == Old->GetHandle() ? New->GetHandle() : Handle; });
	Snapshot.Restore(*Node);
	EXPECT_EQ(Node->Next, New);
	EXPECT_EQ(Node->Links[0], New);
	EXPECT_EQ(Node->Links[1], Node);
}

TEST_F(FSnapshot, KeepsNothingAlive)
{
	TObjectPtr<UTestNode> Node = MakeFullNode();
	const FObjectSnapshot Snapshot(*Node);
	CollectGarbage();
	EXPECT_EQ(Node.Get(), nullptr);
	for (const FObjectHandle& Reference : Snapshot.GetReferences())
	{
		EXPECT_EQ(ResolveObject(Reference), nullptr);
	}
}

TEST_F(FSnapshot, RestoredIntoAnObjectOfAnotherClassIsABrokenPrecondition)
{
	const FThrowingAssertions Throwing;
	const FObjectSnapshot Small(*NewObject<UTestMaker>());
	const FObjectSnapshot Large(*MakeFullNode());
	EXPECT_THROW(Small.Restore(*NewObject<UTestNode>()), FAssertionFailed);
	EXPECT_THROW(Large.Restore(*NewObject<UTestMaker>()), FAssertionFailed);
}
} // namespace
