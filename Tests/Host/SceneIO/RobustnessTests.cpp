// SPDX-License-Identifier: MIT
// Damaged files: whatever is wrong with one, it is refused with a sentence or read to something within its bounds, and
// a save of it without edits gives its bytes back.
#include "SceneIO/GltfPrimitiveData.h"
#include "SceneIO/GltfSave.h"
#include "SceneText.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <set>
#include <sys/mman.h>
#include <unistd.h>

using testing::EndsWith;
using testing::StartsWith;

namespace
{
/// Loads bytes without a file on a disk.
TSceneResult<std::shared_ptr<const FGltfDocument>> LoadBytes(const std::string& Bytes)
{
	const int File = memfd_create("scene", MFD_CLOEXEC);
	const bool bWritten = write(File, Bytes.data(), Bytes.size()) == static_cast<ssize_t>(Bytes.size());
	TSceneResult<std::shared_ptr<const FMappedFile>> Mapped = FMappedFile::Map(File, "memory/scene.glb");
	close(File);
	if (!bWritten || !Mapped)
	{
		ADD_FAILURE() << "the test's own file could not be made";
		return FSceneError{"no file"};
	}
	return FGltfDocument::Load(Mapped.Take(), {"/nonexistent", "scene.glb"});
}

/// Reads everything that a document holds. Returns whether it was accepted; sentences are checked on the way.
bool ReadsSafely(const std::string& Bytes)
{
	const auto IsSentence = [](const std::string& Text)
	{ return Text.starts_with("Cannot ") && Text.ends_with('.') && Text.find('\n') == std::string::npos; };
	const TSceneResult<std::shared_ptr<const FGltfDocument>> Document = LoadBytes(Bytes);
	if (!Document)
	{
		EXPECT_TRUE(IsSentence(Document.Error().Message)) << Document.Error().Message;
		return false;
	}
	for (std::size_t Mesh = 0; Mesh < (*Document)->Model().Meshes.size(); ++Mesh)
	{
		for (std::size_t I = 0; I < (*Document)->Model().Meshes[Mesh].Primitives.size(); ++I)
		{
			const TSceneResult<FPrimitiveData> Data = ReadPrimitive(*Document, static_cast<FGltfIndex>(Mesh), I);
			if (!Data)
			{
				EXPECT_TRUE(IsSentence(Data.Error().Message)) << Data.Error().Message;
				return false;
			}
			for (const FVertexAttribute& Attribute : Data->Attributes)
			{
				std::vector<double> Values(Attribute.Elements.Count * ComponentCount(Attribute.Elements.Type));
				ReadComponents(Attribute.Elements, 0, Values);
				EXPECT_EQ(Attribute.Elements.Count, Data->VertexCount);
			}
			const bool bInRange = std::all_of(Data->Indices.begin(), Data->Indices.end(),
				[&Data](std::uint32_t Index) { return Index < Data->VertexCount; });
			EXPECT_TRUE(bInRange);
		}
	}
	return true;
}

std::string RichScene()
{
	FSceneText Scene = TriangleScene();
	Scene.AddMesh("\"POSITION\": 0", ", \"targets\": [ { \"POSITION\": 1 } ]");
	const int Places = Scene.AddView(std::string("\0\2", 2));
	const int Values = Scene.AddView(std::string(24, '\1'));
	Scene.AddAccessor(0, 5126, 3, "VEC3",
		",\"sparse\":{\"count\":2,\"indices\":{\"bufferView\":" + std::to_string(Places) +
			",\"componentType\":5121},\"values\":{\"bufferView\":" + std::to_string(Values) + "}}");
	Scene.AddMesh("\"POSITION\": 3", ", \"mode\": 5");
	Scene.AddNode("\"children\":[0],\"mesh\":1,\"extensions\":{\"MSFT_lod\":{\"ids\":[0]}}");
	Scene.Root = ", \"scenes\": [ { \"nodes\": [ 1 ] } ], \"scene\": 0, \"extras\": { \"n\": 12345678901234567890123 }";
	return BinaryScene(Scene.Text("chunk"), Scene.Bytes);
}
}

TEST(Robustness, TheWholeSceneIsAccepted)
{
	EXPECT_TRUE(ReadsSafely(RichScene()));
}

TEST(Robustness, EveryShortenedSceneIsRefused)
{
	const std::string Whole = RichScene();
	for (std::size_t Length = 0; Length < Whole.size(); ++Length)
	{
		EXPECT_FALSE(ReadsSafely(Whole.substr(0, Length))) << Length;
	}
}

