// SPDX-License-Identifier: MIT
#pragma once

#include "Core/ModuleManager.h"
#include "Core/SharedPointer.h"
#include "Slate/UICommandList.h"

/// The module "LevelEditor".
class FLevelEditorModule : public IModuleInterface
{
public:
	void StartupModule() override;
	void ShutdownModule() override;

	/// The actions that the level editor's keys run wherever in it the focus is, except where text is typed and while
	/// a play session runs.
	const TSharedRef<FUICommandList>& GetGlobalLevelEditorActions() const { return GlobalActions; }

private:
	TSharedRef<FUICommandList> GlobalActions = MakeShared<FUICommandList>();
};
