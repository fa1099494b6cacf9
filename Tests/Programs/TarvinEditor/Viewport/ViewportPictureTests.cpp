// SPDX-License-Identifier: MIT
#include "PictureFixture.h"

#include "Editor/ScopedTransaction.h"
#include "Engine/InstancedStaticMeshComponent.h"
#include "MeshDescription/StaticMeshOperations.h"
#include "SlateQt/QtTheme.h"
#include "Viewport/ViewportAxes.h"

#include <QVBoxLayout>

#include <cmath>
#include <gmock/gmock.h>

namespace
{
class ViewportPicture : public FPictureTest
{
protected:
	/// A crate of uneven sides around its origin.
	UStaticMesh* MakeCrate(const TCHAR* Name = TEXT("/Test/Crate"))
	{
		return MakeBoxMesh({-60.0, -40.0, -30.0}, {60.0, 40.0, 30.0}, Name);
	}

	/// The mean brightness of some pixels around a place.
	static double Brightness(const QImage& Picture, const QPoint& Place)
	{
		double Sum = 0.0;
		for (int Y = -2; Y <= 2; ++Y)
		{
			for (int X = -2; X <= 2; ++X)
			{
				Sum += qGray(Picture.pixel(Place + QPoint(X, Y)));
			}
		}
		return Sum / 25.0;
	}

	/// How many pixels have the hue of the outline. The cross of axes, of similar hues, is left out.
	static int NumOutlined(const QImage& Picture)
	{
		int Count = 0;
		const int Corner = int(std::ceil(1.5 * ViewportAxesSize * Picture.devicePixelRatio()));
		for (int Y = 0; Y < Picture.height(); ++Y)
		{
			for (int X = Y < Picture.height() - Corner ? 0 : Corner; X < Picture.width(); ++X)
			{
				const QColor Colour = Picture.pixelColor(X, Y);
				Count += Colour.red() - Colour.blue() > 120 && Colour.green() > 60;
			}
		}
		return Count;
	}

	void Select(const USceneComponent* Component)
	{
		GEditor->SelectNone();
		GEditor->SelectActor(Component->GetOwner(), true);
		GEditor->UpdatePivotLocationForSelection();
		GEditor->RedrawLevelEditingViewports();
	}
};
}

TEST_F(ViewportPicture, ShowsObjectsWherePlaceOfSays)
{
	Show();
	const QImage Empty = GrabAll();
	UStaticMesh* const Mesh = MakeCrate();
	const FTransform Places[] = {FTransform(FVector(0.0, -150.0, 40.0)),
		FTransform(FQuat({0.3, 0.5, 0.8}, 0.7), {20.0, 150.0, 60.0}, {1.0, 0.7, 1.5}),
		FTransform(FQuat({0.0, 0.0, 1.0}, 0.4), {-200.0, 0.0, 40.0}, {-1.0, 1.0, 1.0})};
	std::vector<UStaticMeshComponent*> Components;
	for (const FTransform& Place : Places)
	{
		Components.push_back(MakeActor(World(), Mesh, Place));
	}
	const QImage Picture = GrabAll();
	Keep(Picture, "objects");
	for (const UStaticMeshComponent* Component : Components)
	{
		const QPoint Place = PlaceOf(Component);
		ASSERT_TRUE(Picture.rect().adjusted(5, 5, -5, -5).contains(Place));
		EXPECT_GT(Difference(Picture.pixel(Place), Empty.pixel(Place)), 40);
	}
	// Where there is none of them, there is background.
	EXPECT_LT(Difference(Picture.pixel(400, 3), Empty.pixel(400, 3)), 40);
}

