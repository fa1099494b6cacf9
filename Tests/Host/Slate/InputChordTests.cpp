// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

// Before the host, whose `check` is a macro, and after GoogleTest, which it needs.
#include <rapidcheck/gtest.h>

#include "Slate/InputChord.h"

namespace
{
constexpr EModifierKey::Type CtrlShift = EModifierKey::Control | EModifierKey::Shift;

TEST(Keys, KeysAreTheSameByName)
{
	EXPECT_EQ(EKeys::B, FKey(TEXT("B")));
	EXPECT_NE(EKeys::B, EKeys::NumPadFive);
	EXPECT_NE(EKeys::Five, EKeys::NumPadFive);
}

TEST(Keys, OnlyKnownNamesAreValid)
{
	EXPECT_TRUE(EKeys::NumPadZero.IsValid());
	EXPECT_TRUE(FKey(TEXT("F11")).IsValid());
	EXPECT_FALSE(EKeys::Invalid.IsValid());
	EXPECT_FALSE(FKey().IsValid());
	EXPECT_FALSE(FKey(TEXT("Turbo")).IsValid());
}

TEST(Keys, ModifierKeysOfBothSidesAreModifiers)
{
	for (const FKey& Key : {EKeys::LeftShift, EKeys::RightShift, EKeys::LeftControl, EKeys::RightControl,
			 EKeys::LeftAlt, EKeys::RightAlt, EKeys::LeftCommand, EKeys::RightCommand})
	{
		EXPECT_TRUE(Key.IsModifierKey()) << Key.ToString();
	}
	for (const FKey& Key : {EKeys::B, EKeys::NumPadSeven, EKeys::CapsLock, EKeys::Escape, EKeys::Invalid})
	{
		EXPECT_FALSE(Key.IsModifierKey()) << Key.ToString();
	}
}

TEST(Keys, KeypadKeysAreToldFromOthers)
{
	EXPECT_TRUE(EKeys::NumPadSeven.IsNumericKeypad());
	EXPECT_TRUE(EKeys::Add.IsNumericKeypad());
	EXPECT_FALSE(EKeys::Seven.IsNumericKeypad());
	EXPECT_FALSE(EKeys::Home.IsNumericKeypad());
	EXPECT_TRUE(EKeys::LeftMouseButton.IsMouseButton());
	EXPECT_FALSE(EKeys::Left.IsMouseButton());
}

TEST(Keys, UsersReadDisplayNames)
{
	EXPECT_EQ(EKeys::NumPadFive.GetDisplayName().ToString(), TEXT("Num 5"));
	EXPECT_EQ(EKeys::NumPadFive.ToString(), TEXT("NumPadFive"));
	EXPECT_EQ(EKeys::Five.GetDisplayName().ToString(), TEXT("5"));
	EXPECT_EQ(FKey(TEXT("Turbo")).GetDisplayName().ToString(), TEXT("Turbo"));
}

TEST(ModifierKeys, EitherSideCounts)
{
	const FModifierKeysState Right(false, true, false, true, false, false, false, false, false);
	EXPECT_TRUE(Right.IsShiftDown());
	EXPECT_FALSE(Right.IsLeftShiftDown());
	EXPECT_TRUE(Right.IsRightShiftDown());
	EXPECT_TRUE(Right.IsControlDown());
	EXPECT_FALSE(Right.IsAltDown());
	EXPECT_FALSE(Right.IsCommandDown());
	EXPECT_EQ(Right.GetMask(), CtrlShift);
	EXPECT_EQ(FModifierKeysState::FromMask(CtrlShift).GetMask(), CtrlShift);
}

TEST(InputChord, AllConstructorsAgree)
{
	const FInputChord Chord(EModifierKey::Control | EModifierKey::Shift, EKeys::B);
	EXPECT_TRUE(Chord.bCtrl);
	EXPECT_TRUE(Chord.bShift);
	EXPECT_FALSE(Chord.bAlt);
	EXPECT_FALSE(Chord.bCmd);
	EXPECT_EQ(Chord, FInputChord(EKeys::B, CtrlShift));
	EXPECT_EQ(Chord, FInputChord(EKeys::B, true, true, false, false));
	EXPECT_EQ(FInputChord(EKeys::B), FInputChord(EKeys::B, EModifierKey::None));
}

TEST(InputChord, ChordOfAnEventCountsModifiersOfBothSides)
{
	const FModifierKeysState State(false, true, true, false, false, false, false, false, true);
	EXPECT_EQ(FInputChord(FKeyEvent(EKeys::B, State)), FInputChord(CtrlShift, EKeys::B));
}

TEST(InputChord, ExtraOrMissingModifierIsAnotherChord)
{
	const FInputChord Chord(CtrlShift, EKeys::B);
	EXPECT_NE(Chord, FInputChord(CtrlShift | EModifierKey::Alt, EKeys::B));
	EXPECT_NE(Chord, FInputChord(CtrlShift | EModifierKey::Command, EKeys::B));
	EXPECT_NE(Chord, FInputChord(EModifierKey::Control, EKeys::B));
	EXPECT_NE(Chord, FInputChord(CtrlShift, EKeys::C));
}

TEST(InputChord, ModifierAloneIsNoValidChord)
{
	EXPECT_FALSE(FInputChord(EKeys::LeftShift).IsValidChord());
	EXPECT_FALSE(FInputChord().IsValidChord());
	EXPECT_TRUE(FInputChord(EKeys::Delete).IsValidChord());
}

TEST(InputChord, IsReadAsKeysJoinedByPlus)
{
	EXPECT_EQ(FInputChord(CtrlShift, EKeys::B).GetInputText().ToString(), TEXT("Ctrl+Shift+B"));
	EXPECT_EQ(FInputChord(EModifierKey::Control, EKeys::NumPadFive).GetInputText().ToString(), TEXT("Ctrl+Num 5"));
	EXPECT_EQ(FInputChord(EKeys::F, true, true, true, true).GetInputText().ToString(), TEXT("Ctrl+Alt+Shift+Cmd+F"));
	EXPECT_EQ(FInputChord(EModifierKey::Alt, EKeys::Add).GetInputText().ToString(), TEXT("Alt+Num +"));
	EXPECT_TRUE(FInputChord().GetInputText().IsEmpty());
	EXPECT_TRUE(FInputChord(EKeys::LeftShift).GetInputText().IsEmpty());
}

TEST(InputChord, BothFormsAreRead)
{
	const struct
	{
		const TCHAR* Text;
		FInputChord Chord;
	} Cases[] = {
		{TEXT("Ctrl+Shift+B"), FInputChord(CtrlShift, EKeys::B)},
		{TEXT("  shift + ctrl + b "), FInputChord(CtrlShift, EKeys::B)},
		{TEXT("Ctrl+Num 5"), FInputChord(EModifierKey::Control, EKeys::NumPadFive)},
		{TEXT("Ctrl+NumPadFive"), FInputChord(EModifierKey::Control, EKeys::NumPadFive)},
		{TEXT("Num +"), FInputChord(EKeys::Add)},
		{TEXT("Alt+Num +"), FInputChord(EModifierKey::Alt, EKeys::Add)},
		{TEXT("Delete"), FInputChord(EKeys::Delete)},
		{TEXT(""), FInputChord()},
	};
	for (const auto& Case : Cases)
	{
		FInputChord Chord(EKeys::Z);
		EXPECT_TRUE(FInputChord::FromString(Case.Text, Chord)) << FString(Case.Text);
		EXPECT_EQ(Chord, Case.Chord) << FString(Case.Text);
	}
}

TEST(InputChord, WhatIsNoChordIsRefused)
{
	for (const TCHAR* Text : {TEXT("Ctrl"), TEXT("Ctrl+"), TEXT("Ctrl+Turbo"), TEXT("Ctrl+Ctrl+B"), TEXT("B+Ctrl"),
			 TEXT("Ctrl++B"), TEXT("Left Shift"), TEXT("Hyper+B")})
	{
		FInputChord Chord(EKeys::Z);
		EXPECT_FALSE(FInputChord::FromString(Text, Chord)) << FString(Text);
		EXPECT_EQ(Chord, FInputChord(EKeys::Z));
	}
}

RC_GTEST_PROP(InputChord, EveryChordIsReadBackFromBothForms, ())
{
	const TArray<FKey> Keys = {EKeys::B, EKeys::Zero, EKeys::NumPadZero, EKeys::Add, EKeys::Subtract, EKeys::Hyphen,
		EKeys::Equals, EKeys::F12, EKeys::SpaceBar, EKeys::PageUp, EKeys::Backslash, EKeys::LeftMouseButton};
	const FKey Key = Keys[*rc::gen::inRange(0, Keys.Num())];
	const auto Flag = [] { return *rc::gen::arbitrary<bool>(); };
	const FInputChord Chord(Key, Flag(), Flag(), Flag(), Flag());
	FInputChord Read;
	RC_ASSERT(FInputChord::FromString(Chord.ToString(), Read));
	RC_ASSERT(Read == Chord);
	Read = FInputChord();
	RC_ASSERT(FInputChord::FromString(Chord.GetInputText().ToString(), Read));
	RC_ASSERT(Read == Chord);
}
}
