// SPDX-License-Identifier: MIT
#pragma once

#include "BakeJob.h"
#include "SceneIO/SceneDiff.h"

#include <string>

/// A report for people, several lines; errors are not in it. Control characters in names are escaped.
std::string ToText(const FBakeReport& Report, const FBakeOptions& Options);
std::string ToText(const FSceneDeviation& Deviation);
