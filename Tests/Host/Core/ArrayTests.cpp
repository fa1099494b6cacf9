// SPDX-License-Identifier: MIT
#include "Core/Array.h"
#include "Core/String.h"
#include "Support/RapidCheck.h"
#include "Support/ThrowingAssertions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

namespace
{
struct FKeyed
{
	int32 Key = 0;
	int32 Order = 0;
};
} // namespace

TEST(Array, StartsEmpty)
{
	const TArray<int32> Empty;
	EXPECT_EQ(Empty.Num(), 0);
	EXPECT_TRUE(Empty.IsEmpty());
	EXPECT_FALSE(Empty.IsValidIndex(0));
}

TEST(Array, AddReturnsTheIndexOfTheNewElement)
{
	TArray<FString> Names{TEXT("two"), TEXT("three")};
	EXPECT_EQ(Names.Add(TEXT("five")), 2);
	EXPECT_EQ(Names.Emplace(TEXT("seven")), 3);
	EXPECT_EQ(Names.Last(), TEXT("seven"));
	EXPECT_EQ(Names.Last(3), TEXT("two"));
}

TEST(Array, AddsItsOwnElement)
{
	TArray<FString> Names{TEXT("a text too long to be stored inside a string object")};
	for (int32 Round = 0; Round < 20; ++Round)
	{
		Names.Add(Names[0]);
	}
	EXPECT_EQ(Names.Num(), 21);
	EXPECT_EQ(Names.Last(), Names[0]);
}

TEST(Array, AddUniqueAnswersWithTheEqualElementThatIsThere)
{
	TArray<int32> Numbers{2, 3, 5};
	EXPECT_EQ(Numbers.AddUnique(3), 1);
	EXPECT_EQ(Numbers.AddUnique(-7), 3);
	EXPECT_EQ(Numbers, (TArray<int32>{2, 3, 5, -7}));
}

TEST(Array, AppendsAnotherOrItself)
{
	TArray<int32> Numbers{2, 3};
	Numbers.Append({5, 7});
	Numbers.Append(Numbers);
	EXPECT_EQ(Numbers, (TArray<int32>{2, 3, 5, 7, 2, 3, 5, 7}));
}

TEST(Array, AppendMovesFromATemporary)
{
	TArray<std::unique_ptr<int32>> Target;
	TArray<std::unique_ptr<int32>> Source;
	Source.Add(std::make_unique<int32>(11));
	Target.Append(std::move(Source));
	ASSERT_EQ(Target.Num(), 1);
	EXPECT_EQ(*Target[0], 11);
	EXPECT_TRUE(Source.IsEmpty());
}

TEST(Array, InsertsBeforeAnIndexUpToTheEnd)
{
	TArray<int32> Numbers{3, 5};
	EXPECT_EQ(Numbers.Insert(2, 0), 0);
	EXPECT_EQ(Numbers.Insert(7, 3), 3);
	EXPECT_EQ(Numbers.Insert(Numbers[3], 1), 1) << "an element of the array itself";
	EXPECT_EQ(Numbers, (TArray<int32>{2, 7, 3, 5, 7}));
}

TEST(Array, RemoveAtClosesTheGap)
{
	TArray<int32> Numbers{2, 3, 5, 7, 11};
	Numbers.RemoveAt(1, 2);
	EXPECT_EQ(Numbers, (TArray<int32>{2, 7, 11}));
	Numbers.RemoveAt(3, 0);
	EXPECT_EQ(Numbers.Num(), 3);
}

TEST(Array, RemoveAtSwapFillsTheGapWithTheLast)
{
	TArray<FString> Names{TEXT("a"), TEXT("b"), TEXT("c")};
	Names.RemoveAtSwap(0);
	EXPECT_EQ(Names, (TArray<FString>{TEXT("c"), TEXT("b")}));
	Names.RemoveAtSwap(1);
	EXPECT_EQ(Names, (TArray<FString>{TEXT("c")}));
}

TEST(Array, RemoveTakesAllEqualElementsAndRemoveSingleTheFirst)
{
	TArray<int32> Numbers{3, 2, 3, 5, 3};
	EXPECT_EQ(Numbers.RemoveSingle(3), 1);
	EXPECT_EQ(Numbers, (TArray<int32>{2, 3, 5, 3}));
	EXPECT_EQ(Numbers.Remove(Numbers[1]), 2) << "asked by a reference into the array";
	EXPECT_EQ(Numbers, (TArray<int32>{2, 5}));
	EXPECT_EQ(Numbers.Remove(9), 0);
	EXPECT_EQ(Numbers.RemoveSingle(9), 0);
}

TEST(Array, ResetKeepsTheStorageAndEmptyFreesIt)
{
	TArray<int32> Numbers;
	Numbers.Reserve(100);
	Numbers.Add(2);
	const int32* const Storage = Numbers.GetData();
	Numbers.Reset();
	EXPECT_TRUE(Numbers.IsEmpty());
	EXPECT_GE(Numbers.Max(), 100);
	Numbers.Add(3);
	EXPECT_EQ(Numbers.GetData(), Storage);
	Numbers.Empty();
	EXPECT_EQ(Numbers.Max(), 0);
	Numbers.Empty(5);
	EXPECT_GE(Numbers.Max(), 5);
}

TEST(Array, SetNumCutsOrFillsWithDefaults)
{
	TArray<int32> Numbers{2, 3, 5};
	Numbers.SetNum(5);
	EXPECT_EQ(Numbers, (TArray<int32>{2, 3, 5, 0, 0}));
	Numbers.SetNum(1);
	EXPECT_EQ(Numbers, (TArray<int32>{2}));
}

