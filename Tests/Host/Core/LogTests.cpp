// SPDX-License-Identifier: MIT
#include "Core/Log.h"
#include "Support/ThrowingAssertions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

DECLARE_LOG_CATEGORY_EXTERN(LogOpen, Log, All);
DEFINE_LOG_CATEGORY(LogOpen);

// Anything above Warning makes no code, and the default asks for more than is compiled in.
DECLARE_LOG_CATEGORY_EXTERN(LogCut, VeryVerbose, Warning);
DEFINE_LOG_CATEGORY(LogCut);

DEFINE_LOG_CATEGORY_STATIC(LogLocal, Error, All)

namespace
{
int32 Evaluate(int32& Evaluations)
{
	return ++Evaluations;
}

std::string WrittenToATerminal(const FLogRecord& Record, ELogVerbosity Limit)
{
	std::FILE* const File = std::tmpfile();
	FTerminalLogSink(File, Limit).Write(Record);
	std::string Bytes(static_cast<std::size_t>(std::ftell(File)), '\0');
	std::rewind(File);
	const std::size_t NumRead = std::fread(Bytes.data(), 1, Bytes.size(), File);
	std::fclose(File);
	EXPECT_EQ(NumRead, Bytes.size());
	return Bytes;
}
} // namespace

TEST(Log, LineReachesTheSinksWithCategoryVerbosityAndMessage)
{
	const FCaptureLogSink Capture;
	HOST_LOG(LogOpen, Warning, TEXT("%s: %d collision element(s)"), TEXT("Crate"), 3);
	HOST_LOG(LogLocal, Error, TEXT("plain"));
	ASSERT_EQ(Capture.Records().Num(), 2);
	EXPECT_EQ(Capture.Records()[0].Category, FName(TEXT("LogOpen")));
	EXPECT_EQ(Capture.Records()[0].Verbosity, ELogVerbosity::Warning);
	EXPECT_EQ(Capture.Records()[0].Message, TEXT("Crate: 3 collision element(s)"));
	EXPECT_EQ(Capture.Records()[1].Category, FName(TEXT("LogLocal")));
	EXPECT_EQ(Capture.Messages(TEXT("LogLocal")), (TArray<FString>{TEXT("plain")}));
}

TEST(Log, DefaultVerbosityKeepsBackWhatMattersLess)
{
	const FCaptureLogSink Capture;
	HOST_LOG(LogOpen, Log, TEXT("kept"));
	HOST_LOG(LogOpen, Verbose, TEXT("too much"));
	HOST_LOG(LogLocal, Warning, TEXT("too much"));
	EXPECT_EQ(Capture.Messages(TEXT("LogOpen")), (TArray<FString>{TEXT("kept")}));
	EXPECT_EQ(Capture.Records().Num(), 1);
	EXPECT_TRUE(HOST_LOG_ACTIVE(LogOpen, Log));
	EXPECT_FALSE(HOST_LOG_ACTIVE(LogOpen, Verbose));
}

TEST(Log, VerbosityIsChangedWhileTheProgramRuns)
{
	const FCaptureLogSink Capture;
	LogOpen.SetVerbosity(ELogVerbosity::All);
	HOST_LOG(LogOpen, VeryVerbose, TEXT("now"));
	EXPECT_TRUE(HOST_LOG_ACTIVE(LogOpen, VeryVerbose));
	LogOpen.SetVerbosity(ELogVerbosity::NoLogging);
	HOST_LOG(LogOpen, Error, TEXT("never"));
	EXPECT_FALSE(HOST_LOG_ACTIVE(LogOpen, Error));
	LogOpen.SetVerbosity(LogOpen.GetDefaultVerbosity());
	EXPECT_EQ(Capture.Messages(TEXT("LogOpen")), (TArray<FString>{TEXT("now")}));
}

TEST(Log, CompiledInVerbosityIsTheUpperLimit)
{
	const FCaptureLogSink Capture;
	EXPECT_EQ(LogCut.GetVerbosity(), ELogVerbosity::Warning);
	LogCut.SetVerbosity(ELogVerbosity::All);
	EXPECT_EQ(LogCut.GetVerbosity(), ELogVerbosity::Warning);
	int32 Evaluations = 0;
	HOST_LOG(LogCut, Log, TEXT("%d"), Evaluate(Evaluations));
	HOST_LOG(LogCut, Warning, TEXT("%d"), Evaluate(Evaluations));
	EXPECT_EQ(Evaluations, 1);
	EXPECT_EQ(Capture.Records().Num(), 1);
	static_assert(!std::is_same_v<decltype(LogCut), decltype(LogOpen)>);
	EXPECT_FALSE(HOST_LOG_ACTIVE(LogCut, Log));
}

