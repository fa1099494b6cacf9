// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

/// Sums and products of numbers that a file may have chosen; empty where 64 bits do not hold the result.
namespace CheckedMath
{
inline std::optional<std::uint64_t> Add(std::uint64_t A, std::uint64_t B)
{
	std::uint64_t Sum = 0;
	return __builtin_add_overflow(A, B, &Sum) ? std::nullopt : std::optional<std::uint64_t>(Sum);
}

inline std::optional<std::uint64_t> Multiply(std::uint64_t A, std::uint64_t B)
{
	std::uint64_t Product = 0;
	return __builtin_mul_overflow(A, B, &Product) ? std::nullopt : std::optional<std::uint64_t>(Product);
}

/// True when [Offset, Offset + Length) lies within [0, Size).
inline bool IsWithin(std::uint64_t Offset, std::uint64_t Length, std::uint64_t Size)
{
	return Offset <= Size && Length <= Size - Offset;
}

/// Bytes from the first byte of the first element to the last byte of the last; zero for no elements.
inline std::optional<std::uint64_t> StridedLength(std::uint64_t Count, std::uint64_t Stride, std::uint64_t ElementSize)
{
	if (Count == 0)
	{
		return 0;
	}
	const std::optional<std::uint64_t> Steps = Multiply(Count - 1, Stride);
	return Steps ? Add(*Steps, ElementSize) : std::nullopt;
}
}
