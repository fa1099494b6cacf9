// SPDX-License-Identifier: MIT
#pragma once

#include "ToolMenus/ToolMenuContext.h"
#include "ToolMenus/ToolMenuSection.h"

class FMenuModel;

/// One line of an open menu, as a back end shows it. Texts, state and enabling are asked afresh each time.
class FMenuItem
{
public:
	FMenuItem(const TSharedRef<FToolMenuEntry>& InEntry, const FToolMenuContext& InContext);

	FName GetName() const { return Entry->Name; }
	EToolMenuEntryType GetType() const { return Entry->Type; }
	EUserInterfaceActionType GetUserInterfaceType() const;
	FText GetLabel() const;
	FText GetToolTip() const;
	const FSlateIcon& GetIcon() const { return Entry->Icon; }

	/// The command's chords as users read them; empty for other entries.
	FText GetChordText() const;

	/// Whether a click does something at present. Submenus always do.
	bool IsEnabled() const;
	bool IsVisible() const;
	ECheckBoxState GetCheckState() const;

	/// What a click does. False, doing nothing, for what is not enabled, for submenus and separators, and while a modal
	/// or progress dialog is up.
	bool Execute() const;

	bool OpensOnClick() const { return Entry->bOpenSubMenuOnClick; }
	bool ClosesMenuAfterSelection() const { return Entry->bCloseAfterSelection; }

	/// Builds the submenu anew. Only for submenus.
	TSharedRef<FMenuModel> OpenSubMenu() const;

private:
	friend class FMenuModel;

	FUIAction FindAction() const;

	TSharedRef<FToolMenuEntry> Entry;
	FToolMenuContext Context;
};

/// An open menu: its sections and lines in the order in which they are shown, without those that are not visible. It is
/// a picture of the moment at which it was opened; when an owner leaves the menus, its lines leave open menus too.
class FMenuModel
{
public:
	struct FSection
	{
		FName Name;
		FText Label;
		TArray<TSharedRef<FMenuItem>> Items;
	};

	/// Takes what is to be shown of registered sections.
	static TSharedRef<FMenuModel> Make(
		const TArray<TSharedRef<FToolMenuSection>>& InSections, const FToolMenuContext& InContext);

	FMenuModel() = default;
	FMenuModel(const FMenuModel&) = delete;
	FMenuModel& operator=(const FMenuModel&) = delete;

	/// The sections that have lines.
	const TArray<FSection>& GetSections() const { return Sections; }

	/// The line of that name, of any section; empty where there is none. Submenus are not searched.
	TSharedPtr<FMenuItem> FindItem(FName InName) const;

	/// Takes an owner's lines out, in submenus that are open too. A back end that shows the menu redraws it on
	/// OnChanged.
	void RemoveOwner(const FToolMenuOwner& InOwner);

	/// Sent after lines were taken out.
	TMulticastDelegate<void()>& OnChanged() { return Changed; }

private:
	TArray<FSection> Sections;
	TMulticastDelegate<void()> Changed;
};
