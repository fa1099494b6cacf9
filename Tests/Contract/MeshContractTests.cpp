// SPDX-License-Identifier: MIT
// What the module expects of its host's static meshes and mesh descriptions.
#include "ContractHost.h"

#include "Platform/CoreUObject.h"
#include "Platform/MeshDescription.h"

namespace
{
const FMatrix Mirror = FTransform(FQuat::Identity, FVector(7, 8, 9), FVector(-2, 3, 5)).ToMatrixWithScale();

class MeshContract : public FContractTest
{
protected:
	static FVector PositionOf(const UStaticMesh* Mesh, int32 Vertex)
	{
		return FVector(Mesh->GetMeshDescription(0)->GetVertexPosition(FVertexID(Vertex)));
	}
};

TEST_F(MeshContract, MeshWithoutSourceSaysSoAndHasNoDescriptions)
{
	UStaticMesh* const Mesh = MakeEmptyMesh(TEXT("Empty"));
	EXPECT_FALSE(Mesh->IsHiResMeshDescriptionValid());
	EXPECT_EQ(Mesh->GetHiResMeshDescription(), nullptr);
	for (const int32 Lod : {-1, 0, 1})
	{
		EXPECT_FALSE(Mesh->IsMeshDescriptionValid(Lod));
		EXPECT_EQ(Mesh->GetMeshDescription(Lod), nullptr);
	}
}

TEST_F(MeshContract, CommittedEditIsTheSourceAndTheBuildFollows)
{
	UStaticMesh* const Mesh = MakeMesh(TEXT("Corner"));
	ASSERT_EQ(Mesh->GetNumSourceModels(), 1);
	Mesh->ModifyMeshDescription(0, true);
	FStaticMeshOperations::ApplyTransform(*Mesh->GetMeshDescription(0), Mirror, true);
	FCommitMeshDescriptionParams Params;
	Params.bMarkPackageDirty = true;
	Params.bUseHashAsGuid = false;
	Mesh->CommitMeshDescription(0, Params);
	EXPECT_EQ(PositionOf(Mesh, 1), FVector(1, 8, 9));
	EXPECT_TRUE(Mesh->GetOutermost()->IsDirty());
	Mesh->Build(true, nullptr);
	Mesh->PostEditChange();
	EXPECT_EQ(Mesh->GetBoundingBox().Max, FVector(7, 23, 9));
}

TEST_F(MeshContract, MirrorTurnsSignsAndWindingAndKeepsTheSideOfNormals)
{
	UStaticMesh* const Mesh = MakeMesh(TEXT("Corner"));
	FMeshDescription& Description = *Mesh->GetMeshDescription(0);
	FStaticMeshOperations::ApplyTransform(Description, Mirror, true);
	const FTriangleID Triangle(0);
	EXPECT_EQ(FStaticMeshOperations::ComputeTriangleNormal(Description, Triangle), FVector(0, 0, 1));
	for (const FVertexInstanceID Corner : Description.GetTriangleVertexInstances(Triangle))
	{
		EXPECT_EQ(FVector(Description.GetVertexInstanceNormal(Corner)), FVector(0, 0, 1));
		EXPECT_EQ(FVector(Description.GetVertexInstanceTangent(Corner)), FVector(-1, 0, 0));
		EXPECT_EQ(Description.GetVertexInstanceBinormalSign(Corner), -1.f);
	}
	EXPECT_EQ(Description.Vertices().Num(), 3);
	EXPECT_EQ(Description.Triangles().Num(), 1);
}

TEST_F(MeshContract, NormalsOfSlantsGoByTheInverseTransposeAtLengthOne)
{
	UStaticMesh* const Mesh = MakeMesh(TEXT("Corner"));
	FMeshDescription& Description = *Mesh->GetMeshDescription(0);
	const FTransform Tilt(FQuat(FVector(0, 1, 0), FMath::DegreesToRadians(-45.0)));
	FStaticMeshOperations::ApplyTransform(Description, Tilt.ToMatrixWithScale(), true);
	const FTransform Stretch(FQuat::Identity, FVector(), FVector(1, 1, 2));
	FStaticMeshOperations::ApplyTransform(Description, Stretch.ToMatrixWithScale(), true);
	const FVector Face = FStaticMeshOperations::ComputeTriangleNormal(Description, FTriangleID(0));
	const FVector Stored(Description.GetVertexInstanceNormal(FVertexInstanceID(0)));
	EXPECT_TRUE(Stored.Equals(Face, 1.e-6));
	EXPECT_NEAR(Stored.Size(), 1.0, 1.e-6);
	EXPECT_NEAR(FMath::Abs(Stored.X), 2.0 / std::sqrt(5.0), 1.e-6);
}

TEST_F(MeshContract, CollisionIsMadeAnewOnDemandAndAtOnce)
{
	UStaticMesh* const Mesh = MakeMesh(TEXT("Corner"));
	Mesh->WaitUntilAsyncPropertyReleased(EStaticMeshAsyncProperties::BodySetup);
	EXPECT_EQ(Mesh->GetBodySetup(), nullptr);
	UBodySetup* const Body = Mesh->CreateBodySetup();
	EXPECT_EQ(Mesh->GetBodySetup(), Body);
	EXPECT_EQ(Body->AggGeom.GetElementCount(), 0);
	Body->AggGeom.BoxElems.Add(FKBoxElem{FVector(1, 2, 3), FRotator(), 4, 6, 8});
	EXPECT_EQ(Body->AggGeom.GetElementCount(), 1);
	Body->CreatePhysicsMeshes();
	EXPECT_TRUE(Body->HasPhysicsData());
	Body->InvalidatePhysicsData();
	EXPECT_FALSE(Body->HasPhysicsData());
}
}
