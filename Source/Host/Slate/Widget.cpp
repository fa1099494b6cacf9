// SPDX-License-Identifier: MIT
#include "Slate/Widget.h"

#include "Slate/DeclarativeSyntax.h"
#include "Slate/SlateApplication.h"

SWidget::SWidget() = default;
SWidget::~SWidget() = default;

void SWidget::SetVisibility(EVisibility InVisibility)
{
	if (Visibility != InVisibility)
	{
		Visibility = InVisibility;
		NotifyChanged();
	}
}

bool SWidget::IsEnabled() const
{
	if (!bEnabled)
	{
		return false;
	}
	const TSharedPtr<SWidget> Above = GetParentWidget();
	return !Above.IsValid() || Above->IsEnabled();
}

void SWidget::SetEnabled(bool bInEnabled)
{
	if (bEnabled != bInEnabled)
	{
		bEnabled = bInEnabled;
		NotifyChanged();
	}
}

void SWidget::SetToolTipText(const FText& InText)
{
	ToolTipText = InText;
	NotifyChanged();
}

TArray<TSharedRef<SWidget>> SWidget::GetChildren() const
{
	return {};
}

bool SWidget::SupportsKeyboardFocus() const
{
	return false;
}

bool SWidget::HasKeyboardFocus() const
{
	return FSlateApplication::IsInitialized() &&
		   FSlateApplication::Get().GetKeyboardFocusedWidget().Get() == static_cast<const SWidget*>(this);
}

FReply SWidget::OnKeyDown(const FKeyEvent&)
{
	return FReply::Unhandled();
}

FReply SWidget::OnKeyUp(const FKeyEvent&)
{
	return FReply::Unhandled();
}

void SWidget::OnFocusReceived() {}

void SWidget::OnFocusLost() {}

void SWidget::ApplyCommonArguments(const FWidgetArguments& Arguments)
{
	Visibility = Arguments.VisibilityValue;
	bEnabled = Arguments.IsEnabledValue;
	ToolTipText = Arguments.ToolTipTextValue;
	Tag = Arguments.TagValue;
}

void SWidget::AdoptChild(const TSharedRef<SWidget>& Child)
{
	check(!Child->Parent.IsValid());
	Child->Parent = AsShared();
}

void SWidget::ReleaseChild(const TSharedPtr<SWidget>& Child)
{
	if (Child.IsValid())
	{
		Child->Parent.Reset();
	}
}

void SWidget::NotifyChanged()
{
	Changed.Broadcast(*this);
}

TArray<TSharedRef<SWidget>> SCompoundWidget::GetChildren() const
{
	TArray<TSharedRef<SWidget>> Children;
	if (Content.IsValid())
	{
		Children.Add(Content.ToSharedRef());
	}
	return Children;
}

void SCompoundWidget::SetContent(const TSharedPtr<SWidget>& InContent)
{
	ReleaseChild(Content);
	Content = InContent;
	if (Content.IsValid())
	{
		AdoptChild(Content.ToSharedRef());
	}
	NotifyChanged();
}
