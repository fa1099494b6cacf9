// SPDX-License-Identifier: MIT
#include "ToolMenus/MenuModel.h"

#include "Slate/SlateApplication.h"
#include "ToolMenus/ToolMenus.h"

FMenuItem::FMenuItem(const TSharedRef<FToolMenuEntry>& InEntry, const FToolMenuContext& InContext)
	: Entry(InEntry)
	, Context(InContext)
{
}

EUserInterfaceActionType FMenuItem::GetUserInterfaceType() const
{
	return Entry->UserInterfaceActionType;
}

FText FMenuItem::GetLabel() const
{
	return Entry->Label.IsEmpty() && Entry->Command.IsValid() ? Entry->Command->GetLabel() : Entry->Label;
}

FText FMenuItem::GetToolTip() const
{
	return Entry->ToolTip.IsEmpty() && Entry->Command.IsValid() ? Entry->Command->GetDescription() : Entry->ToolTip;
}

FText FMenuItem::GetChordText() const
{
	return Entry->Command.IsValid() ? Entry->Command->GetInputText() : FText();
}

FUIAction FMenuItem::FindAction() const
{
	if (!Entry->Command.IsValid())
	{
		return Entry->Action;
	}
	const TSharedPtr<const FUICommandList> List =
		Entry->CommandList.IsValid() ? Entry->CommandList : Context.FindCommandList(Entry->Command);
	const FUIAction* Action = List.IsValid() ? List->GetActionForCommand(Entry->Command) : nullptr;
	return Action != nullptr ? *Action : FUIAction();
}

bool FMenuItem::IsEnabled() const
{
	if (Entry->Type != EToolMenuEntryType::MenuEntry)
	{
		return Entry->Type == EToolMenuEntryType::SubMenu;
	}
	const FUIAction Action = FindAction();
	return Action.IsBound() && Action.CanExecute();
}

bool FMenuItem::IsVisible() const
{
	return FindAction().IsVisible();
}

ECheckBoxState FMenuItem::GetCheckState() const
{
	return FindAction().GetCheckState();
}

bool FMenuItem::Execute() const
{
	const bool bBlocked = FSlateApplication::IsInitialized() && FSlateApplication::Get().IsModalOrProgressOpen();
	return !bBlocked && Entry->Type == EToolMenuEntryType::MenuEntry && FindAction().Execute();
}

TSharedRef<FMenuModel> FMenuItem::OpenSubMenu() const
{
	check(Entry->Type == EToolMenuEntryType::SubMenu);
	// The builder may take its own entry out of the menus.
	const TSharedRef<FToolMenuEntry> KeptAlive = Entry;
	return UToolMenus::Get()->GenerateSubMenu(KeptAlive->SubMenu, KeptAlive->Name, KeptAlive->Owner, Context);
}

TSharedRef<FMenuModel> FMenuModel::Make(
	const TArray<TSharedRef<FToolMenuSection>>& InSections, const FToolMenuContext& InContext)
{
	const TSharedRef<FMenuModel> Model = MakeShared<FMenuModel>();
	for (const TSharedRef<FToolMenuSection>& Section : OrderByInsertPosition(InSections))
	{
		FSection Shown{Section->Name, Section->Label, {}};
		for (const TSharedRef<FToolMenuEntry>& Entry : OrderByInsertPosition(Section->GetEntries()))
		{
			const TSharedRef<FMenuItem> Item = MakeShared<FMenuItem>(Entry, InContext);
			if (Item->IsVisible())
			{
				Shown.Items.Add(Item);
			}
		}
		if (!Shown.Items.IsEmpty())
		{
			Model->Sections.Add(Shown);
		}
	}
	return Model;
}

TSharedPtr<FMenuItem> FMenuModel::FindItem(FName InName) const
{
	for (const FSection& Section : Sections)
	{
		for (const TSharedRef<FMenuItem>& Item : Section.Items)
		{
			if (Item->GetName() == InName)
			{
				return Item;
			}
		}
	}
	return {};
}

void FMenuModel::RemoveOwner(const FToolMenuOwner& InOwner)
{
	int32 Removed = 0;
	for (FSection& Section : Sections)
	{
		Removed += Section.Items.RemoveAll(
			[&InOwner](const TSharedRef<FMenuItem>& Item)
			{
				const bool bLeaves = Item->Entry->Owner == InOwner;
				if (bLeaves)
				{
					Item->Entry->ReleaseCallables();
				}
				return bLeaves;
			});
	}
	Sections.RemoveAll([](const FSection& Section) { return Section.Items.IsEmpty(); });
	if (Removed > 0)
	{
		Changed.Broadcast();
	}
}
