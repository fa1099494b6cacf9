// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// JSON tokens. Numbers are written with the fewest digits that read back as the same value, whatever the C locale;
/// they must be finite.
namespace JsonWrite
{
std::string Number(double Value);
/// The fewest digits that read back as the same single-precision value.
std::string Number(float Value);
std::string Integer(std::uint64_t Value);
/// A quoted string; what JSON does not allow in one is escaped.
std::string String(std::string_view Utf8);
std::string Array(std::span<const double> Values);
std::string Array(std::span<const float> Values);
/// An array of indices, none of them negative.
std::string Indices(std::span<const std::int32_t> Values);
}
