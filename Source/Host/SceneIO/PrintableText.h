// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/// `Text` fit for one line of a terminal: control characters and bytes that are no UTF-8 are written as `\xNN`, and
/// what is longer than `MaxBytes` is cut, with an ellipsis.
std::string PrintableText(std::string_view Text, std::size_t MaxBytes = 200);