TEST_F(ViewportPicture, EdgesAreWhereTheMeshEnds)
{
	UStaticMeshComponent* const Component = MakeActor(World(), MakeCrate());
	Show();
	Grab();
	Camera().LookAt({0.0, 0.0, 500.0}, 1000.0, 0.0, -1.5707963);
	// From above the ground's lines would be around the crate: its top is compared with what is beside it.
	const QImage Picture = Grab();
	const QRgb Top = Picture.pixel(Panel->PlaceOf({0.0, 0.0, 30.0}));
	for (const FVector& Side :
		{FVector(60.0, 10.0, 30.0), FVector(-60.0, 10.0, 30.0), FVector(10.0, 40.0, 30.0), FVector(10.0, -40.0, 30.0)})
	{
		const QPoint Edge = Panel->PlaceOf(Side);
		const QPoint Middle = PlaceOf(Component, {0.0, 0.0, 30.0});
		const QPoint Step((Edge.x() > Middle.x() + 12) - (Edge.x() < Middle.x() - 12),
			(Edge.y() > Middle.y() + 12) - (Edge.y() < Middle.y() - 12));
		EXPECT_LT(Difference(Picture.pixel(Edge - Step * 3), Top), 8) << Side.ToString().ToUtf8();
		EXPECT_GT(Difference(Picture.pixel(Edge + Step * 3), Top), 40) << Side.ToString().ToUtf8();
	}
}

TEST_F(ViewportPicture, IsTheSameToTheBitWhenNothingHasChanged)
{
	MakeActor(World(), MakeCrate());
	Show();
	const QImage First = GrabAll();
	GEditor->RedrawLevelEditingViewports();
	EXPECT_EQ(NumDifferent(First, GrabAll(), 0), 0);
}

TEST_F(ViewportPicture, SelectionIsOutlinedAndNothingElseChanges)
{
	UStaticMeshComponent* const Chosen = MakeActor(World(), MakeCrate(), FTransform(FVector(0.0, 120.0, 30.0)));
	UStaticMeshComponent* const Other = MakeActor(World(), MakeCrate(), FTransform(FVector(0.0, -120.0, 30.0)));
	Show();
	const QImage Before = GrabAll();
	EXPECT_EQ(NumOutlined(Before), 0);
	Select(Chosen);
	const QImage After = Grab();
	Keep(After, "selected");
	EXPECT_GT(NumOutlined(After), 200);
	const QRect AroundOther = QRect(PlaceOf(Other) - QPoint(20, 20), QSize(40, 40));
	EXPECT_EQ(NumDifferent(Before.copy(AroundOther), After.copy(AroundOther), 0), 0);
	const QPoint Corner = PlaceOf(Chosen, {60.0, 40.0, 30.0});
	const QRect AroundCorner = QRect(Corner - QPoint(5, 5), QSize(11, 11));
	EXPECT_GT(NumDifferent(Before.copy(AroundCorner), After.copy(AroundCorner), 30), 5);
	GEditor->SelectNone();
	EXPECT_EQ(NumDifferent(Before, Grab(), 0), 0);
}

TEST_F(ViewportPicture, OutlineOfWhatIsHiddenIsSeenMoreFaintly)
{
	UStaticMesh* const Wall = MakeBoxMesh({-5.0, -400.0, -200.0}, {5.0, 400.0, 200.0}, TEXT("/Test/Wall"));
	UStaticMeshComponent* const Hidden = MakeActor(World(), MakeCrate());
	Show();
	Grab();
	Camera().LookAt(FVector::ZeroVector, 800.0, 0.0, 0.0);
	Select(Hidden);
	const QPoint Edge = PlaceOf(Hidden, {-60.0, 0.0, 30.0}) - QPoint(0, 1);
	const auto Warmth = [&](const QImage& Picture)
	{ return Picture.pixelColor(Edge).red() - Picture.pixelColor(Edge).blue(); };
	const int InSight = Warmth(Grab());
	MakeActor(World(), Wall, FTransform(FVector(-200.0, 0.0, 0.0)));
	const QImage Picture = Grab();
	Keep(Picture, "hidden");
	EXPECT_GT(InSight, 100);
	EXPECT_GT(Warmth(Picture), 25);
	EXPECT_LT(Warmth(Picture), InSight - 50);
}

