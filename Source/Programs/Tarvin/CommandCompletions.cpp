// SPDX-License-Identifier: MIT
#include <CLI/CLI.hpp>

#include "CommandCompletions.h"

#include <sstream>

namespace
{
using EKind = FArgumentValue::EKind;

/// An option of a command as shells see it.
struct FOption
{
	std::vector<std::string> Names; ///< with their dashes; of a positional argument, its name in capitals
	std::string Description;
	bool bPositional = false;
	bool bTakesValue = false;
	bool bMany = false;
	FArgumentValue Value;
};

std::vector<FOption> OptionsOf(const CLI::App& Command, const FArgumentValues& Values)
{
	std::vector<FOption> Options;
	for (const CLI::Option* Source : Command.get_options())
	{
		if (Source->get_group().empty())
		{
			continue;
		}
		FOption Option;
		Option.bPositional = Source->get_positional();
		Option.bTakesValue = Source->get_items_expected_max() > 0;
		Option.bMany = Source->get_items_expected_max() > 1;
		Option.Description = Source->get_description();
		for (const std::string& Name : Source->get_snames())
		{
			Option.Names.push_back("-" + Name);
		}
		for (const std::string& Name : Source->get_lnames())
		{
			Option.Names.push_back("--" + Name);
		}
		if (Option.bPositional)
		{
			Option.Names = {Source->get_name(true)};
			Option.Value.Kind = EKind::File;
		}
		const auto Known = Values.find(Option.Names.back());
		Option.Value = Known == Values.end() ? Option.Value : Known->second;
		Options.push_back(std::move(Option));
	}
	return Options;
}

std::string Joined(const std::vector<std::string>& Words, const char* Between = " ")
{
	std::string All;
	for (const std::string& Word : Words)
	{
		All += (All.empty() ? "" : Between) + Word;
	}
	return All;
}

/// The names of the commands, or of the options of one.
std::string NamesOf(const CLI::App& Command)
{
	std::vector<std::string> Names;
	for (const FOption& Option : OptionsOf(Command, {}))
	{
		if (!Option.bPositional)
		{
			Names.push_back(Option.Names.back());
		}
	}
	return Joined(Names);
}

std::vector<const CLI::App*> CommandsOf(const CLI::App& App)
{
	return App.get_subcommands([](const CLI::App*) { return true; });
}

/// In single quotes; a quote ends them, stands by itself, and opens them again.
std::string Quoted(const std::string& Text)
{
	std::string Result = "'";
	for (const char Character : Text)
	{
		Result += Character == '\'' ? std::string("'\\''") : std::string(1, Character);
	}
	return Result + "'";
}

/// With a backslash before each of `Special`.
std::string Escaped(const std::string& Text, const std::string& Special)
{
	std::string Result;
	for (const char Character : Text)
	{
		Result += (Special.find(Character) == std::string::npos ? "" : "\\") + std::string(1, Character);
	}
	return Result;
}

/// The action that completes a value, in the language of zsh's _arguments.
std::string ZshAction(const FArgumentValue& Value)
{
	switch (Value.Kind)
	{
	case EKind::Words:
		return "(" + Joined(Value.Words) + ")";
	case EKind::File:
		return "_files";
	case EKind::Folder:
		return "_path_files -/";
	default:
		return " ";
	}
}

std::string ZshArgument(const FOption& Option)
{
	const std::string Description = "[" + Escaped(Option.Description, "[]:\\") + "]";
	const std::string Message = ":" + Escaped(Escaped(Option.Names.back(), ":"), "\\") + ":" + ZshAction(Option.Value);
	if (Option.bPositional)
	{
		return Quoted((Option.bMany ? "*" : "") + Message);
	}
	const std::string Value = Option.bTakesValue ? Message : std::string();
	if (Option.Names.size() == 1)
	{
		return Quoted((Option.bMany ? "*" : "") + Option.Names[0] + Description + Value);
	}
	return "'(" + Joined(Option.Names) + ")'{" + Joined(Option.Names, ",") + "}" + Quoted(Description + Value);
}

std::string FishValue(const FArgumentValue& Value)
{
	switch (Value.Kind)
	{
	case EKind::Words:
		return " -x -a " + Quoted(Joined(Value.Words));
	case EKind::File:
		return " -r -F";
	case EKind::Folder:
		return " -x -a '(__fish_complete_directories)'";
	default:
		return " -x";
	}
}

std::string FishOption(const std::string& Condition, const FOption& Option)
{
	std::string Line = "complete -c tarvin -n " + Quoted(Condition);
	if (Option.bPositional)
	{
		return Line + (Option.Value.Kind == EKind::Words ? " -a " + Quoted(Joined(Option.Value.Words)) : " -F") + "\n";
	}
	for (const std::string& Name : Option.Names)
	{
		Line += Name.starts_with("--") ? " -l " + Name.substr(2) : " -s " + Name.substr(1);
	}
	return Line + (Option.bTakesValue ? FishValue(Option.Value) : std::string()) + " -d " + Quoted(Option.Description) +
		   "\n";
}
} // namespace

