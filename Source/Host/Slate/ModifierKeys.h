// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Types.h"

/// A mask of modifier keys, whichever side of the keyboard they are on.
namespace EModifierKey
{
enum Type : uint8
{
	None = 0,
	Control = 1 << 0,
	Alt = 1 << 1,
	Shift = 1 << 2,
	Command = 1 << 3,
};

constexpr Type operator|(Type Left, Type Right)
{
	return static_cast<Type>(static_cast<unsigned>(Left) | static_cast<unsigned>(Right));
}

/// The mask of the given four flags.
constexpr Type FromBools(bool bControl, bool bAlt, bool bShift, bool bCommand)
{
	return (bControl ? Control : None) | (bAlt ? Alt : None) | (bShift ? Shift : None) | (bCommand ? Command : None);
}
} // namespace EModifierKey

/// Which modifier keys were down at one moment, left and right told apart.
class FModifierKeysState
{
public:
	constexpr FModifierKeysState() = default;
	constexpr FModifierKeysState(bool bInLeftShift, bool bInRightShift, bool bInLeftControl, bool bInRightControl,
		bool bInLeftAlt, bool bInRightAlt, bool bInLeftCommand, bool bInRightCommand, bool bInCapsLock)
		: bLeftShift(bInLeftShift)
		, bRightShift(bInRightShift)
		, bLeftControl(bInLeftControl)
		, bRightControl(bInRightControl)
		, bLeftAlt(bInLeftAlt)
		, bRightAlt(bInRightAlt)
		, bLeftCommand(bInLeftCommand)
		, bRightCommand(bInRightCommand)
		, bCapsLock(bInCapsLock)
	{
	}

	/// The left-hand keys of a mask, for callers that know no sides.
	static constexpr FModifierKeysState FromMask(EModifierKey::Type Mask)
	{
		return FModifierKeysState((Mask & EModifierKey::Shift) != 0, false, (Mask & EModifierKey::Control) != 0, false,
			(Mask & EModifierKey::Alt) != 0, false, (Mask & EModifierKey::Command) != 0, false, false);
	}

	constexpr bool IsShiftDown() const { return bLeftShift || bRightShift; }
	constexpr bool IsLeftShiftDown() const { return bLeftShift; }
	constexpr bool IsRightShiftDown() const { return bRightShift; }
	constexpr bool IsControlDown() const { return bLeftControl || bRightControl; }
	constexpr bool IsLeftControlDown() const { return bLeftControl; }
	constexpr bool IsRightControlDown() const { return bRightControl; }
	constexpr bool IsAltDown() const { return bLeftAlt || bRightAlt; }
	constexpr bool IsLeftAltDown() const { return bLeftAlt; }
	constexpr bool IsRightAltDown() const { return bRightAlt; }
	constexpr bool IsCommandDown() const { return bLeftCommand || bRightCommand; }
	constexpr bool IsLeftCommandDown() const { return bLeftCommand; }
	constexpr bool IsRightCommandDown() const { return bRightCommand; }
	constexpr bool AreCapsLocked() const { return bCapsLock; }

	/// The mask of the kinds that are down on either side; caps lock is no part of it.
	constexpr EModifierKey::Type GetMask() const
	{
		return EModifierKey::FromBools(IsControlDown(), IsAltDown(), IsShiftDown(), IsCommandDown());
	}

	constexpr bool operator==(const FModifierKeysState&) const = default;

private:
	bool bLeftShift = false;
	bool bRightShift = false;
	bool bLeftControl = false;
	bool bRightControl = false;
	bool bLeftAlt = false;
	bool bRightAlt = false;
	bool bLeftCommand = false;
	bool bRightCommand = false;
	bool bCapsLock = false;
};
