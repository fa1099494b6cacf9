// SPDX-License-Identifier: MIT
#include <CLI/CLI.hpp>

#include "CommandDocuments.h"

#include <sstream>

namespace
{
/// Text as the man macros take it: no line begins with a control character, and dashes stay dashes.
std::string Escaped(const std::string& Text)
{
	std::string Result;
	bool bLineBegins = true;
	for (const char Character : Text)
	{
		if (bLineBegins && (Character == '.' || Character == '\''))
		{
			Result += "\\&";
		}
		Result += Character == '-' ? "\\-" : Character == '\\' ? "\\e" : std::string(1, Character);
		bLineBegins = Character == '\n';
	}
	return Result;
}

std::string OptionTerm(const CLI::Option& Option)
{
	std::string Term = Option.get_name(false, true);
	const bool bTakesValue = Option.get_items_expected_max() > 0;
	if (bTakesValue && !Option.get_positional())
	{
		Term += " " + Option.get_type_name();
	}
	return Term;
}

void WriteOptions(std::ostream& Out, const CLI::App& Command)
{
	for (const CLI::Option* Option : Command.get_options())
	{
		if (!Option->get_group().empty())
		{
			Out << ".TP\n.B " << Escaped(OptionTerm(*Option)) << "\n" << Escaped(Option->get_description()) << "\n";
		}
	}
}
} // namespace

std::string CommandDocuments::ManPage(const CLI::App& App)
{
	std::ostringstream Out;
	Out << ".TH TARVIN 1\n.SH NAME\ntarvin \\- " << Escaped(App.get_description()) << "\n.SH SYNOPSIS\n";
	for (const CLI::App* Command : App.get_subcommands({}))
	{
		Out << ".B tarvin " << Command->get_name() << "\n[options] ...\n.br\n";
	}
	Out << ".SH COMMANDS\n";
	for (const CLI::App* Command : App.get_subcommands({}))
	{
		Out << ".SS " << Command->get_name() << "\n" << Escaped(Command->get_description()) << "\n";
		WriteOptions(Out, *Command);
		if (!Command->get_footer().empty())
		{
			Out << ".PP\n.nf\n" << Escaped(Command->get_footer()) << "\n.fi\n";
		}
	}
	Out << ".SH EXIT STATUS\n.nf\n" << Escaped(App.get_footer()) << "\n.fi\n";
	return Out.str();
}
