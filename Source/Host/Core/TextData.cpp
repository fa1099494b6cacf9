// SPDX-License-Identifier: MIT
#include "Core/TextData.h"

#include <unicode/numberformatter.h>
#include <unicode/unistr.h>

#include <map>

namespace
{
/// ICU's formatter for a language tag. They are costly to make, so each is made once.
const icu::number::LocalizedNumberFormatter& FormatterFor(const std::string& Locale)
{
	// Never destroyed: texts in statics may be read while the program ends.
	static auto& Formatters = *new std::map<std::string, icu::number::LocalizedNumberFormatter>;
	const auto Found = Formatters.find(Locale);
	if (Found != Formatters.end())
	{
		return Found->second;
	}
	UErrorCode Status = U_ZERO_ERROR;
	return Formatters
		.emplace(Locale, icu::number::NumberFormatter::withLocale(icu::Locale::forLanguageTag(Locale, Status))
							 .precision(icu::number::Precision::maxFraction(3)))
		.first->second;
}

FString ToFString(const std::string& Locale, const icu::number::FormattedNumber& Number, UErrorCode Status)
{
	std::string Utf8;
	const icu::UnicodeString Text = Number.toString(Status);
	checkf(U_SUCCESS(Status), TEXT("Cannot format numbers for '%s': the data of ICU are missing"),
		*FString::FromUtf8(Locale));
	return FString::FromUtf8(Text.toUTF8String(Utf8));
}

/// The index in "{index}" at the start of `Pattern` and the length of the whole; false for any other braces.
bool ParsePlaceholder(FStringView Pattern, std::size_t& OutIndex, std::size_t& OutLength)
{
	const std::size_t Close = Pattern.find(L'}');
	int32 Index = 0;
	if (Close == FStringView::npos || Close < 2 || Pattern[1] == L'-' ||
		!LexFromString(Index, Pattern.substr(1, Close - 1)))
	{
		return false;
	}
	OutIndex = static_cast<std::size_t>(Index);
	OutLength = Close + 1;
	return true;
}

/// One pass from left to right over the pattern alone, so that braces in arguments mean nothing.
FString FillIn(FStringView Pattern, const TArray<FString>& Arguments)
{
	FString Result;
	for (std::size_t Place = 0; Place < Pattern.size();)
	{
		std::size_t Index = 0;
		std::size_t Length = 0;
		if (Pattern[Place] == L'{' && ParsePlaceholder(Pattern.substr(Place), Index, Length) &&
			Index < static_cast<std::size_t>(Arguments.Num()))
		{
			Result += Arguments[static_cast<int32>(Index)];
			Place += Length;
		}
		else
		{
			Result += Pattern[Place++];
		}
	}
	return Result;
}
}

FString FormatNumberForLocale(const std::string& Locale, int64 Number)
{
	UErrorCode Status = U_ZERO_ERROR;
	const icu::number::FormattedNumber Formatted = FormatterFor(Locale).formatInt(Number, Status);
	return ToFString(Locale, Formatted, Status);
}

FString FormatNumberForLocale(const std::string& Locale, double Number)
{
	UErrorCode Status = U_ZERO_ERROR;
	const icu::number::FormattedNumber Formatted = FormatterFor(Locale).formatDouble(Number, Status);
	return ToFString(Locale, Formatted, Status);
}

FLiteralTextData::FLiteralTextData(FString InLiteral)
	: Literal(std::move(InLiteral))
{
}

FKeyedTextData::FKeyedTextData(FString InNamespace, FString InKey, FString InSource)
	: Namespace(std::move(InNamespace))
	, Key(std::move(InKey))
	, Source(std::move(InSource))
{
}

FString FKeyedTextData::InCurrentCulture() const
{
	const FString* Translation = FTextLocalization::Get().FindText(Namespace, Key);
	return Translation != nullptr ? *Translation : Source;
}

FNumberTextData::FNumberTextData(int64 InNumber)
	: Number(InNumber)
{
}

FNumberTextData::FNumberTextData(double InNumber)
	: Number(InNumber)
{
}

FString FNumberTextData::InCurrentCulture() const
{
	const std::string Locale = FTextLocalization::Get().GetCurrentCulture().ToUtf8();
	return std::visit([&Locale](auto Value) { return FormatNumberForLocale(Locale, Value); }, Number);
}

FString FNumberTextData::InNoCulture() const
{
	const auto* Integer = std::get_if<int64>(&Number);
	return Integer != nullptr ? FString::Printf(TEXT("%lld"), *Integer)
							  : FString::Printf(TEXT("%g"), std::get<double>(Number));
}

FFormattedTextData::FFormattedTextData(FText InPattern, TArray<FText> InArguments)
	: Pattern(std::move(InPattern))
	, Arguments(std::move(InArguments))
{
}

FString FFormattedTextData::InCurrentCulture() const
{
	TArray<FString> Values;
	for (const FText& Argument : Arguments)
	{
		Values.Add(Argument.ToString());
	}
	return FillIn(Pattern.ToString(), Values);
}

FString FFormattedTextData::InNoCulture() const
{
	TArray<FString> Values;
	for (const FText& Argument : Arguments)
	{
		Values.Add(Argument.GetSourceString());
	}
	return FillIn(Pattern.GetSourceString(), Values);
}
