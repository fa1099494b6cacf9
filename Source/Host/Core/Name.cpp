// SPDX-License-Identifier: MIT
#include "Core/Name.h"

#include <mutex>
#include <ostream>
#include <unordered_set>

namespace
{
struct FViewHash
{
	using is_transparent = void;
	std::size_t operator()(std::wstring_view Text) const { return std::hash<std::wstring_view>{}(Text); }
};

struct FNameTable
{
	std::mutex Mutex;
	std::unordered_set<std::wstring, FViewHash, std::equal_to<>> Texts;
};

// Never destroyed: names live in statics of every library.
FNameTable& NameTable()
{
	static FNameTable& Table = *new FNameTable;
	return Table;
}

FStringView TextOf(const std::wstring* Entry)
{
	return Entry != nullptr ? FStringView(*Entry) : FStringView(L"None");
}

const std::wstring* Intern(std::wstring_view Text)
{
	if (Text.empty() || Text == L"None")
	{
		return nullptr;
	}
	FNameTable& Table = NameTable();
	const std::lock_guard Lock(Table.Mutex);
	const auto Found = Table.Texts.find(Text);
	return Found != Table.Texts.end() ? &*Found : &*Table.Texts.emplace(Text).first;
}
}

FName::FName(const TCHAR* Text)
	: Entry(Text != nullptr ? Intern(Text) : nullptr)
{
}

FName::FName(const FString& Text)
	: Entry(Intern(Text))
{
}

FName::FName(FStringView Text)
	: Entry(Intern(Text))
{
}

FString FName::ToString() const
{
	return FString(TextOf(Entry));
}

bool FName::LexicalLess(const FName& Other) const
{
	return TextOf(Entry) < TextOf(Other.Entry);
}

std::ostream& operator<<(std::ostream& Stream, const FName& Name)
{
	return Stream << Name.ToString();
}
