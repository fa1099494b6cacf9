// SPDX-License-Identifier: MIT
#pragma once

#include "BakeOptions.h"
#include "Core/Log.h"
#include "Editor/SlowTaskProgress.h"
#include "Slate/TerminalBackend.h"

/// The host for as long as the program works: an editor engine with an empty world, and a widget application on the
/// terminal.
class FHostSession
{
public:
	FHostSession();
	~FHostSession();
	FHostSession(const FHostSession&) = delete;
	FHostSession& operator=(const FHostSession&) = delete;

	/// Has questions answered as the option says, or by the user.
	void AnswerWith(ESharedAnswer Answer);

	/// The warnings since the last call.
	std::vector<std::string> TakeWarnings();

private:
	/// Shows what the program has no use for nowhere: its report says it.
	class FQuietTerminal;

	TSharedPtr<FQuietTerminal> Terminal;
	FSlowTaskProgress Progress;
	FCaptureLogSink Log;
};
