// SPDX-License-Identifier: MIT
// Scenes as files: opening, saving, what is unsaved, and what happens when a file cannot be read or written.
#include "EditorWindowFixture.h"
#include "LevelActions.h"

#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QUrl>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class DocumentFiles : public FEditorWindowTest
{
protected:
	/// Moves the crate a metre up, undoably.
	void Change()
	{
		LevelActions::ChangeTransforms({Actor("Crate")}, FText::FromString(TEXT("Move Actors")),
			[](const FTransform& Old)
			{
				FTransform New = Old;
				New.SetTranslation(Old.GetTranslation() + FVector(0, 0, 128));
				return New;
			});
		Settle();
	}

	static std::string TextOf(const QWidget& Dialog)
	{
		std::string Text;
		for (const QLabel* Label : Dialog.findChildren<QLabel*>())
		{
			Text += Label->text().toStdString();
		}
		return Text;
	}

	/// Runs `Action`, which must bring up a dialog; its text. The dialog is closed with Escape.
	std::string DialogDuring(const std::function<void()>& Action)
	{
		std::string Text;
		WhenModalOpens(
			[&](QWidget& Dialog)
			{
				Text = TextOf(Dialog);
				Press(Qt::Key_Escape);
			});
		Action();
		EXPECT_THAT(Text, Not(IsEmpty()));
		return Text;
	}

	bool Open(const std::string& File) { return Window().OpenScene(QString::fromStdString(File)); }
};

TEST_F(DocumentFiles, SavingWithoutAChangeWritesTheSameBytes)
{
	const std::string Before = ReadAll(Yard());
	Press(Qt::Key_S, Ctrl);
	EXPECT_EQ(ReadAll(Yard()), Before);
}

TEST_F(DocumentFiles, UndoneChangesSaveTheSameBytes)
{
	const std::string Before = ReadAll(Yard());
	Change();
	ClickLine("Shed");
	Press(Qt::Key_Delete);
	ClickLine("Rock");
	Press(Qt::Key_D, Ctrl);
	ClickLine("Wall A");
	WhenModalOpens([](QWidget&) { Press(Qt::Key_Return); });
	Press(Qt::Key_B, CtrlShift);
	for (int Step = 0; Step < 4; ++Step)
	{
		Press(Qt::Key_Z, Ctrl);
	}
	EXPECT_FALSE(Document().IsDirty());
	Press(Qt::Key_S, Ctrl);
	EXPECT_EQ(ReadAll(Yard()), Before);
}

TEST_F(DocumentFiles, IsUnsavedFromTheFirstChangeToTheSave)
{
	EXPECT_FALSE(Document().IsDirty());
	EXPECT_FALSE(Window().isWindowModified());
	Change();
	EXPECT_TRUE(Document().IsDirty());
	EXPECT_TRUE(Window().isWindowModified());
	Press(Qt::Key_S, Ctrl);
	EXPECT_FALSE(Document().IsDirty());
	Press(Qt::Key_Z, Ctrl);
	EXPECT_TRUE(Document().IsDirty()) << "undone behind the save";
	Press(Qt::Key_Y, Ctrl);
	EXPECT_FALSE(Document().IsDirty());
	Press(Qt::Key_Z, Ctrl);
	Change();
	EXPECT_TRUE(Document().IsDirty()) << "another change in the place of the saved one";
}

TEST_F(DocumentFiles, SavesAgainAndAgainAndReopens)
{
	for (int Save = 0; Save < 3; ++Save)
	{
		Change();
		Press(Qt::Key_S, Ctrl);
		EXPECT_FALSE(Document().IsDirty());
	}
	ClickLine("Shed");
	Press(Qt::Key_B, CtrlShift);
	const FTransform Crate = Actor("Crate")->GetActorTransform();
	const FTransform Light = Actor("Door light")->GetActorTransform();
	Press(Qt::Key_S, Ctrl);
	ASSERT_FALSE(Document().IsDirty());
	EXPECT_TRUE(Open(Yard()));
	EXPECT_TRUE(Actor("Crate")->GetActorTransform().Equals(Crate, 1e-6));
	EXPECT_TRUE(Actor("Door light")->GetActorTransform().Equals(Light, 1e-6));
	EXPECT_EQ(RunTarvin({"info", Yard()}).ExitCode, 0);
}

TEST_F(DocumentFiles, BakedSceneLooksTheSame)
{
	std::filesystem::copy_file(Yard(), Path("before.gltf"));
	WhenModalOpens(
		[](QWidget& Prompt)
		{
			QTest::keyClick(QGuiApplication::focusWindow(), Qt::Key_Tab);
			Press(Qt::Key_Return);
			static_cast<void>(Prompt);
		});
	ClickLine("Shed");
	ClickLine("Crate", Ctrl);
	ClickLine("Rock", Ctrl);
	Press(Qt::Key_B, CtrlShift);
	Press(Qt::Key_7, CtrlKeypad);
	Press(Qt::Key_S, Ctrl);
	ASSERT_GE(History().GetQueueLength(), 2);
	const FTarvinRun Diff = RunTarvin({"diff", Path("before.gltf"), Yard(), "--json"});
	EXPECT_EQ(Diff.ExitCode, 0) << Diff.Output << Diff.Errors;
}

