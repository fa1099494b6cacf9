// SPDX-License-Identifier: MIT
#include "Core/String.h"
#include "Support/CommaLocale.h"
#include "Support/RapidCheck.h"

#include <unicode/unistr.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{
/// What ICU makes of the same bytes: another implementation of the same rule for ill-formed pieces.
FString DecodedByIcu(const std::string& Utf8)
{
	const icu::UnicodeString Text = icu::UnicodeString::fromUTF8(Utf8);
	FString Result;
	for (int32 Index = 0; Index < Text.length(); Index = Text.moveIndex32(Index, 1))
	{
		Result += static_cast<TCHAR>(Text.char32At(Index));
	}
	return Result;
}

/// Bytes of which many begin, continue or break a sequence.
rc::Gen<std::string> RoughlyUtf8()
{
	const auto Byte = rc::gen::oneOf(rc::gen::inRange(0x80, 0xc0), rc::gen::inRange(0xc0, 0x100),
		rc::gen::elementOf(std::vector<int>{0xe0, 0xed, 0xf0, 0xf4, 0xa0, 0x9f, 0x90, 0x8f, 'a', 0}));
	return rc::gen::container<std::string>(rc::gen::map(Byte, [](int Value) { return static_cast<char>(Value); }));
}

rc::Gen<TCHAR> ScalarValue()
{
	return rc::gen::map(
		rc::gen::oneOf(rc::gen::inRange(0, 0xd800), rc::gen::inRange(0xe000, 0x110000), rc::gen::inRange(0, 0x80)),
		[](int Code) { return static_cast<TCHAR>(Code); });
}

template <typename NumberType>
bool Parses(const TCHAR* Text, NumberType Expected)
{
	NumberType Value{};
	return LexFromString(Value, Text) && Value == Expected;
}

template <typename NumberType>
bool Refuses(const TCHAR* Text)
{
	NumberType Value = 77;
	return !LexFromString(Value, Text) && Value == 77;
}
} // namespace

TEST(Utf8, EncodesOneToFourBytes)
{
	EXPECT_EQ(FString(TEXT("a\u00b7\u20ac\U0001f600")).ToUtf8(), "a\xc2\xb7\xe2\x82\xac\xf0\x9f\x98\x80");
	EXPECT_EQ(FString::FromUtf8("a\xc2\xb7\xe2\x82\xac\xf0\x9f\x98\x80"), TEXT("a\u00b7\u20ac\U0001f600"));
}

TEST(Utf8, KeepsZeroBytes)
{
	const std::string Bytes("a\0b", 3);
	const FString Text = FString::FromUtf8(Bytes);
	EXPECT_EQ(Text.Len(), 3);
	EXPECT_EQ(Text.ToUtf8(), Bytes);
}

TEST(Utf8, ReplacesEachIllFormedPieceOnce)
{
	EXPECT_EQ(FString::FromUtf8("a\x80z"), TEXT("a\ufffdz")) << "a continuation alone";
	EXPECT_EQ(FString::FromUtf8("a\xe2\x82z"), TEXT("a\ufffdz")) << "a sequence cut short";
	EXPECT_EQ(FString::FromUtf8("a\xf0\x9f\x98"), TEXT("a\ufffd")) << "cut short by the end";
	EXPECT_EQ(FString::FromUtf8("\xc0\xaf"), TEXT("\ufffd\ufffd")) << "an overlong slash";
	EXPECT_EQ(FString::FromUtf8("\xe0\x80\xaf"), TEXT("\ufffd\ufffd\ufffd")) << "an overlong slash of three bytes";
	EXPECT_EQ(FString::FromUtf8("\xed\xa0\x80"), TEXT("\ufffd\ufffd\ufffd")) << "a surrogate";
	EXPECT_EQ(FString::FromUtf8("\xf4\x90\x80\x80"), TEXT("\ufffd\ufffd\ufffd\ufffd")) << "beyond U+10FFFF";
	EXPECT_EQ(FString::FromUtf8("\xff\xfe"), TEXT("\ufffd\ufffd")) << "bytes that never occur";
}

