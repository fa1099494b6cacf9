// SPDX-License-Identifier: MIT
// What commands cost on the real host: runs over many components, undo records and duplicates of large meshes, rebuilds
// after undo. Where bytes are moved, the counter `vs_memcpy` gives the time as a multiple of copying the same bytes in
// the same run.

#include "CoreUObject/GarbageCollector.h"
#include "CoreUObject/ObjectIterator.h"
#include "CoreUObject/Package.h"
#include "Editor/EditorEngine.h"
#include "Editor/ScopedTransaction.h"
#include "Engine/BodySetup.h"
#include "Engine/StaticMesh.h"
#include "Engine/StaticMeshComponent.h"
#include "Engine/StaticMeshSocket.h"
#include "TarvinAssetDuplicator.h"
#include "TarvinSelectionAction.h"
#include "TarvinTransformOp.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstring>
#include <vector>

namespace
{
/// A strip of triangles with normals and tangents.
FMeshDescription MakeStrip(int32 NumVertices)
{
	FMeshDescription Mesh;
	Mesh.AddAttributes(EVertexInstanceAttributes::Normals | EVertexInstanceAttributes::Tangents |
					   EVertexInstanceAttributes::BinormalSigns);
	const std::span<FVector3f> Positions = Mesh.AppendVertices(NumVertices);
	Mesh.AppendVertexInstances(NumVertices);
	for (int32 Vertex = 0; Vertex < NumVertices; ++Vertex)
	{
		const std::size_t Slot = std::size_t(Vertex);
		Positions[Slot] = FVector3f(float(Vertex) * 0.01f, float(Vertex % 2), float(Vertex % 7) * 0.1f);
		Mesh.GetVertexInstanceVertices()[Slot] = FVertexID(Vertex);
		Mesh.GetNormals()[Slot] = FVector3f(0.f, 0.f, 1.f);
		Mesh.GetTangents()[Slot] = FVector3f(1.f, 0.f, 0.f);
		Mesh.GetBinormalSigns()[Slot] = 1.f;
	}
	const FPolygonGroupID Group = Mesh.CreatePolygonGroup();
	int32 First = 0;
	for (FTriangleCorners& Corners : Mesh.AppendTriangles(Group, NumVertices - 2))
	{
		Corners = {FVertexInstanceID(First), FVertexInstanceID(First + 1), FVertexInstanceID(First + 2)};
		++First;
	}
	return Mesh;
}

UStaticMesh* MakeMesh(const FString& Name, int32 NumVertices)
{
	UPackage* const Package = CreatePackage(FString(TEXT("/Benchmark")) / Name);
	UStaticMesh* const Mesh = NewObject<UStaticMesh>(Package, FName(Name));
	Package->AddAsset(Mesh);
	Mesh->SetMeshDescription(0, MakeStrip(NumVertices));
	return Mesh;
}

UStaticMeshComponent* Place(UStaticMesh* Mesh, const FVector& At)
{
	AActor* const Actor = GEditor->GetEditorWorldContext().World()->SpawnActor<AActor>();
	UStaticMeshComponent* const Component = Actor->AddComponent<UStaticMeshComponent>();
	Component->SetStaticMesh(Mesh);
	Component->SetRelativeTransform(FTransform(FRotator(10.0, 20.0, 30.0), At, FVector(2.0, 3.0, 0.5)));
	GEditor->SelectActor(Actor, true);
	return Component;
}

/// An editor for the length of one benchmark; all that it made is collected.
class FEditorScope
{
public:
	FEditorScope() { UEditorEngine::Create(); }
	~FEditorScope()
	{
		UEditorEngine::Destroy();
		for (UPackage* Package : GetObjectsOf<UPackage>())
		{
			const TArray<TObjectPtr<UObject>> Assets = Package->GetAssets();
			for (const TObjectPtr<UObject>& Asset : Assets)
			{
				Package->RemoveAsset(Asset);
			}
		}
		CollectGarbage();
	}
};

double Seconds(std::chrono::steady_clock::time_point Since)
{
	return std::chrono::duration<double>(std::chrono::steady_clock::now() - Since).count();
}

/// Seconds that copying so many bytes takes, into memory that was touched before.
double CopySeconds(uint64 Bytes)
{
	std::vector<char> From(Bytes, 1);
	std::vector<char> To(Bytes, 2);
	const auto Start = std::chrono::steady_clock::now();
	std::memcpy(To.data(), From.data(), Bytes);
	benchmark::DoNotOptimize(To.data());
	benchmark::ClobberMemory();
	return Seconds(Start);
}

/// One Bake Transform over components that each have a small mesh of their own.
void RunOverComponents(benchmark::State& State)
{
	for (auto _ : State)
	{
		State.PauseTiming();
		{
			const FEditorScope Editor;
			for (int64 Index = 0; Index < State.range(0); ++Index)
			{
				Place(MakeMesh(FString::Printf(TEXT("Mesh%d"), int32(Index)), 24), FVector(double(Index), 0.0, 0.0));
			}
			FTarvinRunResult Skips;
			const FTarvinOperation Operation = FTarvinOperation::RotationScaleBake();
			State.ResumeTiming();
			const TArray<FTarvinItem> Items = FTarvinSelectionAction::GatherFromSelection(Skips, Operation);
			FTarvinSelectionAction::Run(
				Items, GEditor->GetEditorWorldContext().World(), FTarvinOnSharedAsset(), Operation);
			State.PauseTiming();
		}
		State.ResumeTiming();
	}
	State.SetItemsProcessed(State.iterations() * State.range(0));
}
BENCHMARK(RunOverComponents)->Arg(1)->Arg(100)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(3);

/// Recording a large mesh in a transaction: nothing of it is copied.
void SnapshotOfLargeMesh(benchmark::State& State)
{
	const FEditorScope Editor;
	UStaticMesh* const Mesh = MakeMesh(TEXT("Large"), int32(State.range(0)));
	for (auto _ : State)
	{
		const FScopedTransaction Transaction(TEXT("Benchmark"), FText(), nullptr);
		Mesh->Modify();
	}
	const double Bytes = double(Mesh->GetSourceModel(0).GetBulkData()->MemoryBytes());
	State.counters["bytes_per_vertex"] = Bytes / double(State.range(0));
}
BENCHMARK(SnapshotOfLargeMesh)->Arg(10000000)->Unit(benchmark::kMicrosecond)->Iterations(100);

/// Bake, undo and redo of a large mesh, each beside copying the mesh's bytes.
void BakeAndUndoLargeMesh(benchmark::State& State)
{
	const FEditorScope Editor;
	UStaticMesh* const Mesh = MakeMesh(TEXT("Large"), int32(State.range(0)));
	Place(Mesh, FVector(1.0, 2.0, 3.0));
	const double Copy = CopySeconds(Mesh->GetSourceModel(0).GetBulkData()->MemoryBytes());
	double Bake = 0.0;
	double Undo = 0.0;
	double Rebuild = 0.0;
	for (auto _ : State)
	{
		FTarvinRunResult Skips;
		const FTarvinOperation Operation = FTarvinOperation::RotationScaleBake();
		const TArray<FTarvinItem> Items = FTarvinSelectionAction::GatherFromSelection(Skips, Operation);
		auto Start = std::chrono::steady_clock::now();
		FTarvinSelectionAction::Run(Items, GEditor->GetEditorWorldContext().World(), FTarvinOnSharedAsset(), Operation);
		Bake += Seconds(Start);
		Start = std::chrono::steady_clock::now();
		GEditor->UndoTransaction();
		Undo += Seconds(Start);
		Start = std::chrono::steady_clock::now();
		FTarvinTransformOp::RebuildMeshesAfterUndo();
		Rebuild += Seconds(Start);
	}
	const double Rounds = double(State.iterations());
	State.counters["bake_vs_memcpy"] = Bake / Rounds / Copy;
	State.counters["undo_ms"] = 1000.0 * Undo / Rounds;
	State.counters["rebuild_vs_memcpy"] = Rebuild / Rounds / Copy;
}
BENCHMARK(BakeAndUndoLargeMesh)->Arg(10000000)->Unit(benchmark::kMillisecond)->Iterations(2);

/// A copy of an asset with a large mesh shares its geometry until it is baked.
void DuplicateLargeMesh(benchmark::State& State)
{
	const FEditorScope Editor;
	UStaticMesh* const Mesh = MakeMesh(TEXT("Large"), int32(State.range(0)));
	for (auto _ : State)
	{
		benchmark::DoNotOptimize(FTarvinAssetDuplicator::Duplicate(Mesh));
	}
}
BENCHMARK(DuplicateLargeMesh)->Arg(10000000)->Unit(benchmark::kMicrosecond)->Iterations(100);

/// A bake with so many sockets and shapes of each kind.
void BakeCollisionAndSockets(benchmark::State& State)
{
	const FEditorScope Editor;
	UStaticMesh* const Mesh = MakeMesh(TEXT("Solid"), 24);
	FKAggregateGeom& Geometry = Mesh->CreateBodySetup()->AggGeom;
	for (int64 Index = 0; Index < State.range(0); ++Index)
	{
		const FVector At(double(Index), 1.0, 2.0);
		Mesh->AddSocket(FName(FString::Printf(TEXT("Socket%d"), int32(Index))))->RelativeLocation = At;
		Geometry.SphereElems.Add({At, 2.f});
		Geometry.BoxElems.Add({At, FRotator(), 1.f, 2.f, 3.f});
		Geometry.SphylElems.Add({At, FRotator(), 2.f, 3.f});
		FKConvexElem Convex;
		Convex.VertexData = {At, At + FVector(1, 0, 0), At + FVector(0, 1, 0), At + FVector(0, 0, 1)};
		Geometry.ConvexElems.Add(Convex);
	}
	const FTransform Bake(FRotator(10.0, 20.0, 30.0), FVector::ZeroVector, FVector(1.01, 1.01, 1.01));
	for (auto _ : State)
	{
		FTarvinTransformStats Stats;
		FTarvinTransformOp::BakeIntoMesh(Mesh, Bake, FTarvinTransformOptions(), Stats);
	}
	State.SetItemsProcessed(State.iterations() * State.range(0) * 5);
}
BENCHMARK(BakeCollisionAndSockets)->Arg(1)->Arg(100)->Unit(benchmark::kMicrosecond)->Iterations(20);
} // namespace

BENCHMARK_MAIN();
