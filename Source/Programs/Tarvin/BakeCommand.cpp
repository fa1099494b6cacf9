// SPDX-License-Identifier: MIT
#include "BakeJob.h"
#include "Batch.h"
#include "Commands.h"
#include "JsonReport.h"
#include "SceneIO/PrintableText.h"
#include "TextReport.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>

namespace
{
const char* CommandName(const FBakeOptions& Options)
{
	return Options.Command == ESceneCommand::SetPivot ? "pivot" : "bake";
}

std::string OutputFor(const FBakeOptions& Options, const std::string& Input)
{
	if (!Options.OutDir.empty())
	{
		return (std::filesystem::path(Options.OutDir) / std::filesystem::path(Input).filename()).string();
	}
	return Options.Out.empty() ? Input : Options.Out;
}

EExitCode RunOne(const FBakeOptions& Options)
{
	const FBakeReport Report = RunBakeJob(Options, Options.Inputs[0], OutputFor(Options, Options.Inputs[0]));
	if (Options.bJson)
	{
		std::puts(JsonAnswer(CommandName(Options), {ToJson(Report)}).c_str());
	}
	else if (Report.Error.empty())
	{
		std::fputs(ToText(Report, Options).c_str(), stdout);
	}
	if (!Report.Error.empty())
	{
		std::fprintf(stderr, "tarvin: %s\n", PrintableText(Report.Error, 2000).c_str());
	}
	else if (Report.Exit == ExitDeviation)
	{
		std::fprintf(
			stderr, "tarvin: %s: the picture has changed; see the deviation.\n", PrintableText(Report.Output).c_str());
	}
	return Report.Exit;
}

const char* PositionWord(ETarvinPivotPosition Position)
{
	return Position == ETarvinPivotPosition::WorldOrigin ? "world-origin" : nullptr;
}

/// The arguments with which this program works on one of several inputs.
std::vector<std::string> ArgumentsFor(const FBakeOptions& Options, const std::string& Input)
{
	static const std::map<ESharedAnswer, const char*> Answers = {{ESharedAnswer::Ask, "ask"},
		{ESharedAnswer::Duplicate, "duplicate"}, {ESharedAnswer::InPlace, "in-place"}, {ESharedAnswer::Skip, "skip"}};
	std::vector<std::string> Arguments = {CommandName(Options)};
	if (Options.Command == ESceneCommand::SetPivot)
	{
		const char* const Word = PositionWord(Options.Position);
		Arguments.push_back(Word ? Word : FString(TarvinPivot::GetPositionName(Options.Position)).ToUtf8());
	}
	Arguments.insert(Arguments.end(), {"-o", OutputFor(Options, Input), "--shared", Answers.at(Options.Shared)});
	for (const std::string& Pattern : Options.Select)
	{
		Arguments.insert(Arguments.end(), {"--select", Pattern});
	}
	const std::pair<bool, const char*> Flags[] = {{Options.bDryRun, "--dry-run"}, {Options.bJson, "--json"},
		{Options.bVerify, "--verify"}, {Options.bStrict, "--strict"}};
	for (const auto& [bSet, Flag] : Flags)
	{
		if (bSet)
		{
			Arguments.push_back(Flag);
		}
	}
	Arguments.insert(Arguments.end(), {"--", Input});
	return Arguments;
}

/// What stands between the brackets of "results" in a child's answer.
std::string ResultsOf(const std::string& Answer)
{
	const std::string Key = "\"results\":[";
	const std::size_t Begin = Answer.find(Key);
	const std::size_t End = Answer.rfind("]}");
	return Begin == std::string::npos || End == std::string::npos
			   ? std::string()
			   : Answer.substr(Begin + Key.size(), End - Begin - Key.size());
}

EExitCode RunSeveral(const FBakeOptions& Options)
{
	std::map<std::string, std::string> InputOfOutput;
	std::vector<std::vector<std::string>> ArgumentLists;
	for (const std::string& Input : Options.Inputs)
	{
		const auto [Other, bNew] = InputOfOutput.emplace(OutputFor(Options, Input), Input);
		if (!bNew)
		{
			std::fprintf(stderr, "tarvin: '%s' and '%s' would be written to the same file '%s'.\n",
				PrintableText(Other->second).c_str(), PrintableText(Input).c_str(),
				PrintableText(Other->first).c_str());
			return ExitUsage;
		}
		ArgumentLists.push_back(ArgumentsFor(Options, Input));
	}
	int Worst = ExitDone;
	std::vector<std::string> Results;
	for (const FChildResult& Child : RunChildren(ArgumentLists, Options.Jobs))
	{
		Worst = std::max(Worst, Child.ExitCode);
		if (Options.bJson)
		{
			const std::string Result = ResultsOf(Child.Output);
			if (!Result.empty())
			{
				Results.push_back(Result);
			}
		}
		else
		{
			std::fputs(Child.Output.c_str(), stdout);
		}
		std::fputs(Child.Errors.c_str(), stderr);
	}
	if (Options.bJson)
	{
		std::puts(JsonAnswer(CommandName(Options), Results).c_str());
	}
	return EExitCode(Worst);
}
} // namespace

EExitCode RunBake(const FBakeOptions& Options)
{
	if (!Options.OutDir.empty() && !Options.bDryRun)
	{
		std::error_code Failure;
		std::filesystem::create_directories(Options.OutDir, Failure);
		if (Failure)
		{
			std::fprintf(stderr, "tarvin: Cannot make the folder '%s': %s.\n", PrintableText(Options.OutDir).c_str(),
				Failure.message().c_str());
			return ExitUnwritable;
		}
	}
	return Options.Inputs.size() == 1 ? RunOne(Options) : RunSeveral(Options);
}
