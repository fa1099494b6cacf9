// SPDX-License-Identifier: MIT
#include "RunFixture.h"

#include "Engine/BodySetup.h"
#include "Engine/StaticMeshSocket.h"
#include "Host/MeshDescription/MeshShapes.h"
#include "TarvinPivot.h"

#include <cmath>
#include <limits>

namespace
{
using EPosition = ETarvinPivotPosition;
using FCounts = std::vector<int32>;

const EPosition AllPositions[] = {EPosition::Center, EPosition::Bottom, EPosition::Top, EPosition::Left,
	EPosition::Right, EPosition::Front, EPosition::Back, EPosition::WorldOrigin};
const FVector Untouched(-1, -2, -3);

class PivotPoint : public FRunTest
{
protected:
	/// The pivot point of a mesh in its space, or `Untouched` when there is none.
	static FVector PointOf(const UStaticMesh* Mesh, EPosition Position, const FTransform& World = FTransform())
	{
		FVector Point = Untouched;
		const bool bFound = TarvinPivot::ComputePivotPoint(Mesh, Position, World, Point);
		EXPECT_EQ(bFound, Point != Untouched);
		return Point;
	}

	static UStaticMesh* MakeBox()
	{
		return MakeMesh(TEXT("Box"), MakeBoxDescription(FVector(-50, -20, 0), FVector(50, 20, 100)));
	}
};

TEST_F(PivotPoint, BoundsAreTheBoxOfLevelZero)
{
	FBox Bounds;
	EXPECT_TRUE(TarvinPivot::ComputeLocalBounds(MakeBox(), Bounds));
	EXPECT_EQ(Bounds, FBox(FVector(-50, -20, 0), FVector(50, 20, 100)));
}

TEST_F(PivotPoint, PositionsAreTheCentreAndTheCentresOfTheSixSides)
{
	const UStaticMesh* const Box = MakeBox();
	EXPECT_EQ(PointOf(Box, EPosition::Center), FVector(0, 0, 50));
	EXPECT_EQ(PointOf(Box, EPosition::Bottom), FVector(0, 0, 0));
	EXPECT_EQ(PointOf(Box, EPosition::Top), FVector(0, 0, 100));
	EXPECT_EQ(PointOf(Box, EPosition::Left), FVector(0, -20, 50));
	EXPECT_EQ(PointOf(Box, EPosition::Right), FVector(0, 20, 50));
	EXPECT_EQ(PointOf(Box, EPosition::Front), FVector(-50, 0, 50));
	EXPECT_EQ(PointOf(Box, EPosition::Back), FVector(50, 0, 50));
}

TEST_F(PivotPoint, ValueOutOfRangeIsTheCentre)
{
	for (const int Value : {8, 255})
	{
		EXPECT_EQ(PointOf(MakeBox(), static_cast<EPosition>(Value)), FVector(0, 0, 50));
	}
}

TEST_F(PivotPoint, ComponentsTransformDoesNotMoveTheSidesOfTheBox)
{
	const FTransform World(Turn(FVector(1, 0, 0), 90), FVector(1, 2, 3), FVector(2, -3, 5));
	EXPECT_EQ(PointOf(MakeBox(), EPosition::Left, World), FVector(0, -20, 50));
}

TEST_F(PivotPoint, WorldOriginIsWhereTheWorldsOriginLiesInTheMesh)
{
	const UStaticMesh* const Box = MakeBox();
	EXPECT_EQ(PointOf(Box, EPosition::WorldOrigin, FTransform(FVector(100, 0, 0))), FVector(-100, 0, 0));
	const FTransform Doubled(FQuat::Identity, FVector(100, 0, 0), FVector(2, 2, 2));
	EXPECT_EQ(PointOf(Box, EPosition::WorldOrigin, Doubled), FVector(-50, 0, 0));
	const FTransform Anywhere(Turn(FVector(1, 2, 3).GetSafeNormal(), 50), FVector(7, -8, 9), FVector(2, -3, 5));
	EXPECT_TRUE(
		Near(Anywhere.TransformPosition(PointOf(Box, EPosition::WorldOrigin, Anywhere)), FVector(0, 0, 0), 1.e-12));
}

TEST_F(PivotPoint, WorldOriginNeedsNoMesh)
{
	EXPECT_EQ(PointOf(nullptr, EPosition::WorldOrigin, FTransform(FVector(100, 0, 0))), FVector(-100, 0, 0));
	EXPECT_EQ(
		PointOf(MakeMesh(TEXT("Empty"), FMeshDescription()), EPosition::WorldOrigin, FTransform(FVector(0, 7, 0))),
		FVector(0, -7, 0));
}

TEST_F(PivotPoint, WorldOriginAlongAZeroScaleIsZero)
{
	for (const double Tiny : {0.0, 1.e-8, -1.e-8})
	{
		const FTransform World(FQuat::Identity, FVector(100, 60, 30), FVector(2, Tiny, 3));
		EXPECT_EQ(PointOf(nullptr, EPosition::WorldOrigin, World), FVector(-50, 0, -10));
	}
	const FTransform Small(FQuat::Identity, FVector(100, 60, 30), FVector(2, 1.1e-8, 3));
	EXPECT_LT(PointOf(nullptr, EPosition::WorldOrigin, Small).Y, -1.e9);
}

TEST_F(PivotPoint, OtherLevelsAndTheHiResSourceDoNotWidenTheBox)
{
	UStaticMesh* const Box = MakeBox();
	Box->SetMeshDescription(1, MakeBoxDescription(FVector(-500, -500, -500), FVector(1, 1, 1)));
	Box->SetHiResMeshDescription(MakeBoxDescription(FVector(-900, -900, -900), FVector(900, 900, 900)));
	FBox Bounds;
	EXPECT_TRUE(TarvinPivot::ComputeLocalBounds(Box, Bounds));
	EXPECT_EQ(Bounds, FBox(FVector(-50, -20, 0), FVector(50, 20, 100)));
}

TEST_F(PivotPoint, VertexThatNoTriangleUsesCounts)
{
	FMeshDescription Shape = MakeBoxDescription(FVector(-50, -20, 0), FVector(50, 20, 100));
	Shape.CreateVertex(FVector3f(0.f, 0.f, 300.f));
	EXPECT_EQ(PointOf(MakeMesh(TEXT("Box"), std::move(Shape)), EPosition::Top), FVector(0, 0, 300));
}

TEST_F(PivotPoint, DeletedVertexDoesNotCount)
{
	FMeshDescription Shape = MakeBoxDescription(FVector(-50, -20, 0), FVector(50, 20, 100));
	const FVertexID Far = Shape.CreateVertex(FVector3f(0.f, 0.f, 300.f));
	Shape.DeleteVertex(Far);
	EXPECT_EQ(PointOf(MakeMesh(TEXT("Box"), std::move(Shape)), EPosition::Top), FVector(0, 0, 100));
}

TEST_F(PivotPoint, SingleVertexIsABoxOfNoSize)
{
	FMeshDescription Shape;
	Shape.CreateVertex(FVector3f(7.f, 8.f, 9.f));
	EXPECT_EQ(PointOf(MakeMesh(TEXT("Dot"), std::move(Shape)), EPosition::Left), FVector(7, 8, 9));
}

TEST_F(PivotPoint, WithoutLevelZeroThereIsNoPointAndNothingIsWritten)
{
	UStaticMesh* const Empty = MakeMesh(TEXT("Empty"), FMeshDescription());
	Empty->SetMeshDescription(1, MeshShapes::Wedge());
	Empty->SetHiResMeshDescription(MeshShapes::Wedge());
	FBox Bounds(FVector(1, 2, 3), FVector(4, 5, 6));
	EXPECT_FALSE(TarvinPivot::ComputeLocalBounds(Empty, Bounds));
	EXPECT_FALSE(TarvinPivot::ComputeLocalBounds(nullptr, Bounds));
	EXPECT_EQ(Bounds, FBox(FVector(1, 2, 3), FVector(4, 5, 6)));
	for (const EPosition Position : AllPositions)
	{
		if (Position != EPosition::WorldOrigin)
		{
			EXPECT_EQ(PointOf(Empty, Position), Untouched);
			EXPECT_EQ(PointOf(nullptr, Position), Untouched);
		}
	}
	EXPECT_EQ(Log.Records().Num(), 0);
}

class SetPivot : public PivotPoint
{
protected:
	FTarvinRunResult Set(EPosition Position)
	{
		return Run(ETarvinSharedAssetChoice::Duplicate, FTarvinOperation::SetPivot(Position));
	}
};

TEST_F(SetPivot, BakeIsTheShiftThatMakesThePointTheOrigin)
{
	const FTarvinOperation Operation = FTarvinOperation::SetPivot(EPosition::Right);
	FTransform Bake(FVector(9, 9, 9));
	EXPECT_TRUE(Operation.ComputeBake({nullptr, MakeBox(), FTransform(FVector(1, 2, 3))}, Bake));
	EXPECT_EQ(Bake, FTransform(FQuat::Identity, FVector(0, -20, -50), FVector(1, 1, 1)));
}

TEST_F(SetPivot, ItemWhoseMeshIsGoneHasNoBake)
{
	const FTarvinOperation Operation = FTarvinOperation::SetPivot(EPosition::Right);
	FTransform Bake;
	EXPECT_FALSE(Operation.ComputeBake({nullptr, nullptr, FTransform()}, Bake));
	UStaticMesh* const Box = MakeBox();
	Box->MarkAsGarbage();
	EXPECT_FALSE(Operation.ComputeBake({nullptr, Box, FTransform()}, Bake));
	EXPECT_EQ(Bake, FTransform());
}

TEST_F(SetPivot, EveryPositionMovesTheOriginThereAndNothingElse)
{
	for (const EPosition Position : AllPositions)
	{
		UStaticMesh* const Rock = MakeMesh(TarvinPivot::GetPositionName(Position));
		const FTransform Where(Turn(FVector(1, 2, 3).GetSafeNormal(), 50), FVector(500, -200, 30), FVector(2, -3, 5));
		GEditor->SelectNone();
		UStaticMeshComponent* const Component = PlaceSelected(Rock, Where);
		const FVector Point = PointOf(Rock, Position, Where);
		const TArray<FVector> Before = LocalPositions(Rock);
		const TArray<FVector> WorldBefore = WorldPositions(Component);
		EXPECT_EQ(Counts(Set(Position)), (FCounts{1, 1, 0, 0}));
		EXPECT_TRUE(Near(LocalPositions(Rock), Transformed(Before, FTransform(-Point))));
		EXPECT_TRUE(Near(WorldPositions(Component), WorldBefore, 1.e-3));
		EXPECT_EQ(Component->GetComponentTransform().GetRotation(), Where.GetRotation());
		EXPECT_EQ(Component->GetComponentTransform().GetScale3D(), Where.GetScale3D());
		EXPECT_TRUE(Near(Component->GetComponentLocation(), Where.TransformPosition(Point), 1.e-9));
	}
}

TEST_F(SetPivot, NormalsStayToTheBit)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"), MeshShapes::Wedge());
	PlaceSelected(Rock);
	const FMeshDescription Before(*static_cast<const UStaticMesh*>(Rock)->GetMeshDescription(0));
	Set(EPosition::Front);
	const FMeshDescription& After = *static_cast<const UStaticMesh*>(Rock)->GetMeshDescription(0);
	EXPECT_TRUE(std::equal(Before.GetNormals().begin(), Before.GetNormals().end(), After.GetNormals().begin()));
}

