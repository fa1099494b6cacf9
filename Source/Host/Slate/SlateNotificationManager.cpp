// SPDX-License-Identifier: MIT
#include "Slate/SlateNotificationManager.h"

#include <chrono>

namespace
{
double SteadySeconds()
{
	return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}
}

FSlateNotificationManager& FSlateNotificationManager::Get()
{
	// Never destroyed: notifications may be added until the very end of the process.
	static FSlateNotificationManager* const Manager = new FSlateNotificationManager;
	return *Manager;
}

FSlateNotificationManager::FSlateNotificationManager()
	: Clock(&SteadySeconds)
{
}

TSharedPtr<SNotificationItem> FSlateNotificationManager::AddNotification(const FNotificationInfo& Info)
{
	Tick();
	const TSharedRef<SNotificationItem> Item = MakeShared<SNotificationItem>(Info, Now());
	Item->OnChanged().AddLambda(
		[this](SWidget& Widget) { ItemChanged.Broadcast(StaticCastSharedRef<SNotificationItem>(Widget.AsShared())); });
	Items.Add(Item);
	Added.Broadcast(Item);
	return Item;
}

void FSlateNotificationManager::Tick()
{
	const double Present = Now();
	TArray<TSharedRef<SNotificationItem>> Expired;
	TArray<TSharedRef<SNotificationItem>> Staying;
	for (const TSharedRef<SNotificationItem>& Item : Items)
	{
		(Item->IsExpired(Present) ? Expired : Staying).Add(Item);
	}
	Items = Staying;
	for (const TSharedRef<SNotificationItem>& Item : Expired)
	{
		Removed.Broadcast(Item);
	}
}

void FSlateNotificationManager::Clear()
{
	const TArray<TSharedRef<SNotificationItem>> Leaving = std::exchange(Items, {});
	for (const TSharedRef<SNotificationItem>& Item : Leaving)
	{
		Removed.Broadcast(Item);
	}
}

void FSlateNotificationManager::SetClock(TFunction<double()> InClock)
{
	Clock = TFunction<double()>(&SteadySeconds);
	if (InClock.IsSet())
	{
		Clock = std::move(InClock);
	}
}
