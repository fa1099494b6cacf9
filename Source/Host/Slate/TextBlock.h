// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/DeclarativeSyntax.h"

/// A text that is shown and not edited.
class STextBlock : public SLeafWidget
{
public:
	DECLARE_WIDGET(STextBlock)
	struct FArguments : TWidgetArguments<FArguments>
	{
		WIDGET_ARGUMENT(FText, Text)
		WIDGET_ARGUMENT(bool, AutoWrapText, false)
	};

	const FText& GetText() const { return Text; }
	void SetText(const FText& InText);

	/// Whether lines are broken at the width that is available.
	bool GetAutoWrapText() const { return bAutoWrapText; }

private:
	FText Text;
	bool bAutoWrapText = false;
};
