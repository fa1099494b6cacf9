// SPDX-License-Identifier: MIT
#include "SceneIO/JsonText.h"

#include "SceneIO/JsonEdit.h"
#include "SceneIO/JsonWrite.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <rapidcheck/gtest.h>

namespace
{
FJsonText Parsed(const std::string& Text)
{
	TSceneResult<FJsonText> Json = FJsonText::Parse(Text, "x.gltf");
	if (!Json)
	{
		ADD_FAILURE() << Json.Error().Message;
		std::abort();
	}
	return Json.Take();
}

std::string Refusal(const std::string& Text)
{
	const TSceneResult<FJsonText> Json = FJsonText::Parse(Text, "x.gltf");
	return Json ? "accepted" : Json.Error().Message;
}

std::string Nested(std::size_t Levels)
{
	return std::string(Levels, '[') + std::string(Levels, ']');
}
}

TEST(JsonText, EveryValueKnowsItsOwnBytes)
{
	const FJsonText Json = Parsed("  { \"a\" : [ 1.50 , \"x]y\\\"\" ], \"b\":{} }\n");
	const FJsonIndex A = Json.Find(Json.Root(), "a");
	EXPECT_EQ(Json.Raw(A), "[ 1.50 , \"x]y\\\"\" ]");
	EXPECT_EQ(Json.Raw(Json.Elements(A)[0]), "1.50");
	EXPECT_EQ(Json.Raw(Json.Elements(A)[1]), "\"x]y\\\"\"");
	EXPECT_EQ(Json.Raw(Json.Find(Json.Root(), "b")), "{}");
	EXPECT_EQ(Json.Count(Json.Root()), 2u);
}

TEST(JsonText, ByteOrderMarkAndTrailingNulsAreNoPartOfTheText)
{
	const FJsonText Json = Parsed(std::string("\xEF\xBB\xBF{\"a\":7}") + std::string(3, '\0'));
	EXPECT_EQ(Json.Number(Json.Find(Json.Root(), "a")), 7.0);
	EXPECT_EQ(Json.Text().size(), 3u + 7u + 3u);
}

TEST(JsonText, IntegersAndExponentsOfAnySizeAreLegal)
{
	const FJsonText Json =
		Parsed("{\"extras\":{\"i\":123456789012345678901234567890,\"e\":1e400,\"s\":\"1e400\"},\"n\":3}");
	EXPECT_EQ(Json.Raw(Json.Find(Json.Find(0, "extras"), "i")), "123456789012345678901234567890");
	EXPECT_EQ(Json.Number(Json.Find(Json.Find(0, "extras"), "e")), std::nullopt);
	EXPECT_EQ(Json.Number(Json.Find(0, "n")), 3.0);
}

TEST(JsonText, MalformedNumbersAreRefusedEvenWhenHuge)
{
	EXPECT_NE(Refusal("{\"a\":0123456789012345678901}"), "accepted");
	EXPECT_NE(Refusal("{\"a\":1e400.5}"), "accepted");
	EXPECT_NE(Refusal("{\"a\":-}"), "accepted");
}

TEST(JsonText, NumbersTooSmallForADoubleAreZero)
{
	const FJsonText Json = Parsed("[1e-400]");
	EXPECT_EQ(Json.Number(1), 0.0);
}

TEST(JsonText, WholeNumbersCountHoweverTheyAreWritten)
{
	const FJsonText Json = Parsed("[12, 12.0, 1.2e1, 1.5, -1, 9007199254740992]");
	const std::vector<FJsonIndex> Numbers = Json.Elements(0);
	EXPECT_EQ(Json.Unsigned(Numbers[0]), 12u);
	EXPECT_EQ(Json.Unsigned(Numbers[1]), 12u);
	EXPECT_EQ(Json.Unsigned(Numbers[2]), 12u);
	EXPECT_EQ(Json.Unsigned(Numbers[3]), std::nullopt);
	EXPECT_EQ(Json.Unsigned(Numbers[4]), std::nullopt);
	EXPECT_EQ(Json.Unsigned(Numbers[5]), std::nullopt);
}

TEST(JsonText, EscapesAreResolvedInStringsAndKeys)
{
	const FJsonText Json = Parsed(R"({"no\u0064es":"\u00e9\uD83D\uDE00\n\/"})");
	EXPECT_EQ(Json.String(Json.Find(0, "nodes")), "\xC3\xA9\xF0\x9F\x98\x80\n/");
}

