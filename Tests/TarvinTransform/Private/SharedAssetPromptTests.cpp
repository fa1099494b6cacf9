// SPDX-License-Identifier: MIT
#include "ModuleFixture.h"
#include "TarvinSharedAssetPrompt.h"

#include "Core/Text.h"
#include "Host/Slate/PseudoTerminal.h"
#include "Slate/Box.h"
#include "Slate/BoxPanel.h"
#include "Slate/CheckBox.h"
#include "Slate/CustomDialog.h"
#include "Slate/SlateApplication.h"
#include "Slate/TerminalBackend.h"
#include "Slate/TextBlock.h"

namespace
{
using EChoice = ETarvinSharedAssetChoice;
using FTexts = std::vector<std::string>;

constexpr const char* SharedBody =
	"'Rock' is also used by 3 other actor(s).\n\nBaking in place changes those actors too.";
constexpr const char* ConflictBody = "'Rock' appears in the selection with two different rotation/scale values.\n\n"
									 "One mesh cannot be two shapes, so only a duplicate is possible.";
constexpr const char* BoxLabel = "Apply this answer to the remaining assets";

FTexts ToTexts(const TArray<FString>& Strings)
{
	FTexts Result;
	for (const FString& String : Strings)
	{
		Result.push_back(Utf8(String));
	}
	return Result;
}

class SharedAssetPrompt : public FModuleTest
{
protected:
	EChoice Ask(bool bInPlaceAllowed, int32 OtherUsers = 3)
	{
		return TarvinSharedAssetPrompt::Ask(MakeMesh(TEXT("Rock")), OtherUsers, bInPlaceAllowed, &bApplyToRest);
	}

	/// Asks, and lets somebody act on the open dialog.
	EChoice Ask(bool bInPlaceAllowed, FHeadlessSlateBackend::FResponder Responder)
	{
		Backend->RespondOnce(std::move(Responder));
		return Ask(bInPlaceAllowed);
	}

	EChoice AskAndPress(bool bInPlaceAllowed, int32 Button)
	{
		return Ask(bInPlaceAllowed, [Button](SCustomDialog& Dialog) { EXPECT_TRUE(Dialog.PressButton(Button)); });
	}

	static SCheckBox& Box(SCustomDialog& Dialog) { return *FindWidgets<SCheckBox>(Dialog)[0]; }

	static void Press(const FKey& Key)
	{
		FSlateApplication::Get().ProcessKeyDownEvent(FKeyEvent(Key, FModifierKeysState()));
	}

	const FHeadlessSlateBackend::FShownDialog& Shown() const { return Backend->GetShownDialogs().Last(); }

