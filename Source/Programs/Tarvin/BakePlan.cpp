// SPDX-License-Identifier: MIT
#include "BakePlan.h"

#include "Engine/StaticMeshComponent.h"
#include "SceneIO/SceneSpace.h"
#include "TarvinOperation.h"
#include "TarvinSelectionAction.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{
/// Bakes closer than this, as a share of their size, are the same for every purpose.
constexpr double SameBake = 1e-8;

bool IsSame(const FTransform& A, const FTransform& B)
{
	return RelativeDifference(A.ToMatrixWithScale(), B.ToMatrixWithScale()) <= SameBake;
}

/// Whether the module would serve both by one bake.
bool WouldMerge(const FTransform& A, const FTransform& B)
{
	return A.GetRotation().Equals(B.GetRotation(), KINDA_SMALL_NUMBER) &&
		   A.GetScale3D().Equals(B.GetScale3D(), KINDA_SMALL_NUMBER);
}
/// Whether one command may work on a bake beside those that it has taken.
bool Fits(const FTransform& Bake, const std::vector<FTransform>& Taken)
{
	return std::ranges::all_of(
		Taken, [&](const FTransform& Other) { return !WouldMerge(Bake, Other) || IsSame(Bake, Other); });
}

/// The scenes of the file that show each node; -1 where none does.
std::vector<std::set<int32>> FindScenesOfNodes(const FGltfDocument& Document)
{
	std::vector<std::set<int32>> Out(Document.Model().Nodes.size());
	for (std::size_t Index = 0; Index < Document.Model().Scenes.size(); ++Index)
	{
		std::vector<FGltfIndex> Open = Document.Model().Scenes[Index].Nodes;
		while (!Open.empty())
		{
			const FGltfIndex Node = Open.back();
			Open.pop_back();
			Out[std::size_t(Node)].insert(int32(Index));
			const std::vector<FGltfIndex>& Children = Document.Node(Node).Children;
			Open.insert(Open.end(), Children.begin(), Children.end());
		}
	}
	for (std::set<int32>& Scenes : Out)
	{
		Scenes = Scenes.empty() ? std::set<int32>{-1} : Scenes;
	}
	return Out;
}
} // namespace

UStaticMesh* AssetOf(const FScene& Scene, FGltfIndex Node)
{
	const UStaticMeshComponent* const Component = Cast<UStaticMeshComponent>(Scene.Node(Node).Component.Get());
	return IsValid(Component) ? Component->GetStaticMesh() : nullptr;
}

FBakePlanner::FBakePlanner(const FScene& InScene, const FSceneJudge& InJudge, const FBakeOptions& InOptions)
	: Scene(InScene)
	, SceneJudge(InJudge)
	, Options(InOptions)
	, Operation(InOptions.Command == ESceneCommand::BakeTransform ? FTarvinOperation::RotationScaleBake()
																  : FTarvinOperation::SetPivot(InOptions.Position))
	, ScenesOfNode(FindScenesOfNodes(*InScene.Document()))
{
}

FTransform FBakePlanner::BakeOf(FGltfIndex Node) const
{
	UStaticMeshComponent* const Component = Cast<UStaticMeshComponent>(Scene.Node(Node).Component.Get());
	FTransform Bake;
	Operation.ComputeBake({Component, AssetOf(Scene, Node), Component->GetComponentTransform()}, Bake);
	return Bake;
}

FBakeBatch FBakePlanner::Next(
	const std::vector<FSceneVerdict>& Verdicts, const std::vector<bool>& bWanted, const std::vector<bool>& bDone) const
{
	FBakeBatch Batch;
	std::map<UStaticMesh*, std::vector<FGltfIndex>> NodesOfAsset;
	std::map<UStaticMesh*, std::vector<FTransform>> BakesOfAsset;
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		const std::size_t At = std::size_t(Node);
		UStaticMeshComponent* const Component = Cast<UStaticMeshComponent>(Scene.Node(Node).Component.Get());
		if (Verdicts[At].Kind != FSceneVerdict::EKind::Candidate || !bWanted[At] || bDone[At] || !Component)
		{
			continue;
		}
		if (Options.Command == ESceneCommand::BakeTransform &&
			FTarvinSelectionAction::HasUnrepresentableParent(Component))
		{
			Batch.bPostponed = true;
			continue;
		}
		const FTransform Bake = BakeOf(Node);
		std::vector<FTransform>& Taken = BakesOfAsset[Component->GetStaticMesh()];
		if (!Fits(Bake, Taken))
		{
			Batch.bPostponed = true;
			continue;
		}
		Taken.push_back(Bake);
		NodesOfAsset[Component->GetStaticMesh()].push_back(Node);
		Batch.Nodes.push_back(Node);
	}
	if (Options.Shared == ESharedAnswer::InPlace)
	{
		for (const auto& [Asset, Nodes] : NodesOfAsset)
		{
			const std::string Objection = InPlaceObjection(Asset, Batch.Nodes, Verdicts, bWanted);
			for (const FGltfIndex Node : Objection.empty() ? std::vector<FGltfIndex>() : Nodes)
			{
				Batch.Refused[Node] = Objection;
			}
		}
		std::erase_if(Batch.Nodes, [&](FGltfIndex Node) { return Batch.Refused.contains(Node); });
	}
	return Batch;
}

std::string FBakePlanner::ReasonNotToFollow(FGltfIndex Node, const FSceneVerdict& Verdict) const
{
	if (!SceneJudge.StaticReason(Node).empty())
	{
		return SceneJudge.StaticReason(Node);
	}
	const bool bNothing = Verdict.Kind == FSceneVerdict::EKind::NothingToBake;
	const std::string Otherwise = bNothing ? "it has nothing to bake" : "it is not baked in the same step";
	return Verdict.Reason.empty() ? Otherwise : Verdict.Reason;
}

std::string FBakePlanner::ReasonToStay(FGltfIndex Node, const std::vector<FGltfIndex>& Users) const
{
	if (!SceneJudge.StaticReason(Node).empty())
	{
		return SceneJudge.StaticReason(Node);
	}
	const std::set<int32>& Scenes = ScenesOfNode[std::size_t(Node)];
	const auto IsSeenWith = [&](FGltfIndex User)
	{ return std::ranges::any_of(ScenesOfNode[std::size_t(User)], [&](int32 In) { return Scenes.contains(In); }); };
	return std::ranges::any_of(Users, IsSeenWith) ? ""
		   : Scenes.contains(-1)                  ? "it is in no scene"
												  : "it is in another scene";
}

std::string FBakePlanner::InPlaceObjection(UStaticMesh* Asset, const std::vector<FGltfIndex>& Batch,
	const std::vector<FSceneVerdict>& Verdicts, const std::vector<bool>& bWanted) const
{
	std::vector<FGltfIndex> Users;
	std::ranges::copy_if(
		Batch, std::back_inserter(Users), [&](FGltfIndex Node) { return AssetOf(Scene, Node) == Asset; });
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		if (AssetOf(Scene, Node) != Asset || std::ranges::binary_search(Batch, Node))
		{
			continue;
		}
		// Someone who is seen beside them and could have been asked for changes along: that is what "in place" means.
		const std::string Reason = bWanted[std::size_t(Node)] ? ReasonNotToFollow(Node, Verdicts[std::size_t(Node)])
															  : ReasonToStay(Node, Users);
		if (!Reason.empty())
		{
			return "baking '" + Asset->GetName().ToUtf8() + "' in place would change '" +
				   Scene.NodeName(Node).ToUtf8() + "', which cannot follow (" + Reason + ")";
		}
	}
	return {};
}
