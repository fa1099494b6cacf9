// SPDX-License-Identifier: MIT
// How fast a mesh is transformed in place, as a part of the speed of copying the same bytes.
//
// Every iteration times one copy and one transform, one after the other, so that both meet the same machine; the
// counter "of_memcpy" is the quotient of the best times of both (1 = as fast as the copy). Both work on memory that was
// written before (warm) and lies on huge pages where the system grants them, except in the benchmark whose name says
// fresh.
#include "MeshDescription/MeshBulkData.h"
#include "MeshDescription/StaticMeshOperations.h"

#include <benchmark/benchmark.h>
#include <tbb/blocked_range.h>
#include <tbb/global_control.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <limits>

namespace
{
enum class EContent : int64
{
	Positions,      ///< 12 bytes to a vertex
	WithDirections, ///< positions, normals and tangents: 36 bytes to a vertex
	Mirrored,       ///< also binormal signs and two triangles to a vertex: 64 bytes to a vertex
};

int64 BytesPerVertex(EContent Content)
{
	return Content == EContent::Positions ? 12 : (Content == EContent::WithDirections ? 36 : 64);
}

/// A mesh with one instance to a vertex, directions of unit length.
FMeshDescription MakeMesh(EContent Content, int32 Num)
{
	FMeshDescription Mesh;
	const std::span<FVector3f> Positions = Mesh.AppendVertices(Num);
	for (std::size_t Index = 0; Index < Positions.size(); ++Index)
	{
		Positions[Index] = FVector3f(static_cast<float>(Index % 1000), static_cast<float>(Index % 777), 3.f);
	}
	if (Content == EContent::Positions)
	{
		return Mesh;
	}
	Mesh.AddAttributes(EVertexInstanceAttributes::Normals | EVertexInstanceAttributes::Tangents);
	Mesh.AppendVertexInstances(Num);
	for (std::size_t Index = 0; Index < Positions.size(); ++Index)
	{
		Mesh.GetVertexInstanceVertices()[Index] = FVertexID(static_cast<int32>(Index));
		const float Angle = static_cast<float>(Index);
		Mesh.GetNormals()[Index] = FVector3f(std::cos(Angle), std::sin(Angle), 0.f);
		Mesh.GetTangents()[Index] = FVector3f(0.f, 0.6f, 0.8f);
	}
	if (Content == EContent::Mirrored)
	{
		Mesh.AddAttributes(EVertexInstanceAttributes::BinormalSigns);
		const FVertexInstanceID First(0);
		std::ranges::fill(
			Mesh.AppendTriangles(Mesh.CreatePolygonGroup(), 2 * Num), FTriangleCorners{First, First, First});
	}
	return Mesh;
}

/// A turn and an uneven scale near one, so that repeating it neither grows nor shrinks the mesh much.
FMatrix MakeMatrix(EContent Content)
{
	const double Sign = Content == EContent::Mirrored ? -1.0 : 1.0;
	return FTransform(FRotator(10, 20, 30), FVector(1, 2, 3), FVector(Sign * 1.001, 0.999, 1.0)).ToMatrixWithScale();
}

/// Seconds on the clock for work of one or of many threads. One thread is timed by the processor time that it had,
/// which other programs do not lengthen; what many threads gain shows on the wall only.
double Now(bool bAllCores)
{
	timespec Time = {};
	clock_gettime(bAllCores ? CLOCK_MONOTONIC : CLOCK_THREAD_CPUTIME_ID, &Time);
	return static_cast<double>(Time.tv_sec) + 1.e-9 * static_cast<double>(Time.tv_nsec);
}

template <typename FunctionType>
double TimeOf(bool bAllCores, const FunctionType& Function)
{
	const double Start = Now(bAllCores);
	Function();
	return Now(bAllCores) - Start;
}

/// Copies on one core, or in pieces on all.
void Copy(TMeshArray<uint8>& To, const TMeshArray<uint8>& From, bool bAllCores)
{
	if (!bAllCores)
	{
		std::memcpy(To.data(), From.data(), From.size());
		return;
	}
	tbb::parallel_for(tbb::blocked_range<std::size_t>(0, From.size(), std::size_t(1) << 19),
		[&](const auto& Piece) { std::memcpy(To.data() + Piece.begin(), From.data() + Piece.begin(), Piece.size()); });
}

void ApplyTransformInPlace(benchmark::State& State, EContent Content, bool bAllCores)
{
	const int32 Num = static_cast<int32>(State.range(0));
	const std::size_t Bytes = static_cast<std::size_t>(BytesPerVertex(Content) * Num);
	const tbb::global_control Cores(tbb::global_control::max_allowed_parallelism,
		bAllCores ? static_cast<std::size_t>(tbb::this_task_arena::max_concurrency()) : 1);

	FMeshDescription Mesh = MakeMesh(Content, Num);
	const FMatrix Matrix = MakeMatrix(Content);
	TMeshArray<uint8> From, To;
	From.resize(Bytes);
	To.resize(Bytes);
	std::ranges::fill(From, uint8(1));
	std::ranges::fill(To, uint8(2));

	double BestCopy = std::numeric_limits<double>::max();
	double BestTransform = std::numeric_limits<double>::max();
	for (auto _ : State)
	{
		BestCopy = std::min(BestCopy, TimeOf(bAllCores,
										  [&]
										  {
											  Copy(To, From, bAllCores);
											  benchmark::ClobberMemory();
										  }));
		const double Time = TimeOf(bAllCores, [&] { FStaticMeshOperations::ApplyTransform(Mesh, Matrix); });
		BestTransform = std::min(BestTransform, Time);
		State.SetIterationTime(Time);
	}
	State.SetBytesProcessed(static_cast<int64>(State.iterations()) * static_cast<int64>(Bytes));
	State.counters["of_memcpy"] = BestCopy / BestTransform;
	State.counters["ns_per_vertex"] = BestTransform * 1.e9 / Num;
	State.counters["bytes_per_vertex"] = static_cast<double>(Mesh.MemoryBytes()) / Num;
}

/// What an edit of stored geometry costs in all: a new copy of the mesh in fresh memory, then the transform.
void DecodeFreshThenApply(benchmark::State& State)
{
	const int32 Num = static_cast<int32>(State.range(0));
	const FDescriptionBulkData Bulk(MakeMesh(EContent::WithDirections, Num));
	const FMatrix Matrix = MakeMatrix(EContent::WithDirections);
	const std::size_t Bytes = static_cast<std::size_t>(Bulk.MemoryBytes());
	TMeshArray<uint8> From;
	From.resize(Bytes);
	std::ranges::fill(From, uint8(1));

	double BestCopy = std::numeric_limits<double>::max();
	double BestTransform = std::numeric_limits<double>::max();
	for (auto _ : State)
	{
		BestCopy = std::min(BestCopy, TimeOf(true,
										  [&]
										  {
											  TMeshArray<uint8> Fresh(From);
											  benchmark::DoNotOptimize(Fresh.data());
										  }));
		const double Time = TimeOf(true, [&] { FStaticMeshOperations::ApplyTransform(*Bulk.Decode(), Matrix); });
		BestTransform = std::min(BestTransform, Time);
		State.SetIterationTime(Time);
	}
	State.counters["of_fresh_memcpy"] = BestCopy / BestTransform;
	State.counters["ns_per_vertex"] = BestTransform * 1.e9 / Num;
}

void ComputeBoundingBox(benchmark::State& State)
{
	const FMeshDescription Mesh = MakeMesh(EContent::Positions, static_cast<int32>(State.range(0)));
	for (auto _ : State)
	{
		benchmark::DoNotOptimize(Mesh.ComputeBoundingBox());
	}
	State.SetBytesProcessed(static_cast<int64>(State.iterations()) * State.range(0) * 12);
}

void VertexCounts(benchmark::internal::Benchmark* Benchmark)
{
	Benchmark->Arg(1'000)->Arg(1'000'000)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMicrosecond);
}
}

BENCHMARK_CAPTURE(ApplyTransformInPlace, Positions_OneCore, EContent::Positions, false)->Apply(VertexCounts);
BENCHMARK_CAPTURE(ApplyTransformInPlace, Positions_AllCores, EContent::Positions, true)->Apply(VertexCounts);
BENCHMARK_CAPTURE(ApplyTransformInPlace, WithDirections_OneCore, EContent::WithDirections, false)->Apply(VertexCounts);
BENCHMARK_CAPTURE(ApplyTransformInPlace, WithDirections_AllCores, EContent::WithDirections, true)->Apply(VertexCounts);
BENCHMARK_CAPTURE(ApplyTransformInPlace, Mirrored_OneCore, EContent::Mirrored, false)->Apply(VertexCounts);
BENCHMARK_CAPTURE(ApplyTransformInPlace, Mirrored_AllCores, EContent::Mirrored, true)->Apply(VertexCounts);
BENCHMARK(DecodeFreshThenApply)->Apply(VertexCounts);
BENCHMARK(ComputeBoundingBox)->Arg(1'000)->Arg(10'000'000)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
