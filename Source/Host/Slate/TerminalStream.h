// SPDX-License-Identifier: MIT
#pragma once

#include "Core/String.h"

/// Lines of text to and from a pair of file descriptors, which are not owned. Written as UTF-8, control characters
/// escaped.
class FTerminalStream
{
public:
	FTerminalStream(int InInput, int InOutput);

	/// Writes text as it is, apart from control characters other than line breaks. Write errors are ignored.
	void Write(const FString& Text);

	/// Writes text broken into lines of at most Width characters at blanks, each indented by `Indent` blanks.
	void WriteWrapped(const FString& Text, int32 Indent = 0);

	/// Puts the cursor at the start of its line.
	void ReturnCarriage();

	/// Reads up to the next line break, without it. A last line without one counts. False at the end of the input.
	bool ReadLine(FString& OutLine);

	/// Whether the output is a terminal.
	bool IsTerminal() const { return bTerminal; }

	/// The number of characters in a line: the terminal's, at most 100; 80 where it is not known.
	int32 GetWidth() const;

private:
	void WriteBytes(const std::string& Bytes);

	int Input;
	int Output;
	bool bTerminal;
};
