// SPDX-License-Identifier: MIT
#include "Core/Array.h"
#include "Core/Delegate.h"
#include "Core/String.h"
#include "Support/ThrowingAssertions.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{
int32 Weigh(int32 Left, int32 Right)
{
	return 10 * Left + Right;
}

int32 LastIndex = -1;

void Remember(int32 Index)
{
	LastIndex = Index;
}

struct FScale
{
	int32 Factor = 1;
	int32 Apply(int32 Value) const { return Factor * Value; }
	void Set(int32 NewFactor) { Factor = NewFactor; }
};
} // namespace

TEST(DelegateHandle, IsInvalidUntilItNamesABinding)
{
	FDelegateHandle Handle;
	EXPECT_FALSE(Handle.IsValid());
	EXPECT_EQ(Handle, FDelegateHandle());
	Handle = FDelegateHandle::GenerateNewHandle();
	EXPECT_TRUE(Handle.IsValid());
	EXPECT_FALSE(Handle == FDelegateHandle::GenerateNewHandle());
	Handle.Reset();
	EXPECT_FALSE(Handle.IsValid());
}

TEST(Delegate, StartsUnbound)
{
	const FThrowingAssertions Throwing;
	const TDelegate<int32(int32)> Unbound;
	EXPECT_FALSE(Unbound.IsBound());
	EXPECT_FALSE(Unbound.GetHandle().IsValid());
	EXPECT_THROW(Unbound.Execute(2), FAssertionFailed);
	EXPECT_FALSE(FSimpleDelegate().ExecuteIfBound());
}

TEST(Delegate, PayloadFollowsTheArgumentsOfTheCall)
{
	const auto Delegate = TDelegate<int32(int32)>::CreateStatic(&Weigh, 7);
	EXPECT_EQ(Delegate.Execute(3), 37);
	const auto NoArguments = FSimpleDelegate::CreateStatic(&Remember, 5);
	EXPECT_TRUE(NoArguments.ExecuteIfBound());
	EXPECT_EQ(LastIndex, 5);
}

TEST(Delegate, PayloadIsCopiedWhenBinding)
{
	FString Name = TEXT("before");
	const auto Delegate =
		TDelegate<FString()>::CreateLambda([](const FString& Bound) { return Bound + TEXT("!"); }, Name);
	Name = TEXT("after");
	EXPECT_EQ(Delegate.Execute(), TEXT("before!"));
}

TEST(Delegate, BindsMembersOfAnObject)
{
	FScale Scale;
	auto Setter = TDelegate<void(int32)>::CreateRaw(&Scale, &FScale::Set);
	Setter.Execute(-7);
	const FScale& Constant = Scale;
	const auto Getter = TDelegate<int32(int32)>::CreateRaw(&Constant, &FScale::Apply);
	EXPECT_EQ(Getter.Execute(3), -21);
	FSimpleDelegate WithPayload;
	WithPayload.BindRaw(&Scale, &FScale::Set, 11);
	WithPayload.Execute();
	EXPECT_EQ(Scale.Factor, 11);
}

TEST(Delegate, RebindingReplacesTheBindingAndItsHandle)
{
	TDelegate<int32(int32, int32)> Delegate;
	Delegate.BindStatic(&Weigh);
	const FDelegateHandle First = Delegate.GetHandle();
	EXPECT_EQ(Delegate.Execute(2, 3), 23);
	Delegate.BindLambda([](int32 Left, int32 Right) { return Left - Right; });
	EXPECT_EQ(Delegate.Execute(2, 3), -1);
	EXPECT_FALSE(Delegate.GetHandle() == First);
	Delegate.Unbind();
	EXPECT_FALSE(Delegate.IsBound());
}

TEST(Delegate, CopiesHaveTheirOwnStateUnderTheSameHandle)
{
	const auto Original = TDelegate<int32()>::CreateLambda([Count = 0]() mutable { return ++Count; });
	EXPECT_EQ(Original.Execute(), 1);
	const TDelegate<int32()> Copy = Original;
	EXPECT_EQ(Copy.Execute(), 2);
	EXPECT_EQ(Copy.Execute(), 3);
	EXPECT_EQ(Original.Execute(), 2);
	EXPECT_EQ(Copy.GetHandle(), Original.GetHandle());
}

