// SPDX-License-Identifier: MIT
// What a million objects cost: making them, finding them by class, collecting them, and looking past them.
//
// Times are per object ("per_object", in seconds); "bytes_per_object" is what the process holds more for each living
// object, its share of the object array, its name and its place in the class's index included. "of_empty" compares
// iteration over a few objects of one class among a million of another with the same iteration where there are no
// others: 1 says that the others cost nothing.
#include "CoreUObject/Archive.h"
#include "CoreUObject/GarbageCollector.h"
#include "CoreUObject/ObjectIterator.h"
#include "CoreUObject/ObjectPtr.h"
#include "CoreUObject/Package.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <malloc.h>

/// An object as small as one that references another can be.
class UBenchmarkNode : public UObject
{
	DECLARE_CLASS(UBenchmarkNode, UObject)

public:
	TObjectPtr<UBenchmarkNode> Next;

	void Serialize(FArchive& Archive) override
	{
		Super::Serialize(Archive);
		Archive << Next;
	}
};

class UBenchmarkOther : public UObject
{
	DECLARE_CLASS(UBenchmarkOther, UObject)
};

DEFINE_CLASS(UBenchmarkNode)
DEFINE_CLASS(UBenchmarkOther)

namespace
{
constexpr int32 Million = 1000000;

double SecondsOf(const std::chrono::steady_clock::time_point Start)
{
	return std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
}

std::size_t BytesInUse()
{
	const struct mallinfo2 Info = mallinfo2();
	return Info.uordblks + Info.hblkhd;
}

/// Makes a chain of `Num` objects; unnamed ones, or all of one name. Returns its head.
UBenchmarkNode* MakeChain(int32 Num, FName Name)
{
	UBenchmarkNode* Head = nullptr;
	for (int32 Index = 0; Index < Num; ++Index)
	{
		UBenchmarkNode* const Node = NewObject<UBenchmarkNode>(nullptr, Name);
		Node->Next = Head;
		Head = Node;
	}
	return Head;
}

void ReportPerObject(benchmark::State& State)
{
	State.counters["per_object"] = benchmark::Counter(
		double(Million), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void MakeAMillion(benchmark::State& State)
{
	const FName Name = State.range(0) != 0 ? NAME_None : FName(TEXT("Node"));
	CollectGarbage();
	double Bytes = 0.0;
	for (auto _ : State)
	{
		const std::size_t Before = BytesInUse();
		const auto Start = std::chrono::steady_clock::now();
		MakeChain(Million, Name);
		State.SetIterationTime(SecondsOf(Start));
		Bytes = std::max(Bytes, double(BytesInUse()) - double(Before));
		CollectGarbage();
	}
	ReportPerObject(State);
	State.counters["bytes_per_object"] = Bytes / Million;
}

void FindAMillionByClass(benchmark::State& State)
{
	MakeChain(Million, TEXT("Node"));
	for (auto _ : State)
	{
		benchmark::DoNotOptimize(GetObjectsOf<UBenchmarkNode>().Num());
	}
	ReportPerObject(State);
	CollectGarbage();
}

void CollectAMillion(benchmark::State& State)
{
	const bool bReachable = State.range(0) != 0;
	for (auto _ : State)
	{
		UBenchmarkNode* const Head = MakeChain(Million, TEXT("Node"));
		if (bReachable)
		{
			Head->AddToRoot();
		}
		const auto Start = std::chrono::steady_clock::now();
		CollectGarbage();
		State.SetIterationTime(SecondsOf(Start));
		if (bReachable)
		{
			Head->RemoveFromRoot();
			CollectGarbage();
		}
	}
	ReportPerObject(State);
}

double BestIteration()
{
	double Best = std::numeric_limits<double>::infinity();
	for (int32 Attempt = 0; Attempt < 1000; ++Attempt)
	{
		const auto Start = std::chrono::steady_clock::now();
		benchmark::DoNotOptimize(GetObjectsOf<UBenchmarkOther>().Num());
		Best = std::min(Best, SecondsOf(Start));
	}
	return Best;
}

void FindAHundredAmongAMillionOthers(benchmark::State& State)
{
	CollectGarbage();
	for (int32 Index = 0; Index < 100; ++Index)
	{
		NewObject<UBenchmarkOther>(nullptr, TEXT("Other"));
	}
	const double Empty = BestIteration();
	MakeChain(Million, TEXT("Node"));
	double Best = std::numeric_limits<double>::infinity();
	for (auto _ : State)
	{
		const double Full = BestIteration();
		State.SetIterationTime(Full);
		Best = std::min(Best, Full);
	}
	State.counters["of_empty"] = Best / Empty;
	CollectGarbage();
}

BENCHMARK(MakeAMillion)->ArgName("unnamed")->Arg(0)->Arg(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FindAMillionByClass)->Unit(benchmark::kMillisecond);
BENCHMARK(CollectAMillion)->ArgName("reachable")->Arg(0)->Arg(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FindAHundredAmongAMillionOthers)->UseManualTime()->Iterations(5);
}

BENCHMARK_MAIN();
