// SPDX-License-Identifier: MIT
#include "Core/Log.h"

#include <algorithm>
#include <mutex>

namespace
{
struct FSinkList
{
	// Recursive: a sink may log, or leave the log, while it is written to.
	std::recursive_mutex Mutex;
	std::vector<ILogSink*> Sinks;
};

// Never destroyed: sinks and categories are statics of other libraries, too.
FSinkList& SinkList()
{
	static FSinkList& List = *new FSinkList;
	return List;
}
}

FString EscapeControlCharacters(const FString& Text)
{
	FString Escaped;
	for (const TCHAR Character : Text)
	{
		const uint32 Code = static_cast<uint32>(Character);
		const bool bControl = Code < 0x20 || (Code >= 0x7f && Code < 0xa0);
		if (bControl && Character != L'\n' && Character != L'\t')
		{
			Escaped += FString::Printf(TEXT("\\x%02x"), Code);
		}
		else
		{
			Escaped += Character;
		}
	}
	return Escaped;
}

const TCHAR* ToString(ELogVerbosity Verbosity)
{
	switch (Verbosity)
	{
	case ELogVerbosity::NoLogging:
		return TEXT("NoLogging");
	case ELogVerbosity::Fatal:
		return TEXT("Fatal");
	case ELogVerbosity::Error:
		return TEXT("Error");
	case ELogVerbosity::Warning:
		return TEXT("Warning");
	case ELogVerbosity::Display:
		return TEXT("Display");
	case ELogVerbosity::Log:
		return TEXT("Log");
	case ELogVerbosity::Verbose:
		return TEXT("Verbose");
	case ELogVerbosity::VeryVerbose:
		return TEXT("VeryVerbose");
	}
	return TEXT("Unknown");
}

FLogCategory::FLogCategory(const TCHAR* InName, ELogVerbosity InDefaultVerbosity, ELogVerbosity InCompileTimeVerbosity)
	: Name(InName)
	, DefaultVerbosity(std::min(InDefaultVerbosity, InCompileTimeVerbosity))
	, CompileTimeVerbosity(InCompileTimeVerbosity)
	, Verbosity(DefaultVerbosity)
{
}

void FLogCategory::SetVerbosity(ELogVerbosity NewVerbosity)
{
	Verbosity = std::min(NewVerbosity, CompileTimeVerbosity);
}

ILogSink::~ILogSink()
{
	FLog::RemoveSink(this);
}

void FLog::AddSink(ILogSink* Sink)
{
	check(Sink != nullptr);
	FSinkList& List = SinkList();
	const std::lock_guard Lock(List.Mutex);
	if (std::find(List.Sinks.begin(), List.Sinks.end(), Sink) == List.Sinks.end())
	{
		List.Sinks.push_back(Sink);
	}
}

void FLog::RemoveSink(ILogSink* Sink)
{
	FSinkList& List = SinkList();
	const std::lock_guard Lock(List.Mutex);
	std::erase(List.Sinks, Sink);
}

void FLog::Write(const FLogCategory& Category, ELogVerbosity Verbosity, const FString& Message)
{
	const FLogRecord Record{Category.GetName(), Verbosity, Message};
	FSinkList& List = SinkList();
	const std::lock_guard Lock(List.Mutex);
	const std::vector<ILogSink*> Snapshot = List.Sinks;
	for (ILogSink* Sink : Snapshot)
	{
		if (std::find(List.Sinks.begin(), List.Sinks.end(), Sink) != List.Sinks.end())
		{
			Sink->Write(Record);
		}
	}
}

void FLog::WriteFatal(const FLogCategory& Category, const char* File, int32 Line, const FString& Message)
{
	Write(Category, ELogVerbosity::Fatal, Message);
	ReportAssertionFailure("", File, Line, Message.ToStdWString());
}

FTerminalLogSink::FTerminalLogSink(std::FILE* InStream, ELogVerbosity InVerbosity)
	: Stream(InStream)
	, Verbosity(InVerbosity)
{
}

void FTerminalLogSink::Write(const FLogRecord& Record)
{
	if (Record.Verbosity > Verbosity)
	{
		return;
	}
	const FString Line = FString::Printf(TEXT("%s: %s: %s\n"), *Record.Category.ToString(), ToString(Record.Verbosity),
		*EscapeControlCharacters(Record.Message));
	const std::string Utf8 = Line.ToUtf8();
	std::fwrite(Utf8.data(), 1, Utf8.size(), Stream);
	std::fflush(Stream);
}

FCaptureLogSink::FCaptureLogSink()
{
	FLog::AddSink(this);
}

void FCaptureLogSink::Write(const FLogRecord& Record)
{
	Lines.Add(Record);
}

TArray<FString> FCaptureLogSink::Messages(FName Category) const
{
	TArray<FString> Found;
	for (const FLogRecord& Record : Lines)
	{
		if (Record.Category == Category)
		{
			Found.Add(Record.Message);
		}
	}
	return Found;
}
