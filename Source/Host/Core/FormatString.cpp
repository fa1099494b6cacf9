// SPDX-License-Identifier: MIT
#include "Core/FormatString.h"

#include "Core/Assertion.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

namespace
{
/// Digits of one conversion with the sign kept apart, because zero padding goes between the two.
struct FPieces
{
	std::wstring_view Sign;
	std::wstring Body;
	bool bMayZeroPad = true;
};

std::wstring Widen(const char* Begin, const char* End)
{
	return std::wstring(Begin, End);
}

std::wstring_view SignOf(bool bNegative, const FFormatConversion& Conversion)
{
	return bNegative ? L"-" : Conversion.bPlusSign ? L"+" : Conversion.bSpaceSign ? L" " : L"";
}

std::wstring Digits(uint64 Magnitude, int32 Base)
{
	char Buffer[std::numeric_limits<uint64>::digits10 + 2];
	const std::to_chars_result Result = std::to_chars(std::begin(Buffer), std::end(Buffer), Magnitude, Base);
	return Widen(Buffer, Result.ptr);
}

FPieces FormatSigned(const FFormatConversion& Conversion, int64 Value)
{
	// Negated as unsigned: the smallest number has no positive counterpart.
	const uint64 Magnitude = Value < 0 ? uint64{0} - static_cast<uint64>(Value) : static_cast<uint64>(Value);
	return {SignOf(Value < 0, Conversion), Digits(Magnitude, 10)};
}

FPieces FormatReal(const FFormatConversion& Conversion, double Value)
{
	const double Magnitude = std::fabs(Value);
	const std::wstring_view Sign = SignOf(std::signbit(Value), Conversion);
	if (!std::isfinite(Value))
	{
		return {Sign, std::isnan(Value) ? L"nan" : L"inf", false};
	}
	const std::chars_format Style = Conversion.Letter == L'f'   ? std::chars_format::fixed
									: Conversion.Letter == L'e' ? std::chars_format::scientific
																: std::chars_format::general;
	const int32 Precision = Conversion.Precision < 0 ? 6 : Conversion.Precision;
	// Room for every digit before the point, the point, and every digit behind it.
	char Buffer[std::numeric_limits<double>::max_exponent10 + FormatDetail::MaxFieldSize + 16];
	const std::to_chars_result Result =
		std::to_chars(std::begin(Buffer), std::end(Buffer), Magnitude, Style, Precision);
	check(Result.ec == std::errc());
	return {Sign, Widen(Buffer, Result.ptr)};
}

FPieces FormatText(const FFormatConversion& Conversion, const TCHAR* Text)
{
	const std::size_t Limit =
		Conversion.Precision < 0 ? std::wstring::npos : static_cast<std::size_t>(Conversion.Precision);
	const std::wstring_view Whole = Text != nullptr ? std::wstring_view(Text) : std::wstring_view(L"(null)");
	return {{}, std::wstring(Whole.substr(0, Limit)), false};
}

FPieces FormatOne(const FFormatConversion& Conversion, const FFormatArgument& Argument)
{
	switch (Argument.Kind)
	{
	case EFormatArgumentKind::Int32:
	case EFormatArgumentKind::Int64:
		return FormatSigned(Conversion, Argument.Signed);
	case EFormatArgumentKind::UInt32:
	case EFormatArgumentKind::UInt64:
		return {{}, Digits(Argument.Unsigned, Conversion.Letter == L'x' ? 16 : 10)};
	case EFormatArgumentKind::Real:
		return FormatReal(Conversion, Argument.Real);
	case EFormatArgumentKind::Character:
		return {{}, std::wstring(1, Argument.Character), false};
	case EFormatArgumentKind::String:
		return FormatText(Conversion, Argument.String);
	case EFormatArgumentKind::Unsupported:
		break;
	}
	ReportAssertionFailure("FormatOne", __FILE__, __LINE__, L"an argument has no kind");
}

void AppendPadded(std::wstring& Out, const FFormatConversion& Conversion, const FPieces& Pieces)
{
	const std::size_t Length = Pieces.Sign.size() + Pieces.Body.size();
	const std::size_t Padding =
		static_cast<std::size_t>(Conversion.Width) - std::min(Length, static_cast<std::size_t>(Conversion.Width));
	const bool bZeroPad = Conversion.bZeroPad && !Conversion.bLeftAlign && Pieces.bMayZeroPad;
	const bool bPadBefore = !Conversion.bLeftAlign && !bZeroPad;
	Out.append(bPadBefore ? Padding : 0, L' ');
	Out.append(Pieces.Sign);
	Out.append(bZeroPad ? Padding : 0, L'0');
	Out.append(Pieces.Body);
	Out.append(Conversion.bLeftAlign ? Padding : 0, L' ');
}
}

std::wstring FormatArguments(const TCHAR* Format, const FFormatArgument* Arguments, std::size_t Count)
{
	std::wstring Out;
	std::size_t Used = 0;
	while (*Format != 0)
	{
		if (*Format != L'%')
		{
			Out.push_back(*Format++);
			continue;
		}
		FFormatConversion Conversion;
		check(FormatDetail::ParseConversion(++Format, Conversion));
		if (Conversion.Letter == L'%')
		{
			Out.push_back(L'%');
			continue;
		}
		check(Used < Count);
		AppendPadded(Out, Conversion, FormatOne(Conversion, Arguments[Used++]));
	}
	return Out;
}