TEST(JsonText, KeysThatStandTwiceAreFoundWhateverTheirSpelling)
{
	EXPECT_TRUE(Parsed(R"({"a":1,"b":2,"\u0061":3})").DuplicateKey(0).has_value());
	EXPECT_FALSE(Parsed(R"({"a":1,"b":{"a":1}})").DuplicateKey(0).has_value());
	std::string Many = "{\"k\":0";
	for (int I = 0; I < 40; ++I)
	{
		Many += ",\"k" + std::to_string(I) + "\":0";
	}
	EXPECT_FALSE(Parsed(Many + "}").DuplicateKey(0).has_value());
	EXPECT_TRUE(Parsed(Many + ",\"k7\":0}").DuplicateKey(0).has_value());
}

TEST(JsonText, NestingIsBounded)
{
	EXPECT_EQ(Refusal(Nested(1000)), "accepted");
	EXPECT_EQ(Refusal(Nested(1'000'000)),
		"Cannot read \"x.gltf\": its JSON text nests arrays and objects more than 1024 levels deep.");
}

TEST(JsonText, RefusalsSayWhatIsWrong)
{
	EXPECT_EQ(Refusal(""), "Cannot read \"x.gltf\": its JSON text holds no JSON at all.");
	EXPECT_EQ(Refusal("{\"a\":\"\xFF\"}"), "Cannot read \"x.gltf\": its JSON text is not valid UTF-8.");
	EXPECT_EQ(
		Refusal("{\"a\":\"b"), "Cannot read \"x.gltf\": its JSON text is not valid JSON (a string is not closed).");
	EXPECT_NE(Refusal("{\"a\":1,}"), "accepted");
	EXPECT_NE(Refusal("{} {}"), "accepted");
}

TEST(JsonText, PointersLeadToTheValue)
{
	const FJsonText Json = Parsed(R"({"a":[0,{"x/y":{"~":5}}],"b":1})");
	const FJsonIndex Object = Json.Elements(Json.Find(0, "a"))[1];
	EXPECT_EQ(Json.Pointer(Json.Find(Json.Find(Object, "x/y"), "~")), "/a/1/x~1y/~0");
	EXPECT_EQ(Json.Pointer(Json.Find(0, "b")), "/b");
	EXPECT_EQ(Json.Pointer(0), "");
}

TEST(JsonEdit, NoEditGivesTheSameBytes)
{
	const FJsonText Json = Parsed("\xEF\xBB\xBF { \"a\" : 1.0e0 }\r\n");
	EXPECT_EQ(FJsonEdit(Json).ApplyAll(), Json.Text());
}

TEST(JsonEdit, OnlyTheReplacedValueChanges)
{
	const FJsonText Json = Parsed("{ \"a\" : [ 1.50 ,2 ], \"b\" :  3 }");
	FJsonEdit Edit(Json);
	Edit.Replace(Json.Elements(Json.Find(0, "a"))[1], "7");
	Edit.SetMember(0, "b", "{}");
	EXPECT_EQ(Edit.ApplyAll(), "{ \"a\" : [ 1.50 ,7 ], \"b\" :  {} }");
	EXPECT_EQ(Edit.Apply(Json.Find(0, "a")), "[ 1.50 ,7 ]");
}

TEST(JsonEdit, NewMembersAndElementsStandLikeTheirNeighbours)
{
	const FJsonText Json = Parsed("{\n\t\"a\" : [\n\t\t1\n\t],\n\t\"c\" : {}\n}");
	FJsonEdit Edit(Json);
	Edit.AppendElement(Json.Find(0, "a"), "2");
	Edit.AppendElement(Json.Find(0, "a"), "3");
	Edit.SetMember(0, "b", "4");
	Edit.SetMember(Json.Find(0, "c"), "d", "5");
	EXPECT_EQ(Edit.ApplyAll(), "{\n\t\"a\" : [\n\t\t1,\n\t\t2,\n\t\t3\n\t],\n\t\"c\" : {\"d\":5},\n\t\"b\" : 4\n}");
}

TEST(JsonEdit, RemovedMembersTakeOneCommaAlong)
{
	const FJsonText Json = Parsed("{ \"a\": 1, \"b\": 2, \"c\": 3 }");
	const auto Without = [&Json](const std::vector<std::string>& Keys)
	{
		FJsonEdit Edit(Json);
		for (const std::string& Key : Keys)
		{
			Edit.RemoveMember(0, Key);
		}
		return Edit.ApplyAll();
	};
	EXPECT_EQ(Without({"a"}), "{ \"b\": 2, \"c\": 3 }");
	EXPECT_EQ(Without({"b"}), "{ \"a\": 1, \"c\": 3 }");
	EXPECT_EQ(Without({"c"}), "{ \"a\": 1, \"b\": 2 }");
	EXPECT_EQ(Without({"a", "b"}), "{ \"c\": 3 }");
	EXPECT_EQ(Without({"a", "c"}), "{ \"b\": 2 }");
	EXPECT_EQ(Without({"a", "b", "c"}), "{  }");
	EXPECT_EQ(Without({"none"}), Json.Text());
}

