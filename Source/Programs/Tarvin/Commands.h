// SPDX-License-Identifier: MIT
#pragma once

#include "BakeOptions.h"
#include "ExitCode.h"

#include <string>

// The program's commands. Each prints its report on standard output and errors on standard error, and returns the exit
// code.

EExitCode RunBake(const FBakeOptions& Options);
EExitCode RunInfo(const std::string& Input, bool bJson);
EExitCode RunDiff(const std::string& A, const std::string& B, bool bJson);

/// Writes the sample yard.
EExitCode RunDemo(const std::string& Output);
