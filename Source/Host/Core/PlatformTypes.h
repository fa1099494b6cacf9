// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

using int8 = std::int8_t;
using int16 = std::int16_t;
using int32 = std::int32_t;
using int64 = std::int64_t;
using uint8 = std::uint8_t;
using uint16 = std::uint16_t;
using uint32 = std::uint32_t;
using uint64 = std::uint64_t;

/// One character of host text: a UTF-32 code point on this platform.
using TCHAR = wchar_t;

#define HOST_PASTE_WIDE(Literal) L##Literal

/// Turns a narrow literal into a literal of `TCHAR`.
#define TEXT(Literal) HOST_PASTE_WIDE(Literal)

/// What searches answer when nothing was found.
inline constexpr int32 INDEX_NONE = -1;
