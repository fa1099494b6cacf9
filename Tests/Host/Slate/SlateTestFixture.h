// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/HeadlessBackend.h"
#include "Slate/SlateApplication.h"
#include "Slate/SlateNotificationManager.h"

#include <gtest/gtest.h>

/// A widget application on a back end without a user, for the length of one test.
class FSlateTest : public testing::Test
{
protected:
	FSlateTest()
		: Backend(MakeShared<FHeadlessSlateBackend>())
	{
		FSlateApplication::Create(Backend);
	}
	~FSlateTest() override
	{
		FSlateApplication::Shutdown();
		FSlateNotificationManager::Get().Clear();
		FSlateNotificationManager::Get().SetClock({});
	}

	static FSlateApplication& App() { return FSlateApplication::Get(); }

	/// Presses a key once; whether something handled it.
	static bool Press(const FKey& Key, EModifierKey::Type Modifiers = EModifierKey::None, bool bRepeat = false)
	{
		return App().ProcessKeyDownEvent(FKeyEvent(Key, FModifierKeysState::FromMask(Modifiers), 0, bRepeat));
	}

	TSharedRef<FHeadlessSlateBackend> Backend;
};