TEST(Delegate, PassesReferencesThrough)
{
	const auto Delegate = TDelegate<bool(int32&)>::CreateLambda([](int32& Out) { return (Out = 13) != 0; });
	int32 Value = 0;
	EXPECT_TRUE(Delegate.Execute(Value));
	EXPECT_EQ(Value, 13);
}

TEST(Delegate, CallableMayUnbindItselfWhileItRuns)
{
	FSimpleDelegate Delegate;
	FString Result;
	// The captured text is on the heap, so that the address sanitizer sees a use after the callable is gone.
	Delegate.BindLambda(
		[&, Captured = FString(TEXT("a text too long to be stored inside a string object"))]
		{
			Delegate.Unbind();
			Result = Captured;
		});
	Delegate.Execute();
	EXPECT_EQ(Result, TEXT("a text too long to be stored inside a string object"));
	EXPECT_FALSE(Delegate.IsBound());
}

TEST(Delegate, CallableMayDestroyItsDelegateWhileItRuns)
{
	auto Delegate = std::make_unique<TDelegate<FString(int32)>>();
	Delegate->BindLambda(
		[&Delegate](int32 Number, const FString& Payload)
		{
			Delegate.reset();
			return Payload + FString::FromInt(Number);
		},
		FString(TEXT("a text too long to be stored inside a string object ")));
	EXPECT_EQ(Delegate->Execute(3), TEXT("a text too long to be stored inside a string object 3"));
	EXPECT_EQ(Delegate, nullptr);
}

TEST(MulticastDelegate, CallsAllInTheOrderOfAdding)
{
	TMulticastDelegate<void(TArray<int32>&, int32)> Event;
	EXPECT_FALSE(Event.IsBound());
	Event.AddLambda([](TArray<int32>& Calls, int32 Value) { Calls.Add(Value); });
	Event.AddLambda([](TArray<int32>& Calls, int32 Value, int32 Payload) { Calls.Add(Value * Payload); }, -7);
	TArray<int32> Calls;
	Event.Broadcast(Calls, 3);
	EXPECT_EQ(Calls, (TArray<int32>{3, -21}));
	EXPECT_TRUE(Event.IsBound());
}

TEST(MulticastDelegate, HandsEveryBindingTheWholeArgument)
{
	TMulticastDelegate<void(FString)> Event;
	TArray<FString> Seen;
	const auto Take = [&Seen](FString Text) { Seen.Add(std::move(Text)); };
	Event.AddLambda(Take);
	Event.AddLambda(Take);
	Event.Broadcast(TEXT("a text too long to be stored inside a string object"));
	ASSERT_EQ(Seen.Num(), 2);
	EXPECT_EQ(Seen[1], Seen[0]);
}

TEST(MulticastDelegate, RemovesExactlyTheBindingOfTheHandle)
{
	TMulticastDelegate<void(int32)> Event;
	FScale Scale;
	const FDelegateHandle Static = Event.AddStatic(&Remember);
	const FDelegateHandle Raw = Event.AddRaw(&Scale, &FScale::Set);
	LastIndex = -1;
	EXPECT_TRUE(Event.Remove(Static));
	Event.Broadcast(5);
	EXPECT_EQ(LastIndex, -1);
	EXPECT_EQ(Scale.Factor, 5);
	EXPECT_FALSE(Event.Remove(Static)) << "it is gone already";
	EXPECT_FALSE(Event.Remove(FDelegateHandle()));
	EXPECT_FALSE(Event.Remove(FDelegateHandle::GenerateNewHandle()));
	EXPECT_TRUE(Event.Remove(Raw));
	EXPECT_FALSE(Event.IsBound());
}

TEST(MulticastDelegate, AddsADelegateUnderItsOwnHandle)
{
	TMulticastDelegate<void(int32)> Event;
	const auto Delegate = TDelegate<void(int32)>::CreateStatic(&Remember);
	EXPECT_EQ(Event.Add(Delegate), Delegate.GetHandle());
	EXPECT_FALSE(Event.Add(TDelegate<void(int32)>()).IsValid());
	EXPECT_TRUE(Event.Remove(Delegate.GetHandle()));
}

