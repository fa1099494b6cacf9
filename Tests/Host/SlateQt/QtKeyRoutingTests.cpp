// SPDX-License-Identifier: MIT
#include "SlateQt/QtShortcuts.h"
#include "SlateQtTestFixture.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QShortcut>
#include <QSpinBox>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
constexpr Qt::KeyboardModifiers ControlShift = Qt::ControlModifier | Qt::ShiftModifier;

class QtKeyRouting : public FSlateQtTest
{
protected:
	FOneCommand One;
};

/// Writes down what Qt hands it, but for modifier keys going down.
class FKeyRecorder : public QWidget
{
public:
	explicit FKeyRecorder(QWidget* Parent)
		: QWidget(Parent)
	{
		setFocusPolicy(Qt::StrongFocus);
	}
	std::vector<int> Pressed;
	int Releases = 0;
	bool bAccept = false;

protected:
	void keyPressEvent(QKeyEvent* Event) override
	{
		if (Event->key() != Qt::Key_Shift && Event->key() != Qt::Key_Control)
		{
			Pressed.push_back(Event->key());
		}
		Event->setAccepted(bAccept);
	}
	void keyReleaseEvent(QKeyEvent* Event) override
	{
		++Releases;
		Event->ignore();
	}
};

FKeyRecorder& AddRecorder(QMainWindow& Window)
{
	auto* Recorder = new FKeyRecorder(Window.centralWidget());
	Window.centralWidget()->layout()->addWidget(Recorder);
	Recorder->show();
	Recorder->setFocus();
	return *Recorder;
}

TEST_F(QtKeyRouting, KeyGoesOnceToPreProcessorWidgetAndCommandList)
{
	FKeyRecorder& Recorder = AddRecorder(Window);
	Click(Qt::Key_B, ControlShift);
	EXPECT_THAT(Processor->Chords(), ElementsAre("Ctrl+Shift+B"));
	EXPECT_THAT(Recorder.Pressed, ElementsAre(Qt::Key_B));
	EXPECT_EQ(One.Runs, 1);
	// The key itself and the two modifiers.
	EXPECT_EQ(Recorder.Releases, 3);
	EXPECT_EQ(Processor->Ups.size(), 3u);
}

TEST_F(QtKeyRouting, ConsumingPreProcessorKeepsTheKeyFromEveryoneElse)
{
	FKeyRecorder& Recorder = AddRecorder(Window);
	Processor->Consumed.Add(EKeys::B);
	Click(Qt::Key_B, ControlShift);
	EXPECT_THAT(Processor->Chords(), ElementsAre("Ctrl+Shift+B"));
	EXPECT_THAT(Recorder.Pressed, IsEmpty());
	EXPECT_EQ(One.Runs, 0);
}

TEST_F(QtKeyRouting, WidgetThatTakesTheKeyKeepsItFromCommandLists)
{
	FKeyRecorder& Recorder = AddRecorder(Window);
	Recorder.bAccept = true;
	Click(Qt::Key_B, ControlShift);
	EXPECT_THAT(Processor->Chords(), ElementsAre("Ctrl+Shift+B"));
	EXPECT_THAT(Recorder.Pressed, ElementsAre(Qt::Key_B));
	EXPECT_EQ(One.Runs, 0);
}

TEST_F(QtKeyRouting, KeyWithoutAFocusedWidgetStillRunsCommands)
{
	Panel->clearFocus();
	Click(Qt::Key_B, ControlShift);
	EXPECT_THAT(Processor->Chords(), ElementsAre("Ctrl+Shift+B"));
	EXPECT_EQ(One.Runs, 1);
}

TEST_F(QtKeyRouting, RepeatsAreMarkedAndRunNoCommand)
{
	Repeat(Qt::Key_B, ControlShift);
	ASSERT_EQ(Processor->Downs.size(), 1u);
	EXPECT_TRUE(Processor->Downs[0].IsRepeat());
	EXPECT_EQ(One.Runs, 0);
}

