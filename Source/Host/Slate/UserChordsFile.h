// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/InputChord.h"
#include "Slate/UICommandInfo.h"

#include <map>
#include <optional>
#include <string>
#include <tuple>

/// Names one chord of one command.
struct FUserChordKey
{
	FString Context;
	FString Command;
	EMultipleKeyBindingIndex Index = EMultipleKeyBindingIndex::Primary;

	bool operator<(const FUserChordKey& Other) const;
};

/// The chords that a user changed, in the order in which the file lists them. An invalid chord is one taken away.
using FUserChords = std::map<FUserChordKey, FInputChord>;

/// The settings file of changed chords: UTF-8 text, a first line with its version, then one chord a line as context,
/// command, "primary" or "secondary", and the chord or "none", with a tab between them.
namespace UserChordsFile
{
/// What was found at a path.
enum class EState : uint8
{
	Missing,
	Read,
	Broken,
};

/// Reads a file. `OutChords` is filled for Read only; `OutProblem` says, for Broken, what is wrong and in which line.
EState Read(const std::string& Path, FUserChords& OutChords, FString& OutProblem);

/// Writes a complete file beside the old one and renames it over that, making folders as needed. The problem, if any;
/// the old file is then as it was.
std::optional<FString> Write(const std::string& Path, const FUserChords& Chords);

/// Renames a file to a free name beside it, `Path` + ".broken" first; that name, or empty if it could not be renamed.
std::string KeepAside(const std::string& Path);
} // namespace UserChordsFile
