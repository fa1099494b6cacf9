// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

// RapidCheck has functions of the name `check`, which the host's macro of that name would take apart.
#pragma push_macro("check")
#undef check
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>
#pragma pop_macro("check")
