// SPDX-License-Identifier: MIT
#include "Slate/UserChordsFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr const TCHAR* Header = TEXT("tarvin key chords 1");
constexpr const TCHAR* NoChord = TEXT("none");

// Far more than all chords of any user take; more is not a file of ours.
constexpr std::uintmax_t MaxFileSize = 1024 * 1024;

const TCHAR* NameOf(EMultipleKeyBindingIndex Index)
{
	return Index == EMultipleKeyBindingIndex::Primary ? TEXT("primary") : TEXT("secondary");
}

FString Escaped(const FString& Field)
{
	return Field.Replace(TEXT("\\"), TEXT("\\\\")).Replace(TEXT("\t"), TEXT("\\t")).Replace(TEXT("\n"), TEXT("\\n"));
}

bool Unescape(const FString& Field, FString& OutText)
{
	FString Text;
	for (int32 Index = 0; Index < Field.Len(); ++Index)
	{
		TCHAR Character = Field[Index];
		if (Character == TEXT('\\'))
		{
			const TCHAR Code = ++Index < Field.Len() ? Field[Index] : TEXT('\0');
			if (Code != TEXT('\\') && Code != TEXT('t') && Code != TEXT('n'))
			{
				return false;
			}
			Character = Code == TEXT('t') ? TEXT('\t') : Code == TEXT('n') ? TEXT('\n') : TEXT('\\');
		}
		Text += Character;
	}
	OutText = Text;
	return true;
}

bool ParseIndex(const FString& Text, EMultipleKeyBindingIndex& OutIndex)
{
	for (const EMultipleKeyBindingIndex Index :
		{EMultipleKeyBindingIndex::Primary, EMultipleKeyBindingIndex::Secondary})
	{
		if (Text == NameOf(Index))
		{
			OutIndex = Index;
			return true;
		}
	}
	return false;
}

/// Reads one line into `OutChords`; what is wrong with it, if anything.
std::optional<FString> ParseLine(const FString& Line, FUserChords& OutChords)
{
	TArray<FString> Fields;
	FUserChordKey Key;
	FInputChord Chord;
	if (Line.ParseIntoArray(Fields, TEXT("\t"), false) != 4)
	{
		return FString(TEXT("four fields were expected"));
	}
	if (!Unescape(Fields[0], Key.Context) || !Unescape(Fields[1], Key.Command))
	{
		return FString(TEXT("a name has an unknown escape"));
	}
	if (!ParseIndex(Fields[2], Key.Index))
	{
		return FString(TEXT("'primary' or 'secondary' was expected"));
	}
	const bool bIsChord = FInputChord::FromString(Fields[3], Chord) && Chord.IsValidChord();
	if (!bIsChord && !(Fields[3] == NoChord))
	{
		return FString(TEXT("there is no such chord"));
	}
	if (!OutChords.emplace(Key, Chord).second)
	{
		return FString(TEXT("the chord is given twice"));
	}
	return {};
}

std::optional<FString> ParseText(const std::string& Utf8, FUserChords& OutChords)
{
	const FString Text = FString::FromUtf8(Utf8);
	if (Text.Contains(TEXT("\xFFFD")))
	{
		return FString(TEXT("it is not UTF-8 text"));
	}
	TArray<FString> Lines;
	Text.ParseIntoArray(Lines, TEXT("\n"), false);
	if (Lines.IsEmpty() || !(Lines[0] == Header))
	{
		return FString::Printf(TEXT("line 1: '%s' was expected"), Header);
	}
	for (int32 Index = 1; Index < Lines.Num(); ++Index)
	{
		if (Lines[Index].IsEmpty())
		{
			continue;
		}
		if (const std::optional<FString> Problem = ParseLine(Lines[Index], OutChords))
		{
			return FString::Printf(TEXT("line %d: %s"), Index + 1, **Problem);
		}
	}
	return {};
}

