// SPDX-License-Identifier: MIT
#include "CoreUObject/ObjectSnapshot.h"
#include "CoreUObject/Package.h"
#include "Engine/BodySetup.h"
#include "Engine/SlowTask.h"
#include "Engine/StaticMeshSocket.h"
#include "Support/EditorFixture.h"
#include "Support/TestMeshes.h"
#include "Support/ThrowingAssertions.h"

#include <gmock/gmock.h>

namespace
{
/// Bulk data that claim vertices and cannot be read, as those of a damaged file.
class FUnreadableBulkData final : public FMeshBulkData
{
public:
	TSharedPtr<FMeshDescription> Decode() const override { return nullptr; }
	bool IsEmpty() const override { return false; }
	int32 NumVertices() const override { return 3; }
	uint64 MemoryBytes() const override { return 0; }
};

/// Bulk data that must be decoded, as those of a file: counts how often that was done.
class FEncodedBulkData final : public FMeshBulkData
{
public:
	TSharedPtr<FMeshDescription> Decode() const override
	{
		++NumDecoded;
		return MakeShared<FMeshDescription>(MakeBoxDescription(FVector(-1, -2, -3), FVector(2, 5, 11)));
	}
	bool IsEmpty() const override { return false; }
	int32 NumVertices() const override { return 8; }
	uint64 MemoryBytes() const override { return 0; }

