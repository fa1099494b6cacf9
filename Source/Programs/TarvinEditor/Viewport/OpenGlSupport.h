// SPDX-License-Identifier: MIT
#pragma once

#include "SlateQt/QtPrelude.h"

#include <QString>

class QSurfaceFormat;

/// The kind of OpenGL that the viewport draws with: 3.3, core profile.
QSurfaceFormat ViewportSurfaceFormat();

/// Why no widget that draws with OpenGL may be made, in one sentence; empty where one may be. Tries a context on a
/// surface off the screen. A widget made in spite of it can bring the program down. Needs a QGuiApplication.
QString WhyNoOpenGl();
