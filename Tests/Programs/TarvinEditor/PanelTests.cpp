// SPDX-License-Identifier: MIT
// Details, assets, history and log.
#include "AssetPanel.h"
#include "EditorWindowFixture.h"
#include "HistoryPanel.h"

#include <QTableView>

using testing::ElementsAre;
using testing::UnorderedElementsAre;

DEFINE_LOG_CATEGORY_STATIC(LogPanelTest, Log, All)

class Panels : public FEditorWindowTest
{
protected:
	QLineEdit& Field(int Group, int Axis) { return *Window().GetDetails()->GetField(Group, Axis); }
	std::string Shown(int Group, int Axis) { return Field(Group, Axis).text().toStdString(); }

	/// The cells of an asset's line; empty where there is none.
	std::vector<std::string> AssetLine(const char* Name)
	{
		const FAssetModel& Model = *Window().GetAssets()->GetModel();
		for (int Row = 0; Row < Model.rowCount(); ++Row)
		{
			if (Model.index(Row, 0).data().toString() == QLatin1String(Name))
			{
				return {Name, Model.index(Row, 1).data().toString().toStdString(),
					Model.index(Row, 2).data().toString().toStdString()};
			}
		}
		return {};
	}
};

TEST_F(Panels, DetailsShowSceneUnits)
{
	ClickLine("Wall A");
	EXPECT_EQ(Window().GetDetails()->GetNameField()->text().toStdString(), "Wall A");
	EXPECT_THAT((std::vector{Shown(0, 0), Shown(0, 1), Shown(0, 2)}), ElementsAre("-6", "0", "-6"));
	EXPECT_THAT((std::vector{Shown(2, 0), Shown(2, 1), Shown(2, 2)}), ElementsAre("1", "2", "1"));
}

TEST_F(Panels, TypedNumberMovesTheActorInOneStep)
{
	ClickLine("Wall A");
	const FTransform Before = Actor("Wall A")->GetActorTransform();
	TypeInto(Field(0, 1), "2.5");
	EXPECT_EQ(
		Actor("Wall A")->GetActorTransform().GetTranslation(), Before.GetTranslation() + FVector(0, 0, 2.5 * 128));
	EXPECT_EQ(Actor("Wall A")->GetActorTransform().GetScale3D(), Before.GetScale3D());
	EXPECT_EQ(History().GetQueueLength(), 1);
	Window().GetOutliner()->GetView()->setFocus();
	Press(Qt::Key_Z, Ctrl);
	EXPECT_EQ(Actor("Wall A")->GetActorTransform(), Before);
	EXPECT_EQ(Shown(0, 1), "0");
}

TEST_F(Panels, SameNumberAndNonsenseChangeNothing)
{
	ClickLine("Rock");
	const std::string Angle = Shown(1, 1);
	const FTransform Before = Actor("Rock")->GetActorTransform();
	TypeInto(Field(1, 1), Angle.c_str());
	TypeInto(Field(0, 0), "north");
	TypeInto(Field(0, 0), "nan");
	TypeInto(Field(0, 0), "1e999");
	EXPECT_EQ(Actor("Rock")->GetActorTransform(), Before);
	EXPECT_EQ(History().GetQueueLength(), 0);
	EXPECT_EQ(Shown(1, 1), Angle);
}

TEST_F(Panels, DetailsOfSeveralShowWhatTheyShare)
{
	ClickLine("Wall A");
	ClickLine("Wall B", Ctrl);
	EXPECT_EQ(Shown(2, 1).empty(), Field(2, 1).placeholderText() == QLatin1String("mixed"));
	TypeInto(Field(0, 1), "3");
	EXPECT_EQ(Shown(0, 1), "3");
	EXPECT_EQ(Actor("Wall A")->GetActorTransform().GetTranslation().Z, 3 * 128.0);
	EXPECT_EQ(Actor("Wall B")->GetActorTransform().GetTranslation().Z, 3 * 128.0);
	EXPECT_EQ(History().GetQueueLength(), 1);
}

TEST_F(Panels, NameFieldRenames)
{
	ClickLine("Rock");
	TypeInto(*Window().GetDetails()->GetNameField(), "Boulder");
	EXPECT_NE(Actor("Boulder"), nullptr);
	Window().GetOutliner()->GetView()->setFocus();
	Press(Qt::Key_S, Ctrl);
	EXPECT_NE(ReadAll(Yard()).find("\"Boulder\""), std::string::npos);
}

TEST_F(Panels, AssetsShowUsersAndWhatIsUnsaved)
{
	EXPECT_THAT(AssetLine("Wall"), ElementsAre("Wall", "4", ""));
	ClickLine("Wall A");
	WhenModalOpens([](QWidget&) { Press(Qt::Key_Return); });
	Press(Qt::Key_B, CtrlShift);
	EXPECT_THAT(AssetLine("Wall"), ElementsAre("Wall", "3", ""));
	EXPECT_THAT(AssetLine("Wall_Baked"), ElementsAre("Wall_Baked", "1", "* not saved"));
	Press(Qt::Key_S, Ctrl);
	EXPECT_THAT(AssetLine("Wall_Baked"), ElementsAre("Wall_Baked", "1", ""));
}

TEST_F(Panels, DoubleClickOnAnAssetSelectsItsUsers)
{
	FAssetModel& Model = *Window().GetAssets()->GetModel();
	for (int Row = 0; Row < Model.rowCount(); ++Row)
	{
		if (Model.index(Row, 0).data().toString() == QLatin1String("Wall"))
		{
			emit Window().GetAssets()->GetView()->doubleClicked(Model.index(Row, 0));
		}
	}
	EXPECT_THAT(SelectedLabels(), UnorderedElementsAre("Wall A", "Wall B", "Wall C", "Wall mirrored"));
}

TEST_F(Panels, HistoryGoesToAnyState)
{
	ClickLine("Crate");
	const FTransform Start = Actor("Crate")->GetActorTransform();
	Press(Qt::Key_B, CtrlShift);
	Press(Qt::Key_7, CtrlKeypad);
	const FTransform End = Actor("Crate")->GetActorTransform();
	FHistoryPanel& Panel = *Window().GetHistory();
	ASSERT_EQ(Panel.count(), 3);
	EXPECT_EQ(Panel.item(1)->text().toStdString(), "Bake Transform");
	EXPECT_EQ(Panel.item(2)->text().toStdString(), "Set Pivot");
	EXPECT_TRUE(Panel.item(2)->font().bold());
	emit Panel.itemClicked(Panel.item(0));
	Settle();
	EXPECT_EQ(Actor("Crate")->GetActorTransform(), Start);
	EXPECT_TRUE(Panel.item(0)->font().bold());
	emit Panel.itemClicked(Panel.item(2));
	Settle();
	EXPECT_EQ(Actor("Crate")->GetActorTransform(), End);
}

TEST_F(Panels, LogShowsLinesAsTheyAre)
{
	HOST_LOG(LogPanelTest, Warning, TEXT("<b>%s</b> & more\x1b[31m"), TEXT("careful"));
	HOST_LOG(LogPanelTest, Verbose, TEXT("not for users"));
	Settle();
	const QString Text = Log->toPlainText();
	EXPECT_TRUE(Text.contains(QLatin1String("LogPanelTest: <b>careful</b> & more"))) << Text.toStdString();
	EXPECT_FALSE(Text.contains(QLatin1Char('\x1b')));
	EXPECT_FALSE(Text.contains(QLatin1String("not for users")));
}
