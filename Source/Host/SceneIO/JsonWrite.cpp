// SPDX-License-Identifier: MIT
#include "SceneIO/JsonWrite.h"

#include <charconv>
#include <cstdint>

namespace
{
template <typename T>
std::string Shortest(T Value)
{
	char Digits[64];
	const std::to_chars_result Result = std::to_chars(Digits, Digits + sizeof(Digits), Value);
	return {Digits, Result.ptr};
}

template <typename T>
std::string ShortestArray(std::span<const T> Values)
{
	std::string Out = "[";
	for (const T Value : Values)
	{
		Out += Out.size() > 1 ? "," : "";
		Out += Shortest(Value);
	}
	return Out + "]";
}
}

std::string JsonWrite::Number(double Value)
{
	return Shortest(Value);
}

std::string JsonWrite::Number(float Value)
{
	return Shortest(Value);
}

std::string JsonWrite::Integer(std::uint64_t Value)
{
	return Shortest(Value);
}

std::string JsonWrite::String(std::string_view Utf8)
{
	constexpr char Digits[] = "0123456789abcdef";
	std::string Out = "\"";
	for (const char C : Utf8)
	{
		const auto Byte = static_cast<std::uint8_t>(C);
		if (C == '"' || C == '\\')
		{
			Out += {'\\', C};
		}
		else if (Byte < 0x20)
		{
			Out += {'\\', 'u', '0', '0', Digits[Byte >> 4], Digits[Byte & 15]};
		}
		else
		{
			Out += C;
		}
	}
	return Out + "\"";
}

std::string JsonWrite::Array(std::span<const double> Values)
{
	return ShortestArray(Values);
}

std::string JsonWrite::Array(std::span<const float> Values)
{
	return ShortestArray(Values);
}

std::string JsonWrite::Indices(std::span<const std::int32_t> Values)
{
	return ShortestArray(Values);
}