TEST_F(QtKeyRouting, KeypadChordIsTheSameWithAndWithoutNumLock)
{
	Click(Qt::Key_7, Qt::ControlModifier | Qt::KeypadModifier);
	Click(Qt::Key_Home, Qt::ControlModifier | Qt::KeypadModifier);
	Click(Qt::Key_5, Qt::ControlModifier | Qt::KeypadModifier);
	Click(Qt::Key_Clear, Qt::ControlModifier | Qt::KeypadModifier);
	Click(Qt::Key_7, Qt::ControlModifier);
	EXPECT_THAT(Processor->Chords(),
		ElementsAre("Ctrl+NumPadSeven", "Ctrl+NumPadSeven", "Ctrl+NumPadFive", "Ctrl+NumPadFive", "Ctrl+Seven"));
}

TEST_F(QtKeyRouting, ModifierKeysAreKeysOfTheirOwn)
{
	Click(Qt::Key_Shift);
	ASSERT_EQ(Processor->Downs.size(), 1u);
	EXPECT_TRUE(Processor->Downs[0].GetKey().IsModifierKey());
	ASSERT_EQ(Processor->Ups.size(), 1u);
	EXPECT_EQ(Processor->Ups[0].GetKey(), EKeys::LeftShift);
}

TEST_F(QtKeyRouting, TextLineTypesAndEditsAsUsual)
{
	Line->setFocus();
	Click(Qt::Key_C);
	Click(Qt::Key_R, Qt::ShiftModifier);
	Click(Qt::Key_A);
	EXPECT_EQ(Line->text().toLower(), QStringLiteral("cra"));
	Click(Qt::Key_Left);
	Click(Qt::Key_Backspace);
	EXPECT_EQ(Line->text().toLower(), QStringLiteral("ca"));
	Click(Qt::Key_Z, Qt::ControlModifier);
	EXPECT_EQ(Line->text().toLower(), QStringLiteral("cra"));
	Click(Qt::Key_A, Qt::ControlModifier);
	EXPECT_EQ(Line->selectedText().toLower(), QStringLiteral("cra"));
	Click(Qt::Key_C, Qt::ControlModifier);
	Click(Qt::Key_End);
	Click(Qt::Key_V, Qt::ControlModifier);
	EXPECT_EQ(Line->text().toLower(), QStringLiteral("cracra"));
	EXPECT_EQ(Processor->Chords().size(), 10u);
}

TEST_F(QtKeyRouting, FieldsOwnUndoGoesBeforeACommandOnTheSameChord)
{
	One.Command->SetActiveChord(FInputChord(EModifierKey::Control, EKeys::Z), EMultipleKeyBindingIndex::Secondary);
	Line->setFocus();
	Click(Qt::Key_X);
	Click(Qt::Key_Z, Qt::ControlModifier);
	EXPECT_EQ(Line->text(), QString());
	EXPECT_EQ(One.Runs, 0);
	Panel->setFocus();
	Click(Qt::Key_Z, Qt::ControlModifier);
	EXPECT_EQ(One.Runs, 1);
	One.Command->ResetActiveChords();
}

TEST_F(QtKeyRouting, TabMovesTheFocusOnce)
{
	Line->setFocus();
	Click(Qt::Key_Tab);
	EXPECT_TRUE(Panel->hasFocus());
	Click(Qt::Key_Backtab, Qt::ShiftModifier);
	EXPECT_TRUE(Line->hasFocus());
}

TEST_F(QtKeyRouting, NumberFieldTypesAndSteps)
{
	auto* Number = new QSpinBox(Window.centralWidget());
	Window.centralWidget()->layout()->addWidget(Number);
	Number->show();
	Number->setRange(0, 999);
	Number->setFocus();
	Number->selectAll();
	Click(Qt::Key_4, Qt::KeypadModifier);
	Click(Qt::Key_2);
	Click(Qt::Key_Up);
	EXPECT_EQ(Number->value(), 43);
}

