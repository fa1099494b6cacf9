// SPDX-License-Identifier: MIT
#include "Slate/CustomDialog.h"

#include "Slate/BoxPanel.h"
#include "Slate/SlateApplication.h"
#include "Slate/SlateLog.h"

DEFINE_WIDGET(SCustomDialog)

SCustomDialog::FButton::FButton(const FText& InButtonText, TFunction<void()> InOnClicked, EButtonRole InButtonRole)
	: ButtonText(InButtonText)
	, OnClicked(std::move(InOnClicked))
	, ButtonRole(InButtonRole)
{
}

SCustomDialog::FButton& SCustomDialog::FButton::SetPrimary(bool bInIsPrimary)
{
	bIsPrimary = bInIsPrimary;
	return *this;
}

SCustomDialog::FButton& SCustomDialog::FButton::SetFocus(bool bInShouldFocus)
{
	bShouldFocus = bInShouldFocus;
	return *this;
}

SCustomDialog::FButton& SCustomDialog::FButton::SetOnClicked(TFunction<void()> InOnClicked)
{
	OnClicked = std::move(InOnClicked);
	return *this;
}

SCustomDialog::FButton& SCustomDialog::FButton::SetRole(EButtonRole InButtonRole)
{
	ButtonRole = InButtonRole;
	return *this;
}

void SCustomDialog::Construct(const FArguments& Arguments)
{
	SetTitle(Arguments.TitleValue);
	Buttons = Arguments.ButtonsValue;
	DialogContent = Arguments.ContentValue;
	SetContent(BuildTree());
}

TSharedRef<SWidget> SCustomDialog::BuildTree()
{
	const TSharedRef<SHorizontalBox> Row = SNew(SHorizontalBox);
	for (int32 Index = 0; Index < Buttons.Num(); ++Index)
	{
		// The button stands in the dialog's own tree, so the plain pointer outlives no one.
		ButtonWidgets.Add(SNew(SButton)
							  .Text(Buttons[Index].ButtonText)
							  .IsPrimary(Buttons[Index].bIsPrimary)
							  .OnClicked(FOnClicked::CreateLambda(
								  [this, Index]
								  {
									  PressButton(Index);
									  return FReply::Handled();
								  })));
		Row->AddSlot(SHorizontalBox::Slot().AutoWidth()[ButtonWidgets.Last()]);
	}
	const TSharedRef<SVerticalBox> Tree = SNew(SVerticalBox);
	if (DialogContent.IsValid())
	{
		Tree->AddSlot(SVerticalBox::Slot().FillHeight(1.0f)[DialogContent.ToSharedRef()]);
	}
	Tree->AddSlot(SVerticalBox::Slot().AutoHeight().HAlign(HAlign_Right)[Row]);
	return Tree;
}

int32 SCustomDialog::ShowModal()
{
	if (!FSlateApplication::IsInitialized())
	{
		HOST_LOG(LogSlate, Warning, TEXT("%s: cannot be asked without a widget application -- taken as closed"),
			*GetTitle().ToString());
		return INDEX_NONE;
	}
	PressedButton = INDEX_NONE;
	Reopen();
	FSlateApplication::Get().RunModal(StaticCastSharedRef<SCustomDialog>(AsShared()));
	return PressedButton;
}

bool SCustomDialog::PressButton(int32 Index)
{
	if (!Buttons.IsValidIndex(Index) || IsClosed())
	{
		return false;
	}
	PressedButton = Index;
	const TFunction<void()> OnClicked = Buttons[Index].OnClicked;
	if (OnClicked.IsSet())
	{
		OnClicked();
	}
	RequestDestroyWindow();
	return true;
}

int32 SCustomDialog::GetDefaultButton() const
{
	const auto FirstOf = [this](auto&& Predicate) { return Buttons.IndexOfByPredicate(Predicate); };
	int32 Index = FirstOf([](const FButton& Button) { return Button.bShouldFocus; });
	if (Index == INDEX_NONE)
	{
		Index = FirstOf([](const FButton& Button) { return Button.bIsPrimary; });
	}
	if (Index == INDEX_NONE)
	{
		Index = FirstOf([](const FButton& Button) { return Button.ButtonRole == EButtonRole::Confirm; });
	}
	return Index;
}

TSharedPtr<SWidget> SCustomDialog::GetInitialFocus() const
{
	const int32 Index = GetDefaultButton();
	return Index == INDEX_NONE ? TSharedPtr<SWidget>() : TSharedPtr<SWidget>(ButtonWidgets[Index]);
}

FReply SCustomDialog::OnKeyDown(const FKeyEvent& InKeyEvent)
{
	const FKey Key = InKeyEvent.GetKey();
	int32 Index = INDEX_NONE;
	if (Key == EKeys::Enter || Key == EKeys::NumPadEnter)
	{
		Index = GetDefaultButton();
	}
	else if (Key == EKeys::Escape)
	{
		Index =
			Buttons.IndexOfByPredicate([](const FButton& Button) { return Button.ButtonRole == EButtonRole::Cancel; });
	}
	if (Index == INDEX_NONE)
	{
		return SWindow::OnKeyDown(InKeyEvent);
	}
	// A held key that opened the dialog must not answer it.
	if (!InKeyEvent.IsRepeat())
	{
		PressButton(Index);
	}
	return FReply::Handled();
}
