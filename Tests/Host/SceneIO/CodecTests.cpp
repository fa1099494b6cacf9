// SPDX-License-Identifier: MIT
// Compressed geometry: scenes are compressed here with the codecs' own encoders, and damaged.
#include "PackedScenes.h"
#include "SceneIO/DracoProcess.h"
#include "SceneIO/GltfPrimitiveData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <meshoptimizer.h>

using testing::ElementsAre;
using testing::HasSubstr;

namespace
{
TSceneResult<FPrimitiveData> Geometry(const FSceneText& Scene)
{
	const FTempFolder Folder;
	return ReadPrimitive(MustLoad(Scene.WriteBinary(Folder)), 0, 0);
}

std::string GeometryRefusal(const FSceneText& Scene)
{
	const TSceneResult<FPrimitiveData> Data = Geometry(Scene);
	return Data ? "accepted" : Data.Error().Message;
}

std::vector<float> Values(const FElementView& View)
{
	std::vector<float> Out(View.Count * ComponentCount(View.Type));
	ReadComponents(View, 0, Out);
	return Out;
}

TSceneResult<FPrimitiveData> PackedGeometry(const FSceneText& Scene)
{
	const FTempFolder Folder;
	return ReadPrimitive(MustLoad(Folder.Write("scene.glb", BinaryScene(WithFallback(Scene), Scene.Bytes))), 0, 0);
}

}

TEST(Draco, ACompressedPrimitiveIsDecodedInItsOwnProcess)
{
	const TSceneResult<FPrimitiveData> Data = Geometry(DracoScene(DracoTriangle()));
	ASSERT_TRUE(Data.IsOk()) << Data.Error().Message;
	EXPECT_TRUE(Data->bWasCompressed);
	EXPECT_EQ(Data->Indices.size(), 3u);
	EXPECT_EQ(Values(Data->Find("POSITION")->Elements), TrianglePositions);
}

TEST(Draco, CountsThatDifferFromTheAccessorsAreRefused)
{
	EXPECT_THAT(GeometryRefusal(DracoScene(DracoTriangle(), 4)),
		HasSubstr("/meshes/0/primitives/0 decompresses to 3 vertices, but its accessors have 4"));
}

TEST(Draco, AttributesThatTheDataDoesNotHoldAreRefused)
{
	EXPECT_THAT(GeometryRefusal(DracoScene(DracoTriangle(), 3, 9)),
		HasSubstr("does not hold an attribute that the primitive says it does"));
}

TEST(Draco, DamagedDataIsRefusedOrDecodesToSomethingInRange)
{
	const std::string Whole = DracoTriangle();
	int Refused = 0;
	for (std::size_t I = 0; I < Whole.size(); ++I)
	{
		std::string Damaged = Whole;
		Damaged[I] = static_cast<char>(Damaged[I] ^ 0x5A);
		const TSceneResult<FPrimitiveData> Data = Geometry(DracoScene(Damaged));
		Refused += Data ? 0 : 1;
	}
	EXPECT_GT(Refused, 5);
	EXPECT_THAT(GeometryRefusal(DracoScene(Whole.substr(0, Whole.size() / 2))),
		HasSubstr("holds compressed data that is damaged"));
}

TEST(Draco, OneDocumentDecodesAgainAfterDamagedData)
{
	FDracoProcess Process;
	const std::string Compressed = DracoTriangle();
	const std::vector<DracoProtocol::FAttribute> Wanted = {{0, 5126, 3}};
	std::string Why;
	EXPECT_FALSE(Process.Decode(AsBytes("no such thing"), Wanted, 3, Why).has_value());
	EXPECT_EQ(Why, "holds compressed data that is damaged");
	EXPECT_FALSE(Process.Decode(AsBytes(Compressed), Wanted, 5, Why).has_value());
	EXPECT_TRUE(Process.Decode(AsBytes(Compressed), Wanted, 3, Why).has_value());
}

TEST(Meshopt, CompressedAttributesAndTrianglesAreDecoded)
{
	const FSceneText Scene =
		PackedScene(PackedVertices(TrianglePositions.data(), 3, 12), PackedTriangles({0, 1, 2}, 3));
	const TSceneResult<FPrimitiveData> Data = PackedGeometry(Scene);
	ASSERT_TRUE(Data.IsOk()) << Data.Error().Message;
	EXPECT_THAT(Data->Indices, ElementsAre(0, 1, 2));
	EXPECT_EQ(Values(Data->Find("POSITION")->Elements), TrianglePositions);
}

