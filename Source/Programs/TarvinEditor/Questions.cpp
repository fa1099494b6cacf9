// SPDX-License-Identifier: MIT
#include "Questions.h"

#include "Slate/Box.h"
#include "Slate/CustomDialog.h"
#include "Slate/TextBlock.h"

namespace
{
constexpr float MostWidth = 520.0f;

TSharedRef<SWidget> Sentence(const FText& Text)
{
	return SNew(SBox).MaxDesiredWidth(MostWidth)[SNew(STextBlock).Text(Text).AutoWrapText(true)];
}
} // namespace

Questions::EUnsavedAnswer Questions::AskAboutUnsaved(const FString& SceneName)
{
	using FButton = SCustomDialog::FButton;
	const TSharedRef<SCustomDialog> Dialog =
		SNew(SCustomDialog)
			.Title(NSLOCTEXT("TarvinEditor", "UnsavedTitle", "Unsaved Changes"))
			.Content()[Sentence(
				FText::Format(NSLOCTEXT("TarvinEditor", "UnsavedBody", "'{0}' has changes that are not saved."),
					FText::FromString(SceneName)))]
			.Buttons({
				FButton(NSLOCTEXT("TarvinEditor", "UnsavedSave", "Save"), {}, EButtonRole::Confirm)
					.SetPrimary(true)
					.SetFocus(true),
				FButton(NSLOCTEXT("TarvinEditor", "UnsavedDiscard", "Discard")),
				FButton(NSLOCTEXT("TarvinEditor", "UnsavedCancel", "Cancel"), {}, EButtonRole::Cancel),
			});
	switch (Dialog->ShowModal())
	{
	case 0:
		return EUnsavedAnswer::Save;
	case 1:
		return EUnsavedAnswer::Discard;
	default:
		return EUnsavedAnswer::Cancel;
	}
}

void Questions::TellError(const FText& Title, const FString& Message)
{
	const TSharedRef<SCustomDialog> Dialog =
		SNew(SCustomDialog)
			.Title(Title)
			.Content()[Sentence(FText::FromString(Message))]
			.Buttons({SCustomDialog::FButton(NSLOCTEXT("TarvinEditor", "ErrorOk", "OK"), {}, EButtonRole::Confirm)
						  .SetPrimary(true)
						  .SetFocus(true)});
	Dialog->ShowModal();
}
