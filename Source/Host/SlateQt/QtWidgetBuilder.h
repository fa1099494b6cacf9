// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/Widget.h"

class QWidget;

/// Makes the Qt widgets that show a tree of host widgets, from its root down.
///
/// The two stay in step: what a user does is done to the host widgets, and what changes there is shown. The Qt widgets
/// keep the host widgets alive, and each bears the host widget's tag as its object name, or its type name where it has
/// no tag. One slate unit is one of Qt's device-independent pixels. The caller owns the result unless `Parent` does.
QWidget* MakeQtWidget(const TSharedRef<SWidget>& Widget, QWidget* Parent = nullptr);
