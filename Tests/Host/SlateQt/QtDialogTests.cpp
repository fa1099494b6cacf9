// SPDX-License-Identifier: MIT
#include "Host/Slate/PromptDialog.h"
#include "SlateQt/QtDialog.h"
#include "SlateQtTestFixture.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
class QtDialog : public FSlateQtTest
{
protected:
	QtDialog()
		: Prompt(std::make_unique<FPromptDialog>())
	{
	}

	/// Shows the prompt, does `Action` to it and gives its answer.
	int32 Ask(std::function<void(QWidget&)> Action)
	{
		WhenModalOpens(std::move(Action));
		return Prompt->Show();
	}

	static QPushButton& Button(const QWidget& Dialog, int Index)
	{
		auto* Found = Dialog.findChild<QPushButton*>(QStringLiteral("Button%1").arg(Index));
		EXPECT_NE(Found, nullptr);
		return *Found;
	}

	static QCheckBox& CheckBox(const QWidget& Dialog)
	{
		auto* Found = Dialog.findChild<QCheckBox*>(QStringLiteral("SCheckBox"));
		EXPECT_NE(Found, nullptr);
		return *Found;
	}

	std::unique_ptr<FPromptDialog> Prompt;
};

TEST_F(QtDialog, ShowsTitleBodyCheckBoxAndButtonsInTheirOrder)
{
	Ask(
		[](QWidget& Dialog)
		{
			EXPECT_EQ(Dialog.objectName(), QStringLiteral("SCustomDialog"));
			EXPECT_EQ(Dialog.windowTitle(), QStringLiteral("Shared mesh"));
			const auto* Body = Dialog.findChild<QLabel*>(QStringLiteral("STextBlock"));
			ASSERT_NE(Body, nullptr);
			EXPECT_EQ(Body->text(), QStringLiteral("'Crate' is also used.\n\nKeep it?"));
			EXPECT_EQ(CheckBox(Dialog).text(), QStringLiteral("For all"));
			EXPECT_FALSE(CheckBox(Dialog).isChecked());
			EXPECT_EQ(Button(Dialog, 0).text(), QStringLiteral("Copy"));
			EXPECT_EQ(Button(Dialog, 1).text(), QStringLiteral("In place"));
			EXPECT_EQ(Button(Dialog, 2).text(), QStringLiteral("Stop"));
			EXPECT_EQ(Dialog.findChildren<QPushButton*>().size(), 3);
			EXPECT_LT(Body->mapTo(&Dialog, QPoint()).y(), CheckBox(Dialog).mapTo(&Dialog, QPoint()).y());
			EXPECT_LT(Button(Dialog, 0).geometry().right(), Button(Dialog, 1).geometry().left());
			EXPECT_LT(Button(Dialog, 1).geometry().right(), Button(Dialog, 2).geometry().left());
			Dialog.close();
		});
}

TEST_F(QtDialog, FocusAndDefaultAreOnTheButtonThatAsksForThem)
{
	Ask(
		[](QWidget& Dialog)
		{
			EXPECT_TRUE(Button(Dialog, 0).hasFocus());
			EXPECT_TRUE(Button(Dialog, 0).isDefault());
			EXPECT_FALSE(Button(Dialog, 1).isDefault());
			EXPECT_FALSE(Button(Dialog, 2).isDefault());
			Dialog.close();
		});
}

TEST_F(QtDialog, ClickOnEachButtonIsItsAnswer)
{
	for (int Index = 0; Index < 3; ++Index)
	{
		EXPECT_EQ(Ask([Index](QWidget& Dialog) { ClickOn(Button(Dialog, Index)); }), Index);
	}
	EXPECT_EQ(Prompt->Clicked, (TArray<int32>{0, 1, 2}));
}

TEST_F(QtDialog, EnterPressesTheDefaultButton)
{
	EXPECT_EQ(Ask([](QWidget&) { Click(Qt::Key_Return); }), 0);
	EXPECT_EQ(Ask(
				  [](QWidget& Dialog)
				  {
					  CheckBox(Dialog).setFocus();
					  Click(Qt::Key_Enter, Qt::KeypadModifier);
				  }),
		0);
}

TEST_F(QtDialog, EnterPressesTheButtonThatHasTheFocus)
{
	EXPECT_EQ(Ask(
				  [](QWidget&)
				  {
					  Click(Qt::Key_Tab);
					  Click(Qt::Key_Return);
				  }),
		1);
	EXPECT_EQ(Prompt->Clicked, (TArray<int32>{1}));
}

