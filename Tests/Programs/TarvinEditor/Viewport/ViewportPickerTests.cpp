// SPDX-License-Identifier: MIT
#include "Support/RapidCheck.h"

#include "Viewport/ViewportPicker.h"

#include "Engine/InstancedStaticMeshComponent.h"
#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/TestMeshes.h"
#include "Support/WorldGenerators.h"

#include <cmath>

namespace
{
class ViewportPicker : public FEditorFixture
{
protected:
	void CollectAll()
	{
		Scene.Collect(World());
		while (!Scene.Prepare(1000.0))
		{
		}
	}

	const AActor* ActorOf(const FViewportHit& Hit) const
	{
		return Hit.IsHit() ? Scene.GetActors()[std::size_t(Scene.GetItems()[std::size_t(Hit.Item)].Actor)].Actor.Get()
						   : nullptr;
	}

	FViewportScene Scene;
};

class ViewportPickerProperty : public ViewportPicker
{
};

FViewportRay RayTo(const FVector& From, const FVector& To)
{
	return {From, (To - From).GetSafeNormal(0.0)};
}

/// A point in a random triangle of what the item shows, in the world: its middle, or one of its corners.
FVector AnyPointOf(const FViewportScene& Scene, const FViewportItem& Item)
{
	UStaticMesh* const Mesh = Scene.GetMeshes()[std::size_t(Item.Mesh)].Mesh.Get();
	const FStaticMeshLodRenderData& Data = *Mesh->GetRenderData(0);
	const int32 Triangle = *WorldGenerators::Index(int32(Data.Indices.Num()) / 3);
	FVector Corners[3];
	for (int32 Corner = 0; Corner < 3; ++Corner)
	{
		Corners[Corner] =
			Item.LocalToWorld.TransformPosition(FVector(Data.Positions[int32(Data.Indices[Triangle * 3 + Corner])]));
	}
	const int32 Which = *rc::gen::inRange(0, 4);
	return Which < 3 ? Corners[Which] : (Corners[0] + Corners[1] + Corners[2]) / 3.0;
}
}

RC_GTEST_FIXTURE_PROP(ViewportPickerProperty, RayToAPointOfATriangleMeetsItsItemOrANearerOne, ())
{
	const FTreePlan Plan = *WorldGenerators::Tree(12);
	const std::vector<UStaticMeshComponent*> Components =
		BuildTree(World(), Plan, {MakeUnevenMesh(), MakeBoxMesh({0.0, 0.0, 0.0}, {30.0, 2.0, 7.0})});
	RC_PRE(!Components.empty());
	auto* const Instanced = Components.front()->GetOwner()->AddComponent<UInstancedStaticMeshComponent>();
	Instanced->SetStaticMesh(MakeUnevenMesh());
	Instanced->AddInstance(*WorldGenerators::AnyTransform());
	Instanced->AddInstance(*WorldGenerators::AnyTransform());
	CollectAll();
	const FViewportItem& Item = Scene.GetItems()[std::size_t(*WorldGenerators::Index(int32(Scene.GetItems().size())))];
	const FVector Point = AnyPointOf(Scene, Item);
	const FVector Eye = *MathGenerators::Point();
	const double Distance = FVector::Dist(Eye, Point);
	RC_PRE(Distance > 1.0);
	// A ray that grazes a face may miss its edge by rounding: it is sent a hair to the inside of the box.
	const FVector Inside = Point + (Item.WorldBounds.GetCenter() - Point) * 1.e-6;
	const FViewportHit Hit = PickNearest(Scene, RayTo(Eye, Inside));
	RC_ASSERT(Hit.IsHit());
	RC_ASSERT(Hit.Distance <= Distance + 1.e-3 * Item.WorldBounds.GetSize().Size());
	RC_ASSERT(Hit.Location.Equals(RayTo(Eye, Inside).At(Hit.Distance), 1.e-9 * (1.0 + Hit.Location.GetAbsMax())));
}

RC_GTEST_FIXTURE_PROP(ViewportPickerProperty, HitsOfMirroredAndUnevenBoxesLieInTheirFaces, ())
{
	UStaticMesh* const Mesh = MakeUnevenMesh();
	const FTransform Place = *WorldGenerators::AnyTransform();
	MakeActor(World(), Mesh, Place);
	CollectAll();
	const FVector Local(
		*rc::gen::inRange(-100, 200) * 0.01, *rc::gen::inRange(-200, 500) * 0.01, *rc::gen::inRange(-300, 1100) * 0.01);
	const FVector Eye = Place.GetTranslation() + *MathGenerators::Vector(MathGenerators::Magnitude(100.0, 1000.0));
	const FViewportHit Hit = PickNearest(Scene, RayTo(Eye, Place.TransformPosition(Local)));
	RC_ASSERT(Hit.IsHit());
	const FVector At = Place.InverseTransformPosition(Hit.Location);
	// On the nearest face as seen from the eye: the box of the mesh, grown or shrunk a little, tells inside and out.
	RC_ASSERT(FBox({-1.0001, -2.0001, -3.0001}, {2.0001, 5.0001, 11.0001}).IsInside(At));
	RC_ASSERT(!FBox({-0.9999, -1.9999, -2.9999}, {1.9999, 4.9999, 10.9999}).IsInside(At));
	RC_ASSERT(Hit.Distance <= FVector::Dist(Eye, Place.TransformPosition(Local)) + 1.e-6);
}

