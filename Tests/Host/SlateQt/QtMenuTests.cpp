// SPDX-License-Identifier: MIT
#include "SlateQt/QtMenu.h"
#include "SlateQtTestFixture.h"

#include <QTextDocumentFragment>

using testing::ElementsAre;

namespace
{
class QtMenu : public FSlateQtTest
{
protected:
	static FText Text(const TCHAR* In) { return FText::FromString(In); }

	/// Opens the menu within the window.
	void Open(FQtMenu& Menu)
	{
		Menu.popup(Window.mapToGlobal(QPoint(40, 40)));
		ASSERT_TRUE(Menu.isVisible());
	}

	static std::vector<std::string> TextsOf(const QMenu& Menu)
	{
		std::vector<std::string> Result;
		for (const QAction* Action : Menu.actions())
		{
			Result.push_back(
				(Action->isSeparator() ? QStringLiteral("--") + Action->text() : Action->text()).toStdString());
		}
		return Result;
	}

	/// Clicks an entry with the mouse.
	static void ClickEntry(QMenu& Menu, int Index)
	{
		QTest::mouseClick(
			Menu.windowHandle(), Qt::LeftButton, Qt::NoModifier, Menu.actionGeometry(Menu.actions()[Index]).center());
	}

	FOneCommand One;
};

TEST_F(QtMenu, CommandShowsLabelToolTipAndChordAndHoldsNoShortcut)
{
	FQtMenu Menu([this] { return std::vector{FQtMenuEntry::Command(One.Command.ToSharedRef(), One.List)}; }, &Window);
	Open(Menu);
	ASSERT_THAT(TextsOf(Menu), ElementsAre("Bake && Go\tCtrl+Shift+B"));
	const QAction& Action = *Menu.actions()[0];
	EXPECT_EQ(Action.objectName(), QStringLiteral("Bake"));
	EXPECT_EQ(QTextDocumentFragment::fromHtml(Action.toolTip()).toPlainText(), QStringLiteral("Bakes <it>"));
	EXPECT_TRUE(Menu.toolTipsVisible());
	EXPECT_TRUE(Action.shortcuts().isEmpty());
	EXPECT_TRUE(Action.isEnabled());
	EXPECT_FALSE(Action.isCheckable());
}

TEST_F(QtMenu, ClickRunsTheCommandThroughItsList)
{
	FQtMenu Menu([this] { return std::vector{FQtMenuEntry::Command(One.Command.ToSharedRef(), One.List)}; }, &Window);
	Open(Menu);
	ClickEntry(Menu, 0);
	EXPECT_EQ(One.Runs, 1);
	EXPECT_FALSE(Menu.isVisible());
}

TEST_F(QtMenu, UnmappedCommandIsDisabled)
{
	One.List->UnmapAction(One.Command);
	FQtMenu Menu([this] { return std::vector{FQtMenuEntry::Command(One.Command.ToSharedRef(), One.List)}; }, &Window);
	Open(Menu);
	EXPECT_FALSE(Menu.actions()[0]->isEnabled());
	ClickEntry(Menu, 0);
	EXPECT_EQ(One.Runs, 0);
}

TEST_F(QtMenu, ChangedChordIsShownTheNextTime)
{
	FQtMenu Menu([this] { return std::vector{FQtMenuEntry::Command(One.Command.ToSharedRef(), One.List)}; }, &Window);
	Open(Menu);
	Menu.close();
	One.Command->SetActiveChord(
		FInputChord(EModifierKey::Control, EKeys::NumPadSeven), EMultipleKeyBindingIndex::Primary);
	Open(Menu);
	EXPECT_THAT(TextsOf(Menu), ElementsAre("Bake && Go\tCtrl+Num 7"));
	One.Command->ResetActiveChords();
}

TEST_F(QtMenu, SectionsAndSubmenusStandInTheirOrder)
{
	FQtMenu Menu(
		[this]
		{
			return std::vector{FQtMenuEntry::Section(Text(TEXT("Mesh"))),
				FQtMenuEntry::Command(One.Command.ToSharedRef(), One.List),
				FQtMenuEntry::SubMenu(
					Text(TEXT("Set\tPivot")), Text(TEXT("Moves it")), [] { return std::vector<FQtMenuEntry>(); }),
				FQtMenuEntry::Section(FText())};
		},
		&Window);
	Open(Menu);
	EXPECT_THAT(TextsOf(Menu), ElementsAre("--Mesh", "Bake && Go\tCtrl+Shift+B", "Set Pivot", "--"));
	EXPECT_EQ(QTextDocumentFragment::fromHtml(Menu.actions()[2]->toolTip()).toPlainText(), QStringLiteral("Moves it"));
}

TEST_F(QtMenu, SubmenuIsBuiltEachTimeItOpens)
{
	int Built = 0;
	int Ran = 0;
	FQtMenu Menu(
		[&]
		{
			return std::vector{FQtMenuEntry::SubMenu(Text(TEXT("More")), FText(),
				[&]
				{
					++Built;
					return std::vector{FQtMenuEntry::Plain(
						Text(TEXT("Inner")), FText(), FUIAction(FExecuteAction::CreateLambda([&Ran] { ++Ran; })))};
				})};
		},
		&Window);
	Open(Menu);
	EXPECT_EQ(Built, 0);
	Click(Qt::Key_Down);
	Click(Qt::Key_Right);
	EXPECT_EQ(Built, 1);
	QMenu* Inner = Menu.actions()[0]->menu();
	ASSERT_TRUE(Inner->isVisible());
	ClickEntry(*Inner, 0);
	EXPECT_EQ(Ran, 1);
	Open(Menu);
	Click(Qt::Key_Down);
	Click(Qt::Key_Right);
	EXPECT_EQ(Built, 2);
}

TEST_F(QtMenu, StateOfToggleIsShown)
{
	bool bOn = true;
	FQtMenuEntry Toggle = FQtMenuEntry::Plain(Text(TEXT("Grid")), FText(),
		FUIAction(FExecuteAction::CreateLambda([&bOn] { bOn = !bOn; }), FCanExecuteAction(),
			FGetActionCheckState::CreateLambda(
				[&bOn] { return bOn ? ECheckBoxState::Checked : ECheckBoxState::Unchecked; })));
	Toggle.Type = EUserInterfaceActionType::ToggleButton;
	FQtMenu Menu([&Toggle] { return std::vector{Toggle}; }, &Window);
	Open(Menu);
	EXPECT_TRUE(Menu.actions()[0]->isCheckable());
	EXPECT_TRUE(Menu.actions()[0]->isChecked());
	ClickEntry(Menu, 0);
	EXPECT_FALSE(bOn);
	Open(Menu);
	EXPECT_FALSE(Menu.actions()[0]->isChecked());
}

TEST_F(QtMenu, EntryThatIsNotVisibleIsLeftOut)
{
	FQtMenuEntry Hidden = FQtMenuEntry::Plain(Text(TEXT("Hidden")), FText(), FUIAction());
	Hidden.Action.IsActionVisibleDelegate = FIsActionButtonVisible::CreateLambda([] { return false; });
	FQtMenu Menu(
		[&Hidden] {
			return std::vector{Hidden, FQtMenuEntry::Plain(FText::FromString(TEXT("Seen")), FText(), FUIAction())};
		},
		&Window);
	Open(Menu);
	EXPECT_THAT(TextsOf(Menu), ElementsAre("Seen"));
}
}
