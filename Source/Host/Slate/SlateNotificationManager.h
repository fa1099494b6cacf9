// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Delegate.h"
#include "Core/Function.h"
#include "Slate/NotificationItem.h"

/// Holds the notifications that are shown. It exists with and without a widget application; only who shows them
/// differs.
class FSlateNotificationManager
{
public:
	static FSlateNotificationManager& Get();

	/// Shows a notification until it expires. Those whose time is over go first.
	TSharedPtr<SNotificationItem> AddNotification(const FNotificationInfo& Info);

	/// Those that have not expired, oldest first.
	const TArray<TSharedRef<SNotificationItem>>& GetNotifications() const { return Items; }

	/// Takes away what has expired by the clock. The widget application calls it once per frame.
	void Tick();

	/// Takes all notifications away.
	void Clear();

	/// The clock's present time in seconds, from any origin.
	double Now() const { return Clock(); }

	/// Replaces the steady clock, for tests; an empty function brings it back.
	void SetClock(TFunction<double()> InClock);

	/// Sent after a notification was added, changed, or taken away.
	TMulticastDelegate<void(const TSharedRef<SNotificationItem>&)>& OnAdded() { return Added; }
	TMulticastDelegate<void(const TSharedRef<SNotificationItem>&)>& OnItemChanged() { return ItemChanged; }
	TMulticastDelegate<void(const TSharedRef<SNotificationItem>&)>& OnRemoved() { return Removed; }

private:
	FSlateNotificationManager();

	TArray<TSharedRef<SNotificationItem>> Items;
	TFunction<double()> Clock;
	TMulticastDelegate<void(const TSharedRef<SNotificationItem>&)> Added;
	TMulticastDelegate<void(const TSharedRef<SNotificationItem>&)> ItemChanged;
	TMulticastDelegate<void(const TSharedRef<SNotificationItem>&)> Removed;
};
