// SPDX-License-Identifier: MIT
#include "TextReport.h"

#include "SceneIO/PrintableText.h"

#include <array>
#include <charconv>
#include <map>

namespace
{
std::string Short(double Value)
{
	std::array<char, 32> Buffer;
	const auto End = std::to_chars(Buffer.data(), Buffer.data() + Buffer.size(), Value, std::chars_format::general, 3);
	return std::string(Buffer.data(), End.ptr);
}

std::string Count(int Number, const char* What)
{
	return std::to_string(Number) + " " + What;
}

/// One line for each reason, with the names of its nodes.
std::string ByReason(const FBakeReport& Report, ENodeOutcome Outcome, const char* Heading)
{
	constexpr std::size_t NamesShown = 8;
	std::map<std::string, std::vector<std::string>> Names;
	for (const FNodeReport& Node : Report.Nodes)
	{
		if (Node.Outcome == Outcome)
		{
			Names[Node.Reason].push_back(Node.Path);
		}
	}
	std::string Text;
	for (const auto& [Reason, Paths] : Names)
	{
		Text += std::string("  ") + Heading + ", " + PrintableText(Reason) + ":";
		for (std::size_t Index = 0; Index < Paths.size() && Index < NamesShown; ++Index)
		{
			Text += (Index == 0 ? " " : ", ") + PrintableText(Paths[Index]);
		}
		Text += Paths.size() > NamesShown ? " and " + std::to_string(Paths.size() - NamesShown) + " more\n" : "\n";
	}
	return Text;
}
} // namespace

std::string ToText(const FSceneDeviation& Deviation)
{
	std::string Text;
	for (const FNodeDeviation& Node : Deviation.Nodes)
	{
		if (!Node.Difference.empty())
		{
			Text +=
				"  node " + std::to_string(Node.Node) + " '" + PrintableText(Node.Name) + "' " + Node.Difference + "\n";
		}
	}
	for (const FPartDeviation& Part : Deviation.Parts)
	{
		if (!Part.Difference.empty())
		{
			Text += std::string("  the ") + Part.Part + " of node " + std::to_string(Part.Node) + " '" +
					PrintableText(Part.Name) + "' " + Part.Difference + "\n";
		}
	}
	return Text + "Largest deviation " + Short(Deviation.Position) + " of a size of " + Short(Deviation.Size) + " (" +
		   Short(Deviation.RelativePosition()) + "), normals " + Short(Deviation.Normal) + " rad, " +
		   std::to_string(Deviation.NumFlipped) + " triangle(s) turned over, " +
		   std::to_string(Deviation.NumDifferent) + " node(s) that cannot be compared" +
		   (Deviation.NumUnreadable > 0
				   ? ", " + std::to_string(Deviation.NumUnreadable) + " that neither scene can show\n"
				   : "\n");
}

std::string ToText(const FBakeReport& Report, const FBakeOptions& Options)
{
	const bool bPivot = Options.Command == ESceneCommand::SetPivot;
	std::string Text = PrintableText(Report.Input) + (Options.bDryRun ? " (dry run)" : "") + ": " +
					   Count(Report.Count(ENodeOutcome::Baked), bPivot ? "node(s) re-pivoted" : "node(s) baked") +
					   ", " + Count(int(Report.NewAssets.size()), "new asset(s)") + ", " +
					   Count(Report.Count(ENodeOutcome::NothingToBake), "with nothing to bake") + ", " +
					   Count(Report.Count(ENodeOutcome::LeftOut), "left out") + ", " +
					   Count(Report.Count(ENodeOutcome::NotBaked), "not baked") + "\n";
	Text += ByReason(Report, ENodeOutcome::LeftOut, "left out");
	Text += ByReason(Report, ENodeOutcome::NotBaked, "not baked");
	for (const std::string& Warning : Report.Warnings)
	{
		Text += "  warning: " + PrintableText(Warning) + "\n";
	}
	for (const std::string& File : Report.MissingFiles)
	{
		Text += "  missing: " + PrintableText(File) + "\n";
	}
	if (Report.Deviation)
	{
		Text += "  " + ToText(*Report.Deviation);
	}
	if (!Options.bDryRun)
	{
		Text +=
			std::string("  ") + (Report.bWritten ? "written to " : "unchanged: ") + PrintableText(Report.Output) + "\n";
	}
	return Text;
}
