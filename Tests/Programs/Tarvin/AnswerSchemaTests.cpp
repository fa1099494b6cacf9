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
