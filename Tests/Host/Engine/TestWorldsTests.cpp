// SPDX-License-Identifier: MIT
#include "CoreUObject/Package.h"
#include "MeshDescription/StaticMeshOperations.h"
#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/TestMeshes.h"
#include "Support/WorldState.h"

#include <gmock/gmock.h>

namespace
{
class FTestWorlds : public FEditorFixture
{
};

TEST_F(FTestWorlds, BoxIsClosedFacesOutwardsAndHasNormalsThatAgreeWithItsTriangles)
{
	const FMeshDescription Box = MakeBoxDescription(FVector(-1, -2, -3), FVector(2, 5, 11));
	EXPECT_EQ(Box.Vertices().Num(), 8);
	EXPECT_EQ(Box.VertexInstances().Num(), 24);
	EXPECT_EQ(Box.Triangles().Num(), 12);
	EXPECT_TRUE(Box.IsConsistent());
	EXPECT_DOUBLE_EQ(FStaticMeshOperations::ComputeSignedVolume(Box), 3.0 * 7.0 * 14.0);
	EXPECT_EQ(Box.ComputeBoundingBox(), FBox(FVector(-1, -2, -3), FVector(2, 5, 11)));
	for (const FTriangleID Triangle : Box.Triangles().GetElementIDs())
	{
		for (const FVertexInstanceID Instance : Box.GetTriangleVertexInstances(Triangle))
		{
			const FVector Normal(Box.GetVertexInstanceNormal(Instance));
			EXPECT_TRUE(Normal.Equals(FStaticMeshOperations::ComputeTriangleNormal(Box, Triangle)));
			EXPECT_EQ(Normal | FVector(Box.GetVertexInstanceTangent(Instance)), 0.0);
		}
	}
}

TEST_F(FTestWorlds, MeshesWithAPackageAreCleanAssetsOfIt)
{
	const UStaticMesh* const Mesh = MakeUnevenMesh(TEXT("/Scene/Yard/Rock"));
	EXPECT_EQ(Mesh->GetPathName(), TEXT("/Scene/Yard/Rock.Rock"));
	EXPECT_EQ(FindPackage(TEXT("/Scene/Yard/Rock"))->FindAsset(TEXT("Rock")), Mesh);
	EXPECT_FALSE(Mesh->GetOutermost()->IsDirty());
	EXPECT_EQ(MakeUnevenMesh()->GetOutermost(), GetTransientPackage());
}

TEST_F(FTestWorlds, WorldPositionsAreLocalOnesThroughTheWorldTransform)
{
	const FTransform Place(
		FQuat(FVector(0, 0, 1), FMath::DegreesToRadians(90.0)), FVector(100, 0, 0), FVector(2, 1, 1));
	const UStaticMeshComponent* const Component = MakeActor(World(), MakeUnevenMesh(), Place);
	ASSERT_EQ(WorldPositions(Component).Num(), 8);
	EXPECT_TRUE(WorldPositions(Component)[0].Equals(FVector(102, -2, -3)));
}

TEST_F(FTestWorlds, StateOfAnUnchangedWorldIsTheSameAndHoldsAssetsAndWhatIsInThem)
{
	UStaticMesh* const Mesh = MakeUnevenMesh();
	Mesh->AddSocket(TEXT("Handle"));
	MakeActor(World(), Mesh);
	const FWorldState Before(World());
	EXPECT_EQ(Before.NumObjects(), 5);
	EXPECT_TRUE(IsSameState(Before, FWorldState(World())));
	EXPECT_EQ(Before.Difference(FWorldState(World())), "");
}

TEST_F(FTestWorlds, StateNoticesWhatMovedWhatIsNewAndWhatIsGone)
{
	UStaticMesh* const Mesh = MakeUnevenMesh();
	UStaticMeshComponent* const Parent = MakeActor(World(), Mesh);
	UStaticMeshComponent* const Child = MakeActor(World(), nullptr, FTransform(FVector(1, 2, 3)), Parent);
	const FWorldState Before(World());
	Parent->SetRelativeTransform(FTransform(FVector(0, 0, 7)));
	const std::string Moved = Before.Difference(FWorldState(World()));
	EXPECT_THAT(Moved, testing::HasSubstr(Parent->GetPathName().ToUtf8() + " differs"));
	EXPECT_THAT(Moved, testing::HasSubstr(Child->GetPathName().ToUtf8() + " differs"));
	Parent->SetRelativeTransform(FTransform());
	EXPECT_TRUE(IsSameState(Before, FWorldState(World())));

	Mesh->SetMeshDescription(0, FMeshDescription(*Mesh->GetMeshDescription(0)));
	EXPECT_THAT(Before.Difference(FWorldState(World())), testing::HasSubstr(Mesh->GetName().ToUtf8() + " differs"));

	Parent->SetStaticMesh(MakeUnevenMesh());
	const std::string Swapped = Before.Difference(FWorldState(World()));
	EXPECT_THAT(Swapped, testing::HasSubstr(Mesh->GetName().ToUtf8() + " is no longer reached"));
	EXPECT_THAT(Swapped, testing::HasSubstr(Parent->GetStaticMesh()->GetName().ToUtf8() + " is new"));
}

TEST_F(FTestWorlds, DestroyingTheEditorLeavesNoAssetAndNoActor)
{
	const FWeakObjectPtr Mesh(MakeUnevenMesh(TEXT("/Scene/Leftover")));
	const TObjectPtr<UStaticMeshComponent> Component = MakeActor(World(), nullptr);
	DestroyEditorAndAssets();
	EXPECT_EQ(GEditor, nullptr);
	EXPECT_TRUE(Mesh.IsStale());
	EXPECT_EQ(Component.Get(), nullptr);
}
} // namespace
