// SPDX-License-Identifier: MIT
#include "Slate/TerminalStream.h"

#include "Core/Log.h"

#include <algorithm>
#include <cerrno>

#include <sys/ioctl.h>
#include <unistd.h>

namespace
{
// More than anybody answers; what follows in the line is dropped, so that no input makes us grow without end.
constexpr std::size_t MaxLineLength = 4096;

// A narrower terminal would break words everywhere, a wider line is hard to read.
constexpr int32 MinWidth = 20;
constexpr int32 MaxWidth = 100;
constexpr int32 UnknownWidth = 80;

/// Takes the next line of at most `Width` characters off the front of `Rest`, at a blank where there is one.
FString TakeLine(FString& Rest, int32 Width)
{
	if (Rest.Len() <= Width)
	{
		return std::exchange(Rest, FString());
	}
	int32 Blank = INDEX_NONE;
	Rest.Left(Width + 1).FindLastChar(TEXT(' '), Blank);
	const int32 Length = Blank > 0 ? Blank : Width;
	const FString Line = Rest.Left(Length);
	Rest = Rest.RightChop(Blank > 0 ? Length + 1 : Length);
	return Line;
}
}

FTerminalStream::FTerminalStream(int InInput, int InOutput)
	: Input(InInput)
	, Output(InOutput)
	, bTerminal(::isatty(InOutput) == 1)
{
}

void FTerminalStream::Write(const FString& Text)
{
	WriteBytes(EscapeControlCharacters(Text).ToUtf8());
}

void FTerminalStream::WriteWrapped(const FString& Text, int32 Indent)
{
	TArray<FString> Paragraphs;
	EscapeControlCharacters(Text).ParseIntoArray(Paragraphs, TEXT("\n"), false);
	const FString Margin = FString::ChrN(Indent, TEXT(' '));
	const int32 Width = std::max(GetWidth() - Indent, MinWidth);
	for (FString& Rest : Paragraphs)
	{
		do
		{
			const FString Line = TakeLine(Rest, Width);
			WriteBytes(((Line.IsEmpty() ? FString() : Margin + Line) + TEXT('\n')).ToUtf8());
		} while (!Rest.IsEmpty());
	}
}

void FTerminalStream::ReturnCarriage()
{
	WriteBytes("\r");
}

bool FTerminalStream::ReadLine(FString& OutLine)
{
	// Byte by byte, so that what follows the line stays for whoever reads the input next.
	std::string Line;
	bool bAny = false;
	for (;;)
	{
		char Byte = 0;
		const ssize_t Count = ::read(Input, &Byte, 1);
		if (Count < 0 && errno == EINTR)
		{
			continue;
		}
		if (Count <= 0 || Byte == '\n')
		{
			OutLine = FString::FromUtf8(Line);
			return Count > 0 || bAny;
		}
		bAny = true;
		if (Line.size() < MaxLineLength)
		{
			Line += Byte;
		}
	}
}

int32 FTerminalStream::GetWidth() const
{
	winsize Size{};
	if (bTerminal && ::ioctl(Output, TIOCGWINSZ, &Size) == 0 && Size.ws_col > 0)
	{
		return std::clamp(static_cast<int32>(Size.ws_col), MinWidth, MaxWidth);
	}
	return UnknownWidth;
}

void FTerminalStream::WriteBytes(const std::string& Bytes)
{
	std::size_t Written = 0;
	while (Written < Bytes.size())
	{
		const ssize_t Count = ::write(Output, Bytes.data() + Written, Bytes.size() - Written);
		if (Count < 0 && errno != EINTR)
		{
			return;
		}
		Written += Count > 0 ? static_cast<std::size_t>(Count) : 0;
	}
}
