// SPDX-License-Identifier: MIT
#include "Slate/NativeWidget.h"

DEFINE_WIDGET(SNativeWidget)

void SNativeWidget::Construct(const FArguments& Arguments)
{
	if (!Arguments.TypeNameValue.IsNone())
	{
		SetType(Arguments.TypeNameValue);
	}
	KeyDown = Arguments.OnKeyDownValue;
	KeyUp = Arguments.OnKeyUpValue;
}

FReply SNativeWidget::OnKeyDown(const FKeyEvent& InKeyEvent)
{
	return KeyDown.IsBound() ? KeyDown.Execute(InKeyEvent) : FReply::Unhandled();
}

FReply SNativeWidget::OnKeyUp(const FKeyEvent& InKeyEvent)
{
	return KeyUp.IsBound() ? KeyUp.Execute(InKeyEvent) : FReply::Unhandled();
}
