// SPDX-License-Identifier: MIT
#include "Slate/UICommandList.h"

struct FUICommandList::FMapping
{
	TSharedRef<const FUICommandInfo> Command;
	FUIAction Action;
};

FUICommandList::FUICommandList() = default;
FUICommandList::~FUICommandList() = default;

void FUICommandList::MapAction(TSharedPtr<const FUICommandInfo> InCommand, const FUIAction& InAction)
{
	check(InCommand.IsValid());
	checkf(!IsActionMapped(InCommand), TEXT("Cannot map command '%s': it is mapped already"),
		*InCommand->GetCommandName().ToString());
	Mappings.Add(MakeShareable(new FMapping{InCommand.ToSharedRef(), InAction}));
}

void FUICommandList::MapAction(
	TSharedPtr<const FUICommandInfo> InCommand, FExecuteAction ExecuteAction, EUIActionRepeatMode RepeatMode)
{
	MapAction(InCommand, FUIAction(std::move(ExecuteAction), RepeatMode));
}

void FUICommandList::MapAction(TSharedPtr<const FUICommandInfo> InCommand, FExecuteAction ExecuteAction,
	FCanExecuteAction CanExecuteAction, EUIActionRepeatMode RepeatMode)
{
	MapAction(InCommand, FUIAction(std::move(ExecuteAction), std::move(CanExecuteAction), RepeatMode));
}

void FUICommandList::MapAction(TSharedPtr<const FUICommandInfo> InCommand, FExecuteAction ExecuteAction,
	FCanExecuteAction CanExecuteAction, FGetActionCheckState GetCheckState, EUIActionRepeatMode RepeatMode)
{
	MapAction(InCommand,
		FUIAction(std::move(ExecuteAction), std::move(CanExecuteAction), std::move(GetCheckState), RepeatMode));
}

void FUICommandList::UnmapAction(TSharedPtr<const FUICommandInfo> InCommand)
{
	const int32 Index = IndexOf(InCommand.Get());
	if (Index != INDEX_NONE)
	{
		// Destroyed after the list is in order again: a delegate's destructor may come back to it.
		const TSharedRef<FMapping> Leaving = Mappings[Index];
		Mappings.RemoveAt(Index);
	}
}

bool FUICommandList::IsActionMapped(TSharedPtr<const FUICommandInfo> InCommand) const
{
	return IndexOf(InCommand.Get()) != INDEX_NONE;
}

const FUIAction* FUICommandList::GetActionForCommand(TSharedPtr<const FUICommandInfo> InCommand) const
{
	const int32 Index = IndexOf(InCommand.Get());
	return Index == INDEX_NONE ? nullptr : &Mappings[Index]->Action;
}

bool FUICommandList::CanExecuteAction(TSharedRef<const FUICommandInfo> InCommand) const
{
	const FUIAction* Action = GetActionForCommand(InCommand);
	return Action != nullptr && Action->CanExecute();
}

bool FUICommandList::ExecuteAction(TSharedRef<const FUICommandInfo> InCommand) const
{
	const int32 Index = IndexOf(&InCommand.Get());
	if (Index == INDEX_NONE)
	{
		return false;
	}
	const TSharedRef<FMapping> Running = Mappings[Index];
	return Running->Action.Execute();
}

ECheckBoxState FUICommandList::GetCheckState(TSharedRef<const FUICommandInfo> InCommand) const
{
	const FUIAction* Action = GetActionForCommand(InCommand);
	return Action != nullptr ? Action->GetCheckState() : ECheckBoxState::Unchecked;
}

bool FUICommandList::GetVisibility(TSharedRef<const FUICommandInfo> InCommand) const
{
	const FUIAction* Action = GetActionForCommand(InCommand);
	return Action == nullptr || Action->IsVisible();
}

bool FUICommandList::ProcessCommandBindings(const FKeyEvent& InKeyEvent) const
{
	const FInputChord Chord(InKeyEvent);
	if (!Chord.IsValidChord())
	{
		return false;
	}
	const TArray<TSharedRef<FMapping>> Asked = Mappings;
	for (const TSharedRef<FMapping>& Mapping : Asked)
	{
		const bool bMayRun = !InKeyEvent.IsRepeat() || Mapping->Action.RepeatMode == EUIActionRepeatMode::RepeatEnabled;
		if (bMayRun && Mapping->Command->HasActiveChord(Chord) && Mapping->Action.Execute())
		{
			return true;
		}
	}
	return false;
}

TArray<TSharedRef<const FUICommandInfo>> FUICommandList::GetMappedCommands() const
{
	TArray<TSharedRef<const FUICommandInfo>> Commands;
	for (const TSharedRef<FMapping>& Mapping : Mappings)
	{
		Commands.Add(Mapping->Command);
	}
	return Commands;
}

int32 FUICommandList::IndexOf(const FUICommandInfo* Command) const
{
	return Mappings.IndexOfByPredicate(
		[Command](const TSharedRef<FMapping>& Mapping) { return &Mapping->Command.Get() == Command; });
}
