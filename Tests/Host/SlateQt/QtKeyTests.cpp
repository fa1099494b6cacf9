// SPDX-License-Identifier: MIT
#include "Slate/InputChord.h"
#include "SlateQt/QtKeys.h"
#include "SlateQtTestFixture.h"

namespace
{
constexpr quint32 RightShiftSym = 0xffe2;
constexpr quint32 LeftShiftSym = 0xffe1;

/// An event names the keyboard that it came from, and it is the application that owns it.
class QtKeys : public testing::Test
{
protected:
	static void SetUpTestSuite() { EnsureQtApplication(); }
};

QKeyEvent Press(int Key, Qt::KeyboardModifiers Modifiers = Qt::NoModifier, quint32 ScanCode = 0, quint32 Sym = 0,
	const QString& Text = {})
{
	return QKeyEvent(QEvent::KeyPress, Key, Modifiers, ScanCode, Sym, 0, Text);
}

QKeyEvent Release(int Key, Qt::KeyboardModifiers Modifiers, quint32 Sym)
{
	return QKeyEvent(QEvent::KeyRelease, Key, Modifiers, 0, Sym, 0);
}

FString NameOf(const QKeyEvent& Event, bool bPlaceScanCodes = false)
{
	return ToHostKey(Event, bPlaceScanCodes).ToString();
}
}

TEST_F(QtKeys, LettersDigitsAndNamedKeysKeepTheirNames)
{
	EXPECT_EQ(NameOf(Press(Qt::Key_B)), TEXT("B"));
	EXPECT_EQ(NameOf(Press(Qt::Key_7)), TEXT("Seven"));
	EXPECT_EQ(NameOf(Press(Qt::Key_F11)), TEXT("F11"));
	EXPECT_EQ(NameOf(Press(Qt::Key_Return)), TEXT("Enter"));
	EXPECT_EQ(NameOf(Press(Qt::Key_Home)), TEXT("Home"));
	EXPECT_EQ(NameOf(Press(Qt::Key_Backtab, Qt::ShiftModifier)), TEXT("Tab"));
	EXPECT_EQ(NameOf(Press(Qt::Key_Space)), TEXT("SpaceBar"));
}

TEST_F(QtKeys, EveryHostKeyButMouseButtonsIsReached)
{
	const struct
	{
		Qt::Key Key;
		const TCHAR* Name;
	} Samples[] = {{Qt::Key_Delete, TEXT("Delete")}, {Qt::Key_Backspace, TEXT("BackSpace")},
		{Qt::Key_Escape, TEXT("Escape")}, {Qt::Key_PageUp, TEXT("PageUp")}, {Qt::Key_Comma, TEXT("Comma")},
		{Qt::Key_Semicolon, TEXT("Semicolon")}, {Qt::Key_BracketLeft, TEXT("LeftBracket")},
		{Qt::Key_Menu, TEXT("ContextMenu")}, {Qt::Key_CapsLock, TEXT("CapsLock")}, {Qt::Key_QuoteLeft, TEXT("Tilde")},
		{Qt::Key_Minus, TEXT("Hyphen")}, {Qt::Key_Equal, TEXT("Equals")}};
	for (const auto& Sample : Samples)
	{
		EXPECT_EQ(NameOf(Press(Sample.Key)), Sample.Name);
	}
}

