// SPDX-License-Identifier: MIT
#pragma once

#include "Core/SharedPointer.h"
#include "Slate/InputProcessor.h"

class FSlateProgress;
class SCustomDialog;
class SNotificationItem;
class SWidget;

/// Turns the widget application's windows, notifications and progress into something that a user meets.
///
/// Everything is called on the main thread. The application owns its back end from Create to Shutdown. A back end whose
/// toolkit handles the keys of its dialogs itself sends the application none while FSlateApplication::
/// IsModalOrProgressOpen says so.
class ISlateBackend
{
public:
	virtual ~ISlateBackend();

	/// Shows `Dialog` and returns once it is closed (SWindow::IsClosed); runs an event loop of its own if it needs one.
	/// Returning earlier counts as closing the window. Called again from within for a dialog that opens over it.
	virtual void RunModal(const TSharedRef<SCustomDialog>& Dialog) = 0;

	/// A notification was added, changed (text, state), or has expired. Fading is the back end's own.
	virtual void OnNotificationAdded(const TSharedRef<SNotificationItem>& Item) = 0;
	virtual void OnNotificationChanged(const TSharedRef<SNotificationItem>& Item) = 0;
	virtual void OnNotificationRemoved(const TSharedRef<SNotificationItem>& Item) = 0;

	/// Work began to show its progress, went on (fraction or message), or is done. Progress nests: the one opened last
	/// is on top. A back end repaints from within these calls, since no event loop runs meanwhile.
	virtual void OnProgressOpened(const TSharedRef<FSlateProgress>& Progress) = 0;
	virtual void OnProgressChanged(const TSharedRef<FSlateProgress>& Progress) = 0;
	virtual void OnProgressClosed(const TSharedRef<FSlateProgress>& Progress) = 0;

	/// The widget with the keyboard focus was set by the application rather than by the back end's own toolkit.
	/// Empty when the focus was cleared.
	virtual void OnFocusChanged(const TSharedPtr<SWidget>& Widget);

	/// The mouse cursor. One that always stands at (0, 0) unless the back end has a mouse.
	virtual TSharedRef<ICursor> GetCursor();
};
