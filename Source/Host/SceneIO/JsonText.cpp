// SPDX-License-Identifier: MIT
#include "SceneIO/JsonText.h"

#include "SceneIO/JsonScanner.h"
#include "SceneIO/JsonValidate.h"
#include "SceneIO/PrintableText.h"
#include "SceneIO/SceneLimits.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace
{
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

/// Keys rarely hold escapes; where they do not, the bytes between the quotes are the key.
bool HasEscape(std::string_view RawString)
{
	return RawString.find('\\') != std::string_view::npos;
}

std::string_view WithoutQuotes(std::string_view RawString)
{
	return RawString.substr(1, RawString.size() - 2);
}

void AppendUtf8(std::string& Out, std::uint32_t Code)
{
	const auto Append = [&Out](std::uint32_t Byte) { Out += static_cast<char>(Byte); };
	if (Code < 0x80)
	{
		Append(Code);
	}
	else if (Code < 0x800)
	{
		Append(0xC0 | (Code >> 6));
		Append(0x80 | (Code & 0x3F));
	}
	else if (Code < 0x10000)
	{
		Append(0xE0 | (Code >> 12));
		Append(0x80 | ((Code >> 6) & 0x3F));
		Append(0x80 | (Code & 0x3F));
	}
	else
	{
		Append(0xF0 | (Code >> 18));
		Append(0x80 | ((Code >> 12) & 0x3F));
		Append(0x80 | ((Code >> 6) & 0x3F));
		Append(0x80 | (Code & 0x3F));
	}
}

/// The four hexadecimal digits at `At`; the text is valid, so they are there.
std::uint32_t Hex4(std::string_view Text, std::size_t At)
{
	std::uint32_t Code = 0;
	std::from_chars(Text.data() + At, Text.data() + std::min(At + 4, Text.size()), Code, 16);
	return Code;
}

/// Appends what the escape at `At` (just after the backslash) stands for, and returns the place after it.
std::size_t AppendEscape(std::string& Out, std::string_view Text, std::size_t At)
{
	switch (Text[At])
	{
	case 'b':
		Out += '\b';
		return At + 1;
	case 'f':
		Out += '\f';
		return At + 1;
	case 'n':
		Out += '\n';
		return At + 1;
	case 'r':
		Out += '\r';
		return At + 1;
	case 't':
		Out += '\t';
		return At + 1;
	case 'u':
		break;
	default:
		Out += Text[At];
		return At + 1;
	}
	std::uint32_t Code = Hex4(Text, At + 1);
	At += 5;
	if (Code >= 0xD800 && Code < 0xDC00 && At + 6 <= Text.size() && Text[At] == '\\' && Text[At + 1] == 'u')
	{
		const std::uint32_t Low = Hex4(Text, At + 2);
		if (Low >= 0xDC00 && Low < 0xE000)
		{
			AppendUtf8(Out, 0x10000 + ((Code - 0xD800) << 10) + (Low - 0xDC00));
			return At + 6;
		}
	}
	constexpr std::uint32_t Replacement = 0xFFFD;
	AppendUtf8(Out, Code >= 0xD800 && Code < 0xE000 ? Replacement : Code);
	return At;
}

std::string Unescaped(std::string_view Text)
{
	if (!HasEscape(Text))
	{
		return std::string(Text);
	}
	std::string Out;
	Out.reserve(Text.size());
	std::size_t At = 0;
	while (At < Text.size())
	{
		if (Text[At] != '\\' || At + 1 >= Text.size())
		{
			Out += Text[At++];
			continue;
		}
		At = AppendEscape(Out, Text, At + 1);
	}
	return Out;
}
}

TSceneResult<FJsonText> FJsonText::Parse(std::string Text, const std::string& FileName)
{
	const auto Refuse = [&FileName](const std::string& Why)
	{ return FSceneError{"Cannot read \"" + PrintableText(FileName) + "\": its JSON text " + Why + "."}; };

	if (Text.size() > SceneLimits::MaxJsonBytes)
	{
		return Refuse("is larger than " + std::to_string(SceneLimits::MaxJsonBytes / SceneLimits::MiB) + " MiB");
	}
	const std::size_t Begin = Text.starts_with(ByteOrderMark) ? ByteOrderMark.size() : 0;
	// Some exporters pad the JSON chunk of a binary file with NULs in place of spaces.
	std::size_t Last = Text.size();
	while (Last > Begin && Text[Last - 1] == '\0')
	{
		--Last;
	}
	if (const std::optional<std::string> Why = ValidateJson(Text, Begin, Last))
	{
		return Refuse(*Why);
	}

	FJsonText Json;
	Json.Source = std::move(Text);
	const std::string_view Valid = std::string_view(Json.Source).substr(Begin, Last - Begin);
	// One value takes two bytes at the least, and far more on average.
	Json.Entries.reserve(Valid.size() / 16);
	if (!FJsonScanner(Json, Valid).Run())
	{
		return Refuse("is not valid JSON");
	}
	return Json;
}

std::string_view FJsonText::Raw(FJsonIndex Value) const
{
	const FEntry& Entry = Entries[Value];
	return std::string_view(Source).substr(Entry.Begin, Entry.End - Entry.Begin);
}

FJsonIndex FJsonText::Find(FJsonIndex Object, std::string_view Key) const
{
	if (!IsObject(Object))
	{
		return NoJson;
	}
	const FJsonIndex Last = Entries[Object].Next;
	for (FJsonIndex Member = Object + 1; Member < Last; Member = Entries[Member + 1].Next)
	{
		if (StringEquals(Member, Key))
		{
			return Member + 1;
		}
	}
	return NoJson;
}

