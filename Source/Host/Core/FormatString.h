// SPDX-License-Identifier: MIT
#pragma once

#include "Core/PlatformTypes.h"

#include <array>
#include <string>
#include <type_traits>

/// What an argument of a printf-style call is, as far as its conversion cares.
enum class EFormatArgumentKind : uint8
{
	Unsupported, ///< no conversion takes it: booleans, enumerations, narrow text, objects
	Int32,       ///< signed, up to 32 bits: %d
	UInt32,      ///< unsigned, up to 32 bits: %u, %x
	Int64,       ///< signed, 64 bits: %lld
	UInt64,      ///< unsigned, 64 bits: %llu, %llx
	Real,        ///< float or double: %f, %e, %g
	Character,   ///< one TCHAR: %c
	String,      ///< zero-terminated TCHARs: %s
};

/// One argument, passed to the formatter by value; text is only pointed at.
struct FFormatArgument
{
	EFormatArgumentKind Kind = EFormatArgumentKind::Unsupported;
	union
	{
		int64 Signed = 0;
		uint64 Unsigned;
		double Real;
		TCHAR Character;
		const TCHAR* String;
	};
};

/// One parsed conversion: "%-08.3f" and the like.
struct FFormatConversion
{
	bool bLeftAlign = false;
	bool bZeroPad = false;
	bool bPlusSign = false;
	bool bSpaceSign = false;
	bool bLongLong = false;
	int32 Width = 0;
	int32 Precision = -1; ///< -1: none was written
	TCHAR Letter = 0;     ///< d u x f e g c s %
};

/// Why a format does not fit its arguments.
enum class EFormatProblem : uint8
{
	None,
	MalformedConversion,
	TooFewArguments,
	TooManyArguments,
	WrongArgumentType,
};

namespace FormatDetail
{
/// Widths and precisions beyond this are refused: they are slips, and the cap keeps results small.
inline constexpr int32 MaxFieldSize = 512;

constexpr bool ParseNumber(const TCHAR*& Cursor, int32& OutNumber)
{
	OutNumber = 0;
	for (; *Cursor >= L'0' && *Cursor <= L'9'; ++Cursor)
	{
		OutNumber = OutNumber * 10 + static_cast<int32>(*Cursor - L'0');
		if (OutNumber > MaxFieldSize)
		{
			return false;
		}
	}
	return true;
}

constexpr void ParseFlags(const TCHAR*& Cursor, FFormatConversion& Out)
{
	for (;; ++Cursor)
	{
		switch (*Cursor)
		{
		case L'-':
			Out.bLeftAlign = true;
			break;
		case L'0':
			Out.bZeroPad = true;
			break;
		case L'+':
			Out.bPlusSign = true;
			break;
		case L' ':
			Out.bSpaceSign = true;
			break;
		default:
			return;
		}
	}
}

constexpr bool IsRealLetter(TCHAR Letter)
{
	return Letter == L'f' || Letter == L'e' || Letter == L'g';
}

/// Whether the flags written make sense for the letter; what C leaves undefined is refused.
constexpr bool IsConsistent(const FFormatConversion& Conversion)
{
	const bool bReal = IsRealLetter(Conversion.Letter);
	const bool bInteger = Conversion.Letter == L'd' || Conversion.Letter == L'u' || Conversion.Letter == L'x';
	const bool bSigned = bReal || Conversion.Letter == L'd';
	return (!Conversion.bZeroPad || bReal || bInteger) && (!Conversion.bLongLong || bInteger) &&
		   ((!Conversion.bPlusSign && !Conversion.bSpaceSign) || bSigned) &&
		   (Conversion.Precision < 0 || bReal || Conversion.Letter == L's');
}

/// Parses what follows a '%' and moves `Cursor` behind it. False for anything the formatter does not know.
constexpr bool ParseConversion(const TCHAR*& Cursor, FFormatConversion& Out)
{
	Out = FFormatConversion{};
	if (*Cursor == L'%')
	{
		Out.Letter = *Cursor++;
		return true;
	}
	ParseFlags(Cursor, Out);
	if (!ParseNumber(Cursor, Out.Width))
	{
		return false;
	}
	if (*Cursor == L'.' && !ParseNumber(++Cursor, Out.Precision))
	{
		return false;
	}
	if (Cursor[0] == L'l' && Cursor[1] == L'l')
	{
		Out.bLongLong = true;
		Cursor += 2;
	}
	switch (*Cursor)
	{
	case L'd':
	case L'u':
	case L'x':
	case L'f':
	case L'e':
	case L'g':
	case L'c':
	case L's':
		Out.Letter = *Cursor++;
		return IsConsistent(Out);
	default:
		return false;
	}
}

constexpr EFormatArgumentKind WantedKind(const FFormatConversion& Conversion)
{
	switch (Conversion.Letter)
	{
	case L'd':
		return Conversion.bLongLong ? EFormatArgumentKind::Int64 : EFormatArgumentKind::Int32;
	case L'u':
	case L'x':
		return Conversion.bLongLong ? EFormatArgumentKind::UInt64 : EFormatArgumentKind::UInt32;
	case L'c':
		return EFormatArgumentKind::Character;
	case L's':
		return EFormatArgumentKind::String;
	default:
		return EFormatArgumentKind::Real;
	}
}

template <typename ArgumentType>
constexpr EFormatArgumentKind KindOf()
{
	using FPlain = std::remove_cv_t<ArgumentType>;
	using FDecayed = std::decay_t<ArgumentType>;
	if constexpr (std::is_same_v<FPlain, TCHAR>)
	{
		return EFormatArgumentKind::Character;
	}
	else if constexpr (std::is_same_v<FDecayed, const TCHAR*> || std::is_same_v<FDecayed, TCHAR*>)
	{
		return EFormatArgumentKind::String;
	}
	else if constexpr (std::is_same_v<FPlain, double> || std::is_same_v<FPlain, float>)
	{
		return EFormatArgumentKind::Real;
	}
	else if constexpr (std::is_same_v<FPlain, bool> || std::is_same_v<FPlain, char> ||
					   std::is_same_v<FPlain, char8_t> || std::is_same_v<FPlain, char16_t> ||
					   std::is_same_v<FPlain, char32_t> || !std::is_integral_v<FPlain>)
	{
		return EFormatArgumentKind::Unsupported;
	}
	else if constexpr (sizeof(FPlain) <= sizeof(int32))
	{
		return std::is_signed_v<FPlain> ? EFormatArgumentKind::Int32 : EFormatArgumentKind::UInt32;
	}
	else
	{
		return std::is_signed_v<FPlain> ? EFormatArgumentKind::Int64 : EFormatArgumentKind::UInt64;
	}
}

template <typename ArgumentType>
FFormatArgument MakeArgument(const ArgumentType& Value)
{
	FFormatArgument Argument;
	Argument.Kind = KindOf<ArgumentType>();
	if constexpr (KindOf<ArgumentType>() == EFormatArgumentKind::String)
	{
		Argument.String = Value;
	}
	else if constexpr (KindOf<ArgumentType>() == EFormatArgumentKind::Character)
	{
		Argument.Character = Value;
	}
	else if constexpr (KindOf<ArgumentType>() == EFormatArgumentKind::Real)
	{
		Argument.Real = static_cast<double>(Value);
	}
	else if constexpr (std::is_signed_v<ArgumentType>)
	{
		Argument.Signed = Value;
	}
	else
	{
		Argument.Unsigned = Value;
	}
	return Argument;
}

// Never defined as constant expressions: a compiler that has to call one of these while it checks a
// format stops with the function's name in its message.
void TheFormatHasAMalformedConversion();
void TheFormatNeedsMoreArguments();
void TheFormatDoesNotUseAllArguments();
void AnArgumentDoesNotFitItsConversion();
}