TEST_F(QtKeys, KeypadDigitsAreKeypadKeysWithAndWithoutNumLock)
{
	const struct
	{
		Qt::Key Digit;
		Qt::Key Below;
		const TCHAR* Name;
	} Keypad[] = {
		{Qt::Key_0, Qt::Key_Insert, TEXT("NumPadZero")},
		{Qt::Key_1, Qt::Key_End, TEXT("NumPadOne")},
		{Qt::Key_2, Qt::Key_Down, TEXT("NumPadTwo")},
		{Qt::Key_3, Qt::Key_PageDown, TEXT("NumPadThree")},
		{Qt::Key_4, Qt::Key_Left, TEXT("NumPadFour")},
		{Qt::Key_5, Qt::Key_Clear, TEXT("NumPadFive")},
		{Qt::Key_6, Qt::Key_Right, TEXT("NumPadSix")},
		{Qt::Key_7, Qt::Key_Home, TEXT("NumPadSeven")},
		{Qt::Key_8, Qt::Key_Up, TEXT("NumPadEight")},
		{Qt::Key_9, Qt::Key_PageUp, TEXT("NumPadNine")},
		{Qt::Key_Period, Qt::Key_Delete, TEXT("Decimal")},
	};
	for (const auto& Key : Keypad)
	{
		EXPECT_EQ(NameOf(Press(Key.Digit, Qt::ControlModifier | Qt::KeypadModifier)), Key.Name);
		EXPECT_EQ(NameOf(Press(Key.Below, Qt::ControlModifier | Qt::KeypadModifier)), Key.Name);
	}
	EXPECT_EQ(NameOf(Press(Qt::Key_Enter, Qt::KeypadModifier)), TEXT("NumPadEnter"));
	EXPECT_EQ(NameOf(Press(Qt::Key_Plus, Qt::KeypadModifier)), TEXT("Add"));
	EXPECT_EQ(NameOf(Press(Qt::Key_Slash, Qt::KeypadModifier)), TEXT("Divide"));
}

TEST_F(QtKeys, DigitRowIsDigitsWhateverTheLayoutTypes)
{
	constexpr quint32 PlaceOfSeven = 16;
	// A German layout types a slash with Shift and 7, a French one needs Shift for the digit itself.
	EXPECT_EQ(NameOf(Press(Qt::Key_Slash, Qt::ShiftModifier, PlaceOfSeven), true), TEXT("Seven"));
	EXPECT_EQ(NameOf(Press(Qt::Key_Egrave, Qt::NoModifier, PlaceOfSeven), true), TEXT("Seven"));
	EXPECT_EQ(NameOf(Press(Qt::Key_Ampersand, Qt::ShiftModifier)), TEXT("Seven"));
	// The keypad has scan codes of its own, and no place in the digit row.
	EXPECT_EQ(NameOf(Press(Qt::Key_7, Qt::KeypadModifier, 79), true), TEXT("NumPadSeven"));
}

TEST_F(QtKeys, LettersOfOtherScriptsMeanTheLatinLetterInTheirPlace)
{
	constexpr quint32 PlaceOfB = 56;
	constexpr int CyrillicI = 0x418;
	EXPECT_EQ(NameOf(Press(CyrillicI, Qt::ControlModifier, PlaceOfB), true), TEXT("B"));
	EXPECT_FALSE(ToHostKey(Press(CyrillicI, Qt::ControlModifier, PlaceOfB), false).IsValid());
	// A Latin letter is what it says, wherever it is.
	EXPECT_EQ(NameOf(Press(Qt::Key_Z, Qt::NoModifier, 29), true), TEXT("Z"));
}

TEST_F(QtKeys, UnknownKeyIsInvalid)
{
	EXPECT_FALSE(ToHostKey(Press(Qt::Key_VolumeUp), false).IsValid());
}

TEST_F(QtKeys, EventCarriesCharacterRepeatAndModifiers)
{
	FQtModifierSides Sides;
	const QKeyEvent Held(QEvent::KeyPress, Qt::Key_A, Qt::ShiftModifier, 38, 0, 0, QStringLiteral("A"), true);
	const FKeyEvent Event = ToHostKeyEvent(Held, Sides);
	EXPECT_EQ(Event.GetKey(), EKeys::A);
	EXPECT_TRUE(Event.IsRepeat());
	EXPECT_TRUE(Event.IsShiftDown());
	EXPECT_FALSE(Event.IsControlDown());
	EXPECT_EQ(Event.GetCharacter(), static_cast<uint32>('A'));
	EXPECT_EQ(Event.GetKeyCode(), 38u);
}

