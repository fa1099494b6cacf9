// SPDX-License-Identifier: MIT
#include "SlateQt/QtKeys.h"

#include <QGuiApplication>

#include <algorithm>
#include <iterator>

namespace
{
struct FKeyPair
{
	int QtKey;
	const FKey& Host;
};

// With NumLock off the keypad types what is printed below the digits.
const FKeyPair KeypadKeys[] = {
	{Qt::Key_0, EKeys::NumPadZero},
	{Qt::Key_1, EKeys::NumPadOne},
	{Qt::Key_2, EKeys::NumPadTwo},
	{Qt::Key_3, EKeys::NumPadThree},
	{Qt::Key_4, EKeys::NumPadFour},
	{Qt::Key_5, EKeys::NumPadFive},
	{Qt::Key_6, EKeys::NumPadSix},
	{Qt::Key_7, EKeys::NumPadSeven},
	{Qt::Key_8, EKeys::NumPadEight},
	{Qt::Key_9, EKeys::NumPadNine},
	{Qt::Key_Insert, EKeys::NumPadZero},
	{Qt::Key_End, EKeys::NumPadOne},
	{Qt::Key_Down, EKeys::NumPadTwo},
	{Qt::Key_PageDown, EKeys::NumPadThree},
	{Qt::Key_Left, EKeys::NumPadFour},
	{Qt::Key_Clear, EKeys::NumPadFive},
	{Qt::Key_Right, EKeys::NumPadSix},
	{Qt::Key_Home, EKeys::NumPadSeven},
	{Qt::Key_Up, EKeys::NumPadEight},
	{Qt::Key_PageUp, EKeys::NumPadNine},
	{Qt::Key_Delete, EKeys::Decimal},
	{Qt::Key_Period, EKeys::Decimal},
	{Qt::Key_Comma, EKeys::Decimal},
	{Qt::Key_Asterisk, EKeys::Multiply},
	{Qt::Key_Plus, EKeys::Add},
	{Qt::Key_Minus, EKeys::Subtract},
	{Qt::Key_Slash, EKeys::Divide},
	{Qt::Key_Enter, EKeys::NumPadEnter},
};

const FKeyPair PlainKeys[] = {
	{Qt::Key_CapsLock, EKeys::CapsLock},
	{Qt::Key_NumLock, EKeys::NumLock},
	{Qt::Key_ScrollLock, EKeys::ScrollLock},
	{Qt::Key_Backspace, EKeys::BackSpace},
	{Qt::Key_Tab, EKeys::Tab},
	{Qt::Key_Backtab, EKeys::Tab},
	{Qt::Key_Return, EKeys::Enter},
	{Qt::Key_Enter, EKeys::NumPadEnter},
	{Qt::Key_Pause, EKeys::Pause},
	{Qt::Key_Escape, EKeys::Escape},
	{Qt::Key_Space, EKeys::SpaceBar},
	{Qt::Key_PageUp, EKeys::PageUp},
	{Qt::Key_PageDown, EKeys::PageDown},
	{Qt::Key_End, EKeys::End},
	{Qt::Key_Home, EKeys::Home},
	{Qt::Key_Left, EKeys::Left},
	{Qt::Key_Up, EKeys::Up},
	{Qt::Key_Right, EKeys::Right},
	{Qt::Key_Down, EKeys::Down},
	{Qt::Key_Insert, EKeys::Insert},
	{Qt::Key_Delete, EKeys::Delete},
	{Qt::Key_Print, EKeys::PrintScreen},
	{Qt::Key_Menu, EKeys::ContextMenu},
	{Qt::Key_Semicolon, EKeys::Semicolon},
	{Qt::Key_Colon, EKeys::Semicolon},
	{Qt::Key_Equal, EKeys::Equals},
	{Qt::Key_Plus, EKeys::Equals},
	{Qt::Key_Comma, EKeys::Comma},
	{Qt::Key_Less, EKeys::Comma},
	{Qt::Key_Minus, EKeys::Hyphen},
	{Qt::Key_Underscore, EKeys::Hyphen},
	{Qt::Key_Period, EKeys::Period},
	{Qt::Key_Greater, EKeys::Period},
	{Qt::Key_Slash, EKeys::Slash},
	{Qt::Key_Question, EKeys::Slash},
	{Qt::Key_QuoteLeft, EKeys::Tilde},
	{Qt::Key_AsciiTilde, EKeys::Tilde},
	{Qt::Key_BracketLeft, EKeys::LeftBracket},
	{Qt::Key_BraceLeft, EKeys::LeftBracket},
	{Qt::Key_Backslash, EKeys::Backslash},
	{Qt::Key_Bar, EKeys::Backslash},
	{Qt::Key_BracketRight, EKeys::RightBracket},
	{Qt::Key_BraceRight, EKeys::RightBracket},
	{Qt::Key_Apostrophe, EKeys::Apostrophe},
	{Qt::Key_QuoteDbl, EKeys::Apostrophe},
	// What the digit row types with Shift, where no scan code says which key it was.
	{Qt::Key_Exclam, EKeys::One},
	{Qt::Key_At, EKeys::Two},
	{Qt::Key_NumberSign, EKeys::Three},
	{Qt::Key_Dollar, EKeys::Four},
	{Qt::Key_Percent, EKeys::Five},
	{Qt::Key_AsciiCircum, EKeys::Six},
	{Qt::Key_Ampersand, EKeys::Seven},
	{Qt::Key_Asterisk, EKeys::Eight},
	{Qt::Key_ParenLeft, EKeys::Nine},
	{Qt::Key_ParenRight, EKeys::Zero},
};

template <std::size_t Count>
FKey FindKey(const FKeyPair (&Pairs)[Count], int QtKey)
{
	const auto* const Found =
		std::find_if(std::begin(Pairs), std::end(Pairs), [QtKey](const FKeyPair& Pair) { return Pair.QtKey == QtKey; });
	return Found == std::end(Pairs) ? FKey() : Found->Host;
}

// The keysyms of the right-hand keys, which platforms of the X keyboard extension give as the virtual key.
bool IsRightHandKey(const QKeyEvent& Event)
{
	constexpr quint32 RightHandSyms[] = {0xffe2, 0xffe4, 0xffe8, 0xffea, 0xffec};
	return std::find(std::begin(RightHandSyms), std::end(RightHandSyms), Event.nativeVirtualKey()) !=
		   std::end(RightHandSyms);
}

FKey ModifierKeyOf(const QKeyEvent& Event)
{
	const bool bRight = IsRightHandKey(Event);
	switch (Event.key())
	{
	case Qt::Key_Shift:
		return bRight ? EKeys::RightShift : EKeys::LeftShift;
	case Qt::Key_Control:
		return bRight ? EKeys::RightControl : EKeys::LeftControl;
	case Qt::Key_Alt:
		return bRight ? EKeys::RightAlt : EKeys::LeftAlt;
	case Qt::Key_AltGr:
		return EKeys::RightAlt;
	case Qt::Key_Meta:
		return bRight ? EKeys::RightCommand : EKeys::LeftCommand;
	case Qt::Key_Super_L:
		return EKeys::LeftCommand;
	case Qt::Key_Super_R:
		return EKeys::RightCommand;
	default:
		return {};
	}
}

const FKey& Digit(int Index)
{
	static const FKey* const Digits[] = {&EKeys::Zero, &EKeys::One, &EKeys::Two, &EKeys::Three, &EKeys::Four,
		&EKeys::Five, &EKeys::Six, &EKeys::Seven, &EKeys::Eight, &EKeys::Nine};
	return *Digits[Index];
}

FKey Letter(char Upper)
{
	const TCHAR Name[] = {static_cast<TCHAR>(Upper), 0};
	return FKey(Name);
}

FKey DigitInPlace(quint32 ScanCode)
{
	constexpr quint32 PlaceOfOne = 10;
	constexpr quint32 PlaceOfZero = 19;
	return ScanCode >= PlaceOfOne && ScanCode <= PlaceOfZero ? Digit(static_cast<int>(ScanCode - PlaceOfOne + 1) % 10)
															 : FKey();
}

FKey LetterInPlace(quint32 ScanCode)
{
	struct FRow
	{
		quint32 First;
		const char* Letters;
	};
	constexpr FRow Rows[] = {{24, "QWERTYUIOP"}, {38, "ASDFGHJKL"}, {52, "ZXCVBNM"}};
	for (const FRow& Row : Rows)
	{
		if (ScanCode >= Row.First && ScanCode < Row.First + std::char_traits<char>::length(Row.Letters))
		{
			return Letter(Row.Letters[ScanCode - Row.First]);
		}
	}
	return {};
}

FKey LetterDigitOrFunctionKey(int QtKey)
{
	if (QtKey >= Qt::Key_A && QtKey <= Qt::Key_Z)
	{
		return Letter(static_cast<char>(QtKey));
	}
	if (QtKey >= Qt::Key_0 && QtKey <= Qt::Key_9)
	{
		return Digit(QtKey - Qt::Key_0);
	}
	if (QtKey >= Qt::Key_F1 && QtKey <= Qt::Key_F12)
	{
		static const FKey* const FunctionKeys[] = {&EKeys::F1, &EKeys::F2, &EKeys::F3, &EKeys::F4, &EKeys::F5,
			&EKeys::F6, &EKeys::F7, &EKeys::F8, &EKeys::F9, &EKeys::F10, &EKeys::F11, &EKeys::F12};
		return *FunctionKeys[QtKey - Qt::Key_F1];
	}
	return {};
}

uint32 CharacterOf(const QKeyEvent& Event)
{
	const QList<uint> CodePoints = Event.text().toUcs4();
	return CodePoints.isEmpty() ? 0 : CodePoints.first();
}
}

