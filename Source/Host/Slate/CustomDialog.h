// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Function.h"
#include "Slate/Button.h"
#include "Slate/Window.h"

/// What a dialog's button stands for, where a platform has its own place or key for it.
enum class EButtonRole : uint8
{
	None,
	Custom,
	Confirm, ///< what Enter presses
	Cancel,  ///< what Escape presses
};

/// A modal dialog with any content above a row of buttons.
///
/// The content and the buttons are one widget tree that a back end walks. While the dialog is up, a back end, or a
/// test, answers it with PressButton or RequestDestroyWindow and with what the widgets themselves offer.
class SCustomDialog : public SWindow
{
public:
	/// One button of the row. Its index is its place in the list.
	struct FButton
	{
		FText ButtonText;
		TFunction<void()> OnClicked;
		EButtonRole ButtonRole = EButtonRole::None;
		bool bIsPrimary = false;
		bool bShouldFocus = false;

		explicit FButton(const FText& InButtonText, TFunction<void()> InOnClicked = {},
			EButtonRole InButtonRole = EButtonRole::None);

		/// Marks the button as the one that most users want.
		FButton& SetPrimary(bool bInIsPrimary);

		/// Gives the button the keyboard focus when the dialog opens.
		FButton& SetFocus(bool bInShouldFocus);

		/// Runs when the button is pressed, before the dialog closes.
		FButton& SetOnClicked(TFunction<void()> InOnClicked);
		FButton& SetRole(EButtonRole InButtonRole);
	};

	DECLARE_WIDGET(SCustomDialog)
	struct FArguments : TContentArguments<FArguments>
	{
		WIDGET_ARGUMENT(FText, Title)
		WIDGET_ARGUMENT(TArray<FButton>, Buttons)
	};

	/// Opens the dialog and returns when it is closed: the index of the pressed button, or a negative value when the
	/// window was closed otherwise. Without a widget application there is nobody to ask: a warning, and negative.
	int32 ShowModal();

	const TArray<FButton>& GetButtons() const { return Buttons; }

	/// The widget of the button with that index, in the tree below the content.
	const TSharedRef<SButton>& GetButtonWidget(int32 Index) const { return ButtonWidgets[Index]; }

	/// What stands above the buttons; empty where nothing was given.
	const TSharedPtr<SWidget>& GetDialogContent() const { return DialogContent; }

	/// Presses a button: runs its OnClicked and closes the dialog. False, changing nothing, for an index that does not
	/// exist and for a dialog that is closed.
	bool PressButton(int32 Index);

	/// The index of the pressed button, negative while none is pressed.
	int32 GetPressedButton() const { return PressedButton; }

	/// The button that Enter means where no widget has the focus: the first that asks for the focus, else the first
	/// primary one, else the first confirming one, else INDEX_NONE.
	int32 GetDefaultButton() const;

	TSharedPtr<SWidget> GetInitialFocus() const override;

	/// Enter presses the default button unless another one has the focus, Escape the first cancelling one; the rest,
	/// and Escape where there is none, as for every window.
	FReply OnKeyDown(const FKeyEvent& InKeyEvent) override;

private:
	TSharedRef<SWidget> BuildTree();

	TArray<FButton> Buttons;
	TArray<TSharedRef<SButton>> ButtonWidgets;
	TSharedPtr<SWidget> DialogContent;
	int32 PressedButton = INDEX_NONE;
};