TEST_F(ViewportPicture, MirroredObjectsAreLitFromOutside)
{
	// The same box, since it is its own mirror image: both must look the same.
	UStaticMeshComponent* const Component = MakeActor(World(), MakeCrate());
	Show();
	const QImage Plain = GrabAll();
	for (const FVector& Scale : {FVector(-1.0, 1.0, 1.0), FVector(1.0, -1.0, 1.0), FVector(-1.0, -1.0, -1.0)})
	{
		Component->SetRelativeTransform(FTransform(FQuat(), FVector::ZeroVector, Scale));
		GEditor->RedrawLevelEditingViewports();
		EXPECT_EQ(NumDifferent(Plain, Grab(), 3), 0) << Scale.ToString().ToUtf8();
	}
	// While a box that is inside out is darker.
	FMeshDescription InsideOut = MakeBoxDescription({60.0, -40.0, -30.0}, {-60.0, 40.0, 30.0});
	Component->SetRelativeTransform(FTransform());
	Component->GetStaticMesh()->SetMeshDescription(0, std::move(InsideOut));
	GEditor->RedrawLevelEditingViewports();
	const QImage Dark = Grab();
	Keep(Dark, "inside-out");
	EXPECT_LT(Brightness(Dark, PlaceOf(Component)), Brightness(Plain, PlaceOf(Component)) - 30.0);
}

TEST_F(ViewportPicture, MovingTheTransformIntoTheMeshLeavesThePicture)
{
	const FTransform Place(FQuat({0.3, 0.5, 0.8}, 0.9), {20.0, 30.0, 50.0}, {1.5, -0.7, 1.1});
	UStaticMeshComponent* const Component = MakeActor(World(), MakeCrate(), Place);
	MakeActor(World(), MakeBoxMesh({-300.0, -300.0, -5.0}, {300.0, 300.0, 0.0}, TEXT("/Test/Floor")));
	Show();
	const QImage Before = GrabAll();
	Keep(Before, "unbaked");
	UStaticMesh* const Mesh = Component->GetStaticMesh();
	const FTransform Part(Place.GetRotation(), FVector::ZeroVector, Place.GetScale3D());
	FStaticMeshOperations::ApplyTransform(*Mesh->GetMeshDescription(0), Part.ToMatrixWithScale());
	Mesh->CommitMeshDescription(0);
	Mesh->PostEditChange();
	const QImage Half = Grab();
	Component->SetRelativeTransform(FTransform(Place.GetTranslation()));
	GEditor->RedrawLevelEditingViewports();
	const QImage After = Grab();
	EXPECT_GT(NumDifferent(Before, Half, 20), 500);
	// A sample at an edge may fall to the other side by rounding, and normals have ten bits.
	EXPECT_LT(NumDifferent(Before, After, 6), 40);
}

TEST_F(ViewportPicture, ShowsEveryInstanceAndFollowsUndo)
{
	AActor* const Actor = World()->SpawnActor<AActor>();
	auto* const Instanced = Actor->AddComponent<UInstancedStaticMeshComponent>();
	Instanced->SetStaticMesh(MakeCrate());
	Instanced->AddInstance(FTransform(FVector(0.0, 200.0, 0.0)));
	Instanced->AddInstance(FTransform(FQuat({0.0, 0.0, 1.0}, 0.6), {0.0, -200.0, 0.0}, {1.0, -1.0, 1.0}));
	Show();
	const QImage Before = GrabAll();
	const QPoint First = Panel->PlaceOf({0.0, 200.0, 0.0});
	const QPoint Second = Panel->PlaceOf({0.0, -200.0, 0.0});
	{
		const FScopedTransaction Transaction(TEXT(""), FText::FromString(TEXT("Delete")), nullptr);
		World()->DestroyActor(Actor);
	}
	const QImage Gone = Grab();
	EXPECT_GT(Difference(Before.pixel(First), Gone.pixel(First)), 40);
	EXPECT_GT(Difference(Before.pixel(Second), Gone.pixel(Second)), 40);
	ASSERT_TRUE(Undo());
	EXPECT_EQ(NumDifferent(Before, Grab(), 0), 0);
}

