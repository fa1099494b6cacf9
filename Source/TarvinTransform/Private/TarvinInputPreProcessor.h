// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Slate.h"

/// What decides whether a chord is intercepted.
struct FTarvinInterceptState
{
	bool bTextFieldFocused = false;      ///< the widget with the keyboard focus is one in which text is typed
	bool bInPlayInEditor = false;        ///< a play session runs inside the editor
	bool bHasStaticMeshSelected = false; ///< a selected actor has a static-mesh component with a mesh
};

/// Runs the module's commands from their chords before the focused widget sees the key, where that makes sense: a
/// static mesh is selected, no text is being typed and no play session runs. All other events pass.
class FTarvinInputPreProcessor : public IInputProcessor
{
public:
	void Tick(const float DeltaTime, FSlateApplication& Application, TSharedRef<ICursor> Cursor) override;
	bool HandleKeyDownEvent(FSlateApplication& Application, const FKeyEvent& Event) override;
	const TCHAR* GetDebugName() const override;

	/// The first command that has the chord as one of its active ones; empty for none, and for a chord without a key or
	/// of a modifier key alone.
	static TSharedPtr<FUICommandInfo> FindCommandByChord(const FInputChord& Chord);

	static FTarvinInterceptState GatherInterceptState();
	static bool ShouldIntercept(const FTarvinInterceptState& State);
};
