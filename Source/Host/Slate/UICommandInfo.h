// SPDX-License-Identifier: MIT
#pragma once

#include "Core/SharedPointer.h"
#include "Slate/InputChord.h"

#include <array>

class FBindingContext;

/// How a command is offered: as something to press, or as something that is on or off.
enum class EUserInterfaceActionType : uint8
{
	None,
	Button,
	ToggleButton,
	RadioButton,
	Check,
};

/// A command has two chords at a time; either runs it.
enum class EMultipleKeyBindingIndex : uint8
{
	Primary = 0,
	Secondary,
	NumChords,
};

/// A command as users meet it: a name, texts and chords. What it does is said by the command lists that map it.
class FUICommandInfo : public TSharedFromThis<FUICommandInfo>
{
public:
	/// Makes a command and adds it to its context in the binding manager, which gives it the user's own chords if
	/// there are any. A second command of that name in the context is an assertion failure.
	static void MakeCommandInfo(const TSharedRef<FBindingContext>& InContext, TSharedPtr<FUICommandInfo>& OutCommand,
		FName InCommandName, const FText& InLabel, const FText& InDescription, EUserInterfaceActionType InType,
		const FInputChord& InDefaultChord, const FInputChord& InAlternateDefaultChord = FInputChord());

	FName GetCommandName() const { return CommandName; }

	/// The name of the context that the command belongs to.
	FName GetBindingContext() const { return BindingContext; }

	const FText& GetLabel() const { return Label; }

	/// What the command does, in a sentence; shown as its tooltip.
	const FText& GetDescription() const { return Description; }

	EUserInterfaceActionType GetUserInterfaceType() const { return Type; }

	/// The chord that runs the command at present; an invalid one where the user or the command has none.
	const FInputChord& GetActiveChord(EMultipleKeyBindingIndex Index) const;
	const FInputChord& GetDefaultChord(EMultipleKeyBindingIndex Index) const;

	/// Whether the chord is one of the two active ones. An invalid chord never is.
	bool HasActiveChord(const FInputChord& Chord) const;
	bool HasDefaultChords() const;

	/// Changes a chord for the user; the binding manager keeps the change. An invalid chord takes the chord away.
	void SetActiveChord(const FInputChord& NewChord, EMultipleKeyBindingIndex Index);
	void RemoveActiveChord(EMultipleKeyBindingIndex Index) { SetActiveChord(FInputChord(), Index); }

	/// Gives both chords their defaults back.
	void ResetActiveChords();

	/// The active chords as users read them, "A or B"; empty where there are none.
	FText GetInputText() const;

private:
	friend class FInputBindingManager;

	FUICommandInfo() = default;

	using FChords = std::array<FInputChord, static_cast<std::size_t>(EMultipleKeyBindingIndex::NumChords)>;

	FName CommandName;
	FName BindingContext;
	FText Label;
	FText Description;
	EUserInterfaceActionType Type = EUserInterfaceActionType::None;
	FChords DefaultChords;
	FChords ActiveChords;
};

/// Makes a command of a command set: `This` is the set, `OutCommand` one of its fields.
///
/// Label and description are localisable texts of the namespace "UICommands." + `InSubNamespace`, with the command's
/// name and the tooltip key as their keys. `InDotCommandName` is the name with a dot before it, under which styles keep
/// the command's icon.
void MakeUICommand_InternalUseOnly(FBindingContext* This, TSharedPtr<FUICommandInfo>& OutCommand,
	const TCHAR* InSubNamespace, const TCHAR* InCommandName, const TCHAR* InCommandNameUnderscoreTooltip,
	const char* InDotCommandName, const TCHAR* InFriendlyName, const TCHAR* InDescription,
	EUserInterfaceActionType InType, const FInputChord& InDefaultChord,
	const FInputChord& InAlternateDefaultChord = FInputChord());
