// SPDX-License-Identifier: MIT
#include "TarvinSharedAssetPrompt.h"

#include "Platform/Slate.h"

namespace
{
/// The widest that the text may become, in slate units.
constexpr float MaxContentWidth = 460.0f;

FText MakeBody(const UStaticMesh& Mesh, int32 OtherUsers, bool bInPlaceAllowed)
{
	const FText Name = FText::FromString(Mesh.GetName());
	if (bInPlaceAllowed)
	{
		return FText::Format(
			NSLOCTEXT("TarvinTransform", "SharedBody",
				"'{0}' is also used by {1} other actor(s).\n\nBaking in place changes those actors too."),
			Name, FText::AsNumber(OtherUsers));
	}
	return FText::Format(NSLOCTEXT("TarvinTransform", "ConflictBody",
							 "'{0}' appears in the selection with two different rotation/scale values.\n\nOne mesh "
							 "cannot be two shapes, so only a "
							 "duplicate is possible."),
		Name);
}

TArray<SCustomDialog::FButton> MakeButtons(bool bInPlaceAllowed)
{
	TArray<SCustomDialog::FButton> Buttons;
	Buttons.Add(SCustomDialog::FButton(NSLOCTEXT("TarvinTransform", "Duplicate", "Create new asset"))
					.SetPrimary(true)
					.SetFocus(true)
					.SetRole(EButtonRole::Confirm));
	if (bInPlaceAllowed)
	{
		Buttons.Add(SCustomDialog::FButton(NSLOCTEXT("TarvinTransform", "ApplyToAll", "Apply to all")));
	}
	Buttons.Add(SCustomDialog::FButton(NSLOCTEXT("TarvinTransform", "Cancel", "Cancel")).SetRole(EButtonRole::Cancel));
	return Buttons;
}
} // namespace

ETarvinSharedAssetChoice TarvinSharedAssetPrompt::Ask(
	UStaticMesh* Mesh, int32 OtherUsers, bool bInPlaceAllowed, bool* OutApplyToRest)
{
	TSharedPtr<SCheckBox> ApplyToRest;
	const TSharedRef<SCustomDialog> Dialog =
		SNew(SCustomDialog)
			.Title(NSLOCTEXT("TarvinTransform", "SharedTitle", "Morvel Mesh Transform"))
			.Buttons(MakeButtons(bInPlaceAllowed))
			.Content()[SNew(SBox).MaxDesiredWidth(
				MaxContentWidth)[SNew(SVerticalBox) +
								 SVerticalBox::Slot().AutoHeight().Padding(
									 0.0f, 0.0f, 0.0f, 12.0f)[SNew(STextBlock)
																  .Text(MakeBody(*Mesh, OtherUsers, bInPlaceAllowed))
																  .AutoWrapText(true)] +
								 SVerticalBox::Slot().AutoHeight()
									 [SAssignNew(ApplyToRest, SCheckBox)
											 .IsChecked(*OutApplyToRest ? ECheckBoxState::Checked
																		: ECheckBoxState::Unchecked)
												 [SNew(STextBlock)
														 .Text(NSLOCTEXT("TarvinTransform", "ApplyToRest",
															 "Apply this answer to the remaining assets"))]]]];
	const int32 Pressed = Dialog->ShowModal();
	*OutApplyToRest = ApplyToRest->GetCheckedState() == ECheckBoxState::Checked;
	if (Pressed == 0)
	{
		return ETarvinSharedAssetChoice::Duplicate;
	}
	return Pressed == 1 && bInPlaceAllowed ? ETarvinSharedAssetChoice::ApplyToAll : ETarvinSharedAssetChoice::Cancel;
}
