// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/Key.h"
#include "Slate/ModifierKeys.h"
#include "Slate/SlateTypes.h"

/// What all input events carry: the modifier keys at that moment, and whether a held key caused it.
class FInputEvent
{
public:
	explicit FInputEvent(
		const FModifierKeysState& InModifierKeys = {}, uint32 InUserIndex = 0, bool bInIsRepeat = false)
		: ModifierKeys(InModifierKeys)
		, UserIndex(InUserIndex)
		, bIsRepeat(bInIsRepeat)
	{
	}

	const FModifierKeysState& GetModifierKeys() const { return ModifierKeys; }
	uint32 GetUserIndex() const { return UserIndex; }

	/// Whether the event comes of holding a key down rather than of pressing it.
	bool IsRepeat() const { return bIsRepeat; }

	bool IsShiftDown() const { return ModifierKeys.IsShiftDown(); }
	bool IsLeftShiftDown() const { return ModifierKeys.IsLeftShiftDown(); }
	bool IsRightShiftDown() const { return ModifierKeys.IsRightShiftDown(); }
	bool IsControlDown() const { return ModifierKeys.IsControlDown(); }
	bool IsLeftControlDown() const { return ModifierKeys.IsLeftControlDown(); }
	bool IsRightControlDown() const { return ModifierKeys.IsRightControlDown(); }
	bool IsAltDown() const { return ModifierKeys.IsAltDown(); }
	bool IsLeftAltDown() const { return ModifierKeys.IsLeftAltDown(); }
	bool IsRightAltDown() const { return ModifierKeys.IsRightAltDown(); }
	bool IsCommandDown() const { return ModifierKeys.IsCommandDown(); }
	bool IsLeftCommandDown() const { return ModifierKeys.IsLeftCommandDown(); }
	bool IsRightCommandDown() const { return ModifierKeys.IsRightCommandDown(); }

private:
	FModifierKeysState ModifierKeys;
	uint32 UserIndex;
	bool bIsRepeat;
};

/// A key that went down or up.
class FKeyEvent : public FInputEvent
{
public:
	/// `InCharacterCode` is the code point that the key types with its modifiers, or 0; `InKeyCode` the platform's own
	/// code.
	FKeyEvent(const FKey& InKey, const FModifierKeysState& InModifierKeys, uint32 InUserIndex = 0,
		bool bInIsRepeat = false, uint32 InCharacterCode = 0, uint32 InKeyCode = 0)
		: FInputEvent(InModifierKeys, InUserIndex, bInIsRepeat)
		, Key(InKey)
		, CharacterCode(InCharacterCode)
		, KeyCode(InKeyCode)
	{
	}

	FKey GetKey() const { return Key; }
	uint32 GetCharacter() const { return CharacterCode; }
	uint32 GetKeyCode() const { return KeyCode; }

private:
	FKey Key;
	uint32 CharacterCode;
	uint32 KeyCode;
};

/// A key or stick with a value between -1 and 1.
class FAnalogInputEvent : public FKeyEvent
{
public:
	FAnalogInputEvent(const FKeyEvent& InKeyEvent, float InAnalogValue)
		: FKeyEvent(InKeyEvent)
		, AnalogValue(InAnalogValue)
	{
	}

	float GetAnalogValue() const { return AnalogValue; }

private:
	float AnalogValue;
};

/// A move, press, release, double click or wheel turn of the mouse.
class FPointerEvent : public FInputEvent
{
public:
	/// `InEffectingButton` is invalid for moves and wheel turns; `InWheelDelta` counts notches, away from the user
	/// positive.
	explicit FPointerEvent(FScreenPosition InPosition, const FKey& InEffectingButton = {},
		const FModifierKeysState& InModifierKeys = {}, float InWheelDelta = 0.0f)
		: FInputEvent(InModifierKeys)
		, Position(InPosition)
		, EffectingButton(InEffectingButton)
		, WheelDelta(InWheelDelta)
	{
	}

	FScreenPosition GetScreenSpacePosition() const { return Position; }
	FKey GetEffectingButton() const { return EffectingButton; }
	float GetWheelDelta() const { return WheelDelta; }

private:
	FScreenPosition Position;
	FKey EffectingButton;
	float WheelDelta;
};

/// A movement of the device itself. Desktop back ends never send one.
class FMotionEvent : public FInputEvent
{
public:
	using FInputEvent::FInputEvent;
};