bool HasPlaceScanCodes()
{
	const QString Platform = QGuiApplication::platformName();
	return Platform == QLatin1String("xcb") || Platform.startsWith(QLatin1String("wayland"));
}

FKey ToHostKey(const QKeyEvent& Event, bool bPlaceScanCodes)
{
	FKey Key = ModifierKeyOf(Event);
	if (!Key.IsValid() && (Event.modifiers() & Qt::KeypadModifier) != 0)
	{
		Key = FindKey(KeypadKeys, Event.key());
	}
	if (!Key.IsValid() && bPlaceScanCodes)
	{
		Key = DigitInPlace(Event.nativeScanCode());
	}
	if (!Key.IsValid())
	{
		Key = LetterDigitOrFunctionKey(Event.key());
	}
	if (!Key.IsValid())
	{
		Key = FindKey(PlainKeys, Event.key());
	}
	if (!Key.IsValid() && bPlaceScanCodes)
	{
		Key = LetterInPlace(Event.nativeScanCode());
	}
	return Key;
}

FKey ToHostMouseButton(Qt::MouseButton Button)
{
	switch (Button)
	{
	case Qt::LeftButton:
		return EKeys::LeftMouseButton;
	case Qt::RightButton:
		return EKeys::RightMouseButton;
	case Qt::MiddleButton:
		return EKeys::MiddleMouseButton;
	case Qt::BackButton:
		return EKeys::ThumbMouseButton;
	case Qt::ForwardButton:
		return EKeys::ThumbMouseButton2;
	default:
		return {};
	}
}

