// SPDX-License-Identifier: MIT
#pragma once

#include "SlateQt/QtPrelude.h"

#include <QColor>

/// The colours of the viewport in a light or a dark program.
struct FViewportColours
{
	QColor Upper; ///< background at the upper edge
	QColor Lower;
	QColor Line; ///< of the grid
	QColor AxisX;
	QColor AxisY;
	QColor AxisZ;
	QColor Outline; ///< around what is selected
	QColor Pivot;
	QColor Band; ///< the selection rectangle

	static FViewportColours Of(bool bDark);
};
