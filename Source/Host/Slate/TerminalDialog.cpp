// SPDX-License-Identifier: MIT
#include "Slate/TerminalDialog.h"

#include "Slate/CheckBox.h"
#include "Slate/CustomDialog.h"
#include "Slate/EditableText.h"
#include "Slate/TextBlock.h"

namespace
{
/// All that a widget's text blocks say, in one line.
FString LabelOf(SWidget& Widget)
{
	TArray<FString> Parts;
	for (const TSharedRef<STextBlock>& Block : FindWidgets<STextBlock>(Widget))
	{
		Parts.Add(Block->GetText().ToString());
	}
	return FString::Join(Parts, TEXT(" "));
}

const TCHAR* MarkOf(ECheckBoxState State)
{
	switch (State)
	{
	case ECheckBoxState::Checked:
		return TEXT("[x]");
	case ECheckBoxState::Undetermined:
		return TEXT("[-]");
	case ECheckBoxState::Unchecked:
		break;
	}
	return TEXT("[ ]");
}
}

FTerminalDialog::FTerminalDialog(SCustomDialog& InDialog, FTerminalStream& InTerminal)
	: Dialog(InDialog)
	, Terminal(InTerminal)
{
	if (Dialog.GetDialogContent().IsValid())
	{
		Collect(*Dialog.GetDialogContent());
	}
}

void FTerminalDialog::Collect(SWidget& Widget)
{
	if (Widget.GetVisibility() != EVisibility::Visible)
	{
		return;
	}
	if (const STextBlock* Block = dynamic_cast<const STextBlock*>(&Widget))
	{
		Texts.Add(Block->GetText().ToString());
	}
	else if (dynamic_cast<SCheckBox*>(&Widget) != nullptr || dynamic_cast<SEditableTextBase*>(&Widget) != nullptr)
	{
		Fields.Add({static_cast<TCHAR>(TEXT('a') + Fields.Num()), Widget.AsShared()});
	}
	else
	{
		for (const TSharedRef<SWidget>& Child : Widget.GetChildren())
		{
			Collect(*Child);
		}
	}
}

void FTerminalDialog::Run()
{
	WriteAll();
	FString Line;
	while (!Dialog.IsClosed())
	{
		WritePrompt();
		if (!Terminal.ReadLine(Line))
		{
			Terminal.Write(TEXT("\n"));
			Dialog.RequestDestroyWindow();
			return;
		}
		Answer(Line.TrimStartAndEnd());
	}
}

void FTerminalDialog::WriteAll()
{
	Terminal.Write(TEXT("\n"));
	Terminal.WriteWrapped(Dialog.GetTitle().ToString());
	Terminal.Write(TEXT("\n"));
	for (const FString& Text : Texts)
	{
		Terminal.WriteWrapped(Text);
		Terminal.Write(TEXT("\n"));
	}
	for (const FField& Field : Fields)
	{
		WriteField(Field);
	}
	for (int32 Index = 0; Index < Dialog.GetButtons().Num(); ++Index)
	{
		Terminal.WriteWrapped(
			FString::Printf(TEXT("%d) %s"), Index + 1, *Dialog.GetButtons()[Index].ButtonText.ToString()), 2);
	}
}

void FTerminalDialog::WriteField(const FField& Field)
{
	FString Shown;
	if (const SCheckBox* Check = dynamic_cast<const SCheckBox*>(&*Field.Widget))
	{
		Shown = MarkOf(Check->GetCheckedState()) + (TEXT(" ") + LabelOf(*Field.Widget));
	}
	else if (const SEditableTextBase* Text = dynamic_cast<const SEditableTextBase*>(&*Field.Widget))
	{
		Shown = Text->GetHintText().ToString() + TEXT(": ") + Text->GetText().ToString();
	}
	Terminal.WriteWrapped(FString::Printf(TEXT("%c) %s"), Field.Letter, *Shown), 2);
}

void FTerminalDialog::WritePrompt()
{
	TArray<FString> Parts;
	const int32 Count = Dialog.GetButtons().Num();
	Parts.Add(Count == 1 ? FString(TEXT("1")) : FString::Printf(TEXT("1-%d"), Count));
	if (Dialog.GetDefaultButton() != INDEX_NONE)
	{
		Parts.Add(FString::Printf(TEXT("Enter for %d"), Dialog.GetDefaultButton() + 1));
	}
	for (const FField& Field : Fields)
	{
		const bool bCheck = dynamic_cast<const SCheckBox*>(&*Field.Widget) != nullptr;
		Parts.Add(bCheck ? FString::Printf(TEXT("%c to tick"), Field.Letter)
						 : FString::Printf(TEXT("%c and a text"), Field.Letter));
	}
	Terminal.Write(TEXT("Choice [") + FString::Join(Parts, TEXT(", ")) + TEXT("]: "));
}

void FTerminalDialog::Answer(const FString& Line)
{
	if (Line.IsEmpty())
	{
		if (!Dialog.PressButton(Dialog.GetDefaultButton()))
		{
			Terminal.Write(TEXT("Please choose.\n"));
		}
	}
	else if (!PressByNumber(Line) && !ChangeByLetter(Line))
	{
		Terminal.WriteWrapped(TEXT("There is no '") + Line + TEXT("'."));
	}
}

bool FTerminalDialog::PressByNumber(const FString& Line)
{
	int32 Number = 0;
	return LexFromString(Number, Line) && Number > 0 && Dialog.PressButton(Number - 1);
}

bool FTerminalDialog::ChangeByLetter(const FString& Line)
{
	for (const FField& Field : Fields)
	{
		if (Line[0] != Field.Letter)
		{
			continue;
		}
		const FString Rest = Line.RightChop(1);
		if (SCheckBox* Check = dynamic_cast<SCheckBox*>(&*Field.Widget); Check != nullptr && Rest.IsEmpty())
		{
			Check->ToggleCheckedState();
			WriteField(Field);
			return true;
		}
		if (SEditableTextBase* Text = dynamic_cast<SEditableTextBase*>(&*Field.Widget);
			Text != nullptr && (Rest.IsEmpty() || Rest[0] == TEXT(' ')))
		{
			Text->TypeText(FText::FromString(Rest.TrimStartAndEnd()));
			Text->CommitText(ETextCommit::OnEnter);
			WriteField(Field);
			return true;
		}
	}
	return false;
}
