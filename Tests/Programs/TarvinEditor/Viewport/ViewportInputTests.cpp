// SPDX-License-Identifier: MIT
#include "SlateQt/QtPrelude.h"

#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/TestMeshes.h"
#include "Viewport/ViewportInput.h"
#include "ViewportTestApplication.h"

#include <QTest>
#include <QWheelEvent>
#include <QWidget>

#include <cmath>
#include <gmock/gmock.h>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

/// What the surface of the picture does with events, without a picture.
class FInputWidget : public QWidget
{
public:
	FInputWidget()
		: Model([this] { ++Changes; })
		, Input(Model)
	{
		setFixedSize(600, 400);
		Model.GetCamera().SetPictureSize(600.0, 400.0);
		Input.OnContextMenu = [this](const QPoint& Place) { Menus.push_back(Place); };
		Input.OnRubberBand = [this] { Bands.push_back(Input.GetRubberBand()); };
	}

	FViewportModel Model;
	FViewportInput Input;
	int Changes = 0;
	std::vector<QPoint> Menus;
	std::vector<QRect> Bands;

protected:
	bool event(QEvent* Event) override { return Input.HandleEvent(*Event) || QWidget::event(Event); }
};

class ViewportInput : public FEditorFixture
{
protected:
	ViewportInput()
	{
		EnsureViewportTestApplication();
		UStaticMesh* const Mesh = MakeBoxMesh({-10.0, -10.0, -10.0}, {10.0, 10.0, 10.0});
		Left = MakeActor(World(), Mesh, FTransform(FVector(0.0, 100.0, 0.0)))->GetOwner();
		Right = MakeActor(World(), Mesh, FTransform(FVector(0.0, -100.0, 0.0)))->GetOwner();
		Widget = std::make_unique<FInputWidget>();
		Widget->show();
		EXPECT_TRUE(QTest::qWaitForWindowExposed(Widget.get()));
		Widget->Model.Update(1000.0);
		Widget->Model.GetCamera().LookAt(FVector::ZeroVector, 600.0, 0.0, 0.0);
	}

	QPoint PlaceOf(const AActor* Actor) const
	{
		FViewportPoint Point;
		EXPECT_TRUE(Widget->Model.GetCamera().Project(Actor->GetActorTransform().GetTranslation(), Point));
		return {int(Point.X), int(Point.Y)};
	}

	void Click(
		const QPoint& Place, Qt::KeyboardModifiers Modifiers = Qt::NoModifier, Qt::MouseButton Button = Qt::LeftButton)
	{
		QTest::mouseClick(Widget->windowHandle(), Button, Modifiers, Place);
	}

	void Drag(
		const QPoint& From, const QPoint& To, Qt::MouseButton Button, Qt::KeyboardModifiers Modifiers = Qt::NoModifier)
	{
		QTest::mousePress(Widget->windowHandle(), Button, Modifiers, From);
		QTest::mouseMove(Widget->windowHandle(), (From + To) / 2);
		QTest::mouseMove(Widget->windowHandle(), To);
		QTest::mouseRelease(Widget->windowHandle(), Button, Modifiers, To);
	}

	static std::vector<UObject*> Selected()
	{
		const TArray<UObject*> Objects = GEditor->GetSelectedActors()->GetSelectedObjects();
		return {Objects.begin(), Objects.end()};
	}

	FViewportCamera& Camera() { return Widget->Model.GetCamera(); }

	AActor* Left = nullptr;
	AActor* Right = nullptr;
	const QPoint Nothing{300, 30};
	std::unique_ptr<FInputWidget> Widget;
};
}

TEST_F(ViewportInput, ClickSelectsTheActorUnderItAlone)
{
	Click(PlaceOf(Left));
	EXPECT_THAT(Selected(), ElementsAre(Left));
	EXPECT_EQ(GEditor->GetPivotLocation(), Left->GetActorTransform().GetTranslation());
	EXPECT_EQ(GEditor->GetNumRedraws(), 1);
	Click(PlaceOf(Right));
	EXPECT_THAT(Selected(), ElementsAre(Right));
}

TEST_F(ViewportInput, ClickOnNothingSelectsNothing)
{
	GEditor->SelectActor(Left, true);
	Click(Nothing, Qt::ShiftModifier);
	Click(Nothing, Qt::ControlModifier);
	EXPECT_THAT(Selected(), ElementsAre(Left));
	Click(Nothing);
	EXPECT_THAT(Selected(), IsEmpty());
	EXPECT_EQ(GEditor->GetPivotLocation(), FVector::ZeroVector);
}

