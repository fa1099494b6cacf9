// SPDX-License-Identifier: MIT
#include "ToolMenus/ToolMenuSection.h"

#include "ToolMenus/ToolMenus.h"

FToolMenuSection::FToolMenuSection(
	FName InName, const FText& InLabel, FToolMenuInsert InInsertPosition, const FToolMenuOwner& InOwner)
	: Name(InName)
	, Label(InLabel)
	, InsertPosition(InInsertPosition)
	, Owner(InOwner)
{
}

FToolMenuEntry& FToolMenuSection::AddMenuEntryWithCommandList(const TSharedPtr<const FUICommandInfo>& InCommand,
	const TSharedPtr<const FUICommandList>& InCommandList, const FText& InLabelOverride, const FText& InToolTipOverride,
	const FSlateIcon& InIconOverride)
{
	check(InCommand.IsValid());
	FToolMenuEntry Entry;
	Entry.Name = InCommand->GetCommandName();
	Entry.UserInterfaceActionType = InCommand->GetUserInterfaceType();
	Entry.Command = InCommand;
	Entry.CommandList = InCommandList;
	Entry.Label = InLabelOverride;
	Entry.ToolTip = InToolTipOverride;
	Entry.Icon = InIconOverride;
	return AddEntry(Entry);
}

FToolMenuEntry& FToolMenuSection::AddMenuEntry(const TSharedPtr<const FUICommandInfo>& InCommand,
	const FText& InLabelOverride, const FText& InToolTipOverride, const FSlateIcon& InIconOverride)
{
	return AddMenuEntryWithCommandList(InCommand, {}, InLabelOverride, InToolTipOverride, InIconOverride);
}

FToolMenuEntry& FToolMenuSection::AddMenuEntry(FName InName, const FText& InLabel, const FText& InToolTip,
	const FSlateIcon& InIcon, const FUIAction& InAction, EUserInterfaceActionType InType)
{
	FToolMenuEntry Entry;
	Entry.Name = InName;
	Entry.UserInterfaceActionType = InType;
	Entry.Label = InLabel;
	Entry.ToolTip = InToolTip;
	Entry.Icon = InIcon;
	Entry.Action = InAction;
	return AddEntry(Entry);
}

FToolMenuEntry& FToolMenuSection::AddSubMenu(FName InName, const FText& InLabel, const FText& InToolTip,
	const FNewToolMenuChoice& InMenu, bool bInOpenOnClick, const FSlateIcon& InIcon, bool bInCloseAfterSelection)
{
	FToolMenuEntry Entry;
	Entry.Name = InName;
	Entry.Type = EToolMenuEntryType::SubMenu;
	Entry.UserInterfaceActionType = EUserInterfaceActionType::None;
	Entry.Label = InLabel;
	Entry.ToolTip = InToolTip;
	Entry.Icon = InIcon;
	Entry.SubMenu = InMenu;
	Entry.bOpenSubMenuOnClick = bInOpenOnClick;
	Entry.bCloseAfterSelection = bInCloseAfterSelection;
	return AddEntry(Entry);
}

FToolMenuEntry& FToolMenuSection::AddSeparator(FName InName)
{
	FToolMenuEntry Entry;
	Entry.Name = InName;
	Entry.Type = EToolMenuEntryType::Separator;
	Entry.UserInterfaceActionType = EUserInterfaceActionType::None;
	return AddEntry(Entry);
}

FToolMenuEntry& FToolMenuSection::AddEntry(const FToolMenuEntry& InEntry)
{
	const TSharedRef<FToolMenuEntry> Entry = MakeShared<FToolMenuEntry>(InEntry);
	Entry->Owner = UToolMenus::Get()->CurrentOwner();
	const int32 Present = Entries.IndexOfByPredicate([&InEntry](const TSharedRef<FToolMenuEntry>& Other)
		{ return !InEntry.Name.IsNone() && Other->Name == InEntry.Name; });
	if (Present == INDEX_NONE)
	{
		Entries.Add(Entry);
	}
	else
	{
		Entries[Present] = Entry;
	}
	return *Entry;
}

FToolMenuEntry* FToolMenuSection::FindEntry(FName InName) const
{
	const TSharedRef<FToolMenuEntry>* Found =
		Entries.FindByPredicate([InName](const TSharedRef<FToolMenuEntry>& Entry) { return Entry->Name == InName; });
	return Found != nullptr ? &**Found : nullptr;
}

bool FToolMenuSection::RemoveEntriesOf(const FToolMenuOwner& InOwner)
{
	Entries.RemoveAll(
		[&InOwner](const TSharedRef<FToolMenuEntry>& Entry)
		{
			const bool bLeaves = Entry->Owner == InOwner;
			if (bLeaves)
			{
				Entry->ReleaseCallables();
			}
			return bLeaves;
		});
	return !Entries.IsEmpty();
}
