// SPDX-License-Identifier: MIT
#include "Core/Function.h"
#include "Core/String.h"
#include "Support/RapidCheck.h"
#include "Support/ThrowingAssertions.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>
#include <tuple>

namespace
{
int32 NumAlive = 0;

/// A callable with a state and a life that can be watched; `Size` bytes large at least.
template <std::size_t Size>
struct TCounter
{
	explicit TCounter(int32 InCount)
		: Count(InCount)
	{
		++NumAlive;
	}
	TCounter(const TCounter& Other)
		: Count(Other.Count)
	{
		++NumAlive;
	}
	~TCounter() { --NumAlive; }
	TCounter& operator=(const TCounter&) = delete;

	int32 operator()(int32 Step) { return Count += Step; }

	int32 Count;
	std::array<char, Size> Ballast{};
};

using FSmall = TCounter<1>;
using FLarge = TCounter<500>;

template <typename T>
class FunctionOfAnySize : public testing::Test
{
};
using FCallables = testing::Types<FSmall, FLarge>;
TYPED_TEST_SUITE(FunctionOfAnySize, FCallables);

int32 Twice(int32 Value)
{
	return 2 * Value;
}

struct FMember
{
	int32 Value = 0;
	int32 Plus(int32 Other) const { return Value + Other; }
};
} // namespace

TYPED_TEST(FunctionOfAnySize, CopyClonesTheCallable)
{
	{
		const TFunction<int32(int32)> Original = TypeParam(10);
		EXPECT_EQ(NumAlive, 1);
		const TFunction<int32(int32)> Copy = Original;
		EXPECT_EQ(NumAlive, 2);
		EXPECT_EQ(Copy(5), 15);
		EXPECT_EQ(Copy(5), 20);
		EXPECT_EQ(Original(3), 13) << "the original has a state of its own";
		TFunction<int32(int32)> Assigned = TypeParam(1000);
		Assigned = Copy;
		EXPECT_EQ(NumAlive, 3) << "what was held before is destroyed";
		EXPECT_EQ(Assigned(2), 22);
		EXPECT_EQ(Copy(1), 21);
	}
	EXPECT_EQ(NumAlive, 0);
}

TYPED_TEST(FunctionOfAnySize, MoveConstructionEmptiesTheSource)
{
	TFunction<int32(int32)> Source = TypeParam(10);
	const TFunction<int32(int32)> Target = std::move(Source);
	EXPECT_FALSE(Source.IsSet());
	EXPECT_FALSE(Source);
	EXPECT_EQ(NumAlive, 1);
	EXPECT_EQ(Target(7), 17);
}

TYPED_TEST(FunctionOfAnySize, MoveAssignmentExchanges)
{
	TFunction<int32(int32)> Left = TypeParam(10);
	TFunction<int32(int32)> Right = TypeParam(-20);
	Left = std::move(Right);
	EXPECT_EQ(NumAlive, 2);
	EXPECT_EQ(Left(1), -19);
	EXPECT_EQ(Right(1), 11);

	TFunction<int32(int32)> Empty;
	Left = std::move(Empty);
	EXPECT_FALSE(Left.IsSet());
	EXPECT_EQ(Empty(1), -18) << "an empty function is exchanged like any other";
}

TYPED_TEST(FunctionOfAnySize, SelfAssignmentKeepsTheCallable)
{
	TFunction<int32(int32)> Function = TypeParam(10);
	TFunction<int32(int32)>& Same = Function;
	Function = Same;
	EXPECT_EQ(Function(1), 11);
	Function = std::move(Same);
	EXPECT_EQ(Function(1), 12);
	EXPECT_EQ(NumAlive, 1);
}

TYPED_TEST(FunctionOfAnySize, ResetDestroysTheCallable)
{
	TFunction<int32(int32)> Function = TypeParam(10);
	Function.Reset();
	EXPECT_EQ(NumAlive, 0);
	EXPECT_FALSE(Function.IsSet());
	Function = TypeParam(2);
	EXPECT_EQ(Function(3), 5);
	Function = nullptr;
	EXPECT_EQ(NumAlive, 0);
	EXPECT_TRUE(Function == nullptr);
}

TEST(Function, EmptinessIsSeenThroughEveryWayOfMakingIt)
{
	int32 (*const NoFunction)(int32) = nullptr;
	EXPECT_FALSE(TFunction<int32(int32)>().IsSet());
	EXPECT_FALSE(TFunction<int32(int32)>(nullptr).IsSet());
	EXPECT_FALSE(TFunction<int32(int32)>(NoFunction).IsSet());
	EXPECT_FALSE(TFunction<int64(int32)>(TFunction<int32(int32)>()).IsSet()) << "an empty function of another type";
	EXPECT_TRUE(TFunction<int32(int32)>(&Twice).IsSet());
	EXPECT_TRUE(TFunction<int64(int32)>(TFunction<int32(int32)>(&Twice)).IsSet());
}

TEST(Function, CallingAnEmptyOneIsStopped)
{
	const FThrowingAssertions Throwing;
	const TFunction<void()> Empty;
	EXPECT_THROW(Empty(), FAssertionFailed);
}

