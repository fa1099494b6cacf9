// SPDX-License-Identifier: MIT
// The plug-in in the editor's window: chords, menu, prompt, toast, undo.
#include "ActorMenu.h"
#include "Core/ModuleManager.h"
#include "EditorWindowFixture.h"
#include "Engine/StaticMeshComponent.h"
#include "Slate/InputBindingManager.h"
#include "ToolMenus/ToolMenus.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QTimer>

using testing::ElementsAre;
using testing::IsEmpty;

class PlugIn : public FEditorWindowTest
{
protected:
	static FTransform WorldOf(const char* Label) { return Actor(Label)->GetActorTransform(); }
	static std::string MeshOf(const char* Label) { return SelectionQueries::MeshOf(*Actor(Label))->GetName().ToUtf8(); }
	static bool IsBaked(const char* Label)
	{
		return WorldOf(Label).GetRotation().Equals(FQuat::Identity) &&
			   WorldOf(Label).GetScale3D().Equals(FVector::OneVector);
	}

	static std::vector<std::string> ButtonTexts(const QWidget& In)
	{
		std::vector<std::string> Texts;
		for (const QAbstractButton* Button : In.findChildren<QAbstractButton*>())
		{
			if (!qobject_cast<const QCheckBox*>(Button))
			{
				Texts.push_back(Button->text().remove(QLatin1Char('&')).toStdString());
			}
		}
		return Texts;
	}

	/// The texts of a menu's lines, with "-" for the start of a section that has no name.
	static std::vector<std::string> Lines(const std::vector<FQtMenuEntry>& Entries)
	{
		std::vector<std::string> Texts;
		for (const FQtMenuEntry& Entry : Entries)
		{
			Texts.push_back(Entry.Label.IsEmpty() ? "-" : Entry.Label.ToString().ToUtf8());
		}
		return Texts;
	}

	static const FQtMenuEntry* Find(const std::vector<FQtMenuEntry>& Entries, const TCHAR* Name)
	{
		for (const FQtMenuEntry& Entry : Entries)
		{
			if (Entry.Name == FName(Name))
			{
				return &Entry;
			}
		}
		return nullptr;
	}

	static TSharedPtr<FUICommandInfo> Command(const TCHAR* Context, const TCHAR* Name)
	{
		return FInputBindingManager::Get().FindCommandInContext(Context, FName(Name));
	}
};

TEST_F(PlugIn, ChordBakesWhatIsSelected)
{
	ClickLine("Crate");
	ASSERT_FALSE(IsBaked("Crate"));
	Press(Qt::Key_B, CtrlShift);
	EXPECT_TRUE(IsBaked("Crate"));
	EXPECT_THAT(Toasts(), ElementsAre("Baked 1 mesh(es)"));
	EXPECT_TRUE(Document().IsDirty());
	Press(Qt::Key_Z, Ctrl);
	EXPECT_FALSE(IsBaked("Crate"));
	EXPECT_FALSE(Document().IsDirty());
	Press(Qt::Key_Y, Ctrl);
	EXPECT_TRUE(IsBaked("Crate"));
}

TEST_F(PlugIn, PromptAsksAboutASharedAsset)
{
	ClickLine("Wall A");
	bool bAsked = false;
	WhenModalOpens(
		[&](QWidget& Prompt)
		{
			bAsked = true;
			EXPECT_EQ(Prompt.windowTitle().toStdString(), "Morvel Mesh Transform");
			EXPECT_THAT(ButtonTexts(Prompt), ElementsAre("Create new asset", "Apply to all", "Cancel"));
			QString Body;
			for (const QLabel* Label : Prompt.findChildren<QLabel*>())
			{
				Body += Label->text();
			}
			EXPECT_TRUE(Body.contains(
				QLatin1String("'Wall' is also used by 3 other actor(s).\n\nBaking in place changes those actors too.")))
				<< Body.toStdString();
			const auto* Focused = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
			ASSERT_NE(Focused, nullptr);
			EXPECT_EQ(Focused->text().toStdString(), "Create new asset");
			Press(Qt::Key_Return);
		});
	Press(Qt::Key_B, CtrlShift);
	EXPECT_TRUE(bAsked);
	EXPECT_EQ(MeshOf("Wall A"), "Wall_Baked");
	EXPECT_EQ(MeshOf("Wall B"), "Wall");
	EXPECT_THAT(Toasts(), ElementsAre("Baked 1 mesh(es) · 1 new asset(s)"));
}

