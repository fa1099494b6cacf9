// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "CoreUObject/Object.h"

/// Adds every live instance of `Class`, and of the classes derived from it unless `bIncludeDerived` is false, to
/// `OutObjects`. Destroyed and unreachable objects are left out, and those with any of `ExcludeFlags`. Looks at
/// instances of these classes only: objects of other classes cost nothing.
void GetObjectsOfClass(const UClass* Class, TArray<UObject*>& OutObjects, bool bIncludeDerived = true,
	uint32 ExcludeFlags = RF_ClassDefaultObject | RF_NeedLoad);

/// The live instances of `T` and of the classes derived from it.
template <class T>
TArray<T*> GetObjectsOf(uint32 ExcludeFlags = RF_ClassDefaultObject | RF_NeedLoad)
{
	TArray<UObject*> Objects;
	GetObjectsOfClass(T::StaticClass(), Objects, true, ExcludeFlags);
	TArray<T*> Result;
	Result.Reserve(Objects.Num());
	for (UObject* Object : Objects)
	{
		Result.Add(static_cast<T*>(Object));
	}
	return Result;
}
