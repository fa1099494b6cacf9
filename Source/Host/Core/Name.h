// SPDX-License-Identifier: MIT
#pragma once

#include "Core/String.h"

/// A name of an object, module or the like: one pointer, compared in constant time. Its text is kept once in the host
/// for the life of the process. Names keep their case, and names that differ in case differ. The text "None" is no
/// name.
class FName
{
public:
	constexpr FName() = default;

	/// Null, empty and "None" all make no name.
	FName(const TCHAR* Text);
	FName(const FString& Text);
	explicit FName(FStringView Text);

	/// The text; "None" for no name.
	FString ToString() const;

	constexpr bool IsNone() const { return Entry == nullptr; }

	/// Whether this name sorts before `Other` by code points. (Names have no `<`: the order of their addresses means
	/// nothing.)
	bool LexicalLess(const FName& Other) const;

	friend constexpr bool operator==(const FName& Left, const FName& Right) { return Left.Entry == Right.Entry; }
	friend std::size_t GetTypeHash(const FName& Name) { return std::hash<const void*>{}(Name.Entry); }
	friend std::ostream& operator<<(std::ostream& Stream, const FName& Name);

private:
	const std::wstring* Entry = nullptr;
};

/// No name.
inline constexpr FName NAME_None{};

template <>
struct std::hash<FName>
{
	std::size_t operator()(const FName& Name) const { return GetTypeHash(Name); }
};
