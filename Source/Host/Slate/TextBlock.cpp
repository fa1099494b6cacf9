// SPDX-License-Identifier: MIT
#include "Slate/TextBlock.h"

DEFINE_WIDGET(STextBlock)

void STextBlock::Construct(const FArguments& Arguments)
{
	Text = Arguments.TextValue;
	bAutoWrapText = Arguments.AutoWrapTextValue;
}

void STextBlock::SetText(const FText& InText)
{
	Text = InText;
	NotifyChanged();
}