void FQtModifierSides::Observe(const QKeyEvent& Event)
{
	const FKey Key = ModifierKeyOf(Event);
	// The third-level key types other characters; it is no Alt that takes part in chords.
	if (Key.IsValid() && Event.key() != Qt::Key_AltGr)
	{
		Set(Key, Event.type() != QEvent::KeyRelease);
	}
}

void FQtModifierSides::Set(const FKey& Key, bool bDown)
{
	const struct
	{
		const FKey& Key;
		bool& bFlag;
	} Flags[] = {
		{EKeys::LeftShift, Shift.bLeft},
		{EKeys::RightShift, Shift.bRight},
		{EKeys::LeftControl, Control.bLeft},
		{EKeys::RightControl, Control.bRight},
		{EKeys::LeftAlt, Alt.bLeft},
		{EKeys::RightAlt, Alt.bRight},
		{EKeys::LeftCommand, Command.bLeft},
		{EKeys::RightCommand, Command.bRight},
	};
	for (const auto& Flag : Flags)
	{
		if (Flag.Key == Key)
		{
			Flag.bFlag = bDown;
		}
	}
}

FModifierKeysState FQtModifierSides::Resolve(Qt::KeyboardModifiers Kinds)
{
	// A release that went to another program is never seen, so Qt's own mask has the last word.
	const auto Settle = [Kinds](FSides& Sides, Qt::KeyboardModifier Kind)
	{
		if (!Kinds.testFlag(Kind))
		{
			Sides = {};
		}
		else if (!Sides.bLeft && !Sides.bRight)
		{
			Sides.bLeft = true;
		}
	};
	Settle(Shift, Qt::ShiftModifier);
	Settle(Control, Qt::ControlModifier);
	Settle(Alt, Qt::AltModifier);
	Settle(Command, Qt::MetaModifier);
	return FModifierKeysState(Shift.bLeft, Shift.bRight, Control.bLeft, Control.bRight, Alt.bLeft, Alt.bRight,
		Command.bLeft, Command.bRight, false);
}

FModifierKeysState FQtModifierSides::After(const QKeyEvent& Event)
{
	Qt::KeyboardModifiers Kinds = Event.modifiers();
	// Qt takes the second key of a kind for the first one's release.
	const struct
	{
		int Key;
		Qt::KeyboardModifier Kind;
		const FSides& Sides;
	} Modifiers[] = {
		{Qt::Key_Shift, Qt::ShiftModifier, Shift},
		{Qt::Key_Control, Qt::ControlModifier, Control},
		{Qt::Key_Alt, Qt::AltModifier, Alt},
		{Qt::Key_Meta, Qt::MetaModifier, Command},
	};
	for (const auto& Modifier : Modifiers)
	{
		if (Modifier.Key == Event.key())
		{
			Kinds.setFlag(Modifier.Kind, Modifier.Sides.bLeft || Modifier.Sides.bRight);
		}
	}
	return Resolve(Kinds);
}

FKeyEvent ToHostKeyEvent(const QKeyEvent& Event, FQtModifierSides& Sides)
{
	return FKeyEvent(
		ToHostKey(Event), Sides.After(Event), 0, Event.isAutoRepeat(), CharacterOf(Event), Event.nativeScanCode());
}
