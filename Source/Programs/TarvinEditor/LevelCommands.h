// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/Commands.h"

/// The commands of the level editor: what is done with actors. Their keys rest while text is typed and while a play
/// session runs.
class FLevelCommands : public TCommands<FLevelCommands>
{
public:
	FLevelCommands();
	void RegisterCommands() override;

	TSharedPtr<FUICommandInfo> Undo;
	TSharedPtr<FUICommandInfo> Redo;
	TSharedPtr<FUICommandInfo> SelectAll;
	TSharedPtr<FUICommandInfo> SelectNone;
	TSharedPtr<FUICommandInfo> SelectSameMesh;
	TSharedPtr<FUICommandInfo> SelectChildren;
	TSharedPtr<FUICommandInfo> FocusSelection;
	TSharedPtr<FUICommandInfo> Delete;
	TSharedPtr<FUICommandInfo> Duplicate;
	TSharedPtr<FUICommandInfo> AttachToLast;
	TSharedPtr<FUICommandInfo> Detach;
};

/// The commands of the window: scenes as files, the play session, settings. Their keys work everywhere in it.
class FWindowCommands : public TCommands<FWindowCommands>
{
public:
	FWindowCommands();
	void RegisterCommands() override;

	TSharedPtr<FUICommandInfo> OpenScene;
	TSharedPtr<FUICommandInfo> SaveScene;
	TSharedPtr<FUICommandInfo> SaveSceneAs;
	TSharedPtr<FUICommandInfo> Quit;
	TSharedPtr<FUICommandInfo> StartPlay;
	TSharedPtr<FUICommandInfo> StopPlay;
	TSharedPtr<FUICommandInfo> EditShortcuts;
	TSharedPtr<FUICommandInfo> SystemTheme;
	TSharedPtr<FUICommandInfo> LightTheme;
	TSharedPtr<FUICommandInfo> DarkTheme;
};
