// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Slate/BindingContext.h"
#include "Slate/UICommandInfo.h"
#include "Slate/UserChordsFile.h"

/// Knows all binding contexts and their commands, and keeps the user's own chords.
///
/// Chords that differ from their default are kept in a settings file once one is named, saved on each change, and given
/// to commands when their context registers, also for contexts that are not registered at the moment.
class FInputBindingManager
{
public:
	/// A chord that several commands have.
	struct FChordConflict
	{
		FInputChord Chord;
		TArray<TSharedRef<FUICommandInfo>> Commands;
	};

	static FInputBindingManager& Get();

	/// Adds a context without commands. A different one of that name is an assertion failure.
	void AddContext(const TSharedRef<FBindingContext>& InContext);

	/// Adds a command to a context, which is added too if need be, and gives it the user's chords.
	void CreateInputCommand(const TSharedRef<FBindingContext>& InContext, const TSharedRef<FUICommandInfo>& InCommand);

	/// The context of that name; empty where there is none.
	TSharedPtr<FBindingContext> GetContextByName(FName InContextName) const;

	/// Forgets a context and its commands; the user's chords for them stay. Unknown names are ignored.
	void RemoveContextByName(FName InContextName);

	/// The registered contexts, in the order of their registration.
	TArray<TSharedRef<FBindingContext>> GetKnownInputContexts() const;

	/// The commands of a context, in the order of their registration; empty for an unknown context.
	TArray<TSharedRef<FUICommandInfo>> GetCommandInfosFromContext(FName InContextName) const;

	/// The command of that name, or with that chord (its default ones, with `bCheckDefault`), in a context.
	TSharedPtr<FUICommandInfo> FindCommandInContext(FName InContextName, FName InCommandName) const;
	TSharedPtr<FUICommandInfo> FindCommandInContext(
		FName InContextName, const FInputChord& InChord, bool bCheckDefault = false) const;

	/// The other commands, of all contexts, that have the chord: whom `Command` would share it with.
	TArray<TSharedRef<FUICommandInfo>> FindConflicts(const FUICommandInfo& Command, const FInputChord& Chord) const;

	/// Every chord that several commands have at present.
	TArray<FChordConflict> CheckForDuplicates() const;

	/// Names the settings file and reads it: chords of registered commands change accordingly. A missing file means
	/// no changes of chord. A broken one too; it is kept aside under a new name, and one warning says so. Empty: none.
	void SetUserChordsFile(const FString& Path);
	const FString& GetUserChordsFile() const { return UserChordsPath; }

	/// Where the settings file of this user belongs: tarvin/key-chords.txt under XDG_CONFIG_HOME or ~/.config.
	/// Empty where neither is known.
	static FString DefaultUserChordsFile();

	/// Gives all commands their default chords back and forgets the user's changes, those of absent contexts included.
	void ResetUserChords();

	/// Sent after an active chord of a command changed.
	TMulticastDelegate<void(const FUICommandInfo&)>& OnActiveChordChanged() { return ActiveChordChanged; }

private:
	friend class FUICommandInfo;

	struct FContextEntry
	{
		TSharedRef<FBindingContext> Context;
		TArray<TSharedRef<FUICommandInfo>> Commands;
	};

	FInputBindingManager() = default;

	const FContextEntry* FindEntry(FName InContextName) const;
	void ApplyUserChords(FUICommandInfo& Command);
	void ChangeActiveChord(FUICommandInfo& Command, EMultipleKeyBindingIndex Index, const FInputChord& NewChord);
	void StoreActiveChord(FUICommandInfo& Command, EMultipleKeyBindingIndex Index, const FInputChord& NewChord);
	void SaveUserChords();

	TArray<FContextEntry> Entries;
	FUserChords UserChords;
	FString UserChordsPath;
	TMulticastDelegate<void(const FUICommandInfo&)> ActiveChordChanged;
};
