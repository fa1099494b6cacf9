// SPDX-License-Identifier: MIT
#include "ModuleFixture.h"

#include "CoreUObject/Package.h"
#include "Editor/ScopedTransaction.h"
#include "Engine/SlowTask.h"
#include "Host/MeshDescription/MeshShapes.h"
#include "MeshDescription/StaticMeshOperations.h"
#include "TarvinTransformOp.h"

namespace
{
const FTransform Tilted(Turn(FVector(1, 2, 3).GetSafeNormal(), 50), FVector(7, -8, 9), FVector(2, -3, 5));

FTransform Scaled(double X, double Y, double Z)
{
	return FTransform(FQuat::Identity, FVector(), FVector(X, Y, Z));
}

class BakeIntoMesh : public FModuleTest
{
protected:
	bool Bake(UStaticMesh* Mesh, const FTransform& Transform, bool bRebuild = true)
	{
		Stats = FTarvinTransformStats();
		return FTarvinTransformOp::BakeIntoMesh(Mesh, Transform, {bRebuild, true, true}, Stats);
	}

	FTarvinTransformStats Stats;
};

/// The two edges that meet in a corner of each triangle, and the normal stored there.
template <class TVisit>
void ForEachCorner(const FMeshDescription& Mesh, const TVisit& Visit)
{
	for (const FTriangleID Triangle : Mesh.Triangles().GetElementIDs())
	{
		const std::array<FVertexID, 3> Vertices = Mesh.GetTriangleVertices(Triangle);
		const FTriangleCorners Corners = Mesh.GetTriangleVertexInstances(Triangle);
		for (std::size_t Corner = 0; Corner < 3; ++Corner)
		{
			const FVector Here(Mesh.GetVertexPosition(Vertices[Corner]));
			Visit(FVector(Mesh.GetVertexPosition(Vertices[(Corner + 1) % 3])) - Here,
				FVector(Mesh.GetVertexPosition(Vertices[(Corner + 2) % 3])) - Here,
				FVector(Mesh.GetVertexInstanceNormal(Corners[Corner])));
		}
	}
}

/// The geometric normals of all triangles.
TArray<FVector> FaceNormals(const FMeshDescription& Mesh)
{
	TArray<FVector> Result;
	for (const FTriangleID Triangle : Mesh.Triangles().GetElementIDs())
	{
		Result.Add(FStaticMeshOperations::ComputeTriangleNormal(Mesh, Triangle));
	}
	return Result;
}

const FMeshDescription& Lod0(const UStaticMesh* Mesh)
{
	return *Mesh->GetMeshDescription(0);
}

TEST_F(BakeIntoMesh, CubeOfTenfoldScaleHasTheSameCountsAndEveryVertexTenTimesAsFarAway)
{
	UStaticMesh* const Cube = MakeMesh(TEXT("Cube"), MakeBoxDescription(FVector(-1, -1, -1), FVector(1, 1, 1)));
	EXPECT_TRUE(Bake(Cube, Scaled(10, 10, 10)));
	EXPECT_EQ(Lod0(Cube).Vertices().Num(), 8);
	EXPECT_EQ(Lod0(Cube).Triangles().Num(), 12);
	for (const FVector& Position : LocalPositions(Cube))
	{
		EXPECT_EQ(Position.GetAbs(), FVector(10, 10, 10));
	}
	EXPECT_EQ(Stats.NumLodsBaked, 1);
	EXPECT_FALSE(Stats.bHiResBaked);
}

TEST_F(BakeIntoMesh, EveryVertexIsScaledThenTurnedThenMoved)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"), MeshShapes::Wedge());
	const TArray<FVector> Before = LocalPositions(Rock);
	EXPECT_TRUE(Bake(Rock, Tilted));
	EXPECT_TRUE(Near(LocalPositions(Rock), Transformed(Before, Tilted)));
}

TEST_F(BakeIntoMesh, TurnKeepsNormalsOnItsAxisAndTurnsTheOthersByItsAngle)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	EXPECT_TRUE(Bake(Rock, FTransform(Turn(FVector(0, 0, 1), 90))));
	TArray<FVector> Expected = FaceNormals(MakeBoxDescription(FVector(-2, -3, 0), FVector(5, 7, 11)));
	for (FVector& Normal : Expected)
	{
		Normal = FVector(-Normal.Y, Normal.X, Normal.Z);
	}
	EXPECT_TRUE(Near(FaceNormals(Lod0(Rock)), Expected, 1.e-6));
	const FVertexInstanceID OfTheTop(16);
	EXPECT_TRUE(Near(FVector(Lod0(Rock).GetVertexInstanceNormal(OfTheTop)), FVector(0, 0, 1), 0.0));
}

