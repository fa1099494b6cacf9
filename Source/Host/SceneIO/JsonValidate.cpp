// SPDX-License-Identifier: MIT
#include "SceneIO/JsonValidate.h"

#include "SceneIO/SceneLimits.h"

#include <charconv>
#include <cstring>
#include <simdjson.h>

namespace
{
bool IsDigit(char C)
{
	return C >= '0' && C <= '9';
}

bool IsNumberByte(char C)
{
	return IsDigit(C) || C == '+' || C == '-' || C == '.' || C == 'e' || C == 'E';
}

/// One past the digits that start at `At`.
const char* SkipDigits(const char* At, const char* Last)
{
	while (At != Last && IsDigit(*At))
	{
		++At;
	}
	return At;
}

/// The grammar of JSON numbers, without regard to their size.
bool IsJsonNumber(const char* At, const char* Last)
{
	At += At != Last && *At == '-' ? 1 : 0;
	if (At == Last || !IsDigit(*At))
	{
		return false;
	}
	At = *At == '0' ? At + 1 : SkipDigits(At, Last);
	if (At != Last && *At == '.')
	{
		const char* const Fraction = ++At;
		At = SkipDigits(At, Last);
		if (At == Fraction)
		{
			return false;
		}
	}
	if (At != Last && (*At == 'e' || *At == 'E'))
	{
		++At;
		At += At != Last && (*At == '+' || *At == '-') ? 1 : 0;
		const char* const Exponent = At;
		At = SkipDigits(At, Last);
		if (At == Exponent)
		{
			return false;
		}
	}
	return At == Last;
}

/// True for numbers that the parser refuses for their size though JSON allows them.
bool IsBeyondParser(const char* At, const char* Last)
{
	double Value = 0;
	const std::from_chars_result Result = std::from_chars(At, Last, Value);
	const bool bFraction = std::memchr(At, '.', static_cast<std::size_t>(Last - At)) != nullptr;
	return Result.ec == std::errc::result_out_of_range || (!bFraction && Last - At > 18);
}

/// A copy of the text in which every legal number that is too large for the parser is a zero followed by blanks.
std::string WithoutHugeNumbers(std::string_view Text)
{
	std::string Copy(Text);
	bool bInString = false;
	for (std::size_t I = 0; I < Copy.size(); ++I)
	{
		if (bInString)
		{
			I += Copy[I] == '\\' ? 1u : 0u;
			bInString = I >= Copy.size() || Copy[I] != '"';
		}
		else if (Copy[I] == '"')
		{
			bInString = true;
		}
		else if (Copy[I] == '-' || IsDigit(Copy[I]))
		{
			std::size_t End = I;
			while (End < Copy.size() && IsNumberByte(Copy[End]))
			{
				++End;
			}
			char* const Number = Copy.data() + I;
			char* const Last = Copy.data() + End;
			if (IsJsonNumber(Number, Last) && IsBeyondParser(Number, Last))
			{
				std::memset(Number, ' ', End - I);
				*Number = '0';
			}
			I = End - 1;
		}
	}
	return Copy;
}

simdjson::error_code Parse(const std::string& Padded, std::size_t Begin, std::size_t End)
{
	simdjson::dom::parser Parser;
	return Parser.parse(Padded.data() + Begin, End - Begin, false).error();
}
}

std::optional<std::string> ValidateJson(std::string& Text, std::size_t Begin, std::size_t End)
{
	Text.reserve(Text.size() + simdjson::SIMDJSON_PADDING);
	simdjson::error_code Error = Parse(Text, Begin, End);
	if (Error == simdjson::NUMBER_ERROR)
	{
		std::string Copy = WithoutHugeNumbers(std::string_view(Text).substr(Begin, End - Begin));
		const std::size_t Length = Copy.size();
		Copy.reserve(Length + simdjson::SIMDJSON_PADDING);
		Error = Parse(Copy, 0, Length);
	}
	switch (Error)
	{
	case simdjson::SUCCESS:
		return std::nullopt;
	case simdjson::EMPTY:
		return "holds no JSON at all";
	case simdjson::DEPTH_ERROR:
		return "nests arrays and objects more than " + std::to_string(SceneLimits::MaxJsonDepth) + " levels deep";
	case simdjson::UTF8_ERROR:
		return "is not valid UTF-8";
	case simdjson::UNCLOSED_STRING:
		return "is not valid JSON (a string is not closed)";
	case simdjson::NUMBER_ERROR:
		return "is not valid JSON (a number is malformed)";
	case simdjson::STRING_ERROR:
		return "is not valid JSON (a string has a malformed escape)";
	case simdjson::UNESCAPED_CHARS:
		return "is not valid JSON (a string holds an unescaped control character)";
	case simdjson::MEMALLOC:
		return "is too large for the memory at hand";
	default:
		return "is not valid JSON (brackets, commas or words are not where they belong)";
	}
}
