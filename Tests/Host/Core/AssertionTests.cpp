// SPDX-License-Identifier: MIT
#include "Core/Types.h"
#include "Support/ThrowingAssertions.h"

#include <gtest/gtest.h>

namespace
{
int32 FailingLine = 0;

void FailCheck()
{
	FailingLine = __LINE__ + 1;
	check(2 + 2 == 5);
}
} // namespace

TEST(Assertion, PassingCheckDoesNothing)
{
	const FThrowingAssertions Throwing;
	int32 Evaluations = 0;
	EXPECT_NO_THROW(check(++Evaluations == 1));
	EXPECT_EQ(Evaluations, 1) << "the condition is evaluated once, in every build";
}

TEST(Assertion, FailedCheckHandsExpressionFileAndLineToTheHandler)
{
	FAssertionFailure Seen;
	const FAssertionHandler Previous = SetAssertionHandler(
		[&Seen](const FAssertionFailure& Failure)
		{
			Seen = Failure;
			throw 1;
		});
	EXPECT_THROW(FailCheck(), int);
	SetAssertionHandler(Previous);
	EXPECT_STREQ(Seen.Expression, "2 + 2 == 5");
	EXPECT_EQ(Seen.Line, FailingLine);
	EXPECT_TRUE(std::string(Seen.File).ends_with("AssertionTests.cpp"));
	EXPECT_TRUE(Seen.Message.empty());
}

TEST(Assertion, FormattedCheckCarriesItsMessage)
{
	const FThrowingAssertions Throwing;
	try
	{
		checkf(1 > 3, TEXT("%s has %d"), TEXT("it"), 7);
		FAIL() << "the check let a false condition pass";
	}
	catch (const FAssertionFailed& Failure)
	{
		EXPECT_EQ(Failure.Expression(), "1 > 3");
		EXPECT_EQ(Failure.Message(), TEXT("it has 7"));
	}
}

TEST(Assertion, SettingAHandlerReturnsTheOneBefore)
{
	int32 Calls = 0;
	SetAssertionHandler([&Calls](const FAssertionFailure&) { Calls += 3; });
	const FAssertionHandler Mine = SetAssertionHandler({});
	ASSERT_TRUE(Mine);
	Mine(FAssertionFailure{});
	EXPECT_EQ(Calls, 3);
	EXPECT_FALSE(SetAssertionHandler({})) << "without a handler the default is in place";
}

TEST(AssertionDeathTest, DefaultHandlerPrintsOneLineAndAborts)
{
	EXPECT_EXIT(checkf(3 < 2, TEXT("because of %d"), 5), testing::KilledBySignal(SIGABRT),
		"AssertionTests.cpp:[0-9]+: check failed: 3 < 2: because of 5\n$");
}

TEST(AssertionDeathTest, ProgramEndsEvenIfTheHandlerReturns)
{
	EXPECT_EXIT(
		{
			SetAssertionHandler([](const FAssertionFailure&) {});
			check(false);
		},
		testing::KilledBySignal(SIGABRT), "^$");
}