TEST(Meshopt, FiltersAreUndone)
{
	// Five elements: the filters work on several at once and must manage the rest.
	const std::vector<float> Normals = {0, 0, 1, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0.6f, 0, 0.8f, 0, 0, -0.6f, -0.8f, 0};
	std::vector<std::int8_t> Octahedral(5 * 4);
	meshopt_encodeFilterOct(Octahedral.data(), 5, 4, 8, Normals.data());
	FSceneText Scene;
	AddPacked(Scene, PackedVertices(Octahedral.data(), 5, 4), 5, 4, "ATTRIBUTES", "OCTAHEDRAL");
	Scene.AddAccessor(0, 5120, 5, "VEC4", ",\"normalized\":true");
	const FTempFolder Folder;
	const auto Document = MustLoad(Folder.Write("scene.glb", BinaryScene(WithFallback(Scene), Scene.Bytes)));
	const TSceneResult<FElementView> View = ViewElements(Document, 0);
	ASSERT_TRUE(View.IsOk()) << View.Error().Message;
	const std::vector<float> Decoded = Values(*View);
	for (std::size_t I = 0; I < 5; ++I)
	{
		for (std::size_t C = 0; C < 3; ++C)
		{
			EXPECT_NEAR(Decoded[I * 4 + C], Normals[I * 4 + C], 0.02) << I << " " << C;
		}
	}
}

TEST(Meshopt, ColoursAreTurnedBackToRedGreenAndBlue)
{
	// Luma 100, chrominance 20 and -10, alpha with the bit above the scale: eight bits are used in full.
	const std::vector<std::uint8_t> Stored = {100, 20, 246, 0xC0 | 0x3F};
	FSceneText Scene;
	AddPacked(Scene, PackedVertices(Stored.data(), 1, 4), 1, 4, "ATTRIBUTES", "COLOR");
	Scene.AddAccessor(0, 5121, 1, "VEC4");
	const FTempFolder Folder;
	const auto Document = MustLoad(Folder.Write("scene.glb", BinaryScene(WithFallback(Scene), Scene.Bytes)));
	EXPECT_THAT(Values(*ViewElements(Document, 0)), ElementsAre(130, 90, 90, 255));
}

TEST(Meshopt, DamagedDataIsRefusedOrStaysInRange)
{
	const std::string Vertices = PackedVertices(TrianglePositions.data(), 3, 12);
	const std::string Indices = PackedTriangles({0, 1, 2}, 3);
	int Refused = 0;
	for (std::size_t I = 0; I < Indices.size(); ++I)
	{
		std::string Damaged = Indices;
		Damaged[I] = static_cast<char>(Damaged[I] ^ 0xF7);
		const TSceneResult<FPrimitiveData> Data = PackedGeometry(PackedScene(Vertices, Damaged));
		Refused += Data ? 0 : 1;
		const bool bInRange = !Data || std::all_of(Data->Indices.begin(), Data->Indices.end(),
										   [](std::uint32_t Index) { return Index < 3; });
		EXPECT_TRUE(bInRange) << I;
	}
	EXPECT_GT(Refused, 0);
	const TSceneResult<FPrimitiveData> Short = PackedGeometry(PackedScene(Vertices.substr(0, 9), Indices));
	ASSERT_FALSE(Short.IsOk());
	EXPECT_THAT(Short.Error().Message, HasSubstr("/bufferViews/0 holds compressed data that is damaged"));
}

TEST(Meshopt, ArgumentsThatTheDecoderWouldNotSurviveAreRefusedBeforeIt)
{
	const auto Refusal = [](std::size_t Count, std::size_t Stride, const char* Mode, const char* Filter = "NONE")
	{
		FSceneText Scene;
		AddPacked(Scene, "abcdefgh", Count, Stride, Mode, Filter);
		const FTempFolder Folder;
		return RefusalOf(Folder.Write("scene.glb", BinaryScene(WithFallback(Scene), Scene.Bytes)));
	};
	EXPECT_THAT(Refusal(3, 6, "ATTRIBUTES"), HasSubstr("byteStride does not suit the compression mode"));
	EXPECT_THAT(Refusal(3, 260, "ATTRIBUTES"), HasSubstr("byteStride does not suit the compression mode"));
	EXPECT_THAT(Refusal(3, 8, "TRIANGLES"), HasSubstr("byteStride does not suit the compression mode"));
	EXPECT_THAT(Refusal(4, 4, "TRIANGLES"), HasSubstr("count is not a multiple of 3"));
	EXPECT_THAT(Refusal(3, 12, "ATTRIBUTES", "OCTAHEDRAL"), HasSubstr("filter does not suit"));
	EXPECT_THAT(Refusal(3, 4, "ATTRIBUTES", "QUATERNION"), HasSubstr("filter does not suit"));
	EXPECT_THAT(Refusal(3, 4, "INDICES", "EXPONENTIAL"), HasSubstr("filter does not suit"));
	EXPECT_THAT(Refusal(3, 4, "NOTHING"), HasSubstr("mode is not a known compression mode"));
	EXPECT_EQ(Refusal(3, 4, "ATTRIBUTES"), "accepted");
}

TEST(Meshopt, AShortStreamCannotClaimALargeResult)
{
	FSceneText Scene;
	AddPacked(Scene, "abcdefgh", 8000, 12, "ATTRIBUTES");
	const FTempFolder Folder;
	const auto Document = MustLoad(Folder.Write("scene.glb", BinaryScene(WithFallback(Scene), Scene.Bytes)));
	const TSceneResult<std::span<const std::byte>> Bytes = Document->ViewBytes(0);
	ASSERT_FALSE(Bytes.IsOk());
	EXPECT_THAT(
		Bytes.Error().Message, HasSubstr("/bufferViews/0 is too short for the elements that it is said to hold"));
}