	bool bApplyToRest = false;
};

TEST_F(SharedAssetPrompt, SharedAssetIsAskedAboutInTheseWords)
{
	Ask(true);
	EXPECT_EQ(Utf8(Shown().Title), "Morvel Mesh Transform");
	EXPECT_EQ(ToTexts(Shown().Texts), (FTexts{SharedBody, BoxLabel}));
	EXPECT_EQ(ToTexts(Shown().ButtonTexts), (FTexts{"Create new asset", "Apply to all", "Cancel"}));
}

TEST_F(SharedAssetPrompt, AssetInTwoShapesIsAskedAboutInTheseWords)
{
	Ask(false);
	EXPECT_EQ(Utf8(Shown().Title), "Morvel Mesh Transform");
	EXPECT_EQ(ToTexts(Shown().Texts), (FTexts{ConflictBody, BoxLabel}));
	EXPECT_EQ(ToTexts(Shown().ButtonTexts), (FTexts{"Create new asset", "Cancel"}));
}

TEST_F(SharedAssetPrompt, NumberIsWrittenInTheCurrentCultureAndTheNameAsItIs)
{
	UStaticMesh* const Odd = MakeMesh(TEXT("{1} of {0}"));
	ASSERT_TRUE(FTextLocalization::Get().SetCurrentCulture(TEXT("de")));
	TarvinSharedAssetPrompt::Ask(Odd, 12345, true, &bApplyToRest);
	FTextLocalization::Get().SetCurrentCulture(TEXT("en"));
	EXPECT_EQ(Utf8(Shown().Texts[0]),
		"'{1} of {0}' is also used by 12.345 other actor(s).\n\nBaking in place changes those actors too.");
}

TEST_F(SharedAssetPrompt, EveryTextCanBeTranslated)
{
	FTextLocalization& Localization = FTextLocalization::Get();
	const std::pair<const TCHAR*, const TCHAR*> Translations[] = {{TEXT("SharedTitle"), TEXT("Titel")},
		{TEXT("SharedBody"), TEXT("{1} nutzen {0}")}, {TEXT("ConflictBody"), TEXT("{0} doppelt")},
		{TEXT("ApplyToRest"), TEXT("Immer")}, {TEXT("Duplicate"), TEXT("Neu")}, {TEXT("ApplyToAll"), TEXT("Alle")},
		{TEXT("Cancel"), TEXT("Abbruch")}};
	for (const auto& [Key, Text] : Translations)
	{
		Localization.AddText(TEXT("de"), TEXT("TarvinTransform"), Key, Text);
	}
	ASSERT_TRUE(Localization.SetCurrentCulture(TEXT("de")));
	Ask(true);
	const FHeadlessSlateBackend::FShownDialog Shared = Shown();
	Ask(false);
	Localization.SetCurrentCulture(TEXT("en"));
	Localization.RemoveTexts(TEXT("de"));
	EXPECT_EQ(Utf8(Shared.Title), "Titel");
	EXPECT_EQ(ToTexts(Shared.Texts), (FTexts{"3 nutzen Rock", "Immer"}));
	EXPECT_EQ(ToTexts(Shared.ButtonTexts), (FTexts{"Neu", "Alle", "Abbruch"}));
	EXPECT_EQ(Utf8(Shown().Texts[0]), "Rock doppelt");
}

TEST_F(SharedAssetPrompt, ContentIsAtMost460WideWithRoomBelowTheWrappedBody)
{
	Ask(true,
		[](SCustomDialog& Dialog)
		{
			ASSERT_EQ(FindWidgets<SBox>(Dialog).Num(), 1);
			EXPECT_EQ(FindWidgets<SBox>(Dialog)[0]->GetMaxDesiredWidth(), 460.0f);
			EXPECT_TRUE(FindWidgets<STextBlock>(Dialog)[0]->GetAutoWrapText());
			const TArray<TSharedRef<SVerticalBox>> Panels = FindWidgets<SVerticalBox>(*Dialog.GetDialogContent());
			ASSERT_EQ(Panels.Num(), 1);
			ASSERT_EQ(Panels[0]->GetSlots().Num(), 2);
			EXPECT_EQ(Panels[0]->GetSlots()[0].GetPadding(), FMargin(0.0f, 0.0f, 0.0f, 12.0f));
		});
	EXPECT_EQ(Backend->GetShownDialogs().Num(), 1);
}

TEST_F(SharedAssetPrompt, FirstButtonIsPrimaryFocusedAndConfirmsAndTheLastOneCancels)
{
	for (const bool bInPlaceAllowed : {true, false})
	{
		Ask(bInPlaceAllowed,
			[bInPlaceAllowed](SCustomDialog& Dialog)
			{
				const TArray<SCustomDialog::FButton>& Buttons = Dialog.GetButtons();
				ASSERT_EQ(Buttons.Num(), bInPlaceAllowed ? 3 : 2);
				EXPECT_EQ(Buttons[0].ButtonRole, EButtonRole::Confirm);
				EXPECT_EQ(Buttons.Last().ButtonRole, EButtonRole::Cancel);
				for (int32 Index = 0; Index < Buttons.Num(); ++Index)
				{
					EXPECT_EQ(Buttons[Index].bIsPrimary, Index == 0);
					EXPECT_EQ(Buttons[Index].bShouldFocus, Index == 0);
				}
				EXPECT_TRUE(Dialog.GetButtonWidget(0)->HasKeyboardFocus());
				EXPECT_TRUE(!bInPlaceAllowed || Buttons[1].ButtonRole == EButtonRole::None);
			});
	}
}

TEST_F(SharedAssetPrompt, PressedButtonIsTheAnswer)
{
	EXPECT_EQ(AskAndPress(true, 0), EChoice::Duplicate);
	EXPECT_EQ(AskAndPress(true, 1), EChoice::ApplyToAll);
	EXPECT_EQ(AskAndPress(true, 2), EChoice::Cancel);
	EXPECT_EQ(AskAndPress(false, 0), EChoice::Duplicate);
	EXPECT_EQ(AskAndPress(false, 1), EChoice::Cancel) << "never ApplyToAll";
	EXPECT_FALSE(bApplyToRest);
}

TEST_F(SharedAssetPrompt, EnterCreatesANewAssetAndEscapeCancels)
{
	EXPECT_EQ(Ask(true, [](SCustomDialog&) { Press(EKeys::Enter); }), EChoice::Duplicate);
	EXPECT_EQ(Ask(true, [](SCustomDialog&) { Press(EKeys::Escape); }), EChoice::Cancel);
	EXPECT_EQ(Ask(false, [](SCustomDialog&) { Press(EKeys::Escape); }), EChoice::Cancel);
}

TEST_F(SharedAssetPrompt, ClosedWindowIsACancelThatStillReportsTheBox)
{
	const auto Close = [](SCustomDialog& Dialog) { Dialog.RequestDestroyWindow(); };
	EXPECT_EQ(Ask(true, Close), EChoice::Cancel);
	EXPECT_FALSE(bApplyToRest);
	const auto TickAndClose = [](SCustomDialog& Dialog)
	{
		Box(Dialog).ToggleCheckedState();
		Dialog.RequestDestroyWindow();
	};
	EXPECT_EQ(Ask(true, TickAndClose), EChoice::Cancel);
	EXPECT_TRUE(bApplyToRest);
}

TEST_F(SharedAssetPrompt, TickedBoxIsReportedWhateverTheAnswer)
{
	for (const int32 Button : {0, 1, 2})
	{
		bApplyToRest = false;
		Ask(true,
			[Button](SCustomDialog& Dialog)
			{
				EXPECT_FALSE(Box(Dialog).IsChecked());
				Box(Dialog).ToggleCheckedState();
				Dialog.PressButton(Button);
			});
		EXPECT_TRUE(bApplyToRest);
	}
}

TEST_F(SharedAssetPrompt, BoxStartsAsTheFlagIsAndTakesItsTickBack)
{
	bApplyToRest = true;
	Ask(true, [](SCustomDialog& Dialog) { EXPECT_TRUE(Box(Dialog).IsChecked()); });
	EXPECT_TRUE(bApplyToRest);
	Ask(true, [](SCustomDialog& Dialog) { Box(Dialog).ToggleCheckedState(); });
	EXPECT_FALSE(bApplyToRest);
}

TEST_F(SharedAssetPrompt, NothingOfTheDialogOutlivesTheQuestion)
{
	TWeakPtr<SWidget> Widget;
	Ask(true, [&Widget](SCustomDialog& Dialog) { Widget = TSharedPtr<SWidget>(FindWidgets<SCheckBox>(Dialog)[0]); });
	EXPECT_FALSE(Widget.IsValid());
}

/// The same question on a terminal at which somebody types.
class PromptOnATerminal : public SharedAssetPrompt
{
protected:
	/// Asks; the answers are typed one by one. Returns the choice, and leaves what was on the screen in `Screen`.
	EChoice AskTyping(std::deque<std::string> Typed, bool bInPlaceAllowed)
	{
		FPseudoTerminal Terminal(std::move(Typed), 100);
		FSlateApplication::Shutdown();
		FSlateApplication::Create(MakeShared<FTerminalSlateBackend>(Terminal.Descriptor(), Terminal.Descriptor()));
		const EChoice Choice = Ask(bInPlaceAllowed);
		FSlateApplication::Shutdown();
		Screen = Terminal.Finish();
		EXPECT_EQ(Terminal.AnswersLeft(), 0u);
		return Choice;
	}