TEST_F(PlugIn, PromptTakesEveryAnswerByMouse)
{
	ClickLine("Wall A");
	WhenModalOpens([](QWidget& Prompt) { PressButton(Prompt, "Cancel"); });
	Press(Qt::Key_B, CtrlShift);
	EXPECT_FALSE(IsBaked("Wall A"));
	EXPECT_EQ(History().GetQueueLength(), 0);
	WhenModalOpens([](QWidget& Prompt) { PressButton(Prompt, "Apply to all"); });
	Press(Qt::Key_B, CtrlShift);
	EXPECT_TRUE(IsBaked("Wall A"));
	EXPECT_EQ(MeshOf("Wall A"), "Wall");
}

TEST_F(PlugIn, ClosingThePromptMeansCancel)
{
	ClickLine("Wall A");
	for (const bool bByEscape : {true, false})
	{
		WhenModalOpens([&](QWidget& Prompt) { bByEscape ? Press(Qt::Key_Escape) : void(Prompt.close()); });
		Press(Qt::Key_B, CtrlShift);
		EXPECT_FALSE(IsBaked("Wall A"));
	}
	Press(Qt::Key_A, Ctrl);
	EXPECT_GT(SelectionQueries::SelectedActors().Num(), 1) << "everything is usable afterwards";
}

TEST_F(PlugIn, ConflictOffersNoInPlaceBake)
{
	ClickLine("Wall A");
	ClickLine("Wall mirrored", Ctrl);
	WhenModalOpens(
		[&](QWidget& Prompt)
		{
			EXPECT_THAT(ButtonTexts(Prompt), ElementsAre("Create new asset", "Cancel"));
			auto* const Rest = Prompt.findChild<QCheckBox*>();
			ASSERT_NE(Rest, nullptr);
			EXPECT_EQ(Rest->text().toStdString(), "Apply this answer to the remaining assets");
			EXPECT_FALSE(Rest->isChecked());
			ClickOn(*Rest);
			PressButton(Prompt, "Create new asset");
		});
	Press(Qt::Key_B, CtrlShift);
	EXPECT_TRUE(IsBaked("Wall A"));
	EXPECT_TRUE(IsBaked("Wall mirrored"));
}

TEST_F(PlugIn, NothingButThePromptHearsKeys)
{
	ClickLine("Crate");
	Press(Qt::Key_B, CtrlShift);
	ClickLine("Wall A");
	WhenModalOpens(
		[&](QWidget& Prompt)
		{
			Press(Qt::Key_B, CtrlShift);
			Press(Qt::Key_Z, Ctrl);
			Press(Qt::Key_7, CtrlKeypad);
			EXPECT_EQ(History().GetQueueLength(), 1);
			EXPECT_EQ(History().GetUndoCount(), 0);
			EXPECT_EQ(QApplication::activeModalWidget(), &Prompt);
			Press(Qt::Key_Escape);
		});
	Press(Qt::Key_B, CtrlShift);
	EXPECT_TRUE(IsBaked("Crate"));
	Press(Qt::Key_Z, Ctrl);
	EXPECT_FALSE(IsBaked("Crate"));
}

TEST_F(PlugIn, KeypadChordsMoveThePivot)
{
	// What each chord does to the pivot of a box, along the axes of the host: bottom, top, left, right, front, back.
	struct FCase
	{
		Qt::Key Key;
		FVector Side;
	};
	const FCase Cases[] = {{Qt::Key_5, {0, 0, 0}}, {Qt::Key_7, {0, 0, -1}}, {Qt::Key_9, {0, 0, 1}},
		{Qt::Key_4, {0, -1, 0}}, {Qt::Key_6, {0, 1, 0}}, {Qt::Key_2, {-1, 0, 0}}, {Qt::Key_8, {1, 0, 0}}};
	ClickLine("Crate");
	Press(Qt::Key_B, CtrlShift);
	const FBox Box = SelectionQueries::MeshOf(*Actor("Crate"))->GetBoundingBox().TransformBy(WorldOf("Crate"));
	for (const FCase& Case : Cases)
	{
		Press(Case.Key, CtrlKeypad);
		const FVector Wanted = Box.GetCenter() + Box.GetExtent() * Case.Side;
		EXPECT_TRUE(WorldOf("Crate").GetTranslation().Equals(Wanted, 1e-3))
			<< Case.Key << ": " << WorldOf("Crate").GetTranslation().ToString().ToUtf8() << " instead of "
			<< Wanted.ToString().ToUtf8();
	}
	Press(Qt::Key_0, CtrlKeypad);
	EXPECT_TRUE(WorldOf("Crate").GetTranslation().Equals(FVector::ZeroVector, 1e-9));
	EXPECT_EQ(History().GetQueueLength(), 9);
}

