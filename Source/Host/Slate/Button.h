// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/DeclarativeSyntax.h"

/// Runs when a button is clicked.
using FOnClicked = TDelegate<FReply()>;

/// A button with a text or with other content.
class SButton : public SCompoundWidget
{
public:
	DECLARE_WIDGET(SButton)
	struct FArguments : TContentArguments<FArguments>
	{
		WIDGET_ARGUMENT(FText, Text)
		WIDGET_ARGUMENT(FOnClicked, OnClicked)
		WIDGET_ARGUMENT(bool, IsPrimary, false)
	};

	/// The button's own text; empty where it has other content.
	const FText& GetText() const { return Text; }

	/// Whether the button stands out as the one that most users want.
	bool IsPrimary() const { return bPrimary; }

	/// What a click does; nothing while the button is disabled.
	FReply Click();

	bool SupportsKeyboardFocus() const override { return true; }
	FReply OnKeyDown(const FKeyEvent& InKeyEvent) override;

private:
	FText Text;
	FOnClicked OnClicked;
	bool bPrimary = false;
};
