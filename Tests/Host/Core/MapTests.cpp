// SPDX-License-Identifier: MIT
#include "Core/Map.h"
#include "Core/Name.h"
#include "Core/String.h"
#include "Support/RapidCheck.h"
#include "Support/ThrowingAssertions.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <vector>

TEST(Map, AddReplacesTheValueOfAKey)
{
	TMap<FString, int32> Counts;
	Counts.Add(TEXT("two"), 2);
	EXPECT_EQ(Counts.Add(TEXT("two"), 22), 22);
	EXPECT_EQ(Counts.Num(), 1);
	EXPECT_EQ(Counts[TEXT("two")], 22);
}

TEST(Map, FindPointsIntoTheMapOrNowhere)
{
	TMap<FName, int32> Counts{{TEXT("two"), 2}, {TEXT("three"), 3}};
	int32* const Three = Counts.Find(TEXT("three"));
	ASSERT_NE(Three, nullptr);
	*Three = 33;
	EXPECT_EQ(Counts.FindRef(TEXT("three")), 33);
	EXPECT_EQ(Counts.Find(TEXT("four")), nullptr);
	EXPECT_EQ(Counts.FindRef(TEXT("four")), 0);
	EXPECT_FALSE(Counts.Contains(TEXT("four"))) << "asking adds nothing";
}

TEST(Map, PointersToValuesSurviveAdditions)
{
	TMap<int32, FString> Names;
	FString* const First = &Names.Add(7, TEXT("seven"));
	for (int32 Key = 100; Key < 1100; ++Key)
	{
		Names.Add(Key, FString::FromInt(Key));
	}
	EXPECT_EQ(Names.Find(7), First);
	EXPECT_EQ(*First, TEXT("seven"));
}

TEST(Map, FindOrAddMakesADefaultValueOnce)
{
	TMap<FString, TArray<int32>> Lists;
	Lists.FindOrAdd(TEXT("a")).Add(5);
	Lists.FindOrAdd(TEXT("a")).Add(-7);
	EXPECT_EQ(Lists.Num(), 1);
	EXPECT_EQ(Lists[TEXT("a")], (TArray<int32>{5, -7}));
}

TEST(Map, WalkingGivesKeysAndChangeableValues)
{
	TMap<int32, int32> Squares{{2, 0}, {3, 0}, {5, 0}};
	for (auto& Pair : Squares)
	{
		Pair.Value = Pair.Key * Pair.Key;
	}
	int32 Sum = 0;
	const TMap<int32, int32>& Constant = Squares;
	for (const auto& [Key, Value] : Constant)
	{
		EXPECT_EQ(Value, Key * Key);
		Sum += Value;
	}
	EXPECT_EQ(Sum, 38);
}

TEST(Map, RemoveTakesAKeyThatBelongsToTheRemovedPair)
{
	TMap<FString, int32> Counts{{TEXT("a key too long to be stored inside a string object"), 2}, {TEXT("b"), 3}};
	const FString& Key = (*Counts.begin()).Key;
	EXPECT_EQ(Counts.Remove(Key), 1);
	EXPECT_EQ(Counts.Num(), 1);
	EXPECT_EQ(Counts.Remove(TEXT("c")), 0);
}

TEST(Map, HoldsValuesThatOnlyMove)
{
	TMap<int32, std::unique_ptr<int32>> Owners;
	Owners.Add(3, std::make_unique<int32>(33));
	std::unique_ptr<int32> Taken;
	EXPECT_FALSE(Owners.RemoveAndCopyValue(4, Taken));
	EXPECT_EQ(Taken, nullptr);
	EXPECT_TRUE(Owners.RemoveAndCopyValue(3, Taken));
	EXPECT_EQ(*Taken, 33);
	EXPECT_TRUE(Owners.IsEmpty());
}

TEST(Map, CopiesAreIndependent)
{
	TMap<int32, FString> Names{{2, TEXT("two")}};
	TMap<int32, FString> Copy = Names;
	Copy[2] = TEXT("zwei");
	EXPECT_EQ(Names[2], TEXT("two"));
	Names = Copy;
	EXPECT_EQ(Names[2], TEXT("zwei"));
	Names.Empty();
	EXPECT_EQ(Copy.Num(), 1);
}

TEST(Map, AskingForAValueThatIsNotThereIsStopped)
{
	const FThrowingAssertions Throwing;
	const TMap<int32, int32> Counts{{2, 3}};
	EXPECT_THROW(Counts[5], FAssertionFailed);
}

RC_GTEST_PROP(Map, AgreesWithTheStandardMap, (const std::vector<std::pair<int8, int32>>& Added, int8 Removed))
{
	TMap<int8, int32> Ours;
	std::map<int8, int32> Theirs;
	for (const auto& [Key, Value] : Added)
	{
		Ours.Add(Key, Value);
		Theirs[Key] = Value;
	}
	RC_ASSERT(Ours.Remove(Removed) == static_cast<int32>(Theirs.erase(Removed)));
	TArray<int8> Keys = Ours.GetKeys();
	Keys.Sort();
	RC_ASSERT(static_cast<std::size_t>(Keys.Num()) == Theirs.size());
	for (const int8 Key : Keys)
	{
		RC_ASSERT(Ours[Key] == Theirs.at(Key));
	}
}