TEST_F(ViewportPicture, ShowsThePlayedWorldWhileASessionRuns)
{
	UStaticMeshComponent* const Component = MakeActor(World(), MakeCrate());
	Show();
	const QImage Before = GrabAll();
	ASSERT_TRUE(GEditor->StartPlaySession());
	EXPECT_EQ(NumDifferent(Before, Grab(), 0), 0);
	AActor* const Copy = GEditor->PlayWorld->GetActors()[0];
	Copy->GetRootComponent()->SetRelativeTransform(FTransform(FVector(0.0, 0.0, 3000.0)));
	GEditor->RedrawLevelEditingViewports();
	EXPECT_GT(Difference(Before.pixel(PlaceOf(Component)), Grab().pixel(PlaceOf(Component))), 40);
	GEditor->EndPlaySession();
	EXPECT_EQ(NumDifferent(Before, Grab(), 0), 0);
}

TEST_F(ViewportPicture, ManyChangesInOneTurnMakeOnePicture)
{
	UStaticMesh* const Mesh = MakeCrate();
	Show();
	Grab();
	QApplication::processEvents();
	const int32 Before = Surface().GetNumPictures();
	for (int32 Index = 0; Index < 50; ++Index)
	{
		MakeActor(World(), Mesh, FTransform(FVector(Index * 100.0, 0.0, 0.0)));
		GEditor->RedrawLevelEditingViewports();
	}
	EXPECT_EQ(Surface().GetNumPictures(), Before);
	// The first of them prepares the mesh; nothing is left to do after it.
	QTest::qWait(50);
	EXPECT_EQ(Surface().GetNumPictures(), Before + 1);
}

TEST_F(ViewportPicture, MovingTheCameraSendsNothingToTheGraphicsCard)
{
	UStaticMesh* const Mesh = MakeCrate();
	MakeActor(World(), Mesh);
	MakeActor(World(), Mesh, FTransform(FVector(300.0, 0.0, 0.0)));
	Show();
	GrabAll();
	EXPECT_EQ(Surface().GetRenderer().GetNumMeshes(), 1);
	const int32 Uploads = Surface().GetRenderer().GetNumUploads();
	Surface().GetModel().Orbit(50.0, 20.0);
	Grab();
	EXPECT_EQ(Surface().GetRenderer().GetNumUploads(), Uploads);
	for (AActor* Actor : World()->GetActors())
	{
		World()->DestroyActor(Actor);
	}
	Grab();
	EXPECT_EQ(Surface().GetRenderer().GetNumMeshes(), 0);
}

TEST_F(ViewportPicture, ClicksSelectWhatIsSeenThere)
{
	UStaticMeshComponent* const Component = MakeActor(World(), MakeCrate(), FTransform(FVector(0.0, 120.0, 30.0)));
	MakeActor(World(), MakeCrate(), FTransform(FVector(0.0, -120.0, 30.0)));
	std::vector<QPoint> Menus;
	Panel->OnContextMenu = [&](const QPoint& Place) { Menus.push_back(Place); };
	Show();
	GrabAll();
	QTest::mouseClick(&Surface(), Qt::LeftButton, Qt::NoModifier, PlaceOf(Component));
	EXPECT_TRUE(GEditor->GetSelectedActors()->IsSelected(Component->GetOwner()));
	EXPECT_EQ(GEditor->GetSelectedActors()->Num(), 1);
	EXPECT_EQ(Panel->focusWidget(), &Surface());
	QTest::mouseClick(&Surface(), Qt::RightButton, Qt::NoModifier, PlaceOf(Component));
	EXPECT_THAT(Menus, testing::ElementsAre(Surface().mapToGlobal(PlaceOf(Component))));
	QTest::mousePress(&Surface(), Qt::LeftButton, Qt::NoModifier, {100, 100});
	QTest::mouseMove(&Surface(), {300, 250});
	QTest::mouseMove(&Surface(), {500, 350});
	const QImage Picture = Grab();
	Keep(Picture, "band");
	QTest::mouseRelease(&Surface(), Qt::LeftButton, Qt::NoModifier, {500, 350});
	EXPECT_GT(NumDifferent(Picture.copy(100, 100, 400, 250), Grab().copy(100, 100, 400, 250), 8), 50000);
}

