// SPDX-License-Identifier: MIT
// What an undo of the module's commands gives back, and what comes after it.
#include "RunFixture.h"

#include "Core/ModuleManager.h"
#include "CoreUObject/GarbageCollector.h"
#include "CoreUObject/Package.h"
#include "Editor/ScopedTransaction.h"
#include "Engine/BodySetup.h"
#include "Engine/CookedCollision.h"
#include "Engine/StaticMeshSocket.h"

namespace
{
using EChoice = ETarvinSharedAssetChoice;
using FCounts = std::vector<int32>;
using FLines = std::vector<std::string>;

const FTransform Tilted(Turn(FVector(1, 2, 3).GetSafeNormal(), 50), FVector(500, -200, 30), FVector(2, -3, 5));
const FTransform Doubled(FQuat::Identity, FVector(500, -200, 30), FVector(2, 2, 2));

/// Commands with the module started, so that it follows undo and redo.
class Undoing : public FRunTest
{
protected:
	Undoing() { FModuleManager::Get().LoadModuleChecked(TEXT("TarvinTransform")); }
	~Undoing() override { FModuleManager::Get().UnloadModule(TEXT("TarvinTransform")); }

	/// A mesh with a second level, a HiRes source, two sockets and collision.
	static UStaticMesh* MakeRichMesh(const TCHAR* Name)
	{
		UStaticMesh* const Mesh = MakeMesh(Name);
		FMeshDescription Coarse(*Mesh->GetMeshDescription(0));
		FMeshDescription Fine(Coarse);
		Mesh->SetMeshDescription(1, std::move(Coarse));
		Mesh->SetHiResMeshDescription(std::move(Fine));
		Mesh->AddSocket(TEXT("Handle"))->RelativeLocation = FVector(1, 2, 3);
		Mesh->AddSocket(TEXT("Hinge"))->RelativeRotation = FRotator(10, 20, 30);
		Mesh->CreateBodySetup()->AggGeom.BoxElems.Add(FKBoxElem{FVector(0, 0, 5), FRotator(), 4, 6, 10});
		return Mesh;
	}

	/// The height at which a ray from far above meets the collision.
	static double PickedTop(const UStaticMesh* Mesh)
	{
		FCollisionHit Hit;
		EXPECT_TRUE(Mesh->GetBodySetup()->GetCookedCollision().RayCast(
			FVector(0.5, 0.25, 1000), FVector(0.5, 0.25, -1000), Hit));
		return Hit.Point.Z;
	}

	/// The height of the highest vertex that is drawn.
	static double DrawnTop(UStaticMesh* Mesh)
	{
		double Top = -1.e9;
		for (const FVector3f& Position : Mesh->GetRenderData(0)->Positions)
		{
			Top = std::max(Top, double(Position.Z));
		}
		return Top;
	}
};

TEST_F(Undoing, OneUndoTakesAllOfACommandBackAndRedoGivesAllOfItAgainEveryTime)
{
	UStaticMesh* const Rock = MakeRichMesh(TEXT("Rock"));
	UStaticMesh* const Stone = MakeRichMesh(TEXT("Stone"));
	UStaticMeshComponent* const First = PlaceSelected(Rock, Tilted);
	PlaceSelected(Stone, Doubled);
	Place(Stone, Tilted);
	USceneComponent* const Child = PlaceFrame(FTransform(FVector(7, 8, 9)));
	Child->AttachToComponent(First, EAttachmentRule::KeepWorld);
	const FWorldState Before = State();
	ASSERT_EQ(Counts(Run(EChoice::ApplyToAll)), (FCounts{2, 2, 0, 0}));
	ASSERT_FALSE(IsSameState(Before, State()));
	const FWorldState After = State();
	for (int32 Round = 0; Round < 5; ++Round)
	{
		ASSERT_TRUE(GEditor->UndoTransaction());
		EXPECT_TRUE(IsSameState(Before, State()));
		EXPECT_EQ(First->GetComponentTransform(), Tilted) << "world transforms are derived again";
		ASSERT_TRUE(GEditor->RedoTransaction());
		EXPECT_TRUE(IsSameState(After, State()));
	}
	EXPECT_FALSE(GEditor->RedoTransaction());
	EXPECT_EQ(Transactions().GetQueueLength(), 1);
}

TEST_F(Undoing, CommandAfterAnUndoSeesTheUndoneGeometry)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Component = PlaceSelected(Rock, Tilted);
	const TArray<FVector> Source = LocalPositions(Rock);
	const TArray<FVector> WorldBefore = WorldPositions(Component);
	Run();
	ASSERT_TRUE(GEditor->UndoTransaction());
	EXPECT_TRUE(Near(LocalPositions(Rock), Source, 0.0));

	Run();
	const FTransform Bake(Tilted.GetRotation(), FVector(), Tilted.GetScale3D());
	EXPECT_TRUE(Near(LocalPositions(Rock), Transformed(Source, Bake))) << "baked once, not twice";
	EXPECT_TRUE(Near(WorldPositions(Component), WorldBefore));
	ASSERT_TRUE(GEditor->UndoTransaction());
	EXPECT_TRUE(Near(LocalPositions(Rock), Source, 0.0));
}

TEST_F(Undoing, PivotCommandAfterAnUndoMeasuresTheUndoneGeometry)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	PlaceSelected(Rock, Doubled);
	Run();
	ASSERT_TRUE(GEditor->UndoTransaction());
	Run(EChoice::Cancel, FTarvinOperation::SetPivot(ETarvinPivotPosition::Top));
	EXPECT_EQ(Rock->GetBoundingBox().Max.Z, 0.0);
	EXPECT_EQ(Rock->GetBoundingBox().Min.Z, -11.0);
}

