// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Slate/UICommandList.h"

/// What a menu is opened for: the command lists that say what its commands do.
struct FToolMenuContext
{
	FToolMenuContext() = default;
	FToolMenuContext(const TSharedPtr<const FUICommandList>& InCommandList) { AppendCommandList(InCommandList); }

	/// Adds a list that is asked after those before it. An empty pointer is ignored.
	void AppendCommandList(const TSharedPtr<const FUICommandList>& InCommandList);

	/// The first list that maps the command; empty where none does.
	TSharedPtr<const FUICommandList> FindCommandList(const TSharedPtr<const FUICommandInfo>& InCommand) const;

	TArray<TSharedRef<const FUICommandList>> CommandLists;
};