TEST_F(SetPivot, CollisionSocketsAndChildrenStayInTheWorld)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	Rock->AddSocket(TEXT("Handle"))->RelativeLocation = FVector(1, 2, 3);
	Rock->CreateBodySetup()->AggGeom.SphereElems.Add({FVector(1, 2, 3), 4});
	UStaticMeshComponent* const Component = PlaceSelected(Rock, FTransform(FVector(7, 8, 9)));
	USceneComponent* const Child = PlaceFrame(FTransform(FVector(70, 80, 90)));
	Child->AttachToComponent(Component, EAttachmentRule::KeepWorld);
	Set(EPosition::Top);
	EXPECT_EQ(Rock->Sockets[0]->RelativeLocation, FVector(1 - 1.5, 2 - 2, 3 - 11));
	EXPECT_EQ(Rock->GetBodySetup()->AggGeom.SphereElems[0], (FKSphereElem{FVector(-0.5, 0, -8), 4}));
	EXPECT_EQ(Child->GetComponentLocation(), FVector(70, 80, 90));
}

TEST_F(SetPivot, ComponentUnderARotatedUnevenParentKeepsItsVertices)
{
	USceneComponent* const Parent =
		PlaceFrame(FTransform(Turn(FVector(0, 0, 1), 30), FVector(1, 2, 3), FVector(1, 2, 3)));
	UStaticMeshComponent* const Component = PlaceSelected(MakeMesh(TEXT("Rock")));
	Component->AttachToComponent(Parent);
	const TArray<FVector> Before = WorldPositions(Component);
	EXPECT_EQ(Counts(Set(EPosition::Back)), (FCounts{1, 1, 0, 0}));
	EXPECT_TRUE(Near(WorldPositions(Component), Before, 1.e-3));
}