std::vector<FJsonMember> FJsonText::Members(FJsonIndex Object) const
{
	std::vector<FJsonMember> Out;
	if (IsObject(Object))
	{
		Out.reserve(Count(Object));
		for (FJsonIndex Member = Object + 1; Member < Entries[Object].Next; Member = Entries[Member + 1].Next)
		{
			Out.push_back({Member, Member + 1});
		}
	}
	return Out;
}

std::vector<FJsonIndex> FJsonText::Elements(FJsonIndex Array) const
{
	std::vector<FJsonIndex> Out;
	if (IsArray(Array))
	{
		Out.reserve(Count(Array));
		for (FJsonIndex Element = Array + 1; Element < Entries[Array].Next; Element = Entries[Element].Next)
		{
			Out.push_back(Element);
		}
	}
	return Out;
}

std::optional<FJsonIndex> FJsonText::DuplicateKey(FJsonIndex Object) const
{
	if (!IsObject(Object) || Count(Object) < 2)
	{
		return std::nullopt;
	}
	constexpr std::uint32_t FewMembers = 12;
	if (Count(Object) <= FewMembers)
	{
		for (FJsonIndex Member = Object + 1; Member < Entries[Object].Next; Member = Entries[Member + 1].Next)
		{
			const std::string_view Key = Raw(Member);
			const bool bEscaped = HasEscape(Key);
			for (FJsonIndex Before = Object + 1; Before < Member; Before = Entries[Before + 1].Next)
			{
				const bool bPlain = !bEscaped && !HasEscape(Raw(Before));
				if (bPlain ? Raw(Before) == Key : String(Before) == String(Member))
				{
					return Member;
				}
			}
		}
		return std::nullopt;
	}
	std::vector<std::pair<std::string, FJsonIndex>> Keys;
	for (const FJsonMember& Member : Members(Object))
	{
		Keys.emplace_back(*String(Member.Key), Member.Key);
	}
	std::sort(Keys.begin(), Keys.end());
	const auto Pair =
		std::adjacent_find(Keys.begin(), Keys.end(), [](const auto& A, const auto& B) { return A.first == B.first; });
	return Pair == Keys.end() ? std::nullopt : std::optional<FJsonIndex>(std::next(Pair)->second);
}

std::optional<double> FJsonText::Number(FJsonIndex Value) const
{
	if (!IsNumber(Value))
	{
		return std::nullopt;
	}
	const std::string_view Digits = Raw(Value);
	double Out = 0;
	const std::from_chars_result Result = std::from_chars(Digits.data(), Digits.data() + Digits.size(), Out);
	if (Result.ec == std::errc::result_out_of_range)
	{
		// Too small is as good as zero; too large is not a number that can be worked with.
		const std::size_t Exponent = Digits.find_first_of("eE");
		const bool bTiny = Exponent != std::string_view::npos ? Digits.substr(Exponent + 1).starts_with('-')
															  : Digits.starts_with("0.") || Digits.starts_with("-0.");
		return bTiny ? std::optional<double>(0.0) : std::nullopt;
	}
	return Out;
}

std::optional<std::uint64_t> FJsonText::Unsigned(FJsonIndex Value) const
{
	constexpr double Beyond = 9007199254740992.0; // 2^53: above it not every integer is a double
	const std::optional<double> Real = Number(Value);
	if (!Real || !(*Real >= 0) || *Real >= Beyond || std::floor(*Real) != *Real)
	{
		return std::nullopt;
	}
	return static_cast<std::uint64_t>(*Real);
}

std::optional<std::string> FJsonText::String(FJsonIndex Value) const
{
	return IsString(Value) ? std::optional<std::string>(Unescaped(WithoutQuotes(Raw(Value)))) : std::nullopt;
}

std::optional<bool> FJsonText::Bool(FJsonIndex Value) const
{
	if (Value == NoJson || (Kind(Value) != EJsonKind::True && Kind(Value) != EJsonKind::False))
	{
		return std::nullopt;
	}
	return Kind(Value) == EJsonKind::True;
}

bool FJsonText::StringEquals(FJsonIndex Value, std::string_view Expected) const
{
	if (!IsString(Value))
	{
		return false;
	}
	const std::string_view Content = WithoutQuotes(Raw(Value));
	return HasEscape(Content) ? Unescaped(Content) == Expected : Content == Expected;
}

std::string FJsonText::Pointer(FJsonIndex Value) const
{
	std::string Out;
	FJsonIndex At = Root();
	while (At != Value)
	{
		std::uint32_t Position = 0;
		const bool bObject = Kind(At) == EJsonKind::Object;
		FJsonIndex Child = bObject ? At + 2 : At + 1;
		const FJsonIndex Last = Entries[At].Next;
		// Descends into the child whose range of values holds the one that is looked for.
		while (Child < Last && Entries[Child].Next <= Value)
		{
			Child = bObject ? Entries[Child].Next + 1 : Entries[Child].Next;
			++Position;
		}
		if (Child >= Last)
		{
			break;
		}
		Out += '/' + (bObject ? JsonPointerToken(*String(Child - 1)) : std::to_string(Position));
		if (Value < Child)
		{
			break; // the key itself
		}
		At = Child;
	}
	return Out;
}

std::string JsonPointerToken(std::string_view Text)
{
	std::string Out;
	for (const char C : Text)
	{
		Out += C == '~' ? "~0" : C == '/' ? "~1" : std::string(1, C);
	}
	return Out;
}
