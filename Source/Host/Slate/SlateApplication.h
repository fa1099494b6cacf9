// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Function.h"
#include "Slate/InputProcessor.h"
#include "Slate/SlateBackend.h"
#include "Slate/Widget.h"

#include <memory>
#include <vector>

class FCollectionLock;
class FSlateProgress;
class FUICommandList;
class SCustomDialog;

/// The widget application: focus, routing of input, modal dialogs and progress. There is at most one, and there may be
/// none (a program without widgets): ask IsInitialized before Get. Main thread only.
///
/// A key goes to the pre-processors in the order of their registration, then from the focused widget up to its root,
/// then to the global command lists, until one of them handles it. While a modal dialog or a progress dialog is up,
/// keys go to it alone, and the pre-processors see no input of any kind.
class FSlateApplication : public TSharedFromThis<FSlateApplication>
{
public:
	/// Makes the application. An existing one is an assertion failure.
	static FSlateApplication& Create(const TSharedRef<ISlateBackend>& Backend);

	/// Whether there is an application.
	static bool IsInitialized();

	/// The application; none is an assertion failure.
	static FSlateApplication& Get();

	/// Ends the application: pre-processors, focus and back end are released. Nothing without an application.
	static void Shutdown();

	~FSlateApplication();
	FSlateApplication(const FSlateApplication&) = delete;
	FSlateApplication& operator=(const FSlateApplication&) = delete;

	ISlateBackend& GetBackend() const { return *Backend; }

	/// Lets `InputProcessor` see input first, behind those already registered or at `Index` in their order. One that is
	/// registered already stays where it is: false. Safe while input is being dispatched: a new one sees the next
	/// event.
	bool RegisterInputPreProcessor(TSharedPtr<IInputProcessor> InputProcessor, int32 Index = INDEX_NONE);

	/// Safe while input is being dispatched: the removed one sees nothing more. Unknown ones are ignored.
	void UnregisterInputPreProcessor(TSharedPtr<IInputProcessor> InputProcessor);

	/// Where keys go that neither pre-processor nor widget wanted, in the order of registration. These lists are
	/// known whether or not an application exists, so that they can be registered before it. A list with `TakesKeys` is
	/// passed over while that says no.
	static void AddGlobalCommandList(const TSharedRef<FUICommandList>& CommandList, TFunction<bool()> TakesKeys = {});
	static void RemoveGlobalCommandList(const TSharedRef<FUICommandList>& CommandList);

	/// Routes an event; true when something handled it. Called by the back end, once per event.
	bool ProcessKeyDownEvent(const FKeyEvent& InKeyEvent);
	bool ProcessKeyUpEvent(const FKeyEvent& InKeyEvent);
	bool ProcessAnalogInputEvent(const FAnalogInputEvent& InEvent);

	/// Mouse events are offered to the pre-processors; widgets get theirs from the back end, which knows their places.
	bool ProcessMouseMoveEvent(const FPointerEvent& InEvent);
	bool ProcessMouseButtonDownEvent(const FPointerEvent& InEvent);
	bool ProcessMouseButtonUpEvent(const FPointerEvent& InEvent);
	bool ProcessMouseButtonDoubleClickEvent(const FPointerEvent& InEvent);
	bool ProcessMouseWheelOrGestureEvent(const FPointerEvent& InWheelEvent, const FPointerEvent* InGestureEvent);
	bool ProcessMotionDetectedEvent(const FMotionEvent& InEvent);

	/// One frame: pre-processors tick, notifications expire. `DeltaTime` in seconds.
	void Tick(float DeltaTime);

	/// Whether the keyboard focus is where text is typed: in a widget whose type name contains "EditableText".
	bool IsTextInputFocused() const;

	/// The widget with the keyboard focus; empty for none.
	TSharedPtr<SWidget> GetKeyboardFocusedWidget() const { return FocusedWidget.Pin(); }
	TSharedPtr<SWidget> GetUserFocusedWidget(uint32 UserIndex) const;

	/// Gives the keyboard focus to a widget that supports it and is enabled. False, changing nothing, for any other.
	bool SetKeyboardFocus(const TSharedPtr<SWidget>& Widget);
	void ClearKeyboardFocus();

	/// Shows a dialog and returns once it is closed. The focus goes to the dialog and comes back afterwards. No object
	/// is collected meanwhile.
	void RunModal(const TSharedRef<SCustomDialog>& Dialog);

	/// The topmost modal dialog; empty where none is up.
	TSharedPtr<SCustomDialog> GetActiveModalDialog() const;

	/// Shows a progress dialog until the returned progress is closed.
	TSharedRef<FSlateProgress> OpenProgress(const FText& Title, bool bCanCancel);

	/// The progress opened last; empty where none is.
	TSharedPtr<FSlateProgress> GetActiveProgress() const;

	/// What a back end calls around a modal window of its own making (a file dialog, say), which takes all keys itself.
	void BeginNativeModal();
	void EndNativeModal();

	/// Whether a modal or a progress dialog is up: no command may start, nothing may be collected.
	bool IsModalOrProgressOpen() const;

private:
	friend class FSlateProgress;

	explicit FSlateApplication(const TSharedRef<ISlateBackend>& InBackend);

	template <typename TCall>
	bool AskPreProcessors(TCall&& Call);
	template <typename TCall>
	bool AskAboutInput(TCall&& Call);
	bool RouteWhileModal(const FKeyEvent& InKeyEvent, FReply (SWidget::*Handler)(const FKeyEvent&));
	void OnProgressChanged(const TSharedRef<FSlateProgress>& Progress);
	void OnProgressClosed(const TSharedRef<FSlateProgress>& Progress);
	void ObserveNotifications();

	TSharedRef<ISlateBackend> Backend;
	TArray<TSharedPtr<IInputProcessor>> PreProcessors;
	TWeakPtr<SWidget> FocusedWidget;
	TArray<TSharedRef<SCustomDialog>> ModalDialogs;
	TArray<TSharedRef<FSlateProgress>> OpenProgresses;
	std::vector<std::unique_ptr<FCollectionLock>> NativeModals;
	TArray<FDelegateHandle> NotificationHandles;
};