TEST_F(QtKeys, SidesOfModifiersAreToldApart)
{
	FQtModifierSides Sides;
	Sides.Observe(Press(Qt::Key_Shift, Qt::NoModifier, 0, RightShiftSym));
	FModifierKeysState State = Sides.Resolve(Qt::ShiftModifier);
	EXPECT_TRUE(State.IsRightShiftDown());
	EXPECT_FALSE(State.IsLeftShiftDown());
	Sides.Observe(Press(Qt::Key_Shift, Qt::ShiftModifier, 0, LeftShiftSym));
	Sides.Observe(Release(Qt::Key_Shift, Qt::ShiftModifier, RightShiftSym));
	State = Sides.Resolve(Qt::ShiftModifier);
	EXPECT_TRUE(State.IsLeftShiftDown());
	EXPECT_FALSE(State.IsRightShiftDown());
}

TEST_F(QtKeys, SecondShiftKeyLeavesTheFirstDown)
{
	FQtModifierSides Sides;
	const QKeyEvent Left = Press(Qt::Key_Shift, Qt::NoModifier, 0, LeftShiftSym);
	Sides.Observe(Left);
	EXPECT_TRUE(Sides.After(Left).IsLeftShiftDown());
	const QKeyEvent Right = Press(Qt::Key_Shift, Qt::ShiftModifier, 0, RightShiftSym);
	ASSERT_EQ(Right.modifiers(), Qt::NoModifier);
	Sides.Observe(Right);
	EXPECT_TRUE(Sides.After(Right).IsLeftShiftDown());
	EXPECT_TRUE(Sides.After(Right).IsRightShiftDown());
	const QKeyEvent Up = Release(Qt::Key_Shift, Qt::ShiftModifier, LeftShiftSym);
	Sides.Observe(Up);
	EXPECT_FALSE(Sides.After(Up).IsLeftShiftDown());
	EXPECT_TRUE(Sides.After(Up).IsRightShiftDown());
}

TEST_F(QtKeys, ModifierWhosePressWasNotSeenCountsAsLeft)
{
	FQtModifierSides Sides;
	const FModifierKeysState State = Sides.Resolve(Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
	EXPECT_TRUE(State.IsLeftControlDown());
	EXPECT_TRUE(State.IsLeftAltDown());
	EXPECT_TRUE(State.IsLeftCommandDown());
	EXPECT_FALSE(State.IsShiftDown());
}

TEST_F(QtKeys, ModifierReleasedInAnotherProgramIsUp)
{
	FQtModifierSides Sides;
	Sides.Observe(Press(Qt::Key_Shift, Qt::NoModifier, 0, RightShiftSym));
	EXPECT_FALSE(Sides.Resolve(Qt::NoModifier).IsShiftDown());
	EXPECT_TRUE(Sides.Resolve(Qt::ShiftModifier).IsLeftShiftDown());
}

TEST_F(QtKeys, ThirdLevelKeyIsNoAlt)
{
	FQtModifierSides Sides;
	Sides.Observe(Press(Qt::Key_AltGr));
	EXPECT_FALSE(Sides.Resolve(Qt::NoModifier).IsAltDown());
	EXPECT_EQ(NameOf(Press(Qt::Key_AltGr)), TEXT("RightAlt"));
}

TEST_F(QtKeys, MouseButtonsHaveTheirKeys)
{
	EXPECT_EQ(ToHostMouseButton(Qt::LeftButton), EKeys::LeftMouseButton);
	EXPECT_EQ(ToHostMouseButton(Qt::RightButton), EKeys::RightMouseButton);
	EXPECT_EQ(ToHostMouseButton(Qt::MiddleButton), EKeys::MiddleMouseButton);
	EXPECT_EQ(ToHostMouseButton(Qt::ForwardButton), EKeys::ThumbMouseButton2);
	EXPECT_FALSE(ToHostMouseButton(Qt::TaskButton).IsValid());
}
