// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Types.h"

class QPalette;

/// Which colours the program has.
enum class EQtTheme : uint8
{
	System, ///< what the desktop prefers, also when it changes its mind
	Light,
	Dark,
};

/// Gives the whole program the colours of a theme; open windows follow in the next turn of the event loop. Needs a
/// QApplication.
void ApplyQtTheme(EQtTheme Theme);

/// The theme that was applied last; System before.
EQtTheme GetQtTheme();

/// Whether the program's colours are dark at present, whichever theme they come from.
bool IsQtThemeDark();

/// The colours of the light or the dark theme.
QPalette MakeQtPalette(bool bDark);
