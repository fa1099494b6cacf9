// SPDX-License-Identifier: MIT
#include "Core/FormatString.h"
#include "Core/String.h"
#include "Support/CommaLocale.h"
#include "Support/RapidCheck.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <string>

namespace
{
template <typename... ArgumentTypes>
constexpr EFormatProblem Check(const TCHAR* Format)
{
	constexpr std::array<EFormatArgumentKind, sizeof...(ArgumentTypes)> Kinds{FormatDetail::KindOf<ArgumentTypes>()...};
	return CheckFormat(Format, Kinds.data(), Kinds.size());
}

/// What the C library makes of the same number, in the C locale.
template <typename NumberType>
FString FormattedByC(const char* Format, NumberType Number)
{
	std::string Buffer(2000, '\0');
	const int Length = std::snprintf(Buffer.data(), Buffer.size(), Format, Number);
	return FString::FromUtf8(std::string_view(Buffer).substr(0, static_cast<std::size_t>(Length)));
}

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

enum class EAnswer : uint8
{
	Yes
};
} // namespace

// The rules by which a call does or does not compile, one line each. That a refused call really stops the compiler is
// tested by FormatRefusals.cpp.
static_assert(Check<>(TEXT("no conversion, 100%%")) == EFormatProblem::None);
static_assert(Check<int32, const TCHAR*>(TEXT("%d %s")) == EFormatProblem::None);
static_assert(Check<int8>(TEXT("%d")) == EFormatProblem::None);
static_assert(Check<int16>(TEXT("%d")) == EFormatProblem::None);
static_assert(Check<uint8>(TEXT("%u")) == EFormatProblem::None);
static_assert(Check<wchar_t[6]>(TEXT("%s")) == EFormatProblem::None);
static_assert(Check<TCHAR*>(TEXT("%-10.3s")) == EFormatProblem::None);
static_assert(Check<float, double>(TEXT("%3.3f%+08.1e")) == EFormatProblem::None);
static_assert(Check<int64, uint64, uint64>(TEXT("%lld%llu%016llx")) == EFormatProblem::None);
static_assert(Check<TCHAR>(TEXT("%c")) == EFormatProblem::None);

static_assert(Check<>(TEXT("%d")) == EFormatProblem::TooFewArguments);
static_assert(Check<int32>(TEXT("%d%d")) == EFormatProblem::TooFewArguments);
static_assert(Check<int32>(TEXT("none")) == EFormatProblem::TooManyArguments);
static_assert(Check<int32>(TEXT("%%")) == EFormatProblem::TooManyArguments);

static_assert(Check<int64>(TEXT("%d")) == EFormatProblem::WrongArgumentType);
static_assert(Check<long>(TEXT("%d")) == EFormatProblem::WrongArgumentType);
static_assert(Check<int32>(TEXT("%lld")) == EFormatProblem::WrongArgumentType);
static_assert(Check<uint32>(TEXT("%d")) == EFormatProblem::WrongArgumentType);
static_assert(Check<int32>(TEXT("%u")) == EFormatProblem::WrongArgumentType);
static_assert(Check<int32>(TEXT("%x")) == EFormatProblem::WrongArgumentType);
static_assert(Check<std::size_t>(TEXT("%u")) == EFormatProblem::WrongArgumentType);
static_assert(Check<bool>(TEXT("%d")) == EFormatProblem::WrongArgumentType);
static_assert(Check<EAnswer>(TEXT("%d")) == EFormatProblem::WrongArgumentType);
static_assert(Check<TCHAR>(TEXT("%d")) == EFormatProblem::WrongArgumentType);
static_assert(Check<char>(TEXT("%c")) == EFormatProblem::WrongArgumentType);
static_assert(Check<double>(TEXT("%d")) == EFormatProblem::WrongArgumentType);
static_assert(Check<int32>(TEXT("%f")) == EFormatProblem::WrongArgumentType);
static_assert(Check<long double>(TEXT("%f")) == EFormatProblem::WrongArgumentType);
static_assert(Check<const char*>(TEXT("%s")) == EFormatProblem::WrongArgumentType);
static_assert(Check<FString>(TEXT("%s")) == EFormatProblem::WrongArgumentType);
static_assert(Check<std::wstring>(TEXT("%s")) == EFormatProblem::WrongArgumentType);
static_assert(Check<int32>(TEXT("%s")) == EFormatProblem::WrongArgumentType);
static_assert(Check<std::nullptr_t>(TEXT("%s")) == EFormatProblem::WrongArgumentType);

