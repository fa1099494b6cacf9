// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/FormatString.h"
#include "Core/Types.h"

#include <compare>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

/// Text that is looked at and not owned.
using FStringView = std::wstring_view;

/// Whether a comparison tells upper from lower case. Ignoring case folds each code point by Unicode's simple
/// folding, in no particular language.
enum class ESearchCase : uint8
{
	CaseSensitive,
	IgnoreCase,
};

/// Text of code points, owned. Comparisons are case-sensitive unless they are told otherwise.
class FString
{
public:
	FString() = default;

	/// A null pointer makes the empty string.
	FString(const TCHAR* Source)
		: Text(Source != nullptr ? Source : L"")
	{
	}

	explicit FString(FStringView Source)
		: Text(Source)
	{
	}

	explicit FString(std::wstring Source)
		: Text(std::move(Source))
	{
	}

	/// `Count` copies of one character.
	static FString ChrN(int32 Count, TCHAR Character);

	/// Decodes UTF-8; every maximal ill-formed piece becomes one U+FFFD.
	static FString FromUtf8(std::string_view Utf8);

	/// Encodes as UTF-8; what is no Unicode scalar value becomes U+FFFD.
	std::string ToUtf8() const;

	static FString FromInt(int32 Value);

	/// Formats by a literal that is checked against the arguments while compiling: %d (signed, up to 32 bits), %u and
	/// %x (unsigned, up to 32 bits), %lld, %llu, %llx, %s (const TCHAR*, so `*String`; null gives "(null)"), %c
	/// (TCHAR), %f %e %g (float, double), %%, with width, precision and the flags "-", "0", "+" and blank. The C locale
	/// has no say in it.
	template <typename... ArgumentTypes>
	static FString Printf(
		TCheckedFormat<std::type_identity_t<ArgumentTypes>...> Format, const ArgumentTypes&... Arguments)
	{
		return FString(FormatWide<ArgumentTypes...>(Format, Arguments...));
	}

	const TCHAR* operator*() const { return Text.c_str(); }
	operator FStringView() const { return Text; }
	const std::wstring& ToStdWString() const { return Text; }

	int32 Len() const { return static_cast<int32>(Text.size()); }
	bool IsEmpty() const { return Text.empty(); }
	bool IsValidIndex(int32 Index) const { return Index >= 0 && Index < Len(); }

	TCHAR operator[](int32 Index) const
	{
		check(IsValidIndex(Index));
		return Text[static_cast<std::size_t>(Index)];
	}

	TCHAR& operator[](int32 Index)
	{
		check(IsValidIndex(Index));
		return Text[static_cast<std::size_t>(Index)];
	}

	void Empty() { Text.clear(); }
	void Reset() { Text.clear(); }
	void Reserve(int32 Count);

	FString& Append(FStringView Other)
	{
		Text.append(Other);
		return *this;
	}

	FString& AppendChar(TCHAR Character)
	{
		Text.push_back(Character);
		return *this;
	}

	FString& operator+=(FStringView Other) { return Append(Other); }
	FString& operator+=(TCHAR Character) { return AppendChar(Character); }

	/// Joins two parts of a path with exactly one slash between them.
	FString operator/(FStringView Right) const;

	bool Equals(FStringView Other, ESearchCase Case = ESearchCase::CaseSensitive) const;

	/// Negative, zero or positive as this string sorts before, with or after `Other`, by code points.
	int32 Compare(FStringView Other, ESearchCase Case = ESearchCase::CaseSensitive) const;

	bool Contains(FStringView Part, ESearchCase Case = ESearchCase::CaseSensitive) const;
	bool StartsWith(FStringView Prefix, ESearchCase Case = ESearchCase::CaseSensitive) const;
	bool EndsWith(FStringView Suffix, ESearchCase Case = ESearchCase::CaseSensitive) const;

	/// The index of the first `Part` at or behind `Start`, or INDEX_NONE.
	int32 Find(FStringView Part, ESearchCase Case = ESearchCase::CaseSensitive, int32 Start = 0) const;

	/// Finds the first (last) `Character`; `OutIndex` becomes INDEX_NONE when there is none.
	bool FindChar(TCHAR Character, int32& OutIndex) const;
	bool FindLastChar(TCHAR Character, int32& OutIndex) const;

	/// The first (last) `Count` characters, or all when there are fewer.
	FString Left(int32 Count) const;
	FString Right(int32 Count) const;

	/// All but the last (first) `Count` characters.
	FString LeftChop(int32 Count) const;
	FString RightChop(int32 Count) const;

	/// Up to `Count` characters from `Start` on; empty where `Start` lies outside.
	FString Mid(int32 Start, int32 Count = std::numeric_limits<int32>::max()) const;

	/// Every `From`, left to right, replaced by `To`; an empty `From` changes nothing.
	FString Replace(FStringView From, FStringView To, ESearchCase Case = ESearchCase::CaseSensitive) const;

	FString ToLower() const;
	FString ToUpper() const;

	/// Without white space at either end.
	FString TrimStartAndEnd() const;

	/// Cuts at every `Delimiter`; returns the number of pieces. Empty pieces are left out if `bCullEmpty`.
	int32 ParseIntoArray(TArray<FString>& OutPieces, FStringView Delimiter, bool bCullEmpty = true) const;

	static FString Join(const TArray<FString>& Pieces, FStringView Separator);

	const TCHAR* begin() const { return Text.data(); }
	const TCHAR* end() const { return Text.data() + Text.size(); }

	friend bool operator==(const FString& Left, const FString& Right) { return Left.Text == Right.Text; }
	friend bool operator==(const FString& Left, const TCHAR* Right)
	{
		return Left.Text == (Right != nullptr ? Right : L"");
	}
	friend std::strong_ordering operator<=>(const FString& Left, const FString& Right)
	{
		return Left.Text <=> Right.Text;
	}

	friend FString operator+(FString Left, FStringView Right)
	{
		Left.Append(Right);
		return Left;
	}

	friend FString operator+(const TCHAR* Left, const FString& Right)
	{
		return FString(Left) + FStringView(Right.Text);
	}

	friend FString operator+(FString Left, TCHAR Right)
	{
		Left.AppendChar(Right);
		return Left;
	}

	friend std::size_t GetTypeHash(const FString& String) { return std::hash<std::wstring>{}(String.Text); }

	/// Writes UTF-8.
	friend std::ostream& operator<<(std::ostream& Stream, const FString& String);

private:
	std::wstring Text;
};

template <>
struct std::hash<FString>
{
	std::size_t operator()(const FString& String) const { return GetTypeHash(String); }
};

/// Parse a whole text as one number, in the form of the C locale whatever the locale is. False, leaving the number
/// alone, for anything else: blanks, a leading plus, rests, values out of range. Reals take exponents, "inf" and "nan".
bool LexFromString(double& OutValue, FStringView Text);
bool LexFromString(int32& OutValue, FStringView Text);

/// Comparison of zero-terminated text without regard to case.
struct FGenericPlatformStricmp
{
	/// Negative, zero or positive as `Left` sorts before, with or after `Right`. Neither may be null.
	static int32 Stricmp(const TCHAR* Left, const TCHAR* Right);
};
