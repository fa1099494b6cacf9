// SPDX-License-Identifier: MIT
#include "Slate/UICommandInfo.h"

#include "Slate/InputBindingManager.h"

namespace
{
std::size_t ToSlot(EMultipleKeyBindingIndex Index)
{
	check(Index < EMultipleKeyBindingIndex::NumChords);
	return static_cast<std::size_t>(Index);
}
}

void FUICommandInfo::MakeCommandInfo(const TSharedRef<FBindingContext>& InContext,
	TSharedPtr<FUICommandInfo>& OutCommand, FName InCommandName, const FText& InLabel, const FText& InDescription,
	EUserInterfaceActionType InType, const FInputChord& InDefaultChord, const FInputChord& InAlternateDefaultChord)
{
	const TSharedRef<FUICommandInfo> Command = MakeShareable(new FUICommandInfo);
	Command->CommandName = InCommandName;
	Command->BindingContext = InContext->GetContextName();
	Command->Label = InLabel;
	Command->Description = InDescription;
	Command->Type = InType;
	Command->DefaultChords[ToSlot(EMultipleKeyBindingIndex::Primary)] = InDefaultChord;
	Command->DefaultChords[ToSlot(EMultipleKeyBindingIndex::Secondary)] = InAlternateDefaultChord;
	Command->ActiveChords = Command->DefaultChords;
	OutCommand = Command;
	FInputBindingManager::Get().CreateInputCommand(InContext, Command);
}

const FInputChord& FUICommandInfo::GetActiveChord(EMultipleKeyBindingIndex Index) const
{
	return ActiveChords[ToSlot(Index)];
}

const FInputChord& FUICommandInfo::GetDefaultChord(EMultipleKeyBindingIndex Index) const
{
	return DefaultChords[ToSlot(Index)];
}

bool FUICommandInfo::HasActiveChord(const FInputChord& Chord) const
{
	return Chord.IsValidChord() && (ActiveChords[0] == Chord || ActiveChords[1] == Chord);
}

bool FUICommandInfo::HasDefaultChords() const
{
	return ActiveChords == DefaultChords;
}

void FUICommandInfo::SetActiveChord(const FInputChord& NewChord, EMultipleKeyBindingIndex Index)
{
	FInputBindingManager::Get().ChangeActiveChord(*this, Index, NewChord.IsValidChord() ? NewChord : FInputChord());
}

void FUICommandInfo::ResetActiveChords()
{
	SetActiveChord(GetDefaultChord(EMultipleKeyBindingIndex::Primary), EMultipleKeyBindingIndex::Primary);
	SetActiveChord(GetDefaultChord(EMultipleKeyBindingIndex::Secondary), EMultipleKeyBindingIndex::Secondary);
}

FText FUICommandInfo::GetInputText() const
{
	const FText Primary = ActiveChords[0].GetInputText();
	const FText Secondary = ActiveChords[1].GetInputText();
	if (Primary.IsEmpty() || Secondary.IsEmpty())
	{
		return Primary.IsEmpty() ? Secondary : Primary;
	}
	return FText::Format(NSLOCTEXT("UICommands", "EitherChord", "{0} or {1}"), Primary, Secondary);
}

void MakeUICommand_InternalUseOnly(FBindingContext* This, TSharedPtr<FUICommandInfo>& OutCommand,
	const TCHAR* InSubNamespace, const TCHAR* InCommandName, const TCHAR* InCommandNameUnderscoreTooltip, const char*,
	const TCHAR* InFriendlyName, const TCHAR* InDescription, EUserInterfaceActionType InType,
	const FInputChord& InDefaultChord, const FInputChord& InAlternateDefaultChord)
{
	const FString Namespace = FString(TEXT("UICommands.")) + FStringView(InSubNamespace);
	FUICommandInfo::MakeCommandInfo(This->AsShared(), OutCommand, InCommandName,
		FText::FromKey(*Namespace, InCommandName, InFriendlyName),
		FText::FromKey(*Namespace, InCommandNameUnderscoreTooltip, InDescription), InType, InDefaultChord,
		InAlternateDefaultChord);
}
