// SPDX-License-Identifier: MIT
#include "ModuleFixture.h"

#include "CoreUObject/Package.h"
#include "Editor/ScopedTransaction.h"
#include "Engine/BodySetup.h"
#include "Engine/StaticMeshSocket.h"
#include "Host/MeshDescription/MeshShapes.h"
#include "Support/ThrowingAssertions.h"
#include "TarvinTransformOp.h"

#include <cmath>
#include <limits>

namespace
{
using FLines = std::vector<std::string>;

/// Source data that says that it holds something, and then cannot be read.
class FBrokenBulkData final : public FMeshBulkData
{
public:
	TSharedPtr<FMeshDescription> Decode() const override { return {}; }
	bool IsEmpty() const override { return false; }
	int32 NumVertices() const override { return 8; }
	uint64 MemoryBytes() const override { return 0; }
};

FTransform Scaled(double X, double Y, double Z)
{
	return FTransform(FQuat::Identity, FVector(), FVector(X, Y, Z));
}

class BakeRefusals : public FModuleTest
{
protected:
	/// A mesh with a socket and a collision box.
	static UStaticMesh* MakeFurnishedMesh(FMeshDescription&& Lod0)
	{
		UStaticMesh* const Mesh = MakeMesh(TEXT("Rock"), std::move(Lod0));
		Mesh->AddSocket(TEXT("Handle"))->RelativeLocation = FVector(1, 2, 3);
		Mesh->CreateBodySetup()->AggGeom.BoxElems.Add(FKBoxElem{FVector(1, 2, 3), FRotator(), 4, 6, 8});
		return Mesh;
	}

	bool Bake(UStaticMesh* Mesh, const FTransform& Transform)
	{
		return FTarvinTransformOp::BakeIntoMesh(Mesh, Transform, {}, Stats);
	}

	/// Bakes inside a transaction; fails unless nothing at all was changed, recorded, marked dirty or tracked.
	void ExpectUntouched(UStaticMesh* Mesh, const FTransform& Transform)
	{
		const FWorldState Before = State({Mesh});
		Mesh->GetOutermost()->SetDirtyFlag(false);
		const int32 NumBuilds = Mesh->GetNumBuilds();
		{
			const FScopedTransaction Transaction(TEXT("Test"), FText(), nullptr);
			EXPECT_FALSE(Bake(Mesh, Transform));
		}
		EXPECT_TRUE(IsSameState(Before, State({Mesh})));
		EXPECT_EQ(Transactions().GetQueueLength(), 0) << "nothing was recorded";
		EXPECT_FALSE(Mesh->GetOutermost()->IsDirty());
		EXPECT_EQ(Mesh->GetNumBuilds(), NumBuilds);
		const int32 NumLines = Log.Records().Num();
		FTarvinTransformOp::RebuildMeshesAfterUndo();
		EXPECT_EQ(Log.Records().Num(), NumLines) << "it is not tracked";
	}

	BakeRefusals() { FTarvinTransformOp::BeginUndoTrackedBatch(); }

