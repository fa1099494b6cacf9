// SPDX-License-Identifier: MIT
// What is kept between runs: settings and key chords, and the dialog in which chords are changed.
#include "ChordField.h"
#include "Core/Log.h"
#include "EditorWindowFixture.h"
#include "ShortcutsDialog.h"
#include "Slate/InputBindingManager.h"

#include <QDialogButtonBox>

using testing::HasSubstr;

class KeptSettings : public FEditorWindowTest
{
protected:
	static int CountWarnings(const FCaptureLogSink& Capture, const char* Part)
	{
		int Count = 0;
		for (const FLogRecord& Record : Capture.Records())
		{
			Count +=
				Record.Verbosity == ELogVerbosity::Warning && Record.Message.ToUtf8().find(Part) != std::string::npos
					? 1
					: 0;
		}
		return Count;
	}

	/// Opens the shortcuts dialog through its command and runs `Action` in it; Escape closes it.
	void InShortcuts(const std::function<void(FShortcutsDialog&)>& Action)
	{
		bool bShown = false;
		WhenModalOpens(
			[&](QWidget& Modal)
			{
				bShown = true;
				auto* const Dialog = dynamic_cast<FShortcutsDialog*>(&Modal);
				ASSERT_NE(Dialog, nullptr);
				Action(*Dialog);
				Press(Qt::Key_Escape);
			});
		Session->GetWindowActions()->ExecuteAction(
			FInputBindingManager::Get()
				.FindCommandInContext(TEXT("MainWindow"), FName(TEXT("EditShortcuts")))
				.ToSharedRef());
		EXPECT_TRUE(bShown);
	}

	static void PressIn(QWidget& Field, Qt::Key Key, Qt::KeyboardModifiers Modifiers)
	{
		Field.setFocus();
		Press(Key, Modifiers);
	}
};

TEST_F(KeptSettings, BrokenSettingsAreKeptAsideWithOneWarning)
{
	WriteAll(Path("editor.ini"), std::string("\x7f\x45LF\0\x01 nonsense", 14));
	const FCaptureLogSink Capture;
	Restart(DefaultOptions());
	EXPECT_EQ(CountWarnings(Capture, "editor.ini"), 1);
	EXPECT_TRUE(std::filesystem::exists(Path("editor.ini.broken")));
	EXPECT_TRUE(Settings->GetRecentScenes().isEmpty());
	ASSERT_TRUE(Window().OpenScene(QString::fromStdString(Yard())));
	const FCaptureLogSink Second;
	Restart(DefaultOptions());
	EXPECT_EQ(CountWarnings(Second, "editor.ini"), 0);
	EXPECT_EQ(Settings->GetRecentScenes().size(), 1);
}

TEST_F(KeptSettings, BrokenChordsAreKeptAsideWithOneWarning)
{
	WriteAll(Path("chords.txt"), "what is this\n");
	const FCaptureLogSink Capture;
	Restart(DefaultOptions());
	EXPECT_EQ(CountWarnings(Capture, "chords.txt"), 1);
	EXPECT_TRUE(std::filesystem::exists(Path("chords.txt.broken")));
	ASSERT_TRUE(Window().OpenScene(QString::fromStdString(Yard())));
	ClickLine("Crate");
	Press(Qt::Key_B, CtrlShift);
	EXPECT_EQ(History().GetQueueLength(), 1) << "the default chord";
}

TEST_F(KeptSettings, ChangedChordsCountAtOnceAndStay)
{
	InShortcuts(
		[](FShortcutsDialog& Dialog)
		{
			FChordField* const Second =
				Dialog.FieldOf(FName(TEXT("BakeTransform")), EMultipleKeyBindingIndex::Secondary);
			ASSERT_NE(Second, nullptr);
			PressIn(*Second, Qt::Key_J, Qt::ControlModifier);
			EXPECT_EQ(Second->text().toStdString(), "Ctrl+J");
			EXPECT_EQ(Dialog.GetMessage().toStdString(), "");
		});
	Restart(DefaultOptions());
	ASSERT_TRUE(Window().OpenScene(QString::fromStdString(Yard())));
	Settle();
	ClickLine("Crate");
	Press(Qt::Key_J, Ctrl);
	EXPECT_EQ(History().GetQueueLength(), 1);
}

TEST_F(KeptSettings, ChordGivenTwiceIsSaidAtOnce)
{
	InShortcuts(
		[](FShortcutsDialog& Dialog)
		{
			PressIn(
				*Dialog.FieldOf(FName(TEXT("Duplicate")), EMultipleKeyBindingIndex::Secondary), Qt::Key_B, CtrlShift);
			EXPECT_EQ(Dialog.GetMessage().toStdString(),
				"Ctrl+Shift+B is also the chord of Bake Transform (Morvel Mesh Transform).");
		});
	EXPECT_EQ(History().GetQueueLength(), 0);
}

TEST_F(KeptSettings, ChordsAreTakenAwayAndGivenBack)
{
	InShortcuts(
		[](FShortcutsDialog& Dialog)
		{
			FChordField* const Undo = Dialog.FieldOf(FName(TEXT("Undo")), EMultipleKeyBindingIndex::Primary);
			PressIn(*Undo, Qt::Key_Backspace, Qt::NoModifier);
			EXPECT_EQ(Undo->text().toStdString(), "");
			PressIn(*Dialog.FieldOf(FName(TEXT("PivotTop")), EMultipleKeyBindingIndex::Primary), Qt::Key_9,
				Qt::KeypadModifier | Qt::AltModifier);
			EXPECT_EQ(Dialog.FieldOf(FName(TEXT("PivotTop")), EMultipleKeyBindingIndex::Primary)->text().toStdString(),
				"Alt+Num 9");
		});
	ClickLine("Crate");
	Press(Qt::Key_B, CtrlShift);
	Press(Qt::Key_Z, Ctrl);
	EXPECT_EQ(History().GetUndoCount(), 0);
	InShortcuts(
		[](FShortcutsDialog& Dialog)
		{
			PressButton(Dialog, "Restore Defaults");
			EXPECT_EQ(
				Dialog.FieldOf(FName(TEXT("Undo")), EMultipleKeyBindingIndex::Primary)->text().toStdString(), "Ctrl+Z");
		});
	Press(Qt::Key_Z, Ctrl);
	EXPECT_EQ(History().GetUndoCount(), 1);
}

TEST_F(KeptSettings, EveryCommandIsInTheDialog)
{
	InShortcuts(
		[](FShortcutsDialog& Dialog)
		{
			int Count = 0;
			for (const TSharedRef<FBindingContext>& Context : FInputBindingManager::Get().GetKnownInputContexts())
			{
				for (const TSharedRef<FUICommandInfo>& Command :
					FInputBindingManager::Get().GetCommandInfosFromContext(Context->GetContextName()))
				{
					++Count;
					EXPECT_NE(Dialog.FieldOf(Command->GetCommandName(), EMultipleKeyBindingIndex::Primary), nullptr);
					EXPECT_NE(Dialog.FieldOf(Command->GetCommandName(), EMultipleKeyBindingIndex::Secondary), nullptr);
				}
			}
			EXPECT_GE(Count, 9 + 11 + 10);
		});
}

TEST_F(KeptSettings, ThemeIsKept)
{
	Settings->SetTheme(EQtTheme::Dark);
	EXPECT_TRUE(IsQtThemeDark());
	Restart(DefaultOptions());
	EXPECT_EQ(Settings->GetTheme(), EQtTheme::Dark);
	Settings->SetTheme(EQtTheme::System);
}
