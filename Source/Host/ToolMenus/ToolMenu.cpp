// SPDX-License-Identifier: MIT
#include "ToolMenus/ToolMenu.h"

#include "ToolMenus/ToolMenus.h"

DEFINE_CLASS(UToolMenu)

FToolMenuSection& UToolMenu::AddSection(FName InName, const FText& InLabel, FToolMenuInsert InInsertPosition)
{
	if (FToolMenuSection* Present = FindSection(InName))
	{
		return *Present;
	}
	Sections.Add(MakeShared<FToolMenuSection>(InName, InLabel, InInsertPosition, UToolMenus::Get()->CurrentOwner()));
	return *Sections.Last();
}

FToolMenuSection& UToolMenu::FindOrAddSection(FName InName)
{
	return FindOrAddSection(InName, FText());
}

FToolMenuSection& UToolMenu::FindOrAddSection(FName InName, const FText& InLabel, FToolMenuInsert InInsertPosition)
{
	FToolMenuSection& Section = AddSection(InName, InLabel, InInsertPosition);
	if (Section.Label.IsEmpty())
	{
		Section.Label = InLabel;
	}
	return Section;
}

FToolMenuSection* UToolMenu::FindSection(FName InName) const
{
	const TSharedRef<FToolMenuSection>* Found = Sections.FindByPredicate(
		[InName](const TSharedRef<FToolMenuSection>& Section) { return Section->Name == InName; });
	return Found != nullptr ? &**Found : nullptr;
}

void UToolMenu::RemoveSection(FName InName)
{
	Sections.RemoveAll([InName](const TSharedRef<FToolMenuSection>& Section) { return Section->Name == InName; });
}

void UToolMenu::RemoveOwner(const FToolMenuOwner& InOwner)
{
	Sections.RemoveAll([&InOwner](const TSharedRef<FToolMenuSection>& Section)
		{ return !Section->RemoveEntriesOf(InOwner) && Section->Owner == InOwner; });
}