TEST_F(PlugIn, KeypadChordsWorkWithNumLockOff)
{
	ClickLine("Crate");
	Press(Qt::Key_B, CtrlShift);
	Press(Qt::Key_Insert, CtrlKeypad);
	EXPECT_TRUE(WorldOf("Crate").GetTranslation().Equals(FVector::ZeroVector, 1e-9));
}

TEST_F(PlugIn, DigitRowIsNotTheKeypad)
{
	ClickLine("Crate");
	Press(Qt::Key_7, Ctrl);
	EXPECT_EQ(History().GetQueueLength(), 0);
}

TEST_F(PlugIn, ChordPassesWhileTextIsTyped)
{
	ClickLine("Crate");
	QLineEdit& Search = *Window().GetOutliner()->GetSearchField();
	Search.setFocus();
	Press(Qt::Key_B, CtrlShift);
	QTest::keyClick(QGuiApplication::focusWindow(), 'r');
	Settle();
	EXPECT_FALSE(IsBaked("Crate"));
	EXPECT_EQ(Search.text().toStdString(), "r");
	Window().GetDetails()->GetField(0, 0)->setFocus();
	Press(Qt::Key_B, CtrlShift);
	EXPECT_FALSE(IsBaked("Crate"));
}

TEST_F(PlugIn, ChordPassesDuringAPlaySession)
{
	ClickLine("Crate");
	Press(Qt::Key_P, Qt::AltModifier);
	ASSERT_TRUE(GEditor->PlayWorld);
	Press(Qt::Key_B, CtrlShift);
	Press(Qt::Key_Delete);
	EXPECT_FALSE(IsBaked("Crate"));
	EXPECT_EQ(History().GetQueueLength(), 0);
	Press(Qt::Key_Escape);
	EXPECT_FALSE(GEditor->PlayWorld);
	Press(Qt::Key_B, CtrlShift);
	EXPECT_TRUE(IsBaked("Crate"));
}

TEST_F(PlugIn, SharedChordGoesToThePlugInOrToTheOther)
{
	const TSharedPtr<FUICommandInfo> Duplicate = Command(TEXT("LevelActions"), TEXT("Duplicate"));
	Duplicate->SetActiveChord(
		FInputChord(EModifierKey::Control | EModifierKey::Shift, EKeys::B), EMultipleKeyBindingIndex::Secondary);
	const int32 Before = SelectionQueries::EditedWorld()->GetActors().Num();
	ClickLine("Crate");
	Press(Qt::Key_B, CtrlShift);
	EXPECT_TRUE(IsBaked("Crate"));
	EXPECT_EQ(SelectionQueries::EditedWorld()->GetActors().Num(), Before);
	ClickLine("Door light");
	Press(Qt::Key_B, CtrlShift);
	EXPECT_EQ(SelectionQueries::EditedWorld()->GetActors().Num(), Before + 1);
}

TEST_F(PlugIn, UserChordRunsTheCommand)
{
	Command(TEXT("TarvinTransform"), TEXT("BakeTransform"))
		->SetActiveChord(FInputChord(EKeys::F9), EMultipleKeyBindingIndex::Secondary);
	ClickLine("Crate");
	Press(Qt::Key_F9);
	EXPECT_TRUE(IsBaked("Crate"));
}

TEST_F(PlugIn, ContextMenuHasItsSectionBesideTheEditorsOwn)
{
	ClickLine("Crate");
	EXPECT_THAT(Lines(ActorMenu::MakeEntries()),
		ElementsAre("Actor", "Select", "Focus Selection", "Delete", "Duplicate", "Attachment",
			"Attach to Last Selected", "Detach", "Morvel Mesh Transform", "Bake Transform", "Set Pivot"));
}

TEST_F(PlugIn, PivotSubmenuListsEightWithTheirChords)
{
	const std::vector<FQtMenuEntry> Entries = ActorMenu::MakeEntries();
	const FQtMenuEntry* const Pivot = Find(Entries, TEXT("TarvinPivot"));
	ASSERT_NE(Pivot, nullptr);
	std::vector<std::string> Shown;
	for (const FQtMenuEntry& Entry : Pivot->MakeEntries())
	{
		if (Entry.Kind == FQtMenuEntry::EKind::Action)
		{
			Shown.push_back((Entry.Label.ToString() + TEXT(" | ") + Entry.Chord.ToString()).ToUtf8());
		}
	}
	EXPECT_THAT(
		Shown, ElementsAre("Pivot to Center | Ctrl+Num 5", "Pivot to Bottom | Ctrl+Num 7", "Pivot to Top | Ctrl+Num 9",
				   "Pivot to Left | Ctrl+Num 4", "Pivot to Right | Ctrl+Num 6", "Pivot to Front | Ctrl+Num 2",
				   "Pivot to Back | Ctrl+Num 8", "Pivot to World Origin | Ctrl+Num 0"));
}

