// SPDX-License-Identifier: MIT
#include "PseudoTerminal.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <pty.h>
#include <unistd.h>

FPseudoTerminal::FPseudoTerminal(std::deque<std::string> InAnswers, int Columns)
	: Answers(std::move(InAnswers))
{
	winsize Size{};
	Size.ws_col = static_cast<unsigned short>(Columns);
	Size.ws_row = 25;
	if (::openpty(&Master, &Slave, nullptr, nullptr, &Size) != 0)
	{
		throw std::system_error(errno, std::generic_category(), "openpty");
	}
	Watcher = std::thread([this] { Watch(); });
}

FPseudoTerminal::~FPseudoTerminal()
{
	Finish();
	::close(Master);
}

std::string FPseudoTerminal::Finish()
{
	if (Slave >= 0)
	{
		::close(std::exchange(Slave, -1));
		Watcher.join();
	}
	return Screen;
}

void FPseudoTerminal::Watch()
{
	char Bytes[256];
	// Reading fails once the program's side is closed and everything that it wrote was read.
	for (ssize_t Count = 0; (Count = ::read(Master, Bytes, sizeof Bytes)) > 0;)
	{
		Screen.append(Bytes, static_cast<std::size_t>(Count));
		if (Screen.ends_with("]: ") && !Answers.empty())
		{
			const std::string Answer = std::exchange(Answers.front(), {});
			Answers.pop_front();
			if (::write(Master, Answer.data(), Answer.size()) != static_cast<ssize_t>(Answer.size()))
			{
				return;
			}
		}
	}
}
