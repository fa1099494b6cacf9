// SPDX-License-Identifier: MIT
#include "RunFixture.h"

#include "Core/ModuleManager.h"
#include "CoreUObject/GarbageCollector.h"
#include "CoreUObject/Package.h"
#include "Editor/ScopedTransaction.h"
#include "TarvinTransformOp.h"

namespace
{
using FLines = std::vector<std::string>;

const FTransform Doubled(FQuat::Identity, FVector(500, -200, 30), FVector(2, 2, 2));

class RebuildAfterUndo : public FRunTest
{
protected:
	RebuildAfterUndo() { FTarvinTransformOp::BeginUndoTrackedBatch(); }

	static bool Bake(UStaticMesh* Mesh)
	{
		FTarvinTransformStats Stats;
		return FTarvinTransformOp::BakeIntoMesh(Mesh, FTransform(FVector(1, 2, 3)), {}, Stats);
	}

	static FLines Rebuilt(int Count) { return {"Log: Undo/redo: rebuilt " + std::to_string(Count) + " mesh(es)"}; }
};

TEST_F(RebuildAfterUndo, NothingTrackedIsNothingRebuiltAndNoLine)
{
	FTarvinTransformOp::RebuildMeshesAfterUndo();
	EXPECT_EQ(Log.Records().Num(), 0);
}

TEST_F(RebuildAfterUndo, EveryMeshOfTheBatchIsToldThatItWasEdited)
{
	UStaticMesh* const Meshes[] = {MakeMesh(TEXT("A")), MakeMesh(TEXT("B")), MakeMesh(TEXT("C"))};
	for (UStaticMesh* Mesh : Meshes)
	{
		ASSERT_TRUE(Bake(Mesh));
	}
	TArray<UStaticMesh*> Told;
	const FDelegateHandle Handle = UStaticMesh::OnMeshEdited().AddLambda([&](UStaticMesh* Mesh) { Told.Add(Mesh); });
	FTarvinTransformOp::RebuildMeshesAfterUndo();
	UStaticMesh::OnMeshEdited().Remove(Handle);
	EXPECT_EQ(Told, (TArray<UStaticMesh*>{Meshes[2], Meshes[1], Meshes[0]}));
	EXPECT_EQ(OpLines(), Rebuilt(3));
}

TEST_F(RebuildAfterUndo, MeshBakedTwiceIsTrackedOnce)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	Bake(Rock);
	Bake(Rock);
	FTarvinTransformOp::RebuildMeshesAfterUndo();
	EXPECT_EQ(OpLines(), Rebuilt(1));
}

TEST_F(RebuildAfterUndo, TwoComponentsOfOneMeshInOneCommandAreOneEntry)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	PlaceSelected(Rock, Doubled);
	PlaceSelected(Rock, Doubled);
	Run();
	FTarvinTransformOp::RebuildMeshesAfterUndo();
	EXPECT_EQ(OpLines(), Rebuilt(1));
}

TEST_F(RebuildAfterUndo, MeshThatWasRefusedIsNotTracked)
{
	FTarvinTransformStats Stats;
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	const FTransform Flat(FQuat::Identity, FVector(), FVector(1, 0, 1));
	EXPECT_FALSE(FTarvinTransformOp::BakeIntoMesh(Rock, Flat, {}, Stats));
	Log.Clear();
	FTarvinTransformOp::RebuildMeshesAfterUndo();
	EXPECT_EQ(Log.Records().Num(), 0);
}

TEST_F(RebuildAfterUndo, DeletedOrCollectedMeshIsDroppedAndDoesNotCount)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMesh* const Deleted = MakeMesh(TEXT("Deleted"));
	UStaticMesh* const Collected = MakeMesh(TEXT("Collected"));
	for (UStaticMesh* Mesh : {Deleted, Rock, Collected})
	{
		Bake(Mesh);
	}
	Deleted->MarkAsGarbage();
	Collected->GetOutermost()->RemoveAsset(Collected);
	ASSERT_TRUE(CollectGarbage());
	FTarvinTransformOp::RebuildMeshesAfterUndo();
	EXPECT_EQ(OpLines(), Rebuilt(1));
}

TEST_F(RebuildAfterUndo, EntryOfADeletedMeshIsGoneForGood)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	Bake(Rock);
	Rock->MarkAsGarbage();
	FTarvinTransformOp::RebuildMeshesAfterUndo();
	Rock->ClearGarbage();
	FTarvinTransformOp::RebuildMeshesAfterUndo();
	EXPECT_TRUE(OpLines().empty()) << "it was taken out of the list while it was deleted";
}

TEST_F(RebuildAfterUndo, NewBatchForgetsTheMeshesOfTheOneBefore)
{
	Bake(MakeMesh(TEXT("Rock")));
	FTarvinTransformOp::BeginUndoTrackedBatch();
	FTarvinTransformOp::RebuildMeshesAfterUndo();
	EXPECT_EQ(Log.Records().Num(), 0);
}

/// The same with the module started, which follows the transaction buffer.
class UndoOfACommand : public RebuildAfterUndo
{
protected:
	UndoOfACommand() { FModuleManager::Get().LoadModuleChecked(TEXT("TarvinTransform")); }
	~UndoOfACommand() override { FModuleManager::Get().UnloadModule(TEXT("TarvinTransform")); }

