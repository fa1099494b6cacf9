// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/Widget.h"

/// Describes a notification that is to be shown.
struct FNotificationInfo
{
	explicit FNotificationInfo(const FText& InText)
		: Text(InText)
	{
	}

	FText Text;

	/// Seconds that the notification takes to appear, to stay and to disappear.
	float FadeInDuration = 0.5f;
	float ExpireDuration = 1.0f;
	float FadeOutDuration = 2.0f;

	/// Whether the notification expires by itself. Otherwise it stays until ExpireAndFadeout.
	bool bFireAndForget = true;
};

/// A notification that is shown, a toast.
class SNotificationItem : public SLeafWidget
{
public:
	/// How the work that the notification tells of stands.
	enum ECompletionState : uint8
	{
		CS_None,
		CS_Pending,
		CS_Success,
		CS_Fail,
	};

	/// `InNow` is the time at which the notification was added, in seconds of the notification manager's clock.
	SNotificationItem(const FNotificationInfo& InInfo, double InNow);

	const FText& GetText() const { return Info.Text; }
	void SetText(const FText& InText);

	ECompletionState GetCompletionState() const { return CompletionState; }
	void SetCompletionState(ECompletionState InState);

	float GetFadeInDuration() const { return Info.FadeInDuration; }
	float GetExpireDuration() const { return Info.ExpireDuration; }
	float GetFadeOutDuration() const { return Info.FadeOutDuration; }
	double GetAddedTime() const { return AddedTime; }

	/// Lets a notification that does not expire by itself expire after its time from now on.
	void ExpireAndFadeout();

	/// Expires the notification at once.
	void Fadeout();

	/// Whether the notification's time is over at `Now`.
	bool IsExpired(double Now) const;

private:
	FNotificationInfo Info;
	double AddedTime;
	double ExpiryStart;
	ECompletionState CompletionState = CS_None;
};
