// SPDX-License-Identifier: MIT
#include "Core/SharedPointer.h"
#include "Support/ThrowingAssertions.h"

#include <gtest/gtest.h>

namespace
{
int32 NumAlive = 0;

struct FBase
{
	explicit FBase(int32 InNumber)
		: Number(InNumber)
	{
		++NumAlive;
	}
	virtual ~FBase() { --NumAlive; }
	FBase(const FBase&) = delete;
	FBase& operator=(const FBase&) = delete;

	int32 Number;
};

struct FDerived : FBase, TSharedFromThis<FDerived>
{
	using FBase::FBase;
	int32 Twice() const { return 2 * Number; }
};

template <typename T>
concept CDefaultConstructible = requires
{
	T();
};
template <typename T>
concept CTakesNull = requires
{
	T(nullptr);
};
} // namespace

TEST(SharedPointer, LastOwnerDestroysTheObject)
{
	TSharedPtr<FBase> First = MakeShared<FBase>(7);
	TSharedPtr<FBase> Second = First;
	EXPECT_EQ(First.GetSharedReferenceCount(), 2);
	First.Reset();
	EXPECT_FALSE(First.IsValid());
	EXPECT_EQ(NumAlive, 1);
	EXPECT_TRUE(Second.IsUnique());
	EXPECT_EQ(Second->Number, 7);
	Second = nullptr;
	EXPECT_EQ(NumAlive, 0);
}

TEST(SharedPointer, AdoptsAnObjectMadeByNew)
{
	{
		const TSharedPtr<FBase> Pointer = MakeShareable(new FDerived(5));
		const TSharedRef<FBase> Reference = MakeShareable(new FBase(3));
		EXPECT_EQ(NumAlive, 2);
		EXPECT_EQ(Pointer->Number + Reference->Number, 8);
	}
	EXPECT_EQ(NumAlive, 0);
}

TEST(SharedPointer, DerivedBecomesBaseAndIsCastBack)
{
	const TSharedRef<FDerived> Derived = MakeShared<FDerived>(11);
	const TSharedPtr<FBase> Base = Derived;
	const TSharedRef<FBase> BaseReference = Derived;
	EXPECT_EQ(Base.Get(), &Derived.Get());
	EXPECT_EQ(StaticCastSharedPtr<FDerived>(Base)->Twice(), 22);
	EXPECT_EQ(StaticCastSharedRef<FDerived>(BaseReference)->Twice(), 22);
	EXPECT_TRUE(Base == TSharedPtr<FDerived>(Derived));
	EXPECT_TRUE(TSharedPtr<FDerived>(Derived) == Base);
	EXPECT_TRUE(Derived == Base && Base == Derived);
	EXPECT_FALSE(StaticCastSharedPtr<FDerived>(TSharedPtr<FBase>()).IsValid());
}

TEST(SharedPointer, EmptyPointerEqualsNullAndEmpty)
{
	const TSharedPtr<FBase> Empty;
	EXPECT_TRUE(Empty == nullptr);
	EXPECT_TRUE(Empty == TSharedPtr<FDerived>());
	EXPECT_FALSE(Empty);
	EXPECT_FALSE(Empty == TSharedPtr<FBase>(MakeShared<FBase>(2)));
}

TEST(SharedPointer, FollowingAnEmptyPointerIsStopped)
{
	const FThrowingAssertions Throwing;
	const TSharedPtr<FBase> Empty;
	EXPECT_THROW((void)Empty->Number, FAssertionFailed);
	EXPECT_THROW((void)(*Empty).Number, FAssertionFailed);
	EXPECT_THROW(Empty.ToSharedRef(), FAssertionFailed);
}

TEST(SharedReference, IsNeverEmpty)
{
	static_assert(!CDefaultConstructible<TSharedRef<FBase>>);
	static_assert(!CTakesNull<TSharedRef<FBase>>);
	TSharedRef<FBase> First = MakeShared<FBase>(3);
	TSharedRef<FBase> Second = std::move(First);
	EXPECT_EQ(First->Number, 3) << "moving a reference copies it";
	Second = std::move(First);
	EXPECT_EQ(First->Number, 3);
}

TEST(WeakPointer, DoesNotKeepItsObjectAlive)
{
	TSharedPtr<FDerived> Owner = MakeShared<FDerived>(13);
	const TWeakPtr<FBase> Weak = Owner;
	const TWeakPtr<FDerived> OtherWeak = Owner;
	EXPECT_TRUE(Weak.IsValid());
	EXPECT_EQ(Weak.Pin()->Number, 13);
	EXPECT_EQ(OtherWeak, TWeakPtr<FDerived>(Owner));
	Owner.Reset();
	EXPECT_EQ(NumAlive, 0);
	EXPECT_FALSE(Weak.IsValid());
	EXPECT_FALSE(Weak.Pin().IsValid());
}

TEST(SharedFromThis, GivesAFurtherReferenceToTheSameObject)
{
	const TSharedRef<FDerived> Owner = MakeShared<FDerived>(17);
	const TSharedRef<FDerived> Further = Owner->AsShared();
	EXPECT_EQ(&Further.Get(), &Owner.Get());
	EXPECT_EQ(Owner.GetSharedReferenceCount(), 2);
	const FDerived& Constant = *Owner;
	EXPECT_EQ(Constant.AsShared()->Twice(), 34);
}

TEST(SharedFromThis, AnObjectWithoutASharedOwnerIsStopped)
{
	const FThrowingAssertions Throwing;
	FDerived OnTheStack(2);
	EXPECT_THROW(OnTheStack.AsShared(), FAssertionFailed);
}
