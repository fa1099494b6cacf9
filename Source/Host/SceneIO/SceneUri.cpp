// SPDX-License-Identifier: MIT
#include "SceneIO/SceneUri.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace
{
int HexDigit(char C)
{
	return C >= '0' && C <= '9'   ? C - '0'
		   : C >= 'a' && C <= 'f' ? C - 'a' + 10
		   : C >= 'A' && C <= 'F' ? C - 'A' + 10
								  : -1;
}

bool IsLetter(char C)
{
	return (C >= 'a' && C <= 'z') || (C >= 'A' && C <= 'Z');
}

bool IsDigit(char C)
{
	return C >= '0' && C <= '9';
}

/// "http:", "file:", "C:" and the like: letters, digits, "+", "-" and "." up to a colon before any slash.
bool HasScheme(std::string_view Uri)
{
	const std::size_t Colon = Uri.find(':');
	if (Colon == std::string_view::npos || Colon == 0 || !IsLetter(Uri[0]))
	{
		return false;
	}
	for (const char C : Uri.substr(0, Colon))
	{
		if (!IsLetter(C) && !IsDigit(C) && C != '+' && C != '-' && C != '.')
		{
			return false;
		}
	}
	return true;
}

/// A "%" that is not followed by two hexadecimal digits stands for itself: exporters write raw file names.
std::string PercentDecoded(std::string_view Text)
{
	std::string Out;
	for (std::size_t I = 0; I < Text.size(); ++I)
	{
		const bool bEscape =
			Text[I] == '%' && I + 2 < Text.size() && HexDigit(Text[I + 1]) >= 0 && HexDigit(Text[I + 2]) >= 0;
		if (bEscape)
		{
			Out += static_cast<char>(HexDigit(Text[I + 1]) * 16 + HexDigit(Text[I + 2]));
			I += 2;
		}
		else
		{
			Out += Text[I];
		}
	}
	return Out;
}

/// The path with "." and ".." resolved; empty where it climbs above its start.
std::optional<std::string> Normalized(std::string_view Path)
{
	std::vector<std::string_view> Parts;
	while (!Path.empty())
	{
		const std::size_t Slash = Path.find('/');
		const std::string_view Part = Path.substr(0, Slash);
		Path.remove_prefix(Slash == std::string_view::npos ? Path.size() : Slash + 1);
		if (Part == "..")
		{
			if (Parts.empty())
			{
				return std::nullopt;
			}
			Parts.pop_back();
		}
		else if (!Part.empty() && Part != ".")
		{
			Parts.push_back(Part);
		}
	}
	std::string Out;
	for (const std::string_view Part : Parts)
	{
		Out += (Out.empty() ? "" : "/") + std::string(Part);
	}
	return Out;
}

SceneUri::FTarget ParseData(std::string_view Uri)
{
	SceneUri::FTarget Target;
	const std::size_t Comma = Uri.find(',');
	if (Comma == std::string_view::npos)
	{
		Target.Why = "is a data URI without data";
		return Target;
	}
	Target.Kind = SceneUri::EKind::Data;
	Target.Payload = Uri.substr(Comma + 1);
	Target.bBase64 = Uri.substr(0, Comma).ends_with(";base64");
	return Target;
}

SceneUri::FTarget Refused(const char* Why)
{
	SceneUri::FTarget Target;
	Target.Why = Why;
	return Target;
}
}

SceneUri::FTarget SceneUri::Parse(std::string_view Uri)
{
	if (Uri.starts_with("data:"))
	{
		return ParseData(Uri);
	}
	if (HasScheme(Uri))
	{
		return Refused("names a scheme or a drive; only files below the scene's folder are read");
	}
	std::string Path = PercentDecoded(Uri);
	if (Path.find('\0') != std::string::npos)
	{
		return Refused("holds a NUL character");
	}
	if (Path.starts_with('/') || Path.starts_with('\\'))
	{
		return Refused("is absolute; only files below the scene's folder are read");
	}
	if (Path.find('\\') != std::string::npos)
	{
		return Refused("holds a backslash; folders are separated by slashes");
	}
	std::optional<std::string> Inside = Normalized(Path);
	if (!Inside)
	{
		return Refused("leads out of the scene's folder");
	}
	if (Inside->empty())
	{
		return Refused("names no file");
	}
	FTarget Target;
	Target.Kind = EKind::Relative;
	Target.Path = std::move(*Inside);
	return Target;
}

std::string SceneUri::FromPath(std::string_view Path)
{
	constexpr std::string_view Plain = "-._~/!$&'()*+,;=@";
	constexpr char Digits[] = "0123456789ABCDEF";
	std::string Out;
	for (const char C : Path)
	{
		const auto Byte = static_cast<std::uint8_t>(C);
		// Other scripts stay readable: the standard allows them in references, and other tools write them so.
		if (IsLetter(C) || IsDigit(C) || Byte >= 0x80 || Plain.find(C) != std::string_view::npos)
		{
			Out += C;
		}
		else
		{
			Out += {'%', Digits[Byte >> 4], Digits[Byte & 15]};
		}
	}
	return Out;
}
