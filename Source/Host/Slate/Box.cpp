// SPDX-License-Identifier: MIT
#include "Slate/Box.h"

DEFINE_WIDGET(SBox)

void SBox::Construct(const FArguments& Arguments)
{
	MinDesiredWidth = Arguments.MinDesiredWidthValue;
	MaxDesiredWidth = Arguments.MaxDesiredWidthValue;
	MinDesiredHeight = Arguments.MinDesiredHeightValue;
	MaxDesiredHeight = Arguments.MaxDesiredHeightValue;
	Padding = Arguments.PaddingValue;
	SetContent(Arguments.ContentValue);
}
