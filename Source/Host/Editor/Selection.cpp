// SPDX-License-Identifier: MIT
#include "Editor/Selection.h"

DEFINE_CLASS(USelection)

UObject* USelection::GetSelectedObject(int32 Index) const
{
	return Objects.IsValidIndex(Index) ? Objects[Index].Get() : nullptr;
}

bool USelection::IsSelected(const UObject* Object) const
{
	return Object &&
		   Objects.ContainsByPredicate([&](const TWeakObjectPtr<UObject>& Entry) { return Entry.Get() == Object; });
}

void USelection::Select(UObject* Object)
{
	if (IsValid(Object) && !IsSelected(Object))
	{
		Objects.Add(TWeakObjectPtr<UObject>(Object));
		ChangedEvent.Broadcast();
	}
}

void USelection::Deselect(UObject* Object)
{
	for (int32 Index = 0; Object && Index < Num(); ++Index)
	{
		if (Objects[Index].Get() == Object)
		{
			Objects.RemoveAt(Index);
			ChangedEvent.Broadcast();
			return;
		}
	}
}

void USelection::DeselectAll()
{
	if (!Objects.IsEmpty())
	{
		Objects.Empty();
		ChangedEvent.Broadcast();
	}
}

TArray<UObject*> USelection::GetSelectedObjects() const
{
	TArray<UObject*> Result;
	for (const TWeakObjectPtr<UObject>& Entry : Objects)
	{
		if (UObject* const Object = Entry.Get())
		{
			Result.Add(Object);
		}
	}
	return Result;
}
