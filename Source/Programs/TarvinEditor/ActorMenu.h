// SPDX-License-Identifier: MIT
#pragma once

#include "Core/SharedPointer.h"
#include "SlateQt/QtMenu.h"

class FMenuModel;
class FUICommandList;

/// The menu that opens on a right click on actors, "LevelEditor.ActorContextMenu": the editor's own entries, and what
/// plug-ins add.
namespace ActorMenu
{
/// Registers the menu with the editor's own entries, which do what `LevelActions` says.
void Register(const TSharedRef<FUICommandList>& LevelActions);

/// Takes the menu down.
void Unregister();

/// The lines of the menu as they stand now.
std::vector<FQtMenuEntry> MakeEntries();

/// The lines of any open menu.
std::vector<FQtMenuEntry> EntriesOf(const TSharedRef<FMenuModel>& Model);

/// Opens the menu at a place of the screen and returns once it is closed. Nothing while a play session runs, and
/// without a selection.
void Open(const QPoint& GlobalPosition, QWidget* Parent);
} // namespace ActorMenu
