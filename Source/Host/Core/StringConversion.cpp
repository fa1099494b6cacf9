// SPDX-License-Identifier: MIT
#include "Core/String.h"

#include <charconv>

// Between text and bytes, and between text and numbers.

namespace
{
constexpr TCHAR ReplacementCharacter = static_cast<TCHAR>(0xfffd);

bool IsScalarValue(uint32 Code)
{
	return Code <= 0x10ffff && (Code < 0xd800 || Code > 0xdfff);
}

/// What a lead byte promises: how many bytes follow, and which values the first of them may have. The limits on the
/// first one shut out overlong forms, surrogates and values beyond U+10FFFF as soon as they can be told.
struct FLeadByte
{
	int32 Continuations = -1;
	uint8 Low = 0x80;
	uint8 High = 0xbf;
};

FLeadByte ClassifyLead(uint8 Byte)
{
	if (Byte < 0x80)
	{
		return {0};
	}
	if (Byte >= 0xc2 && Byte <= 0xdf)
	{
		return {1};
	}
	if (Byte >= 0xe0 && Byte <= 0xef)
	{
		return {2, static_cast<uint8>(Byte == 0xe0 ? 0xa0 : 0x80), static_cast<uint8>(Byte == 0xed ? 0x9f : 0xbf)};
	}
	if (Byte >= 0xf0 && Byte <= 0xf4)
	{
		return {3, static_cast<uint8>(Byte == 0xf0 ? 0x90 : 0x80), static_cast<uint8>(Byte == 0xf4 ? 0x8f : 0xbf)};
	}
	return {};
}

/// Reads one code point and moves `Index` behind what it took: a whole sequence, or the longest piece that could have
/// begun one, or a single byte.
TCHAR DecodeOne(std::string_view Utf8, std::size_t& Index)
{
	const uint8 Lead = static_cast<uint8>(Utf8[Index++]);
	FLeadByte Kind = ClassifyLead(Lead);
	if (Kind.Continuations <= 0)
	{
		return Kind.Continuations == 0 ? static_cast<TCHAR>(Lead) : ReplacementCharacter;
	}
	uint32 Code = Lead & (0x3fU >> Kind.Continuations);
	for (int32 Left = Kind.Continuations; Left > 0; --Left, ++Index)
	{
		const uint8 Byte = Index < Utf8.size() ? static_cast<uint8>(Utf8[Index]) : uint8{0};
		if (Byte < Kind.Low || Byte > Kind.High)
		{
			return ReplacementCharacter;
		}
		Code = (Code << 6) | (Byte & 0x3fU);
		Kind.Low = 0x80;
		Kind.High = 0xbf;
	}
	return static_cast<TCHAR>(Code);
}

void AppendUtf8(std::string& Out, uint32 Code)
{
	const auto Put = [&Out](uint32 Byte) { Out.push_back(static_cast<char>(static_cast<uint8>(Byte))); };
	if (Code < 0x80)
	{
		Put(Code);
		return;
	}
	const int32 Continuations = Code < 0x800 ? 1 : Code < 0x10000 ? 2 : 3;
	// As many one bits as there are bytes, then a zero bit, then the highest bits of the code point.
	Put((0xff80U >> Continuations & 0xffU) | (Code >> (6 * Continuations)));
	for (int32 Left = Continuations - 1; Left >= 0; --Left)
	{
		Put(0x80U | (Code >> (6 * Left) & 0x3fU));
	}
}

/// The text as single bytes, for parsing; false if it holds anything that no number does.
bool NarrowNumber(FStringView Text, std::string& Out)
{
	Out.reserve(Text.size());
	for (const TCHAR Character : Text)
	{
		if (Character <= L' ' || Character > L'~')
		{
			return false;
		}
		Out.push_back(static_cast<char>(Character));
	}
	return true;
}

template <typename NumberType>
bool ParseWhole(NumberType& OutValue, FStringView Text)
{
	std::string Narrow;
	if (!NarrowNumber(Text, Narrow))
	{
		return false;
	}
	NumberType Value{};
	const char* End = Narrow.data() + Narrow.size();
	const std::from_chars_result Result = std::from_chars(Narrow.data(), End, Value);
	if (Result.ec != std::errc() || Result.ptr != End)
	{
		return false;
	}
	OutValue = Value;
	return true;
}
}

FString FString::FromUtf8(std::string_view Utf8)
{
	FString Result;
	Result.Text.reserve(Utf8.size());
	for (std::size_t Index = 0; Index < Utf8.size();)
	{
		Result.Text.push_back(DecodeOne(Utf8, Index));
	}
	return Result;
}

std::string FString::ToUtf8() const
{
	std::string Result;
	Result.reserve(Text.size());
	for (const TCHAR Character : Text)
	{
		const uint32 Code = static_cast<uint32>(Character);
		AppendUtf8(Result, IsScalarValue(Code) ? Code : static_cast<uint32>(ReplacementCharacter));
	}
	return Result;
}

bool LexFromString(double& OutValue, FStringView Text)
{
	return ParseWhole(OutValue, Text);
}

bool LexFromString(int32& OutValue, FStringView Text)
{
	return ParseWhole(OutValue, Text);
}