TEST_F(PlugIn, MenuIsOpenedByARightClickAndRunsTheAction)
{
	ClickLine("Crate");
	FOutlinerView& View = *Window().GetOutliner()->GetView();
	const QRect Line = View.visualRect(Window().GetOutliner()->GetModel()->IndexOf(Actor("Crate")));
	bool bOpened = false;
	QTimer::singleShot(0,
		[&]
		{
			auto* const Menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
			ASSERT_NE(Menu, nullptr);
			bOpened = true;
			for (QAction* Action : Menu->actions())
			{
				if (Action->objectName() == QLatin1String("BakeTransform"))
				{
					EXPECT_EQ(Action->text().toStdString(), "Bake Transform\tCtrl+Shift+B");
					QTest::mouseClick(Menu, Qt::LeftButton, Qt::NoModifier, Menu->actionGeometry(Action).center());
				}
			}
		});
	emit View.customContextMenuRequested(Line.center());
	EXPECT_TRUE(bOpened);
	EXPECT_TRUE(IsBaked("Crate"));
}

TEST_F(PlugIn, LeavesNothingInMenusAndChordsOnceUnloaded)
{
	ASSERT_TRUE(FModuleManager::Get().UnloadModule(TEXT("TarvinTransform")));
	EXPECT_THAT(Lines(ActorMenu::MakeEntries()), ElementsAre("Actor", "Select", "Focus Selection", "Delete",
													 "Duplicate", "Attachment", "Attach to Last Selected", "Detach"));
	EXPECT_FALSE(FInputBindingManager::Get().GetContextByName(TEXT("TarvinTransform")).IsValid());
	ClickLine("Crate");
	Press(Qt::Key_B, CtrlShift);
	EXPECT_FALSE(IsBaked("Crate"));
	FModuleManager::Get().LoadModuleChecked(TEXT("TarvinTransform"));
	Press(Qt::Key_B, CtrlShift);
	EXPECT_TRUE(IsBaked("Crate"));
}

TEST_F(PlugIn, EditorRunsWithoutIt)
{
	FEditorOptions Options = DefaultOptions();
	Options.PlugIns = {FName(TEXT("NoSuchPlugIn"))};
	Restart(Options);
	Settle();
	EXPECT_TRUE(Log->toPlainText().contains(QLatin1String("NoSuchPlugIn")));
	EXPECT_TRUE(Window().OpenScene(QString::fromStdString(Yard())));
}

TEST_F(PlugIn, LeavesAloneWhatCouldNotLookTheSame)
{
	const FTransform Before = WorldOf("Figure");
	ClickLine("Figure");
	EXPECT_EQ(Window().GetDetails()->GetRemark().toStdString(),
		"Bake Transform and Set Pivot leave it alone: it is skinned.");
	Press(Qt::Key_B, CtrlShift);
	EXPECT_EQ(WorldOf("Figure"), Before);
	EXPECT_EQ(History().GetQueueLength(), 0);
	ClickLine("Rock");
	EXPECT_EQ(Window().GetDetails()->GetRemark().toStdString(), "");
	Press(Qt::Key_D, Ctrl);
	EXPECT_EQ(History().GetQueueLength(), 1);
}

TEST_F(PlugIn, CopyOfWhatIsLeftAloneIsLeftAlone)
{
	ClickLine("Figure");
	Press(Qt::Key_D, Ctrl);
	EXPECT_THAT(SelectedLabels(), ElementsAre("Figure_2"));
	Press(Qt::Key_B, CtrlShift);
	EXPECT_EQ(History().GetQueueLength(), 1);
}

TEST_F(PlugIn, CopyIsJudgedInItsOwnPlace)
{
	ClickLine("Leaning post");
	const std::string Remark = Window().GetDetails()->GetRemark().toStdString();
	EXPECT_THAT(Remark, testing::HasSubstr("shear"));
	Press(Qt::Key_D, Ctrl);
	EXPECT_THAT(SelectedLabels(), ElementsAre("Leaning post_2"));
	EXPECT_EQ(Window().GetDetails()->GetRemark().toStdString(), Remark);
}
