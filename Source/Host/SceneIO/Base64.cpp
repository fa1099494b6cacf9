// SPDX-License-Identifier: MIT
#include "SceneIO/Base64.h"

#include <array>
#include <cstdint>

namespace
{
constexpr char Alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t NoDigit = 0xFF;

constexpr std::array<std::uint8_t, 256> MakeDigits()
{
	std::array<std::uint8_t, 256> Digits{};
	Digits.fill(NoDigit);
	for (std::uint8_t I = 0; I < 64; ++I)
	{
		Digits[static_cast<std::uint8_t>(Alphabet[I])] = I;
	}
	return Digits;
}

constexpr std::array<std::uint8_t, 256> Digits = MakeDigits();

std::string_view WithoutPadding(std::string_view Text)
{
	for (int I = 0; I < 2 && Text.ends_with('='); ++I)
	{
		Text.remove_suffix(1);
	}
	return Text;
}

std::uint32_t Digit(char C)
{
	return Digits[static_cast<std::uint8_t>(C)];
}
}

std::optional<std::size_t> Base64::DecodedSize(std::string_view Text)
{
	const std::string_view Content = WithoutPadding(Text);
	const bool bPadded = Content.size() != Text.size();
	if (Content.size() % 4 == 1 || (bPadded && Text.size() % 4 != 0))
	{
		return std::nullopt;
	}
	for (const char C : Content)
	{
		if (Digit(C) == NoDigit)
		{
			return std::nullopt;
		}
	}
	return Content.size() / 4 * 3 + Content.size() % 4 * 3 / 4;
}

std::optional<std::vector<std::byte>> Base64::Decode(std::string_view Text)
{
	const std::optional<std::size_t> Size = DecodedSize(Text);
	if (!Size)
	{
		return std::nullopt;
	}
	std::vector<std::byte> Out;
	Out.reserve(*Size);
	std::uint32_t Bits = 0;
	unsigned BitCount = 0;
	for (const char C : WithoutPadding(Text))
	{
		Bits = (Bits << 6) | Digit(C);
		BitCount += 6;
		if (BitCount >= 8)
		{
			BitCount -= 8;
			Out.push_back(static_cast<std::byte>((Bits >> BitCount) & 0xFF));
		}
	}
	return Out;
}

std::string Base64::Encode(std::span<const std::byte> Bytes)
{
	std::string Out;
	Out.reserve((Bytes.size() + 2) / 3 * 4);
	for (std::size_t I = 0; I < Bytes.size(); I += 3)
	{
		const std::size_t Left = Bytes.size() - I;
		const auto Byte = [&](std::size_t K) { return K < Left ? static_cast<std::uint32_t>(Bytes[I + K]) : 0u; };
		const std::uint32_t Bits = (Byte(0) << 16) | (Byte(1) << 8) | Byte(2);
		Out += Alphabet[(Bits >> 18) & 63];
		Out += Alphabet[(Bits >> 12) & 63];
		Out += Left > 1 ? Alphabet[(Bits >> 6) & 63] : '=';
		Out += Left > 2 ? Alphabet[Bits & 63] : '=';
	}
	return Out;
}