TEST_F(ViewportInput, ShiftAddsAndControlToggles)
{
	Click(PlaceOf(Left));
	Click(PlaceOf(Right), Qt::ShiftModifier);
	EXPECT_THAT(Selected(), ElementsAre(Left, Right));
	Click(PlaceOf(Right), Qt::ShiftModifier);
	EXPECT_THAT(Selected(), ElementsAre(Left, Right));
	Click(PlaceOf(Left), Qt::ControlModifier);
	EXPECT_THAT(Selected(), ElementsAre(Right));
	Click(PlaceOf(Left), Qt::ControlModifier);
	EXPECT_THAT(Selected(), ElementsAre(Right, Left));
}

TEST_F(ViewportInput, ClickFollowsAMeshThatWasEditedAndAnActorThatWasMovedWithoutAWord)
{
	const QPoint Old = PlaceOf(Left);
	Left->GetRootComponent()->SetRelativeTransform(FTransform(FVector(0.0, 150.0, 0.0)));
	Click(Old);
	EXPECT_THAT(Selected(), IsEmpty());
	Click(PlaceOf(Left));
	EXPECT_THAT(Selected(), ElementsAre(Left));
	const UStaticMeshComponent* const Shown = Cast<UStaticMeshComponent>(Right->GetRootComponent());
	Shown->GetStaticMesh()->SetMeshDescription(0, MakeBoxDescription({-1.0, 20.0, -1.0}, {1.0, 22.0, 1.0}));
	Click(PlaceOf(Right));
	EXPECT_THAT(Selected(), IsEmpty());
}

TEST_F(ViewportInput, DragDrawsARectangleAndSelectsWhatShowsInIt)
{
	Drag(PlaceOf(Left) - QPoint(40, 40), PlaceOf(Left) + QPoint(5, 5), Qt::LeftButton);
	EXPECT_THAT(Selected(), ElementsAre(Left));
	ASSERT_FALSE(Widget->Bands.empty());
	EXPECT_TRUE(Widget->Bands.back().isNull());
	EXPECT_FALSE(Widget->Bands.front().isNull());
	Drag({590, 390}, {310, 10}, Qt::LeftButton, Qt::ShiftModifier);
	EXPECT_THAT(Selected(), ElementsAre(Left, Right));
	Drag({10, 10}, {590, 390}, Qt::LeftButton, Qt::ControlModifier);
	EXPECT_THAT(Selected(), IsEmpty());
	// Begun on an actor as well.
	Drag(PlaceOf(Left), PlaceOf(Right), Qt::LeftButton);
	EXPECT_THAT(Selected(), ElementsAre(Left, Right));
	Drag(Nothing, Nothing + QPoint(40, 20), Qt::LeftButton);
	EXPECT_THAT(Selected(), IsEmpty());
}

TEST_F(ViewportInput, AltAndLeftOrMiddleOrbit)
{
	const FVector Target = Camera().GetTarget();
	Drag({300, 200}, {360, 240}, Qt::LeftButton, Qt::AltModifier);
	const double Yaw = Camera().GetYaw();
	EXPECT_LT(Yaw, -0.1);
	EXPECT_LT(Camera().GetPitch(), -0.1);
	Drag({300, 200}, {240, 200}, Qt::MiddleButton);
	EXPECT_GT(Camera().GetYaw(), Yaw + 0.1);
	EXPECT_EQ(Camera().GetTarget(), Target);
	EXPECT_THAT(Selected(), IsEmpty());
}

TEST_F(ViewportInput, ShiftOrAltAndMiddlePan)
{
	for (const Qt::KeyboardModifier Modifier : {Qt::ShiftModifier, Qt::AltModifier})
	{
		const QPoint Before = PlaceOf(Left);
		Drag({300, 200}, {330, 180}, Qt::MiddleButton, Modifier);
		EXPECT_LE((PlaceOf(Left) - Before - QPoint(30, -20)).manhattanLength(), 2);
	}
}