TEST(Function, PassesReferencesAndThingsThatOnlyMove)
{
	const TFunction<void(int32&, std::unique_ptr<int32>)> Function = [](int32& Out, std::unique_ptr<int32> In)
	{ Out = *In; };
	int32 Result = 0;
	Function(Result, std::make_unique<int32>(13));
	EXPECT_EQ(Result, 13);
}

TEST(Function, IgnoresAResultThatNobodyWants)
{
	int32 Calls = 0;
	const TFunction<void()> Function = [&Calls] { return ++Calls; };
	Function();
	EXPECT_EQ(Calls, 1);
}

TEST(Function, RefusesWhatItCannotCallOrCopy)
{
	const auto OnlyMoves = [Owner = std::make_unique<int32>(1)] { return *Owner; };
	static_assert(!std::is_constructible_v<TFunction<int32()>, decltype(OnlyMoves)>);
	static_assert(!std::is_constructible_v<TFunction<int32()>, FString>);
	static_assert(!std::is_constructible_v<TFunction<FString(int32)>, decltype(&Twice)>);
	static_assert(
		!std::is_constructible_v<TFunction<int32(int32)>, TFunctionRef<int32(int32)>>, "a reference is not to be kept");
	EXPECT_EQ(OnlyMoves(), 1);
}

RC_GTEST_PROP(Function, AnyMixOfCopiesAndMovesLeavesEachWithItsCallable, ())
{
	constexpr int32 NumSlots = 3;
	TFunction<int32()> Functions[NumSlots];
	std::optional<int32> Values[NumSlots];
	const auto Slot = rc::gen::inRange(0, NumSlots);
	const auto Steps = *rc::gen::container<std::vector<std::tuple<int32, int32, int32, bool>>>(
		rc::gen::tuple(rc::gen::inRange(0, 6), Slot, Slot, rc::gen::arbitrary<bool>()));
	int32 Next = 0;
	for (const auto& [Step, A, B, bLarge] : Steps)
	{
		switch (Step)
		{
		case 0: // a new callable
			Values[A] = ++Next;
			Functions[A] = bLarge ? TFunction<int32()>([Large = std::array<int32, 99>{Next}] { return Large[0]; })
								  : TFunction<int32()>([Next] { return Next; });
			break;
		case 1:
			Functions[A] = Functions[B];
			Values[A] = Values[B];
			break;
		case 2: // move assignment exchanges
			Functions[A] = std::move(Functions[B]);
			std::swap(Values[A], Values[B]);
			break;
		case 3: // move construction empties
		{
			const TFunction<int32()> Taken(std::move(Functions[A]));
			RC_ASSERT(Taken.IsSet() == Values[A].has_value());
			// In brackets of its own here and below: RC_ASSERT looks at both sides of a bare ||.
			RC_ASSERT((!Values[A] || Taken() == *Values[A]));
			Values[A].reset();
			break;
		}
		case 4: // a copy, which takes nothing away
		{
			const TFunction<int32()> Copy(Functions[A]);
			RC_ASSERT(Copy.IsSet() == Values[A].has_value());
			RC_ASSERT((!Values[A] || Copy() == *Values[A]));
			break;
		}
		default:
			Functions[A].Reset();
			Values[A].reset();
		}
		for (int32 Index = 0; Index < NumSlots; ++Index)
		{
			RC_ASSERT(Functions[Index].IsSet() == Values[Index].has_value());
			RC_ASSERT((!Values[Index] || Functions[Index]() == *Values[Index]));
		}
	}
}

TEST(FunctionRef, RefersWithoutCopying)
{
	FLarge Counter(10);
	const TFunctionRef<int32(int32)> Reference = Counter;
	EXPECT_EQ(NumAlive, 1);
	EXPECT_EQ(Reference(5), 15);
	EXPECT_EQ(Counter.Count, 15);
	const TFunctionRef<int32(int32)> Copy = Reference;
	EXPECT_EQ(Copy(5), 20);
	EXPECT_EQ(NumAlive, 1);
}

TEST(FunctionRef, TakesFunctionsMembersTemporariesAndOwners)
{
	const auto Call = [](TFunctionRef<int32(int32)> Function) { return Function(7); };
	int32 (*const Pointer)(int32) = &Twice;
	const TFunction<int32(int32)> Owner = &Twice;
	EXPECT_EQ(Call(Twice), 14);
	EXPECT_EQ(Call(&Twice), 14);
	EXPECT_EQ(Call(Pointer), 14);
	EXPECT_EQ(Call(Owner), 14);
	EXPECT_EQ(Call([Captured = 3](int32 Value) { return Value - Captured; }), 4);
	const auto CallMember = [](TFunctionRef<int32(const FMember&, int32)> Function) { return Function(FMember{5}, 3); };
	EXPECT_EQ(CallMember(&FMember::Plus), 8);
}

TEST(FunctionRef, KeepsAFunctionPointerThatWasATemporary)
{
	const TFunctionRef<int32(int32)> Reference = &Twice;
	EXPECT_EQ(Reference(9), 18);
}

TEST(FunctionRef, WillNotReferToNothing)
{
	const FThrowingAssertions Throwing;
	const TFunction<int32(int32)> Empty;
	int32 (*const NoFunction)(int32) = nullptr;
	EXPECT_THROW(TFunctionRef<int32(int32)>{Empty}, FAssertionFailed);
	EXPECT_THROW(TFunctionRef<int32(int32)>{NoFunction}, FAssertionFailed);
}