/// Compares a printf-style format with the kinds of its arguments.
constexpr EFormatProblem CheckFormat(const TCHAR* Format, const EFormatArgumentKind* Kinds, std::size_t Count)
{
	std::size_t Used = 0;
	while (*Format != 0)
	{
		if (*Format++ != L'%')
		{
			continue;
		}
		FFormatConversion Conversion;
		if (!FormatDetail::ParseConversion(Format, Conversion))
		{
			return EFormatProblem::MalformedConversion;
		}
		if (Conversion.Letter == L'%')
		{
			continue;
		}
		if (Used == Count)
		{
			return EFormatProblem::TooFewArguments;
		}
		if (Kinds[Used++] != FormatDetail::WantedKind(Conversion))
		{
			return EFormatProblem::WrongArgumentType;
		}
	}
	return Used == Count ? EFormatProblem::None : EFormatProblem::TooManyArguments;
}

/// A literal that has been checked against `ArgumentTypes` while compiling; one that does not fit does not compile.
template <typename... ArgumentTypes>
class TCheckedFormat
{
public:
	consteval TCheckedFormat(const TCHAR* Literal)
		: Text(Literal)
	{
		constexpr std::array<EFormatArgumentKind, sizeof...(ArgumentTypes)> Kinds{
			FormatDetail::KindOf<ArgumentTypes>()...};
		switch (CheckFormat(Literal, Kinds.data(), Kinds.size()))
		{
		case EFormatProblem::MalformedConversion:
			FormatDetail::TheFormatHasAMalformedConversion();
			break;
		case EFormatProblem::TooFewArguments:
			FormatDetail::TheFormatNeedsMoreArguments();
			break;
		case EFormatProblem::TooManyArguments:
			FormatDetail::TheFormatDoesNotUseAllArguments();
			break;
		case EFormatProblem::WrongArgumentType:
			FormatDetail::AnArgumentDoesNotFitItsConversion();
			break;
		case EFormatProblem::None:
			break;
		}
	}

	const TCHAR* Get() const { return Text; }

private:
	const TCHAR* Text;
};

/// Formats a checked format. Independent of the C locale and of every `std::locale`.
std::wstring FormatArguments(const TCHAR* Format, const FFormatArgument* Arguments, std::size_t Count);

/// Formats `Arguments` by a literal that was checked against them while compiling.
template <typename... ArgumentTypes>
std::wstring FormatWide(
	TCheckedFormat<std::type_identity_t<ArgumentTypes>...> Format, const ArgumentTypes&... Arguments)
{
	const std::array<FFormatArgument, sizeof...(ArgumentTypes)> Packed{FormatDetail::MakeArgument(Arguments)...};
	return FormatArguments(Format.Get(), Packed.data(), Packed.size());
}
