// SPDX-License-Identifier: MIT
#pragma once

#include "CoreUObject/Object.h"

#include <vector>

/// All objects of the process: slots with serial numbers. There is one, and it lives as long as the process.
class FObjectArray
{
public:
	static FObjectArray& Get();

	/// The object in `Handle`'s slot when the serial numbers agree, else null.
	UObject* Resolve(FObjectHandle Handle) const
	{
		return uint32(Handle.Slot) < Slots.size() && Slots[uint32(Handle.Slot)].Serial == Handle.Serial
				   ? Slots[uint32(Handle.Slot)].Object
				   : nullptr;
	}

	/// How many objects exist, class-default objects included.
	int32 Num() const { return NumObjects; }

private:
	friend class UObject;
	friend class FGarbageCollector;

	struct FSlot
	{
		UObject* Object = nullptr;
		uint32 Serial = 1;
	};

	void Add(UObject* Object);
	void Remove(UObject* Object);

	std::vector<FSlot> Slots;
	std::vector<int32> FreeSlots;
	int32 NumObjects = 0;
};
