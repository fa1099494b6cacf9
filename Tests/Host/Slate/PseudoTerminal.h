// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <string>
#include <thread>

/// A user at a real terminal: a pseudo-terminal with somebody on its other side who waits for each prompt and types the
/// next answer, and who writes down all that appears on the screen.
class FPseudoTerminal
{
public:
	/// `Answers` are typed as they are ("1\n"; "\x04" is ctrl-D), one whenever a prompt stands at the end of the
	/// screen.
	FPseudoTerminal(std::deque<std::string> InAnswers, int Columns);
	~FPseudoTerminal();
	FPseudoTerminal(const FPseudoTerminal&) = delete;
	FPseudoTerminal& operator=(const FPseudoTerminal&) = delete;

	/// The program's side, for both input and output.
	int Descriptor() const { return Slave; }

	/// Hangs up on the program's side, and returns everything that was on the screen, as sent.
	std::string Finish();

	/// How many answers nobody asked for; known once finished.
	std::size_t AnswersLeft() const { return Answers.size(); }

private:
	void Watch();

	std::deque<std::string> Answers;
	std::string Screen;
	int Master = -1;
	int Slave = -1;
	std::thread Watcher;
};
