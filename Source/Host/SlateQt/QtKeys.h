// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/InputEvents.h"
#include "SlateQt/QtPrelude.h"

#include <QKeyEvent>

/// Whether the platform's scan codes are those of the X keyboard extension, which name a key by its place.
bool HasPlaceScanCodes();

/// The key of a Qt key event; an invalid one for keys that the host does not know.
///
/// Keypad keys are numeric-keypad keys whatever NumLock says. With `bPlaceScanCodes` the digit row means digits
/// whatever the layout types with it, and letters of other scripts mean the Latin letter in their place.
FKey ToHostKey(const QKeyEvent& Event, bool bPlaceScanCodes = HasPlaceScanCodes());

/// The mouse button of a Qt event; an invalid one for buttons that the host does not know.
FKey ToHostMouseButton(Qt::MouseButton Button);

/// Tells left from right modifier keys, which Qt does not: remembers which of them went down.
class FQtModifierSides
{
public:
	/// Is shown every press and release.
	void Observe(const QKeyEvent& Event);

	/// The state behind Qt's mask of kinds. A kind that is down although no press of it was seen counts as left.
	FModifierKeysState Resolve(Qt::KeyboardModifiers Kinds);

	/// The state at an observed event, after it.
	FModifierKeysState After(const QKeyEvent& Event);

private:
	struct FSides
	{
		bool bLeft = false;
		bool bRight = false;
	};

	void Set(const FKey& Key, bool bDown);

	FSides Shift;
	FSides Control;
	FSides Alt;
	FSides Command;
};

/// The host's event for a press or release in Qt that `Sides` has observed.
FKeyEvent ToHostKeyEvent(const QKeyEvent& Event, FQtModifierSides& Sides);
