// SPDX-License-Identifier: MIT
#include "Editor/Selection.h"

DEFINE_CLASS(USelection)

UObject* USelection::GetSelectedObject(int32 Index) const
{
	return Objects.IsValidIndex(Index) ? Objects[Index].Get() : nullptr;
}

bool USelection::IsSelected(const UObject* Object) const
{
	return IsValid(Object) && Handles.contains(Object->GetHandle());
}

void USelection::Select(UObject* Object)
{
	if (IsValid(Object) && !IsSelected(Object))
	{
		Objects.Add(TWeakObjectPtr<UObject>(Object));
		Handles.insert(Object->GetHandle());
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
			Handles.erase(Object->GetHandle());
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
		Handles.clear();
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
