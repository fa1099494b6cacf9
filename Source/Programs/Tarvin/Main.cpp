// SPDX-License-Identifier: MIT
#include <CLI/CLI.hpp>

#include "CommandCompletions.h"
#include "CommandDocuments.h"
#include "Commands.h"
#include "SceneIO/PrintableText.h"

#include <csignal>
#include <map>
#include <unistd.h>

// The command line library has a function of that name.
#undef check

namespace
{
constexpr const char* BakeExamples = R"(
Examples:
  tarvin bake yard.gltf -o baked.gltf --verify
  tarvin bake yard.glb --select 'Crate*' 'Shed/*' --shared duplicate -o out.glb
  tarvin bake *.glb --out-dir baked --jobs 4 --json
Without -o the scene is written over the input, in one step.)";

constexpr const char* PivotExamples = R"(
Examples:
  tarvin pivot bottom yard.gltf -o yard-on-floor.gltf
  tarvin pivot world-origin yard.glb --select Statue -o out.glb)";

const std::map<std::string, ESharedAnswer> Answers = {{"ask", ESharedAnswer::Ask},
	{"duplicate", ESharedAnswer::Duplicate}, {"in-place", ESharedAnswer::InPlace}, {"skip", ESharedAnswer::Skip}};

const std::map<std::string, ETarvinPivotPosition> Positions = {{"center", ETarvinPivotPosition::Center},
	{"bottom", ETarvinPivotPosition::Bottom}, {"top", ETarvinPivotPosition::Top}, {"left", ETarvinPivotPosition::Left},
	{"right", ETarvinPivotPosition::Right}, {"front", ETarvinPivotPosition::Front},
	{"back", ETarvinPivotPosition::Back}, {"world-origin", ETarvinPivotPosition::WorldOrigin}};

template <typename T>
FArgumentValue OneOf(const std::map<std::string, T>& Words)
{
	FArgumentValue Value{FArgumentValue::EKind::Words, {}};
	for (const auto& [Word, Meaning] : Words)
	{
		Value.Words.push_back(Word);
	}
	return Value;
}

/// One of the documents that the build installs; see CommandDocuments and CommandCompletions.
std::string GenerateDocument(const CLI::App& App, const std::string& Kind)
{
	const FArgumentValues Values = {{"--shared", OneOf(Answers)}, {"POSITION", OneOf(Positions)},
		{"--out", {FArgumentValue::EKind::File, {}}}, {"--out-dir", {FArgumentValue::EKind::Folder, {}}}};
	return Kind == "man"    ? CommandDocuments::ManPage(App)
		   : Kind == "bash" ? CommandCompletions::Bash(App, Values)
		   : Kind == "zsh"  ? CommandCompletions::Zsh(App, Values)
							: CommandCompletions::Fish(App, Values);
}

/// What the command line gives as words.
struct FWords
{
	FBakeOptions Bake;
	std::string Shared;
	std::string Position;
	bool bAll = false;
	std::vector<std::string> Scenes;
	bool bJson = false;
};

void AddBakeOptions(CLI::App& Command, FWords& Words)
{
	Command.add_option("IN", Words.Bake.Inputs, "Scenes to work on (.gltf or .glb)")->required();
	CLI::Option* const Out =
		Command.add_option("-o,--out", Words.Bake.Out, "Where to write the scene; may be the input itself");
	Command.add_option("--out-dir", Words.Bake.OutDir, "Folder to write scenes to, under their own names")
		->excludes(Out);
	CLI::Option* const All = Command.add_flag("--all", Words.bAll, "Work on all nodes that can be (the default)");
	Command
		.add_option("--select", Words.Bake.Select, "Work on nodes whose name, or path if it has a '/', matches GLOB")
		->type_name("GLOB")
		->allow_extra_args(true)
		->excludes(All);
	Command
		.add_option("--shared", Words.Shared,
			"Meshes that other nodes use too: ask, duplicate, in-place or skip (default: ask on a terminal, else "
			"duplicate)")
		->check(CLI::IsMember(Answers));
	Command.add_flag("--dry-run", Words.Bake.bDryRun, "Say what would be done, and write nothing");
	Command.add_flag("--json", Words.Bake.bJson, "Print one JSON object");
	Command.add_flag("--verify", Words.Bake.bVerify, "Compare what was written with the input, vertex by vertex");
	Command.add_flag("--strict", Words.Bake.bStrict, "End with 1 when a node was left out");
	Command.add_option("--jobs", Words.Bake.Jobs, "How many scenes to work on at a time")->check(CLI::Range(1, 256));
}

/// The line for words that make no command.
std::string UsageError(const CLI::App* App, const CLI::Error& Error)
{
	const std::vector<CLI::App*> Commands = App->get_subcommands();
	return "tarvin: " + PrintableText(Error.what(), 2000) + "; see `tarvin " +
		   (Commands.empty() ? "" : Commands[0]->get_name() + " ") + "--help`.\n";
}

