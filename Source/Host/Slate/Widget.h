// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Delegate.h"
#include "Core/Name.h"
#include "Core/SharedPointer.h"
#include "Core/Text.h"
#include "Slate/InputEvents.h"
#include "Slate/SlateTypes.h"

struct FWidgetArguments;

/// A node of the retained widget tree: what is shown, never how. Back ends walk the tree and draw it.
///
/// A widget is made with SNew and held by shared pointer; a parent owns its children, a child knows its parent weakly.
/// Whatever changes what a user sees broadcasts OnChanged, so that a back end that shows the widget can follow.
class SWidget : public TSharedFromThis<SWidget>
{
public:
	SWidget();
	virtual ~SWidget();
	SWidget(const SWidget&) = delete;
	SWidget& operator=(const SWidget&) = delete;

	/// The name of the widget's class, such as "SEditableText".
	FName GetType() const { return Type; }
	FString GetTypeAsString() const { return Type.ToString(); }

	/// Says what GetType gives. For makers of widgets and for stand-ins of a back end's own widgets.
	void SetType(FName InType) { Type = InType; }

	EVisibility GetVisibility() const { return Visibility; }
	void SetVisibility(EVisibility InVisibility);

	/// Whether the widget and all its ancestors are enabled.
	bool IsEnabled() const;
	void SetEnabled(bool bInEnabled);

	const FText& GetToolTipText() const { return ToolTipText; }
	void SetToolTipText(const FText& InText);

	FName GetTag() const { return Tag; }
	void SetTag(FName InTag) { Tag = InTag; }

	/// The widget that holds this one; empty for roots and for widgets that were taken out.
	TSharedPtr<SWidget> GetParentWidget() const { return Parent.Pin(); }

	/// The direct children, in the order in which they are laid out.
	virtual TArray<TSharedRef<SWidget>> GetChildren() const;

	/// Whether the widget can have the keyboard focus.
	virtual bool SupportsKeyboardFocus() const;

	/// Whether this widget has the keyboard focus of the widget application.
	bool HasKeyboardFocus() const;

	/// Offered a key while this widget or a descendant has the focus. Unhandled goes on to the parent.
	virtual FReply OnKeyDown(const FKeyEvent& InKeyEvent);
	virtual FReply OnKeyUp(const FKeyEvent& InKeyEvent);

	virtual void OnFocusReceived();
	virtual void OnFocusLost();

	/// Sent after this widget changed in a way that a user sees; its children send their own.
	TMulticastDelegate<void(SWidget&)>& OnChanged() { return Changed; }

protected:
	void ApplyCommonArguments(const FWidgetArguments& Arguments);

	/// Makes this widget the parent of `Child`. A widget has one parent; a second one is an assertion failure.
	void AdoptChild(const TSharedRef<SWidget>& Child);
	static void ReleaseChild(const TSharedPtr<SWidget>& Child);

	void NotifyChanged();

private:
	FName Type;
	FName Tag;
	FText ToolTipText;
	EVisibility Visibility = EVisibility::Visible;
	bool bEnabled = true;
	TWeakPtr<SWidget> Parent;
	TMulticastDelegate<void(SWidget&)> Changed;
};

/// A widget with at most one child.
class SCompoundWidget : public SWidget
{
public:
	TArray<TSharedRef<SWidget>> GetChildren() const override;

	/// The child; empty where there is none.
	const TSharedPtr<SWidget>& GetContent() const { return Content; }

	/// Replaces the child. Empty takes it out.
	void SetContent(const TSharedPtr<SWidget>& InContent);

private:
	TSharedPtr<SWidget> Content;
};

/// A widget without children.
class SLeafWidget : public SWidget
{
};

/// Calls `Visit(SWidget&)` on `Root` and on everything below it, parents first, in layout order.
template <typename TVisitor>
void VisitWidgets(SWidget& Root, TVisitor&& Visit)
{
	Visit(Root);
	for (const TSharedRef<SWidget>& Child : Root.GetChildren())
	{
		VisitWidgets(*Child, Visit);
	}
}

/// All widgets of class `TWidget` in the tree of `Root`, in layout order.
template <typename TWidget>
TArray<TSharedRef<TWidget>> FindWidgets(SWidget& Root)
{
	TArray<TSharedRef<TWidget>> Found;
	VisitWidgets(Root,
		[&Found](SWidget& Widget)
		{
			if (TWidget* Typed = dynamic_cast<TWidget*>(&Widget))
			{
				Found.Add(StaticCastSharedRef<TWidget>(Typed->AsShared()));
			}
		});
	return Found;
}

/// The first widget of class `TWidget` with the given tag in the tree of `Root`; empty where there is none.
template <typename TWidget>
TSharedPtr<TWidget> FindWidgetByTag(SWidget& Root, FName Tag)
{
	for (const TSharedRef<TWidget>& Widget : FindWidgets<TWidget>(Root))
	{
		if (Widget->GetTag() == Tag)
		{
			return Widget;
		}
	}
	return {};
}
