// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/Box.h"
#include "Slate/BoxPanel.h"
#include "Slate/CheckBox.h"
#include "Slate/CustomDialog.h"
#include "Slate/TextBlock.h"

/// A question with a body, a check box and three buttons: confirming and focused, plain, cancelling.
struct FPromptDialog
{
	TSharedPtr<SCheckBox> Check;
	TSharedPtr<SCustomDialog> Dialog;
	TArray<int32> Clicked;

	explicit FPromptDialog(const TCHAR* Body = TEXT("'Crate' is also used.\n\nKeep it?"))
	{
		const auto Record = [this](int32 Index) { return [this, Index] { Clicked.Add(Index); }; };
		// clang-format off
		Dialog = SNew(SCustomDialog)
			.Title(FText::FromString(TEXT("Shared mesh")))
			.Content()
			[
				SNew(SBox).MaxDesiredWidth(460.0f)
				[
					SNew(SVerticalBox)
					+ SVerticalBox::Slot().Padding(0.0f, 0.0f, 0.0f, 12.0f)
					[
						SNew(STextBlock).Text(FText::FromString(Body)).AutoWrapText(true)
					]
					+ SVerticalBox::Slot()
					[
						SAssignNew(Check, SCheckBox)
						[
							SNew(STextBlock).Text(FText::FromString(TEXT("For all")))
						]
					]
				]
			]
			.Buttons({
				SCustomDialog::FButton(FText::FromString(TEXT("Copy")), Record(0), EButtonRole::Confirm).SetPrimary(true).SetFocus(true),
				SCustomDialog::FButton(FText::FromString(TEXT("In place")), Record(1)),
				SCustomDialog::FButton(FText::FromString(TEXT("Stop")), Record(2), EButtonRole::Cancel),
			});
		// clang-format on
	}

	int32 Show() { return Dialog->ShowModal(); }
};
