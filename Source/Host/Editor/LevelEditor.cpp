// SPDX-License-Identifier: MIT
#include "Editor/LevelEditor.h"

#include "Slate/SlateApplication.h"

IMPLEMENT_MODULE(FLevelEditorModule, LevelEditor)

void FLevelEditorModule::StartupModule()
{
	FSlateApplication::AddGlobalCommandList(GlobalActions);
}

void FLevelEditorModule::ShutdownModule()
{
	FSlateApplication::RemoveGlobalCommandList(GlobalActions);
}
