// SPDX-License-Identifier: MIT
#include "Core/String.h"
#include "Support/RapidCheck.h"
#include "Support/ThrowingAssertions.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{
FString FromCodes(const std::vector<uint16>& Codes)
{
	FString Text;
	for (const uint16 Code : Codes)
	{
		// Few different characters, so that pieces do occur in texts.
		Text += static_cast<TCHAR>(L'a' + Code % 3);
	}
	return Text;
}
} // namespace

TEST(String, NullMakesTheEmptyString)
{
	const FString Text(static_cast<const TCHAR*>(nullptr));
	EXPECT_TRUE(Text.IsEmpty());
	EXPECT_EQ(Text.Len(), 0);
	ASSERT_NE(*Text, nullptr);
	EXPECT_EQ(**Text, L'\0');
}

TEST(String, EqualityMindsCase)
{
	EXPECT_EQ(FString(TEXT("Crate")), TEXT("Crate"));
	EXPECT_FALSE(FString(TEXT("Crate")) == TEXT("crate"));
	EXPECT_TRUE(FString(TEXT("Crate")).Equals(TEXT("crate"), ESearchCase::IgnoreCase));
	EXPECT_FALSE(FString(TEXT("Crate")).Equals(TEXT("crates"), ESearchCase::IgnoreCase));
	EXPECT_TRUE(FString(TEXT("STRA\u00c9")).Equals(TEXT("stra\u00e9"), ESearchCase::IgnoreCase)) << "beyond ASCII, too";
}

TEST(String, SortsByCodePoints)
{
	EXPECT_LT(FString(TEXT("Crate")), FString(TEXT("crate")));
	EXPECT_LT(FString(TEXT("Crate")), FString(TEXT("Crate2")));
	EXPECT_EQ(FString(TEXT("b")).Compare(TEXT("a")), 1);
	EXPECT_EQ(FString(TEXT("A")).Compare(TEXT("b"), ESearchCase::IgnoreCase), -1);
	EXPECT_EQ(FString(TEXT("A")).Compare(TEXT("a"), ESearchCase::IgnoreCase), 0);
}

TEST(String, Concatenates)
{
	FString Text = FString(TEXT("SM_")) + TEXT("Crate") + L'_' + FString::FromInt(-7);
	Text += TEXT("!");
	Text += L'?';
	EXPECT_EQ(TEXT("<") + Text, TEXT("<SM_Crate_-7!?"));
	Text.Append(Text);
	EXPECT_EQ(Text.Len(), 26) << "appending itself";
}

TEST(String, PathPartsAreJoinedByOneSlash)
{
	EXPECT_EQ(FString(TEXT("a")) / TEXT("b"), TEXT("a/b"));
	EXPECT_EQ(FString(TEXT("a/")) / TEXT("/b"), TEXT("a/b"));
	EXPECT_EQ(FString(TEXT("/")) / TEXT("b"), TEXT("/b"));
	EXPECT_EQ(FString(TEXT("")) / TEXT("/b"), TEXT("/b"));
	EXPECT_EQ(FString(TEXT("/Game")) / FString(TEXT("Meshes")) / TEXT("Crate"), TEXT("/Game/Meshes/Crate"));
}

TEST(String, FindsPiecesFromTheLeft)
{
	const FString Text = TEXT("Crate_Crate");
	EXPECT_EQ(Text.Find(TEXT("Crate")), 0);
	EXPECT_EQ(Text.Find(TEXT("Crate"), ESearchCase::CaseSensitive, 1), 6);
	EXPECT_EQ(Text.Find(TEXT("crate")), INDEX_NONE);
	EXPECT_EQ(Text.Find(TEXT("crate"), ESearchCase::IgnoreCase, 1), 6);
	EXPECT_EQ(Text.Find(TEXT("e"), ESearchCase::CaseSensitive, 100), INDEX_NONE);
	EXPECT_TRUE(Text.Contains(TEXT("_C")));
	EXPECT_FALSE(Text.Contains(TEXT("_c")));
	EXPECT_TRUE(Text.Contains(TEXT("_c"), ESearchCase::IgnoreCase));
}

TEST(String, FindsFirstAndLastCharacter)
{
	const FString Path = TEXT("/Game/Crate");
	int32 Index = -5;
	EXPECT_TRUE(Path.FindChar(L'/', Index));
	EXPECT_EQ(Index, 0);
	EXPECT_TRUE(Path.FindLastChar(L'/', Index));
	EXPECT_EQ(Index, 5);
	EXPECT_FALSE(Path.FindChar(L'?', Index));
	EXPECT_EQ(Index, INDEX_NONE);
}

TEST(String, TellsBeginningsAndEndings)
{
	const FString Name = TEXT("Crate_Baked");
	EXPECT_TRUE(Name.EndsWith(TEXT("_Baked")));
	EXPECT_FALSE(Name.EndsWith(TEXT("_baked")));
	EXPECT_TRUE(Name.EndsWith(TEXT("_baked"), ESearchCase::IgnoreCase));
	EXPECT_TRUE(Name.StartsWith(TEXT("Crate")));
	EXPECT_TRUE(Name.StartsWith(TEXT("")));
	EXPECT_FALSE(Name.StartsWith(TEXT("Crate_Baked_")));
}

