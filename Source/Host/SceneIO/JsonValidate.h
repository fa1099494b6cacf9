// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

/// Why `Text` between `Begin` and `End` is no valid JSON, as the rest of a sentence ("is not …"); empty where it is
/// valid. The string's storage is grown, its content stays as it is.
std::optional<std::string> ValidateJson(std::string& Text, std::size_t Begin, std::size_t End);
