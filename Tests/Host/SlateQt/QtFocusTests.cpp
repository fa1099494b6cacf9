// SPDX-License-Identifier: MIT
#include "SlateQt/QtFocusMirror.h"
#include "SlateQtTestFixture.h"

#include <QComboBox>
#include <QDateEdit>
#include <QDoubleSpinBox>
#include <QKeySequenceEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QTextEdit>

namespace
{
class QtFocus : public FSlateQtTest
{
protected:
	/// Gives a new widget of that class the focus; the type name by which the application knows it.
	template <typename TWidget>
	FString TypeNameOfFocused(std::function<void(TWidget&)> Prepare = {})
	{
		auto* Widget = new TWidget(Window.centralWidget());
		Window.centralWidget()->layout()->addWidget(Widget);
		if (Prepare)
		{
			Prepare(*Widget);
		}
		Widget->show();
		Widget->setFocus();
		return FocusedTypeName();
	}

	static FString FocusedTypeName()
	{
		const TSharedPtr<SWidget> Focused = App().GetKeyboardFocusedWidget();
		return Focused.IsValid() ? Focused->GetTypeAsString() : FString();
	}

	static bool IsText(const FString& TypeName) { return TypeName.Contains(TEXT("EditableText")); }
};

TEST_F(QtFocus, EveryWidgetInWhichTextIsTypedIsEditableText)
{
	EXPECT_EQ(TypeNameOfFocused<QLineEdit>(), TEXT("SEditableText(QLineEdit)"));
	EXPECT_EQ(TypeNameOfFocused<QTextEdit>(), TEXT("SEditableText(QTextEdit)"));
	EXPECT_EQ(TypeNameOfFocused<QPlainTextEdit>(), TEXT("SEditableText(QPlainTextEdit)"));
	EXPECT_EQ(TypeNameOfFocused<QSpinBox>(), TEXT("SEditableText(QSpinBox)"));
	EXPECT_EQ(TypeNameOfFocused<QDoubleSpinBox>(), TEXT("SEditableText(QDoubleSpinBox)"));
	EXPECT_EQ(TypeNameOfFocused<QDateEdit>(), TEXT("SEditableText(QDateEdit)"));
	EXPECT_EQ(TypeNameOfFocused<QKeySequenceEdit>(), TEXT("SEditableText(QKeySequenceEdit)"));
	EXPECT_TRUE(IsText(TypeNameOfFocused<QComboBox>([](QComboBox& Combo) { Combo.setEditable(true); })));
}

TEST_F(QtFocus, OthersAreKnownByTheirClassNames)
{
	EXPECT_EQ(TypeNameOfFocused<QPushButton>(), TEXT("QPushButton"));
	EXPECT_EQ(TypeNameOfFocused<QComboBox>(), TEXT("QComboBox"));
	EXPECT_EQ(TypeNameOfFocused<QTableWidget>(), TEXT("QTableWidget"));
	EXPECT_EQ(TypeNameOfFocused<QPlainTextEdit>([](QPlainTextEdit& Text) { Text.setReadOnly(true); }),
		TEXT("QPlainTextEdit"));
}

TEST_F(QtFocus, WidgetOfAnotherKindSaysItselfThatTextIsTypedIntoIt)
{
	EXPECT_TRUE(
		IsText(TypeNameOfFocused<QTableWidget>([](QTableWidget& Table) { Table.setProperty("TypesText", true); })));
}

TEST_F(QtFocus, EditorWithinAnItemViewIsEditableText)
{
	auto* Table = new QTableWidget(1, 1, Window.centralWidget());
	Window.centralWidget()->layout()->addWidget(Table);
	Table->setItem(0, 0, new QTableWidgetItem(QStringLiteral("Crate")));
	Table->show();
	Table->setFocus();
	EXPECT_FALSE(IsText(FocusedTypeName()));
	Table->editItem(Table->item(0, 0));
	EXPECT_TRUE(IsText(FocusedTypeName()));
	Click(Qt::Key_Q);
	Click(Qt::Key_Return);
	EXPECT_EQ(Table->item(0, 0)->text(), QStringLiteral("q"));
	EXPECT_FALSE(IsText(FocusedTypeName()));
}

TEST_F(QtFocus, ComboBoxThatBecomesEditableIsKnownAtTheNextKey)
{
	auto* Combo = new QComboBox(Window.centralWidget());
	Window.centralWidget()->layout()->addWidget(Combo);
	Combo->show();
	Combo->setFocus();
	ASSERT_EQ(FocusedTypeName(), TEXT("QComboBox"));
	Combo->setEditable(true);
	Combo->setFocus();
	Click(Qt::Key_Q);
	EXPECT_TRUE(IsText(FocusedTypeName()));
	EXPECT_EQ(Combo->currentText(), QStringLiteral("q"));
}

TEST_F(QtFocus, ShortcutFieldRecordsAChordThatACommandHas)
{
	FOneCommand One;
	auto* Field = new QKeySequenceEdit(Window.centralWidget());
	Window.centralWidget()->layout()->addWidget(Field);
	Field->show();
	Field->setFocus();
	Click(Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
	EXPECT_EQ(Field->keySequence(), QKeySequence(QStringLiteral("Ctrl+Shift+B")));
	EXPECT_EQ(One.Runs, 0);
}

TEST_F(QtFocus, ApplicationSetsQtsFocus)
{
	Line->setFocus();
	const TSharedPtr<SWidget> OfLine = App().GetKeyboardFocusedWidget();
	Panel->setFocus();
	EXPECT_NE(App().GetKeyboardFocusedWidget(), OfLine);
	EXPECT_TRUE(App().SetKeyboardFocus(OfLine));
	EXPECT_TRUE(Line->hasFocus());
}

TEST_F(QtFocus, KeysFollowQtsFocusAfterTheApplicationClearedIts)
{
	Line->setFocus();
	App().ClearKeyboardFocus();
	Click(Qt::Key_Q);
	EXPECT_EQ(Line->text(), QStringLiteral("q"));
	EXPECT_TRUE(IsText(FocusedTypeName()));
}

TEST_F(QtFocus, DestroyedWidgetLeavesNoFocusBehind)
{
	Panel->setFocus();
	const TWeakPtr<SWidget> StandIn = App().GetKeyboardFocusedWidget();
	Line->setFocus();
	ASSERT_TRUE(StandIn.IsValid());
	delete Panel;
	EXPECT_FALSE(StandIn.IsValid());
}
}
