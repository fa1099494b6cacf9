// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Slate/UIAction.h"
#include "Slate/UICommandInfo.h"

/// Says what commands do: each mapped command has one action.
///
/// Actions may map and unmap commands of the list that runs them.
class FUICommandList : public TSharedFromThis<FUICommandList>
{
public:
	FUICommandList();
	~FUICommandList();

	/// Maps a command. One that is mapped already is an assertion failure, as is an empty pointer.
	void MapAction(TSharedPtr<const FUICommandInfo> InCommand, const FUIAction& InAction);
	void MapAction(TSharedPtr<const FUICommandInfo> InCommand, FExecuteAction ExecuteAction,
		EUIActionRepeatMode RepeatMode = EUIActionRepeatMode::RepeatDisabled);
	void MapAction(TSharedPtr<const FUICommandInfo> InCommand, FExecuteAction ExecuteAction,
		FCanExecuteAction CanExecuteAction, EUIActionRepeatMode RepeatMode = EUIActionRepeatMode::RepeatDisabled);
	void MapAction(TSharedPtr<const FUICommandInfo> InCommand, FExecuteAction ExecuteAction,
		FCanExecuteAction CanExecuteAction, FGetActionCheckState GetCheckState,
		EUIActionRepeatMode RepeatMode = EUIActionRepeatMode::RepeatDisabled);

	/// Forgets a command. One that is not mapped is ignored.
	void UnmapAction(TSharedPtr<const FUICommandInfo> InCommand);

	bool IsActionMapped(TSharedPtr<const FUICommandInfo> InCommand) const;

	/// The action of a command, null where it is not mapped. Valid until the command is unmapped.
	const FUIAction* GetActionForCommand(TSharedPtr<const FUICommandInfo> InCommand) const;

	/// Whether the command is mapped and can be executed.
	bool CanExecuteAction(TSharedRef<const FUICommandInfo> InCommand) const;

	/// Runs a command if it is mapped and can be executed; whether it ran.
	bool ExecuteAction(TSharedRef<const FUICommandInfo> InCommand) const;
	bool TryExecuteAction(TSharedRef<const FUICommandInfo> InCommand) const { return ExecuteAction(InCommand); }

	ECheckBoxState GetCheckState(TSharedRef<const FUICommandInfo> InCommand) const;
	bool GetVisibility(TSharedRef<const FUICommandInfo> InCommand) const;

	/// Runs the first mapped command that has the event's chord and can be executed; whether one ran. Repeats of a
	/// held chord run only actions that allow it.
	bool ProcessCommandBindings(const FKeyEvent& InKeyEvent) const;

	/// The mapped commands, in the order in which they were mapped.
	TArray<TSharedRef<const FUICommandInfo>> GetMappedCommands() const;

private:
	struct FMapping;

	int32 IndexOf(const FUICommandInfo* Command) const;

	TArray<TSharedRef<FMapping>> Mappings;
};
