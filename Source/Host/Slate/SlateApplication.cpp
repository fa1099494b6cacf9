// SPDX-License-Identifier: MIT
#include "Slate/SlateApplication.h"

#include "CoreUObject/GarbageCollector.h"
#include "Slate/CustomDialog.h"
#include "Slate/SlateLog.h"
#include "Slate/SlateNotificationManager.h"
#include "Slate/SlateProgress.h"

DEFINE_LOG_CATEGORY(LogSlate);

namespace
{
// Not destroyed at the end of the process, when what it refers to may be gone already.
TSharedPtr<FSlateApplication>& Instance()
{
	static TSharedPtr<FSlateApplication>* const Held = new TSharedPtr<FSlateApplication>;
	return *Held;
}
}

FSlateApplication& FSlateApplication::Create(const TSharedRef<ISlateBackend>& Backend)
{
	check(!IsInitialized());
	Instance() = MakeShareable(new FSlateApplication(Backend));
	Instance()->ObserveNotifications();
	return Get();
}

bool FSlateApplication::IsInitialized()
{
	return Instance().IsValid();
}

FSlateApplication& FSlateApplication::Get()
{
	check(IsInitialized());
	return *Instance();
}

void FSlateApplication::Shutdown()
{
	if (IsInitialized())
	{
		check(Get().ModalDialogs.IsEmpty());
		const TSharedPtr<FSlateApplication> Leaving = std::exchange(Instance(), {});
		Leaving->PreProcessors.Empty();
		Leaving->FocusedWidget.Reset();
	}
}

FSlateApplication::FSlateApplication(const TSharedRef<ISlateBackend>& InBackend)
	: Backend(InBackend)
{
}

FSlateApplication::~FSlateApplication()
{
	FSlateNotificationManager& Manager = FSlateNotificationManager::Get();
	for (const FDelegateHandle& Handle : NotificationHandles)
	{
		Manager.OnAdded().Remove(Handle);
		Manager.OnItemChanged().Remove(Handle);
		Manager.OnRemoved().Remove(Handle);
	}
}

void FSlateApplication::ObserveNotifications()
{
	using FItem = TSharedRef<SNotificationItem>;
	FSlateNotificationManager& Manager = FSlateNotificationManager::Get();
	NotificationHandles.Add(
		Manager.OnAdded().AddLambda([this](const FItem& Item) { Backend->OnNotificationAdded(Item); }));
	NotificationHandles.Add(
		Manager.OnItemChanged().AddLambda([this](const FItem& Item) { Backend->OnNotificationChanged(Item); }));
	NotificationHandles.Add(
		Manager.OnRemoved().AddLambda([this](const FItem& Item) { Backend->OnNotificationRemoved(Item); }));
}

TSharedPtr<SWidget> FSlateApplication::GetUserFocusedWidget(uint32 UserIndex) const
{
	return UserIndex == 0 ? GetKeyboardFocusedWidget() : TSharedPtr<SWidget>();
}

bool FSlateApplication::SetKeyboardFocus(const TSharedPtr<SWidget>& Widget)
{
	if (!Widget.IsValid() || !Widget->SupportsKeyboardFocus() || !Widget->IsEnabled())
	{
		return false;
	}
	const TSharedPtr<SWidget> Before = GetKeyboardFocusedWidget();
	if (Before == Widget)
	{
		return true;
	}
	FocusedWidget = Widget;
	if (Before.IsValid())
	{
		Before->OnFocusLost();
	}
	Widget->OnFocusReceived();
	Backend->OnFocusChanged(Widget);
	return true;
}

void FSlateApplication::ClearKeyboardFocus()
{
	if (const TSharedPtr<SWidget> Before = GetKeyboardFocusedWidget())
	{
		FocusedWidget.Reset();
		Before->OnFocusLost();
		Backend->OnFocusChanged({});
	}
}

void FSlateApplication::RunModal(const TSharedRef<SCustomDialog>& Dialog)
{
	check(!ModalDialogs.Contains(Dialog));
	const FCollectionLock NoCollection;
	const TWeakPtr<SWidget> Before = FocusedWidget;
	ModalDialogs.Add(Dialog);
	ClearKeyboardFocus();
	SetKeyboardFocus(Dialog->GetInitialFocus());
	Backend->RunModal(Dialog);
	Dialog->RequestDestroyWindow();
	ModalDialogs.RemoveSingle(Dialog);
	ClearKeyboardFocus();
	SetKeyboardFocus(Before.Pin());
}

TSharedPtr<SCustomDialog> FSlateApplication::GetActiveModalDialog() const
{
	return ModalDialogs.IsEmpty() ? TSharedPtr<SCustomDialog>() : TSharedPtr<SCustomDialog>(ModalDialogs.Last());
}

TSharedRef<FSlateProgress> FSlateApplication::OpenProgress(const FText& Title, bool bCanCancel)
{
	const TSharedRef<FSlateProgress> Progress = MakeShared<FSlateProgress>(Title, bCanCancel);
	OpenProgresses.Add(Progress);
	Backend->OnProgressOpened(Progress);
	return Progress;
}

TSharedPtr<FSlateProgress> FSlateApplication::GetActiveProgress() const
{
	return OpenProgresses.IsEmpty() ? TSharedPtr<FSlateProgress>() : TSharedPtr<FSlateProgress>(OpenProgresses.Last());
}

void FSlateApplication::OnProgressChanged(const TSharedRef<FSlateProgress>& Progress)
{
	if (OpenProgresses.Contains(Progress))
	{
		Backend->OnProgressChanged(Progress);
	}
}

void FSlateApplication::OnProgressClosed(const TSharedRef<FSlateProgress>& Progress)
{
	if (OpenProgresses.RemoveSingle(Progress) != 0)
	{
		Backend->OnProgressClosed(Progress);
	}
}

void FSlateApplication::BeginNativeModal()
{
	NativeModals.push_back(std::make_unique<FCollectionLock>());
}

void FSlateApplication::EndNativeModal()
{
	check(!NativeModals.empty());
	NativeModals.pop_back();
}

bool FSlateApplication::IsModalOrProgressOpen() const
{
	return !ModalDialogs.IsEmpty() || !OpenProgresses.IsEmpty() || !NativeModals.empty();
}
