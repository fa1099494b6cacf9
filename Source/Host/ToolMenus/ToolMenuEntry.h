// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Delegate.h"
#include "Slate/AppStyle.h"
#include "Slate/UICommandList.h"
#include "ToolMenus/ToolMenuInsert.h"
#include "ToolMenus/ToolMenuOwner.h"

class UToolMenu;

/// Fills a menu; called each time the menu is opened.
using FNewToolMenuDelegate = TDelegate<void(UToolMenu*)>;

/// Where the content of a submenu comes from.
struct FNewToolMenuChoice
{
	FNewToolMenuChoice() = default;
	FNewToolMenuChoice(const FNewToolMenuDelegate& InDelegate)
		: NewToolMenu(InDelegate)
	{
	}

	FNewToolMenuDelegate NewToolMenu;
};

/// What an entry of a menu is.
enum class EToolMenuEntryType : uint8
{
	MenuEntry,
	SubMenu,
	Separator,
};

/// One entry of a section, as it was registered.
///
/// An entry of a command has `Command`, and, unless the menu's context is to say it, `CommandList`; its texts come from
/// the command where `Label`, `ToolTip` and `Icon` are empty. Every other entry has an `Action` or a `SubMenu`.
struct FToolMenuEntry
{
	FName Name;
	EToolMenuEntryType Type = EToolMenuEntryType::MenuEntry;
	EUserInterfaceActionType UserInterfaceActionType = EUserInterfaceActionType::Button;
	FText Label;
	FText ToolTip;
	FSlateIcon Icon;
	TSharedPtr<const FUICommandInfo> Command;
	TSharedPtr<const FUICommandList> CommandList;
	FUIAction Action;
	FNewToolMenuChoice SubMenu;
	bool bOpenSubMenuOnClick = false;
	bool bCloseAfterSelection = true;
	FToolMenuInsert InsertPosition;
	FToolMenuOwner Owner;

	/// Lets go of everything that runs code of the entry's owner, so that an entry which someone still shows does
	/// nothing.
	void ReleaseCallables()
	{
		Action = FUIAction();
		SubMenu = FNewToolMenuChoice();
		Command.Reset();
		CommandList.Reset();
	}
};
