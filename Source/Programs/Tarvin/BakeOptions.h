// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/SceneVerdict.h"
#include "TarvinPivot.h"

#include <string>
#include <vector>

/// What is done about an asset that others use too, or that is wanted in two shapes.
enum class ESharedAnswer
{
	Ask,
	Duplicate,
	InPlace,
	Skip,
};

/// What `tarvin bake` and `tarvin pivot` were asked to do.
struct FBakeOptions
{
	ESceneCommand Command = ESceneCommand::BakeTransform;
	ETarvinPivotPosition Position = ETarvinPivotPosition::Center;
	std::vector<std::string> Inputs;
	std::string Out;                 ///< empty: the input itself
	std::string OutDir;              ///< for several inputs
	std::vector<std::string> Select; ///< patterns of node names; empty: all nodes
	ESharedAnswer Shared = ESharedAnswer::Duplicate;
	bool bDryRun = false;
	bool bJson = false;
	bool bVerify = false;
	bool bStrict = false;
	int Jobs = 1;
};
