// SPDX-License-Identifier: MIT
#include "TarvinProcess.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
[[noreturn]] void BecomeChild(std::vector<char*>& Argv, const std::string& Output, const std::string& Errors)
{
	const int In = open("/dev/null", O_RDONLY);
	const int Out = open(Output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
	const int Err = open(Errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
	dup2(In, STDIN_FILENO);
	dup2(Out, STDOUT_FILENO);
	dup2(Err, STDERR_FILENO);
	execvp(Argv[0], Argv.data());
	_exit(127);
}

std::filesystem::path NewFolder()
{
	std::string Name = (std::filesystem::temp_directory_path() / "tarvin-test-XXXXXX").string();
	EXPECT_NE(mkdtemp(Name.data()), nullptr);
	return Name;
}
} // namespace

FTarvinRun RunProgram(const std::vector<std::string>& CommandLine)
{
	std::vector<char*> Argv;
	for (const std::string& Word : CommandLine)
	{
		Argv.push_back(const_cast<char*>(Word.c_str()));
	}
	Argv.push_back(nullptr);
	const std::filesystem::path Folder = NewFolder();
	const std::string Output = (Folder / "out").string();
	const std::string Errors = (Folder / "err").string();
	const pid_t Child = fork();
	if (Child == 0)
	{
		BecomeChild(Argv, Output, Errors);
	}
	int Status = 0;
	while (waitpid(Child, &Status, 0) < 0 && errno == EINTR)
	{
	}
	FTarvinRun Run;
	Run.ExitCode = WIFEXITED(Status) ? WEXITSTATUS(Status) : -WTERMSIG(Status);
	Run.Output = ReadAll(Output);
	Run.Errors = ReadAll(Errors);
	std::filesystem::remove_all(Folder);
	return Run;
}

FTarvinRun RunTarvin(const std::vector<std::string>& Arguments)
{
	std::vector<std::string> CommandLine = {TARVIN_PROGRAM};
	CommandLine.insert(CommandLine.end(), Arguments.begin(), Arguments.end());
	return RunProgram(CommandLine);
}

std::string ReadAll(const std::filesystem::path& Path)
{
	std::ifstream File(Path, std::ios::binary);
	std::ostringstream Content;
	Content << File.rdbuf();
	return Content.str();
}

void WriteAll(const std::filesystem::path& Path, const std::string& Content)
{
	std::ofstream(Path, std::ios::binary) << Content;
}

FYardFixture::FYardFixture()
	: Folder(NewFolder())
{
	EXPECT_EQ(RunTarvin({"demo", Yard()}).ExitCode, 0);
}

FYardFixture::~FYardFixture()
{
	std::filesystem::remove_all(Folder);
}
