// SPDX-License-Identifier: MIT
#include "Slate/BoxPanel.h"

DEFINE_WIDGET(SVerticalBox)
DEFINE_WIDGET(SHorizontalBox)

SBoxPanel::FSlot& SBoxPanel::FSlot::Padding(FMargin InPadding)
{
	SlotPadding = InPadding;
	return *this;
}

SBoxPanel::FSlot& SBoxPanel::FSlot::Padding(float Horizontal, float Vertical)
{
	return Padding(FMargin(Horizontal, Vertical));
}

SBoxPanel::FSlot& SBoxPanel::FSlot::Padding(float Left, float Top, float Right, float Bottom)
{
	return Padding(FMargin(Left, Top, Right, Bottom));
}

SBoxPanel::FSlot& SBoxPanel::FSlot::HAlign(EHorizontalAlignment InAlignment)
{
	Alignment = InAlignment;
	return *this;
}

SBoxPanel::FSlot& SBoxPanel::FSlot::AutoHeight()
{
	FillWeight = 0.0f;
	return *this;
}

SBoxPanel::FSlot& SBoxPanel::FSlot::AutoWidth()
{
	return AutoHeight();
}

SBoxPanel::FSlot& SBoxPanel::FSlot::FillHeight(float Weight)
{
	FillWeight = Weight;
	return *this;
}

SBoxPanel::FSlot& SBoxPanel::FSlot::FillWidth(float Weight)
{
	return FillHeight(Weight);
}

SBoxPanel::FSlot& SBoxPanel::FSlot::operator[](const TSharedRef<SWidget>& InWidget)
{
	Widget = InWidget;
	return *this;
}

TArray<TSharedRef<SWidget>> SBoxPanel::GetChildren() const
{
	TArray<TSharedRef<SWidget>> Children;
	for (const FSlot& Slot : Slots)
	{
		if (Slot.GetWidget().IsValid())
		{
			Children.Add(Slot.GetWidget().ToSharedRef());
		}
	}
	return Children;
}

void SBoxPanel::AddSlot(const FSlot& InSlot)
{
	if (InSlot.GetWidget().IsValid())
	{
		AdoptChild(InSlot.GetWidget().ToSharedRef());
	}
	Slots.Add(InSlot);
	NotifyChanged();
}

void SBoxPanel::ClearChildren()
{
	for (const FSlot& Slot : Slots)
	{
		ReleaseChild(Slot.GetWidget());
	}
	Slots.Empty();
	NotifyChanged();
}

void SVerticalBox::Construct(const FArguments& Arguments)
{
	for (const FSlot& Slot : Arguments.SlotValues)
	{
		AddSlot(Slot);
	}
}

void SHorizontalBox::Construct(const FArguments& Arguments)
{
	for (const FSlot& Slot : Arguments.SlotValues)
	{
		AddSlot(Slot);
	}
}
