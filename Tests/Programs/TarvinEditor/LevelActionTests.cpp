// SPDX-License-Identifier: MIT
// What the level editor itself does with actors: each change is undone in one step, and saved scenes show it.
#include "Support/RapidCheck.h"

#include "EditorWindowFixture.h"
#include "LevelActions.h"
#include "SceneUnits.h"
#include "Slate/InputBindingManager.h"

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class LevelAction : public FEditorWindowTest
{
protected:
	static std::string ParentOf(const char* Label)
	{
		const AActor* const Parent = SelectionQueries::ParentOf(*Actor(Label));
		return Parent ? Parent->GetActorLabel().ToUtf8() : "";
	}
	static FTransform WorldOf(const char* Label) { return Actor(Label)->GetActorTransform(); }
};

TEST_F(LevelAction, DeletedActorsStayDeletedInTheFile)
{
	const FTransform Light = WorldOf("Door light");
	ClickLine("Door");
	ClickLine("Rock", Ctrl);
	Press(Qt::Key_Delete);
	EXPECT_EQ(ParentOf("Door light"), "");
	EXPECT_TRUE(WorldOf("Door light").Equals(Light, 1e-6));
	Press(Qt::Key_S, Ctrl);
	ASSERT_TRUE(Window().OpenScene(QString::fromStdString(Yard())));
	for (const AActor* Each : SelectionQueries::EditedWorld()->GetActors())
	{
		EXPECT_NE(Each->GetActorLabel().ToUtf8(), "Door");
		EXPECT_NE(Each->GetActorLabel().ToUtf8(), "Rock");
	}
	EXPECT_TRUE(WorldOf("Door light").Equals(Light, 1e-6));
}

TEST_F(LevelAction, DuplicatesKeepTreeMeshAndPlace)
{
	ClickLine("Shed");
	ClickLine("Door", Ctrl);
	Press(Qt::Key_D, Ctrl);
	EXPECT_THAT(SelectedLabels(), ElementsAre("Shed_2", "Door_2"));
	EXPECT_EQ(ParentOf("Door_2"), "Shed_2");
	EXPECT_EQ(WorldOf("Door_2"), WorldOf("Door"));
	EXPECT_EQ(SelectionQueries::MeshOf(*Actor("Door_2")), SelectionQueries::MeshOf(*Actor("Door")));
	Press(Qt::Key_D, Ctrl);
	EXPECT_THAT(SelectedLabels(), ElementsAre("Shed_3", "Door_3"));
	Press(Qt::Key_S, Ctrl);
	ASSERT_TRUE(Window().OpenScene(QString::fromStdString(Yard())));
	EXPECT_EQ(ParentOf("Door_3"), "Shed_3");
	EXPECT_TRUE(WorldOf("Door_3").Equals(WorldOf("Door"), 1e-6));
	EXPECT_EQ(SelectionQueries::MeshOf(*Actor("Door_3")), SelectionQueries::MeshOf(*Actor("Door")));
}

TEST_F(LevelAction, DuplicateIsUndoneInOneStep)
{
	const int32 Before = SelectionQueries::EditedWorld()->GetActors().Num();
	ClickLine("Wall A");
	ClickLine("Wall B", Ctrl);
	Press(Qt::Key_D, Ctrl);
	EXPECT_EQ(SelectionQueries::EditedWorld()->GetActors().Num(), Before + 2);
	Press(Qt::Key_Z, Ctrl);
	EXPECT_EQ(SelectionQueries::EditedWorld()->GetActors().Num(), Before);
}

TEST_F(LevelAction, AttachingKeepsPlaces)
{
	const FTransform Rock = WorldOf("Rock");
	ClickLine("Rock");
	ClickLine("Ground", Ctrl);
	Session->GetLevelActions()->ExecuteAction(
		FInputBindingManager::Get()
			.FindCommandInContext(TEXT("LevelActions"), FName(TEXT("AttachToLast")))
			.ToSharedRef());
	Settle();
	EXPECT_EQ(ParentOf("Rock"), "Ground");
	EXPECT_TRUE(WorldOf("Rock").Equals(Rock, 1e-6));
	Press(Qt::Key_Z, Ctrl);
	EXPECT_EQ(ParentOf("Rock"), "");
	EXPECT_EQ(WorldOf("Rock"), Rock);
}

