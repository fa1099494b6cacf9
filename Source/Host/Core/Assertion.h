// SPDX-License-Identifier: MIT
#pragma once

#include "Core/FormatString.h"

#include <functional>
#include <string>

/// What a failed `check`, or a fatal log line, has to say.
struct FAssertionFailure
{
	const char* Expression = ""; ///< the condition as it was written; empty for a fatal log line
	std::wstring Message;        ///< empty for a bare `check`
	const char* File = "";
	int32 Line = 0;
};

/// Receives every failure. It may throw (tests do); the program is aborted if it returns.
using FAssertionHandler = std::function<void(const FAssertionFailure&)>;

/// Replaces the handler and returns the one before. An empty handler restores the default, which prints one
/// line on standard error and aborts.
FAssertionHandler SetAssertionHandler(FAssertionHandler Handler);

/// Hands a failure to the handler; never returns normally.
[[noreturn]] void ReportAssertionFailure(
	const char* Expression, const char* File, int32 Line, std::wstring Message = {});

/// Stops the program, through the assertion handler, unless `Condition` holds. On in every build.
#define check(...)                                                    \
	do                                                                \
	{                                                                 \
		if (!(__VA_ARGS__)) [[unlikely]]                              \
		{                                                             \
			ReportAssertionFailure(#__VA_ARGS__, __FILE__, __LINE__); \
		}                                                             \
	} while (false)

/// As `check`, with a printf-style message.
#define checkf(Condition, Format, ...)                                                                             \
	do                                                                                                             \
	{                                                                                                              \
		if (!(Condition)) [[unlikely]]                                                                             \
		{                                                                                                          \
			ReportAssertionFailure(#Condition, __FILE__, __LINE__, FormatWide(Format __VA_OPT__(, ) __VA_ARGS__)); \
		}                                                                                                          \
	} while (false)
