// SPDX-License-Identifier: MIT
#include "Core/Assertion.h"

#include "Core/String.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace
{
struct FHandlerSlot
{
	std::mutex Mutex;
	FAssertionHandler Handler;
};

// Never destroyed: a check may fail in the destructor of another static.
FHandlerSlot& HandlerSlot()
{
	static FHandlerSlot& Slot = *new FHandlerSlot;
	return Slot;
}

void PrintFailure(const FAssertionFailure& Failure)
{
	const std::string Message = FString(Failure.Message).ToUtf8();
	const bool bHasExpression = Failure.Expression[0] != '\0';
	std::fprintf(stderr, "%s:%d: %s%s%s%s\n", Failure.File, Failure.Line, bHasExpression ? "check failed: " : "fatal",
		Failure.Expression, Message.empty() ? "" : ": ", Message.c_str());
	std::fflush(stderr);
}
}

FAssertionHandler SetAssertionHandler(FAssertionHandler Handler)
{
	FHandlerSlot& Slot = HandlerSlot();
	const std::lock_guard Lock(Slot.Mutex);
	return std::exchange(Slot.Handler, std::move(Handler));
}

void ReportAssertionFailure(const char* Expression, const char* File, int32 Line, std::wstring Message)
{
	FAssertionHandler Handler;
	{
		FHandlerSlot& Slot = HandlerSlot();
		const std::lock_guard Lock(Slot.Mutex);
		Handler = Slot.Handler;
	}
	const FAssertionFailure Failure{Expression, std::move(Message), File, Line};
	if (Handler)
	{
		Handler(Failure);
	}
	else
	{
		PrintFailure(Failure);
	}
	std::abort();
}
