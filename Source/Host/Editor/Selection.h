// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Delegate.h"
#include "CoreUObject/ObjectPtr.h"

#include <unordered_set>

/// An ordered set of selected objects. It keeps none of them alive: an entry whose object is gone reads as null.
class USelection : public UObject
{
	DECLARE_CLASS(USelection, UObject)

public:
	/// How many entries there are, null ones included.
	int32 Num() const { return int32(Objects.Num()); }

	/// The entry at `Index` in the order of selection; null when its object is gone, or the index is out of range.
	UObject* GetSelectedObject(int32 Index) const;

	bool IsSelected(const UObject* Object) const;

	/// Adds the object at the end, unless it is null or selected already.
	void Select(UObject* Object);
	void Deselect(UObject* Object);
	void DeselectAll();

	/// The live objects, in the order of selection.
	TArray<UObject*> GetSelectedObjects() const;

	/// Told of every change.
	TMulticastDelegate<void()>& OnChanged() { return ChangedEvent; }

private:
	TArray<TWeakObjectPtr<UObject>> Objects;
	/// The handles of the entries: selecting many objects is linear in their number.
	std::unordered_set<FObjectHandle> Handles;
	TMulticastDelegate<void()> ChangedEvent;
};
