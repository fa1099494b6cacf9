// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Name.h"
#include "Core/SharedPointer.h"

/// On which side of an anchor something goes.
enum class EToolMenuInsertType : uint8
{
	Default, ///< behind all that was added before; no anchor
	Before,
	After,
	First, ///< in front of all others; no anchor
};

/// Where a section goes in its menu, or an entry in its section. An anchor that is not there counts as Default; one may
/// be added later than what refers to it.
struct FToolMenuInsert
{
	FToolMenuInsert() = default;
	FToolMenuInsert(FName InAnchor, EToolMenuInsertType InPosition)
		: Anchor(InAnchor)
		, Position(InPosition)
	{
	}

	FName Anchor;
	EToolMenuInsertType Position = EToolMenuInsertType::Default;
};

/// Puts items, which have a `Name` and an `InsertPosition`, into the order in which they are shown.
template <typename TItem>
TArray<TSharedRef<TItem>> OrderByInsertPosition(const TArray<TSharedRef<TItem>>& Items)
{
	TArray<TSharedRef<TItem>> Ordered;
	TArray<TSharedRef<TItem>> Anchored;
	int32 NumFirst = 0;
	for (const TSharedRef<TItem>& Item : Items)
	{
		const EToolMenuInsertType Position = Item->InsertPosition.Position;
		if (Position == EToolMenuInsertType::First)
		{
			Ordered.Insert(Item, NumFirst++);
		}
		else
		{
			(Position == EToolMenuInsertType::Default ? Ordered : Anchored).Add(Item);
		}
	}
	// An anchor may itself be anchored, so what finds none waits for another round until nothing finds its place any
	// more.
	for (bool bPlaced = true; bPlaced;)
	{
		bPlaced = false;
		for (int32 Index = 0; Index < Anchored.Num();)
		{
			const TSharedRef<TItem> Item = Anchored[Index];
			const int32 Anchor = Ordered.IndexOfByPredicate(
				[&Item](const TSharedRef<TItem>& Other) { return Other->Name == Item->InsertPosition.Anchor; });
			if (Anchor == INDEX_NONE)
			{
				++Index;
				continue;
			}
			Ordered.Insert(Item, Anchor + (Item->InsertPosition.Position == EToolMenuInsertType::After ? 1 : 0));
			Anchored.RemoveAt(Index);
			bPlaced = true;
		}
	}
	Ordered.Append(Anchored);
	return Ordered;
}