TEST_F(QtDialog, SpacePressesTheButtonThatHasTheFocus)
{
	EXPECT_EQ(Ask(
				  [](QWidget&)
				  {
					  Click(Qt::Key_Backtab, Qt::ShiftModifier);
					  Click(Qt::Key_Space);
					  EXPECT_NE(QApplication::activeModalWidget(), nullptr);
					  Click(Qt::Key_Return);
				  }),
		0);
	EXPECT_TRUE(Prompt->Check->IsChecked());
}

TEST_F(QtDialog, EscapePressesTheCancellingButton)
{
	EXPECT_EQ(Ask([](QWidget&) { Click(Qt::Key_Escape); }), 2);
}

TEST_F(QtDialog, EscapeWithoutACancellingButtonClosesWithoutAnAnswer)
{
	const TSharedRef<SCustomDialog> Dialog =
		SNew(SCustomDialog).Buttons({SCustomDialog::FButton(FText::FromString(TEXT("Go")))});
	WhenModalOpens([](QWidget&) { Click(Qt::Key_Escape); });
	EXPECT_LT(Dialog->ShowModal(), 0);
}

TEST_F(QtDialog, ClosingTheWindowIsNoAnswer)
{
	EXPECT_LT(Ask([](QWidget& Dialog) { EXPECT_TRUE(Dialog.close()); }), 0);
	EXPECT_TRUE(Prompt->Clicked.IsEmpty());
}

TEST_F(QtDialog, CheckBoxClickedByMouseReachesTheModelAndOutlivesClosing)
{
	EXPECT_LT(Ask(
				  [this](QWidget& Dialog)
				  {
					  ClickOn(CheckBox(Dialog), QPoint(8, CheckBox(Dialog).height() / 2));
					  EXPECT_TRUE(Prompt->Check->IsChecked());
					  EXPECT_TRUE(CheckBox(Dialog).isChecked());
					  Dialog.close();
				  }),
		0);
	EXPECT_TRUE(Prompt->Check->IsChecked());
}

TEST_F(QtDialog, ModelThatChangesIsShown)
{
	Ask(
		[this](QWidget& Dialog)
		{
			Prompt->Check->SetIsChecked(ECheckBoxState::Checked);
			EXPECT_TRUE(CheckBox(Dialog).isChecked());
			Prompt->Dialog->GetButtonWidget(1)->SetEnabled(false);
			EXPECT_FALSE(Button(Dialog, 1).isEnabled());
			Prompt->Dialog->PressButton(2);
		});
	EXPECT_EQ(Prompt->Dialog->GetPressedButton(), 2);
}