std::string FormatText(const FUserChords& Chords)
{
	FString Text = FString(Header) + TEXT("\n");
	for (const auto& [Key, Chord] : Chords)
	{
		const FString Value = Chord.IsValidChord() ? Chord.ToString() : FString(NoChord);
		Text += FString::Printf(
			TEXT("%s\t%s\t%s\t%s\n"), *Escaped(Key.Context), *Escaped(Key.Command), NameOf(Key.Index), *Value);
	}
	return Text.ToUtf8();
}

FString SystemProblem(int Error)
{
	return FString::FromUtf8(std::strerror(Error));
}

/// A file being written under a name of its own, removed unless it was renamed to its target.
class FNewFile
{
public:
	explicit FNewFile(const std::string& Target)
		: Name(Target + ".XXXXXX")
		, Descriptor(::mkstemp(Name.data()))
	{
	}
	~FNewFile()
	{
		if (Descriptor >= 0)
		{
			::close(Descriptor);
			::unlink(Name.c_str());
		}
	}
	FNewFile(const FNewFile&) = delete;
	FNewFile& operator=(const FNewFile&) = delete;

	bool WriteAndRename(const std::string& Bytes, const std::string& Target)
	{
		if (Descriptor < 0)
		{
			return false;
		}
		std::size_t Written = 0;
		while (Written < Bytes.size())
		{
			const ssize_t Count = ::write(Descriptor, Bytes.data() + Written, Bytes.size() - Written);
			if (Count < 0 && errno != EINTR)
			{
				return false;
			}
			Written += Count > 0 ? static_cast<std::size_t>(Count) : 0;
		}
		if (::fsync(Descriptor) != 0 || ::rename(Name.c_str(), Target.c_str()) != 0)
		{
			return false;
		}
		::close(std::exchange(Descriptor, -1));
		return true;
	}

private:
	std::string Name;
	int Descriptor;
};
}

bool FUserChordKey::operator<(const FUserChordKey& Other) const
{
	return std::tie(Context, Command, Index) < std::tie(Other.Context, Other.Command, Other.Index);
}

UserChordsFile::EState UserChordsFile::Read(const std::string& Path, FUserChords& OutChords, FString& OutProblem)
{
	std::error_code Error;
	const std::filesystem::file_status Status = std::filesystem::status(Path, Error);
	if (Status.type() == std::filesystem::file_type::not_found)
	{
		return EState::Missing;
	}
	if (Status.type() != std::filesystem::file_type::regular || std::filesystem::file_size(Path, Error) > MaxFileSize)
	{
		OutProblem = TEXT("it is no plain file of at most 1 MB");
		return EState::Broken;
	}
	std::ifstream File(Path, std::ios::binary);
	const std::string Bytes{std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>()};
	if (!File)
	{
		OutProblem = SystemProblem(errno);
		return EState::Broken;
	}
	FUserChords Chords;
	if (const std::optional<FString> Problem = ParseText(Bytes, Chords))
	{
		OutProblem = *Problem;
		return EState::Broken;
	}
	OutChords = std::move(Chords);
	return EState::Read;
}

std::optional<FString> UserChordsFile::Write(const std::string& Path, const FUserChords& Chords)
{
	std::error_code Error;
	// A link is followed, so that the file it points at is replaced and not the link.
	const std::filesystem::path Resolved = std::filesystem::weakly_canonical(Path, Error);
	const std::filesystem::path Target = Error ? std::filesystem::path(Path) : Resolved;
	std::filesystem::create_directories(Target.parent_path(), Error);
	if (Error)
	{
		return FString::FromUtf8(Error.message());
	}
	FNewFile NewFile(Target);
	if (!NewFile.WriteAndRename(FormatText(Chords), Target))
	{
		return SystemProblem(errno);
	}
	return {};
}

std::string UserChordsFile::KeepAside(const std::string& Path)
{
	std::string Name = Path + ".broken";
	std::error_code Error;
	for (int Number = 2; std::filesystem::exists(std::filesystem::symlink_status(Name, Error)); ++Number)
	{
		Name = Path + ".broken-" + std::to_string(Number);
	}
	std::filesystem::rename(Path, Name, Error);
	return Error ? std::string() : Name;
}
