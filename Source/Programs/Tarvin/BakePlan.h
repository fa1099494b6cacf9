// SPDX-License-Identifier: MIT
#pragma once

#include "BakeOptions.h"
#include "SceneIO/Scene.h"
#include "SceneIO/SceneVerdict.h"
#include "TarvinOperation.h"

#include <map>
#include <set>
#include <string>
#include <vector>

/// The nodes that one command of the module is to work on, and those of them that must be left alone.
struct FBakeBatch
{
	std::vector<FGltfIndex> Nodes;             ///< in scene order
	std::map<FGltfIndex, std::string> Refused; ///< with the reason
	bool bPostponed = false;                   ///< candidates are left for a later command
};

/// Chooses the nodes of the next command, such that what it does is exact.
///
/// The module takes shapes for the same that differ by up to 1e-4, and looks at no translation: nodes that it would
/// merge although they differ go into commands of their own. For in-place bakes, assets are refused that someone uses
/// who cannot follow.
class FBakePlanner
{
public:
	FBakePlanner(const FScene& InScene, const FSceneJudge& InJudge, const FBakeOptions& InOptions);

	/// The next batch among the candidates that are wanted and not done.
	FBakeBatch Next(const std::vector<FSceneVerdict>& Verdicts, const std::vector<bool>& bWanted,
		const std::vector<bool>& bDone) const;

private:
	/// What the module would bake into a node's mesh.
	FTransform BakeOf(FGltfIndex Node) const;
	/// Why a node that uses an asset cannot be baked along with others.
	std::string ReasonNotToFollow(FGltfIndex Node, const FSceneVerdict& Verdict) const;
	/// Why a node that was not asked for must not see the asset change, which `Users` show; empty where it may.
	std::string ReasonToStay(FGltfIndex Node, const std::vector<FGltfIndex>& Users) const;
	std::string InPlaceObjection(UStaticMesh* Asset, const std::vector<FGltfIndex>& Batch,
		const std::vector<FSceneVerdict>& Verdicts, const std::vector<bool>& bWanted) const;

	const FScene& Scene;
	const FSceneJudge& SceneJudge;
	const FBakeOptions& Options;
	const FTarvinOperation Operation;          ///< what each command does
	std::vector<std::set<int32>> ScenesOfNode; ///< -1 for a node of none
};

/// The asset that a node shows now; null for none.
UStaticMesh* AssetOf(const FScene& Scene, FGltfIndex Node);
