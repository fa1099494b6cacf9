// SPDX-License-Identifier: MIT
#include "Slate/Window.h"

#include "Slate/SlateApplication.h"

DEFINE_WIDGET(SWindow)

namespace
{
TArray<TSharedRef<SWidget>> FocusableWidgets(SWidget& Root)
{
	TArray<TSharedRef<SWidget>> Found;
	VisitWidgets(Root,
		[&Found](SWidget& Widget)
		{
			if (Widget.SupportsKeyboardFocus() && Widget.IsEnabled() && Widget.GetVisibility() == EVisibility::Visible)
			{
				Found.Add(Widget.AsShared());
			}
		});
	return Found;
}
}

void SWindow::Construct(const FArguments& Arguments)
{
	Title = Arguments.TitleValue;
	SetContent(Arguments.ContentValue);
}

void SWindow::RequestDestroyWindow()
{
	if (!bClosed)
	{
		bClosed = true;
		WindowClosed.Broadcast();
	}
}

TSharedPtr<SWidget> SWindow::GetInitialFocus() const
{
	return {};
}

FReply SWindow::OnKeyDown(const FKeyEvent& InKeyEvent)
{
	if (InKeyEvent.GetKey() == EKeys::Escape)
	{
		RequestDestroyWindow();
		return FReply::Handled();
	}
	if (InKeyEvent.GetKey() == EKeys::Tab && !InKeyEvent.IsControlDown() && !InKeyEvent.IsAltDown())
	{
		MoveFocus(!InKeyEvent.IsShiftDown());
		return FReply::Handled();
	}
	return FReply::Unhandled();
}

void SWindow::MoveFocus(bool bForward)
{
	const TArray<TSharedRef<SWidget>> Stops = FocusableWidgets(*this);
	if (Stops.IsEmpty() || !FSlateApplication::IsInitialized())
	{
		return;
	}
	FSlateApplication& Application = FSlateApplication::Get();
	const SWidget* Focused = Application.GetKeyboardFocusedWidget().Get();
	const int32 Present =
		Stops.IndexOfByPredicate([Focused](const TSharedRef<SWidget>& Stop) { return &Stop.Get() == Focused; });
	const int32 Count = Stops.Num();
	const int32 First = bForward ? 0 : Count - 1;
	const int32 Next = Present == INDEX_NONE ? First : (Present + (bForward ? 1 : Count - 1)) % Count;
	Application.SetKeyboardFocus(Stops[Next]);
}
