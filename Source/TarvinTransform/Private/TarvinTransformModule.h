// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Core.h"
#include "Platform/Editor.h"
#include "Platform/Slate.h"

class FTarvinInputPreProcessor;

/// The module: hooks the commands into the editor while it is started.
class FTarvinTransformModule : public IModuleInterface
{
public:
	void StartupModule() override;
	void ShutdownModule() override;

	/// The level editor's global action list, in which the commands are mapped. Set from start to stop.
	const TSharedPtr<FUICommandList>& GetCommandList() const { return CommandList; }

private:
	void MapCommands();
	void UnmapCommands();

	/// Builds the meshes of the latest command again after an undo or redo of one of the module's transactions.
	static void HandleUndoRedo(const FTransactionContext& Context, bool bSucceeded);

	TSharedPtr<FUICommandList> CommandList;
	TSharedPtr<FTarvinInputPreProcessor> InputPreProcessor;
	FDelegateHandle ToolMenusStartupHandle;
	FDelegateHandle UndoHandle;
	FDelegateHandle RedoHandle;
};
