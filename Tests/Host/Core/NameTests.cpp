// SPDX-License-Identifier: MIT
#include "Core/Name.h"
#include "Core/Set.h"
#include "Support/RapidCheck.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

TEST(Name, EqualTextsMakeEqualNames)
{
	const FString Text = TEXT("SM_Crate");
	EXPECT_EQ(FName(Text), FName(TEXT("SM_Crate")));
	EXPECT_EQ(GetTypeHash(FName(Text)), GetTypeHash(FName(TEXT("SM_Crate"))));
	EXPECT_FALSE(FName(Text) == FName(TEXT("SM_Barrel")));
}

TEST(Name, KeepsAndMindsCase)
{
	EXPECT_FALSE(FName(TEXT("crate")) == FName(TEXT("Crate")));
	EXPECT_EQ(FName(TEXT("CrAtE")).ToString(), TEXT("CrAtE"));
}

TEST(Name, NothingEmptyAndNoneAreNoName)
{
	EXPECT_TRUE(FName().IsNone());
	EXPECT_TRUE(FName(TEXT("")).IsNone());
	EXPECT_TRUE(FName(static_cast<const TCHAR*>(nullptr)).IsNone());
	EXPECT_TRUE(FName(TEXT("None")).IsNone());
	EXPECT_FALSE(FName(TEXT("none")).IsNone());
	EXPECT_EQ(FName(), NAME_None);
	EXPECT_EQ(NAME_None.ToString(), TEXT("None"));
}

TEST(Name, DoesNotLookAtTheCallersTextAgain)
{
	std::wstring Buffer = L"Temporary_17";
	const FName Name(Buffer.c_str());
	Buffer.assign(Buffer.size(), L'x');
	EXPECT_EQ(Name.ToString(), TEXT("Temporary_17"));
}

TEST(Name, SortsByTextNotByAddress)
{
	const FName Later(TEXT("b first made"));
	const FName Earlier(TEXT("a second made"));
	EXPECT_TRUE(Earlier.LexicalLess(Later));
	EXPECT_FALSE(Later.LexicalLess(Earlier));
	EXPECT_FALSE(Later.LexicalLess(Later));
}

TEST(Name, IsOnePointerWide)
{
	static_assert(sizeof(FName) == sizeof(void*));
	TSet<FName> Names{TEXT("a"), TEXT("b"), TEXT("a")};
	EXPECT_EQ(Names.Num(), 2);
}

TEST(Name, ManyThreadsGetOneNameForOneText)
{
	std::vector<FName> Names(8);
	std::vector<std::thread> Threads;
	for (FName& Name : Names)
	{
		Threads.emplace_back(
			[&Name]
			{
				for (int32 Number = 0; Number < 500; ++Number)
				{
					Name = FName(FString::Printf(TEXT("Shared_%d"), Number));
				}
			});
	}
	for (std::thread& Thread : Threads)
	{
		Thread.join();
	}
	for (const FName& Name : Names)
	{
		EXPECT_EQ(Name, Names[0]);
	}
}

RC_GTEST_PROP(Name, GivesBackItsText, (const std::string& Utf8))
{
	const FString Text = FString::FromUtf8(Utf8);
	RC_PRE(!Text.IsEmpty());
	RC_ASSERT(FName(Text).ToString() == Text);
}
