// SPDX-License-Identifier: MIT
#include "Core/String.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <ostream>

namespace
{
TCHAR Fold(TCHAR Character)
{
	return static_cast<TCHAR>(u_foldCase(static_cast<UChar32>(Character), U_FOLD_CASE_DEFAULT));
}

bool EqualFolded(TCHAR Left, TCHAR Right)
{
	return Left == Right || Fold(Left) == Fold(Right);
}

bool EqualViews(FStringView Left, FStringView Right, ESearchCase Case)
{
	return Case == ESearchCase::CaseSensitive
			   ? Left == Right
			   : std::equal(Left.begin(), Left.end(), Right.begin(), Right.end(), EqualFolded);
}

std::size_t ClampedLength(int32 Count, int32 Length)
{
	return static_cast<std::size_t>(std::clamp(Count, 0, Length));
}
}

FString FString::ChrN(int32 Count, TCHAR Character)
{
	check(Count >= 0);
	return FString(std::wstring(static_cast<std::size_t>(Count), Character));
}

FString FString::FromInt(int32 Value)
{
	return Printf(TEXT("%d"), Value);
}

void FString::Reserve(int32 Count)
{
	check(Count >= 0);
	Text.reserve(static_cast<std::size_t>(Count));
}

FString FString::operator/(FStringView Right) const
{
	FString Path = *this;
	while (Path.EndsWith(TEXT("/")))
	{
		Path.Text.pop_back();
	}
	// A lone "/" on the left is the root, whose slash is the one between the two.
	if (!IsEmpty())
	{
		Path += L'/';
	}
	const std::size_t FirstOther = IsEmpty() ? 0 : std::min(Right.find_first_not_of(L'/'), Right.size());
	Path += Right.substr(FirstOther);
	return Path;
}

bool FString::Equals(FStringView Other, ESearchCase Case) const
{
	return EqualViews(Text, Other, Case);
}

int32 FString::Compare(FStringView Other, ESearchCase Case) const
{
	const bool bFold = Case == ESearchCase::IgnoreCase;
	const auto Order = std::lexicographical_compare_three_way(Text.begin(), Text.end(), Other.begin(), Other.end(),
		[bFold](TCHAR Left, TCHAR Right) { return bFold ? Fold(Left) <=> Fold(Right) : Left <=> Right; });
	return Order < 0 ? -1 : Order > 0 ? 1 : 0;
}

bool FString::Contains(FStringView Part, ESearchCase Case) const
{
	return Find(Part, Case) != INDEX_NONE;
}

bool FString::StartsWith(FStringView Prefix, ESearchCase Case) const
{
	return Prefix.size() <= Text.size() && EqualViews(FStringView(Text).substr(0, Prefix.size()), Prefix, Case);
}

bool FString::EndsWith(FStringView Suffix, ESearchCase Case) const
{
	return Suffix.size() <= Text.size() &&
		   EqualViews(FStringView(Text).substr(Text.size() - Suffix.size()), Suffix, Case);
}

int32 FString::Find(FStringView Part, ESearchCase Case, int32 Start) const
{
	if (Start > Len())
	{
		return INDEX_NONE;
	}
	const std::size_t From = static_cast<std::size_t>(std::max(Start, 0));
	if (Case == ESearchCase::CaseSensitive)
	{
		const std::size_t Found = Text.find(Part, From);
		return Found == std::wstring::npos ? INDEX_NONE : static_cast<int32>(Found);
	}
	const auto Begin = Text.begin() + static_cast<std::ptrdiff_t>(From);
	const auto Found = std::search(Begin, Text.end(), Part.begin(), Part.end(), EqualFolded);
	return Found == Text.end() && !Part.empty() ? INDEX_NONE : static_cast<int32>(Found - Text.begin());
}

bool FString::FindChar(TCHAR Character, int32& OutIndex) const
{
	const std::size_t Found = Text.find(Character);
	OutIndex = Found == std::wstring::npos ? INDEX_NONE : static_cast<int32>(Found);
	return OutIndex != INDEX_NONE;
}

