// SPDX-License-Identifier: MIT
#pragma once

// The vocabulary of every host source: sized integers, TCHAR and TEXT, INDEX_NONE, check and checkf.
#include "Core/Assertion.h"
#include "Core/PlatformTypes.h"