TEST_F(ViewportPicture, SurvivesAMoveToAnotherWindowAndTheEndOfTheEditor)
{
	MakeActor(World(), MakeCrate());
	Show();
	const QImage Before = GrabAll();
	QWidget Window;
	auto* const Layout = new QVBoxLayout(&Window);
	Layout->setContentsMargins(0, 0, 0, 0);
	Window.resize(800, 600);
	Layout->addWidget(Panel.get());
	Window.show();
	ASSERT_TRUE(QTest::qWaitForWindowExposed(&Window));
	EXPECT_EQ(NumDifferent(Before, GrabAll(), 0), 0);
	DestroyEditorAndAssets();
	Panel->SetWorldChanged();
	Grab();
	EXPECT_EQ(Surface().GetRenderer().GetNumMeshes(), 0);
	Panel->setParent(nullptr);
}

TEST_F(ViewportPicture, SpecksAreSeenWhereTheyAreAndOutlined)
{
	AActor* const Actor = World()->SpawnActor<AActor>();
	auto* const Instanced = Actor->AddComponent<UInstancedStaticMeshComponent>();
	Instanced->SetStaticMesh(MakeBoxMesh({100.0, -60.0, -60.0}, {220.0, 60.0, 60.0}, TEXT("/Test/Stone")));
	for (int32 Index = 0; Index < 400; ++Index)
	{
		const FVector Place(Index % 20 * 2400.0, Index / 20 * 2400.0, 0.0);
		Instanced->AddInstance(FTransform(FQuat({0.0, 0.0, 1.0}, Index * 0.7), Place));
	}
	Show();
	const QImage Picture = GrabAll();
	Keep(Picture, "specks");
	for (const FTransform& Instance : Instanced->GetInstances())
	{
		const QPoint Place = Panel->PlaceOf(Instance.TransformPosition({160.0, 0.0, 0.0}));
		ASSERT_GT(qGray(Picture.pixel(Place)), 95) << Instance.ToString().ToUtf8();
	}
	EXPECT_EQ(NumOutlined(Picture), 0);
	Select(Instanced);
	EXPECT_GT(NumOutlined(Grab()), 400);
}

TEST_F(ViewportPicture, FollowsTheTheme)
{
	MakeActor(World(), MakeCrate());
	Show();
	const QImage Dark = GrabAll();
	ApplyQtTheme(EQtTheme::Light);
	const QImage Light = Grab();
	Keep(Light, "light");
	EXPECT_GT(Brightness(Light, {400, 20}), Brightness(Dark, {400, 20}) + 80.0);
}

TEST_F(ViewportPicture, FillsItsFramebufferOnADenseScreen)
{
	UStaticMeshComponent* const Component = MakeActor(World(), MakeCrate());
	Show();
	const QImage Picture = GrabAll();
	EXPECT_EQ(Picture.size(), Panel->size() * Panel->devicePixelRatio());
	const QPoint Place = PlaceOf(Component) * Panel->devicePixelRatio();
	EXPECT_GT(Brightness(Picture, Place), 90.0);
}
