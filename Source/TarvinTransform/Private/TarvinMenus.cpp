// SPDX-License-Identifier: MIT
#include "TarvinMenus.h"

#include "Platform/ToolMenus.h"
#include "TarvinTransformCommands.h"
#include "TarvinTransformModule.h"

namespace
{
FTarvinTransformModule& RunningModule()
{
	return FModuleManager::Get().GetModuleChecked<FTarvinTransformModule>(TEXT("TarvinTransform"));
}

void BuildPivotSubMenu(UToolMenu* SubMenu)
{
	FTarvinTransformModule& Module = RunningModule();
	FToolMenuSection& Section = SubMenu->FindOrAddSection(TEXT("TarvinPivotSection"));
	for (const TSharedPtr<FUICommandInfo>& Command : FTarvinTransformCommands::GetPivotCommands())
	{
		Section.AddMenuEntryWithCommandList(Command, Module.GetCommandList());
	}
}
} // namespace

void TarvinMenus::RegisterMenus()
{
	FTarvinTransformModule& Module = RunningModule();
	const FToolMenuOwnerScoped Owner(&Module);
	UToolMenu* const Menu = UToolMenus::Get()->ExtendMenu(TEXT("LevelEditor.ActorContextMenu"));
	if (!Menu)
	{
		return;
	}
	FToolMenuSection& Section = Menu->FindOrAddSection(TEXT("TarvinTransform"),
		NSLOCTEXT("TarvinTransform", "SectionLabel", "Morvel Mesh Transform"), FToolMenuInsert());
	Section.AddMenuEntryWithCommandList(FTarvinTransformCommands::Get().BakeTransform, Module.GetCommandList());
	Section.AddSubMenu(TEXT("TarvinPivot"), NSLOCTEXT("TarvinTransform", "PivotSubMenu", "Set Pivot"),
		NSLOCTEXT("TarvinTransform", "PivotSubMenuTip", "Moves the mesh pivot to a point on its bounding box"),
		FNewToolMenuChoice(FNewToolMenuDelegate::CreateStatic(&BuildPivotSubMenu)));
}