static_assert(Check<>(TEXT("100%")) == EFormatProblem::MalformedConversion);
static_assert(Check<int32>(TEXT("%i")) == EFormatProblem::MalformedConversion);
static_assert(Check<int32*>(TEXT("%n")) == EFormatProblem::MalformedConversion);
static_assert(Check<int32, int32>(TEXT("%*d")) == EFormatProblem::MalformedConversion);
static_assert(Check<int32>(TEXT("%ld")) == EFormatProblem::MalformedConversion);
static_assert(Check<int32>(TEXT("%hd")) == EFormatProblem::MalformedConversion);
static_assert(Check<int32>(TEXT("%.3d")) == EFormatProblem::MalformedConversion);
static_assert(Check<int32>(TEXT("%99999999999d")) == EFormatProblem::MalformedConversion);
static_assert(Check<double>(TEXT("%.99999f")) == EFormatProblem::MalformedConversion);
static_assert(Check<double>(TEXT("%llf")) == EFormatProblem::MalformedConversion);
static_assert(Check<uint32>(TEXT("%+u")) == EFormatProblem::MalformedConversion);
static_assert(Check<const TCHAR*>(TEXT("%05s")) == EFormatProblem::MalformedConversion);

TEST(Printf, WritesTheMessagesOfTheProgram)
{
	EXPECT_EQ(FString::Printf(TEXT("Baked %d mesh(es)"), 1), TEXT("Baked 1 mesh(es)"));
	EXPECT_EQ(FString::Printf(TEXT("Pivot moved to %s on %d mesh(es)"), TEXT("world origin"), 12),
		TEXT("Pivot moved to world origin on 12 mesh(es)"));
	EXPECT_EQ(FString::Printf(TEXT(" \u00b7 %d new asset(s)"), 3), TEXT(" \u00b7 3 new asset(s)"));
	EXPECT_EQ(FString::Printf(TEXT("X=%3.3f Y=%3.3f Z=%3.3f"), 2.0, -0.0005, 1234.56789),
		TEXT("X=2.000 Y=-0.001 Z=1234.568"));
}

TEST(Printf, TakesTheSmallestNumbers)
{
	EXPECT_EQ(FString::Printf(TEXT("%d"), std::numeric_limits<int32>::min()), TEXT("-2147483648"));
	EXPECT_EQ(FString::Printf(TEXT("%lld"), std::numeric_limits<int64>::min()), TEXT("-9223372036854775808"));
	EXPECT_EQ(FString::Printf(TEXT("%llu"), std::numeric_limits<uint64>::max()), TEXT("18446744073709551615"));
	EXPECT_EQ(FString::Printf(TEXT("%d %d"), int8{-128}, int16{-3}), TEXT("-128 -3"));
}

TEST(Printf, WritesHugeAndNoNumbers)
{
	const FString Huge = FString::Printf(TEXT("%f"), 1e308);
	EXPECT_EQ(Huge, FormattedByC("%f", 1e308));
	EXPECT_EQ(Huge.Len(), 309 + 7);
	EXPECT_EQ(FString::Printf(TEXT("%.500f"), -std::numeric_limits<double>::max()).Len(), 1 + 309 + 1 + 500);
	EXPECT_EQ(FString::Printf(TEXT("%f %f %f"), Infinity, -Infinity, NotANumber), TEXT("inf -inf nan"));
	EXPECT_EQ(FString::Printf(TEXT("[%06.1f|%-6f|%+f]"), Infinity, NotANumber, Infinity), TEXT("[   inf|nan   |+inf]"));
	EXPECT_EQ(FString::Printf(TEXT("%3.3f"), -0.0), TEXT("-0.000"));
	EXPECT_EQ(FString::Printf(TEXT("%f"), 5e-324), TEXT("0.000000"));
	EXPECT_EQ(FString::Printf(TEXT("%3.3f"), 2.5f), TEXT("2.500"));
}