TEST_F(Undoing, AfterTwoCommandsAndTwoUndosDrawnAndPickedShapesAreRightAtEachStep)
{
	UStaticMesh* const Rock = MakeRichMesh(TEXT("Rock"));
	PlaceSelected(Rock, Doubled);
	Run();
	Run(EChoice::Cancel, FTarvinOperation::SetPivot(ETarvinPivotPosition::Bottom));
	Run(EChoice::Cancel, FTarvinOperation::SetPivot(ETarvinPivotPosition::Top));
	EXPECT_NEAR(DrawnTop(Rock), 0.0, 1.e-4);
	EXPECT_NEAR(PickedTop(Rock), -2.0, 1.e-4);
	ASSERT_TRUE(GEditor->UndoTransaction());
	EXPECT_NEAR(DrawnTop(Rock), 22.0, 1.e-4);
	EXPECT_NEAR(PickedTop(Rock), 20.0, 1.e-4);
	ASSERT_TRUE(GEditor->UndoTransaction());
	ASSERT_TRUE(GEditor->UndoTransaction());
	EXPECT_NEAR(DrawnTop(Rock), 11.0, 1.e-4);
	EXPECT_NEAR(PickedTop(Rock), 10.0, 1.e-4);
	EXPECT_TRUE(Rock->IsBuilt());
	ASSERT_TRUE(GEditor->RedoTransaction());
	EXPECT_NEAR(DrawnTop(Rock), 22.0, 1.e-4);
	EXPECT_NEAR(PickedTop(Rock), 20.0, 1.e-4);
}

TEST_F(Undoing, UndoAfterACollectionBringsBackTheSame)
{
	UStaticMeshComponent* const Component = PlaceSelected(MakeRichMesh(TEXT("Rock")), Tilted);
	const FWorldState Before = State();
	Run();
	const FWorldState After = State();
	ASSERT_TRUE(CollectGarbage());
	ASSERT_TRUE(GEditor->UndoTransaction());
	EXPECT_TRUE(IsSameState(Before, State()));
	ASSERT_TRUE(CollectGarbage());
	ASSERT_TRUE(GEditor->RedoTransaction());
	EXPECT_TRUE(IsSameState(After, State()));
	EXPECT_EQ(Component->GetComponentTransform(), At(FVector(500, -200, 30)));
}

TEST_F(Undoing, DeletedComponentThatTheUndoBufferHoldsIsNoUserAndIsOneAgainWhenBroughtBack)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Selected = PlaceSelected(Rock, Doubled);
	UStaticMeshComponent* const Other = Place(Rock, Tilted);
	{
		const FScopedTransaction Transaction(TEXT("Outliner"), FText::FromString(TEXT("Delete")), nullptr);
		World()->DestroyActor(Other->GetOwner());
	}
	ASSERT_TRUE(CollectGarbage());
	EXPECT_EQ(FTarvinSelectionAction::CountOtherUsers(Rock, {Selected}, World()), 0);
	EXPECT_EQ(Counts(Run()), (FCounts{1, 1, 0, 0}));
	EXPECT_TRUE(Questions.empty());
	ASSERT_TRUE(GEditor->UndoTransaction());
	ASSERT_TRUE(GEditor->UndoTransaction());
	EXPECT_EQ(FTarvinSelectionAction::CountOtherUsers(Rock, {Selected}, World()), 1);
}

TEST_F(Undoing, UndoOfDuplicatesPutsTheComponentsBackAndLeavesUnusedUnbakedAssets)
{
	UStaticMesh* const Rock = MakeRichMesh(TEXT("Rock"));
	UStaticMeshComponent* const Selected = PlaceSelected(Rock, Doubled);
	Place(Rock);
	const TArray<FVector> Source = LocalPositions(Rock);
	const FWorldState Before = State();
	ASSERT_EQ(Counts(Run(EChoice::Duplicate)), (FCounts{1, 1, 1, 0}));
	UStaticMesh* const Copy = MeshOf(Selected);
	ASSERT_FALSE(Near(LocalPositions(Copy), Source));
	const FWorldState After = State();

	ASSERT_TRUE(GEditor->UndoTransaction());
	EXPECT_TRUE(IsSameState(Before, State()));
	EXPECT_EQ(MeshOf(Selected), Rock);
	EXPECT_EQ(FindPackage(TEXT("/Yard/Props/Rock_Baked"))->FindAsset(TEXT("Rock_Baked")), Copy);
	EXPECT_EQ(FTarvinSelectionAction::CountOtherUsers(Copy, {}, World()), 0);
	EXPECT_TRUE(Near(LocalPositions(Copy), Source, 0.0));
	EXPECT_EQ(Copy->Sockets[0]->RelativeLocation, FVector(1, 2, 3));
	EXPECT_NEAR(PickedTop(Copy), 10.0, 1.e-4);
	EXPECT_EQ(OpLines(), (FLines{"Log: Undo/redo: rebuilt 1 mesh(es)"})) << "the copy is the mesh that was baked";
	EXPECT_TRUE(Copy->IsBuilt());

	ASSERT_TRUE(GEditor->RedoTransaction());
	EXPECT_TRUE(IsSameState(After, State()));
	EXPECT_EQ(MeshOf(Selected), Copy);
}

TEST_F(Undoing, SecondCommandAfterUndoneDuplicatesMakesACopyOfAnotherName)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Selected = PlaceSelected(Rock, Doubled);
	Place(Rock);
	Run(EChoice::Duplicate);
	ASSERT_TRUE(GEditor->UndoTransaction());
	Run(EChoice::Duplicate);
	EXPECT_NE(MeshOf(Selected)->GetName(), TEXT("Rock_Baked"));
	EXPECT_TRUE(MeshOf(Selected)->GetName().StartsWith(TEXT("Rock_Baked")));
}
}
