// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// Which extensions are understood, and how far.
namespace GltfExtensions
{
/// True for an extension that a file may list as required: it is read, or it says only how surfaces and light look and
/// is carried along unchanged.
bool CanBeRequired(std::string_view Name);

/// True for an extension whose objects are known to refer to no accessor and no buffer view, or whose references are
/// read. Numbers in any other extension are taken for possible references.
bool HasKnownReferences(std::string_view Name);
}
