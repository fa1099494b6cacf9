// SPDX-License-Identifier: MIT
#pragma once

/// Marks what the module's library shows to others; everything else in it is hidden.
#define TARVINTRANSFORM_API __attribute__((visibility("default")))