	mutable int32 NumDecoded = 0;
};

const FMeshBulkData* BulkOf(const UStaticMesh* Mesh, int32 Lod = 0)
{
	return Mesh->GetSourceModel(Lod).GetBulkData().Get();
}

const UStaticMesh& Const(const UStaticMesh* Mesh)
{
	return *Mesh;
}

/// Moves the first vertex of level 0, without committing.
void MoveFirstVertex(UStaticMesh* Mesh, const FVector3f& Position)
{
	Mesh->GetMeshDescription(0)->SetVertexPosition(FVertexID(0), Position);
}

FVector FirstVertex(const UStaticMesh* Mesh)
{
	return FVector(Mesh->GetMeshDescription(0)->GetVertexPosition(FVertexID(0)));
}

class FStaticMesh : public FEditorFixture
{
protected:
	UStaticMesh* const Mesh = MakeUnevenMesh(TEXT("/Scene/Mesh/Rock"));
};

TEST_F(FStaticMesh, WithoutSourceHasNothingToShowAndFailsNowhere)
{
	UStaticMesh* const Empty = NewObject<UStaticMesh>();
	EXPECT_EQ(Empty->GetNumSourceModels(), 0);
	EXPECT_FALSE(Empty->IsMeshDescriptionValid(0));
	EXPECT_FALSE(Empty->IsMeshDescriptionValid(-1));
	EXPECT_FALSE(Empty->IsHiResMeshDescriptionValid());
	EXPECT_EQ(Empty->GetMeshDescription(0), nullptr);
	EXPECT_EQ(Empty->GetHiResMeshDescription(), nullptr);
	EXPECT_FALSE(Empty->ModifyMeshDescription(0));
	EXPECT_FALSE(Empty->ModifyHiResMeshDescription());
	EXPECT_FALSE(Empty->GetBoundingBox().IsValid);
	EXPECT_EQ(Empty->GetRenderData(0), nullptr);
	Empty->Build();
	Empty->PostEditChange();
}

TEST_F(FStaticMesh, HasOneSourcePerLevelAndOneOfHiRes)
{
	Mesh->SetMeshDescription(2, MakeBoxDescription(FVector(0, 0, 0), FVector(1, 2, 3)));
	Mesh->SetHiResMeshDescription(MakeBoxDescription(FVector(0, 0, 0), FVector(5, 7, 9)));
	EXPECT_EQ(Mesh->GetNumSourceModels(), 3);
	EXPECT_TRUE(Mesh->IsMeshDescriptionValid(0));
	EXPECT_FALSE(Mesh->IsMeshDescriptionValid(1));
	EXPECT_TRUE(Mesh->IsMeshDescriptionValid(2));
	EXPECT_TRUE(Mesh->IsHiResMeshDescriptionValid());
	EXPECT_EQ(Mesh->GetMeshDescription(1), nullptr);
	EXPECT_EQ(LocalPositions(Mesh, 2)[7], FVector(1, 2, 3));
	EXPECT_EQ(Mesh->GetRenderData(1), nullptr);
}

TEST_F(FStaticMesh, ASourceWithoutVerticesIsNone)
{
	Mesh->SetMeshDescription(0, FMeshDescription());
	EXPECT_FALSE(Mesh->IsMeshDescriptionValid(0));
	EXPECT_EQ(Mesh->GetMeshDescription(0), nullptr);
}

TEST_F(FStaticMesh, ReadingDoesNotCopyWhatIsInMemory)
{
	EXPECT_EQ(Const(Mesh).GetMeshDescription(0), BulkOf(Mesh)->GetDescription());
}

TEST_F(FStaticMesh, DecodesEncodedSourceOnceForManyReaders)
{
	const TSharedPtr<const FEncodedBulkData> Encoded = MakeShared<FEncodedBulkData>();
	Mesh->GetSourceModel(0).SetBulkData(Encoded);
	EXPECT_EQ(Encoded->NumDecoded, 0);
	const FMeshDescription* const First = Const(Mesh).GetMeshDescription(0);
	EXPECT_EQ(Const(Mesh).GetMeshDescription(0), First);
	Mesh->Build();
	EXPECT_NE(Mesh->GetRenderData(0), nullptr);
	EXPECT_EQ(Encoded->NumDecoded, 1);
}

TEST_F(FStaticMesh, AnEditIsSeenByReadersAndByTheNextEditButChangesNoSource)
{
	const FMeshBulkData* const Before = BulkOf(Mesh);
	MoveFirstVertex(Mesh, FVector3f(-7.f, -2.f, -3.f));
	EXPECT_EQ(FirstVertex(Mesh), FVector(-7, -2, -3));
	EXPECT_EQ(Mesh->GetMeshDescription(0), Mesh->GetMeshDescription(0));
	EXPECT_EQ(FirstVertex(Mesh), FVector(-7, -2, -3));
	EXPECT_EQ(BulkOf(Mesh), Before);
	EXPECT_EQ(FVector(Before->GetDescription()->GetVertexPosition(FVertexID(0))), FVector(-1, -2, -3));
}

TEST_F(FStaticMesh, ACommitMakesTheEditTheSourceAndThePackageDirty)
{
	const TSharedPtr<const FMeshBulkData> Before = Mesh->GetSourceModel(0).GetBulkData();
	MoveFirstVertex(Mesh, FVector3f(-7.f, -2.f, -3.f));
	Mesh->CommitMeshDescription(0, {.bMarkPackageDirty = false});
	EXPECT_FALSE(Mesh->GetOutermost()->IsDirty());
	EXPECT_NE(BulkOf(Mesh), Before.Get());
	EXPECT_EQ(FirstVertex(Mesh), FVector(-7, -2, -3));
	EXPECT_EQ(FVector(Before->GetDescription()->GetVertexPosition(FVertexID(0))), FVector(-1, -2, -3));
	MoveFirstVertex(Mesh, FVector3f(-9.f, -2.f, -3.f));
	Mesh->CommitMeshDescription(0);
	EXPECT_TRUE(Mesh->GetOutermost()->IsDirty());
	EXPECT_EQ(FirstVertex(Mesh), FVector(-9, -2, -3));
}

TEST_F(FStaticMesh, ACommitWithoutAnEditKeepsTheSource)
{
	const FMeshBulkData* const Before = BulkOf(Mesh);
	Const(Mesh).GetMeshDescription(0);
	Mesh->CommitMeshDescription(0);
	EXPECT_EQ(BulkOf(Mesh), Before);
}

TEST_F(FStaticMesh, CommittingALevelThatIsNotThereIsABrokenPrecondition)
{
	const FThrowingAssertions Throwing;
	EXPECT_THROW(Mesh->CommitMeshDescription(1), FAssertionFailed);
}

TEST_F(FStaticMesh, HiResSourceIsEditedAndCommittedAlike)
{
	Mesh->SetHiResMeshDescription(MakeBoxDescription(FVector(0, 0, 0), FVector(5, 7, 9)));
	Mesh->GetHiResMeshDescription()->SetVertexPosition(FVertexID(0), FVector3f(-4.f, 0.f, 0.f));
	Mesh->CommitHiResMeshDescription();
	EXPECT_EQ(FVector(Const(Mesh).GetHiResMeshDescription()->GetVertexPosition(FVertexID(0))), FVector(-4, 0, 0));
	EXPECT_TRUE(Mesh->GetOutermost()->IsDirty());
}

TEST_F(FStaticMesh, ModifyMarksThePackageDirtyUnlessAskedNotTo)
{
	EXPECT_TRUE(Mesh->ModifyMeshDescription(0, false));
	EXPECT_FALSE(Mesh->GetOutermost()->IsDirty());
	EXPECT_TRUE(Mesh->ModifyMeshDescription(0));
	EXPECT_TRUE(Mesh->GetOutermost()->IsDirty());
	EXPECT_FALSE(Mesh->ModifyMeshDescription(1));
}

TEST_F(FStaticMesh, BoundsFollowTheSourceEvenWhereNobodyCalledPostEditChange)
{
	EXPECT_EQ(Mesh->GetBoundingBox(), FBox(FVector(-1, -2, -3), FVector(2, 5, 11)));
	MoveFirstVertex(Mesh, FVector3f(-7.f, -2.f, -3.f));
	Mesh->CommitMeshDescription(0);
	EXPECT_FALSE(Mesh->IsBuilt());
	EXPECT_EQ(Mesh->GetBoundingBox(), FBox(FVector(-7, -2, -3), FVector(2, 5, 11)));
	EXPECT_TRUE(Mesh->IsBuilt());
}

TEST_F(FStaticMesh, BoundsAreThoseOfHiResWhereThereIsNoLevel)
{
	UStaticMesh* const HiRes = NewObject<UStaticMesh>();
	HiRes->SetHiResMeshDescription(MakeBoxDescription(FVector(0, 0, 0), FVector(5, 7, 9)));
	EXPECT_EQ(HiRes->GetBoundingBox(), FBox(FVector(0, 0, 0), FVector(5, 7, 9)));
}

TEST_F(FStaticMesh, AnEditThatIsNotCommittedIsNeverBuilt)
{
	const auto FirstDrawn = [&]() { return FVector(Mesh->GetRenderData(0)->Positions[0]); };
	UStaticMesh* const Fresh = MakeUnevenMesh();
	const FVector Committed(Fresh->GetRenderData(0)->Positions[0]);
	for (FVector3f& Position : Mesh->GetMeshDescription(0)->GetVertexPositions())
	{
		Position = FVector3f(100.f, 100.f, 100.f);
	}
	EXPECT_EQ(FirstDrawn(), Committed);
	EXPECT_EQ(Mesh->GetBoundingBox(), Fresh->GetBoundingBox());
	Mesh->Build();
	EXPECT_EQ(FirstDrawn(), Committed);
	EXPECT_EQ(Mesh->GetBoundingBox(), Fresh->GetBoundingBox());
	Mesh->CommitMeshDescription(0);
	EXPECT_EQ(FirstDrawn(), FVector(100, 100, 100));
}

TEST_F(FStaticMesh, AnEditOfEncodedSourceThatIsNotCommittedIsNeverBuiltAndNotLost)
{
	Mesh->GetSourceModel(0).SetBulkData(MakeShared<FEncodedBulkData>());
	MoveFirstVertex(Mesh, FVector3f(-7.f, -2.f, -3.f));
	EXPECT_EQ(Mesh->GetBoundingBox(), FBox(FVector(-1, -2, -3), FVector(2, 5, 11)));
	EXPECT_NE(Mesh->GetRenderData(0), nullptr);
	Mesh->CommitMeshDescription(0);
	EXPECT_EQ(Mesh->GetBoundingBox(), FBox(FVector(-7, -2, -3), FVector(2, 5, 11)));
}

TEST_F(FStaticMesh, RenderDataHaveOneEntryPerVertexInstanceAndTheWindingOfTheSource)
{
	const FStaticMeshLodRenderData* const Data = Mesh->GetRenderData(0);
	ASSERT_NE(Data, nullptr);
	ASSERT_EQ(Data->Positions.Num(), 24);
	ASSERT_EQ(Data->Normals.Num(), 24);
	ASSERT_EQ(Data->Indices.Num(), 36);
	double Volume = 0.0;
	for (int32 Corner = 0; Corner < 36; Corner += 3)
	{
		const FVector A(Data->Positions[int32(Data->Indices[Corner])]);
		const FVector B(Data->Positions[int32(Data->Indices[Corner + 1])]);
		const FVector C(Data->Positions[int32(Data->Indices[Corner + 2])]);
		Volume += (A | (B ^ C)) / 6.0;
		EXPECT_GT(((B - A) ^ (C - A)) | FVector(Data->Normals[int32(Data->Indices[Corner])]), 0.0);
	}
	EXPECT_NEAR(Volume, 3.0 * 7.0 * 14.0, 1.e-9);
}

TEST_F(FStaticMesh, RenderDataAreMadeOnceUntilTheSourceChanges)
{
	const FStaticMeshLodRenderData* const First = Mesh->GetRenderData(0);
	EXPECT_EQ(Mesh->GetRenderData(0), First);
	const int32 NumBuilds = Mesh->GetNumBuilds();
	EXPECT_EQ(Mesh->GetRenderData(0), First);
	EXPECT_EQ(Mesh->GetNumBuilds(), NumBuilds);
	EXPECT_EQ(Mesh->GetRenderData(1), nullptr);
	EXPECT_EQ(Mesh->GetRenderData(-1), nullptr);
	Mesh->SetMeshDescription(0, MakeBoxDescription(FVector(0, 0, 0), FVector(1, 2, 3)));
	EXPECT_EQ(FVector(Mesh->GetRenderData(0)->Positions[0]), FVector(1, 0, 0));
}

TEST_F(FStaticMesh, PostEditChangeBuildsWhatIsStaleAndTells)
{
	std::vector<UStaticMesh*> Told;
	const FDelegateHandle Handle = UStaticMesh::OnMeshEdited().AddLambda(
		[&](UStaticMesh* Edited)
		{
			EXPECT_TRUE(Edited->IsBuilt());
			Told.push_back(Edited);
		});
	Mesh->PostEditChange();
	const int32 NumBuilds = Mesh->GetNumBuilds();
	Mesh->PostEditChange();
	EXPECT_EQ(Mesh->GetNumBuilds(), NumBuilds);
	EXPECT_THAT(Told, testing::ElementsAre(Mesh, Mesh));
	UStaticMesh::OnMeshEdited().Remove(Handle);
}

TEST_F(FStaticMesh, SourceThatCannotBeDecodedReadsAsNothingAndIsReportedByTheBuild)
{
	Mesh->GetSourceModel(0).SetBulkData(MakeShared<FUnreadableBulkData>());
	EXPECT_TRUE(Mesh->IsMeshDescriptionValid(0));
	EXPECT_EQ(Mesh->GetMeshDescription(0), nullptr);
	EXPECT_EQ(Const(Mesh).GetMeshDescription(0), nullptr);
	EXPECT_EQ(Mesh->GetRenderData(0), nullptr);
	EXPECT_FALSE(Mesh->GetBoundingBox().IsValid);
	TArray<FText> Errors;
	Mesh->Build(true, &Errors);
	ASSERT_EQ(Errors.Num(), 1);
	EXPECT_EQ(Errors[0].ToString(), TEXT("Rock: level 0 cannot be decoded"));
	const FMeshBulkData* const Before = BulkOf(Mesh);
	Mesh->CommitMeshDescription(0);
	EXPECT_EQ(BulkOf(Mesh), Before);
}

TEST_F(FStaticMesh, SnapshotsShareTheSource)
{
	const FObjectSnapshot Before(*Mesh);
	const FMeshBulkData* const Bulk = BulkOf(Mesh);
	MoveFirstVertex(Mesh, FVector3f(-7.f, -2.f, -3.f));
	Mesh->CommitMeshDescription(0);
	Mesh->GetSourceModel(0).ScreenSize = 0.5f;
	Mesh->StaticMaterials[0].MaterialName = TEXT("Wood");
	Before.Restore(*Mesh);
	EXPECT_EQ(BulkOf(Mesh), Bulk);
	EXPECT_EQ(FirstVertex(Mesh), FVector(-1, -2, -3));
	EXPECT_EQ(Mesh->GetSourceModel(0).ScreenSize, 0.f);
	EXPECT_EQ(Mesh->StaticMaterials[0].MaterialName, FName(TEXT("Stone")));
}

TEST_F(FStaticMesh, DuplicatesShareTheSourceUntilTheyAreEditedAndHaveTheirOwnSocketsAndCollision)
{
	UStaticMeshSocket* const Socket = Mesh->AddSocket(TEXT("Handle"));
	Socket->RelativeLocation = FVector(1, 2, 3);
	Mesh->CreateBodySetup()->AggGeom.SphereElems.Add({FVector(1, 2, 3), 4.f});
	UStaticMesh* const Copy = DuplicateObject(Mesh, nullptr);
	EXPECT_EQ(BulkOf(Copy), BulkOf(Mesh));
	ASSERT_EQ(Copy->Sockets.Num(), 1);
	EXPECT_NE(Copy->Sockets[0].Get(), Socket);
	EXPECT_EQ(Copy->Sockets[0]->SocketName, FName(TEXT("Handle")));
	EXPECT_EQ(Copy->Sockets[0]->RelativeLocation, FVector(1, 2, 3));
	ASSERT_NE(Copy->GetBodySetup(), nullptr);
	EXPECT_NE(Copy->GetBodySetup(), Mesh->GetBodySetup());
	EXPECT_TRUE(Copy->GetBodySetup()->AggGeom == Mesh->GetBodySetup()->AggGeom);
	EXPECT_EQ(Copy->GetBodySetup()->GetOuter(), Copy);
	MoveFirstVertex(Copy, FVector3f(-7.f, -2.f, -3.f));
	Copy->CommitMeshDescription(0);
	EXPECT_EQ(FirstVertex(Mesh), FVector(-1, -2, -3));
	EXPECT_EQ(Mesh->GetBoundingBox(), FBox(FVector(-1, -2, -3), FVector(2, 5, 11)));
}

TEST_F(FStaticMesh, MakesItsBodySetupOnce)
{
	EXPECT_EQ(Mesh->GetBodySetup(), nullptr);
	UBodySetup* const Made = Mesh->CreateBodySetup();
	EXPECT_EQ(Mesh->CreateBodySetup(), Made);
	EXPECT_EQ(Mesh->GetBodySetup(), Made);
	EXPECT_EQ(Made->GetOuter(), Mesh);
}
} // namespace