TEST(Utf8, EncodesWhatIsNoScalarValueAsReplacement)
{
	FString Text;
	for (const uint32 Code : {0xd800U, 0xdfffU, 0x110000U, 0xffffffffU})
	{
		Text += static_cast<TCHAR>(Code);
	}
	EXPECT_EQ(Text.ToUtf8(), "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd");
}

RC_GTEST_PROP(Utf8, EveryTextComesBack, ())
{
	const auto Text = FString(*rc::gen::container<std::wstring>(ScalarValue()));
	RC_ASSERT(FString::FromUtf8(Text.ToUtf8()) == Text);
}

RC_GTEST_PROP(Utf8, AnyBytesDecodeAsIcuDecodesThem, ())
{
	const std::string Bytes = *RoughlyUtf8();
	RC_ASSERT(FString::FromUtf8(Bytes) == DecodedByIcu(Bytes));
}

TEST(NumberParsing, ReadsWholeNumbers)
{
	EXPECT_TRUE(Parses<int32>(TEXT("0"), 0));
	EXPECT_TRUE(Parses<int32>(TEXT("-7"), -7));
	EXPECT_TRUE(Parses<int32>(TEXT("2147483647"), std::numeric_limits<int32>::max()));
	EXPECT_TRUE(Parses<int32>(TEXT("-2147483648"), std::numeric_limits<int32>::min()));
}

TEST(NumberParsing, ReadsReals)
{
	EXPECT_TRUE(Parses<double>(TEXT("2"), 2.0));
	EXPECT_TRUE(Parses<double>(TEXT("-0.125"), -0.125));
	EXPECT_TRUE(Parses<double>(TEXT("1e-4"), 1e-4));
	EXPECT_TRUE(Parses<double>(TEXT("1.7976931348623157e308"), std::numeric_limits<double>::max()));
	EXPECT_TRUE(Parses<double>(TEXT("-inf"), -std::numeric_limits<double>::infinity()));
	double NotANumber = 0.0;
	EXPECT_TRUE(LexFromString(NotANumber, TEXT("nan")));
	EXPECT_TRUE(std::isnan(NotANumber));
}

TEST(NumberParsing, RefusesAnythingElseAndLeavesTheNumberAlone)
{
	for (const TCHAR* Text : {TEXT(""), TEXT(" 1"), TEXT("1 "), TEXT("+1"), TEXT("1x"), TEXT("x"), TEXT("0x10"),
			 TEXT("1,5"), TEXT("--1"), TEXT("-"), TEXT("\u0661"), TEXT("1\u00a0000")})
	{
		EXPECT_TRUE(Refuses<int32>(Text)) << FString(Text);
		EXPECT_TRUE(Refuses<double>(Text)) << FString(Text);
	}
	EXPECT_TRUE(Refuses<int32>(TEXT("1.5")));
	EXPECT_TRUE(Refuses<int32>(TEXT("2147483648")));
	EXPECT_TRUE(Refuses<int32>(TEXT("-2147483649")));
	EXPECT_TRUE(Refuses<double>(TEXT("1e999")));
	EXPECT_TRUE(Refuses<double>(TEXT("1e")));
	int32 Value = 77;
	EXPECT_FALSE(LexFromString(Value, FStringView(L"1\0", 2))) << "a zero character is a rest, too";
}

TEST(NumberParsing, DoesNotDependOnTheLocale)
{
	const FCommaLocale Comma;
	EXPECT_TRUE(Parses<double>(TEXT("-1.5"), -1.5));
	EXPECT_TRUE(Refuses<double>(TEXT("-1,5")));
}

RC_GTEST_PROP(NumberParsing, ReadsEveryWholeNumberItWrites, (int32 Value))
{
	RC_ASSERT(Parses<int32>(*FString::FromInt(Value), Value));
	RC_ASSERT(Parses<double>(*FString::FromInt(Value), static_cast<double>(Value)));
}

RC_GTEST_PROP(NumberParsing, SeventeenDigitsGiveARealBack, (double Value))
{
	RC_ASSERT(Parses<double>(*FString::Printf(TEXT("%.16e"), Value), Value));
}