TEST_F(SetPivot, RepeatedItDoesNotWander)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Component =
		PlaceSelected(Rock, FTransform(Turn(FVector(0, 0, 1), 30), FVector(500, -200, 30), FVector(2, 3, 5)));
	Set(EPosition::Bottom);
	const FTransform Once = Component->GetComponentTransform();
	const TArray<FVector> Positions = LocalPositions(Rock);
	for (int32 Round = 0; Round < 10; ++Round)
	{
		Set(EPosition::Bottom);
	}
	EXPECT_EQ(Component->GetComponentTransform(), Once);
	EXPECT_TRUE(Near(LocalPositions(Rock), Positions, 0.0));
}

TEST_F(SetPivot, SharedMeshIsAskedAboutAndCopied)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Selected = PlaceSelected(Rock, FTransform(FVector(7, 8, 9)));
	Place(Rock);
	EXPECT_EQ(Counts(Set(EPosition::Top)), (FCounts{1, 1, 1, 0}));
	EXPECT_EQ(Questions, (std::vector<FQuestion>{{Rock, 1, true}}));
	EXPECT_EQ(Selected->GetComponentLocation(), FVector(8.5, 10, 20));
	EXPECT_EQ(LocalPositions(Rock).Last(), FVector(5, 7, 11));
}

