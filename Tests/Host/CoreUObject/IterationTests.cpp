// SPDX-License-Identifier: MIT
#include "TestObjects.h"

#include "CoreUObject/ObjectIterator.h"

#include <gmock/gmock.h>

namespace
{
using testing::Contains;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class FIteration : public FObjectTest
{
};

TEST_F(FIteration, GivesInstancesOfTheClassAndOfThoseDerivedFromIt)
{
	UTestNode* const Node = NewObject<UTestNode>();
	UTestLeaf* const Leaf = NewObject<UTestLeaf>();
	NewObject<UTestOther>();
	EXPECT_THAT(GetObjectsOf<UTestNode>(), UnorderedElementsAre(Node, Leaf));
	EXPECT_THAT(GetObjectsOf<UTestLeaf>(), ElementsAre(Leaf));
}

TEST_F(FIteration, LeavesDerivedClassesOutWhenAsked)
{
	UTestNode* const Node = NewObject<UTestNode>();
	NewObject<UTestLeaf>();
	TArray<UObject*> Objects;
	GetObjectsOfClass(UTestNode::StaticClass(), Objects, false);
	EXPECT_THAT(Objects, ElementsAre(Node));
}

TEST_F(FIteration, AddsToWhatIsThere)
{
	UObject* const Other = NewObject<UTestOther>();
	UTestNode* const Node = NewObject<UTestNode>();
	TArray<UObject*> Objects{Other};
	GetObjectsOfClass(UTestNode::StaticClass(), Objects);
	EXPECT_THAT(Objects, ElementsAre(Other, Node));
}

TEST_F(FIteration, LeavesOutDefaultObjectsAndThoseStillBeingLoaded)
{
	UTestNode* const Default = CastChecked<UTestNode>(UTestNode::StaticClass()->GetDefaultObject());
	UTestNode* const Loading = NewObject<UTestNode>(nullptr, NAME_None, RF_NeedLoad);
	EXPECT_THAT(GetObjectsOf<UTestNode>(), ElementsAre());
	EXPECT_THAT(GetObjectsOf<UTestNode>(RF_NoFlags), Contains(Default));
	EXPECT_THAT(GetObjectsOf<UTestNode>(RF_NoFlags), Contains(Loading));
	Loading->ClearFlags(RF_NeedLoad);
	EXPECT_THAT(GetObjectsOf<UTestNode>(), ElementsAre(Loading));
}

TEST_F(FIteration, LeavesOutThePartsOfDefaultObjects)
{
	const UTestMaker* const Maker = NewObject<UTestMaker>();
	const UTestMaker* const Default = CastChecked<UTestMaker>(UTestMaker::StaticClass()->GetDefaultObject());
	ASSERT_TRUE(IsValid(Default->Part));
	EXPECT_THAT(GetObjectsOf<UTestNode>(), ElementsAre(Maker->Part));
}

TEST_F(FIteration, LeavesOutDestroyedObjectsEvenWhereAnUndoHistoryKeepsThem)
{
	UTestNode* const Destroyed = NewObject<UTestNode>();
	UTestNode* const Live = NewObject<UTestNode>();
	Destroyed->MarkAsGarbage();
	EXPECT_THAT(GetObjectsOf<UTestNode>(), ElementsAre(Live));
	FTestSource History(true);
	History.Keep(Destroyed);
	CollectGarbage();
	EXPECT_THAT(GetObjectsOf<UTestNode>(), ElementsAre());
	Destroyed->ClearGarbage();
	EXPECT_THAT(GetObjectsOf<UTestNode>(), ElementsAre(Destroyed));
}

TEST_F(FIteration, GivesExactlyTheSurvivorsOfACollection)
{
	TArray<UTestNode*> Kept;
	FTestSource Source(false);
	for (int32 Index = 0; Index < 1000; ++Index)
	{
		UTestNode* const Node = NewObject<UTestNode>();
		if (Index % 3 == 0)
		{
			Kept.Add(Node);
			Source.Keep(Node);
		}
	}
	CollectGarbage();
	EXPECT_THAT(GetObjectsOf<UTestNode>(), testing::UnorderedElementsAreArray(Kept));
}

TEST_F(FIteration, LooksAtInstancesOfItsClassesOnly)
{
	UTestLeaf* const Leaf = NewObject<UTestLeaf>();
	for (int32 Index = 0; Index < 1000; ++Index)
	{
		NewObject<UTestOther>();
	}
	// What an iteration walks is the index of the class, which holds none of the thousand others.
	EXPECT_THAT(UTestLeaf::StaticClass()->GetInstances(),
		UnorderedElementsAre(Leaf, UTestLeaf::StaticClass()->GetDefaultObject()));
	EXPECT_THAT(UTestLeaf::StaticClass()->GetDerivedClasses(), ElementsAre());
	EXPECT_THAT(GetObjectsOf<UTestLeaf>(), ElementsAre(Leaf));
}
} // namespace