/// Says what CLI11 cannot check by itself; empty when all is well.
std::string FindConflict(const FBakeOptions& Options, const std::string& Shared)
{
	if (Options.Inputs.size() > 1 && !Options.Out.empty())
	{
		return "-o names one file, but there are several inputs; use --out-dir";
	}
	if (Options.Inputs.size() > 1 && Shared == "ask")
	{
		return "--shared ask works on one input at a time";
	}
	return {};
}

EExitCode StartBake(FWords& Words)
{
	if (const std::string Conflict = FindConflict(Words.Bake, Words.Shared); !Conflict.empty())
	{
		std::fprintf(stderr, "tarvin: %s.\n", Conflict.c_str());
		return ExitUsage;
	}
	const bool bCanAsk = isatty(STDIN_FILENO) && isatty(STDERR_FILENO) && Words.Bake.Inputs.size() == 1;
	Words.Bake.Shared = !Words.Shared.empty() ? Answers.at(Words.Shared)
						: bCanAsk             ? ESharedAnswer::Ask
											  : ESharedAnswer::Duplicate;
	if (!Words.Position.empty())
	{
		Words.Bake.Command = ESceneCommand::SetPivot;
		Words.Bake.Position = Positions.at(Words.Position);
	}
	return RunBake(Words.Bake);
}
} // namespace

int main(int ArgumentCount, char** Arguments)
{
	// A reader that goes away (`tarvin info | head`) ends the program quietly, as it does other tools.
	std::signal(SIGPIPE, SIG_DFL);
	// A file that grows beyond a limit is a write that fails, and is reported as one.
	std::signal(SIGXFSZ, SIG_IGN);
	FWords Words;
	CLI::App App(
		"Bakes rotation, scale and pivots of placed nodes into the meshes of glTF 2.0 scenes, so that nothing moves.",
		"tarvin");
	App.require_subcommand(0, 1);
	App.failure_message(UsageError);
	App.set_version_flag("--version", "tarvin " TARVIN_VERSION);
	App.footer("Exit codes: 0 done; 1 done, but something was left unbaked; 2 usage; 3 input unreadable;\n"
			   "4 output unwritable; 5 --verify or diff found a deviation.\n"
			   "See `tarvin bake --help` for examples.");
	std::string Document;
	App.add_option("--generate", Document, "Print the manual page (man) or the completions of a shell")
		->check(CLI::IsMember({"man", "bash", "zsh", "fish"}))
		->group("");

	CLI::App* const Bake = App.add_subcommand("bake", "Fold rotation and scale of nodes into their meshes");
	AddBakeOptions(*Bake, Words);
	Bake->footer(BakeExamples);
	CLI::App* const Pivot = App.add_subcommand("pivot", "Move the pivots of meshes");
	Pivot->add_option("POSITION", Words.Position, "center, bottom, top, left, right, front, back or world-origin")
		->required()
		->check(CLI::IsMember(Positions));
	AddBakeOptions(*Pivot, Words);
	Pivot->footer(PivotExamples);
	CLI::App* const Info = App.add_subcommand("info", "List nodes and meshes, and what a bake would do with each");
	Info->add_option("IN", Words.Scenes, "The scene")->required()->expected(1);
	Info->add_flag("--json", Words.bJson, "Print one JSON object");
	CLI::App* const Diff = App.add_subcommand("diff", "Compare the pictures of two scenes, node by node");
	Diff->add_option("SCENES", Words.Scenes, "The two scenes")->required()->expected(2);
	Diff->add_flag("--json", Words.bJson, "Print one JSON object");
	CLI::App* const Demo = App.add_subcommand("demo", "Write the sample yard, which shows every case");
	Demo->add_option("OUT", Words.Scenes, "The scene to write (.gltf or .glb)")->required()->expected(1);

	try
	{
		App.parse(ArgumentCount, Arguments);
	}
	catch (const CLI::ParseError& Error)
	{
		return App.exit(Error) == 0 ? ExitDone : ExitUsage;
	}
	if (!Document.empty())
	{
		std::fputs(GenerateDocument(App, Document).c_str(), stdout);
		return ExitDone;
	}
	if (App.get_subcommands().empty())
	{
		std::fputs(App.help().c_str(), stderr);
		return ExitUsage;
	}
	if (Info->parsed())
	{
		return RunInfo(Words.Scenes[0], Words.bJson);
	}
	if (Diff->parsed())
	{
		return RunDiff(Words.Scenes[0], Words.Scenes[1], Words.bJson);
	}
	return Demo->parsed() ? RunDemo(Words.Scenes[0]) : StartBake(Words);
}
