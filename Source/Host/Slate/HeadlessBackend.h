// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Function.h"
#include "Slate/SlateBackend.h"
#include "Slate/Widget.h"

#include <deque>

/// A back end without a user: dialogs are answered by a script, and all that would have been shown is recorded.
class FHeadlessSlateBackend : public ISlateBackend
{
public:
	/// Answers one dialog by driving its model; one that leaves it open closes it.
	using FResponder = TFunction<void(SCustomDialog&)>;

	/// What a dialog looked like when it opened.
	struct FShownDialog
	{
		FString Title;
		TArray<FString> Texts;       ///< of its text blocks, in layout order, check boxes' labels included
		TArray<FString> ButtonTexts; ///< in the order of their index
		int32 Pressed = INDEX_NONE;  ///< how it was answered; negative for closed
	};

	/// Answers the next dialog that nobody answers yet.
	void RespondOnce(FResponder Responder);

	/// Answers every dialog that RespondOnce leaves; without one such a dialog is closed.
	void RespondAlways(FResponder Responder);

	const TArray<FShownDialog>& GetShownDialogs() const { return ShownDialogs; }

	/// The texts of all notifications added, and of those that were taken away.
	const TArray<FString>& GetAddedNotifications() const { return AddedNotifications; }
	const TArray<FString>& GetRemovedNotifications() const { return RemovedNotifications; }

	/// One line for each progress event: "open Title", "0.25 Message", "close Title".
	const TArray<FString>& GetProgressEvents() const { return ProgressEvents; }

	void RunModal(const TSharedRef<SCustomDialog>& Dialog) override;
	void OnNotificationAdded(const TSharedRef<SNotificationItem>& Item) override;
	void OnNotificationChanged(const TSharedRef<SNotificationItem>& Item) override;
	void OnNotificationRemoved(const TSharedRef<SNotificationItem>& Item) override;
	void OnProgressOpened(const TSharedRef<FSlateProgress>& Progress) override;
	void OnProgressChanged(const TSharedRef<FSlateProgress>& Progress) override;
	void OnProgressClosed(const TSharedRef<FSlateProgress>& Progress) override;

private:
	std::deque<FResponder> Once;
	FResponder Always;
	TArray<FShownDialog> ShownDialogs;
	TArray<FString> AddedNotifications;
	TArray<FString> RemovedNotifications;
	TArray<FString> ProgressEvents;
};