TEST(JsonEdit, RemovalAndAdditionInOneObjectAgree)
{
	const FJsonText Json = Parsed("{ \"matrix\": [1], \"name\": \"x\" }");
	FJsonEdit Edit(Json);
	Edit.RemoveMember(0, "matrix");
	Edit.SetMember(0, "scale", "[2]");
	EXPECT_EQ(Edit.ApplyAll(), "{ \"name\": \"x\", \"scale\": [2] }");
	Edit.RemoveMember(0, "name");
	EXPECT_EQ(Edit.ApplyAll(), "{ \"scale\": [2] }");
	Edit.SetMember(0, "name", "\"y\"");
	EXPECT_EQ(Edit.ApplyAll(), "{ \"name\": \"y\", \"scale\": [2] }");
}

TEST(JsonEdit, EditsWithinWhatIsReplacedOrRemovedHaveNoEffect)
{
	const FJsonText Json = Parsed("{\"a\":{\"b\":{\"c\":1}},\"d\":{\"e\":2}}");
	FJsonEdit Edit(Json);
	Edit.Replace(Json.Find(Json.Find(Json.Find(0, "a"), "b"), "c"), "9");
	Edit.SetMember(Json.Find(Json.Find(0, "a"), "b"), "x", "8");
	Edit.Replace(Json.Find(0, "a"), "0");
	Edit.SetMember(Json.Find(0, "d"), "e", "7");
	Edit.RemoveMember(0, "d");
	EXPECT_EQ(Edit.ApplyAll(), "{\"a\":0}");
}

RC_GTEST_PROP(JsonEdit, AnyEditsGiveValidJsonWithTheEditedMembers,
	(const std::vector<std::pair<std::uint8_t, std::uint8_t>>& Steps))
{
	const FJsonText Json = Parsed("{ \"k0\": 0, \"k1\" : { \"k0\":1 , \"k2\":[ 2 ] }, \"k2\":2,\n\"k3\":3 }");
	FJsonEdit Edit(Json);
	std::map<std::string, std::string> Expected = {{"k0", "0"}, {"k1", ""}, {"k2", "2"}, {"k3", "3"}};
	for (const auto& [Key, Step] : Steps)
	{
		const std::string Name = "k" + std::to_string(Key % 6);
		if (Step % 3 == 0)
		{
			Edit.RemoveMember(0, Name);
			Expected.erase(Name);
		}
		else if (Step % 3 == 1)
		{
			Edit.SetMember(0, Name, std::to_string(Step));
			Expected[Name] = std::to_string(Step);
		}
		else
		{
			Edit.AppendElement(Json.Find(Json.Find(0, "k1"), "k2"), "5");
		}
	}
	const FJsonText After = Parsed(Edit.ApplyAll());
	RC_ASSERT(After.Count(0) == Expected.size());
	for (const auto& [Name, Value] : Expected)
	{
		RC_ASSERT(After.Find(0, Name) != NoJson);
		RC_ASSERT(Value.empty() || After.Raw(After.Find(0, Name)) == Value);
	}
}

TEST(JsonWrite, NumbersHaveTheFewestDigitsThatReadBack)
{
	EXPECT_EQ(JsonWrite::Number(0.1f), "0.1");
	EXPECT_EQ(JsonWrite::Number(static_cast<double>(0.1f)), "0.10000000149011612");
	EXPECT_EQ(JsonWrite::Number(-7.0), "-7");
	EXPECT_EQ(JsonWrite::Array(std::array<double, 3>{1, 0.5, -3e20}), "[1,0.5,-3e+20]");
}

TEST(JsonWrite, StringsEscapeWhatJsonDoesNotAllow)
{
	EXPECT_EQ(JsonWrite::String("a\"b\\c\n\xC3\xA9"), "\"a\\\"b\\\\c\\u000a\xC3\xA9\"");
}

RC_GTEST_PROP(JsonWrite, AnyNumberReadsBackAsItself, (double Value))
{
	RC_PRE(std::isfinite(Value));
	const FJsonText Json = Parsed("[" + JsonWrite::Number(Value) + "]");
	RC_ASSERT(Json.Number(1) == Value);
}