TEST(Log, ArgumentsOfASuppressedLineAreNotEvaluated)
{
	int32 Evaluations = 0;
	HOST_LOG(LogOpen, Verbose, TEXT("%d"), Evaluate(Evaluations));
	EXPECT_EQ(Evaluations, 0);
}

TEST(Log, FatalLineIsWrittenAndThenStopsTheProgram)
{
	const FThrowingAssertions Throwing;
	const FCaptureLogSink Capture;
	LogOpen.SetVerbosity(ELogVerbosity::NoLogging);
	try
	{
		HOST_LOG(LogOpen, Fatal, TEXT("lost %s"), TEXT("everything"));
		FAIL() << "a fatal line came back";
	}
	catch (const FAssertionFailed& Failure)
	{
		EXPECT_EQ(Failure.Message(), TEXT("lost everything"));
		EXPECT_EQ(Failure.Expression(), "");
	}
	LogOpen.SetVerbosity(LogOpen.GetDefaultVerbosity());
	EXPECT_EQ(Capture.Messages(TEXT("LogOpen")), (TArray<FString>{TEXT("lost everything")}));
}

TEST(LogSink, IsWrittenToOnceHoweverOftenItWasAdded)
{
	FCaptureLogSink Capture;
	FLog::AddSink(&Capture);
	HOST_LOG(LogOpen, Log, TEXT("one"));
	EXPECT_EQ(Capture.Records().Num(), 1);
	FLog::RemoveSink(&Capture);
	FLog::RemoveSink(&Capture);
	HOST_LOG(LogOpen, Log, TEXT("two"));
	EXPECT_EQ(Capture.Records().Num(), 1);
}

TEST(LogSink, LeavesTheLogWhenItIsDestroyed)
{
	auto Capture = std::make_unique<FCaptureLogSink>();
	Capture.reset();
	const FCaptureLogSink Other;
	HOST_LOG(LogOpen, Log, TEXT("to whom it may concern"));
	EXPECT_EQ(Other.Records().Num(), 1);
}

TEST(LogSink, MayLogAndLeaveWhileItIsWrittenTo)
{
	class FRestlessSink : public ILogSink
	{
	public:
		void Write(const FLogRecord&) override
		{
			FLog::RemoveSink(this);
			HOST_LOG(LogOpen, Warning, TEXT("from inside"));
		}
	};
	FRestlessSink Restless;
	FLog::AddSink(&Restless);
	const FCaptureLogSink Capture;
	HOST_LOG(LogOpen, Log, TEXT("from outside"));
	EXPECT_EQ(Capture.Messages(TEXT("LogOpen")), (TArray<FString>{TEXT("from inside"), TEXT("from outside")}));
}

TEST(TerminalLogSink, WritesOneLineOfUtf8)
{
	const FLogRecord Record{TEXT("LogOpen"), ELogVerbosity::Warning, TEXT("Baked 2 mesh(es) \u00b7 1 new")};
	EXPECT_EQ(
		WrittenToATerminal(Record, ELogVerbosity::Display), "LogOpen: Warning: Baked 2 mesh(es) \xc2\xb7 1 new\n");
}

TEST(TerminalLogSink, LeavesOutWhatIsBeyondItsLimit)
{
	const FLogRecord Record{TEXT("LogOpen"), ELogVerbosity::Log, TEXT("chatter")};
	EXPECT_EQ(WrittenToATerminal(Record, ELogVerbosity::Display), "");
	EXPECT_EQ(WrittenToATerminal(Record, ELogVerbosity::Log), "LogOpen: Log: chatter\n");
}

TEST(TerminalLogSink, EscapesControlCharacters)
{
	const FLogRecord Record{TEXT("LogOpen"), ELogVerbosity::Error, TEXT("a\x1b[2Jb\x9b\tc\r\x7f")};
	EXPECT_EQ(WrittenToATerminal(Record, ELogVerbosity::All), "LogOpen: Error: a\\x1b[2Jb\\x9b\tc\\x0d\\x7f\n");
}
