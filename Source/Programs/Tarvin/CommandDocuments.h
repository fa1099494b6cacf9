// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace CLI
{
class App;
}

/// Documents made from the command line's own description, so that they cannot say anything else.
namespace CommandDocuments
{
/// The manual page, in the man macros.
std::string ManPage(const CLI::App& App);
} // namespace CommandDocuments