TEST_F(QtDialog, HeldKeyThatOpenedItDoesNotAnswerIt)
{
	EXPECT_EQ(Ask(
				  [](QWidget& Dialog)
				  {
					  Repeat(Qt::Key_Return);
					  Repeat(Qt::Key_Escape);
					  Repeat(Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
					  EXPECT_TRUE(Dialog.isVisible());
					  ClickOn(Button(Dialog, 1));
				  }),
		1);
}

TEST_F(QtDialog, KeysReachNeitherPreProcessorsNorCommandLists)
{
	FOneCommand One;
	Ask(
		[this](QWidget& Dialog)
		{
			Click(Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
			// Also one that the window system sends to the window behind it.
			QTest::keyClick(Window.windowHandle(), Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
			Dialog.close();
		});
	EXPECT_THAT(Processor->Chords(), IsEmpty());
	EXPECT_THAT(Processor->ButtonsDown, IsEmpty());
	EXPECT_EQ(One.Runs, 0);
	Activate(Window);
	Click(Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
	EXPECT_EQ(One.Runs, 1);
}

TEST_F(QtDialog, KeyThatOpensADialogIsRoutedOnceAndLeavesEverythingUsable)
{
	FOneCommand One;
	One.List->UnmapAction(One.Command);
	int32 Answer = -7;
	One.List->MapAction(One.Command, FExecuteAction::CreateLambda(
										 [this, &Answer]
										 {
											 WhenModalOpens([](QWidget&) { Click(Qt::Key_Return); });
											 Answer = Prompt->Show();
										 }));
	Line->setFocus();
	Click(Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
	EXPECT_EQ(Answer, 0);
	EXPECT_THAT(Processor->Chords(), ElementsAre("Ctrl+Shift+B"));
	Activate(Window);
	EXPECT_TRUE(Line->hasFocus());
	Click(Qt::Key_O);
	Click(Qt::Key_K);
	EXPECT_EQ(Line->text(), QStringLiteral("ok"));
	EXPECT_FALSE(App().IsModalOrProgressOpen());
}

TEST_F(QtDialog, FocusOfTheApplicationIsInTheDialogAndComesBack)
{
	Line->setFocus();
	const TSharedPtr<SWidget> Before = App().GetKeyboardFocusedWidget();
	ASSERT_TRUE(Before.IsValid());
	Ask(
		[this](QWidget& Dialog)
		{
			EXPECT_EQ(App().GetKeyboardFocusedWidget().Get(), &Prompt->Dialog->GetButtonWidget(0).Get());
			CheckBox(Dialog).setFocus();
			EXPECT_EQ(App().GetKeyboardFocusedWidget().Get(), Prompt->Check.Get());
			Dialog.close();
		});
	EXPECT_EQ(App().GetKeyboardFocusedWidget(), Before);
}

TEST_F(QtDialog, DialogOverADialogReturnsToTheFirst)
{
	FPromptDialog Second;
	int32 SecondAnswer = -7;
	const int32 FirstAnswer = Ask(
		[&](QWidget& First)
		{
			WhenModalOpens(
				[&First](QWidget& Dialog)
				{
					if (&Dialog != &First)
					{
						ClickOn(Button(Dialog, 1));
					}
				});
			SecondAnswer = Second.Show();
			Activate(First);
			ClickOn(Button(First, 2));
		});
	EXPECT_EQ(SecondAnswer, 1);
	EXPECT_EQ(FirstAnswer, 2);
}

TEST_F(QtDialog, ShowsAgainAfterItWasClosed)
{
	EXPECT_LT(Ask([](QWidget& Dialog) { Dialog.close(); }), 0);
	EXPECT_EQ(Ask([](QWidget& Dialog) { ClickOn(Button(Dialog, 1)); }), 1);
}

TEST_F(QtDialog, LongBodyWrapsWithinTheMaximumWidthAndIsSeenInFull)
{
	Prompt = std::make_unique<FPromptDialog>(
		TEXT("'A_very_long_name_of_a_mesh' appears in the selection with two different rotation/scale values.\n\n"
			 "One mesh cannot be two shapes, so only a duplicate is possible."));
	Ask(
		[](QWidget& Dialog)
		{
			const auto* Body = Dialog.findChild<QLabel*>(QStringLiteral("STextBlock"));
			ASSERT_NE(Body, nullptr);
			EXPECT_LE(Body->width(), 460);
			EXPECT_GE(Body->height(), Body->heightForWidth(Body->width()));
			EXPECT_GT(Body->height(), 3 * Body->fontMetrics().lineSpacing());
			Dialog.close();
		});
}

TEST_F(QtDialog, NamesAreNeverMarkup)
{
	Prompt = std::make_unique<FPromptDialog>(TEXT("<b>Crate</b> & Co"));
	Ask(
		[](QWidget& Dialog)
		{
			const auto* Body = Dialog.findChild<QLabel*>(QStringLiteral("STextBlock"));
			ASSERT_NE(Body, nullptr);
			EXPECT_EQ(Body->textFormat(), Qt::PlainText);
			EXPECT_EQ(Body->text(), QStringLiteral("<b>Crate</b> & Co"));
			Dialog.close();
		});
	const TSharedRef<SCustomDialog> Ampersand =
		SNew(SCustomDialog).Buttons({SCustomDialog::FButton(FText::FromString(TEXT("Cut & go")))});
	WhenModalOpens(
		[](QWidget& Dialog)
		{
			EXPECT_EQ(Button(Dialog, 0).text(), QStringLiteral("Cut && go"));
			Dialog.close();
		});
	EXPECT_LT(Ampersand->ShowModal(), 0);
}

TEST_F(QtDialog, PaddingBelowTheBodyIsKept)
{
	Ask(
		[](QWidget& Dialog)
		{
			const auto* Body = Dialog.findChild<QLabel*>(QStringLiteral("STextBlock"));
			ASSERT_NE(Body, nullptr);
			const int Bottom = Body->mapTo(&Dialog, QPoint(0, Body->height())).y();
			EXPECT_EQ(CheckBox(Dialog).mapTo(&Dialog, QPoint()).y() - Bottom, 12);
			Dialog.close();
		});
}

TEST_F(QtDialog, OwnerThatIsDestroyedClosesIt)
{
	auto* Owner = new QMainWindow;
	Owner->show();
	Backend->SetMainWindow(Owner);
	EXPECT_LT(Ask([Owner](QWidget&) { delete Owner; }), 0);
	EXPECT_TRUE(Prompt->Dialog->IsClosed());
	EXPECT_FALSE(App().IsModalOrProgressOpen());
}

TEST_F(QtDialog, ProgramThatQuitsClosesIt)
{
	InMainLoop(
		[this]
		{
			EXPECT_LT(Ask([](QWidget&) { QCoreApplication::exit(0); }), 0);
			EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
		});
}
}
