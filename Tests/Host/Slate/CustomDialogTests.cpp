// SPDX-License-Identifier: MIT
#include "Core/Log.h"
#include "CoreUObject/GarbageCollector.h"
#include "PromptDialog.h"
#include "Slate/EditableText.h"
#include "SlateTestFixture.h"
#include "Support/ThrowingAssertions.h"

#include <gmock/gmock.h>

namespace
{
using CustomDialog = FSlateTest;

TEST_F(CustomDialog, ShowModalReturnsTheIndexOfThePressedButton)
{
	for (const int32 Index : {0, 1, 2})
	{
		FPromptDialog Prompt;
		Backend->RespondOnce([Index](SCustomDialog& Dialog) { EXPECT_TRUE(Dialog.PressButton(Index)); });
		EXPECT_EQ(Prompt.Show(), Index);
		EXPECT_THAT(Prompt.Clicked, testing::ElementsAre(Index));
	}
}

TEST_F(CustomDialog, ClosingTheWindowReturnsANegativeValue)
{
	FPromptDialog Prompt;
	Backend->RespondOnce([](SCustomDialog& Dialog) { Dialog.RequestDestroyWindow(); });
	EXPECT_LT(Prompt.Show(), 0);
	EXPECT_TRUE(Prompt.Clicked.IsEmpty());
}

TEST_F(CustomDialog, BackEndThatReturnsEarlyClosesTheDialog)
{
	FPromptDialog Prompt;
	Backend->RespondOnce([](SCustomDialog&) {});
	EXPECT_LT(Prompt.Show(), 0);
	EXPECT_TRUE(Prompt.Dialog->IsClosed());
}

TEST_F(CustomDialog, BackEndSeesTitleTextsAndButtonsInOrder)
{
	FPromptDialog Prompt;
	Prompt.Show();
	ASSERT_EQ(Backend->GetShownDialogs().Num(), 1);
	const FHeadlessSlateBackend::FShownDialog& Shown = Backend->GetShownDialogs()[0];
	EXPECT_EQ(Shown.Title, TEXT("Shared mesh"));
	EXPECT_THAT(Shown.Texts,
		testing::ElementsAre(FString(TEXT("'Crate' is also used.\n\nKeep it?")), FString(TEXT("For all"))));
	EXPECT_THAT(Shown.ButtonTexts,
		testing::ElementsAre(FString(TEXT("Copy")), FString(TEXT("In place")), FString(TEXT("Stop"))));
}

TEST_F(CustomDialog, ContentAndButtonsAreOneTree)
{
	FPromptDialog Prompt;
	const TArray<TSharedRef<SButton>> Buttons = FindWidgets<SButton>(*Prompt.Dialog);
	ASSERT_EQ(Buttons.Num(), 3);
	EXPECT_TRUE(Buttons[0]->IsPrimary());
	EXPECT_FALSE(Buttons[1]->IsPrimary());
	EXPECT_FALSE(Buttons[2]->IsPrimary());
	EXPECT_EQ(Buttons[1], Prompt.Dialog->GetButtonWidget(1));
	EXPECT_EQ(FindWidgets<SBox>(*Prompt.Dialog)[0]->GetMaxDesiredWidth(), 460.0f);
	EXPECT_EQ(FindWidgets<SCheckBox>(*Prompt.Dialog).Num(), 1);
}

TEST_F(CustomDialog, ClickingAButtonWidgetPressesIt)
{
	FPromptDialog Prompt;
	Backend->RespondOnce([](SCustomDialog& Dialog) { Dialog.GetButtonWidget(1)->Click(); });
	EXPECT_EQ(Prompt.Show(), 1);
}

TEST_F(CustomDialog, CheckBoxKeepsItsStateHoweverTheDialogEnds)
{
	FPromptDialog Prompt;
	Backend->RespondOnce([&Prompt](SCustomDialog&) { Prompt.Check->ToggleCheckedState(); });
	EXPECT_LT(Prompt.Show(), 0);
	EXPECT_EQ(Prompt.Check->GetCheckedState(), ECheckBoxState::Checked);
}

TEST_F(CustomDialog, OnlyOneButtonCanBePressed)
{
	FPromptDialog Prompt;
	Backend->RespondOnce(
		[](SCustomDialog& Dialog)
		{
			EXPECT_FALSE(Dialog.PressButton(3));
			EXPECT_FALSE(Dialog.PressButton(-1));
			EXPECT_TRUE(Dialog.PressButton(2));
			EXPECT_FALSE(Dialog.PressButton(0));
		});
	EXPECT_EQ(Prompt.Show(), 2);
	EXPECT_THAT(Prompt.Clicked, testing::ElementsAre(2));
}

TEST_F(CustomDialog, DialogCanBeShownAgain)
{
	FPromptDialog Prompt;
	Backend->RespondOnce([](SCustomDialog& Dialog) { Dialog.PressButton(1); });
	EXPECT_EQ(Prompt.Show(), 1);
	EXPECT_LT(Prompt.Show(), 0);
}

TEST_F(CustomDialog, FocusGoesToTheFocusedButtonAndComesBack)
{
	const TSharedRef<SEditableText> Field = SNew(SEditableText);
	ASSERT_TRUE(App().SetKeyboardFocus(Field));
	FPromptDialog Prompt;
	TSharedPtr<SWidget> During;
	Backend->RespondOnce([&During](SCustomDialog&) { During = App().GetKeyboardFocusedWidget(); });
	Prompt.Show();
	EXPECT_EQ(During, Prompt.Dialog->GetButtonWidget(0).ToSharedPtr());
	EXPECT_EQ(App().GetKeyboardFocusedWidget(), Field.ToSharedPtr());
}

TEST_F(CustomDialog, KeysAnswerTheDialog)
{
	struct FCase
	{
		TArray<FKey> Keys;
		int32 Answer;
	};
	const FCase Cases[] = {
		{{EKeys::Enter}, 0},
		{{EKeys::SpaceBar}, 0},
		{{EKeys::Tab, EKeys::Enter}, 1},
		{{EKeys::Tab, EKeys::Tab, EKeys::SpaceBar}, 2},
		{{EKeys::Escape}, 2},
	};
	for (const FCase& Case : Cases)
	{
		FPromptDialog Prompt;
		Backend->RespondOnce(
			[&Case](SCustomDialog&)
			{
				for (const FKey& Key : Case.Keys)
				{
					EXPECT_TRUE(Press(Key));
				}
			});
		EXPECT_EQ(Prompt.Show(), Case.Answer);
	}
}

TEST_F(CustomDialog, TabReachesTheCheckBoxAndSpaceTicksIt)
{
	FPromptDialog Prompt;
	Backend->RespondOnce(
		[&Prompt](SCustomDialog&)
		{
			Press(EKeys::Tab, EModifierKey::Shift);
			EXPECT_TRUE(Prompt.Check->HasKeyboardFocus());
			Press(EKeys::SpaceBar);
			Press(EKeys::Enter);
		});
	EXPECT_EQ(Prompt.Show(), 0);
	EXPECT_TRUE(Prompt.Check->IsChecked());
}

TEST_F(CustomDialog, HeldKeyDoesNotAnswer)
{
	FPromptDialog Prompt;
	Backend->RespondOnce(
		[](SCustomDialog& Dialog)
		{
			EXPECT_TRUE(Press(EKeys::Enter, EModifierKey::None, true));
			EXPECT_TRUE(Press(EKeys::Escape, EModifierKey::None, true));
			EXPECT_FALSE(Dialog.IsClosed());
		});
	EXPECT_LT(Prompt.Show(), 0);
}

TEST_F(CustomDialog, EscapeClosesADialogWithoutACancellingButton)
{
	const TSharedRef<SCustomDialog> Notice = SNew(SCustomDialog)
												 .Title(FText::FromString(TEXT("Notice")))
												 .Buttons({SCustomDialog::FButton(FText::FromString(TEXT("Fine")))});
	Backend->RespondOnce([](SCustomDialog&) { EXPECT_TRUE(Press(EKeys::Escape)); });
	EXPECT_LT(Notice->ShowModal(), 0);
}

TEST_F(CustomDialog, DialogOverADialogTakesTheKeysAndGivesThemBack)
{
	FPromptDialog Outer;
	FPromptDialog Inner;
	Backend->RespondOnce(
		[&](SCustomDialog&)
		{
			EXPECT_EQ(Inner.Show(), 2);
			EXPECT_EQ(App().GetActiveModalDialog(), Outer.Dialog);
			Press(EKeys::Enter);
		});
	Backend->RespondOnce(
		[&](SCustomDialog&)
		{
			EXPECT_EQ(App().GetActiveModalDialog(), Inner.Dialog);
			Press(EKeys::Escape);
		});
	EXPECT_EQ(Outer.Show(), 0);
	EXPECT_FALSE(App().GetActiveModalDialog().IsValid());
}

TEST_F(CustomDialog, ModalDialogIsSeenFromOutside)
{
	FPromptDialog Prompt;
	EXPECT_FALSE(App().IsModalOrProgressOpen());
	bool bDuring = false;
	Backend->RespondOnce([&bDuring](SCustomDialog&) { bDuring = App().IsModalOrProgressOpen(); });
	Prompt.Show();
	EXPECT_TRUE(bDuring);
	EXPECT_FALSE(App().IsModalOrProgressOpen());
}

TEST_F(CustomDialog, NothingIsCollectedWhileADialogIsUp)
{
	FPromptDialog Prompt;
	Backend->RespondOnce([](SCustomDialog&) { EXPECT_TRUE(FCollectionLock::IsLocked()); });
	Prompt.Show();
	EXPECT_FALSE(FCollectionLock::IsLocked());
	App().BeginNativeModal();
	EXPECT_TRUE(FCollectionLock::IsLocked());
	App().EndNativeModal();
	EXPECT_FALSE(FCollectionLock::IsLocked());
}

TEST_F(CustomDialog, ApplicationDoesNotEndUnderADialog)
{
	FPromptDialog Prompt;
	Backend->RespondOnce(
		[](SCustomDialog&)
		{
			const FThrowingAssertions Assertions;
			EXPECT_THROW(FSlateApplication::Shutdown(), FAssertionFailed);
		});
	Prompt.Show();
	EXPECT_TRUE(FSlateApplication::IsInitialized());
}

TEST(CustomDialogWithoutApplication, CountsAsClosedAndWarns)
{
	FCaptureLogSink Log;
	FPromptDialog Prompt;
	EXPECT_LT(Prompt.Show(), 0);
	ASSERT_EQ(Log.Records().Num(), 1);
	EXPECT_EQ(Log.Records()[0].Verbosity, ELogVerbosity::Warning);
	EXPECT_EQ(
		Log.Records()[0].Message, TEXT("Shared mesh: cannot be asked without a widget application -- taken as closed"));
}
}
