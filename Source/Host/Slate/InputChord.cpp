// SPDX-License-Identifier: MIT
#include "Slate/InputChord.h"

#include "Core/Array.h"

namespace
{
struct FModifierName
{
	const TCHAR* Name;
	bool FInputChord::*Flag;
};

// In the order in which chords are written.
constexpr FModifierName ModifierNames[] = {
	{TEXT("Ctrl"), &FInputChord::bCtrl},
	{TEXT("Alt"), &FInputChord::bAlt},
	{TEXT("Shift"), &FInputChord::bShift},
	{TEXT("Cmd"), &FInputChord::bCmd},
};

template <typename TModifierName>
FString JoinChord(const FInputChord& Chord, const FString& KeyName, TModifierName&& NameOf)
{
	FString Result;
	for (const FModifierName& Modifier : ModifierNames)
	{
		if (Chord.*Modifier.Flag)
		{
			Result += NameOf(Modifier.Name);
			Result += TEXT('+');
		}
	}
	return Result + KeyName;
}

/// Takes one "Ctrl+" or the like off the front of `Text`; false if there is none.
bool TakeModifier(FString& Text, FInputChord& Chord)
{
	const int32 Plus = Text.Find(TEXT("+"));
	if (Plus == INDEX_NONE)
	{
		return false;
	}
	const FString Name = Text.Left(Plus).TrimStartAndEnd();
	for (const FModifierName& Modifier : ModifierNames)
	{
		if (Name.Equals(Modifier.Name, ESearchCase::IgnoreCase) && !(Chord.*Modifier.Flag))
		{
			Chord.*Modifier.Flag = true;
			Text = Text.RightChop(Plus + 1);
			return true;
		}
	}
	return false;
}
} // namespace

FInputChord::FInputChord(const FKey& InKey)
	: Key(InKey)
{
}

FInputChord::FInputChord(const FKey& InKey, bool bInShift, bool bInCtrl, bool bInAlt, bool bInCmd)
	: Key(InKey)
	, bShift(bInShift)
	, bCtrl(bInCtrl)
	, bAlt(bInAlt)
	, bCmd(bInCmd)
{
}

FInputChord::FInputChord(const FKey& InKey, EModifierKey::Type Modifiers)
	: Key(InKey)
	, bShift((Modifiers & EModifierKey::Shift) != 0)
	, bCtrl((Modifiers & EModifierKey::Control) != 0)
	, bAlt((Modifiers & EModifierKey::Alt) != 0)
	, bCmd((Modifiers & EModifierKey::Command) != 0)
{
}

FInputChord::FInputChord(EModifierKey::Type Modifiers, const FKey& InKey)
	: FInputChord(InKey, Modifiers)
{
}

FInputChord::FInputChord(const FKeyEvent& KeyEvent)
	: FInputChord(KeyEvent.GetKey(), KeyEvent.GetModifierKeys().GetMask())
{
}

bool FInputChord::IsValidChord() const
{
	return Key.IsValid() && !Key.IsModifierKey();
}

bool FInputChord::operator==(const FInputChord& Other) const
{
	return Key == Other.Key && bShift == Other.bShift && bCtrl == Other.bCtrl && bAlt == Other.bAlt &&
		   bCmd == Other.bCmd;
}

FText FInputChord::GetInputText() const
{
	if (!IsValidChord())
	{
		return FText();
	}
	const FString Joined = JoinChord(*this, Key.GetDisplayName().ToString(),
		[](const TCHAR* Name) { return FText::FromKey(TEXT("InputKeys"), Name, Name).ToString(); });
	return FText::FromString(Joined);
}

FString FInputChord::ToString() const
{
	return IsValidChord() ? JoinChord(*this, Key.ToString(), [](const TCHAR* Name) { return FString(Name); })
						  : FString();
}

bool FInputChord::FromString(const FString& Text, FInputChord& OutChord)
{
	FString Rest = Text.TrimStartAndEnd();
	if (Rest.IsEmpty())
	{
		OutChord = FInputChord();
		return true;
	}
	// Modifiers go first, so that a key whose name holds a plus sign is left over whole.
	FInputChord Parsed;
	while (TakeModifier(Rest, Parsed))
	{
	}
	if (!EKeys::Find(Rest.TrimStartAndEnd(), Parsed.Key) || !Parsed.IsValidChord())
	{
		return false;
	}
	OutChord = Parsed;
	return true;
}
