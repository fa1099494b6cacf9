// SPDX-License-Identifier: MIT
#pragma once

/// How the program ends. The larger one counts when several inputs end differently.
enum EExitCode : int
{
	ExitDone = 0,
	ExitIncomplete = 1, ///< done, but an asset was left unbaked, or, under --strict, a node was left out
	ExitUsage = 2,
	ExitUnreadable = 3,
	ExitUnwritable = 4,
	ExitDeviation = 5, ///< --verify found that the picture has changed
};
