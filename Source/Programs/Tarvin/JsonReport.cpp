// SPDX-License-Identifier: MIT
#include "JsonReport.h"

#include "SceneIO/JsonWrite.h"

#include <cmath>

FJsonObject& FJsonObject::Raw(std::string_view Key, const std::string& Text)
{
	Members += (Members.empty() ? "" : ",") + JsonWrite::String(Key) + ":" + Text;
	return *this;
}

FJsonObject& FJsonObject::String(std::string_view Key, const std::string& Text)
{
	return Raw(Key, JsonWrite::String(Text));
}

FJsonObject& FJsonObject::Number(std::string_view Key, double Value)
{
	// There is no infinity in the format; what is beyond measure is null.
	return Raw(Key, std::isfinite(Value) ? JsonWrite::Number(Value) : "null");
}

FJsonObject& FJsonObject::Integer(std::string_view Key, std::int64_t Value)
{
	return Raw(Key, std::to_string(Value));
}

FJsonObject& FJsonObject::Bool(std::string_view Key, bool bValue)
{
	return Raw(Key, bValue ? "true" : "false");
}

FJsonObject& FJsonObject::Strings(std::string_view Key, const std::vector<std::string>& Texts)
{
	std::vector<std::string> Elements;
	for (const std::string& Text : Texts)
	{
		Elements.push_back(JsonWrite::String(Text));
	}
	return Raw(Key, JsonArray(Elements));
}

std::string JsonArray(const std::vector<std::string>& Elements)
{
	std::string Text;
	for (const std::string& Element : Elements)
	{
		Text += (Text.empty() ? "" : ",") + Element;
	}
	return "[" + Text + "]";
}

namespace
{
const char* OutcomeName(ENodeOutcome Outcome)
{
	switch (Outcome)
	{
	case ENodeOutcome::Baked:
		return "baked";
	case ENodeOutcome::NothingToBake:
		return "nothingToBake";
	case ENodeOutcome::LeftOut:
		return "leftOut";
	case ENodeOutcome::NotBaked:
		return "notBaked";
	default:
		return "notSelected";
	}
}
} // namespace

std::string ToJson(const FSceneDeviation& Deviation)
{
	std::vector<std::string> Nodes;
	for (const FNodeDeviation& Node : Deviation.Nodes)
	{
		FJsonObject Object;
		Object.Integer("node", Node.Node).String("name", Node.Name);
		if (!Node.Difference.empty())
		{
			Object.String("difference", Node.Difference);
		}
		Object.Number("position", Node.Position)
			.Number("normalAngle", Node.Normal)
			.Integer("flipped", std::int64_t(Node.NumFlipped));
		Nodes.push_back(Object.Text());
	}
	std::vector<std::string> Parts;
	for (const FPartDeviation& Part : Deviation.Parts)
	{
		FJsonObject Object;
		Object.Integer("node", Part.Node).String("name", Part.Name).String("part", Part.Part);
		if (!Part.Difference.empty())
		{
			Object.String("difference", Part.Difference);
		}
		Parts.push_back(Object.Number("position", Part.Position).Text());
	}
	return FJsonObject()
		.Number("position", Deviation.Position)
		.Number("size", Deviation.Size)
		.Number("relative", Deviation.RelativePosition())
		.Number("normalAngle", Deviation.Normal)
		.Integer("flipped", std::int64_t(Deviation.NumFlipped))
		.Integer("different", std::int64_t(Deviation.NumDifferent))
		.Integer("unreadable", std::int64_t(Deviation.NumUnreadable))
		.Raw("nodes", JsonArray(Nodes))
		.Raw("parts", JsonArray(Parts))
		.Text();
}

std::string ToJson(const FBakeReport& Report)
{
	FJsonObject Object;
	Object.String("input", Report.Input);
	if (!Report.Output.empty())
	{
		Object.String("output", Report.Output).Bool("written", Report.bWritten);
	}
	Object.Integer("exitCode", Report.Exit);
	if (!Report.Error.empty())
	{
		return Object.String("error", Report.Error).Text();
	}
	std::vector<std::string> Nodes;
	for (const FNodeReport& Node : Report.Nodes)
	{
		FJsonObject Entry;
		Entry.Integer("node", Node.Node)
			.String("path", Node.Path)
			.String("asset", Node.Asset)
			.Bool("newAsset", Node.bNewAsset);
		Entry.String("outcome", OutcomeName(Node.Outcome));
		if (!Node.Reason.empty())
		{
			Entry.String("reason", Node.Reason);
		}
		Nodes.push_back(Entry.Text());
	}
	Object.Integer("baked", Report.Count(ENodeOutcome::Baked))
		.Integer("nothingToBake", Report.Count(ENodeOutcome::NothingToBake))
		.Integer("leftOut", Report.Count(ENodeOutcome::LeftOut))
		.Integer("notBaked", Report.Count(ENodeOutcome::NotBaked))
		.Strings("newAssets", Report.NewAssets)
		.Raw("nodes", JsonArray(Nodes))
		.Strings("warnings", Report.Warnings)
		.Strings("otherFiles", Report.OtherFiles)
		.Strings("missingFiles", Report.MissingFiles);
	if (Report.Deviation)
	{
		Object.Raw("deviation", ToJson(*Report.Deviation));
	}
	return Object.Text();
}

std::string JsonAnswer(const char* Command, const std::vector<std::string>& Results)
{
	return FJsonObject().String("command", Command).Raw("results", JsonArray(Results)).Text();
}
