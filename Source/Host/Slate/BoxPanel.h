// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/DeclarativeSyntax.h"

/// Lays out any number of children in a row or a column.
class SBoxPanel : public SWidget
{
public:
	/// One place in the panel. `FillWeight` 0 means as much room as the child wants; otherwise the slot's share of
	/// what is left over.
	class FSlot
	{
	public:
		FSlot& Padding(FMargin InPadding);
		FSlot& Padding(float Horizontal, float Vertical);
		FSlot& Padding(float Left, float Top, float Right, float Bottom);
		FSlot& HAlign(EHorizontalAlignment InAlignment);
		FSlot& AutoHeight();
		FSlot& AutoWidth();
		FSlot& FillHeight(float Weight);
		FSlot& FillWidth(float Weight);
		FSlot& operator[](const TSharedRef<SWidget>& InWidget);

		const FMargin& GetPadding() const { return SlotPadding; }
		EHorizontalAlignment GetHorizontalAlignment() const { return Alignment; }
		float GetFillWeight() const { return FillWeight; }
		const TSharedPtr<SWidget>& GetWidget() const { return Widget; }

	private:
		FMargin SlotPadding;
		EHorizontalAlignment Alignment = HAlign_Fill;
		float FillWeight = 0.0f;
		TSharedPtr<SWidget> Widget;
	};

	static FSlot Slot() { return FSlot(); }

	TArray<TSharedRef<SWidget>> GetChildren() const override;

	const TArray<FSlot>& GetSlots() const { return Slots; }
	void AddSlot(const FSlot& InSlot);

	/// Takes all children out.
	void ClearChildren();

	virtual bool IsVertical() const = 0;

private:
	TArray<FSlot> Slots;
};

/// The arguments of a panel: `SNew(SVerticalBox) + SVerticalBox::Slot()[ ... ] + SVerticalBox::Slot()[ ... ]`.
template <typename TArguments>
struct TPanelArguments : TWidgetArguments<TArguments>
{
	TArguments& operator+(const SBoxPanel::FSlot& InSlot)
	{
		SlotValues.Add(InSlot);
		return this->Self();
	}

	TArray<SBoxPanel::FSlot> SlotValues;
};

/// Children from top to bottom.
class SVerticalBox : public SBoxPanel
{
public:
	DECLARE_WIDGET(SVerticalBox)
	struct FArguments : TPanelArguments<FArguments>
	{
	};

	bool IsVertical() const override { return true; }
};

/// Children from left to right.
class SHorizontalBox : public SBoxPanel
{
public:
	DECLARE_WIDGET(SHorizontalBox)
	struct FArguments : TPanelArguments<FArguments>
	{
	};

	bool IsVertical() const override { return false; }
};
