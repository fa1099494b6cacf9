// SPDX-License-Identifier: MIT
#include "Core/Text.h"
#include "Support/CommaLocale.h"
#include "Support/RapidCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#define LOCTEXT_NAMESPACE "Menus"

namespace
{
/// Leaves culture and translations as it found them.
class Text : public testing::Test
{
protected:
	Text() { Localization.SetCurrentCulture(TEXT("en")); }
	~Text() override
	{
		Localization.SetCurrentCulture(Culture);
		Localization.RemoveTexts(TEXT("de"));
		Localization.RemoveTexts(TEXT("de-CH"));
	}

	FString InCulture(const TCHAR* Name, const FText& Read)
	{
		EXPECT_TRUE(Localization.SetCurrentCulture(Name));
		return Read.ToString();
	}

	FTextLocalization& Localization = FTextLocalization::Get();
	FString Culture = Localization.GetCurrentCulture();
};

using TextCulture = Text;
using TextFormat = Text;
using TextNumber = Text;

FText Literal(const TCHAR* String)
{
	return FText::FromString(String);
}

FString Formatted(const TCHAR* Pattern, const TArray<FText>& Arguments)
{
	return FText::FormatArray(Literal(Pattern), Arguments).ToString();
}
} // namespace

TEST_F(Text, EmptyTextIsEmpty)
{
	EXPECT_TRUE(FText().IsEmpty());
	EXPECT_TRUE(FText::GetEmpty().IsEmpty());
	EXPECT_TRUE(Literal(TEXT("")).IsEmpty());
	EXPECT_EQ(FText().ToString(), TEXT(""));
	EXPECT_TRUE(FText().IdenticalTo(FText::GetEmpty()));
	EXPECT_FALSE(Literal(TEXT("a")).IsEmpty());
}

TEST_F(Text, CarriesNamespaceKeyAndSource)
{
	const FText Bake = NSLOCTEXT("TarvinTransform", "TarvinTransaction", "Bake Transform");
	EXPECT_EQ(Bake.GetNamespace(), TEXT("TarvinTransform"));
	EXPECT_EQ(Bake.GetKey(), TEXT("TarvinTransaction"));
	EXPECT_EQ(Bake.GetSourceString(), TEXT("Bake Transform"));
	EXPECT_EQ(Bake.ToString(), TEXT("Bake Transform"));
	EXPECT_EQ(LOCTEXT("Open", "Open...").GetNamespace(), TEXT("Menus"));
	EXPECT_TRUE(Literal(TEXT("a")).GetKey().IsEmpty());
}

TEST_F(Text, CopyingSharesTheData)
{
	const FText Original = Literal(TEXT("a"));
	const FText Copy = Original;
	EXPECT_TRUE(Copy.IdenticalTo(Original));
	EXPECT_FALSE(Literal(TEXT("a")).IdenticalTo(Original)) << "made apart, it has data of its own";
	EXPECT_TRUE(Literal(TEXT("a")).EqualTo(Original));
}

TEST_F(Text, TextsLookedUpAlikeAreIdentical)
{
	EXPECT_TRUE(NSLOCTEXT("a", "b", "c").IdenticalTo(NSLOCTEXT("a", "b", "c")));
	EXPECT_FALSE(NSLOCTEXT("a", "b", "c").IdenticalTo(NSLOCTEXT("x", "b", "c")));
	EXPECT_FALSE(NSLOCTEXT("a", "b", "c").IdenticalTo(NSLOCTEXT("a", "x", "c")));
	EXPECT_FALSE(NSLOCTEXT("a", "b", "c").IdenticalTo(NSLOCTEXT("a", "b", "x")));
	EXPECT_FALSE(NSLOCTEXT("a", "b", "c").IdenticalTo(Literal(TEXT("c"))));
}

TEST_F(TextCulture, IsLookedUpEachTimeItIsRead)
{
	const FText Bake = NSLOCTEXT("TarvinTransform", "TarvinTransaction", "Bake Transform");
	EXPECT_TRUE(
		Localization.AddText(TEXT("de"), TEXT("TarvinTransform"), TEXT("TarvinTransaction"), TEXT("Einbacken")));
	EXPECT_EQ(Bake.ToString(), TEXT("Bake Transform")) << "another culture's translation";
	EXPECT_EQ(InCulture(TEXT("de"), Bake), TEXT("Einbacken"));
	Localization.AddText(TEXT("de"), TEXT("TarvinTransform"), TEXT("TarvinTransaction"), TEXT("Backen"));
	EXPECT_EQ(Bake.ToString(), TEXT("Backen"));
	EXPECT_EQ(Bake.GetSourceString(), TEXT("Bake Transform"));
	Localization.RemoveTexts(TEXT("de"));
	EXPECT_EQ(Bake.ToString(), TEXT("Bake Transform"));
}

