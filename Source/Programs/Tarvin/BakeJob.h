// SPDX-License-Identifier: MIT
#pragma once

#include "BakeOptions.h"
#include "ExitCode.h"
#include "SceneIO/SceneDiff.h"
#include "SceneIO/SceneWriter.h"

#include <optional>
#include <string>
#include <vector>

/// What became of one node with a mesh.
enum class ENodeOutcome
{
	Baked,
	NothingToBake,
	LeftOut,  ///< it cannot be kept exactly; see the reason
	NotBaked, ///< its asset was left unbaked: by the answer, or because the bake failed
	NotSelected,
};

struct FNodeReport
{
	FGltfIndex Node = NoIndex;
	std::string Path;
	std::string Asset; ///< that the node shows in the end
	bool bNewAsset = false;
	ENodeOutcome Outcome = ENodeOutcome::NotSelected;
	std::string Reason;
};

/// What became of one input.
struct FBakeReport
{
	std::string Input;
	std::string Output; ///< empty for a dry run
	bool bWritten = false;
	std::vector<FNodeReport> Nodes;
	std::vector<std::string> NewAssets;
	std::vector<std::string> Warnings;
	std::vector<std::string> OtherFiles;   ///< written beside the scene
	std::vector<std::string> MissingFiles; ///< named by the scene, and not to be had
	std::optional<FSceneDeviation> Deviation;
	std::string Error; ///< one sentence; empty when the work was done
	EExitCode Exit = ExitDone;

	int Count(ENodeOutcome Outcome) const;
};

/// Bakes one input to one output.
FBakeReport RunBakeJob(const FBakeOptions& Options, const std::string& Input, const std::string& Output);

/// The largest deviation that counts as rounding, as a share of the scene's size.
inline constexpr double VerifyTolerance = 1e-6;
