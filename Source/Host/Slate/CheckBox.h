// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/DeclarativeSyntax.h"

/// Told the new state after a user changed a check box.
using FOnCheckStateChanged = TDelegate<void(ECheckBoxState)>;

/// A box that is ticked or not, with content (as a rule a text block) beside it.
class SCheckBox : public SCompoundWidget
{
public:
	DECLARE_WIDGET(SCheckBox)
	struct FArguments : TContentArguments<FArguments>
	{
		WIDGET_ARGUMENT(ECheckBoxState, IsChecked, ECheckBoxState::Unchecked)
		WIDGET_ARGUMENT(FOnCheckStateChanged, OnCheckStateChanged)
	};

	ECheckBoxState GetCheckedState() const { return State; }
	bool IsChecked() const { return State == ECheckBoxState::Checked; }

	/// Sets the state without telling OnCheckStateChanged.
	void SetIsChecked(ECheckBoxState InState);

	/// What a click does: checked becomes unchecked, all else checked; then OnCheckStateChanged is told.
	/// Does nothing while the box is disabled.
	void ToggleCheckedState();

	bool SupportsKeyboardFocus() const override { return true; }
	FReply OnKeyDown(const FKeyEvent& InKeyEvent) override;

private:
	ECheckBoxState State = ECheckBoxState::Unchecked;
	FOnCheckStateChanged OnCheckStateChanged;
};
