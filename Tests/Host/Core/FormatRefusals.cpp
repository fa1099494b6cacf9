// SPDX-License-Identifier: MIT

// Compiled once for each case: the cases KEPT_... must compile, every other one must be refused by the check of
// formats.
#if defined(KEPT_IN_LOG_AND_CHECK) || defined(IN_A_LOG_LINE) || defined(IN_A_CHECK)
#include "Core/Log.h"
DECLARE_LOG_CATEGORY_EXTERN(LogRefusals, Log, All);
#elif defined(OBJECT_FOR_TEXT)
#include "Core/String.h"
#else
#include "Core/FormatString.h"
#endif

void Use(int64 Large, const TCHAR* Pointer)
{
#if defined(KEPT_IN_LOG_AND_CHECK)
	FString::Printf(TEXT("%s %lld %s"), *FString(Pointer), Large, Pointer);
	HOST_LOG(LogRefusals, Log, TEXT("%s"), Pointer);
	checkf(Large != 0, TEXT("%lld"), Large);
#elif defined(KEPT_PLAIN)
	FormatWide(TEXT("%lld %s"), Large, Pointer);
#elif defined(OBJECT_FOR_TEXT)
	FString::Printf(TEXT("%s"), FString(Pointer));
#elif defined(NARROW_FOR_TEXT)
	FormatWide(TEXT("%s"), "narrow");
#elif defined(LARGE_FOR_SMALL)
	FormatWide(TEXT("%d"), Large);
#elif defined(NUMBER_FOR_TEXT)
	FormatWide(TEXT("%s"), 5);
#elif defined(MISSING_ARGUMENT)
	FormatWide(TEXT("%s %s"), Pointer);
#elif defined(SURPLUS_ARGUMENT)
	FormatWide(TEXT("%s"), Pointer, Large);
#elif defined(UNKNOWN_CONVERSION)
	FormatWide(TEXT("%n"), Pointer);
#elif defined(FORMAT_FROM_A_VARIABLE)
	FormatWide(Pointer);
#elif defined(IN_A_LOG_LINE)
	HOST_LOG(LogRefusals, Log, TEXT("%d"), Large);
#elif defined(IN_A_CHECK)
	checkf(Large != 0, TEXT("%d"), Large);
#endif
	(void)Large;
	(void)Pointer;
}