TEST_F(QtKeyRouting, ShortcutOfAnActionIsTakenAwayWhenItIsAdded)
{
	QAction Action(QStringLiteral("Steal"));
	int Triggered = 0;
	QObject::connect(&Action, &QAction::triggered, [&Triggered] { ++Triggered; });
	Action.setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+B")));
	Window.addAction(&Action);
	EXPECT_TRUE(Action.shortcuts().isEmpty());
	Action.setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+B")));
	EXPECT_TRUE(Action.shortcuts().isEmpty());
	Click(Qt::Key_B, ControlShift);
	EXPECT_EQ(Triggered, 0);
	EXPECT_EQ(One.Runs, 1);
}

TEST_F(QtKeyRouting, ShortcutObjectNeverGetsAKey)
{
	QShortcut Shortcut(QKeySequence(QStringLiteral("Ctrl+Shift+B")), &Window);
	int Activated = 0;
	QObject::connect(&Shortcut, &QShortcut::activated, [&Activated] { ++Activated; });
	Click(Qt::Key_B, ControlShift);
	EXPECT_EQ(Activated, 0);
	EXPECT_EQ(One.Runs, 1);
}

TEST_F(QtKeyRouting, ShortcutOfAnActionThatIsNowhereIsTakenAwayToo)
{
	QAction Loose;
	Loose.setShortcuts({QKeySequence(QStringLiteral("F5")), QKeySequence(QStringLiteral("F6"))});
	EXPECT_TRUE(Loose.shortcuts().isEmpty());
}

TEST_F(QtKeyRouting, OpenMenuHasTheKeysToItself)
{
	QMenu Menu(&Window);
	int Triggered = 0;
	QObject::connect(Menu.addAction(QStringLiteral("First")), &QAction::triggered, [&Triggered] { ++Triggered; });
	Menu.popup(Window.mapToGlobal(QPoint(20, 20)));
	ASSERT_EQ(QApplication::activePopupWidget(), &Menu);
	Click(Qt::Key_B, ControlShift);
	Click(Qt::Key_Down);
	Click(Qt::Key_Return);
	EXPECT_EQ(Triggered, 1);
	EXPECT_FALSE(Menu.isVisible());
	EXPECT_THAT(Processor->Chords(), IsEmpty());
	EXPECT_EQ(One.Runs, 0);
}

TEST_F(QtKeyRouting, AltAndLetterOpensTheMenuThatIsMarkedWithIt)
{
	QMenu* File = Window.menuBar()->addMenu(QStringLiteral("&File"));
	File->addAction(QStringLiteral("Open"));
	Click(Qt::Key_X, Qt::AltModifier);
	EXPECT_FALSE(File->isVisible());
	Click(Qt::Key_F, Qt::AltModifier);
	EXPECT_TRUE(File->isVisible());
	EXPECT_THAT(Processor->Chords(), ElementsAre("Alt+X", "Alt+F"));
	Click(Qt::Key_Escape);
	EXPECT_FALSE(File->isVisible());
}

TEST_F(QtKeyRouting, AltAndLetterOpensTheMenuFromATextLineAndTypesNothing)
{
	QMenu* File = Window.menuBar()->addMenu(QStringLiteral("&File"));
	File->addAction(QStringLiteral("Open"));
	Line->setFocus();
	Click(Qt::Key_F, Qt::AltModifier);
	EXPECT_TRUE(File->isVisible());
	EXPECT_EQ(Line->text(), QString());
}