TEST_F(DocumentFiles, UnreadableSceneIsSaidAndTheOldOneStays)
{
	WriteAll(Path("broken.gltf"), "{\"asset\": {\"version\": \"2.0\"}, \"nodes\": [{\"mesh\": 7}]}");
	Change();
	Press(Qt::Key_S, Ctrl);
	const int32 NumActors = SelectionQueries::EditedWorld()->GetActors().Num();
	const std::string Text = DialogDuring([&] { EXPECT_FALSE(Open(Path("broken.gltf"))); });
	EXPECT_THAT(Text, HasSubstr("broken.gltf"));
	EXPECT_THAT(Text, HasSubstr("/nodes/0"));
	EXPECT_THAT(Text, Not(HasSubstr("\n")));
	EXPECT_EQ(SelectionQueries::EditedWorld()->GetActors().Num(), NumActors);
	EXPECT_EQ(Document().GetPath(), Yard());
	Press(Qt::Key_Z, Ctrl);
	EXPECT_TRUE(Document().IsDirty()) << "the history stays, too";
}

TEST_F(DocumentFiles, FailedSaveIsSaidAndTheSceneStaysUnsaved)
{
	Change();
	const std::string Before = ReadAll(Yard());
	const std::string Text =
		DialogDuring([&] { EXPECT_FALSE(Window().SaveSceneTo(QStringLiteral("/proc/no-such-folder/a.gltf"))); });
	EXPECT_THAT(Text, HasSubstr("/proc/no-such-folder"));
	EXPECT_TRUE(Document().IsDirty());
	EXPECT_EQ(Document().GetPath(), Yard());
	EXPECT_EQ(ReadAll(Yard()), Before);
}

TEST_F(DocumentFiles, SavingAsMovesOnToTheNewFile)
{
	const std::string Before = ReadAll(Yard());
	Change();
	EXPECT_TRUE(Window().SaveSceneTo(QString::fromStdString(Path("other.gltf"))));
	Settle();
	EXPECT_EQ(Document().GetFileName(), "other.gltf");
	EXPECT_FALSE(Document().IsDirty());
	EXPECT_EQ(ReadAll(Yard()), Before);
	Change();
	Press(Qt::Key_S, Ctrl);
	EXPECT_EQ(ReadAll(Yard()), Before);
	EXPECT_TRUE(Open(Path("other.gltf")));
}

TEST_F(DocumentFiles, OpeningEndsHistorySelectionAndPlay)
{
	ClickLine("Crate");
	Press(Qt::Key_B, CtrlShift);
	Press(Qt::Key_S, Ctrl);
	Press(Qt::Key_P, Qt::AltModifier);
	EXPECT_TRUE(Open(Yard()));
	EXPECT_FALSE(GEditor->PlayWorld);
	EXPECT_EQ(History().GetQueueLength(), 0);
	EXPECT_THAT(SelectedLabels(), IsEmpty());
}

TEST_F(DocumentFiles, AsksBeforeUnsavedChangesAreLost)
{
	Change();
	WhenModalOpens([](QWidget& Question) { PressButton(Question, "Cancel"); });
	EXPECT_FALSE(Open(Yard()));
	EXPECT_TRUE(Document().IsDirty());
	EXPECT_FALSE(
		[&]
		{
			WhenModalOpens([](QWidget&) { Press(Qt::Key_Escape); });
			return Window().close();
		}());

	const std::string Before = ReadAll(Yard());
	WhenModalOpens([](QWidget& Question) { PressButton(Question, "Discard"); });
	EXPECT_TRUE(Open(Yard()));
	EXPECT_EQ(ReadAll(Yard()), Before);

	Change();
	const FTransform Moved = Actor("Crate")->GetActorTransform();
	WhenModalOpens([](QWidget&) { Press(Qt::Key_Return); });
	EXPECT_TRUE(Window().close());
	EXPECT_NE(ReadAll(Yard()), Before);
	EXPECT_TRUE(Open(Yard()));
	EXPECT_TRUE(Actor("Crate")->GetActorTransform().Equals(Moved, 1e-6));
}

TEST_F(DocumentFiles, OpensWhatIsDroppedOnTheWindow)
{
	std::filesystem::copy_file(Yard(), Path("dropped.gltf"));
	QMimeData Data;
	Data.setUrls({QUrl::fromLocalFile(QString::fromStdString(Path("dropped.gltf")))});
	QDragEnterEvent Enter(QPoint(10, 10), Qt::CopyAction, &Data, Qt::LeftButton, Qt::NoModifier);
	QCoreApplication::sendEvent(&Window(), &Enter);
	EXPECT_TRUE(Enter.isAccepted());
	QDropEvent Drop(QPointF(10, 10), Qt::CopyAction, &Data, Qt::LeftButton, Qt::NoModifier);
	QCoreApplication::sendEvent(&Window(), &Drop);
	Settle();
	EXPECT_EQ(Document().GetFileName(), "dropped.gltf");

	Data.setUrls({QUrl::fromLocalFile(QStringLiteral("/tmp/picture.png"))});
	QDragEnterEvent Other(QPoint(10, 10), Qt::CopyAction, &Data, Qt::LeftButton, Qt::NoModifier);
	Other.ignore();
	QCoreApplication::sendEvent(&Window(), &Other);
	EXPECT_FALSE(Other.isAccepted());
}

TEST_F(DocumentFiles, RemembersRecentScenes)
{
	std::filesystem::copy_file(Yard(), Path("second.gltf"));
	EXPECT_TRUE(Open(Path("second.gltf")));
	const auto Recent = [this]
	{
		std::vector<std::string> Names;
		for (const QString& Scene : Settings->GetRecentScenes())
		{
			Names.push_back(std::filesystem::path(Scene.toStdString()).filename());
		}
		return Names;
	};
	EXPECT_THAT(Recent(), ElementsAre("second.gltf", "yard.gltf"));
	Restart(DefaultOptions());
	EXPECT_THAT(Recent(), ElementsAre("second.gltf", "yard.gltf"));
	std::filesystem::remove(Path("second.gltf"));
	DialogDuring([&] { EXPECT_FALSE(Open(Path("second.gltf"))); });
	EXPECT_THAT(Recent(), ElementsAre("yard.gltf"));
}
