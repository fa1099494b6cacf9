// SPDX-License-Identifier: MIT
#pragma once

#include "Core/ModuleManager.h"
#include "Editor/LevelEditor.h"
#include "TarvinTransform/ModuleFixture.h"

/// An editor in which the module is started, for the length of one test.
class FStartedModuleTest : public FModuleTest
{
protected:
	FStartedModuleTest() { FModuleManager::Get().LoadModuleChecked(TEXT("TarvinTransform")); }
	~FStartedModuleTest() override { FModuleManager::Get().UnloadModule(TEXT("TarvinTransform")); }

	static TSharedRef<FUICommandList> Actions()
	{
		return FModuleManager::Get()
			.LoadModuleChecked<FLevelEditorModule>(TEXT("LevelEditor"))
			.GetGlobalLevelEditorActions();
	}
};