TEST_F(TextCulture, LooksAtNamespaceAndKeyTogether)
{
	Localization.AddText(TEXT("de"), TEXT("One"), TEXT("Key"), TEXT("Eins"));
	EXPECT_EQ(InCulture(TEXT("de"), NSLOCTEXT("One", "Key", "one")), TEXT("Eins"));
	EXPECT_EQ(NSLOCTEXT("Two", "Key", "two").ToString(), TEXT("two"));
	EXPECT_EQ(NSLOCTEXT("One", "key", "one").ToString(), TEXT("one")) << "case matters";
}

TEST_F(TextCulture, FallsBackOnTheParentAndThenOnTheSource)
{
	Localization.AddText(TEXT("de"), TEXT("A"), TEXT("Both"), TEXT("Strasse de"));
	Localization.AddText(TEXT("de-CH"), TEXT("A"), TEXT("Both"), TEXT("Strasse ch"));
	Localization.AddText(TEXT("de"), TEXT("A"), TEXT("Parent"), TEXT("nur de"));
	EXPECT_EQ(InCulture(TEXT("de-CH"), NSLOCTEXT("A", "Both", "street")), TEXT("Strasse ch"));
	EXPECT_EQ(NSLOCTEXT("A", "Parent", "only").ToString(), TEXT("nur de"));
	EXPECT_EQ(NSLOCTEXT("A", "Nobody", "none").ToString(), TEXT("none"));
	EXPECT_EQ(InCulture(TEXT("de-AT"), NSLOCTEXT("A", "Both", "street")), TEXT("Strasse de"));
}

TEST_F(TextCulture, WritingOfItsNameDoesNotMatter)
{
	Localization.AddText(TEXT("DE_ch"), TEXT("A"), TEXT("B"), TEXT("gefunden"));
	EXPECT_EQ(InCulture(TEXT("de-CH"), NSLOCTEXT("A", "B", "source")), TEXT("gefunden"));
	EXPECT_EQ(InCulture(TEXT("De_Ch"), NSLOCTEXT("A", "B", "source")), TEXT("gefunden"));
	EXPECT_EQ(Localization.GetCurrentCulture(), TEXT("de-CH"));
}

TEST_F(TextCulture, NameThatIsNoCulturesIsRefused)
{
	ASSERT_TRUE(Localization.SetCurrentCulture(TEXT("de")));
	for (const TCHAR* Name : {TEXT(""), TEXT("C"), TEXT("qq"), TEXT("qq-DE"), TEXT("german language"), TEXT("../de"),
			 TEXT("de_DE.UTF-8"), TEXT("-"), TEXT("d\u00e9")})
	{
		EXPECT_FALSE(Localization.SetCurrentCulture(Name)) << FString(Name);
		EXPECT_FALSE(Localization.AddText(Name, TEXT("A"), TEXT("B"), TEXT("C"))) << FString(Name);
		EXPECT_EQ(Localization.GetCurrentCulture(), TEXT("de"));
	}
}

TEST_F(TextFormat, PutsArgumentsInThePlaceOfTheirNumbers)
{
	const FText Body = NSLOCTEXT("TarvinTransform", "SharedBody",
		"'{0}' is also used by {1} other actor(s).\n\nBaking in place changes those actors too.");
	EXPECT_EQ(FText::Format(Body, Literal(TEXT("SM_Crate")), FText::AsNumber(1234)).ToString(),
		TEXT("'SM_Crate' is also used by 1,234 other actor(s).\n\nBaking in place changes those actors too."));
}

