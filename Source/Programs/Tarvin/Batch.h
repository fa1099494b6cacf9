// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// How a child process ended, and what it printed.
struct FChildResult
{
	int ExitCode = 0;
	std::string Output;
	std::string Errors;
};

/// Runs this program once for each argument list, `Jobs` at a time, and returns the results in the order of the lists.
/// A child that dies of a signal counts as one that could not read its input.
std::vector<FChildResult> RunChildren(const std::vector<std::vector<std::string>>& ArgumentLists, int Jobs);
