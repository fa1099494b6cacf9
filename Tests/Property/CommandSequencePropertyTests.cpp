// SPDX-License-Identifier: MIT
#include "Property/CommandScene.h"

#include "CoreUObject/GarbageCollector.h"
#include "CoreUObject/ObjectIterator.h"
#include "CoreUObject/Package.h"
#include "Engine/BodySetup.h"
#include "Engine/StaticMeshSocket.h"
#include "TarvinSelectionAction.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>
#include <set>

namespace
{
/// A run of the test works through at least this many steps; the environment may ask for more.
int32 NumSteps()
{
	const char* const Asked = std::getenv("TARVIN_SEQUENCE_STEPS");
	return Asked ? std::atoi(Asked) : 10000;
}

/// All objects but default objects of classes, which are made on first use and stay.
int32 NumObjects()
{
	TArray<UObject*> Objects;
	GetObjectsOfClass(UObject::StaticClass(), Objects, true, RF_ClassDefaultObject);
	return int32(Objects.Num());
}

/// Random commands, undos, redos, changes of selection and collections, beside a model of the undo history: the states
/// that it must lead to.
class FSequence
{
public:
	explicit FSequence(UWorld* InWorld, uint32 Seed)
		: World(InWorld)
		, Random(Seed)
	{
		for (int32 Mesh = 0; Mesh < 3; ++Mesh)
		{
			Meshes.push_back(MakeUnevenMesh(FString::Printf(TEXT("/Sequence/Mesh%d"), Mesh)));
		}
		Furnish(*Meshes[0]);
		for (int32 Index = 0; Index < 8; ++Index)
		{
			USceneComponent* const Parent = Index > 0 && Draw(2) == 0 ? Components[std::size_t(Draw(Index))] : nullptr;
			Components.push_back(MakeActor(World, Meshes[std::size_t(Draw(3))], DrawTransform(), Parent));
		}
		States.push_back(State());
		NumMeshes = int32(GetObjectsOf<UStaticMesh>().Num());
	}

	void Step()
	{
		switch (Draw(8))
		{
		case 0:
			Undo();
			break;
		case 1:
			Redo();
			break;
		case 2:
			ASSERT_TRUE(CollectGarbage());
			break;
		case 3:
			Turn();
			break;
		default:
			Command();
		}
		ASSERT_EQ(States[Place].Difference(State()), "");
	}

	/// The meshes that exist are those that there were, and the copies that commands made.
	void ExpectNoLeaks()
	{
		GEditor->Trans->Reset();
		ASSERT_TRUE(CollectGarbage());
		EXPECT_EQ(int32(GetObjectsOf<UStaticMesh>().Num()), NumMeshes + NumDuplicates);
		EXPECT_EQ(int32(GetObjectsOf<UStaticMeshComponent>().Num()), int32(Components.size()));
	}

private:
	int32 Draw(int32 Count) { return int32(Random() % uint32(Count)); }
	double DrawNumber(double Min, double Max) { return std::uniform_real_distribution<double>(Min, Max)(Random); }

	FTransform DrawTransform()
	{
		const FRotator Rotation(DrawNumber(-80, 80), DrawNumber(-180, 180), DrawNumber(-180, 180));
		const double Scale = DrawNumber(0.5, 2.0) * (Draw(3) == 0 ? -1.0 : 1.0);
		return FTransform(Rotation.Quaternion(), FVector(DrawNumber(-9, 9), DrawNumber(-9, 9), DrawNumber(-9, 9)),
			FVector(Scale, std::abs(Scale), Draw(3) == 0 ? DrawNumber(0.5, 2.0) : std::abs(Scale)));
	}

	static void Furnish(UStaticMesh& Mesh)
	{
		UStaticMeshSocket* const Socket = Mesh.AddSocket(TEXT("Handle"));
		Socket->RelativeLocation = FVector(1, 2, 3);
		Socket->RelativeRotation = FRotator(10, 20, 30);
		FKAggregateGeom& Geometry = Mesh.CreateBodySetup()->AggGeom;
		Geometry.SphereElems.Add({FVector(1, 2, 3), 4.f});
		Geometry.BoxElems.Add({FVector(3, 2, 1), FRotator(0, 45, 0), 1.f, 2.f, 3.f});
	}

	FWorldState State() const { return FWorldState(World, {Meshes[0], Meshes[1], Meshes[2]}); }

	void Push()
	{
		States.erase(States.begin() + std::ptrdiff_t(Place + 1), States.end());
		States.push_back(State());
		++Place;
	}

	void Undo()
	{
		ASSERT_EQ(GEditor->UndoTransaction(), Place > 0);
		Place -= Place > 0 ? 1 : 0;
	}

	void Redo()
	{
		const bool bCan = Place + 1 < States.size();
		ASSERT_EQ(GEditor->RedoTransaction(), bCan);
		Place += bCan ? 1 : 0;
	}

