// SPDX-License-Identifier: MIT
#include "ActorMenu.h"

#include "Editor/EditorEngine.h"
#include "LevelCommands.h"
#include "SelectionQueries.h"
#include "ToolMenus/ToolMenus.h"

namespace
{
const FName MenuName(TEXT("LevelEditor.ActorContextMenu"));
const FToolMenuOwner MenuOwner(TEXT("TarvinEditor"));

/// The command list of the running session, for submenus that are filled when they open.
TWeakPtr<FUICommandList> Actions;

void FillSelectMenu(UToolMenu* Menu)
{
	const TSharedPtr<FUICommandList> List = Actions.Pin();
	const FLevelCommands& Commands = FLevelCommands::Get();
	FToolMenuSection& Section = Menu->FindOrAddSection(TEXT("Select"));
	Section.AddMenuEntryWithCommandList(Commands.SelectAll, List);
	Section.AddMenuEntryWithCommandList(Commands.SelectNone, List);
	Section.AddMenuEntryWithCommandList(Commands.SelectSameMesh, List);
	Section.AddMenuEntryWithCommandList(Commands.SelectChildren, List);
}

FQtMenuEntry EntryOf(const TSharedRef<FMenuItem>& Item)
{
	FQtMenuEntry Entry;
	Entry.Name = Item->GetName();
	Entry.Label = Item->GetLabel();
	Entry.ToolTip = Item->GetToolTip();
	Entry.Chord = Item->GetChordText();
	Entry.Type = Item->GetUserInterfaceType();
	if (Item->GetType() == EToolMenuEntryType::Separator)
	{
		return FQtMenuEntry::Section(FText());
	}
	if (Item->GetType() == EToolMenuEntryType::SubMenu)
	{
		Entry.Kind = FQtMenuEntry::EKind::SubMenu;
		Entry.MakeEntries = [Item] { return ActorMenu::EntriesOf(Item->OpenSubMenu()); };
		return Entry;
	}
	Entry.Action = FUIAction(FExecuteAction::CreateLambda([Item] { Item->Execute(); }),
		FCanExecuteAction::CreateLambda([Item] { return Item->IsEnabled(); }),
		FGetActionCheckState::CreateLambda([Item] { return Item->GetCheckState(); }));
	return Entry;
}
} // namespace

void ActorMenu::Register(const TSharedRef<FUICommandList>& LevelActions)
{
	Actions = LevelActions;
	const FToolMenuOwnerScoped Owner(MenuOwner);
	const FLevelCommands& Commands = FLevelCommands::Get();
	UToolMenu* const Menu = UToolMenus::Get()->RegisterMenu(MenuName);
	FToolMenuSection& Actor =
		Menu->AddSection(TEXT("ActorActions"), NSLOCTEXT("TarvinEditor", "ActorSection", "Actor"));
	Actor.AddSubMenu(TEXT("Select"), NSLOCTEXT("TarvinEditor", "SelectSubMenu", "Select"),
		NSLOCTEXT("TarvinEditor", "SelectSubMenuTip", "Changes what is selected"),
		FNewToolMenuChoice(FNewToolMenuDelegate::CreateStatic(&FillSelectMenu)));
	Actor.AddMenuEntryWithCommandList(Commands.FocusSelection, LevelActions);
	Actor.AddMenuEntryWithCommandList(Commands.Delete, LevelActions);
	Actor.AddMenuEntryWithCommandList(Commands.Duplicate, LevelActions);
	FToolMenuSection& Attach =
		Menu->AddSection(TEXT("ActorAttachment"), NSLOCTEXT("TarvinEditor", "AttachSection", "Attachment"));
	Attach.AddMenuEntryWithCommandList(Commands.AttachToLast, LevelActions);
	Attach.AddMenuEntryWithCommandList(Commands.Detach, LevelActions);
}

void ActorMenu::Unregister()
{
	if (UToolMenus* const Menus = UToolMenus::TryGet())
	{
		Menus->UnregisterOwner(MenuOwner);
	}
	Actions.Reset();
}

std::vector<FQtMenuEntry> ActorMenu::EntriesOf(const TSharedRef<FMenuModel>& Model)
{
	std::vector<FQtMenuEntry> Entries;
	for (const FMenuModel::FSection& Section : Model->GetSections())
	{
		Entries.push_back(FQtMenuEntry::Section(Section.Label));
		for (const TSharedRef<FMenuItem>& Item : Section.Items)
		{
			Entries.push_back(EntryOf(Item));
		}
	}
	return Entries;
}

std::vector<FQtMenuEntry> ActorMenu::MakeEntries()
{
	const TSharedPtr<FMenuModel> Model = UToolMenus::Get()->GenerateMenu(MenuName, FToolMenuContext(Actions.Pin()));
	return Model.IsValid() ? EntriesOf(Model.ToSharedRef()) : std::vector<FQtMenuEntry>();
}

void ActorMenu::Open(const QPoint& GlobalPosition, QWidget* Parent)
{
	if (GEditor->PlayWorld || SelectionQueries::SelectedActors().IsEmpty())
	{
		return;
	}
	FQtMenu Menu(&MakeEntries, Parent);
	Menu.setObjectName(QStringLiteral("ActorMenu"));
	Menu.exec(GlobalPosition);
}
