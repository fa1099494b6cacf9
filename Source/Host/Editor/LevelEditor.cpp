// SPDX-License-Identifier: MIT
#include "Editor/LevelEditor.h"

#include "Editor/EditorEngine.h"
#include "Slate/SlateApplication.h"

namespace
{
/// What the level editor's keys do is not meant while text is typed, nor in a world that is played.
bool IsLevelEdited()
{
	return !(GEditor && GEditor->PlayWorld) && !FSlateApplication::Get().IsTextInputFocused();
}
} // namespace

IMPLEMENT_MODULE(FLevelEditorModule, LevelEditor)

void FLevelEditorModule::StartupModule()
{
	FSlateApplication::AddGlobalCommandList(GlobalActions, &IsLevelEdited);
}

void FLevelEditorModule::ShutdownModule()
{
	FSlateApplication::RemoveGlobalCommandList(GlobalActions);
}
