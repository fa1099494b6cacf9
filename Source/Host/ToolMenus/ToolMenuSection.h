// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "ToolMenus/ToolMenuEntry.h"

/// A named part of a menu. Entries added to it belong to the owner at that moment (UToolMenus::PushOwner); one whose
/// name the section has already replaces that one in its place.
class FToolMenuSection
{
public:
	FToolMenuSection(
		FName InName, const FText& InLabel, FToolMenuInsert InInsertPosition, const FToolMenuOwner& InOwner);

	/// Adds an entry that runs a command as `InCommandList` says. Empty texts and icon: those of the command.
	FToolMenuEntry& AddMenuEntryWithCommandList(const TSharedPtr<const FUICommandInfo>& InCommand,
		const TSharedPtr<const FUICommandList>& InCommandList, const FText& InLabelOverride = FText(),
		const FText& InToolTipOverride = FText(), const FSlateIcon& InIconOverride = FSlateIcon());

	/// Adds an entry that runs a command as the command lists of the menu's context say.
	FToolMenuEntry& AddMenuEntry(const TSharedPtr<const FUICommandInfo>& InCommand,
		const FText& InLabelOverride = FText(), const FText& InToolTipOverride = FText(),
		const FSlateIcon& InIconOverride = FSlateIcon());

	/// Adds an entry that runs an action of its own.
	FToolMenuEntry& AddMenuEntry(FName InName, const FText& InLabel, const FText& InToolTip, const FSlateIcon& InIcon,
		const FUIAction& InAction, EUserInterfaceActionType InType = EUserInterfaceActionType::Button);

	/// Adds an entry that opens a menu, which is built anew each time: when pointed at, or, with `bInOpenOnClick`, when
	/// clicked.
	FToolMenuEntry& AddSubMenu(FName InName, const FText& InLabel, const FText& InToolTip,
		const FNewToolMenuChoice& InMenu, bool bInOpenOnClick = false, const FSlateIcon& InIcon = FSlateIcon(),
		bool bInCloseAfterSelection = true);

	FToolMenuEntry& AddSeparator(FName InName);

	/// Adds a complete entry; its owner becomes the present one.
	FToolMenuEntry& AddEntry(const FToolMenuEntry& InEntry);

	/// The entry of that name, or null. Valid until it is removed.
	FToolMenuEntry* FindEntry(FName InName) const;

	/// The entries in the order in which they were added.
	const TArray<TSharedRef<FToolMenuEntry>>& GetEntries() const { return Entries; }

	/// Removes an owner's entries; whether any entry of others is left.
	bool RemoveEntriesOf(const FToolMenuOwner& InOwner);

	FName Name;
	FText Label;
	FToolMenuInsert InsertPosition;
	FToolMenuOwner Owner;

private:
	TArray<TSharedRef<FToolMenuEntry>> Entries;
};
