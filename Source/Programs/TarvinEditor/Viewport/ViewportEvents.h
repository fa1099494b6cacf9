// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Delegate.h"
#include "CoreUObject/ObjectPtr.h"

#include <functional>

class UEditorEngine;
class USelection;

/// What of the picture is no longer true.
enum class EViewportChange : uint8
{
	Scene,     ///< actors, places, meshes or the world itself
	Selection, ///< which actors are selected
};

/// Listens to the editor, and to all worlds and meshes, on behalf of one viewport. The editor engine may come later
/// and go earlier than the listener.
class FViewportEvents
{
public:
	/// `InOnChange` is told of every change, as often as there are any.
	explicit FViewportEvents(std::function<void(EViewportChange)> InOnChange);
	~FViewportEvents();
	FViewportEvents(const FViewportEvents&) = delete;
	FViewportEvents& operator=(const FViewportEvents&) = delete;

	/// Listens to the editor engine that is there now, if it is another one than before. Returns whether it is.
	bool FollowEditor();

private:
	void LeaveEditor();

	std::function<void(EViewportChange)> OnChange;
	FDelegateHandle ActorList;
	FDelegateHandle MeshEdited;
	TObjectPtr<UEditorEngine> Editor;
	TObjectPtr<USelection> Selection;
	FDelegateHandle Redraw;
	FDelegateHandle PlaySession;
	FDelegateHandle SelectionChanged;
};
