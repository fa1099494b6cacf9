// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

namespace CLI
{
class App;
}

/// What can stand for a value on the command line.
struct FArgumentValue
{
	enum class EKind
	{
		Text, ///< nothing that a shell could know
		Words,
		File,
		Folder,
	};

	EKind Kind = EKind::Text;
	std::vector<std::string> Words;
};

/// What stands for the values of options ("--shared") and of positional arguments ("POSITION"); those not named are
/// text and files respectively.
using FArgumentValues = std::map<std::string, FArgumentValue>;

/// Completions for shells, made from the command line's own description, so that they cannot say anything else.
namespace CommandCompletions
{
std::string Bash(const CLI::App& App, const FArgumentValues& Values);
std::string Zsh(const CLI::App& App, const FArgumentValues& Values);
std::string Fish(const CLI::App& App, const FArgumentValues& Values);
} // namespace CommandCompletions
