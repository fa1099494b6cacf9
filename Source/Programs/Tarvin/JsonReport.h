// SPDX-License-Identifier: MIT
#pragma once

#include "BakeJob.h"
#include "SceneIO/SceneDiff.h"

#include <string>
#include <string_view>
#include <vector>

/// Puts a JSON object together, member by member.
class FJsonObject
{
public:
	FJsonObject& Raw(std::string_view Key, const std::string& Text);
	FJsonObject& String(std::string_view Key, const std::string& Text);
	FJsonObject& Number(std::string_view Key, double Value);
	FJsonObject& Integer(std::string_view Key, std::int64_t Value);
	FJsonObject& Bool(std::string_view Key, bool bValue);
	FJsonObject& Strings(std::string_view Key, const std::vector<std::string>& Texts);
	std::string Text() const { return "{" + Members + "}"; }

private:
	std::string Members;
};

std::string JsonArray(const std::vector<std::string>& Elements);

/// One input's report as an object.
std::string ToJson(const FBakeReport& Report);
std::string ToJson(const FSceneDeviation& Deviation);

/// The whole answer of a command: `{"command":…,"results":[…]}`.
std::string JsonAnswer(const char* Command, const std::vector<std::string>& Results);
