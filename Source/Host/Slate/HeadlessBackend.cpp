// SPDX-License-Identifier: MIT
#include "Slate/HeadlessBackend.h"

#include "Slate/CustomDialog.h"
#include "Slate/NotificationItem.h"
#include "Slate/SlateProgress.h"
#include "Slate/TextBlock.h"

void FHeadlessSlateBackend::RespondOnce(FResponder Responder)
{
	Once.push_back(std::move(Responder));
}

void FHeadlessSlateBackend::RespondAlways(FResponder Responder)
{
	Always = std::move(Responder);
}

void FHeadlessSlateBackend::RunModal(const TSharedRef<SCustomDialog>& Dialog)
{
	FShownDialog Shown;
	Shown.Title = Dialog->GetTitle().ToString();
	for (const TSharedRef<STextBlock>& Block : FindWidgets<STextBlock>(*Dialog))
	{
		Shown.Texts.Add(Block->GetText().ToString());
	}
	for (const SCustomDialog::FButton& Button : Dialog->GetButtons())
	{
		Shown.ButtonTexts.Add(Button.ButtonText.ToString());
	}
	const int32 Index = ShownDialogs.Add(Shown);
	FResponder Responder = Always;
	if (!Once.empty())
	{
		Responder = Once.front();
		Once.pop_front();
	}
	if (Responder.IsSet())
	{
		Responder(*Dialog);
	}
	ShownDialogs[Index].Pressed = Dialog->GetPressedButton();
}

void FHeadlessSlateBackend::OnNotificationAdded(const TSharedRef<SNotificationItem>& Item)
{
	AddedNotifications.Add(Item->GetText().ToString());
}

void FHeadlessSlateBackend::OnNotificationChanged(const TSharedRef<SNotificationItem>&) {}

void FHeadlessSlateBackend::OnNotificationRemoved(const TSharedRef<SNotificationItem>& Item)
{
	RemovedNotifications.Add(Item->GetText().ToString());
}

void FHeadlessSlateBackend::OnProgressOpened(const TSharedRef<FSlateProgress>& Progress)
{
	ProgressEvents.Add(TEXT("open ") + Progress->GetTitle().ToString());
}

void FHeadlessSlateBackend::OnProgressChanged(const TSharedRef<FSlateProgress>& Progress)
{
	ProgressEvents.Add(FString::Printf(TEXT("%.2f %s"), Progress->GetFraction(), *Progress->GetMessage().ToString()));
}

void FHeadlessSlateBackend::OnProgressClosed(const TSharedRef<FSlateProgress>& Progress)
{
	ProgressEvents.Add(TEXT("close ") + Progress->GetTitle().ToString());
}