TEST(String, CutsWithinItsBounds)
{
	const FString Text = TEXT("abcde");
	EXPECT_EQ(Text.Left(2), TEXT("ab"));
	EXPECT_EQ(Text.Left(-1), TEXT(""));
	EXPECT_EQ(Text.Left(99), Text);
	EXPECT_EQ(Text.Right(2), TEXT("de"));
	EXPECT_EQ(Text.LeftChop(2), TEXT("abc"));
	EXPECT_EQ(Text.RightChop(2), TEXT("cde"));
	EXPECT_EQ(Text.Mid(1, 3), TEXT("bcd"));
	EXPECT_EQ(Text.Mid(3), TEXT("de"));
	EXPECT_EQ(Text.Mid(5), TEXT(""));
	EXPECT_EQ(Text.Mid(-1, 2), TEXT(""));
	EXPECT_EQ(Text.Mid(3, std::numeric_limits<int32>::max()), TEXT("de"));
}

TEST(String, ReplacesEveryPieceFromTheLeft)
{
	EXPECT_EQ(FString(TEXT("aaa")).Replace(TEXT("aa"), TEXT("b")), TEXT("ba"));
	EXPECT_EQ(FString(TEXT("aXa")).Replace(TEXT("x"), TEXT("xx"), ESearchCase::IgnoreCase), TEXT("axxa"));
	EXPECT_EQ(FString(TEXT("abc")).Replace(TEXT(""), TEXT("!")), TEXT("abc"));
	EXPECT_EQ(FString(TEXT("abc")).Replace(TEXT("b"), TEXT("")), TEXT("ac"));
}

TEST(String, ChangesCaseAndTrimsBeyondAscii)
{
	EXPECT_EQ(FString(TEXT("\u00c4I\u0130")).ToLower().Left(2), TEXT("\u00e4i"));
	EXPECT_EQ(FString(TEXT("\u00e4i")).ToUpper(), TEXT("\u00c4I"));
	EXPECT_EQ(FString(TEXT(" \t\u00a0a b\u2003\n")).TrimStartAndEnd(), TEXT("a b"));
	EXPECT_EQ(FString(TEXT(" \t")).TrimStartAndEnd(), TEXT(""));
}

TEST(String, IsCutIntoPiecesAndJoined)
{
	TArray<FString> Pieces;
	EXPECT_EQ(FString(TEXT("a,,b,")).ParseIntoArray(Pieces, TEXT(",")), 2);
	EXPECT_EQ(Pieces, (TArray<FString>{TEXT("a"), TEXT("b")}));
	EXPECT_EQ(FString(TEXT("a,,b,")).ParseIntoArray(Pieces, TEXT(","), false), 4);
	EXPECT_EQ(Pieces, (TArray<FString>{TEXT("a"), TEXT(""), TEXT("b"), TEXT("")}));
	EXPECT_EQ(FString::Join(Pieces, TEXT("; ")), TEXT("a; ; b; "));
	EXPECT_EQ(FString().ParseIntoArray(Pieces, TEXT(",")), 0);
	EXPECT_EQ(FString::Join({}, TEXT(",")), TEXT(""));
}

TEST(String, AccessOutsideIsStopped)
{
	const FThrowingAssertions Throwing;
	FString Text = TEXT("ab");
	EXPECT_THROW(Text[2], FAssertionFailed);
	EXPECT_THROW(Text[-1], FAssertionFailed);
	Text[1] = L'c';
	EXPECT_EQ(Text, TEXT("ac"));
}

TEST(String, PlatformComparisonIgnoresCase)
{
	EXPECT_EQ(FGenericPlatformStricmp::Stricmp(TEXT("TarvinTransform"), TEXT("tARVINtRANSFORM")), 0);
	EXPECT_NE(FGenericPlatformStricmp::Stricmp(TEXT("TarvinTransform"), TEXT("")), 0);
	EXPECT_NE(FGenericPlatformStricmp::Stricmp(TEXT("TarvinTransform"), TEXT("TarvinTransform2")), 0);
	EXPECT_LT(FGenericPlatformStricmp::Stricmp(TEXT("a"), TEXT("B")), 0);
	EXPECT_GT(FGenericPlatformStricmp::Stricmp(TEXT("b"), TEXT("A")), 0);
}

RC_GTEST_PROP(String, CuttingAndJoiningByOneDelimiterGivesTheTextBack, (const std::vector<uint16>& Codes))
{
	const FString Text = FromCodes(Codes);
	TArray<FString> Pieces;
	Text.ParseIntoArray(Pieces, TEXT("a"), false);
	RC_ASSERT(FString::Join(Pieces, TEXT("a")) == Text);
	RC_ASSERT(FString::Join(Pieces, TEXT("zz")) == Text.Replace(TEXT("a"), TEXT("zz")));
}

RC_GTEST_PROP(
	String, FindAgreesWithTheStandardLibrary, (const std::vector<uint16>& Codes, const std::vector<uint16>& Part))
{
	const FString Text = FromCodes(Codes);
	const FString Piece = FromCodes(Part);
	const std::size_t Expected = Text.ToStdWString().find(Piece.ToStdWString());
	const int32 Wanted = Expected == std::wstring::npos ? INDEX_NONE : static_cast<int32>(Expected);
	RC_ASSERT(Text.Find(Piece) == Wanted);
	RC_ASSERT(Text.ToUpper().Find(Piece, ESearchCase::IgnoreCase) == Wanted);
}
