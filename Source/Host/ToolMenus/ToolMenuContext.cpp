// SPDX-License-Identifier: MIT
#include "ToolMenus/ToolMenuContext.h"

void FToolMenuContext::AppendCommandList(const TSharedPtr<const FUICommandList>& InCommandList)
{
	if (InCommandList.IsValid())
	{
		CommandLists.AddUnique(InCommandList.ToSharedRef());
	}
}

TSharedPtr<const FUICommandList> FToolMenuContext::FindCommandList(
	const TSharedPtr<const FUICommandInfo>& InCommand) const
{
	for (const TSharedRef<const FUICommandList>& List : CommandLists)
	{
		if (List->IsActionMapped(InCommand))
		{
			return List;
		}
	}
	return {};
}