TEST(Robustness, EveryShortenedTextIsRefused)
{
	FSceneText Scene = TriangleScene();
	const std::string Whole = Scene.Text("");
	// The last byte is a line break behind the text.
	for (std::size_t Length = 0; Length + 1 < Whole.size(); ++Length)
	{
		EXPECT_FALSE(ReadsSafely(Whole.substr(0, Length))) << Length;
	}
}

TEST(Robustness, EverySingleDamagedByteIsSurvived)
{
	const std::string Whole = RichScene();
	int Accepted = 0;
	for (std::size_t I = 0; I < Whole.size(); ++I)
	{
		for (const int Flip : {0x01, 0x80, 0x1F})
		{
			std::string Damaged = Whole;
			Damaged[I] = static_cast<char>(Damaged[I] ^ Flip);
			Accepted += ReadsSafely(Damaged) ? 1 : 0;
		}
	}
	EXPECT_GT(Accepted, 0);
}

RC_GTEST_PROP(Robustness, AnyDamageIsSurvived, (const std::vector<std::pair<std::uint16_t, char>>& Damage))
{
	std::string Bytes = RichScene();
	for (const auto& [At, Byte] : Damage)
	{
		Bytes[At % Bytes.size()] = Byte;
	}
	ReadsSafely(Bytes);
	RC_SUCCEED();
}

RC_GTEST_PROP(Robustness, AnyNumbersInPlaceOfItsOwnAreSurvived, ())
{
	// Puts hostile numbers where the text has numbers: counts, offsets, strides, indices.
	static constexpr std::array Hostile = {"0", "1", "2", "3", "4", "7", "255", "65535", "65536", "2147483648",
		"4294967295", "4294967296", "9007199254740991", "9007199254740992", "18446744073709551615", "-1", "1.5",
		"1e400", "null", "[]"};
	FSceneText Scene = TriangleScene();
	const std::string Text = Scene.Text("chunk");
	TSceneResult<FJsonText> Json = FJsonText::Parse(Text, "x");
	std::string Out;
	std::size_t At = 0;
	for (FJsonIndex Value = 0; Value < Json->End(0); ++Value)
	{
		if (Json->IsNumber(Value) && *rc::gen::inRange(0, 12) == 0)
		{
			Out += Text.substr(At, Json->Span(Value).Begin - At) + *rc::gen::elementOf(Hostile);
			At = Json->Span(Value).End;
		}
	}
	ReadsSafely(BinaryScene(Out + Text.substr(At), Scene.Bytes));
	RC_SUCCEED();
}

RC_GTEST_PROP(Robustness, AnyTransformsAndCopiesLeaveTheRestByteForByte, ())
{
	const FTempFolder Folder;
	FSceneText Scene = TriangleScene();
	for (int I = 0; I < 4; ++I)
	{
		Scene.AddNode("\"name\":\"n" + std::to_string(I) + "\", \"extras\" : [ 1.50, {} ] ,\"mesh\":0");
	}
	const std::string Path = Scene.WriteBinary(Folder);
	const auto Before = MustLoad(Path);
	FGltfPatch Patch(Before);
	const auto Edited = *rc::gen::container<std::set<int>>(rc::gen::inRange(0, 5));
	for (const int Node : Edited)
	{
		const auto Offset = static_cast<double>(*rc::gen::inRange(-1000, 1000)) / 8;
		Patch.SetNodeTransform(Node, {Offset, 2, -3}, {0, 0, 0, 1}, {1, 1, 1});
	}
	const TSceneResult<FSaveReport> Report = SaveGltf(Patch, Folder.Path("out.glb"));
	RC_ASSERT(Report.IsOk());
	const auto After = MustLoad(Folder.Path("out.glb"));
	for (std::size_t I = 0; I < Before->Model().Nodes.size(); ++I)
	{
		const FGltfNode& Old = Before->Model().Nodes[I];
		const FGltfNode& New = After->Model().Nodes[I];
		RC_ASSERT(Edited.contains(static_cast<int>(I)) || Before->Json().Raw(Old.Json) == After->Json().Raw(New.Json));
		RC_ASSERT(New.Mesh == Old.Mesh);
	}
	RC_ASSERT(AsText(*After->BufferBytes(0)) == AsText(*Before->BufferBytes(0)));
}
