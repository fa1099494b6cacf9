// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/Widget.h"

#include <utility>

/// What can be said of any widget when it is made.
struct FWidgetArguments
{
	EVisibility VisibilityValue = EVisibility::Visible;
	bool IsEnabledValue = true;
	FText ToolTipTextValue;
	FName TagValue;
};

/// The named arguments that all widgets take; `TArguments` is the widget's own FArguments, which they return.
template <typename TArguments>
struct TWidgetArguments : FWidgetArguments
{
	TArguments& Visibility(EVisibility InValue)
	{
		VisibilityValue = InValue;
		return Self();
	}
	TArguments& IsEnabled(bool bInValue)
	{
		IsEnabledValue = bInValue;
		return Self();
	}
	TArguments& ToolTipText(FText InValue)
	{
		ToolTipTextValue = std::move(InValue);
		return Self();
	}
	TArguments& Tag(FName InValue)
	{
		TagValue = InValue;
		return Self();
	}

protected:
	TArguments& Self() { return static_cast<TArguments&>(*this); }
};

/// The named arguments of a widget with one child, which is given as `[ child ]` or as `.Content()[ child ]`.
template <typename TArguments>
struct TContentArguments : TWidgetArguments<TArguments>
{
	class FContentSlot
	{
	public:
		explicit FContentSlot(TArguments& InOwner)
			: Owner(InOwner)
		{
		}
		TArguments& operator[](const TSharedRef<SWidget>& Widget) { return Owner[Widget]; }

	private:
		TArguments& Owner;
	};

	TArguments& operator[](const TSharedRef<SWidget>& Widget)
	{
		ContentValue = Widget;
		return this->Self();
	}
	FContentSlot Content() { return FContentSlot(this->Self()); }

	TSharedPtr<SWidget> ContentValue;
};

/// Declares a named argument of an FArguments: `WIDGET_ARGUMENT(FText, Text)`, with a default as third parameter.
#define WIDGET_ARGUMENT(ValueType, Name, ...) \
	ValueType Name##Value{__VA_ARGS__};       \
	FArguments& Name(ValueType In##Name)      \
	{                                         \
		Name##Value = std::move(In##Name);    \
		return *this;                         \
	}

/// Goes into the public part of a widget class, before its FArguments.
#define DECLARE_WIDGET(WidgetClass)                                   \
	struct FArguments;                                                \
	static TSharedRef<WidgetClass> Make(const FArguments& Arguments); \
	void Construct(const FArguments& Arguments);

/// Goes into the widget's source. A widget is allocated there, so that one made by a module that is later
/// unloaded leaves no code of that module behind.
#define DEFINE_WIDGET(WidgetClass)                                         \
	TSharedRef<WidgetClass> WidgetClass::Make(const FArguments& Arguments) \
	{                                                                      \
		TSharedRef<WidgetClass> Widget = MakeShared<WidgetClass>();        \
		Widget->SetType(FName(TEXT(#WidgetClass)));                        \
		Widget->ApplyCommonArguments(Arguments);                           \
		Widget->Construct(Arguments);                                      \
		return Widget;                                                     \
	}

/// Turns the arguments on the right of its assignment into a widget. Assignment binds weaker than all that
/// describes a widget, so a whole description ends up on its right.
template <typename TWidget>
struct TWidgetMaker
{
	TSharedRef<TWidget> operator=(const typename TWidget::FArguments& Arguments) const
	{
		return TWidget::Make(Arguments);
	}
};

/// As TWidgetMaker; also keeps the widget in a pointer of the caller.
template <typename TWidget, typename TPointer>
struct TWidgetAssigner
{
	TPointer& Target;

	TSharedRef<TWidget> operator=(const typename TWidget::FArguments& Arguments) const
	{
		TSharedRef<TWidget> Widget = TWidget::Make(Arguments);
		Target = Widget;
		return Widget;
	}
};

/// Begins the description of a widget: `SNew(STextBlock).Text(Label).AutoWrapText(true)` is a TSharedRef<STextBlock>.
#define SNew(WidgetClass) TWidgetMaker<WidgetClass>() = WidgetClass::FArguments()

/// As SNew; assigns the widget to `Pointer` (a TSharedPtr) too.
#define SAssignNew(Pointer, WidgetClass) \
	TWidgetAssigner<WidgetClass, decltype(Pointer)>{Pointer} = WidgetClass::FArguments()
