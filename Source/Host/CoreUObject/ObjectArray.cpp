// SPDX-License-Identifier: MIT
#include "CoreUObject/ObjectArray.h"

#include "CoreUObject/ObjectIterator.h"

FObjectArray& FObjectArray::Get()
{
	// Never destroyed: objects may outlive every other static of the process.
	static FObjectArray* const Array = new FObjectArray();
	return *Array;
}

void FObjectArray::Add(UObject* Object)
{
	if (FreeSlots.empty())
	{
		Object->Slot = int32(Slots.size());
		Slots.push_back({});
	}
	else
	{
		Object->Slot = FreeSlots.back();
		FreeSlots.pop_back();
	}
	Slots[uint32(Object->Slot)].Object = Object;
	++NumObjects;

	Object->ClassIndex = int32(Object->ClassPrivate->Instances.size());
	Object->ClassPrivate->Instances.push_back(Object);
}

void FObjectArray::Remove(UObject* Object)
{
	FSlot& Slot = Slots[uint32(Object->Slot)];
	Slot.Object = nullptr;
	// A slot whose numbers are used up stays empty for good: a handle must never resolve to a later object.
	if (++Slot.Serial != 0)
	{
		FreeSlots.push_back(Object->Slot);
	}
	--NumObjects;

	std::vector<UObject*>& Instances = Object->ClassPrivate->Instances;
	Instances[uint32(Object->ClassIndex)] = Instances.back();
	Instances[uint32(Object->ClassIndex)]->ClassIndex = Object->ClassIndex;
	Instances.pop_back();
}

FObjectHandle MakeObjectHandle(const UObject* Object)
{
	return Object ? Object->GetHandle() : FObjectHandle();
}

UObject* ResolveObject(FObjectHandle Handle)
{
	return FObjectArray::Get().Resolve(Handle);
}

UObject* ResolveLiveObject(FObjectHandle Handle)
{
	UObject* const Object = ResolveObject(Handle);
	return IsValid(Object) ? Object : nullptr;
}

void GetObjectsOfClass(const UClass* Class, TArray<UObject*>& OutObjects, bool bIncludeDerived, uint32 ExcludeFlags)
{
	for (UObject* Object : Class->GetInstances())
	{
		if (IsValid(Object) && !Object->HasAnyFlags(ExcludeFlags))
		{
			OutObjects.Add(Object);
		}
	}
	if (bIncludeDerived)
	{
		for (const UClass* Derived : Class->GetDerivedClasses())
		{
			GetObjectsOfClass(Derived, OutObjects, true, ExcludeFlags);
		}
	}
}
