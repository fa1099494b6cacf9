// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Name.h"
#include "Core/String.h"
#include "Core/Text.h"

/// A key or button, by name. Two keys are the same key exactly when their names are equal.
///
/// Only names of EKeys are valid; a key of any other name (or none) is kept, but is not valid.
class FKey
{
public:
	FKey() = default;
	explicit FKey(FName InName)
		: Name(InName)
	{
	}
	explicit FKey(const TCHAR* InName)
		: Name(InName)
	{
	}

	bool IsValid() const;

	/// Whether this is one of the Shift, Ctrl, Alt and Command keys of either side.
	bool IsModifierKey() const;
	bool IsMouseButton() const;

	/// A key of the numeric keypad, whatever NumLock says.
	bool IsNumericKeypad() const;

	FName GetFName() const { return Name; }

	/// The invariant name, such as "NumPadFive"; what settings files hold.
	FString ToString() const;

	/// The name that users read, such as "Num 5"; that of an unknown key is its invariant name.
	FText GetDisplayName() const;

	bool operator==(const FKey& Other) const { return Name == Other.Name; }
	bool operator!=(const FKey& Other) const { return !(Name == Other.Name); }

private:
	FName Name;
};

/// The keys that exist.
struct EKeys
{
	static const FKey Invalid;

	static const FKey A, B, C, D, E, F, G, H, I, J, K, L, M, N, O, P, Q, R, S, T, U, V, W, X, Y, Z;
	static const FKey Zero, One, Two, Three, Four, Five, Six, Seven, Eight, Nine;
	static const FKey F1, F2, F3, F4, F5, F6, F7, F8, F9, F10, F11, F12;

	static const FKey NumPadZero, NumPadOne, NumPadTwo, NumPadThree, NumPadFour;
	static const FKey NumPadFive, NumPadSix, NumPadSeven, NumPadEight, NumPadNine;
	static const FKey Multiply, Add, Subtract, Decimal, Divide, NumPadEnter;

	static const FKey LeftShift, RightShift, LeftControl, RightControl;
	static const FKey LeftAlt, RightAlt, LeftCommand, RightCommand;
	static const FKey CapsLock, NumLock, ScrollLock;

	static const FKey BackSpace, Tab, Enter, Pause, Escape, SpaceBar, PageUp, PageDown, End, Home;
	static const FKey Left, Up, Right, Down, Insert, Delete, PrintScreen, ContextMenu;

	static const FKey Semicolon, Equals, Comma, Hyphen, Period, Slash, Tilde, LeftBracket, Backslash, RightBracket;
	static const FKey Apostrophe;

	static const FKey LeftMouseButton, RightMouseButton, MiddleMouseButton, ThumbMouseButton, ThumbMouseButton2;

	/// Finds a valid key by its invariant or its display name, ignoring case. False leaves `OutKey` untouched.
	static bool Find(const FString& NameOrDisplayName, FKey& OutKey);
};
