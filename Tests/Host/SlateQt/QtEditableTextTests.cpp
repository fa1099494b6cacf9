// SPDX-License-Identifier: MIT
#include "Slate/BoxPanel.h"
#include "Slate/CustomDialog.h"
#include "Slate/EditableText.h"
#include "SlateQt/QtWidgetBuilder.h"
#include "SlateQtTestFixture.h"

#include <QPlainTextEdit>
#include <QPushButton>

using testing::ElementsAre;

namespace
{
class QtEditableText : public FSlateQtTest
{
protected:
	FOnTextChanged RecordChange()
	{
		return FOnTextChanged::CreateLambda([this](const FText& Text) { Changes.push_back(Text.ToString().ToUtf8()); });
	}
	FOnTextCommitted RecordCommit()
	{
		return FOnTextCommitted::CreateLambda(
			[this](const FText& Text, ETextCommit How)
			{
				Commits.push_back(Text.ToString().ToUtf8());
				How_ = How;
			});
	}

	/// Shows a host widget in the window.
	QWidget& Show(const TSharedRef<SWidget>& Widget)
	{
		QWidget* Made = MakeQtWidget(Widget, Window.centralWidget());
		Window.centralWidget()->layout()->addWidget(Made);
		Made->setFocus();
		return *Made;
	}

	std::vector<std::string> Changes;
	std::vector<std::string> Commits;
	ETextCommit How_ = ETextCommit::Default;
};

TEST_F(QtEditableText, TypingTellsOfEachChangeAndEnterCommitsOnce)
{
	const TSharedRef<SEditableTextBox> Box =
		SNew(SEditableTextBox).OnTextChanged(RecordChange()).OnTextCommitted(RecordCommit());
	Show(Box);
	Click(Qt::Key_H);
	Click(Qt::Key_I);
	EXPECT_EQ(Box->GetText().ToString(), TEXT("hi"));
	EXPECT_THAT(Changes, ElementsAre("h", "hi"));
	Click(Qt::Key_Return);
	EXPECT_THAT(Commits, ElementsAre("hi"));
	EXPECT_EQ(How_, ETextCommit::OnEnter);
	Panel->setFocus();
	EXPECT_THAT(Commits, ElementsAre("hi"));
}

TEST_F(QtEditableText, LeavingTheFieldCommitsWhatWasTyped)
{
	const TSharedRef<SEditableTextBox> Box = SNew(SEditableTextBox).OnTextCommitted(RecordCommit());
	Show(Box);
	Panel->setFocus();
	EXPECT_TRUE(Commits.empty());
	Show(Box).setFocus();
	Click(Qt::Key_X);
	Panel->setFocus();
	EXPECT_THAT(Commits, ElementsAre("x"));
	EXPECT_EQ(How_, ETextCommit::OnUserMovedFocus);
}

TEST_F(QtEditableText, IsKnownByItsOwnTypeName)
{
	Show(SNew(SEditableTextBox));
	ASSERT_TRUE(App().GetKeyboardFocusedWidget().IsValid());
	EXPECT_EQ(App().GetKeyboardFocusedWidget()->GetTypeAsString(), TEXT("SEditableTextBox"));
	Click(Qt::Key_Q);
	EXPECT_EQ(App().GetKeyboardFocusedWidget()->GetTypeAsString(), TEXT("SEditableTextBox"));
}

TEST_F(QtEditableText, TextSetByTheProgramIsShown)
{
	const TSharedRef<SEditableText> Text =
		SNew(SEditableText).Text(FText::FromString(TEXT("one"))).HintText(FText::FromString(TEXT("hint")));
	auto* Shown = qobject_cast<QLineEdit*>(&Show(Text));
	ASSERT_NE(Shown, nullptr);
	EXPECT_EQ(Shown->text(), QStringLiteral("one"));
	EXPECT_EQ(Shown->placeholderText(), QStringLiteral("hint"));
	Text->SetText(FText::FromString(TEXT("zwölf 😀")));
	EXPECT_EQ(Shown->text(), QString::fromUtf8("zwölf 😀"));
	Text->SetIsReadOnly(true);
	EXPECT_TRUE(Shown->isReadOnly());
}

TEST_F(QtEditableText, SearchBoxIsItsLine)
{
	const TSharedRef<SSearchBox> Search = SNew(SSearchBox).OnTextChanged(RecordChange());
	auto* Shown = Show(Search).findChild<QLineEdit*>(QStringLiteral("SEditableText"));
	ASSERT_NE(Shown, nullptr);
	Shown->setFocus();
	Click(Qt::Key_C);
	EXPECT_THAT(Changes, ElementsAre("c"));
}

TEST_F(QtEditableText, MultiLineTextTakesEnterEvenInADialog)
{
	const TSharedRef<SMultiLineEditableText> Text = SNew(SMultiLineEditableText).OnTextCommitted(RecordCommit());
	const TSharedRef<SCustomDialog> Dialog =
		SNew(SCustomDialog)
			.Content()[Text]
			.Buttons({SCustomDialog::FButton(FText::FromString(TEXT("Go"))).SetPrimary(true)});
	WhenModalOpens(
		[](QWidget& Modal)
		{
			Modal.findChild<QPlainTextEdit*>()->setFocus();
			Click(Qt::Key_A);
			Click(Qt::Key_Return);
			Repeat(Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
			Click(Qt::Key_B);
			ClickOn(*Modal.findChild<QPushButton*>(QStringLiteral("Button0")));
		});
	EXPECT_EQ(Dialog->ShowModal(), 0);
	EXPECT_EQ(Text->GetText().ToString(), TEXT("a\n\nb"));
	EXPECT_THAT(Commits, ElementsAre("a\n\nb"));
}

TEST_F(QtEditableText, LineInADialogCommitsAndPressesTheDefaultButtonOnEnter)
{
	const TSharedRef<SEditableTextBox> Box = SNew(SEditableTextBox).OnTextCommitted(RecordCommit());
	const TSharedRef<SCustomDialog> Dialog =
		SNew(SCustomDialog)
			.Content()[Box]
			.Buttons({SCustomDialog::FButton(FText::FromString(TEXT("Not this"))),
				SCustomDialog::FButton(FText::FromString(TEXT("Go"))).SetPrimary(true)});
	WhenModalOpens(
		[](QWidget& Modal)
		{
			Modal.findChild<QLineEdit*>()->setFocus();
			Click(Qt::Key_Space);
			Repeat(Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
			Click(Qt::Key_A);
			Click(Qt::Key_Return);
		});
	EXPECT_EQ(Dialog->ShowModal(), 1);
	EXPECT_THAT(Commits, ElementsAre("  a"));
}
}
