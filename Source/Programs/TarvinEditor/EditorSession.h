// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Name.h"
#include "Editor/SlowTaskProgress.h"
#include "EditorDocument.h"
#include "Slate/UICommandList.h"
#include "SlateQt/SlateQtBackend.h"

#include <memory>

/// What a run of the editor is given from outside.
struct FEditorOptions
{
	/// The file of the user's own chords; empty for none.
	FString ChordsFile;

	/// The plug-in modules that are loaded at run time. One that is missing is said in the log.
	TArray<FName> PlugIns = {FName(TEXT("TarvinTransform"))};
};

/// The host of the editor for as long as the program runs: widget application on Qt, editor engine, commands, menus,
/// plug-ins, document. Needs a QApplication. Everything is taken down in the reverse order.
class FEditorSession
{
public:
	explicit FEditorSession(const FEditorOptions& Options);
	~FEditorSession();
	FEditorSession(const FEditorSession&) = delete;
	FEditorSession& operator=(const FEditorSession&) = delete;

	FSlateQtBackend& GetBackend() { return *Backend; }
	FEditorDocument& GetDocument() { return *Document; }

	/// The actions of the level editor, plug-ins' included.
	const TSharedRef<FUICommandList>& GetLevelActions() const { return LevelActions; }

	/// The actions of the window; whoever owns the window maps them.
	const TSharedRef<FUICommandList>& GetWindowActions() const { return WindowActions; }

	/// What "Focus Selection" does; nothing at first.
	void SetFocusAction(TFunction<void()> InFocus) { *Focus = std::move(InFocus); }

private:
	class FProtectFirst;

	void LoadPlugIns(const TArray<FName>& Names);

	TSharedRef<FSlateQtBackend> Backend = MakeShared<FSlateQtBackend>();
	TSharedRef<TFunction<void()>> Focus = MakeShared<TFunction<void()>>();
	TSharedRef<FUICommandList> LevelActions = MakeShared<FUICommandList>();
	TSharedRef<FUICommandList> WindowActions = MakeShared<FUICommandList>();
	TSharedPtr<IInputProcessor> ProtectFirst;
	std::unique_ptr<FSlowTaskProgress> Progress;
	std::unique_ptr<FEditorDocument> Document;
	TArray<FName> LoadedPlugIns;
};