TEST_F(LevelAction, AttachingRefusesWhatWouldMove)
{
	const FTransform Wall = WorldOf("Wall A");
	EXPECT_EQ(LevelActions::Attach({Actor("Wall A")}, Actor("Skewed parent")), 0);
	EXPECT_EQ(ParentOf("Wall A"), "");
	EXPECT_EQ(WorldOf("Wall A"), Wall);
	EXPECT_THAT(Toasts(), ElementsAre("1 actor(s) not attached: they would move, or are above"));
	EXPECT_EQ(LevelActions::Attach({Actor("Shed")}, Actor("Door")), 0) << "what is above";
	EXPECT_EQ(History().GetQueueLength(), 0);
}

TEST_F(LevelAction, DetachingKeepsPlaces)
{
	const FTransform Light = WorldOf("Door light");
	LevelActions::Detach({Actor("Door light")});
	EXPECT_EQ(ParentOf("Door light"), "");
	EXPECT_TRUE(WorldOf("Door light").Equals(Light, 1e-6));
	EXPECT_EQ(History().GetQueueLength(), 1);
	LevelActions::Detach({Actor("Door light")});
	EXPECT_EQ(History().GetQueueLength(), 1) << "nothing to detach";
}

TEST_F(LevelAction, SelectsUsersOfTheSameMeshAndChildren)
{
	const auto Run = [this](const TCHAR* Name)
	{
		Session->GetLevelActions()->ExecuteAction(
			FInputBindingManager::Get().FindCommandInContext(TEXT("LevelActions"), FName(Name)).ToSharedRef());
	};
	ClickLine("Wall B");
	Run(TEXT("SelectSameMesh"));
	EXPECT_THAT(SelectedLabels(), UnorderedElementsAre("Wall A", "Wall B", "Wall C", "Wall mirrored"));
	ClickLine("Shed");
	Run(TEXT("SelectChildren"));
	EXPECT_THAT(SelectedLabels(), ElementsAre("Shed", "Door", "Door light"));
}

TEST(SceneUnits, NumbersOfATransformAreThoseOfTheFile)
{
	const FTransform Turned(FQuat(FVector(0, 0, 1), 0.5), FVector(128, 256, 384), FVector(2, 3, 4));
	const FSceneTransform Shown = ToSceneTransform(Turned);
	EXPECT_THAT(Shown.Location, ElementsAre(-2.0, 3.0, -1.0));
	EXPECT_THAT(Shown.Scale, ElementsAre(3.0, 4.0, 2.0));
	EXPECT_NEAR(Shown.Rotation[1], 28.64788975654116, 1e-9) << "up is Y: the turn is the same way about it";
	EXPECT_NEAR(Shown.Rotation[0], 0.0, 1e-12);
	EXPECT_NEAR(Shown.Rotation[2], 0.0, 1e-12);
}

RC_GTEST_PROP(SceneUnitsProperty, ReplacingANumberShowsItAndLeavesTheOthers, ())
{
	const auto Number = [](double Low, double High)
	{ return Low + (High - Low) * double(*rc::gen::inRange(0, 1000000)) / 1000000.0; };
	FTransform Transform(
		FQuat(FVector(Number(-1, 1), Number(-1, 1), Number(0.1, 1)).GetSafeNormal(), Number(-1.4, 1.4)),
		FVector(Number(-9e3, 9e3), Number(-9e3, 9e3), Number(-9e3, 9e3)),
		FVector(Number(0.1, 3), Number(0.1, 3), Number(-3, -0.1)));
	const int Group = *rc::gen::inRange(0, 3);
	const int Axis = *rc::gen::inRange(0, 3);
	// Within the range in which angles are defined.
	const double New = Number(-80, 80);
	const FSceneTransform Before = ToSceneTransform(Transform);
	const FSceneTransform After = ToSceneTransform(WithSceneNumber(Transform, Group, Axis, New));
	for (int Other = 0; Other < 9; ++Other)
	{
		const auto Of = [Other](const FSceneTransform& From)
		{
			const auto& Numbers = Other < 3 ? From.Location : Other < 6 ? From.Rotation : From.Scale;
			return Numbers[std::size_t(Other % 3)];
		};
		const double Wanted = Other == Group * 3 + Axis ? New : Of(Before);
		// An angle near a pole is less sharply defined.
		RC_ASSERT(std::abs(Of(After) - Wanted) < 1e-6);
	}
}
