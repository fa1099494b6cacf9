// SPDX-License-Identifier: MIT
#include "Core/Set.h"
#include "Core/String.h"
#include "Support/RapidCheck.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace
{
/// A key that only knows GetTypeHash.
struct FOwnHash
{
	int32 Value = 0;
	friend bool operator==(const FOwnHash&, const FOwnHash&) = default;
	friend uint32 GetTypeHash(const FOwnHash& Key) { return static_cast<uint32>(Key.Value) % 3; }
};
} // namespace

TEST(Set, HoldsEachElementOnce)
{
	TSet<FString> Names{TEXT("a"), TEXT("b"), TEXT("a")};
	EXPECT_EQ(Names.Num(), 2);
	bool bWasThere = false;
	EXPECT_EQ(Names.Add(TEXT("c"), &bWasThere), TEXT("c"));
	EXPECT_FALSE(bWasThere);
	Names.Add(TEXT("a"), &bWasThere);
	EXPECT_TRUE(bWasThere);
	EXPECT_EQ(Names.Num(), 3);
}

TEST(Set, RemoveTellsHowManyWent)
{
	TSet<int32> Numbers{2, 3, 5};
	EXPECT_EQ(Numbers.Remove(3), 1);
	EXPECT_EQ(Numbers.Remove(3), 0);
	EXPECT_FALSE(Numbers.Contains(3));
	EXPECT_TRUE(Numbers.Contains(5));
}

TEST(Set, TellsCollidingKeysApart)
{
	TSet<FOwnHash> Keys;
	for (int32 Value = 0; Value < 50; ++Value)
	{
		Keys.Add(FOwnHash{Value});
	}
	EXPECT_EQ(Keys.Num(), 50);
	EXPECT_EQ(Keys.Remove(FOwnHash{7}), 1);
	EXPECT_FALSE(Keys.Contains(FOwnHash{7}));
	EXPECT_TRUE(Keys.Contains(FOwnHash{10})) << "same hash, another key";
	EXPECT_EQ(Keys.Find(FOwnHash{10})->Value, 10);
	EXPECT_EQ(Keys.Find(FOwnHash{7}), nullptr);
}

TEST(Set, AppendsSetsArraysAndItself)
{
	TSet<int32> Numbers{2, 3};
	Numbers.Append(TSet<int32>{3, 5});
	Numbers.Append(TArray<int32>{5, 7});
	Numbers.Append(Numbers);
	EXPECT_EQ(Numbers, (TSet<int32>{2, 3, 5, 7}));
	Numbers.Reset();
	EXPECT_TRUE(Numbers.IsEmpty());
}

RC_GTEST_PROP(Set, AgreesWithTheStandardSet, (const std::vector<int8>& Added, const std::vector<int8>& Removed))
{
	TSet<int8> Ours;
	std::set<int8> Theirs;
	for (const int8 Number : Added)
	{
		Ours.Add(Number);
		Theirs.insert(Number);
	}
	for (const int8 Number : Removed)
	{
		RC_ASSERT(Ours.Remove(Number) == static_cast<int32>(Theirs.erase(Number)));
	}
	TArray<int8> Sorted = Ours.Array();
	Sorted.Sort();
	RC_ASSERT(std::equal(Sorted.begin(), Sorted.end(), Theirs.begin(), Theirs.end()));
}
