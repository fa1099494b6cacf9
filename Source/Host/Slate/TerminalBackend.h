// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Function.h"
#include "Core/String.h"
#include "Slate/SlateBackend.h"
#include "Slate/TerminalStream.h"

/// The back end of a terminal: dialogs are numbered choices that are read from the input, notifications lines, progress
/// a bar that is drawn over itself. A bar is drawn on a terminal only; anything else would fill with its repaints.
class FTerminalSlateBackend : public ISlateBackend
{
public:
	/// Answers a dialog by driving its model, as the options of a program say. False: let the user answer.
	using FAnswerSource = TFunction<bool(SCustomDialog&)>;

	/// Reads from and writes to file descriptors, which stay the caller's: by default standard input and standard
	/// error.
	explicit FTerminalSlateBackend(int InInput = 0, int InOutput = 2);

	/// Asked before a dialog is shown. Empty: all dialogs go to the user.
	void SetAnswerSource(FAnswerSource Source);

	/// Shows a dialog until it is answered. The end of the input (ctrl-D on a terminal) closes it.
	void RunModal(const TSharedRef<SCustomDialog>& Dialog) override;

	void OnNotificationAdded(const TSharedRef<SNotificationItem>& Item) override;
	void OnNotificationChanged(const TSharedRef<SNotificationItem>& Item) override;
	void OnNotificationRemoved(const TSharedRef<SNotificationItem>& Item) override;
	void OnProgressOpened(const TSharedRef<FSlateProgress>& Progress) override;
	void OnProgressChanged(const TSharedRef<FSlateProgress>& Progress) override;
	void OnProgressClosed(const TSharedRef<FSlateProgress>& Progress) override;

private:
	void DrawBar();
	void EraseBar();

	FTerminalStream Terminal;
	FAnswerSource AnswerSource;
	FString DrawnBar;
};
