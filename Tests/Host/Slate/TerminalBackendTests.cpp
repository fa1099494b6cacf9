// SPDX-License-Identifier: MIT
#include "PromptDialog.h"
#include "PseudoTerminal.h"
#include "Slate/EditableText.h"
#include "Slate/SlateApplication.h"
#include "Slate/SlateNotificationManager.h"
#include "Slate/SlateProgress.h"
#include "Slate/TerminalBackend.h"

#include <algorithm>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace
{
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

/// The application on a terminal, at which somebody answers.
class FTerminalUser
{
public:
	explicit FTerminalUser(std::deque<std::string> Answers, int Columns = 80)
		: Terminal(std::move(Answers), Columns)
		, Backend(MakeShared<FTerminalSlateBackend>(Terminal.Descriptor(), Terminal.Descriptor()))
	{
		FSlateApplication::Create(Backend);
	}
	~FTerminalUser()
	{
		FSlateApplication::Shutdown();
		FSlateNotificationManager::Get().Clear();
	}

	FPseudoTerminal Terminal;
	TSharedRef<FTerminalSlateBackend> Backend;
};

/// What stands on a screen that was sent these bytes: lines without the echoes' carriage returns, bars overwritten.
std::vector<std::string> LinesOnScreen(const std::string& Bytes)
{
	std::vector<std::string> Lines(1);
	std::size_t Column = 0;
	for (const char Byte : Bytes)
	{
		if (Byte == '\n')
		{
			Lines.emplace_back();
			Column = 0;
		}
		else if (Byte == '\r')
		{
			Column = 0;
		}
		else
		{
			Lines.back().resize(std::max(Lines.back().size(), Column + 1), ' ');
			Lines.back()[Column++] = Byte;
		}
	}
	for (std::string& Line : Lines)
	{
		Line.erase(Line.find_last_not_of(' ') + 1);
	}
	return Lines;
}

TEST(TerminalDialog, NumberPressesItsButton)
{
	for (const int32 Index : {0, 1, 2})
	{
		FTerminalUser User({std::to_string(Index + 1) + "\n"});
		EXPECT_EQ(FPromptDialog().Show(), Index);
	}
}

TEST(TerminalDialog, ShowsTitleTextsFieldsAndNumberedButtons)
{
	FTerminalUser User({"2\n"});
	FPromptDialog().Show();
	EXPECT_THAT(LinesOnScreen(User.Terminal.Finish()),
		testing::ElementsAre("", "Shared mesh", "", "'Crate' is also used.", "", "Keep it?", "", "  a) [ ] For all",
			"  1) Copy", "  2) In place", "  3) Stop", "Choice [1-3, Enter for 1, a to tick]: 2", ""));
}

TEST(TerminalDialog, EnterAlonePressesTheDefaultButton)
{
	FTerminalUser User({"\n"});
	EXPECT_EQ(FPromptDialog().Show(), 0);
}

TEST(TerminalDialog, EndOfInputClosesTheDialog)
{
	FTerminalUser User({"\x04"});
	FPromptDialog Prompt;
	EXPECT_LT(Prompt.Show(), 0);
	EXPECT_FALSE(Prompt.Check->IsChecked());
}

TEST(TerminalDialog, LetterTicksAndUnticksTheCheckBox)
{
	FTerminalUser User({"a\n", "a\n", "a\n", "1\n"});
	FPromptDialog Prompt;
	EXPECT_EQ(Prompt.Show(), 0);
	EXPECT_TRUE(Prompt.Check->IsChecked());
	EXPECT_THAT(User.Terminal.Finish(), HasSubstr("  a) [x] For all\r\nChoice"));
}

TEST(TerminalDialog, TickIsKeptWhenTheDialogIsClosed)
{
	FTerminalUser User({"a\n", "\x04"});
	FPromptDialog Prompt;
	EXPECT_LT(Prompt.Show(), 0);
	EXPECT_TRUE(Prompt.Check->IsChecked());
}

TEST(TerminalDialog, UnknownAnswersAreAskedAgain)
{
	FTerminalUser User({"4\n", "0\n", "-1\n", "b\n", "ab\n", "copy\n", " 3 \n"});
	EXPECT_EQ(FPromptDialog().Show(), 2);
	EXPECT_THAT(User.Terminal.Finish(), HasSubstr("There is no 'copy'.\r\nChoice"));
	EXPECT_EQ(User.Terminal.AnswersLeft(), 0u);
}

TEST(TerminalDialog, TextFieldsAreTyped)
{
	FTerminalUser User({"a Yard 7\n", "1\n"});
	TArray<FString> Committed;
	const TSharedRef<SEditableTextBox> Field =
		SNew(SEditableTextBox)
			.HintText(FText::FromString(TEXT("Name")))
			.Text(FText::FromString(TEXT("Old")))
			.OnTextCommitted(FOnTextCommitted::CreateLambda(
				[&Committed](const FText& Text, ETextCommit) { Committed.Add(Text.ToString()); }));
	const TSharedRef<SCustomDialog> Dialog =
		SNew(SCustomDialog)
			.Title(FText::FromString(TEXT("Rename")))
			.Buttons({SCustomDialog::FButton(FText::FromString(TEXT("Done")))})[Field];
	EXPECT_EQ(Dialog->ShowModal(), 0);
	EXPECT_THAT(Committed, testing::ElementsAre(FString(TEXT("Yard 7"))));
	const std::string Screen = User.Terminal.Finish();
	EXPECT_THAT(Screen, HasSubstr("  a) Name: Old\r\n"));
	EXPECT_THAT(Screen, HasSubstr("  a) Name: Yard 7\r\n"));
	EXPECT_THAT(Screen, HasSubstr("Choice [1, a and a text]: "));
}

TEST(TerminalDialog, WithoutADefaultEnterAsksAgain)
{
	FTerminalUser User({"\n", "1\n"});
	const TSharedRef<SCustomDialog> Dialog = SNew(SCustomDialog)
												 .Title(FText::FromString(TEXT("Plain")))
												 .Buttons({SCustomDialog::FButton(FText::FromString(TEXT("Fine")))});
	EXPECT_EQ(Dialog->ShowModal(), 0);
	EXPECT_THAT(User.Terminal.Finish(), HasSubstr("Please choose.\r\n"));
}

TEST(TerminalDialog, LongTextsAreBrokenAtBlanks)
{
	FTerminalUser User({"1\n"}, 30);
	FPromptDialog(TEXT("The crate appears in the selection with two different values.")).Show();
	const std::vector<std::string> Lines = LinesOnScreen(User.Terminal.Finish());
	EXPECT_THAT(Lines, testing::IsSupersetOf({"The crate appears in the", "selection with two different", "values."}));
}

TEST(TerminalDialog, NamesCannotSteerTheTerminal)
{
	FTerminalUser User({"1\n"});
	FPromptDialog(TEXT("'\x1B[2J\x9B' is used\x07")).Show();
	const std::string Screen = User.Terminal.Finish();
	EXPECT_THAT(Screen, HasSubstr("'\\x1b[2J\\x9b' is used\\x07"));
	EXPECT_THAT(Screen, Not(HasSubstr("\x1B")));
	EXPECT_THAT(Screen, Not(HasSubstr("\x07")));
}

TEST(TerminalDialog, OptionsAnswerWithoutAskingAnybody)
{
	FTerminalUser User({});
	User.Backend->SetAnswerSource(
		[](SCustomDialog& Dialog)
		{
			FindWidgets<SCheckBox>(Dialog)[0]->ToggleCheckedState();
			return Dialog.PressButton(1);
		});
	FPromptDialog Prompt;
	EXPECT_EQ(Prompt.Show(), 1);
	EXPECT_TRUE(Prompt.Check->IsChecked());
	EXPECT_EQ(User.Terminal.Finish(), "");
}

TEST(TerminalDialog, OptionsThatSayNothingLeaveTheQuestionToTheUser)
{
	FTerminalUser User({"3\n"});
	User.Backend->SetAnswerSource([](SCustomDialog&) { return false; });
	EXPECT_EQ(FPromptDialog().Show(), 2);
}

TEST(TerminalDialog, OptionsMayCloseTheDialog)
{
	FTerminalUser User({});
	User.Backend->SetAnswerSource(
		[](SCustomDialog& Dialog)
		{
			Dialog.RequestDestroyWindow();
			return true;
		});
	EXPECT_LT(FPromptDialog().Show(), 0);
}

/// Both ends of a pipe.
struct FPipe
{
	FPipe() { EXPECT_EQ(::pipe(Ends), 0); }
	~FPipe()
	{
		CloseWriter();
		::close(Ends[0]);
	}
	void CloseWriter()
	{
		if (Ends[1] >= 0)
		{
			::close(std::exchange(Ends[1], -1));
		}
	}
	std::string ReadAll()
	{
		CloseWriter();
		std::string All;
		char Bytes[256];
		for (ssize_t Count = 0; (Count = ::read(Ends[0], Bytes, sizeof Bytes)) > 0;)
		{
			All.append(Bytes, static_cast<std::size_t>(Count));
		}
		return All;
	}
	int Ends[2] = {-1, -1};
};

/// The application on pipes, as in a script.
class FPipedProgram
{
public:
	explicit FPipedProgram(const std::string& Typed)
	{
		EXPECT_EQ(::write(Input.Ends[1], Typed.data(), Typed.size()), static_cast<ssize_t>(Typed.size()));
		Input.CloseWriter();
		FSlateApplication::Create(MakeShared<FTerminalSlateBackend>(Input.Ends[0], Output.Ends[1]));
	}
	~FPipedProgram()
	{
		FSlateApplication::Shutdown();
		FSlateNotificationManager::Get().Clear();
	}

	FPipe Input;
	FPipe Output;
};

TEST(TerminalDialog, PipedAnswersAreReadOnePerLine)
{
	FPipedProgram Program("a\n2\n3");
	FPromptDialog First;
	EXPECT_EQ(First.Show(), 1);
	EXPECT_TRUE(First.Check->IsChecked());
	EXPECT_EQ(FPromptDialog().Show(), 2) << "the last line needs no line break";
	EXPECT_LT(FPromptDialog().Show(), 0) << "nothing is left to read";
}

TEST(TerminalDialog, EndlessLineIsRefusedAsOne)
{
	FPipedProgram Program(std::string(50000, '1') + "\n2\n");
	EXPECT_EQ(FPromptDialog().Show(), 1);
}

TEST(TerminalProgress, BarIsDrawnOverItselfAndErased)
{
	FTerminalUser User({});
	const TSharedRef<FSlateProgress> Work =
		FSlateApplication::Get().OpenProgress(FText::FromString(TEXT("Building meshes")), false);
	Work->Update(0.25, FText::FromString(TEXT("Crate")));
	Work->Update(1.0, FText());
	Work->Close();
	const std::string Screen = User.Terminal.Finish();
	EXPECT_THAT(Screen, HasSubstr("\r[------------------------]   0% Building meshes"));
	EXPECT_THAT(Screen, HasSubstr("\r[######------------------]  25% Crate          "));
	EXPECT_THAT(Screen, HasSubstr("\r[########################] 100% Building meshes"));
	EXPECT_THAT(LinesOnScreen(Screen), testing::ElementsAre(""));
}

TEST(TerminalProgress, UnchangedBarIsNotDrawnAgain)
{
	FTerminalUser User({});
	const TSharedRef<FSlateProgress> Work =
		FSlateApplication::Get().OpenProgress(FText::FromString(TEXT("Building")), false);
	Work->Update(0.251, FText());
	Work->Update(0.252, FText());
	Work->Update(0.253, FText());
	Work->Close();
	const std::string Screen = User.Terminal.Finish();
	EXPECT_EQ(Screen.find(" 25%"), Screen.rfind(" 25%"));
}

TEST(TerminalProgress, BarFitsIntoTheTerminal)
{
	FTerminalUser User({}, 40);
	const TSharedRef<FSlateProgress> Work = FSlateApplication::Get().OpenProgress(
		FText::FromString(TEXT("A title that is much longer than the terminal\nis wide")), false);
	Work->Close();
	// The first bar: 39 characters between two carriage returns, on one line.
	const std::string Screen = User.Terminal.Finish();
	EXPECT_EQ(Screen.find('\r', 1), 40u);
	EXPECT_THAT(Screen, Not(HasSubstr("\n")));
}

TEST(TerminalProgress, OuterBarComesBackAfterTheInnerOne)
{
	FTerminalUser User({});
	const TSharedRef<FSlateProgress> Outer =
		FSlateApplication::Get().OpenProgress(FText::FromString(TEXT("Outer")), false);
	const TSharedRef<FSlateProgress> Inner =
		FSlateApplication::Get().OpenProgress(FText::FromString(TEXT("Inner")), false);
	Inner->Close();
	EXPECT_THAT(LinesOnScreen(User.Terminal.Finish()), testing::ElementsAre("[------------------------]   0% Outer"));
	Outer->Close();
}

TEST(TerminalProgress, DialogAndNotificationGoAboveTheBar)
{
	FTerminalUser User({"1\n"});
	const TSharedRef<FSlateProgress> Work =
		FSlateApplication::Get().OpenProgress(FText::FromString(TEXT("Building")), false);
	FSlateNotificationManager::Get().AddNotification(FNotificationInfo(FText::FromString(TEXT("Saved"))));
	FPromptDialog().Show();
	Work->Close();
	const std::vector<std::string> Lines = LinesOnScreen(User.Terminal.Finish());
	EXPECT_EQ(Lines[0], "Saved");
	EXPECT_EQ(Lines[1], "");
	EXPECT_EQ(Lines[2], "Shared mesh");
	EXPECT_EQ(Lines.back(), "");
}

TEST(TerminalProgress, NothingIsDrawnWhereThereIsNoTerminal)
{
	FPipedProgram Program("");
	const TSharedRef<FSlateProgress> Work =
		FSlateApplication::Get().OpenProgress(FText::FromString(TEXT("Building")), false);
	Work->Update(0.5, FText());
	Work->Close();
	EXPECT_EQ(Program.Output.ReadAll(), "");
}

TEST(TerminalNotifications, AreLines)
{
	FPipedProgram Program("");
	FNotificationInfo Info(FText::FromString(TEXT("Baked 1 mesh(es) \x00B7 1 new asset(s)")));
	FSlateNotificationManager::Get().AddNotification(Info);
	const TSharedPtr<SNotificationItem> Saving =
		FSlateNotificationManager::Get().AddNotification(FNotificationInfo(FText::FromString(TEXT("Saving"))));
	Saving->SetCompletionState(SNotificationItem::CS_Fail);
	EXPECT_EQ(Program.Output.ReadAll(), "Baked 1 mesh(es) \xC2\xB7 1 new asset(s)\nSaving\n[failed] Saving\n");
}
}
