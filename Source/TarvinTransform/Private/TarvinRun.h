// SPDX-License-Identifier: MIT
#pragma once

#include "TarvinSelectionAction.h"

namespace TarvinRun
{
/// FTarvinSelectionAction::Run for a caller who says when answers about shared assets come from memory: while
/// `bAnswersAreRemembered` is true, asking changes nothing, so that users of assets need not be counted anew for every
/// group.
FTarvinRunResult Run(const TArray<FTarvinItem>& Items, UWorld* World, const FTarvinOnSharedAsset& OnSharedAsset,
	const FTarvinOperation& Operation, const bool& bAnswersAreRemembered);
} // namespace TarvinRun
