// SPDX-License-Identifier: MIT
#include "SceneIO/JsonScanner.h"

#include "SceneIO/SceneLimits.h"

namespace
{
constexpr std::uint32_t OneMore = 1u << 3;

bool IsBlank(char C)
{
	return C == ' ' || C == '\n' || C == '\r' || C == '\t';
}

bool EndsScalar(char C)
{
	return IsBlank(C) || C == ',' || C == ']' || C == '}';
}
}

FJsonScanner::FJsonScanner(FJsonText& InText, std::string_view Valid)
	: Text(InText)
	, Base(InText.Source.data())
	, At(Valid.data())
	, Last(Valid.data() + Valid.size())
{
}

bool FJsonScanner::Run()
{
	Text.Entries.clear();
	while (!bDone)
	{
		SkipBlanks();
		if (At == Last)
		{
			return false;
		}
		const bool bInObject = !Containers.empty() && Text.Kind(Containers.back()) == EJsonKind::Object;
		if (*At == ']' || *At == '}')
		{
			// An empty container: one with content is closed by AfterValue.
			if (Containers.empty())
			{
				return false;
			}
			++At;
			Text.Entries[Containers.back()].End = static_cast<std::uint32_t>(At - Base);
			Text.Entries[Containers.back()].Next = static_cast<FJsonIndex>(Text.Entries.size());
			Containers.pop_back();
			if (!AfterValue())
			{
				return false;
			}
			continue;
		}
		if (bInObject)
		{
			if (*At != '"' || !ScanString())
			{
				return false;
			}
			SkipBlanks();
			if (At == Last || *At != ':')
			{
				return false;
			}
			++At;
			SkipBlanks();
		}
		if (At == Last || !ScanValue())
		{
			return false;
		}
	}
	return true;
}

bool FJsonScanner::ScanValue()
{
	if (!Containers.empty())
	{
		CountInto(Containers.back());
	}
	switch (*At)
	{
	case '{':
	case '[':
		if (Containers.size() >= SceneLimits::MaxJsonDepth)
		{
			return false;
		}
		Open(*At == '{' ? EJsonKind::Object : EJsonKind::Array);
		Containers.push_back(static_cast<FJsonIndex>(Text.Entries.size() - 1));
		++At;
		return true;
	case '"':
		return ScanString() && AfterValue();
	case 't':
		ScanScalar(EJsonKind::True);
		return AfterValue();
	case 'f':
		ScanScalar(EJsonKind::False);
		return AfterValue();
	case 'n':
		ScanScalar(EJsonKind::Null);
		return AfterValue();
	default:
		ScanScalar(EJsonKind::Number);
		return AfterValue();
	}
}

bool FJsonScanner::ScanString()
{
	FJsonText::FEntry& Entry = Open(EJsonKind::String);
	++At;
	while (At < Last && *At != '"')
	{
		At += *At == '\\' ? 2 : 1;
	}
	if (At >= Last)
	{
		return false;
	}
	++At;
	Entry.End = static_cast<std::uint32_t>(At - Base);
	return true;
}

void FJsonScanner::ScanScalar(EJsonKind Kind)
{
	FJsonText::FEntry& Entry = Open(Kind);
	while (At < Last && !EndsScalar(*At))
	{
		++At;
	}
	Entry.End = static_cast<std::uint32_t>(At - Base);
}

void FJsonScanner::SkipBlanks()
{
	while (At < Last && IsBlank(*At))
	{
		++At;
	}
}

bool FJsonScanner::AfterValue()
{
	while (!Containers.empty())
	{
		SkipBlanks();
		if (At == Last)
		{
			return false;
		}
		const char C = *At++;
		if (C == ',')
		{
			return true;
		}
		if (C != ']' && C != '}')
		{
			return false;
		}
		FJsonText::FEntry& Container = Text.Entries[Containers.back()];
		Container.End = static_cast<std::uint32_t>(At - Base);
		Container.Next = static_cast<FJsonIndex>(Text.Entries.size());
		Containers.pop_back();
	}
	bDone = true;
	return true;
}

FJsonText::FEntry& FJsonScanner::Open(EJsonKind Kind)
{
	FJsonText::FEntry Entry;
	Entry.Begin = static_cast<std::uint32_t>(At - Base);
	Entry.Next = static_cast<FJsonIndex>(Text.Entries.size() + 1);
	Entry.KindAndCount = static_cast<std::uint32_t>(Kind);
	return Text.Entries.emplace_back(Entry);
}

void FJsonScanner::CountInto(FJsonIndex Container)
{
	Text.Entries[Container].KindAndCount += OneMore;
}
