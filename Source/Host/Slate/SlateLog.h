// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Log.h"

DECLARE_LOG_CATEGORY_EXTERN(LogSlate, Log, All);
