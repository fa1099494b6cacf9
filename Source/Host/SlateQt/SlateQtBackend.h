// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/SlateBackend.h"

#include <memory>

class QWidget;

/// Shows the widget application on Qt 6. Needs a QApplication, which it must not outlive.
///
/// From its making on it routes all keys (see FQtInputRouter), so that no shortcut of Qt is ever live, and ticks the
/// widget application. `FSlateApplication::Create(MakeShared<FSlateQtBackend>())` is all that a program needs; one
/// with a window names it with SetMainWindow.
class FSlateQtBackend : public ISlateBackend
{
public:
	FSlateQtBackend();
	~FSlateQtBackend() override;

	/// Names the window that notifications are shown over and that dialogs belong to; null for none. Notifications
	/// wait until there is one.
	void SetMainWindow(QWidget* InMainWindow);

	/// One frame: ticks the widget application and lets notifications fade. A timer of the back end's own calls it;
	/// tests may, too. `DeltaTime` in seconds.
	void Tick(float DeltaTime);

	void RunModal(const TSharedRef<SCustomDialog>& Dialog) override;
	void OnNotificationAdded(const TSharedRef<SNotificationItem>& Item) override;
	void OnNotificationChanged(const TSharedRef<SNotificationItem>& Item) override;
	void OnNotificationRemoved(const TSharedRef<SNotificationItem>& Item) override;
	void OnProgressOpened(const TSharedRef<FSlateProgress>& Progress) override;
	void OnProgressChanged(const TSharedRef<FSlateProgress>& Progress) override;
	void OnProgressClosed(const TSharedRef<FSlateProgress>& Progress) override;
	void OnFocusChanged(const TSharedPtr<SWidget>& Widget) override;
	TSharedRef<ICursor> GetCursor() override;

private:
	struct FParts;

	std::unique_ptr<FParts> Parts;
};
