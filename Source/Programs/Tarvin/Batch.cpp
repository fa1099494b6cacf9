// SPDX-License-Identifier: MIT
#include "Batch.h"

#include "ExitCode.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace
{
/// A child process and the ends of the pipes that it writes to.
struct FChild
{
	pid_t Process = -1;
	int Output = -1;
	int Errors = -1;
	std::size_t Index = 0;
};

bool Start(const std::vector<std::string>& Arguments, FChild& Child)
{
	int Output[2];
	int Errors[2];
	if (pipe2(Output, O_CLOEXEC) != 0)
	{
		return false;
	}
	if (pipe2(Errors, O_CLOEXEC) != 0)
	{
		close(Output[0]);
		close(Output[1]);
		return false;
	}
	std::vector<char*> Argv;
	static char Name[] = "tarvin";
	Argv.push_back(Name);
	for (const std::string& Argument : Arguments)
	{
		Argv.push_back(const_cast<char*>(Argument.c_str()));
	}
	Argv.push_back(nullptr);
	posix_spawn_file_actions_t Actions;
	posix_spawn_file_actions_init(&Actions);
	posix_spawn_file_actions_adddup2(&Actions, Output[1], STDOUT_FILENO);
	posix_spawn_file_actions_adddup2(&Actions, Errors[1], STDERR_FILENO);
	posix_spawn_file_actions_addopen(&Actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
	const int Failed = posix_spawn(&Child.Process, "/proc/self/exe", &Actions, nullptr, Argv.data(), environ);
	posix_spawn_file_actions_destroy(&Actions);
	close(Output[1]);
	close(Errors[1]);
	Child.Output = Output[0];
	Child.Errors = Errors[0];
	if (Failed != 0)
	{
		close(Output[0]);
		close(Errors[0]);
	}
	return Failed == 0;
}

/// Moves what is there to read into `Text`; false, closing the pipe, at its end.
bool Drain(int& Pipe, std::string& Text)
{
	char Buffer[4096];
	const ssize_t Num = read(Pipe, Buffer, sizeof(Buffer));
	if (Num > 0)
	{
		Text.append(Buffer, std::size_t(Num));
		return true;
	}
	if (Num < 0 && errno == EINTR)
	{
		return true;
	}
	close(Pipe);
	Pipe = -1;
	return false;
}

void Finish(const FChild& Child, FChildResult& Result)
{
	int Status = 0;
	while (waitpid(Child.Process, &Status, 0) < 0 && errno == EINTR)
	{
	}
	if (WIFEXITED(Status))
	{
		Result.ExitCode = WEXITSTATUS(Status);
		return;
	}
	Result.ExitCode = ExitUnreadable;
	Result.Errors += "The work ended by signal " + std::to_string(WTERMSIG(Status)) + ".\n";
}

/// Reads from all running children until one of them is done.
void ReadSome(std::vector<FChild>& Running, std::vector<FChildResult>& Results)
{
	std::vector<pollfd> Polled;
	for (const FChild& Child : Running)
	{
		Polled.push_back({Child.Output, POLLIN, 0});
		Polled.push_back({Child.Errors, POLLIN, 0});
	}
	poll(Polled.data(), Polled.size(), -1);
	for (std::size_t Index = 0; Index < Running.size(); ++Index)
	{
		FChild& Child = Running[Index];
		FChildResult& Result = Results[Child.Index];
		if (Child.Output >= 0 && Polled[2 * Index].revents != 0)
		{
			Drain(Child.Output, Result.Output);
		}
		if (Child.Errors >= 0 && Polled[2 * Index + 1].revents != 0)
		{
			Drain(Child.Errors, Result.Errors);
		}
	}
	std::erase_if(Running,
		[&](const FChild& Child)
		{
			const bool bDone = Child.Output < 0 && Child.Errors < 0;
			if (bDone)
			{
				Finish(Child, Results[Child.Index]);
			}
			return bDone;
		});
}
} // namespace

std::vector<FChildResult> RunChildren(const std::vector<std::vector<std::string>>& ArgumentLists, int Jobs)
{
	std::vector<FChildResult> Results(ArgumentLists.size());
	std::vector<FChild> Running;
	for (std::size_t Next = 0; Next < ArgumentLists.size() || !Running.empty();)
	{
		if (Next < ArgumentLists.size() && Running.size() < std::size_t(Jobs))
		{
			FChild Child;
			Child.Index = Next;
			if (Start(ArgumentLists[Next], Child))
			{
				Running.push_back(Child);
			}
			else
			{
				Results[Next] = {
					ExitUnreadable, "", std::string("Cannot start the work: ") + std::strerror(errno) + ".\n"};
			}
			++Next;
			continue;
		}
		ReadSome(Running, Results);
	}
	return Results;
}
