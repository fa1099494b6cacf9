// SPDX-License-Identifier: MIT
#include "Property/CommandScene.h"

#include "MeshDescription/StaticMeshOperations.h"
#include "TarvinSelectionAction.h"

#include <cmath>

namespace
{
/// What single precision may move a vertex, as a share of the scene's size.
constexpr double Rounding = 1e-6;

class BakeTransformProperty : public FEditorFixture
{
};

/// The triangle's normal in the world, on the side that is drawn.
FVector WorldFaceNormal(const FMeshDescription& Mesh, FTriangleID Triangle, const FTransform& World)
{
	FVector P[3];
	int32 Corner = 0;
	for (const FVertexID Vertex : Mesh.GetTriangleVertices(Triangle))
	{
		P[Corner++] = World.TransformPosition(FVector(Mesh.GetVertexPosition(Vertex)));
	}
	const FVector Cross = (P[1] - P[0]) ^ (P[2] - P[0]);
	// Not the host's safe normal, to which small triangles have none.
	return (World.GetDeterminant() < 0.0 ? -Cross : Cross) / Cross.Size();
}

std::vector<FVector> FaceNormals(const UStaticMeshComponent* Component)
{
	std::vector<FVector> Normals;
	for (const FMeshDescription* Source : SourcesOf(Component->GetStaticMesh()))
	{
		for (const FTriangleID Triangle : Source->Triangles().GetElementIDs())
		{
			Normals.push_back(WorldFaceNormal(*Source, Triangle, Component->GetComponentTransform()));
		}
	}
	return Normals;
}

/// Fails unless every normal stands upright on the triangles that show it.
void ExpectUprightNormals(const FMeshDescription& Description)
{
	for (const FTriangleID Triangle : Description.Triangles().GetElementIDs())
	{
		const FVector Face = FStaticMeshOperations::ComputeTriangleNormal(Description, Triangle);
		for (const FVertexInstanceID Instance : Description.GetTriangleVertexInstances(Triangle))
		{
			RC_ASSERT((FVector(Description.GetVertexInstanceNormal(Instance)) | Face) > 1.0 - 1e-4);
		}
	}
}
} // namespace

RC_GTEST_FIXTURE_PROP(BakeTransformProperty, KeepsEveryVertexAtItsWorldPlace, ())
{
	FCommandScene Scene = FCommandScene::Draw(World());
	Scene.Run(FTarvinOperation::RotationScaleBake());
	RC_ASSERT(Scene.LargestMove() <= Rounding * Scene.Size());
}

RC_GTEST_FIXTURE_PROP(BakeTransformProperty, LeavesBakedComponentsWithoutRotationAndScale, ())
{
	FCommandScene Scene = FCommandScene::Draw(World());
	const FTarvinRunResult Result = Scene.Run(FTarvinOperation::RotationScaleBake());
	int32 NumStill = 0;
	for (UStaticMeshComponent* Component : Scene.Components())
	{
		const FTransform& Now = Component->GetComponentTransform();
		const bool bStill = Now.GetRotation().IsIdentity(1e-9) && Now.GetScale3D().Equals(FVector::OneVector, 1e-9);
		NumStill += bStill && Scene.WasItem(Component) ? 1 : 0;
		RC_ASSERT(
			(Now.GetTranslation() - Scene.OldWorld(Component).GetTranslation()).Size() <= Rounding * Scene.Size());
	}
	RC_ASSERT(NumStill >= Result.ComponentsUpdated);
}

RC_GTEST_FIXTURE_PROP(BakeTransformProperty, KeepsUnselectedComponentsWhereTheyStand, ())
{
	FCommandScene Scene = FCommandScene::Draw(World());
	Scene.Run(FTarvinOperation::RotationScaleBake());
	for (UStaticMeshComponent* Component : Scene.Components())
	{
		if (!Scene.WasItem(Component))
		{
			const FMatrix Before = Scene.OldWorld(Component).ToMatrixWithScale();
			const FMatrix Now = Component->GetComponentTransform().ToMatrixWithScale();
			RC_ASSERT(Now.Equals(Before, 1e-9 * Scene.Size()));
		}
	}
}

RC_GTEST_FIXTURE_PROP(BakeTransformProperty, KeepsTheSidesOfTriangles, ())
{
	FCommandScene Scene = FCommandScene::Draw(World());
	std::map<UStaticMeshComponent*, std::vector<FVector>> Before;
	for (UStaticMeshComponent* Component : Scene.Components())
	{
		Before.emplace(Component, FaceNormals(Component));
	}
	Scene.Run(FTarvinOperation::RotationScaleBake());
	for (UStaticMeshComponent* Component : Scene.Components())
	{
		if (Scene.MayMove(Component))
		{
			continue;
		}
		const std::vector<FVector> Now = FaceNormals(Component);
		RC_ASSERT(Now.size() == Before[Component].size());
		for (std::size_t Triangle = 0; Triangle < Now.size(); ++Triangle)
		{
			RC_ASSERT((Now[Triangle] | Before[Component][Triangle]) > 0.99);
		}
	}
}

RC_GTEST_FIXTURE_PROP(BakeTransformProperty, KeepsStoredNormalsUprightOnTheirTriangles, ())
{
	FCommandScene Scene = FCommandScene::Draw(World());
	Scene.Run(FTarvinOperation::RotationScaleBake());
	for (UStaticMeshComponent* Component : Scene.Components())
	{
		for (const FMeshDescription* Source : SourcesOf(Component->GetStaticMesh()))
		{
			ExpectUprightNormals(*Source);
		}
	}
}

RC_GTEST_FIXTURE_PROP(BakeTransformProperty, IsTakenBackByOneUndoToTheBit, ())
{
	FCommandScene Scene = FCommandScene::Draw(World());
	const FWorldState Before = Scene.State();
	const FTarvinRunResult Result = Scene.Run(FTarvinOperation::RotationScaleBake());
	const FWorldState After = Scene.State();
	RC_ASSERT(Undo() == (Result.Baked > 0));
	RC_ASSERT(Before.Difference(Scene.State()) == "");
	if (Result.Baked == 0)
	{
		return;
	}
	for (int32 Round = 0; Round < 3; ++Round)
	{
		RC_ASSERT(Redo());
		RC_ASSERT(After.Difference(Scene.State()) == "");
		RC_ASSERT(Undo());
		RC_ASSERT(Before.Difference(Scene.State()) == "");
	}
}