	/// What a user does between commands, recorded as the editor records it.
	void Turn()
	{
		GEditor->BeginTransaction(TEXT("Editor"), FText::FromString(TEXT("Turn")), nullptr);
		UStaticMeshComponent* const Component = Components[std::size_t(Draw(int32(Components.size())))];
		Component->Modify();
		Component->SetRelativeTransform(DrawTransform());
		GEditor->EndTransaction();
		Push();
	}

	void Command()
	{
		GEditor->SelectNone();
		for (UStaticMeshComponent* Component : Components)
		{
			GEditor->SelectActor(Component->GetOwner(), Draw(3) == 0);
		}
		const int32 Kind = Draw(12);
		const FTarvinOperation Operation = Kind >= 8
											   ? FTarvinOperation::RotationScaleBake()
											   : FTarvinOperation::SetPivot(static_cast<ETarvinPivotPosition>(Kind));
		const std::map<UStaticMeshComponent*, TArray<FVector>> Before = Places();
		std::set<UStaticMesh*> Shared;
		FTarvinOnSharedAsset OnSharedAsset;
		// Copies are answered seldom, so that assets stay shared for most of the sequence.
		OnSharedAsset.BindLambda(
			[this, &Shared](UStaticMesh* Mesh, int32, bool bInPlaceAllowed)
			{
				const int32 Answer = Draw(40);
				if (Answer > 0 && Answer < 20 && bInPlaceAllowed)
				{
					Shared.insert(Mesh);
					return ETarvinSharedAssetChoice::ApplyToAll;
				}
				return Answer == 0 ? ETarvinSharedAssetChoice::Duplicate : ETarvinSharedAssetChoice::Cancel;
			});
		FTarvinRunResult Skips;
		const TArray<FTarvinItem> Items = FTarvinSelectionAction::GatherFromSelection(Skips, Operation);
		const FTarvinRunResult Result = FTarvinSelectionAction::Run(Items, World, OnSharedAsset, Operation);
		ExpectNothingMoved(Before, Items, Shared);
		NumDuplicates += Result.Duplicated;
		if (Result.Baked > 0)
		{
			Push();
		}
	}

	/// The world places of all vertices.
	std::map<UStaticMeshComponent*, TArray<FVector>> Places() const
	{
		std::map<UStaticMeshComponent*, TArray<FVector>> Result;
		for (UStaticMeshComponent* Component : Components)
		{
			Result.emplace(Component, WorldPositions(Component));
		}
		return Result;
	}

	/// Who was not worked on and uses a mesh that was changed for all may have changed; nobody else.
	void ExpectNothingMoved(const std::map<UStaticMeshComponent*, TArray<FVector>>& Before,
		const TArray<FTarvinItem>& Items, const std::set<UStaticMesh*>& Shared)
	{
		for (const auto& [Component, Old] : Before)
		{
			const bool bItem = std::any_of(Items.begin(), Items.end(),
				[Mine = Component](const FTarvinItem& Item) { return Item.Component == Mine; });
			if (!bItem && Shared.contains(Component->GetStaticMesh()))
			{
				continue;
			}
			const TArray<FVector> Now = WorldPositions(Component);
			ASSERT_EQ(Now.Num(), Old.Num());
			double Size = 1.0;
			double Move = 0.0;
			for (int32 Vertex = 0; Vertex < Now.Num(); ++Vertex)
			{
				const FVector FromOrigin = Now[Vertex] - Component->GetComponentLocation();
				Size = std::max({Size, Old[Vertex].GetAbsMax(), FromOrigin.GetAbsMax()});
				Move = std::max(Move, (Now[Vertex] - Old[Vertex]).Size());
			}
			ASSERT_LE(Move, 2e-6 * Size);
		}
	}

	UWorld* World;
	std::mt19937 Random;
	std::vector<UStaticMesh*> Meshes;
	std::vector<UStaticMeshComponent*> Components;
	std::vector<FWorldState> States;
	std::size_t Place = 0;
	int32 NumMeshes = 0;
	int32 NumDuplicates = 0;
};
} // namespace

TEST(CommandSequence, MovesNothingKeepsTheUndoHistoryTrueToTheBitAndLeaksNoObject)
{
	constexpr int32 StepsPerWorld = 500;
	DestroyEditorAndAssets();
	GetTransientPackage();
	const int32 NumBefore = NumObjects();
	for (int32 Done = 0; Done < NumSteps(); Done += StepsPerWorld)
	{
		UEditorEngine::Create();
		{
			FSequence Sequence(GEditor->GetEditorWorldContext().World(), uint32(Done + 1));
			for (int32 Step = 0; Step < StepsPerWorld && !testing::Test::HasFatalFailure(); ++Step)
			{
				SCOPED_TRACE("world " + std::to_string(Done / StepsPerWorld) + ", step " + std::to_string(Step));
				Sequence.Step();
			}
			if (!testing::Test::HasFatalFailure())
			{
				Sequence.ExpectNoLeaks();
			}
		}
		DestroyEditorAndAssets();
		if (testing::Test::HasFatalFailure())
		{
			return;
		}
	}
	EXPECT_EQ(NumObjects(), NumBefore);
}