TEST(MulticastDelegate, BindingMayRemoveItselfWhileItIsCalled)
{
	FSimpleMulticastDelegate Event;
	TArray<FString> Calls;
	FDelegateHandle Handle;
	Event.AddLambda([&] { Calls.Add(TEXT("first")); });
	Handle = Event.AddLambda(
		[&, Captured = FString(TEXT("a text too long to be stored inside a string object"))]
		{
			EXPECT_TRUE(Event.Remove(Handle));
			Calls.Add(Captured.Right(6));
		});
	Event.AddLambda([&] { Calls.Add(TEXT("third")); });
	Event.Broadcast();
	Event.Broadcast();
	EXPECT_EQ(Calls, (TArray<FString>{TEXT("first"), TEXT("object"), TEXT("third"), TEXT("first"), TEXT("third")}));
}

TEST(MulticastDelegate, BindingRemovedBeforeItsTurnIsNotCalled)
{
	FSimpleMulticastDelegate Event;
	int32 Calls = 0;
	FDelegateHandle Second;
	Event.AddLambda([&] { Event.Remove(Second); });
	Second = Event.AddLambda([&] { ++Calls; });
	Event.Broadcast();
	EXPECT_EQ(Calls, 0);
}

TEST(MulticastDelegate, BindingAddedMeanwhileIsCalledFromTheNextBroadcastOn)
{
	FSimpleMulticastDelegate Event;
	int32 Calls = 0;
	Event.AddLambda(
		[&]
		{
			for (int32 Round = 0; Round < 100; ++Round)
			{
				Event.AddLambda([&Calls] { ++Calls; });
			}
		});
	Event.Broadcast();
	EXPECT_EQ(Calls, 0);
	Event.Broadcast();
	EXPECT_EQ(Calls, 100);
}

TEST(MulticastDelegate, MayBeClearedOrDestroyedWhileItIsBroadcast)
{
	auto Event = std::make_unique<FSimpleMulticastDelegate>();
	int32 Calls = 0;
	Event->AddLambda([&] { Event->Clear(); });
	Event->AddLambda([&] { ++Calls; });
	Event->Broadcast();
	EXPECT_EQ(Calls, 0);
	EXPECT_FALSE(Event->IsBound());

	Event->AddLambda(
		[&, Captured = std::make_unique<int32>(7).release()]
		{
			Event.reset();
			Calls += *Captured;
			delete Captured;
		});
	Event->Broadcast();
	EXPECT_EQ(Calls, 7);
}

TEST(MulticastDelegate, NestedBroadcastsKeepRemovalsStraight)
{
	TMulticastDelegate<void(int32)> Event;
	TArray<int32> Calls;
	FDelegateHandle First;
	First = Event.AddLambda(
		[&](int32 Depth)
		{
			Calls.Add(Depth);
			if (Depth == 0)
			{
				Event.Broadcast(1);
				Event.Remove(First);
				Event.Broadcast(2);
			}
		});
	Event.AddLambda([&](int32 Depth) { Calls.Add(10 + Depth); });
	Event.Broadcast(0);
	EXPECT_EQ(Calls, (TArray<int32>{0, 1, 11, 12, 10}));
}

TEST(MulticastDelegate, CallableIsDestroyedWhenItIsRemoved)
{
	FSimpleMulticastDelegate Event;
	const auto Witness = std::make_shared<int32>(0);
	const FDelegateHandle Handle = Event.AddLambda([Witness] {});
	EXPECT_EQ(Witness.use_count(), 2);
	Event.Remove(Handle);
	EXPECT_EQ(Witness.use_count(), 1) << "nothing of a binding may stay behind in the event";

	FDelegateHandle Other;
	Other = Event.AddLambda([&Event, &Other, Witness] { Event.Remove(Other); });
	Event.Broadcast();
	EXPECT_EQ(Witness.use_count(), 1) << "nor after a removal during a broadcast";
}

TEST(MulticastDelegate, CopiesAreIndependent)
{
	FSimpleMulticastDelegate Event;
	int32 Calls = 0;
	const FDelegateHandle Handle = Event.AddLambda([&Calls] { ++Calls; });
	FSimpleMulticastDelegate Copy = Event;
	EXPECT_TRUE(Event.Remove(Handle));
	Copy.Broadcast();
	EXPECT_EQ(Calls, 1);
	EXPECT_TRUE(Copy.Remove(Handle));
}
