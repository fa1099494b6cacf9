// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/SceneResult.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

enum class EJsonKind : std::uint8_t
{
	Null,
	False,
	True,
	Number,
	String,
	Array,
	Object,
};

/// Names a value of an FJsonText; values are numbered in the order in which they begin.
using FJsonIndex = std::uint32_t;
constexpr FJsonIndex NoJson = 0xFFFFFFFFu;

/// A place in the text: [Begin, End) in bytes.
struct FJsonSpan
{
	std::uint32_t Begin = 0;
	std::uint32_t End = 0;
};

/// A member of an object: its key (a string value) and its value.
struct FJsonMember
{
	FJsonIndex Key = NoJson;
	FJsonIndex Value = NoJson;
};

/// A JSON text, valid and unchanged, with the place of every value in it, so that values can be spliced.
class FJsonText
{
public:
	/// Checks `Text` (UTF-8, one value, a byte-order mark allowed before it, blanks and NULs after it) and finds its
	/// values. `FileName` is for the sentence of a refusal: bad syntax, more than SceneLimits::MaxJsonDepth levels or
	/// SceneLimits::MaxJsonBytes bytes. Integers and exponents of any size are accepted, as JSON allows them.
	static TSceneResult<FJsonText> Parse(std::string Text, const std::string& FileName);

	/// The whole text, with all that stands around the root.
	const std::string& Text() const { return Source; }

	FJsonIndex Root() const { return 0; }
	EJsonKind Kind(FJsonIndex Value) const { return static_cast<EJsonKind>(Entries[Value].KindAndCount & 7u); }
	bool IsObject(FJsonIndex Value) const { return Value != NoJson && Kind(Value) == EJsonKind::Object; }
	bool IsArray(FJsonIndex Value) const { return Value != NoJson && Kind(Value) == EJsonKind::Array; }
	bool IsString(FJsonIndex Value) const { return Value != NoJson && Kind(Value) == EJsonKind::String; }
	bool IsNumber(FJsonIndex Value) const { return Value != NoJson && Kind(Value) == EJsonKind::Number; }

	/// Elements of an array or members of an object; zero for anything else.
	std::uint32_t Count(FJsonIndex Value) const { return Entries[Value].KindAndCount >> 3; }
	FJsonSpan Span(FJsonIndex Value) const { return {Entries[Value].Begin, Entries[Value].End}; }
	std::string_view Raw(FJsonIndex Value) const;
	/// One past the last value within `Value`; that of the root is the number of values.
	FJsonIndex End(FJsonIndex Value) const { return Entries[Value].Next; }

	/// The value of the first member of that name; NoJson where `Object` is no object or has none.
	FJsonIndex Find(FJsonIndex Object, std::string_view Key) const;
	std::vector<FJsonMember> Members(FJsonIndex Object) const;
	std::vector<FJsonIndex> Elements(FJsonIndex Array) const;
	/// Empty for anything but an object in which a key stands twice; then the later of the two keys.
	std::optional<FJsonIndex> DuplicateKey(FJsonIndex Object) const;

	/// The number as the nearest double; empty for what is no number or lies beyond the range of a double.
	std::optional<double> Number(FJsonIndex Value) const;
	/// The number where it is a non-negative integer below 2^53, however it is written (12, 12.0, 1.2e1).
	std::optional<std::uint64_t> Unsigned(FJsonIndex Value) const;
	/// The string with its escapes resolved, as UTF-8; lone surrogates become U+FFFD.
	std::optional<std::string> String(FJsonIndex Value) const;
	std::optional<bool> Bool(FJsonIndex Value) const;
	bool StringEquals(FJsonIndex Value, std::string_view Expected) const;

	/// The JSON pointer of a value, "" for the root. Linear in the size of the text: meant for error sentences.
	std::string Pointer(FJsonIndex Value) const;

private:
	struct FEntry
	{
		std::uint32_t Begin = 0;
		std::uint32_t End = 0;
		FJsonIndex Next = 0;
		std::uint32_t KindAndCount = 0;
	};

	friend class FJsonScanner;

	std::string Source;
	std::vector<FEntry> Entries;
};

/// `Text` as part of a JSON pointer: "~" and "/" escaped.
std::string JsonPointerToken(std::string_view Text);
