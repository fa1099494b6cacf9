// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/DeclarativeSyntax.h"

/// Holds one child and limits its size. Sizes are in slate units; 0 means no limit.
class SBox : public SCompoundWidget
{
public:
	DECLARE_WIDGET(SBox)
	struct FArguments : TContentArguments<FArguments>
	{
		WIDGET_ARGUMENT(float, MinDesiredWidth, 0.0f)
		WIDGET_ARGUMENT(float, MaxDesiredWidth, 0.0f)
		WIDGET_ARGUMENT(float, MinDesiredHeight, 0.0f)
		WIDGET_ARGUMENT(float, MaxDesiredHeight, 0.0f)
		WIDGET_ARGUMENT(FMargin, Padding)
	};

	float GetMinDesiredWidth() const { return MinDesiredWidth; }
	float GetMaxDesiredWidth() const { return MaxDesiredWidth; }
	float GetMinDesiredHeight() const { return MinDesiredHeight; }
	float GetMaxDesiredHeight() const { return MaxDesiredHeight; }
	const FMargin& GetPadding() const { return Padding; }

private:
	float MinDesiredWidth = 0.0f;
	float MaxDesiredWidth = 0.0f;
	float MinDesiredHeight = 0.0f;
	float MaxDesiredHeight = 0.0f;
	FMargin Padding;
};