TEST_F(ViewportPicker, MeetsTheNearestOfSeveralActors)
{
	UStaticMesh* const Mesh = MakeUnevenMesh();
	MakeActor(World(), Mesh, FTransform(FVector(100.0, 0.0, 0.0)));
	const UStaticMeshComponent* const Nearer = MakeActor(World(), Mesh, FTransform(FVector(50.0, 0.0, 0.0)));
	MakeActor(World(), Mesh, FTransform(FVector(-50.0, 0.0, 0.0)));
	CollectAll();
	const FViewportHit Hit = PickNearest(Scene, {{0.0, 0.5, 0.5}, {1.0, 0.0, 0.0}});
	EXPECT_EQ(ActorOf(Hit), Nearer->GetOwner());
	EXPECT_NEAR(Hit.Distance, 49.0, 1.e-9);
}

TEST_F(ViewportPicker, MeetsTrianglesFromBehindToo)
{
	const UStaticMeshComponent* const Around = MakeActor(World(), MakeUnevenMesh());
	CollectAll();
	const FViewportHit Hit = PickNearest(Scene, {{0.0, 0.0, 0.0}, {0.0, 0.0, 1.0}});
	EXPECT_EQ(ActorOf(Hit), Around->GetOwner());
	EXPECT_NEAR(Hit.Distance, 11.0, 1.e-9);
}

TEST_F(ViewportPicker, MeetsWhatAScaleOfZeroHasFlattened)
{
	MakeActor(World(), MakeUnevenMesh(), FTransform(FQuat(), {0.0, 0.0, 7.0}, {2.0, 3.0, 0.0}));
	CollectAll();
	const FViewportHit Hit = PickNearest(Scene, {{1.0, 2.0, 100.0}, {0.0, 0.0, -1.0}});
	ASSERT_TRUE(Hit.IsHit());
	EXPECT_NEAR(Hit.Distance, 93.0, 1.e-9);
	EXPECT_FALSE(PickNearest(Scene, {{5.0, 2.0, 100.0}, {0.0, 0.0, -1.0}}).IsHit());
}

TEST_F(ViewportPicker, MeetsEveryInstanceOfAnInstancedComponent)
{
	AActor* const Actor = World()->SpawnActor<AActor>();
	auto* const Instanced = Actor->AddComponent<UInstancedStaticMeshComponent>();
	Instanced->SetStaticMesh(MakeUnevenMesh());
	Instanced->SetRelativeTransform(FTransform(FVector(0.0, 0.0, 1000.0)));
	Instanced->AddInstance(FTransform(FVector(200.0, 0.0, 0.0)));
	Instanced->AddInstance(FTransform(FVector(-200.0, 0.0, 0.0)));
	CollectAll();
	EXPECT_EQ(PickNearest(Scene, {{200.0, 0.0, 2000.0}, {0.0, 0.0, -1.0}}).Item, 0);
	EXPECT_EQ(PickNearest(Scene, {{-200.0, 0.0, 2000.0}, {0.0, 0.0, -1.0}}).Item, 1);
	EXPECT_FALSE(PickNearest(Scene, {{0.0, 0.0, 2000.0}, {0.0, 0.0, -1.0}}).IsHit());
}

TEST_F(ViewportPicker, PassesThroughTheBoundsWhereThereIsNoTriangle)
{
	MakeActor(World(), MakeUnevenMesh(), FTransform(FQuat({0.0, 0.0, 1.0}, 0.7853981633974483), FVector::ZeroVector));
	CollectAll();
	const FBox Bounds = Scene.GetBounds();
	const FVector Corner(Bounds.Max.X - 0.01, Bounds.Max.Y - 0.01, 100.0);
	EXPECT_FALSE(PickNearest(Scene, {Corner, {0.0, 0.0, -1.0}}).IsHit());
	EXPECT_TRUE(PickNearest(Scene, {{0.0, 1.0, 100.0}, {0.0, 0.0, -1.0}}).IsHit());
}

TEST_F(ViewportPicker, RectangleTakesWhatShowsInItAtLeastInPart)
{
	UStaticMesh* const Mesh = MakeBoxMesh({-10.0, -10.0, -10.0}, {10.0, 10.0, 10.0});
	MakeActor(World(), Mesh, FTransform(FVector(0.0, 100.0, 0.0)));
	MakeActor(World(), Mesh, FTransform(FVector(0.0, -100.0, 0.0)));
	MakeActor(World(), nullptr, FTransform(FVector(0.0, 0.0, 0.0)));
	MakeActor(World(), Mesh, FTransform(FVector(-5000.0, 0.0, 0.0)));
	CollectAll();
	FViewportCamera Camera;
	Camera.SetPictureSize(600.0, 400.0);
	Camera.LookAt(FVector::ZeroVector, 600.0, 0.0, 0.0);
	using FIndices = std::vector<int32>;
	EXPECT_EQ(PickInRectangle(Scene, Camera, {{0.0, 0.0}, {600.0, 400.0}}), (FIndices{0, 1, 2}));
	// From any corner to the opposite one.
	EXPECT_EQ(PickInRectangle(Scene, Camera, {{290.0, 400.0}, {0.0, 0.0}}), (FIndices{0}));
	EXPECT_EQ(PickInRectangle(Scene, Camera, {{295.0, 195.0}, {305.0, 205.0}}), (FIndices{2}));
	EXPECT_EQ(PickInRectangle(Scene, Camera, {{0.0, 0.0}, {600.0, 10.0}}), (FIndices{}));
	// A corner of the box is enough.
	FViewportPoint Corner;
	ASSERT_TRUE(Camera.Project({-10.0, -110.0, 10.0}, Corner));
	EXPECT_EQ(PickInRectangle(Scene, Camera, {{Corner.X - 1.0, Corner.Y - 20.0}, {Corner.X + 20.0, Corner.Y + 1.0}}),
		(FIndices{1}));
}
