// SPDX-License-Identifier: MIT
#include "SceneDamage.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace
{
/// Numbers at the borders of types and of sense.
constexpr std::array HostileNumbers = {"0", "1", "2", "3", "4", "5", "7", "16", "255", "256", "65535", "65536",
	"2147483647", "2147483648", "4294967280", "4294967295", "4294967296", "9007199254740991", "9007199254740992",
	"9007199254740993", "18446744073709551615", "18446744073709551616", "-1", "-0", "-4294967296", "1.5", "0.99999994",
	"1e-320", "-1e38", "3.5e38", "1e300", "1e308", "1e400", "5120", "5121", "5123", "5125", "5126", "NaN", "Infinity"};

/// Values of other kinds than the one expected.
constexpr std::array OtherValues = {"null", "true", "false", "[]", "{}", "[[]]", "[{}]", "[0]", "\"\"", "\"x\"",
	"{\"extensions\":{}}", "\"\\u0000\"", "\"\\ud800\""};

/// Strings that mean something somewhere, or should not.
constexpr std::array HostileStrings = {"", "SCALAR", "VEC2", "VEC4", "MAT2", "MAT4", "POSITION", "NORMAL", "TANGENT",
	"JOINTS_0", "line\\nbreak", "\\u001b[31m", "\\ud800", "..", "../scene.bin", "/etc/hostname", "scene.gltf", ".",
	"scene.bin/", "%2e%2e%2fscene.bin", "scene%00.bin", "http://localhost/a.bin", "file:///etc/hostname",
	"data:application/octet-stream;base64,", "data:application/octet-stream;base64,AAAA", "data:,x", "extensions",
	"TARVIN_static_mesh", "KHR_draco_mesh_compression", "EXT_meshopt_compression", "KHR_mesh_quantization", "nodes",
	"mesh", "children", "matrix", "sparse", "bufferView", "byteStride", "taperedCapsule", "TRIANGLES", "OCTAHEDRAL"};

/// Single-precision numbers at the borders.
constexpr std::array HostileFloats = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
	-std::numeric_limits<float>::infinity(), std::numeric_limits<float>::max(),
	std::numeric_limits<float>::denorm_min(), -0.f};

std::string Replaced(const std::string& Text, FJsonSpan Span, const std::string& By)
{
	return Text.substr(0, Span.Begin) + By + Text.substr(Span.End);
}
} // namespace

void FSceneDamage::DamageParts(FSmallScene& Scene)
{
	for (std::size_t Times = 1 + Below(3); Times > 0; --Times)
	{
		if (Scene.Buffer.empty() || Below(4) > 0)
		{
			Scene.Json = DamagedText(Scene.Json);
		}
		else if (Below(2) == 0)
		{
			DamageNumbers(Scene.Buffer);
		}
		else
		{
			DamageOnce(Scene.Buffer);
		}
	}
}

void FSceneDamage::DamageBytes(std::string& File)
{
	for (std::size_t Times = 1 + Below(3); Times > 0; --Times)
	{
		DamageOnce(File);
	}
}

void FSceneDamage::DamageOnce(std::string& Bytes)
{
	if (Bytes.empty())
	{
		return;
	}
	// Drawn one after the other, so that every compiler draws the same.
	const std::size_t At = Below(Bytes.size());
	const std::size_t Longest = Below(8) == 0 ? 300 : 5;
	const std::size_t Length = std::min(1 + Below(Longest), Bytes.size() - At);
	const std::size_t Other = Below(Bytes.size());
	const char Byte = static_cast<char>(Below(256));
	switch (Below(9))
	{
	case 0:
	case 1:
		Bytes[At] = static_cast<char>(static_cast<unsigned char>(Bytes[At]) ^ (1u << Below(8)));
		break;
	case 2:
		Bytes[At] = Byte;
		break;
	case 3: // digits for digits, letters for letters
		Bytes[At] = static_cast<char>(static_cast<unsigned char>(Bytes[At]) ^ (1u + Below(2)));
		break;
	case 4:
		Bytes.insert(At, Length, Byte);
		break;
	case 5:
		Bytes.erase(At, Length);
		break;
	case 6: // a region over another
		Bytes.replace(Other, Length, Bytes.substr(At, Length));
		break;
	case 7: // a region once more
		Bytes.insert(Other, Bytes.substr(At, Length));
		break;
	default:
		Bytes.resize(At);
		break;
	}
}

void FSceneDamage::DamageNumbers(std::string& Buffer)
{
	if (Buffer.size() < sizeof(float))
	{
		return;
	}
	const std::size_t At = Below(Buffer.size() / sizeof(float)) * sizeof(float);
	std::memcpy(&Buffer[At], &HostileFloats[Below(HostileFloats.size())], sizeof(float));
}

std::string FSceneDamage::DamagedText(const std::string& Text)
{
	const TSceneResult<FJsonText> Json = FJsonText::Parse(Text, "scene");
	if (!Json)
	{
		std::string Bytes = Text;
		DamageOnce(Bytes);
		return Bytes;
	}
	const auto Value = static_cast<FJsonIndex>(Below(Json->End(Json->Root())));
	const FJsonSpan Span = Json->Span(Value);
	const std::string Own(Json->Raw(Value));
	if (Json->IsNumber(Value) && Below(4) > 0)
	{
		return Replaced(Text, Span, HostileNumbers[Below(HostileNumbers.size())]);
	}
	if (Json->IsString(Value) && Below(4) > 0)
	{
		return Replaced(Text, Span, '"' + std::string(HostileStrings[Below(HostileStrings.size())]) + '"');
	}
	switch (Below(6))
	{
	case 0:
		return Replaced(Text, Span, OtherValues[Below(OtherValues.size())]);
	case 1: // another value of the same text
		return Replaced(Text, Span, std::string(Json->Raw(static_cast<FJsonIndex>(Below(Json->End(Json->Root()))))));
	case 2: // once more, which in lists is a further element
		return Replaced(Text, Span, Own + "," + Own);
	case 3:
		return Replaced(Text, Span, "");
	default:
		return DamagedMember(*Json, Value);
	}
}

std::string FSceneDamage::DamagedMember(const FJsonText& Json, FJsonIndex From)
{
	const std::string& Text = Json.Text();
	for (FJsonIndex Object = From; Object < Json.End(Json.Root()); ++Object)
	{
		const std::vector<FJsonMember> Members = Json.Members(Object);
		if (Members.empty())
		{
			continue;
		}
		const std::size_t Which = Below(Members.size());
		const FJsonSpan Member = {Json.Span(Members[Which].Key).Begin, Json.Span(Members[Which].Value).End};
		if (Below(3) == 0)
		{
			const std::string Own = Text.substr(Member.Begin, Member.End - Member.Begin);
			return Replaced(Text, Member, Own + "," + Own);
		}
		// With the comma behind it, or else with the one before.
		const bool bLast = Which + 1 == Members.size();
		const std::uint32_t Begin = bLast && Which > 0 ? Json.Span(Members[Which - 1].Value).End : Member.Begin;
		const std::uint32_t End = bLast ? Member.End : Json.Span(Members[Which + 1].Key).Begin;
		return Replaced(Text, {Begin, End}, "");
	}
	return Text;
}
