// SPDX-License-Identifier: MIT
#include "Slate/NotificationItem.h"

#include "Slate/SlateNotificationManager.h"

#include <limits>

namespace
{
constexpr double Never = std::numeric_limits<double>::infinity();
}

SNotificationItem::SNotificationItem(const FNotificationInfo& InInfo, double InNow)
	: Info(InInfo)
	, AddedTime(InNow)
	, ExpiryStart(InInfo.bFireAndForget ? InNow : Never)
{
	SetType(TEXT("SNotificationItem"));
}

void SNotificationItem::SetText(const FText& InText)
{
	Info.Text = InText;
	NotifyChanged();
}

void SNotificationItem::SetCompletionState(ECompletionState InState)
{
	CompletionState = InState;
	NotifyChanged();
}

void SNotificationItem::ExpireAndFadeout()
{
	ExpiryStart = FSlateNotificationManager::Get().Now();
}

void SNotificationItem::Fadeout()
{
	ExpiryStart = -Never;
	FSlateNotificationManager::Get().Tick();
}

bool SNotificationItem::IsExpired(double Now) const
{
	return Now >= ExpiryStart + static_cast<double>(Info.ExpireDuration);
}
