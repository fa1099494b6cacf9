// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Core.h"

/// The road of a command from the selection to its summary.
DECLARE_LOG_CATEGORY_EXTERN(LogTarvinAction, Log, All);

/// The bake of one mesh.
DECLARE_LOG_CATEGORY_EXTERN(LogTarvinOp, Log, All);