TEST_F(TextFormat, TakesAnyOrderAndRepetition)
{
	const TArray<FText> Arguments{Literal(TEXT("a")), Literal(TEXT("b")), Literal(TEXT("c"))};
	EXPECT_EQ(Formatted(TEXT("{2}{0}{2}"), Arguments), TEXT("cac"));
	EXPECT_EQ(Formatted(TEXT("none"), Arguments), TEXT("none"));
	EXPECT_EQ(Formatted(TEXT(""), Arguments), TEXT(""));
	TArray<FText> Many;
	for (int32 Index = 0; Index < 12; ++Index)
	{
		Many.Add(FText::AsNumber(100 + Index));
	}
	EXPECT_EQ(Formatted(TEXT("{11}{1}1"), Many), TEXT("1111011"));
}

TEST_F(TextFormat, LeavesWhatHasNoArgument)
{
	EXPECT_EQ(Formatted(TEXT("{0} {1} {7}"), {Literal(TEXT("a"))}), TEXT("a {1} {7}"));
	EXPECT_EQ(Formatted(TEXT("{0}"), {}), TEXT("{0}"));
	EXPECT_EQ(Formatted(TEXT("{99999999999999999999}"), {Literal(TEXT("a"))}), TEXT("{99999999999999999999}"));
}

TEST_F(TextFormat, DoesNotLookAtArgumentsAgain)
{
	EXPECT_EQ(Formatted(TEXT("{0}{1}"), {Literal(TEXT("{1}")), Literal(TEXT("{0}"))}), TEXT("{1}{0}"));
	EXPECT_EQ(Formatted(TEXT("{0}1}"), {Literal(TEXT("{")), Literal(TEXT("b"))}), TEXT("{1}"))
		<< "nor what they complete";
	EXPECT_EQ(Formatted(TEXT("'{0}'"), {Literal(TEXT("it's %d"))}), TEXT("'it's %d'"));
}

TEST_F(TextFormat, ApostrophesAndOtherBracesStay)
{
	const TArray<FText> Arguments{Literal(TEXT("a")), Literal(TEXT("b"))};
	EXPECT_EQ(Formatted(TEXT("it's '{0}' ''"), Arguments), TEXT("it's 'a' ''"));
	EXPECT_EQ(Formatted(TEXT("{{0}}"), Arguments), TEXT("{a}"));
	EXPECT_EQ(Formatted(TEXT("{"), Arguments), TEXT("{"));
	EXPECT_EQ(Formatted(TEXT("}{"), Arguments), TEXT("}{"));
	EXPECT_EQ(Formatted(TEXT("{0"), Arguments), TEXT("{0"));
	EXPECT_EQ(Formatted(TEXT("0}"), Arguments), TEXT("0}"));
	EXPECT_EQ(Formatted(TEXT("{ {0} {1"), Arguments), TEXT("{ a {1"));
	for (const TCHAR* Kept : {TEXT("{}"), TEXT("{name}"), TEXT("{-0}"), TEXT("{+0}"), TEXT("{ 0}"), TEXT("{0 }"),
			 TEXT("{0,1}"), TEXT("{0.5}"), TEXT("`{`")})
	{
		EXPECT_EQ(Formatted(Kept, Arguments), Kept);
	}
}

TEST_F(TextFormat, FollowsTheCultureOfPatternAndArguments)
{
	Localization.AddText(TEXT("de"), TEXT("A"), TEXT("Pattern"), TEXT("{1} mal {0}"));
	Localization.AddText(TEXT("de"), TEXT("A"), TEXT("Name"), TEXT("Kiste"));
	const FText Sentence = FText::Format(
		NSLOCTEXT("A", "Pattern", "{0} used {1} times"), NSLOCTEXT("A", "Name", "crate"), FText::AsNumber(12345));
	EXPECT_EQ(Sentence.ToString(), TEXT("crate used 12,345 times"));
	EXPECT_EQ(InCulture(TEXT("de"), Sentence), TEXT("12.345 mal Kiste"));
	EXPECT_EQ(Sentence.GetSourceString(), TEXT("crate used 12345 times"));
}

