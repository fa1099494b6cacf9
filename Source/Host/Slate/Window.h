// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/DeclarativeSyntax.h"

/// A top-level window: a title over one content widget. It is open until it is closed, once.
class SWindow : public SCompoundWidget
{
public:
	DECLARE_WIDGET(SWindow)
	struct FArguments : TContentArguments<FArguments>
	{
		WIDGET_ARGUMENT(FText, Title)
	};

	const FText& GetTitle() const { return Title; }

	/// Closes the window as its close button does. A second call does nothing.
	void RequestDestroyWindow();
	bool IsClosed() const { return bClosed; }

	/// Sent once, when the window closes for whatever reason. A back end ends its modal loop on it.
	TMulticastDelegate<void()>& OnWindowClosed() { return WindowClosed; }

	/// The widget that takes the keyboard focus when the window opens; empty for none.
	virtual TSharedPtr<SWidget> GetInitialFocus() const;

	/// Escape closes the window; Tab and Shift+Tab move the focus between its widgets.
	FReply OnKeyDown(const FKeyEvent& InKeyEvent) override;

protected:
	void SetTitle(const FText& InTitle) { Title = InTitle; }

	/// Makes a closed window usable again, for one that is shown several times.
	void Reopen() { bClosed = false; }

private:
	void MoveFocus(bool bForward);

	FText Title;
	bool bClosed = false;
	TMulticastDelegate<void()> WindowClosed;
};
