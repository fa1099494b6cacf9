// SPDX-License-Identifier: MIT
#include "Slate/Button.h"

DEFINE_WIDGET(SButton)

void SButton::Construct(const FArguments& Arguments)
{
	Text = Arguments.TextValue;
	OnClicked = Arguments.OnClickedValue;
	bPrimary = Arguments.IsPrimaryValue;
	SetContent(Arguments.ContentValue);
}

FReply SButton::Click()
{
	if (!IsEnabled() || !OnClicked.IsBound())
	{
		return FReply::Unhandled();
	}
	return OnClicked.Execute();
}

FReply SButton::OnKeyDown(const FKeyEvent& InKeyEvent)
{
	const FKey Key = InKeyEvent.GetKey();
	const bool bPresses = Key == EKeys::SpaceBar || Key == EKeys::Enter || Key == EKeys::NumPadEnter;
	if (!bPresses || !IsEnabled())
	{
		return FReply::Unhandled();
	}
	if (!InKeyEvent.IsRepeat())
	{
		Click();
	}
	return FReply::Handled();
}