	bool IsOnScreen(const char* Text) const { return Screen.find(Text) != std::string::npos; }

	std::string Screen;
};

TEST_F(PromptOnATerminal, SharedAssetIsANumberedChoice)
{
	EXPECT_EQ(AskTyping({"2\n"}, true), EChoice::ApplyToAll);
	for (const char* Line :
		{"Morvel Mesh Transform", "'Rock' is also used by 3 other actor(s).\r\n\r\nBaking in place changes",
			"  a) [ ] Apply this answer to the remaining assets", "  1) Create new asset", "  2) Apply to all",
			"  3) Cancel"})
	{
		EXPECT_TRUE(IsOnScreen(Line)) << Line << " is not on\n" << Screen;
	}
	EXPECT_FALSE(bApplyToRest);
}

TEST_F(PromptOnATerminal, EveryNumberIsItsButton)
{
	EXPECT_EQ(AskTyping({"1\n"}, true), EChoice::Duplicate);
	EXPECT_EQ(AskTyping({"3\n"}, true), EChoice::Cancel);
	EXPECT_EQ(AskTyping({"1\n"}, false), EChoice::Duplicate);
	EXPECT_EQ(AskTyping({"2\n"}, false), EChoice::Cancel);
	EXPECT_FALSE(IsOnScreen("Apply to all"));
	EXPECT_TRUE(IsOnScreen("One mesh cannot be two shapes, so only a duplicate is possible."));
}

TEST_F(PromptOnATerminal, EmptyLineCreatesANewAsset)
{
	EXPECT_EQ(AskTyping({"\n"}, true), EChoice::Duplicate);
}

TEST_F(PromptOnATerminal, TickIsTypedBeforeTheAnswer)
{
	EXPECT_EQ(AskTyping({"a\n", "2\n"}, true), EChoice::ApplyToAll);
	EXPECT_TRUE(bApplyToRest);
	EXPECT_TRUE(IsOnScreen("  a) [x] Apply this answer to the remaining assets"));
}

TEST_F(PromptOnATerminal, EndOfTheInputIsACancelThatKeepsTheTick)
{
	EXPECT_EQ(AskTyping({"a\n", "\x04"}, true), EChoice::Cancel);
	EXPECT_TRUE(bApplyToRest);
}

TEST_F(PromptOnATerminal, WrongAnswerIsAskedAgain)
{
	EXPECT_EQ(AskTyping({"3\n", "2\n"}, false), EChoice::Cancel);
	EXPECT_TRUE(IsOnScreen("There is no '3'."));
}
}
