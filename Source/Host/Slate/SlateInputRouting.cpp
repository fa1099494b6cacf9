// SPDX-License-Identifier: MIT
// The part of the application that says who sees an event, and in which order.
#include "Slate/CustomDialog.h"
#include "Slate/SlateApplication.h"
#include "Slate/SlateNotificationManager.h"
#include "Slate/SlateProgress.h"
#include "Slate/UICommandList.h"

namespace
{
struct FGlobalCommandList
{
	TSharedRef<FUICommandList> Commands;
	TFunction<bool()> TakesKeys;
};

TArray<FGlobalCommandList>& GlobalCommandLists()
{
	// Not destroyed at the end of the process, when what the lists refer to may be gone already.
	static TArray<FGlobalCommandList>* const Lists = new TArray<FGlobalCommandList>;
	return *Lists;
}

int32 IndexOfGlobalCommandList(const TSharedRef<FUICommandList>& CommandList)
{
	return GlobalCommandLists().IndexOfByPredicate(
		[&](const FGlobalCommandList& List) { return List.Commands == CommandList; });
}

bool ProcessGlobalCommands(const FKeyEvent& InKeyEvent)
{
	// A command may add and remove lists.
	const TArray<FGlobalCommandList> Lists = GlobalCommandLists();
	for (const FGlobalCommandList& List : Lists)
	{
		if ((!List.TakesKeys || List.TakesKeys()) && List.Commands->ProcessCommandBindings(InKeyEvent))
		{
			return true;
		}
	}
	return false;
}

using FKeyHandler = FReply (SWidget::*)(const FKeyEvent&);

/// Offers a key to a widget and then to its ancestors, until one handles it.
bool BubbleUp(TSharedPtr<SWidget> Widget, const FKeyEvent& InKeyEvent, FKeyHandler Handler)
{
	while (Widget.IsValid())
	{
		if (((*Widget).*Handler)(InKeyEvent).IsEventHandled())
		{
			return true;
		}
		Widget = Widget->GetParentWidget();
	}
	return false;
}

bool IsInTree(TSharedPtr<SWidget> Widget, const SWidget& Root)
{
	while (Widget.IsValid() && Widget.Get() != &Root)
	{
		Widget = Widget->GetParentWidget();
	}
	return Widget.IsValid();
}
}

bool FSlateApplication::RegisterInputPreProcessor(TSharedPtr<IInputProcessor> InputProcessor, int32 Index)
{
	check(InputProcessor.IsValid());
	if (PreProcessors.Contains(InputProcessor))
	{
		return false;
	}
	PreProcessors.Insert(InputProcessor, Index == INDEX_NONE ? PreProcessors.Num() : Index);
	return true;
}

void FSlateApplication::UnregisterInputPreProcessor(TSharedPtr<IInputProcessor> InputProcessor)
{
	PreProcessors.RemoveSingle(InputProcessor);
}

void FSlateApplication::AddGlobalCommandList(const TSharedRef<FUICommandList>& CommandList, TFunction<bool()> TakesKeys)
{
	if (IndexOfGlobalCommandList(CommandList) == INDEX_NONE)
	{
		GlobalCommandLists().Add({CommandList, std::move(TakesKeys)});
	}
}

void FSlateApplication::RemoveGlobalCommandList(const TSharedRef<FUICommandList>& CommandList)
{
	if (const int32 Index = IndexOfGlobalCommandList(CommandList); Index != INDEX_NONE)
	{
		GlobalCommandLists().RemoveAt(Index);
	}
}

template <typename TCall>
bool FSlateApplication::AskPreProcessors(TCall&& Call)
{
	// Those registered meanwhile wait for the next event; those unregistered meanwhile are passed over.
	const TArray<TSharedPtr<IInputProcessor>> Asked = PreProcessors;
	for (const TSharedPtr<IInputProcessor>& Processor : Asked)
	{
		if (PreProcessors.Contains(Processor) && Call(*Processor))
		{
			return true;
		}
	}
	return false;
}

template <typename TCall>
bool FSlateApplication::AskAboutInput(TCall&& Call)
{
	const TSharedRef<FSlateApplication> KeptAlive = AsShared();
	return !IsModalOrProgressOpen() && AskPreProcessors(Call);
}

