// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Types.h"

class UObject;

/// Names one object for ever: its slot in the global object array, and the serial number that the slot had when it was
/// made. A slot that is used again has another serial number, so a handle never resolves to a later object.
struct FObjectHandle
{
	int32 Slot = INDEX_NONE;
	uint32 Serial = 0;

	bool operator==(const FObjectHandle&) const = default;
};

/// The handle of `Object`; the empty handle for null. The object must not have been freed.
FObjectHandle MakeObjectHandle(const UObject* Object);

/// The object that `Handle` names while it exists in memory, destroyed or not; null once it was freed.
UObject* ResolveObject(FObjectHandle Handle);

/// The same, but null also for objects that were destroyed (garbage) or that the running collection found unreachable.
UObject* ResolveLiveObject(FObjectHandle Handle);
