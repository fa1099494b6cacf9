// SPDX-License-Identifier: MIT
#include "TarvinProcess.h"

#include <gmock/gmock.h>

namespace
{
class JsonAnswer : public FYardFixture
{
protected:
	/// Validates an answer with an independent validator.
	void ExpectValid(const std::string& Answer)
	{
		EXPECT_EQ(Answer.find('\n'), Answer.size() - 1);
		WriteAll(Path("answer.json"), Answer);
		const FTarvinRun Run = RunProgram({"/usr/bin/python3", "-c",
			"import json, jsonschema, sys; jsonschema.validate(json.load(open(sys.argv[1])), "
			"json.load(open(sys.argv[2])))",
			Path("answer.json"), TARVIN_SCHEMAS "/answer.schema.json"});
		EXPECT_EQ(Run.ExitCode, 0) << Run.Errors << Answer;
	}
};
} // namespace

TEST_F(JsonAnswer, FollowsItsSchema)
{
	ExpectValid(RunTarvin({"bake", Yard(), "-o", Path("out.gltf"), "--json", "--verify"}).Output);
	ExpectValid(RunTarvin({"bake", Yard(), "--dry-run", "--json"}).Output);
	ExpectValid(RunTarvin({"pivot", "bottom", Yard(), "-o", Path("out.gltf"), "--json"}).Output);
	ExpectValid(RunTarvin({"info", Yard(), "--json"}).Output);
	ExpectValid(RunTarvin({"diff", Yard(), Path("out.gltf"), "--json"}).Output);
}

TEST_F(JsonAnswer, SaysWhatIsLeftOutAndWhy)
{
	const auto Node = [](const char* Path, const char* Asset, const std::string& Rest) {
		return std::string("\"path\":\"") + Path + "\",\"asset\":\"" + Asset +
			   "\",\"newAsset\":false,\"outcome\":" + Rest;
	};
	for (const std::vector<std::string>& More :
		{std::vector<std::string>{"--dry-run"}, {"-o", Path("out.gltf"), "--shared", "skip"}})
	{
		std::vector<std::string> Words = {"bake", Yard(), "--json"};
		Words.insert(Words.end(), More.begin(), More.end());
		const std::string Answer = RunTarvin(Words).Output;
		EXPECT_THAT(Answer, testing::HasSubstr(Node("Flag", "Flag", R"("leftOut","reason":"it is animated"})")));
		EXPECT_THAT(Answer, testing::HasSubstr(Node("Figure", "Figure", R"("leftOut","reason":"it is skinned"})")));
		EXPECT_THAT(Answer, testing::HasSubstr(Node("Fence", "Picket", R"("leftOut","reason":"it is instanced"})")));
	}
	EXPECT_THAT(RunTarvin({"bake", Yard(), "-o", Path("out.gltf"), "--shared", "skip", "--json"}).Output,
		testing::HasSubstr(Node("Wall A", "Wall", R"("notBaked","reason":"its asset is shared"})")));
	EXPECT_THAT(RunTarvin({"info", Yard(), "--json"}).Output,
		testing::HasSubstr(R"("bake":"leftOut","reason":"it is skinned"})"));
}

TEST_F(JsonAnswer, FollowsItsSchemaForErrors)
{
	for (const char* Command : {"bake", "info"})
	{
		const FTarvinRun Run = RunTarvin({Command, Path("missing.gltf"), "--json"});
		EXPECT_EQ(Run.ExitCode, 3);
		ExpectValid(Run.Output);
		EXPECT_THAT(Run.Output, testing::HasSubstr("\"exitCode\":3"));
	}
	ExpectValid(RunTarvin({"diff", Yard(), Path("missing.gltf"), "--json"}).Output);
}

TEST_F(JsonAnswer, HoldsEveryInputOfSeveral)
{
	WriteAll(Path("broken.gltf"), "{");
	const FTarvinRun Run =
		RunTarvin({"bake", Yard(), Path("broken.gltf"), "--out-dir", Path("out"), "--json", "--jobs", "2"});
	EXPECT_EQ(Run.ExitCode, 3);
	ExpectValid(Run.Output);
	EXPECT_THAT(Run.Output, testing::HasSubstr("yard.gltf"));
	EXPECT_THAT(Run.Output, testing::HasSubstr("broken.gltf"));
}
