// SPDX-License-Identifier: MIT
// The outliner: a tree of the level's actors that agrees with the editor's selection.
#include "EditorWindowFixture.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Outliner : public FEditorWindowTest
{
protected:
	FOutlinerPanel& Panel() { return *Window().GetOutliner(); }
	FOutlinerModel& Model() { return *Panel().GetModel(); }

	std::vector<std::string> SelectedLines()
	{
		std::vector<std::string> Lines;
		for (const QModelIndex& Line : Panel().GetView()->selectionModel()->selectedRows())
		{
			Lines.push_back(Line.data().toString().toStdString());
		}
		return Lines;
	}
};

TEST_F(Outliner, ShowsEveryActorBelowWhatItIsAttachedTo)
{
	EXPECT_EQ(Model().GetNumActors(), SelectionQueries::EditedWorld()->GetActors().Num());
	const QModelIndex Light = Model().IndexOf(Actor("Door light"));
	EXPECT_EQ(Light.parent().data().toString().toStdString(), "Door");
	EXPECT_EQ(Light.parent().parent().data().toString().toStdString(), "Shed");
	EXPECT_FALSE(Light.parent().parent().parent().isValid());
	EXPECT_EQ(Light.parent().siblingAtColumn(FOutlinerModel::MeshColumn).data().toString().toStdString(), "Door");
}

TEST_F(Outliner, ClickSelectsInTheEditor)
{
	ClickLine("Wall B");
	EXPECT_THAT(SelectedLabels(), ElementsAre("Wall B"));
	ClickLine("Crate");
	EXPECT_THAT(SelectedLabels(), ElementsAre("Crate"));
}

TEST_F(Outliner, KeepsTheOrderInWhichActorsWereClicked)
{
	ClickLine("Wall B");
	ClickLine("Rock", Ctrl);
	ClickLine("Crate", Ctrl);
	EXPECT_THAT(SelectedLabels(), ElementsAre("Wall B", "Rock", "Crate"));
	ClickLine("Rock", Ctrl);
	EXPECT_THAT(SelectedLabels(), ElementsAre("Wall B", "Crate"));
}

TEST_F(Outliner, ShowsWhatTheEditorSelects)
{
	SelectionQueries::Select({Actor("Rock"), Actor("Door light"), Actor("Wall A"), Actor("Wall B")});
	Settle();
	EXPECT_THAT(SelectedLines(), UnorderedElementsAre("Rock", "Door light", "Wall A", "Wall B"));
	EXPECT_THAT(SelectedLabels(), ElementsAre("Rock", "Door light", "Wall A", "Wall B"))
		<< "the order stays the editor's";
	GEditor->SelectNone();
	Settle();
	EXPECT_THAT(SelectedLines(), IsEmpty());
}

TEST_F(Outliner, SearchShowsMatchesAndWhatTheyAreAttachedTo)
{
	TypeInto(*Panel().GetSearchField(), "door l");
	EXPECT_EQ(Model().GetNumMatches(), 1);
	EXPECT_EQ(Model().GetNumActors(), 3);
	EXPECT_TRUE(Model().IndexOf(Actor("Shed")).isValid());
	EXPECT_FALSE(Model().IndexOf(Actor("Crate")).isValid());
	TypeInto(*Panel().GetSearchField(), "POST");
	EXPECT_EQ(Model().GetNumMatches(), 2) << "meshes are searched too, whatever the case";
}

TEST_F(Outliner, SearchLeavesTheSelectionAlone)
{
	ClickLine("Wall B");
	ClickLine("Rock", Ctrl);
	TypeInto(*Panel().GetSearchField(), "crate");
	EXPECT_THAT(SelectedLabels(), ElementsAre("Wall B", "Rock"));
	Panel().GetSearchField()->clear();
	Settle();
	EXPECT_THAT(SelectedLines(), UnorderedElementsAre("Wall B", "Rock"));
}

TEST_F(Outliner, SelectAllTakesFoldedLinesToo)
{
	Panel().GetView()->collapseAll();
	Press(Qt::Key_A, Ctrl);
	EXPECT_EQ(SelectionQueries::SelectedActors().Num(), Model().GetNumActors());
	Press(Qt::Key_A, CtrlShift);
	EXPECT_THAT(SelectedLabels(), IsEmpty());
}

TEST_F(Outliner, FollowsDeletingAndUndo)
{
	const int32 Before = Model().GetNumActors();
	ClickLine("Shed");
	Press(Qt::Key_Delete);
	EXPECT_EQ(Model().GetNumActors(), Before - 1);
	EXPECT_FALSE(Model().IndexOf(Actor("Door")).parent().isValid()) << "what was attached stands on its own";
	Press(Qt::Key_Z, Ctrl);
	EXPECT_EQ(Model().GetNumActors(), Before);
	EXPECT_EQ(Model().IndexOf(Actor("Door")).parent(), Model().IndexOf(Actor("Shed")));
}

TEST_F(Outliner, RenamesInPlace)
{
	ClickLine("Rock");
	Press(Qt::Key_F2);
	for (const char Letter : {'P', 'e', 'b', 'b', 'l', 'e'})
	{
		QTest::keyClick(QGuiApplication::focusWindow(), Letter);
	}
	Press(Qt::Key_Return);
	EXPECT_NE(Actor("Pebble"), nullptr);
	EXPECT_TRUE(Model().IndexOf(Actor("Pebble")).isValid());
	Window().GetOutliner()->GetView()->setFocus();
	Press(Qt::Key_Z, Ctrl);
	EXPECT_NE(Actor("Rock"), nullptr);
}

TEST_F(Outliner, LettersGoToCommandsAndArrowsToTheTree)
{
	ClickLine("Crate");
	Press(Qt::Key_Down);
	EXPECT_THAT(SelectedLabels(), ElementsAre("Crate camera"));
	int NumFocused = 0;
	Session->SetFocusAction([&NumFocused] { ++NumFocused; });
	Press(Qt::Key_F);
	EXPECT_EQ(NumFocused, 1);
}