TEST_F(BakeIntoMesh, SlantedNormalTurnsByExactlyTheAngle)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"), MeshShapes::Wedge());
	TArray<FVector> Before;
	ForEachCorner(Lod0(Rock), [&](FVector, FVector, FVector Normal) { Before.Add(Normal); });
	EXPECT_TRUE(Bake(Rock, FTransform(Turn(FVector(0, 0, 1), 90))));
	TArray<FVector> After;
	ForEachCorner(Lod0(Rock), [&](FVector, FVector, FVector Normal) { After.Add(Normal); });
	for (FVector& Normal : Before)
	{
		Normal = FVector(-Normal.Y, Normal.X, Normal.Z);
	}
	EXPECT_TRUE(Near(After, Before, 1.e-6));
}

TEST_F(BakeIntoMesh, MirrorFlipsBinormalSignsAndWindingSoThatFacesKeepTheirSide)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	const FMeshDescription Before(Lod0(Rock));
	EXPECT_TRUE(Bake(Rock, Scaled(-1, 1, 1)));
	const FMeshDescription& After = Lod0(Rock);
	EXPECT_TRUE(Near(LocalPositions(Rock), Transformed(LocalPositions(MakeMesh(TEXT("Same"))), Scaled(-1, 1, 1)), 0.0));
	for (const FVertexInstanceID Instance : After.VertexInstances().GetElementIDs())
	{
		EXPECT_EQ(After.GetVertexInstanceBinormalSign(Instance), -Before.GetVertexInstanceBinormalSign(Instance));
	}
	TArray<FVector> Expected = FaceNormals(Before);
	for (FVector& Normal : Expected)
	{
		Normal.X = -Normal.X;
	}
	EXPECT_TRUE(Near(FaceNormals(After), Expected, 1.e-6)) << "upward faces still look up";
	EXPECT_GT(FStaticMeshOperations::ComputeSignedVolume(After), 0.0);
	EXPECT_EQ(After.Triangles().Num(), 12);
}

TEST_F(BakeIntoMesh, TwoMirrorsAreATurnAndFlipNothing)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	EXPECT_TRUE(Bake(Rock, Scaled(-1, -1, 2)));
	EXPECT_EQ(Lod0(Rock).GetVertexInstanceBinormalSign(FVertexInstanceID(0)), 1.f);
	EXPECT_GT(FStaticMeshOperations::ComputeSignedVolume(Lod0(Rock)), 0.0);
}

TEST_F(BakeIntoMesh, UnevenScaleKeepsNormalsPerpendicularToBothEdgesAndOfLengthOne)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"), MeshShapes::Wedge());
	EXPECT_TRUE(Bake(Rock, Tilted));
	ForEachCorner(Lod0(Rock),
		[](const FVector& Next, const FVector& Last, const FVector& Normal)
		{
			EXPECT_NEAR(Normal | Next.GetSafeNormal(), 0.0, 1.e-5);
			EXPECT_NEAR(Normal | Last.GetSafeNormal(), 0.0, 1.e-5);
			EXPECT_NEAR(Normal.Size(), 1.0, 1.e-6);
			EXPECT_GT(Normal | (Next ^ Last), 0.0) << "still on the outer side";
		});
}

TEST_F(BakeIntoMesh, HiResSourceIsBakedToo)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	Rock->SetHiResMeshDescription(MeshShapes::Wedge());
	const TArray<FVector> Before = HiResPositionsOf(Rock);
	EXPECT_TRUE(Bake(Rock, Tilted));
	EXPECT_TRUE(Stats.bHiResBaked);
	EXPECT_EQ(Stats.NumLodsBaked, 1);
	EXPECT_TRUE(Near(HiResPositionsOf(Rock), Transformed(Before, Tilted)));
}