TEST(Array, PopReturnsTheLastElement)
{
	TArray<std::unique_ptr<int32>> Owners;
	Owners.Add(std::make_unique<int32>(5));
	Owners.Add(std::make_unique<int32>(7));
	EXPECT_EQ(*Owners.Pop(), 7);
	EXPECT_EQ(Owners.Num(), 1);
}

TEST(Array, FindsByValueAndByPredicate)
{
	TArray<int32> Numbers{2, 3, 5, 3};
	const auto IsLarge = [](int32 Number) { return Number > 2; };
	const auto IsHuge = [](int32 Number) { return Number > 1000; };
	EXPECT_EQ(Numbers.Find(3), 1);
	EXPECT_EQ(Numbers.Find(4), INDEX_NONE);
	EXPECT_TRUE(Numbers.Contains(5));
	EXPECT_FALSE(Numbers.Contains(-5));
	EXPECT_EQ(Numbers.IndexOfByPredicate(IsLarge), 1);
	EXPECT_EQ(Numbers.IndexOfByPredicate(IsHuge), INDEX_NONE);
	EXPECT_EQ(Numbers.FindByPredicate(IsLarge), &Numbers[1]);
	EXPECT_EQ(Numbers.FindByPredicate(IsHuge), nullptr);
}

TEST(Array, SortOrdersByLessOrByAPredicate)
{
	TArray<int32> Numbers{5, -7, 3};
	Numbers.Sort();
	EXPECT_EQ(Numbers, (TArray<int32>{-7, 3, 5}));
	Numbers.Sort([](int32 Left, int32 Right) { return Left > Right; });
	EXPECT_EQ(Numbers, (TArray<int32>{5, 3, -7}));
}

RC_GTEST_PROP(Array, StableSortKeepsTheOrderOfEquals, (const std::vector<uint8>& Keys))
{
	TArray<FKeyed> Items;
	for (const uint8 Key : Keys)
	{
		Items.Add(FKeyed{Key % 4, Items.Num()});
	}
	Items.StableSort([](const FKeyed& Left, const FKeyed& Right) { return Left.Key < Right.Key; });
	for (int32 Index = 1; Index < Items.Num(); ++Index)
	{
		const FKeyed& Before = Items[Index - 1];
		const FKeyed& After = Items[Index];
		RC_ASSERT(Before.Key < After.Key || (Before.Key == After.Key && Before.Order < After.Order));
	}
}

RC_GTEST_PROP(Array, RemoveAtSwapLosesExactlyTheElementAtTheIndex, (std::vector<int32> Values, uint32 Place))
{
	RC_PRE(!Values.empty());
	const int32 Index = static_cast<int32>(Place % Values.size());
	TArray<int32> Numbers(Values.data(), static_cast<int32>(Values.size()));
	Numbers.RemoveAtSwap(Index);
	Values.erase(Values.begin() + Index);
	Numbers.Sort();
	std::sort(Values.begin(), Values.end());
	RC_ASSERT(Numbers == TArray<int32>(Values.data(), static_cast<int32>(Values.size())));
}

TEST(Array, EveryAccessOutsideIsStopped)
{
	const FThrowingAssertions Throwing;
	TArray<int32> Numbers{2, 3};
	EXPECT_THROW(Numbers[2], FAssertionFailed);
	EXPECT_THROW(Numbers[-1], FAssertionFailed);
	EXPECT_THROW(Numbers.Last(2), FAssertionFailed);
	EXPECT_THROW(Numbers.Last(-1), FAssertionFailed);
	EXPECT_THROW(Numbers.RemoveAt(2), FAssertionFailed);
	EXPECT_THROW(Numbers.RemoveAt(1, 2), FAssertionFailed);
	EXPECT_THROW(Numbers.RemoveAt(1, std::numeric_limits<int32>::max()), FAssertionFailed);
	EXPECT_THROW(Numbers.RemoveAtSwap(2), FAssertionFailed);
	EXPECT_THROW(Numbers.Insert(9, 3), FAssertionFailed);
	EXPECT_THROW(Numbers.SetNum(-1), FAssertionFailed);
	EXPECT_THROW(Numbers.Reserve(-1), FAssertionFailed);
	EXPECT_EQ(Numbers, (TArray<int32>{2, 3}));
	Numbers.Empty();
	EXPECT_THROW(Numbers.Pop(), FAssertionFailed);
	EXPECT_THROW(Numbers.Last(), FAssertionFailed);
}

TEST(Array, HasNoRoomBeyondThirtyOneBitsOfIndex)
{
	// Asked directly: an array that large would fill the memory of a small machine.
	const std::size_t Most = std::numeric_limits<int32>::max();
	EXPECT_TRUE(ArrayDetail::HasRoomFor(Most - 3, 3));
	EXPECT_FALSE(ArrayDetail::HasRoomFor(Most - 3, 4));
	EXPECT_FALSE(ArrayDetail::HasRoomFor(Most, 1));
	EXPECT_FALSE(ArrayDetail::HasRoomFor(7, std::numeric_limits<std::size_t>::max())) << "the sum may not wrap around";
}

TEST(Array, ManySmallAppendsCostLinearTime)
{
	TArray<int32> Numbers;
	const TArray<int32> Two{2, 3};
	int32 Moves = 0;
	for (int32 Round = 0; Round < 10000; ++Round)
	{
		const int32* const Before = Numbers.GetData();
		Numbers.Append(Two);
		Moves += Numbers.GetData() != Before;
	}
	EXPECT_LT(Moves, 40) << "the storage grows geometrically";
}
