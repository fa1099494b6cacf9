// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

// Before Core's headers: it has functions named check, which is a macro there.
#include <rapidcheck/gtest.h>

#include "TestObjects.h"

#include <ostream>
#include <set>
#include <tuple>
#include <vector>

namespace
{
/// A graph of objects as it is to be made: objects by number, each with an outer of a lower number, or none.
struct FGraph
{
	struct FNode
	{
		int Outer = -1;
		bool bRooted = false;
		bool bDestroyed = false;
		bool bInSource = false;
		bool bInHistory = false;
	};
	std::vector<FNode> Nodes;
	std::vector<std::pair<int, int>> Links;
};

void showValue(const FGraph& Graph, std::ostream& Out)
{
	for (std::size_t Index = 0; Index < Graph.Nodes.size(); ++Index)
	{
		const FGraph::FNode& Node = Graph.Nodes[Index];
		Out << Index << " in " << Node.Outer << (Node.bRooted ? " rooted" : "") << (Node.bDestroyed ? " destroyed" : "")
			<< (Node.bInSource ? " in source" : "") << (Node.bInHistory ? " in history" : "") << "; ";
	}
	for (const auto& [From, To] : Graph.Links)
	{
		Out << From << " -> " << To << ", ";
	}
}

/// True for one choice in `OneIn`.
rc::Gen<bool> Rarely(std::size_t OneIn)
{
	return rc::gen::weightedElement<bool>({{OneIn - 1, false}, {1, true}});
}

/// Ranges grow with the size of the case; these numbers are to be drawn from all of theirs, however small the graph is.
rc::Gen<int> AnyNumber()
{
	return rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, 1000));
}

rc::Gen<FGraph> AnyGraph()
{
	using FNodeChoice = std::tuple<int, bool, bool, bool, bool>;
	const auto Node = rc::gen::tuple(AnyNumber(), Rarely(8), Rarely(3), Rarely(10), Rarely(10));
	const auto Link = rc::gen::pair(AnyNumber(), AnyNumber());
	return rc::gen::map(rc::gen::pair(rc::gen::container<std::vector<FNodeChoice>>(Node),
							rc::gen::container<std::vector<std::pair<int, int>>>(Link)),
		[](const std::pair<std::vector<FNodeChoice>, std::vector<std::pair<int, int>>>& Choice)
		{
			FGraph Graph;
			const int NumNodes = int(Choice.first.size());
			for (int Index = 0; Index < NumNodes; ++Index)
			{
				const auto& [Outer, bRooted, bDestroyed, bInSource, bInHistory] = Choice.first[std::size_t(Index)];
				const int OuterIndex = Outer % 3 == 0 || Index == 0 ? -1 : Outer % Index;
				Graph.Nodes.push_back({OuterIndex, bRooted, bDestroyed, bInSource, bInHistory});
			}
			for (const auto& [From, To] : Choice.second)
			{
				if (NumNodes > 0)
				{
					Graph.Links.push_back({From % NumNodes, To % NumNodes});
				}
			}
			return Graph;
		});
}

/// What a collection must keep, found by going over all rules until nothing changes.
std::set<int> SlowReference(const FGraph& Graph)
{
	std::set<int> Kept;
	const auto IsDestroyed = [&](int Index) { return Graph.Nodes[std::size_t(Index)].bDestroyed; };
	for (int Index = 0; Index < int(Graph.Nodes.size()); ++Index)
	{
		const FGraph::FNode& Node = Graph.Nodes[std::size_t(Index)];
		if (Node.bRooted || Node.bInHistory || (Node.bInSource && !Node.bDestroyed))
		{
			Kept.insert(Index);
		}
	}
	for (std::size_t Before = Kept.size() + 1; Before != Kept.size();)
	{
		Before = Kept.size();
		for (const int Index : std::set<int>(Kept))
		{
			if (Graph.Nodes[std::size_t(Index)].Outer >= 0)
			{
				Kept.insert(Graph.Nodes[std::size_t(Index)].Outer);
			}
		}
		for (const auto& [From, To] : Graph.Links)
		{
			if (Kept.contains(From) && (IsDestroyed(From) || !IsDestroyed(To)))
			{
				Kept.insert(To);
			}
		}
	}
	return Kept;
}

/// The objects of a graph, and what keeps some of them.
struct FMadeGraph
{
	explicit FMadeGraph(const FGraph& Graph)
		: Source(false)
		, History(true)
	{
		for (const FGraph::FNode& Node : Graph.Nodes)
		{
			UObject* const Outer = Node.Outer < 0 ? nullptr : Objects[std::size_t(Node.Outer)].Get();
			UTestNode* const Object = NewObject<UTestNode>(Outer);
			Objects.push_back(Object);
			if (Node.bRooted)
			{
				Object->AddToRoot();
			}
			if (Node.bInSource)
			{
				Source.Keep(Object);
			}
			if (Node.bInHistory)
			{
				History.Keep(Object);
			}
		}
		for (const auto& [From, To] : Graph.Links)
		{
			Objects[std::size_t(From)]->Link(Objects[std::size_t(To)]);
		}
		for (std::size_t Index = 0; Index < Objects.size(); ++Index)
		{
			if (Graph.Nodes[Index].bDestroyed)
			{
				Objects[Index]->MarkAsGarbage();
			}
		}
	}
	~FMadeGraph()
	{
		for (const TObjectPtr<UTestNode>& Object : Objects)
		{
			if (Object)
			{
				Object->RemoveFromRoot();
			}
		}
	}
	FMadeGraph(const FMadeGraph&) = delete;
	FMadeGraph& operator=(const FMadeGraph&) = delete;

	std::set<int> Existing() const
	{
		std::set<int> Result;
		for (int Index = 0; Index < int(Objects.size()); ++Index)
		{
			if (Objects[std::size_t(Index)])
			{
				Result.insert(Index);
			}
		}
		return Result;
	}

	FTestSource Source;
	FTestSource History;
	std::vector<TObjectPtr<UTestNode>> Objects;
};

RC_GTEST_PROP(CollectionProperty, KeepsExactlyWhatTheRulesReach, ())
{
	const FGraph Graph = *AnyGraph();
	const std::set<int> Expected = SlowReference(Graph);
	RC_TAG(Expected.empty() ? "nothing kept" : Expected.size() == Graph.Nodes.size() ? "all kept" : "some kept");
	CollectGarbage();
	UTestNode::StaticClass()->GetDefaultObject();
	const int32 NumBefore = FObjectArray::Get().Num();
	{
		const FMadeGraph Made(Graph);
		RC_ASSERT(CollectGarbage());
		RC_ASSERT(Made.Existing() == Expected);
		RC_ASSERT(FObjectArray::Get().Num() == NumBefore + int32(Expected.size()));
		RC_ASSERT(CollectGarbage());
		RC_ASSERT(Made.Existing() == Expected);
	}
	CollectGarbage();
	RC_ASSERT(FObjectArray::Get().Num() == NumBefore);
}
} // namespace
