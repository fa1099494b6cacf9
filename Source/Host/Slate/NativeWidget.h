// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/DeclarativeSyntax.h"

/// Offered a key that goes to a back end's own widget.
using FOnNativeKey = TDelegate<FReply(const FKeyEvent&)>;

/// Stands in the tree for a widget that the back end made itself, so that it can have the keyboard focus under a type
/// name. A stand-in for anything in which text is typed bears a type name that contains "EditableText".
class SNativeWidget : public SLeafWidget
{
public:
	DECLARE_WIDGET(SNativeWidget)
	struct FArguments : TWidgetArguments<FArguments>
	{
		/// The type name; "SNativeWidget" where none is given.
		WIDGET_ARGUMENT(FName, TypeName)

		/// Both are asked when the stand-in has the focus and a key gets that far. Unbound means unhandled.
		WIDGET_ARGUMENT(FOnNativeKey, OnKeyDown)
		WIDGET_ARGUMENT(FOnNativeKey, OnKeyUp)
	};

	bool SupportsKeyboardFocus() const override { return true; }
	FReply OnKeyDown(const FKeyEvent& InKeyEvent) override;
	FReply OnKeyUp(const FKeyEvent& InKeyEvent) override;

private:
	FOnNativeKey KeyDown;
	FOnNativeKey KeyUp;
};
