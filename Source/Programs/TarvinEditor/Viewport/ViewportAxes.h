// SPDX-License-Identifier: MIT
#pragma once

#include "ViewportCamera.h"
#include "ViewportColours.h"

#include <QImage>

/// The side of the picture of the axes, in pixels of the widget.
constexpr int ViewportAxesSize = 76;

/// The three axes of the world as the camera sees them, with their letters, on nothing.
QImage DrawViewportAxes(const FViewportCamera& Camera, const FViewportColours& Colours, double PixelRatio);
