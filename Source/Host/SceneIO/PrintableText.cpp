// SPDX-License-Identifier: MIT
#include "SceneIO/PrintableText.h"

#include <cstdint>

namespace
{
/// Length of the UTF-8 sequence that starts at `At`, or 0 where none does.
std::size_t SequenceLength(std::string_view Text, std::size_t At)
{
	const auto Byte = [&Text](std::size_t I) { return static_cast<std::uint8_t>(Text[I]); };
	const std::uint8_t Lead = Byte(At);
	const std::size_t Length = Lead < 0x80         ? 1
							   : (Lead >> 5) == 6  ? 2
							   : (Lead >> 4) == 14 ? 3
							   : (Lead >> 3) == 30 ? 4
												   : 0;
	if (Length == 0 || Length > Text.size() - At)
	{
		return 0;
	}
	std::uint32_t Code = Length == 1 ? Lead : Lead & (0x7Fu >> Length);
	for (std::size_t I = 1; I < Length; ++I)
	{
		if ((Byte(At + I) & 0xC0) != 0x80)
		{
			return 0;
		}
		Code = (Code << 6) | (Byte(At + I) & 0x3Fu);
	}
	constexpr std::uint32_t Smallest[] = {0, 0, 0x80, 0x800, 0x10000};
	const bool bSurrogate = Code >= 0xD800 && Code < 0xE000;
	return Code >= Smallest[Length] && Code <= 0x10FFFF && !bSurrogate ? Length : 0;
}

/// Control characters of both sets, and those that turn the direction of the text around them.
bool IsPrintable(std::string_view Sequence)
{
	const auto Byte = [&Sequence](std::size_t I) { return static_cast<std::uint8_t>(Sequence[I]); };
	if (Sequence.size() == 1)
	{
		return Byte(0) >= 0x20 && Byte(0) != 0x7F;
	}
	if (Sequence.size() == 2)
	{
		return !(Byte(0) == 0xC2 && Byte(1) < 0xA0);
	}
	if (Sequence.size() == 3 && Byte(0) == 0xE2)
	{
		const bool bLineBreak = Byte(1) == 0x80 && (Byte(2) == 0xA8 || Byte(2) == 0xA9);
		const bool bEmbedding = Byte(1) == 0x80 && Byte(2) >= 0xAA && Byte(2) <= 0xAE;
		const bool bIsolate = Byte(1) == 0x81 && Byte(2) >= 0xA6 && Byte(2) <= 0xA9;
		return !bLineBreak && !bEmbedding && !bIsolate;
	}
	return true;
}
}

std::string PrintableText(std::string_view Text, std::size_t MaxBytes)
{
	constexpr char Digits[] = "0123456789ABCDEF";
	std::string Out;
	std::size_t At = 0;
	while (At < Text.size())
	{
		if (Out.size() >= MaxBytes)
		{
			return Out + "…";
		}
		const std::size_t Length = SequenceLength(Text, At);
		const std::string_view Sequence = Text.substr(At, Length == 0 ? 1 : Length);
		if (Length != 0 && IsPrintable(Sequence))
		{
			Out += Sequence;
		}
		else
		{
			for (const char C : Sequence)
			{
				const auto Value = static_cast<std::uint8_t>(C);
				Out += {'\\', 'x', Digits[Value >> 4], Digits[Value & 15]};
			}
		}
		At += Sequence.size();
	}
	return Out;
}