bool FString::FindLastChar(TCHAR Character, int32& OutIndex) const
{
	const std::size_t Found = Text.rfind(Character);
	OutIndex = Found == std::wstring::npos ? INDEX_NONE : static_cast<int32>(Found);
	return OutIndex != INDEX_NONE;
}

FString FString::Left(int32 Count) const
{
	return FString(Text.substr(0, ClampedLength(Count, Len())));
}

FString FString::Right(int32 Count) const
{
	return FString(Text.substr(Text.size() - ClampedLength(Count, Len())));
}

FString FString::LeftChop(int32 Count) const
{
	return FString(Text.substr(0, Text.size() - ClampedLength(Count, Len())));
}

FString FString::RightChop(int32 Count) const
{
	return FString(Text.substr(ClampedLength(Count, Len())));
}

FString FString::Mid(int32 Start, int32 Count) const
{
	if (Start < 0 || Start >= Len() || Count <= 0)
	{
		return FString();
	}
	return FString(Text.substr(static_cast<std::size_t>(Start), static_cast<std::size_t>(Count)));
}

FString FString::Replace(FStringView From, FStringView To, ESearchCase Case) const
{
	if (From.empty())
	{
		return *this;
	}
	FString Result;
	int32 Start = 0;
	for (int32 Found = Find(From, Case); Found != INDEX_NONE; Found = Find(From, Case, Start))
	{
		Result += FStringView(Text).substr(static_cast<std::size_t>(Start), static_cast<std::size_t>(Found - Start));
		Result += To;
		Start = Found + static_cast<int32>(From.size());
	}
	Result += FStringView(Text).substr(static_cast<std::size_t>(Start));
	return Result;
}

FString FString::ToLower() const
{
	FString Result = *this;
	for (TCHAR& Character : Result.Text)
	{
		Character = static_cast<TCHAR>(u_tolower(static_cast<UChar32>(Character)));
	}
	return Result;
}

FString FString::ToUpper() const
{
	FString Result = *this;
	for (TCHAR& Character : Result.Text)
	{
		Character = static_cast<TCHAR>(u_toupper(static_cast<UChar32>(Character)));
	}
	return Result;
}

FString FString::TrimStartAndEnd() const
{
	const auto IsSpace = [](TCHAR Character) { return u_isUWhiteSpace(static_cast<UChar32>(Character)) != 0; };
	const auto First = std::find_if_not(Text.begin(), Text.end(), IsSpace);
	const auto Last = std::find_if_not(Text.rbegin(), std::make_reverse_iterator(First), IsSpace).base();
	return FString(std::wstring(First, Last));
}

int32 FString::ParseIntoArray(TArray<FString>& OutPieces, FStringView Delimiter, bool bCullEmpty) const
{
	check(!Delimiter.empty());
	OutPieces.Reset();
	FStringView Rest = Text;
	for (bool bMore = true; bMore;)
	{
		const std::size_t Found = Rest.find(Delimiter);
		bMore = Found != FStringView::npos;
		const FStringView Piece = Rest.substr(0, Found);
		if (!bCullEmpty || !Piece.empty())
		{
			OutPieces.Add(FString(Piece));
		}
		Rest = bMore ? Rest.substr(Found + Delimiter.size()) : FStringView();
	}
	return OutPieces.Num();
}

FString FString::Join(const TArray<FString>& Pieces, FStringView Separator)
{
	FString Result;
	for (int32 Index = 0; Index < Pieces.Num(); ++Index)
	{
		if (Index > 0)
		{
			Result += Separator;
		}
		Result += Pieces[Index];
	}
	return Result;
}

std::ostream& operator<<(std::ostream& Stream, const FString& String)
{
	return Stream << String.ToUtf8();
}

int32 FGenericPlatformStricmp::Stricmp(const TCHAR* Left, const TCHAR* Right)
{
	check(Left != nullptr && Right != nullptr);
	return FString(Left).Compare(Right, ESearchCase::IgnoreCase);
}