	/// Commits an empty change of the frame under that context.
	static void Transact(const TCHAR* Context, USceneComponent* Frame)
	{
		const FScopedTransaction Transaction(Context, FText::FromString(TEXT("Move")), nullptr);
		Frame->Modify();
	}
};

TEST_F(UndoOfACommand, RestoresGeometryAndPlaceAndRebuildsTheOneMesh)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Component = PlaceSelected(Rock, Doubled);
	const TArray<FVector> Before = LocalPositions(Rock);
	Run();
	ASSERT_TRUE(GEditor->UndoTransaction());
	EXPECT_TRUE(Near(LocalPositions(Rock), Before, 0.0));
	EXPECT_EQ(Component->GetComponentTransform(), Doubled);
	EXPECT_EQ(OpLines(), Rebuilt(1));
	EXPECT_TRUE(Rock->IsBuilt());
	EXPECT_EQ(Rock->GetNumBuilds(), 2);
}

TEST_F(UndoOfACommand, RedoAndFurtherUndosRebuildTheSameMeshesEachTime)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	PlaceSelected(Rock, Doubled);
	Run();
	for (int32 Round = 0; Round < 3; ++Round)
	{
		Log.Clear();
		ASSERT_TRUE(GEditor->UndoTransaction());
		EXPECT_EQ(OpLines(), Rebuilt(1));
		Log.Clear();
		ASSERT_TRUE(GEditor->RedoTransaction());
		EXPECT_EQ(OpLines(), Rebuilt(1));
	}
}

TEST_F(UndoOfACommand, CancelledCommandHasAlreadyReplacedTheList)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	Run();
	UStaticMesh* const Stone = MakeMesh(TEXT("Stone"));
	GEditor->SelectNone();
	PlaceSelected(Stone, Doubled);
	Place(Stone);
	Run(ETarvinSharedAssetChoice::Cancel);
	Log.Clear();
	ASSERT_TRUE(GEditor->UndoTransaction());
	EXPECT_TRUE(OpLines().empty()) << "the newer run tracks nothing";
}

TEST_F(UndoOfACommand, UndoOfAnOlderCommandRebuildsTheMeshesOfTheNewestOne)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMesh* const Stone = MakeMesh(TEXT("Stone"));
	PlaceSelected(Rock, Doubled);
	Run();
	GEditor->SelectNone();
	PlaceSelected(Stone, Doubled);
	Run();
	ASSERT_TRUE(GEditor->UndoTransaction());
	TArray<UStaticMesh*> Told;
	const FDelegateHandle Handle = UStaticMesh::OnMeshEdited().AddLambda([&](UStaticMesh* Mesh) { Told.Add(Mesh); });
	ASSERT_TRUE(GEditor->UndoTransaction());
	UStaticMesh::OnMeshEdited().Remove(Handle);
	EXPECT_EQ(Told, (TArray<UStaticMesh*>{Stone}));
	EXPECT_EQ(LocalPositions(Rock).Last(), FVector(5, 7, 11))
		<< "its source came back with the transaction all the same";
	EXPECT_EQ(Rock->GetBoundingBox().Max, FVector(5, 7, 11)) << "and whoever draws asks for fresh data";
}

TEST_F(UndoOfACommand, OnlyTransactionsOfTheModuleInAnyLetterCaseCount)
{
	Bake(MakeMesh(TEXT("Rock")));
	USceneComponent* const Frame = PlaceFrame(FTransform());
	for (const TCHAR* Other :
		{TEXT(""), TEXT("Outliner"), TEXT("TarvinTransform2"), TEXT("TarvinTransfor"), TEXT(" TarvinTransform")})
	{
		Transact(Other, Frame);
		ASSERT_TRUE(GEditor->UndoTransaction());
		ASSERT_TRUE(GEditor->RedoTransaction());
	}
	EXPECT_TRUE(OpLines().empty());
	for (const TCHAR* Own : {TEXT("TarvinTransform"), TEXT("tarvintransform"), TEXT("TARVINtransFORM")})
	{
		Log.Clear();
		Transact(Own, Frame);
		ASSERT_TRUE(GEditor->UndoTransaction());
		EXPECT_EQ(OpLines(), Rebuilt(1));
		Log.Clear();
		ASSERT_TRUE(GEditor->RedoTransaction());
		EXPECT_EQ(OpLines(), Rebuilt(1));
	}
}

TEST_F(UndoOfACommand, FailedUndoRebuildsNothing)
{
	Bake(MakeMesh(TEXT("Rock")));
	EXPECT_FALSE(Transactions().Undo());
	EXPECT_FALSE(Transactions().Redo());
	FTransactionContext Context;
	Context.Context = TEXT("TarvinTransform");
	Transactions().OnUndo().Broadcast(Context, false);
	Transactions().OnRedo().Broadcast(Context, false);
	EXPECT_TRUE(OpLines().empty());
	Transactions().OnUndo().Broadcast(Context, true);
	EXPECT_EQ(OpLines(), Rebuilt(1));
}
}