TEST_F(TextNumber, IsGroupedAsTheCultureDoes)
{
	const FText Million = FText::AsNumber(1234567);
	EXPECT_EQ(InCulture(TEXT("en"), Million), TEXT("1,234,567"));
	EXPECT_EQ(InCulture(TEXT("de"), Million), TEXT("1.234.567"));
	EXPECT_EQ(InCulture(TEXT("fr"), Million), TEXT("1\u202f234\u202f567"));
	EXPECT_EQ(InCulture(TEXT("de-CH"), Million), TEXT("1\u2019234\u2019567"));
	EXPECT_EQ(InCulture(TEXT("hi"), Million), TEXT("12,34,567"));
	EXPECT_EQ(InCulture(TEXT("es"), FText::AsNumber(1234)), TEXT("1234")) << "Spanish groups from five digits on";
	EXPECT_EQ(InCulture(TEXT("sv"), FText::AsNumber(-3)), TEXT("\u22123")) << "with a real minus sign";
	EXPECT_EQ(InCulture(TEXT("ar-EG"), FText::AsNumber(7)), TEXT("\u0667"));
}

TEST_F(TextNumber, TakesTheLimits)
{
	EXPECT_EQ(FText::AsNumber(0).ToString(), TEXT("0"));
	EXPECT_EQ(FText::AsNumber(std::numeric_limits<int32>::min()).ToString(), TEXT("-2,147,483,648"));
	EXPECT_EQ(FText::AsNumber(std::numeric_limits<int64>::min()).ToString(), TEXT("-9,223,372,036,854,775,808"));
}

TEST_F(TextNumber, RealHasAtMostThreeDecimals)
{
	EXPECT_EQ(FText::AsNumber(1234.5).ToString(), TEXT("1,234.5"));
	EXPECT_EQ(FText::AsNumber(-0.12345).ToString(), TEXT("-0.123"));
	EXPECT_EQ(FText::AsNumber(2.0).ToString(), TEXT("2"));
	EXPECT_EQ(FText::AsNumber(std::numeric_limits<double>::quiet_NaN()).ToString(), TEXT("NaN"));
	EXPECT_EQ(FText::AsNumber(-std::numeric_limits<double>::infinity()).ToString(), TEXT("-\u221e"));
	EXPECT_EQ(InCulture(TEXT("de"), FText::AsNumber(1234.5)), TEXT("1.234,5"));
	EXPECT_EQ(FText::AsNumber(1234.5).GetSourceString(), TEXT("1234.5"));
}

TEST_F(TextNumber, DoesNotDependOnTheLocaleOfTheLibraries)
{
	const FCommaLocale Comma;
	EXPECT_EQ(FText::AsNumber(1234.5).ToString(), TEXT("1,234.5"));
	EXPECT_EQ(FText::Format(Literal(TEXT("{0}|{1}")), FText::AsNumber(1234.5), FText::AsNumber(7654321)).ToString(),
		TEXT("1,234.5|7,654,321"));
	EXPECT_EQ(FText::AsNumber(1234.5).GetSourceString(), TEXT("1234.5"));
}

RC_GTEST_FIXTURE_PROP(TextFormat, PatternOfPiecesIsPutTogetherPieceByPiece, (const std::vector<uint8>& Choices))
{
	const TArray<FText> Arguments{Literal(TEXT("{1}")), Literal(TEXT("'")), Literal(TEXT("}{0"))};
	FString Pattern;
	FString Expected;
	for (const uint8 Choice : Choices)
	{
		const int32 Index = Choice % 6;
		const TCHAR* const Kept[] = {TEXT("'"), TEXT("}"), TEXT("{x}")};
		if (Index < 3)
		{
			Pattern += FString::Printf(TEXT("{%d}"), Index);
			Expected += Arguments[Index].ToString();
		}
		else
		{
			Pattern += Kept[Index - 3];
			Expected += Kept[Index - 3];
		}
	}
	RC_ASSERT(FText::FormatArray(FText::FromString(Pattern), Arguments).ToString() == Expected);
}

RC_GTEST_FIXTURE_PROP(TextNumber, GroupsHoldTheDigitsOfTheNumber, (int64 Value))
{
	const FString Digits = FText::AsNumber(Value).ToString().Replace(TEXT(","), TEXT(""));
	RC_ASSERT(Digits == FString::Printf(TEXT("%lld"), Value));
}

RC_GTEST_FIXTURE_PROP(TextFormat, GivesTheSameUnderALocaleOfCommas, (double Real, int64 Whole))
{
	const auto Write = [=]
	{ return FText::Format(Literal(TEXT("{1}: {0}, {1}")), FText::AsNumber(Real), FText::AsNumber(Whole)).ToString(); };
	const FString Before = Write();
	const FCommaLocale Comma;
	RC_ASSERT(Write() == Before);
}