TEST(Printf, PadsLikeC)
{
	EXPECT_EQ(FString::Printf(TEXT("[%5d|%-5d|%05d|%+d|% d]"), -7, -7, -7, 7, 7), TEXT("[   -7|-7   |-0007|+7| 7]"));
	EXPECT_EQ(FString::Printf(TEXT("[%8.2f|%-8.2f|%08.2f|%.0f]"), -1.5, -1.5, -1.5, 2.5),
		TEXT("[   -1.50|-1.50   |-0001.50|2]"));
	EXPECT_EQ(FString::Printf(TEXT("[%5s|%-5s|%.2s|%5c]"), TEXT("abc"), TEXT("abc"), TEXT("abc"), L'z'),
		TEXT("[  abc|abc  |ab|    z]"));
	EXPECT_EQ(
		FString::Printf(TEXT("[%08x|%llx]"), 0xbeefU, uint64{0xfedcba9876543210}), TEXT("[0000beef|fedcba9876543210]"));
}

TEST(Printf, TakesTextAsItIs)
{
	const FString Name = TEXT("100%d \u20ac\U0001f600 {0}");
	EXPECT_EQ(FString::Printf(TEXT("'%s'%%"), *Name), TEXT("'100%d \u20ac\U0001f600 {0}'%"));
	EXPECT_EQ(FString::Printf(TEXT("%s"), static_cast<const TCHAR*>(nullptr)), TEXT("(null)"));
	EXPECT_EQ(FString::Printf(TEXT("")), TEXT(""));
	const FString Long = FString::ChrN(100000, L'x');
	EXPECT_EQ(FString::Printf(TEXT("<%s>"), *Long).Len(), 100002);
}

TEST(Printf, DoesNotDependOnTheLocale)
{
	const FCommaLocale Comma;
	ASSERT_EQ(FormattedByC("%.1f", 1.5), TEXT("1,5")) << "the C library must really write a comma now";
	EXPECT_EQ(FString::Printf(TEXT("%3.3f"), -1234567.5), TEXT("-1234567.500"));
	EXPECT_EQ(FString::Printf(TEXT("%g %e"), 0.25, 0.25), TEXT("0.25 2.500000e-01"));
	EXPECT_EQ(FString::Printf(TEXT("%d"), -1234567), TEXT("-1234567"));
}

RC_GTEST_PROP(Printf, WritesWholeNumbersAsTheStandardLibraryDoes, (int32 Value))
{
	RC_ASSERT(FString::Printf(TEXT("%d"), Value) == FString(std::to_wstring(Value)));
	RC_ASSERT(FString::Printf(TEXT("%08d"), Value) == FormattedByC("%08d", Value));
	RC_ASSERT(FString::Printf(TEXT("%x"), static_cast<uint32>(Value)) == FormattedByC("%x", Value));
}

RC_GTEST_PROP(Printf, WritesRealsAsCDoes, (double Mantissa, int8 Exponent))
{
	const double Value = std::ldexp(Mantissa, Exponent);
	RC_ASSERT(FString::Printf(TEXT("%3.3f"), Value) == FormattedByC("%3.3f", Value));
	RC_ASSERT(FString::Printf(TEXT("%f"), Value) == FormattedByC("%f", Value));
	RC_ASSERT(FString::Printf(TEXT("%012.4e"), Value) == FormattedByC("%012.4e", Value));
	RC_ASSERT(FString::Printf(TEXT("%g"), Value) == FormattedByC("%g", Value));
}

RC_GTEST_PROP(Printf, WritesTheSameNumbersUnderALocaleOfCommas, (double Mantissa, int8 Exponent, int32 Whole))
{
	const double Value = std::ldexp(Mantissa, Exponent);
	const auto Write = [=]
	{ return FString::Printf(TEXT("%3.3f|%f|%012.4e|%g|%d|%08d"), Value, Value, Value, Value, Whole, Whole); };
	const FString Before = Write();
	const FCommaLocale Comma;
	RC_ASSERT(Write() == Before);
}