TEST_F(ViewportInput, WheelZoomsAtThePointerAndAltAndRightWhereTheDragBegan)
{
	const QPoint Before = PlaceOf(Left);
	const auto Wheel = [&](int Notches)
	{
		QWheelEvent Event(Before, Widget->mapToGlobal(Before), {}, {0, Notches * 120}, Qt::NoButton, Qt::NoModifier,
			Qt::NoScrollPhase, false);
		QCoreApplication::sendEvent(Widget.get(), &Event);
		EXPECT_TRUE(Event.isAccepted());
	};
	Wheel(3);
	EXPECT_NEAR(Camera().GetDistance(), 600.0 * std::pow(0.85, 3.0), 1.e-6);
	EXPECT_LE((PlaceOf(Left) - Before).manhattanLength(), 2);
	Wheel(-3);
	EXPECT_NEAR(Camera().GetDistance(), 600.0, 1.e-6);
	Drag(Before, Before + QPoint(60, 0), Qt::RightButton, Qt::AltModifier);
	EXPECT_LT(Camera().GetDistance(), 450.0);
	EXPECT_LE((PlaceOf(Left) - Before).manhattanLength(), 2);
	EXPECT_THAT(Widget->Menus, IsEmpty());
}

TEST_F(ViewportInput, RightClickSelectsWhatIsThereAndAsksForTheMenu)
{
	GEditor->SelectActor(Left, true);
	Click(PlaceOf(Right), Qt::NoModifier, Qt::RightButton);
	EXPECT_THAT(Selected(), ElementsAre(Right));
	EXPECT_THAT(Widget->Menus, ElementsAre(Widget->mapToGlobal(PlaceOf(Right))));
}

TEST_F(ViewportInput, RightClickOnWhatIsSelectedOrOnNothingKeepsTheSelection)
{
	GEditor->SelectActor(Left, true);
	GEditor->SelectActor(Right, true);
	Click(PlaceOf(Right), Qt::NoModifier, Qt::RightButton);
	Click(Nothing, Qt::NoModifier, Qt::RightButton);
	EXPECT_THAT(Selected(), ElementsAre(Left, Right));
	EXPECT_EQ(Widget->Menus.size(), 2u);
}

TEST_F(ViewportInput, RightDragOpensNoMenu)
{
	Drag(PlaceOf(Right), PlaceOf(Right) + QPoint(50, 0), Qt::RightButton);
	EXPECT_THAT(Widget->Menus, IsEmpty());
	EXPECT_THAT(Selected(), IsEmpty());
}

TEST_F(ViewportInput, LosingTheWindowEndsTheRectangleWithoutSelecting)
{
	QTest::mousePress(Widget->windowHandle(), Qt::LeftButton, Qt::NoModifier, {10, 10});
	QTest::mouseMove(Widget->windowHandle(), {590, 390});
	ASSERT_FALSE(Widget->Input.GetRubberBand().isNull());
	QEvent Leave(QEvent::WindowDeactivate);
	QCoreApplication::sendEvent(Widget.get(), &Leave);
	EXPECT_TRUE(Widget->Input.GetRubberBand().isNull());
	QTest::mouseRelease(Widget->windowHandle(), Qt::LeftButton, Qt::NoModifier, {590, 390});
	EXPECT_THAT(Selected(), IsEmpty());
}

TEST_F(ViewportInput, KeysAreLeftToOthers)
{
	QKeyEvent Event(QEvent::KeyPress, Qt::Key_F, Qt::NoModifier);
	EXPECT_FALSE(Widget->Input.HandleEvent(Event));
}

TEST_F(ViewportInput, DuringAPlaySessionTheCopyIsShownAndNothingIsSelected)
{
	GEditor->SelectActor(Left, true);
	ASSERT_TRUE(GEditor->StartPlaySession());
	EXPECT_EQ(FViewportModel::GetShownWorld(), GEditor->PlayWorld);
	Click(PlaceOf(Right));
	Click(Nothing);
	Drag({10, 10}, {590, 390}, Qt::LeftButton);
	EXPECT_THAT(Selected(), ElementsAre(Left));
	GEditor->EndPlaySession();
	EXPECT_EQ(FViewportModel::GetShownWorld(), World());
	Click(PlaceOf(Right));
	EXPECT_THAT(Selected(), ElementsAre(Right));
}

TEST_F(ViewportInput, WithoutAnEditorClicksDoNothing)
{
	const QPoint Place = PlaceOf(Left);
	DestroyEditorAndAssets();
	Click(Place);
	Click(Place, Qt::NoModifier, Qt::RightButton);
	Drag({10, 10}, {590, 390}, Qt::LeftButton);
	EXPECT_EQ(GEditor, nullptr);
	EXPECT_TRUE(Widget->Model.Update(1000.0));
	EXPECT_TRUE(Widget->Model.GetScene().GetItems().empty());
}
