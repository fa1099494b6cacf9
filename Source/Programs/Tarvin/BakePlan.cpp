// SPDX-License-Identifier: MIT
#include "BakePlan.h"

#include "Engine/StaticMeshComponent.h"
#include "SceneIO/SceneSpace.h"
#include "TarvinOperation.h"
#include "TarvinSelectionAction.h"

#include <algorithm>
#include <cmath>

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

std::string FBakePlanner::InPlaceObjection(UStaticMesh* Asset, const std::vector<FGltfIndex>& Batch,
	const std::vector<FSceneVerdict>& Verdicts, const std::vector<bool>& bWanted) const
{
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		if (AssetOf(Scene, Node) != Asset || std::ranges::binary_search(Batch, Node))
		{
			continue;
		}
		// Someone who was not asked for, but could have been, changes along: that is what "in place" means.
		if (bWanted[std::size_t(Node)] || !SceneJudge.StaticReason(Node).empty())
		{
			return "baking '" + Asset->GetName().ToUtf8() + "' in place would change '" +
				   Scene.NodeName(Node).ToUtf8() + "', which cannot follow (" +
				   ReasonNotToFollow(Node, Verdicts[std::size_t(Node)]) + ")";
		}
	}
	return {};
}