TEST_F(QtKeyRouting, DialogOfQtsOwnHasTheKeysToItselfAndCountsAsModal)
{
	QDialog Dialog(&Window);
	auto* Field = new QLineEdit(&Dialog);
	WhenModalOpens(
		[&](QWidget&)
		{
			EXPECT_TRUE(App().IsModalOrProgressOpen());
			Field->setFocus();
			Click(Qt::Key_B, ControlShift);
			Click(Qt::Key_Q);
			EXPECT_EQ(Field->text(), QStringLiteral("q"));
			Click(Qt::Key_Escape);
		});
	EXPECT_EQ(Dialog.exec(), QDialog::Rejected);
	EXPECT_FALSE(App().IsModalOrProgressOpen());
	EXPECT_THAT(Processor->Chords(), IsEmpty());
	EXPECT_EQ(One.Runs, 0);
}

TEST_F(QtKeyRouting, DialogOfThePlatformKeepsKeysFromTheWindow)
{
	Line->setFocus();
	App().BeginNativeModal();
	Click(Qt::Key_Q);
	Click(Qt::Key_B, ControlShift);
	App().EndNativeModal();
	EXPECT_EQ(Line->text(), QString());
	EXPECT_THAT(Processor->Chords(), IsEmpty());
	EXPECT_EQ(One.Runs, 0);
	Click(Qt::Key_Q);
	EXPECT_EQ(Line->text(), QStringLiteral("q"));
}

TEST_F(QtKeyRouting, WithoutAWidgetApplicationQtWorksAlone)
{
	FSlateApplication::Shutdown();
	Line->setFocus();
	Click(Qt::Key_Q);
	EXPECT_EQ(Line->text(), QStringLiteral("q"));
	EXPECT_THAT(Processor->Chords(), IsEmpty());
}

TEST_F(QtKeyRouting, MouseIsOfferedOnceAndGoesOn)
{
	Line->clearFocus();
	ClickOn(*Line);
	ASSERT_EQ(Processor->ButtonsDown.size(), 1u);
	EXPECT_EQ(Processor->ButtonsDown[0].GetEffectingButton(), EKeys::LeftMouseButton);
	const QPoint Middle = Line->mapToGlobal(Line->rect().center());
	EXPECT_EQ(Processor->ButtonsDown[0].GetScreenSpacePosition(),
		(FScreenPosition{static_cast<double>(Middle.x()), static_cast<double>(Middle.y())}));
	EXPECT_TRUE(Line->hasFocus());
}

TEST_F(QtKeyRouting, ConsumedMousePressGoesNoFurther)
{
	Processor->bConsumeMouse = true;
	ClickOn(*Line);
	EXPECT_EQ(Processor->ButtonsDown.size(), 1u);
	EXPECT_FALSE(Line->hasFocus());
}

TEST_F(QtKeyRouting, WheelIsCountedInNotches)
{
	QWheelEvent Wheel(QPointF(30, 30), Window.mapToGlobal(QPointF(30, 30)), QPoint(), QPoint(0, -240), Qt::NoButton,
		Qt::NoModifier, Qt::NoScrollPhase, false);
	QCoreApplication::sendEvent(Window.windowHandle(), &Wheel);
	EXPECT_THAT(Processor->Wheels, ElementsAre(-2.0f));
}
}

TEST(QtShortcuts, StrippingTakesShortcutsOfAllKindsAndLeavesMnemonics)
{
	EnsureQtApplication();
	QWidget Root;
	auto* Action = new QAction(&Root);
	Action->setShortcut(QKeySequence(QStringLiteral("F5")));
	auto* Shortcut = new QShortcut(QKeySequence(QStringLiteral("F6")), &Root);
	auto* Plain = new QPushButton(QStringLiteral("&Open"), &Root);
	auto* Button = new QPushButton(QStringLiteral("Go"), &Root);
	Button->setShortcut(QKeySequence(QStringLiteral("F7")));
	EXPECT_EQ(StripShortcutsBelow(Root), 3);
	EXPECT_TRUE(Action->shortcuts().isEmpty());
	EXPECT_TRUE(Shortcut->key().isEmpty());
	EXPECT_TRUE(Button->shortcut().isEmpty());
	EXPECT_EQ(Plain->text(), QStringLiteral("&Open"));
	EXPECT_EQ(StripShortcutsBelow(Root), 0);
}