std::string CommandCompletions::Bash(const CLI::App& App, const FArgumentValues& Values)
{
	std::ostringstream Out;
	std::vector<std::string> Commands;
	Out << "# bash completion for tarvin\n_tarvin()\n{\n\tlocal Word=${COMP_WORDS[COMP_CWORD]} "
		   "Before=${COMP_WORDS[COMP_CWORD-1]} Words=\n\tcase $Before in\n";
	for (const CLI::App* Command : CommandsOf(App))
	{
		Commands.push_back(Command->get_name());
		for (const FOption& Option : OptionsOf(*Command, Values))
		{
			// The words of a positional argument follow the command itself.
			const std::string After = Option.bPositional ? Command->get_name() : Joined(Option.Names, "|");
			if (Option.Value.Kind == EKind::Words)
			{
				Out << "\t\t" << After << ") COMPREPLY=($(compgen -W " << Quoted(Joined(Option.Value.Words))
					<< " -- \"$Word\")); return ;;\n";
			}
			else if (Option.Value.Kind == EKind::Folder)
			{
				Out << "\t\t" << After << ") COMPREPLY=($(compgen -d -- \"$Word\")); return ;;\n";
			}
		}
	}
	Out << "\tesac\n\tcase ${COMP_WORDS[1]-} in\n";
	for (const CLI::App* Command : CommandsOf(App))
	{
		Out << "\t\t" << Command->get_name() << ") Words='" << NamesOf(*Command) << "' ;;\n";
	}
	Out << "\tesac\n\tif ((COMP_CWORD == 1)); then\n\t\tCOMPREPLY=($(compgen -W '" << Joined(Commands) << " "
		<< NamesOf(App)
		<< "' -- \"$Word\"))\n"
		   "\telif [[ $Word == -* ]]; then\n\t\tCOMPREPLY=($(compgen -W \"$Words\" -- \"$Word\"))\n"
		   "\telse\n\t\tCOMPREPLY=($(compgen -f -- \"$Word\"))\n\tfi\n}\ncomplete -o filenames -F _tarvin tarvin\n";
	return Out.str();
}

std::string CommandCompletions::Zsh(const CLI::App& App, const FArgumentValues& Values)
{
	std::ostringstream Out;
	Out << "#compdef tarvin\n# zsh completion for tarvin\n_tarvin()\n{\n"
		   "\tlocal context state state_descr line\n\ttypeset -A opt_args\n\tlocal -a Commands\n\tCommands=(\n";
	for (const CLI::App* Command : CommandsOf(App))
	{
		Out << "\t\t" << Quoted(Command->get_name() + ":" + Escaped(Command->get_description(), ":\\")) << "\n";
	}
	Out << "\t)\n\t_arguments -C";
	for (const FOption& Option : OptionsOf(App, Values))
	{
		Out << " \\\n\t\t" << ZshArgument(Option);
	}
	Out << " \\\n\t\t'1: :->Command' '*:: :->Arguments' && return\n\tcase $state in\n"
		   "\tCommand) _describe -t commands command Commands ;;\n\tArguments)\n\t\tcase $words[1] in\n";
	for (const CLI::App* Command : CommandsOf(App))
	{
		Out << "\t\t" << Command->get_name() << ") _arguments -S";
		for (const FOption& Option : OptionsOf(*Command, Values))
		{
			Out << " \\\n\t\t\t" << ZshArgument(Option);
		}
		Out << " ;;\n";
	}
	Out << "\t\tesac ;;\n\tesac\n}\n"
		   "# Read by compinit, the file is the function's own body; sourced, it names it.\n"
		   "if [[ $funcstack[1] == _tarvin ]]; then _tarvin \"$@\"; else compdef _tarvin tarvin; fi\n";
	return Out.str();
}

std::string CommandCompletions::Fish(const CLI::App& App, const FArgumentValues& Values)
{
	std::ostringstream Out;
	Out << "# fish completion for tarvin\ncomplete -c tarvin -f\n";
	for (const FOption& Option : OptionsOf(App, Values))
	{
		Out << FishOption("__fish_use_subcommand", Option);
	}
	for (const CLI::App* Command : CommandsOf(App))
	{
		Out << "complete -c tarvin -n __fish_use_subcommand -a " << Command->get_name() << " -d "
			<< Quoted(Command->get_description()) << "\n";
		for (const FOption& Option : OptionsOf(*Command, Values))
		{
			std::string Condition = "__fish_seen_subcommand_from " + Command->get_name();
			if (Option.bPositional && Option.Value.Kind == EKind::Words)
			{
				Condition += "; and not __fish_seen_subcommand_from " + Joined(Option.Value.Words);
			}
			Out << FishOption(Condition, Option);
		}
	}
	return Out.str();
}
