// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Base64 as in data URIs: the standard alphabet, padding optional at the end.
namespace Base64
{
/// How many bytes `Text` decodes to; empty where it is no base64. Looks at every character.
std::optional<std::size_t> DecodedSize(std::string_view Text);
std::optional<std::vector<std::byte>> Decode(std::string_view Text);
/// With padding.
std::string Encode(std::span<const std::byte> Bytes);
}