TEST_F(BakeIntoMesh, HiResSourceAloneIsEnough)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"), FMeshDescription());
	Rock->SetHiResMeshDescription(MeshShapes::Wedge());
	EXPECT_TRUE(Bake(Rock, Scaled(2, 3, 5)));
	EXPECT_TRUE(Stats.bHiResBaked);
	EXPECT_EQ(Stats.NumLodsBaked, 0);
}

TEST_F(BakeIntoMesh, AllLevelsThatHaveASourceAreBaked)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	Rock->SetMeshDescription(1, MeshShapes::Wedge());
	Rock->SetMeshDescription(3, MakeBoxDescription(FVector(0, 0, 0), FVector(1, 2, 3)));
	ASSERT_EQ(Rock->GetNumSourceModels(), 4) << "level 2 has none";
	TArray<FVector> Before[4];
	for (const int32 Lod : {0, 1, 3})
	{
		Before[Lod] = LocalPositions(Rock, Lod);
	}
	EXPECT_TRUE(Bake(Rock, Scaled(2, 3, 5)));
	EXPECT_EQ(Stats.NumLodsBaked, 3);
	for (const int32 Lod : {0, 1, 3})
	{
		EXPECT_TRUE(Near(LocalPositions(Rock, Lod), Transformed(Before[Lod], Scaled(2, 3, 5)), 0.0));
	}
	EXPECT_EQ(Rock->GetMeshDescription(2), nullptr);
}

TEST_F(BakeIntoMesh, LevelZeroWithoutASourceIsNoHindrance)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"), FMeshDescription());
	Rock->SetMeshDescription(1, MeshShapes::Wedge());
	EXPECT_TRUE(Bake(Rock, Scaled(2, 3, 5)));
	EXPECT_EQ(Stats.NumLodsBaked, 1);
}

TEST_F(BakeIntoMesh, MeshIsBuiltOnceDirtyAndAnnouncedWhenARebuildIsWanted)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	int32 Announced = 0;
	const FDelegateHandle Handle = UStaticMesh::OnMeshEdited().AddLambda(
		[&](UStaticMesh* Mesh) { Announced += Mesh == Rock && Mesh->IsBuilt() ? 1 : 0; });
	EXPECT_TRUE(Bake(Rock, Scaled(2, 2, 2)));
	UStaticMesh::OnMeshEdited().Remove(Handle);
	EXPECT_EQ(Rock->GetNumBuilds(), 1);
	EXPECT_EQ(Announced, 1);
	EXPECT_TRUE(Rock->GetOutermost()->IsDirty());
	EXPECT_EQ(Rock->GetBoundingBox().Max, FVector(10, 14, 22));
}

TEST_F(BakeIntoMesh, WithoutARebuildTheSourceIsCommittedAndNothingIsBuiltOrShown)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	const int32 TasksBefore = GWarn->GetNumTasksOpened();
	EXPECT_TRUE(Bake(Rock, Scaled(2, 2, 2), false));
	EXPECT_EQ(Rock->GetNumBuilds(), 0);
	EXPECT_EQ(GWarn->GetNumTasksOpened(), TasksBefore);
	EXPECT_EQ(LocalPositions(Rock).Last(), FVector(10, 14, 22));
	EXPECT_TRUE(Rock->GetOutermost()->IsDirty());
}

TEST_F(BakeIntoMesh, ChangeIsRecordedInTheOpenTransaction)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	Rock->SetHiResMeshDescription(MeshShapes::Wedge());
	const FWorldState Before = State({Rock});
	{
		const FScopedTransaction Transaction(TEXT("Test"), FText(), nullptr);
		EXPECT_TRUE(Bake(Rock, Tilted));
	}
	EXPECT_FALSE(IsSameState(Before, State({Rock})));
	ASSERT_TRUE(Transactions().Undo());
	EXPECT_TRUE(IsSameState(Before, State({Rock})));
}

TEST_F(BakeIntoMesh, StatsAreAddedToAndTheResultIsReadFromThem)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMesh* const Stone = MakeMesh(TEXT("Stone"));
	FTarvinTransformStats Shared;
	EXPECT_TRUE(FTarvinTransformOp::BakeIntoMesh(Rock, Scaled(2, 2, 2), {}, Shared));
	EXPECT_TRUE(FTarvinTransformOp::BakeIntoMesh(Stone, Scaled(2, 2, 2), {}, Shared));
	EXPECT_EQ(Shared.NumLodsBaked, 2);
}
}
