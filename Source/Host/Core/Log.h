// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Name.h"
#include "Core/String.h"

#include <cstdio>

/// How much a log line matters; the smaller, the more.
enum class ELogVerbosity : uint8
{
	NoLogging, ///< as a limit: nothing is let through
	Fatal,     ///< reported, and then the assertion handler is called
	Error,
	Warning,
	Display,
	Log,
	Verbose,
	VeryVerbose,
	All = VeryVerbose, ///< as a limit: everything is let through
};

/// "Warning" and so on.
const TCHAR* ToString(ELogVerbosity Verbosity);

/// A source of log lines: a name, the verbosity compiled in, and the verbosity let through at run time.
class FLogCategory
{
public:
	/// The default verbosity is cut down to what is compiled in.
	FLogCategory(const TCHAR* InName, ELogVerbosity InDefaultVerbosity, ELogVerbosity InCompileTimeVerbosity);

	FName GetName() const { return Name; }
	ELogVerbosity GetVerbosity() const { return Verbosity; }
	ELogVerbosity GetDefaultVerbosity() const { return DefaultVerbosity; }
	ELogVerbosity GetCompileTimeVerbosity() const { return CompileTimeVerbosity; }

	/// Lets lines up to this verbosity through; cut down to what is compiled in.
	void SetVerbosity(ELogVerbosity NewVerbosity);

	/// Whether a line of that verbosity would be kept back. Fatal lines never are.
	bool IsSuppressed(ELogVerbosity LineVerbosity) const
	{
		return LineVerbosity > Verbosity && LineVerbosity != ELogVerbosity::Fatal;
	}

private:
	FName Name;
	ELogVerbosity DefaultVerbosity;
	ELogVerbosity CompileTimeVerbosity;
	ELogVerbosity Verbosity;
};

/// One log line.
struct FLogRecord
{
	FName Category;
	ELogVerbosity Verbosity = ELogVerbosity::Log;
	FString Message;
};

/// Receives log lines. A sink leaves the log when it is destroyed.
class ILogSink
{
public:
	virtual ~ILogSink();
	virtual void Write(const FLogRecord& Record) = 0;
};

/// The way from categories to sinks.
class FLog
{
public:
	/// Adds a sink, which stays the caller's; adding it twice is the same as once.
	static void AddSink(ILogSink* Sink);

	/// Takes a sink out; one that is not there is ignored.
	static void RemoveSink(ILogSink* Sink);

	/// Hands a line to all sinks, in the order in which they were added. Does not ask the category again.
	static void Write(const FLogCategory& Category, ELogVerbosity Verbosity, const FString& Message);

	/// Writes a fatal line, then stops through the assertion handler.
	[[noreturn]] static void WriteFatal(
		const FLogCategory& Category, const char* File, int32 Line, const FString& Message);
};

/// Control characters other than line break and tab written out, so that a name taken from a file cannot steer a
/// terminal.
FString EscapeControlCharacters(const FString& Text);

/// Writes lines up to a verbosity to a terminal stream as "Category: Warning: message", control characters escaped.
class FTerminalLogSink : public ILogSink
{
public:
	explicit FTerminalLogSink(std::FILE* InStream = stderr, ELogVerbosity InVerbosity = ELogVerbosity::Display);
	void Write(const FLogRecord& Record) override;

private:
	std::FILE* Stream;
	ELogVerbosity Verbosity;
};

/// Collects all lines from its construction to its end; adds itself to the log.
class FCaptureLogSink : public ILogSink
{
public:
	FCaptureLogSink();
	void Write(const FLogRecord& Record) override;

	const TArray<FLogRecord>& Records() const { return Lines; }

	/// The messages of the lines of one category, in order.
	TArray<FString> Messages(FName Category) const;

	void Clear() { Lines.Reset(); }

private:
	TArray<FLogRecord> Lines;
};

/// Declares a category for several sources; each verbosity is written bare, as in (LogThis, Log, All).
#define DECLARE_LOG_CATEGORY_EXTERN(CategoryName, Default, CompileTime)             \
	class FLogCategory##CategoryName : public FLogCategory                          \
	{                                                                               \
	public:                                                                         \
		static constexpr ELogVerbosity CompiledIn = ELogVerbosity::CompileTime;     \
		FLogCategory##CategoryName()                                                \
			: FLogCategory(TEXT(#CategoryName), ELogVerbosity::Default, CompiledIn) \
		{                                                                           \
		}                                                                           \
	};                                                                              \
	extern FLogCategory##CategoryName CategoryName

/// Defines a declared category, in one source.
#define DEFINE_LOG_CATEGORY(CategoryName) FLogCategory##CategoryName CategoryName

/// Declares and defines a category of one source.
#define DEFINE_LOG_CATEGORY_STATIC(CategoryName, Default, CompileTime) \
	namespace                                                          \
	{                                                                  \
	DECLARE_LOG_CATEGORY_EXTERN(CategoryName, Default, CompileTime);   \
	DEFINE_LOG_CATEGORY(CategoryName);                                 \
	}

/// Whether a line would be written now.
#define HOST_LOG_ACTIVE(Category, Verbosity) \
	(ELogVerbosity::Verbosity <= decltype(Category)::CompiledIn && !(Category).IsSuppressed(ELogVerbosity::Verbosity))

/// Writes a printf-style line unless the category keeps it back; arguments of such a line are not evaluated. What is
/// beyond the compiled-in verbosity makes no code.
#define HOST_LOG(Category, Verbosity, Format, ...)                                                                   \
	do                                                                                                               \
	{                                                                                                                \
		if constexpr (ELogVerbosity::Verbosity == ELogVerbosity::Fatal)                                              \
		{                                                                                                            \
			FLog::WriteFatal(Category, __FILE__, __LINE__, FString::Printf(Format __VA_OPT__(, ) __VA_ARGS__));      \
		}                                                                                                            \
		else if constexpr (ELogVerbosity::Verbosity <= std::remove_cvref_t<decltype(Category)>::CompiledIn)          \
		{                                                                                                            \
			if (!(Category).IsSuppressed(ELogVerbosity::Verbosity))                                                  \
			{                                                                                                        \
				FLog::Write(Category, ELogVerbosity::Verbosity, FString::Printf(Format __VA_OPT__(, ) __VA_ARGS__)); \
			}                                                                                                        \
		}                                                                                                            \
	} while (false)
