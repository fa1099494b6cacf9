// SPDX-License-Identifier: MIT

// Compiled once for each case: the case KEPT must compile, every other one must be refused by the check of formats.
#include "Core/Log.h"
#include "Core/String.h"

DECLARE_LOG_CATEGORY_EXTERN(LogRefusals, Log, All);

void Use(const FString& Name, int64 Large, const TCHAR* Pointer)
{
#if defined(KEPT)
	FString::Printf(TEXT("%s %lld %s"), *Name, Large, Pointer);
	HOST_LOG(LogRefusals, Log, TEXT("%s"), Pointer);
	checkf(Large != 0, TEXT("%lld"), Large);
#elif defined(OBJECT_FOR_TEXT)
	FString::Printf(TEXT("%s"), Name);
#elif defined(NARROW_FOR_TEXT)
	FString::Printf(TEXT("%s"), "narrow");
#elif defined(LARGE_FOR_SMALL)
	FString::Printf(TEXT("%d"), Large);
#elif defined(NUMBER_FOR_TEXT)
	FString::Printf(TEXT("%s"), 5);
#elif defined(MISSING_ARGUMENT)
	FString::Printf(TEXT("%s %s"), Pointer);
#elif defined(SURPLUS_ARGUMENT)
	FString::Printf(TEXT("%s"), Pointer, Large);
#elif defined(UNKNOWN_CONVERSION)
	FString::Printf(TEXT("%n"), Pointer);
#elif defined(FORMAT_FROM_A_VARIABLE)
	FString::Printf(Pointer);
#elif defined(IN_A_LOG_LINE)
	HOST_LOG(LogRefusals, Log, TEXT("%d"), Large);
#elif defined(IN_A_CHECK)
	checkf(Large != 0, TEXT("%d"), Large);
#endif
	(void)Name;
	(void)Large;
	(void)Pointer;
}
