// SPDX-License-Identifier: MIT
#include "Slate/CheckBox.h"

DEFINE_WIDGET(SCheckBox)

void SCheckBox::Construct(const FArguments& Arguments)
{
	State = Arguments.IsCheckedValue;
	OnCheckStateChanged = Arguments.OnCheckStateChangedValue;
	SetContent(Arguments.ContentValue);
}

void SCheckBox::SetIsChecked(ECheckBoxState InState)
{
	if (State != InState)
	{
		State = InState;
		NotifyChanged();
	}
}

void SCheckBox::ToggleCheckedState()
{
	if (!IsEnabled())
	{
		return;
	}
	SetIsChecked(IsChecked() ? ECheckBoxState::Unchecked : ECheckBoxState::Checked);
	OnCheckStateChanged.ExecuteIfBound(State);
}

FReply SCheckBox::OnKeyDown(const FKeyEvent& InKeyEvent)
{
	if (InKeyEvent.GetKey() != EKeys::SpaceBar || !IsEnabled())
	{
		return FReply::Unhandled();
	}
	if (!InKeyEvent.IsRepeat())
	{
		ToggleCheckedState();
	}
	return FReply::Handled();
}