bool FSlateApplication::RouteWhileModal(const FKeyEvent& InKeyEvent, FKeyHandler Handler)
{
	if (!NativeModals.empty())
	{
		return false;
	}
	if (const TSharedPtr<SCustomDialog> Dialog = GetActiveModalDialog())
	{
		const TSharedPtr<SWidget> Focused = GetKeyboardFocusedWidget();
		return BubbleUp(IsInTree(Focused, *Dialog) ? Focused : TSharedPtr<SWidget>(Dialog), InKeyEvent, Handler);
	}
	if (InKeyEvent.GetKey() == EKeys::Escape)
	{
		GetActiveProgress()->RequestCancel();
	}
	return true;
}

bool FSlateApplication::ProcessKeyDownEvent(const FKeyEvent& InKeyEvent)
{
	const TSharedRef<FSlateApplication> KeptAlive = AsShared();
	if (IsModalOrProgressOpen())
	{
		return RouteWhileModal(InKeyEvent, &SWidget::OnKeyDown);
	}
	return AskPreProcessors(
			   [&](IInputProcessor& Processor) { return Processor.HandleKeyDownEvent(*this, InKeyEvent); }) ||
		   BubbleUp(GetKeyboardFocusedWidget(), InKeyEvent, &SWidget::OnKeyDown) || ProcessGlobalCommands(InKeyEvent);
}

bool FSlateApplication::ProcessKeyUpEvent(const FKeyEvent& InKeyEvent)
{
	const TSharedRef<FSlateApplication> KeptAlive = AsShared();
	if (IsModalOrProgressOpen())
	{
		return RouteWhileModal(InKeyEvent, &SWidget::OnKeyUp);
	}
	return AskPreProcessors(
			   [&](IInputProcessor& Processor) { return Processor.HandleKeyUpEvent(*this, InKeyEvent); }) ||
		   BubbleUp(GetKeyboardFocusedWidget(), InKeyEvent, &SWidget::OnKeyUp);
}

bool FSlateApplication::ProcessAnalogInputEvent(const FAnalogInputEvent& InEvent)
{
	return AskAboutInput([&](IInputProcessor& Processor) { return Processor.HandleAnalogInputEvent(*this, InEvent); });
}

bool FSlateApplication::ProcessMouseMoveEvent(const FPointerEvent& InEvent)
{
	return AskAboutInput([&](IInputProcessor& Processor) { return Processor.HandleMouseMoveEvent(*this, InEvent); });
}

bool FSlateApplication::ProcessMouseButtonDownEvent(const FPointerEvent& InEvent)
{
	return AskAboutInput(
		[&](IInputProcessor& Processor) { return Processor.HandleMouseButtonDownEvent(*this, InEvent); });
}

bool FSlateApplication::ProcessMouseButtonUpEvent(const FPointerEvent& InEvent)
{
	return AskAboutInput(
		[&](IInputProcessor& Processor) { return Processor.HandleMouseButtonUpEvent(*this, InEvent); });
}

bool FSlateApplication::ProcessMouseButtonDoubleClickEvent(const FPointerEvent& InEvent)
{
	return AskAboutInput(
		[&](IInputProcessor& Processor) { return Processor.HandleMouseButtonDoubleClickEvent(*this, InEvent); });
}

bool FSlateApplication::ProcessMouseWheelOrGestureEvent(
	const FPointerEvent& InWheelEvent, const FPointerEvent* InGestureEvent)
{
	return AskAboutInput([&](IInputProcessor& Processor)
		{ return Processor.HandleMouseWheelOrGestureEvent(*this, InWheelEvent, InGestureEvent); });
}

bool FSlateApplication::ProcessMotionDetectedEvent(const FMotionEvent& InEvent)
{
	return AskAboutInput(
		[&](IInputProcessor& Processor) { return Processor.HandleMotionDetectedEvent(*this, InEvent); });
}

bool FSlateApplication::IsTextInputFocused() const
{
	const TSharedPtr<SWidget> Focused = GetKeyboardFocusedWidget();
	return Focused.IsValid() && Focused->GetTypeAsString().Contains(TEXT("EditableText"), ESearchCase::IgnoreCase);
}

void FSlateApplication::Tick(float DeltaTime)
{
	const TSharedRef<FSlateApplication> KeptAlive = AsShared();
	const TSharedRef<ICursor> Cursor = Backend->GetCursor();
	AskPreProcessors(
		[&](IInputProcessor& Processor)
		{
			Processor.Tick(DeltaTime, *this, Cursor);
			return false;
		});
	FSlateNotificationManager::Get().Tick();
}
