// SPDX-License-Identifier: MIT
#pragma once

#include "CoreUObject/Object.h"
#include "ToolMenus/ToolMenuSection.h"

/// A menu as it is registered: named sections with entries. What is shown of it is a FMenuModel.
class UToolMenu : public UObject
{
	DECLARE_CLASS(UToolMenu, UObject)

public:
	FName GetMenuName() const { return MenuName; }

	/// Adds a section of the present owner. One of that name that is there already is returned as it is.
	FToolMenuSection& AddSection(
		FName InName, const FText& InLabel = FText(), FToolMenuInsert InInsertPosition = FToolMenuInsert());

	/// The section of that name, added where there is none. A section without a label takes the given one.
	FToolMenuSection& FindOrAddSection(FName InName);
	FToolMenuSection& FindOrAddSection(
		FName InName, const FText& InLabel, FToolMenuInsert InInsertPosition = FToolMenuInsert());

	/// The section of that name, or null. Valid until it is removed.
	FToolMenuSection* FindSection(FName InName) const;

	/// Removes a section with all its entries. Unknown names are ignored.
	void RemoveSection(FName InName);

	/// The sections in the order in which they were added.
	const TArray<TSharedRef<FToolMenuSection>>& GetSections() const { return Sections; }

private:
	friend class UToolMenus;

	/// Removes an owner's entries, and its sections as far as nobody else has entries there.
	void RemoveOwner(const FToolMenuOwner& InOwner);

	FName MenuName;
	bool bRegistered = false;
	FToolMenuOwner RegisteredBy;
	TArray<TSharedRef<FToolMenuSection>> Sections;
};
