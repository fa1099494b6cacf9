// SPDX-License-Identifier: MIT
#pragma once

#include "TarvinOperation.h"

/// The question what to do with an asset that others use too, or that is wanted in two shapes.
namespace TarvinSharedAssetPrompt
{
/// Shows the question as a modal dialog and waits for the answer. `Mesh` must not be null. Where `bInPlaceAllowed` is
/// false only a duplicate is offered. `OutApplyToRest` gives the check box its first state and takes its last one,
/// whatever the answer. A window that is closed without an answer means `Cancel`.
ETarvinSharedAssetChoice Ask(UStaticMesh* Mesh, int32 OtherUsers, bool bInPlaceAllowed, bool* OutApplyToRest);
} // namespace TarvinSharedAssetPrompt
