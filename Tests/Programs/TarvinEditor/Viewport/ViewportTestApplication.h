// SPDX-License-Identifier: MIT
#pragma once

/// Makes the one application of Qt that all tests of the process share, on the platform that QT_QPA_PLATFORM names,
/// else off screen.
void EnsureViewportTestApplication();