TEST_F(SetPivot, SourceWithInfiniteCoordinatesIsRefusedWithAWarning)
{
	FMeshDescription Shape = MeshShapes::Wedge();
	Shape.SetVertexPosition(FVertexID(1), FVector3f(std::numeric_limits<float>::infinity(), 1.f, 2.f));
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"), std::move(Shape));
	PlaceSelected(Rock, FTransform(FVector(7, 8, 9)));
	const FWorldState Before = State();
	EXPECT_EQ(Counts(Set(EPosition::Center)), (FCounts{0, 0, 0, 1}));
	EXPECT_TRUE(IsSameState(Before, State()));
	EXPECT_EQ(OpLines(), (std::vector<std::string>{"Warning: Rock: transform is not finite -- bake cancelled"}));
	EXPECT_EQ(Transactions().GetQueueLength(), 0);
}

TEST_F(SetPivot, VertexThatIsNoNumberNeitherCountsNorSpreads)
{
	for (const int32 Vertex : {0, 1, 3})
	{
		FMeshDescription Shape = MeshShapes::Wedge();
		Shape.SetVertexPosition(FVertexID(Vertex), FVector3f(1.f, 2.f, std::numeric_limits<float>::quiet_NaN()));
		UStaticMesh* const Rock = MakeMesh(*FString::Printf(TEXT("Rock%d"), Vertex), std::move(Shape));
		GEditor->SelectNone();
		UStaticMeshComponent* const Component = PlaceSelected(Rock, FTransform(FVector(7, 8, 9)));
		EXPECT_EQ(Counts(Set(EPosition::Bottom)), (FCounts{1, 1, 0, 0}));
		EXPECT_TRUE(std::isfinite(Component->GetComponentLocation().Size()));
		EXPECT_TRUE(std::isfinite(LocalPositions(Rock)[2].Size()));
	}
}
}
