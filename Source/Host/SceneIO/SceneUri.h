// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/SceneResult.h"

#include <string>
#include <string_view>

/// URIs as scenes use them: embedded data, or a file below the scene's folder.
namespace SceneUri
{
enum class EKind
{
	Data,     ///< "data:…"
	Relative, ///< a path relative to the scene's folder
	Refused,  ///< absolute or remote, or leading out of the scene's folder
};

/// What a URI names.
struct FTarget
{
	EKind Kind = EKind::Refused;
	std::string Path;         ///< Relative: percent-decoded, "." and ".." resolved, no leading slash, never empty
	std::string_view Payload; ///< Data: what follows the comma; a view into the URI
	bool bBase64 = false;     ///< Data: whether the payload is base64 (else percent-encoded text)
	std::string Why;          ///< Refused: the rest of a sentence ("is absolute", …)
};

/// Takes `Uri` apart. Backslashes and drive letters are taken for what other systems would do with them, and refused.
FTarget Parse(std::string_view Uri);

/// Percent-encodes a relative path so that Parse gives it back.
std::string FromPath(std::string_view Path);
}
