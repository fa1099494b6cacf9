// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/InputEvents.h"

/// A key with the modifiers that must be down with it, no more and no fewer.
struct FInputChord
{
	FKey Key;
	bool bShift = false;
	bool bCtrl = false;
	bool bAlt = false;
	bool bCmd = false;

	/// No chord: its key is invalid.
	FInputChord() = default;
	FInputChord(const FKey& InKey);
	FInputChord(const FKey& InKey, bool bInShift, bool bInCtrl, bool bInAlt, bool bInCmd);
	FInputChord(const FKey& InKey, EModifierKey::Type Modifiers);
	FInputChord(EModifierKey::Type Modifiers, const FKey& InKey);

	/// The chord of an event: its key, and each kind of modifier that is down on either side.
	explicit FInputChord(const FKeyEvent& KeyEvent);

	/// Whether a press can match the chord: a valid key that is not itself a modifier.
	bool IsValidChord() const;

	/// The same key and the same four modifier flags.
	bool operator==(const FInputChord& Other) const;
	bool operator!=(const FInputChord& Other) const { return !(*this == Other); }

	bool HasAnyModifierKeys() const { return bShift || bCtrl || bAlt || bCmd; }

	/// What users read beside a menu entry, such as "Ctrl+Shift+B" or "Ctrl+Num 5"; empty for no chord.
	FText GetInputText() const;

	/// The invariant form that settings files hold, such as "Ctrl+NumPadFive"; empty for no chord.
	FString ToString() const;

	/// Reads either form, ignoring case and blanks around the parts; the empty string is no chord.
	/// False, leaving `OutChord` untouched, for anything else that is not a valid chord.
	static bool FromString(const FString& Text, FInputChord& OutChord);
};