	FTarvinTransformStats Stats;
};

TEST_F(BakeRefusals, NoMeshIsNoBakeAndNoLine)
{
	EXPECT_FALSE(Bake(nullptr, Scaled(2, 2, 2)));
	EXPECT_EQ(Log.Records().Num(), 0);
}

TEST_F(BakeRefusals, ZeroScaleCancelsBeforeAnythingIsTouched)
{
	ExpectUntouched(MakeFurnishedMesh(MeshShapes::Wedge()), Scaled(1, 0, 1));
	EXPECT_EQ(OpLines(), (FLines{"Warning: Rock: zero scale (X=1.000 Y=0.000 Z=1.000) -- bake cancelled"}));
}

TEST_F(BakeRefusals, EachComponentUpToTheSmallestScaleCountsAsZero)
{
	UStaticMesh* const Rock = MakeFurnishedMesh(MeshShapes::Wedge());
	for (const double Tiny : {1.e-8, -1.e-8, 0.9e-8, 0.0, -0.0})
	{
		ExpectUntouched(Rock, Scaled(Tiny, 2, -3));
		ExpectUntouched(Rock, Scaled(2, Tiny, -3));
		ExpectUntouched(Rock, Scaled(2, -3, Tiny));
	}
	EXPECT_EQ(OpLines().size(), 15u);
	EXPECT_EQ(OpLines().front(), "Warning: Rock: zero scale (X=0.000 Y=2.000 Z=-3.000) -- bake cancelled");
}

TEST_F(BakeRefusals, ALittleMoreThanTheSmallestScaleIsBaked)
{
	for (const double Small : {1.1e-8, -1.1e-8, std::nextafter(1.e-8, 1.0)})
	{
		UStaticMesh* const Rock = MakeFurnishedMesh(MeshShapes::Wedge());
		Stats = FTarvinTransformStats();
		EXPECT_TRUE(Bake(Rock, Scaled(2, Small, 3)));
		EXPECT_NEAR(LocalPositions(Rock)[2].Y, 5 * Small, 1.e-14);
		EXPECT_EQ(LocalPositions(Rock)[2].X, 2.0);
	}
}

TEST_F(BakeRefusals, MeshWithoutSourceGeometryIsLeftUntouchedSocketsAndCollisionIncluded)
{
	ExpectUntouched(MakeFurnishedMesh(FMeshDescription()), Scaled(2, 3, 5));
	EXPECT_EQ(
		OpLines(), (FLines{"Warning: Rock: no source geometry to bake (neither LOD nor HiRes) -- left untouched"}));
	EXPECT_EQ(Stats.NumSocketsBaked + Stats.NumCollisionElemsBaked + Stats.NumLodsBaked, 0);
}

TEST_F(BakeRefusals, MeshWithoutAnyLevelIsLeftUntouched)
{
	UStaticMesh* const Rock = MakeFurnishedMesh(FMeshDescription());
	Rock->SetNumSourceModels(0);
	ExpectUntouched(Rock, Scaled(2, 3, 5));
	EXPECT_EQ(OpLines().size(), 1u);
}

TEST_F(BakeRefusals, ZeroScaleIsToldBeforeAMissingSource)
{
	ExpectUntouched(MakeFurnishedMesh(FMeshDescription()), Scaled(0, 0, 0));
	EXPECT_EQ(OpLines(), (FLines{"Warning: Rock: zero scale (X=0.000 Y=0.000 Z=0.000) -- bake cancelled"}));
}

TEST_F(BakeRefusals, LevelThatCannotBeReadIsSkippedSilentlyAndTheOthersGoOn)
{
	UStaticMesh* const Rock = MakeFurnishedMesh(MeshShapes::Wedge());
	Rock->SetNumSourceModels(3);
	const auto Broken = MakeShared<FBrokenBulkData>();
	Rock->GetSourceModel(1).SetBulkData(Broken);
	Rock->SetMeshDescription(2, MeshShapes::Wedge());
	const TArray<FVector> Before = LocalPositions(Rock, 2);
	EXPECT_TRUE(Bake(Rock, Scaled(2, 3, 5)));
	EXPECT_EQ(Stats.NumLodsBaked, 2);
	EXPECT_EQ(Stats.NumSocketsBaked, 1);
	EXPECT_TRUE(Near(LocalPositions(Rock, 2), Transformed(Before, Scaled(2, 3, 5)), 0.0));
	EXPECT_EQ(Rock->GetSourceModel(1).GetBulkData().Get(), Broken.ToSharedPtr().Get());
	EXPECT_TRUE(OpLines().empty());
}

TEST_F(BakeRefusals, HiResSourceThatCannotBeReadIsSkippedSilently)
{
	UStaticMesh* const Rock = MakeFurnishedMesh(MeshShapes::Wedge());
	Rock->GetHiResSourceModel().SetBulkData(MakeShared<FBrokenBulkData>());
	EXPECT_TRUE(Bake(Rock, Scaled(2, 3, 5)));
	EXPECT_EQ(Stats.NumLodsBaked, 1);
	EXPECT_FALSE(Stats.bHiResBaked);
	EXPECT_TRUE(OpLines().empty());
}

TEST_F(BakeRefusals, MeshOfWhichNothingCanBeReadKeepsItsSocketsAndCollision)
{
	UStaticMesh* const Rock = MakeFurnishedMesh(FMeshDescription());
	Rock->GetSourceModel(0).SetBulkData(MakeShared<FBrokenBulkData>());
	Rock->GetHiResSourceModel().SetBulkData(MakeShared<FBrokenBulkData>());
	ExpectUntouched(Rock, Scaled(2, 3, 5));
	EXPECT_EQ(Stats.NumSocketsBaked + Stats.NumCollisionElemsBaked + Stats.NumLodsBaked, 0);
	EXPECT_EQ(OpLines(), (FLines{"Warning: Rock: source geometry cannot be read -- left untouched"}));
}

TEST_F(BakeRefusals, StatsThatCountAnEarlierBakeMakeTheResultTrueEvenIfNothingCouldBeRead)
{
	UStaticMesh* const Rock = MakeFurnishedMesh(FMeshDescription());
	Rock->GetSourceModel(0).SetBulkData(MakeShared<FBrokenBulkData>());
	Stats.NumLodsBaked = 1;
	EXPECT_TRUE(Bake(Rock, Scaled(2, 3, 5)));
	EXPECT_EQ(Stats.NumLodsBaked, 1);
	EXPECT_EQ(Stats.NumSocketsBaked, 0);
}

TEST_F(BakeRefusals, TransformThatIsNotFiniteIsRefusedBeforeAnythingIsTouched)
{
	UStaticMesh* const Rock = MakeFurnishedMesh(MeshShapes::Wedge());
	const double Infinity = std::numeric_limits<double>::infinity();
	const double NaN = std::numeric_limits<double>::quiet_NaN();
	const FTransform Transforms[] = {Scaled(NaN, 1, 1), Scaled(1, Infinity, 1), FTransform(FVector(1, 2, -Infinity)),
		FTransform(FVector(NaN, 2, 3))};
	for (const FTransform& Transform : Transforms)
	{
		Log.Clear();
		ExpectUntouched(Rock, Transform);
		EXPECT_EQ(OpLines(), (FLines{"Warning: Rock: transform is not finite -- bake cancelled"}));
	}
}

TEST_F(BakeRefusals, RotationThatIsNotNormalisedIsTheCallersFault)
{
	UStaticMesh* const Rock = MakeFurnishedMesh(MeshShapes::Wedge());
	const FThrowingAssertions Assertions;
	try
	{
		Bake(Rock, FTransform(FQuat(0, 0, 0, 1.1)));
		FAIL() << "it was taken";
	}
	catch (const FAssertionFailed& Failure)
	{
		EXPECT_EQ(Failure.Expression(), "IsRotationNormalized()");
	}
	EXPECT_TRUE(Bake(Rock, FTransform(FQuat(0, 0, 0, 1.004)))) << "|1 - q*q| up to a hundredth passes";
}

TEST_F(BakeRefusals, VerticesThatAreNoNumbersAreToldOfInAllSources)
{
	FMeshDescription Shape = MeshShapes::Wedge();
	Shape.SetVertexPosition(FVertexID(0), FVector3f(1.f, 2.f, -std::numeric_limits<float>::infinity()));
	UStaticMesh* const Rock = MakeFurnishedMesh(MeshShapes::Wedge());
	Rock->SetMeshDescription(2, FMeshDescription(Shape));
	Rock->SetHiResMeshDescription(std::move(Shape));
	EXPECT_TRUE(Bake(Rock, Scaled(2, 3, 5)));
	EXPECT_EQ(OpLines(), (FLines{"Warning: Rock: 2 vertex position(s) are not finite -- they stay so"}));
}

TEST_F(BakeRefusals, VerticesThatAreNoNumbersHarmNoOthers)
{
	FMeshDescription Shape = MeshShapes::Wedge();
	const float NaN = std::numeric_limits<float>::quiet_NaN();
	const float Infinity = std::numeric_limits<float>::infinity();
	Shape.SetVertexPosition(FVertexID(0), FVector3f(NaN, 1.f, 2.f));
	Shape.SetVertexPosition(FVertexID(1), FVector3f(Infinity, 1.f, 2.f));
	UStaticMesh* const Rock = MakeFurnishedMesh(std::move(Shape));
	EXPECT_TRUE(Bake(Rock, FTransform(Turn(FVector(0, 0, 1), 90), FVector(), FVector(2, 3, 5))));
	EXPECT_TRUE(Near(LocalPositions(Rock)[2], FVector(-15, 2, 3.75)));
	EXPECT_TRUE(Near(LocalPositions(Rock)[3], FVector(-3, 4, 55)));
	EXPECT_FALSE(Near(LocalPositions(Rock)[0], LocalPositions(Rock)[0])) << "no number stays no number";
	EXPECT_EQ(OpLines(), (FLines{"Warning: Rock: 2 vertex position(s) are not finite -- they stay so"}));
}
}
