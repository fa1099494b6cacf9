// SPDX-License-Identifier: MIT
#include "Slate/EditableText.h"

DEFINE_WIDGET(SEditableText)
DEFINE_WIDGET(SEditableTextBox)
DEFINE_WIDGET(SMultiLineEditableText)
DEFINE_WIDGET(SSearchBox)

void SEditableTextBase::SetText(const FText& InText)
{
	Text = InText;
	NotifyChanged();
}

void SEditableTextBase::SetIsReadOnly(bool bInReadOnly)
{
	if (bReadOnly != bInReadOnly)
	{
		bReadOnly = bInReadOnly;
		NotifyChanged();
	}
}

void SEditableTextBase::TypeText(const FText& InText)
{
	if (bReadOnly || !IsEnabled())
	{
		return;
	}
	SetText(InText);
	OnTextChanged.ExecuteIfBound(Text);
}

void SEditableTextBase::CommitText(ETextCommit How)
{
	if (!bReadOnly && IsEnabled())
	{
		OnTextCommitted.ExecuteIfBound(Text, How);
	}
}

FReply SEditableTextBase::OnKeyDown(const FKeyEvent& InKeyEvent)
{
	const FKey Key = InKeyEvent.GetKey();
	const bool bEnter = Key == EKeys::Enter || Key == EKeys::NumPadEnter;
	if (bReadOnly || !IsEnabled())
	{
		return FReply::Unhandled();
	}
	if (bEnter && IsMultiLine())
	{
		InsertCharacter(U'\n');
	}
	else if (bEnter)
	{
		CommitText(ETextCommit::OnEnter);
	}
	else if (Key == EKeys::BackSpace)
	{
		EraseLastCharacter();
	}
	else if (InKeyEvent.GetCharacter() >= 0x20 && InKeyEvent.GetCharacter() != 0x7F && !InKeyEvent.IsControlDown() &&
			 !InKeyEvent.IsAltDown() && !InKeyEvent.IsCommandDown())
	{
		InsertCharacter(InKeyEvent.GetCharacter());
	}
	else
	{
		return FReply::Unhandled();
	}
	return FReply::Handled();
}

void SEditableTextBase::InsertCharacter(uint32 CodePoint)
{
	TypeText(FText::FromString(Text.ToString() + static_cast<TCHAR>(CodePoint)));
}

void SEditableTextBase::EraseLastCharacter()
{
	TypeText(FText::FromString(Text.ToString().LeftChop(1)));
}

void SEditableText::Construct(const FArguments& Arguments)
{
	ConstructText(Arguments);
}

void SEditableTextBox::Construct(const FArguments& Arguments)
{
	ConstructText(Arguments);
}

void SMultiLineEditableText::Construct(const FArguments& Arguments)
{
	ConstructText(Arguments);
}

void SSearchBox::Construct(const FArguments& Arguments)
{
	SetContent(SNew(SEditableText)
				   .Text(Arguments.InitialTextValue)
				   .HintText(Arguments.HintTextValue)
				   .OnTextChanged(Arguments.OnTextChangedValue)
				   .OnTextCommitted(Arguments.OnTextCommittedValue));
}

TSharedRef<SEditableText> SSearchBox::GetEditableText() const
{
	return StaticCastSharedPtr<SEditableText>(GetContent()).ToSharedRef();
}
