// SPDX-License-Identifier: MIT
// Meshes of a file that are transformed without being taken into memory.
#include "PackedScenes.h"

#include "MeshDescription/StaticMeshOperations.h"
#include "SceneIO/SceneMeshData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Before Core's headers would be too late: see Support/RapidCheck.h.
#include "Support/RapidCheck.h"

#include "Host/Core/MathGenerators.h"

#include <cmath>
#include <limits>
#include <map>
#include <numbers>
#include <tuple>

namespace
{
using testing::HasSubstr;

int32 Draw(int32 Count)
{
	return *rc::gen::resize(100, rc::gen::inRange(0, Count));
}

float AnyCoordinate()
{
	if (Draw(200) == 0)
	{
		return Draw(2) == 0 ? std::numeric_limits<float>::quiet_NaN() : std::numeric_limits<float>::infinity();
	}
	return float(*MathGenerators::Magnitude(1.e-3, 1.e3));
}

/// Numbers of so many vertices, `Size` to the vertex.
std::vector<float> AnyFloats(std::size_t Vertices, std::size_t Size)
{
	std::vector<float> Out(Vertices * Size);
	std::ranges::generate(Out, AnyCoordinate);
	return Out;
}

/// Directions at length one; some are zero. The fourth number, if there is one, is a sign.
std::vector<float> AnyDirections(std::size_t Vertices, std::size_t Size)
{
	std::vector<float> Out = AnyFloats(Vertices, Size);
	for (std::size_t At = 0; At < Out.size(); At += Size)
	{
		const float Length = Draw(8) == 0 ? 0.f : 1.f / std::hypot(Out[At], Out[At + 1], Out[At + 2]);
		for (std::size_t Component = 0; Component < 3; ++Component)
		{
			Out[At + Component] *= Length;
		}
		if (Size == 4)
		{
			Out[At + 3] = Draw(2) == 0 ? 1.f : -1.f;
		}
	}
	return Out;
}

std::vector<std::int16_t> AsShorts(const std::vector<float>& Values)
{
	std::vector<std::int16_t> Out;
	std::ranges::transform(Values, std::back_inserter(Out),
		[](float Value) { return std::int16_t(std::lround(std::clamp(Value, -1.f, 1.f) * 32767.f)); });
	while (Out.size() % 2 != 0)
	{
		Out.push_back(0);
	}
	return Out;
}

/// Positions, normals and tangents in any of the storages that a file may have.
std::string AnyAttributes(FSceneText& Scene, std::size_t Vertices)
{
	std::string Text;
	const std::string Count = std::to_string(Vertices);
	switch (Draw(4))
	{
	case 0:
		Text = "\"POSITION\":" + std::to_string(Scene.AddVec3(AnyFloats(Vertices, 3)));
		break;
	case 1: // interleaved with something that is not to change
	{
		const std::vector<float> Mixed = AnyFloats(Vertices, 5);
		const int View =
			Scene.AddView({reinterpret_cast<const char*>(Mixed.data()), Mixed.size() * 4}, R"(,"byteStride":20)");
		Text = "\"POSITION\":" + std::to_string(Scene.AddAccessor(View, 5126, Vertices, "VEC3", R"(,"byteOffset":4)"));
		break;
	}
	case 2: // quantised, four-byte aligned
	{
		const std::vector<std::int16_t> Shorts = AsShorts(AnyFloats(Vertices, 4));
		const int View =
			Scene.AddView({reinterpret_cast<const char*>(Shorts.data()), Shorts.size() * 2}, R"(,"byteStride":8)");
		Text =
			"\"POSITION\":" + std::to_string(Scene.AddAccessor(View, 5122, Vertices, "VEC3", R"(,"normalized":true)"));
		break;
	}
	default: // sparse
	{
		const std::vector<std::uint16_t> Places = {std::uint16_t(Draw(int32(Vertices)))};
		const std::vector<float> Values = AnyFloats(1, 3);
		const int PlacesView = Scene.AddView({reinterpret_cast<const char*>(Places.data()), 2});
		const int ValuesView = Scene.AddView({reinterpret_cast<const char*>(Values.data()), 12});
		Text = "\"POSITION\":" + std::to_string(Scene.AddVec3(AnyFloats(Vertices, 3),
									 R"(,"sparse":{"count":1,"indices":{"componentType":5123,"bufferView":)" +
										 std::to_string(PlacesView) + R"(},"values":{"bufferView":)" +
										 std::to_string(ValuesView) + "}}"));
	}
	}
	if (Draw(3) > 0)
	{
		Text += ",\"NORMAL\":" + std::to_string(Scene.AddVec3(AnyDirections(Vertices, 3)));
	}
	if (Draw(2) > 0)
	{
		Text += ",\"TANGENT\":" + std::to_string(Scene.AddVec4(AnyDirections(Vertices, 4)));
	}
	return Text;
}

/// A mesh of one to three primitives of any mode, some of which share their vertices, some of which are not used.
FSceneText AnyMesh()
{
	FSceneText Scene;
	std::string Primitives;
	std::string Attributes;
	std::size_t Vertices = 0;
	for (int32 Left = 1 + Draw(3); Left > 0; --Left)
	{
		if (Attributes.empty() || Draw(3) > 0)
		{
			Vertices = std::size_t(3 + Draw(9));
			Attributes = AnyAttributes(Scene, Vertices);
		}
		std::string Text = "{\"attributes\":{" + Attributes + "},\"mode\":" + std::to_string(Draw(7));
		if (Draw(4) > 0)
		{
			std::vector<std::uint16_t> Indices(std::size_t(3 + Draw(9)));
			std::ranges::generate(Indices, [Vertices]() { return std::uint16_t(Draw(int32(Vertices))); });
			Text += ",\"indices\":" + std::to_string(Scene.AddIndices(Indices));
		}
		Primitives += (Primitives.empty() ? "" : ",") + Text + "}";
	}
	Scene.Meshes.push_back("{\"primitives\":[" + Primitives + "]}");
	Scene.AddNode("\"mesh\":0");
	return Scene;
}

std::vector<std::byte> BytesOf(const FNewElements& Elements, std::uint64_t AtATime)
{
	std::vector<std::byte> Out(Elements.Count * Elements.ElementBytes());
	for (std::uint64_t First = 0; First < Elements.Count; First += AtATime)
	{
		const std::uint64_t Num = std::min(AtATime, Elements.Count - First);
		Elements.Produce(First, std::span(Out).subspan(First * Elements.ElementBytes(), Num * Elements.ElementBytes()));
	}
	return Out;
}

/// Equal bytes, but for the bits of what is no number.
bool IsSame(const FNewElements& A, const FNewElements& B)
{
	const std::vector<std::byte> Pieces = BytesOf(A, 7);
	const std::vector<std::byte> Whole = BytesOf(B, 1000000);
	if (A.Component != EGltfComponent::Float || Pieces.size() != Whole.size())
	{
		return Pieces == Whole;
	}
	for (std::size_t At = 0; At < Pieces.size(); At += sizeof(float))
	{
		float First = 0.f;
		float Second = 0.f;
		std::memcpy(&First, &Pieces[At], sizeof(float));
		std::memcpy(&Second, &Whole[At], sizeof(float));
		const bool bNumbers = !std::isnan(First) || !std::isnan(Second);
		if (bNumbers && std::memcmp(&First, &Second, sizeof(float)) != 0)
		{
			return false;
		}
	}
	return true;
}

/// The first thing in which the two differ; empty where nothing is.
std::string Difference(const FGltfMeshChange& A, const FGltfMeshChange& B)
{
	if (A.Elements.size() != B.Elements.size())
	{
		return "the number of slots";
	}
	for (const auto& [Slot, Elements] : A.Elements)
	{
		const auto Found = B.Elements.find(Slot);
		if (Found == B.Elements.end())
		{
			return "slot " + Slot.Semantic;
		}
		const FNewElements& Other = *Found->second;
		const auto Format = [](const FNewElements& E) { return std::tuple(E.Component, E.Type, E.bNormalized, E.Use); };
		if (Format(*Elements) != Format(Other) || !IsSame(*Elements, Other))
		{
			return "elements of " + Slot.Semantic;
		}
		const auto Bounds = [](const FNewElements& E)
		{ return std::tuple(E.Bounds().Min, E.Bounds().Max, E.Bounds().bFinite); };
		if (Bounds(*Elements) != Bounds(Other))
		{
			return "bounds of " + Slot.Semantic;
		}
	}
	return {};
}

/// A grid of so many vertices to the side.
FSceneText GridScene(std::uint32_t Side)
{
	std::vector<float> Positions;
	std::vector<std::uint32_t> Indices;
	for (std::uint32_t Vertex = 0; Vertex < Side * Side; ++Vertex)
	{
		const float X = float(Vertex % Side);
		const float Y = float(Vertex / Side);
		Positions.insert(Positions.end(), {X, std::sin(X) * std::cos(Y), Y});
		if (Vertex % Side + 1 < Side && Vertex / Side + 1 < Side)
		{
			Indices.insert(
				Indices.end(), {Vertex, Vertex + Side, Vertex + 1, Vertex + 1, Vertex + Side, Vertex + Side + 1});
		}
	}
	FSceneText Scene;
	const std::string Attributes = "\"POSITION\":" + std::to_string(Scene.AddVec3(Positions));
	Scene.AddMesh(Attributes, ",\"indices\":" + std::to_string(Scene.Add(Indices, 5125, "SCALAR", 1)));
	Scene.AddNode("\"mesh\":0");
	return Scene;
}
}

RC_GTEST_PROP(SceneMeshProperty, WhatIsStreamedIsWhatTheMeshInMemoryBecomes, ())
{
	const FTempFolder Folder;
	const std::shared_ptr<const FGltfDocument> Document = MustLoad(AnyMesh().WriteBinary(Folder));
	const FSceneMeshData Streamed(Document, 0);
	const FSceneMeshData InMemory(Document, 0);
	const TSharedPtr<FMeshDescription> Later = Streamed.Decode();
	const TSharedPtr<FMeshDescription> Now = InMemory.Decode();
	RC_ASSERT(Later.IsValid() && Now.IsValid());
	RC_ASSERT(Later->NumVertices() == Now->Vertices().Num()); // the first look takes it in
	RC_ASSERT(Now->GetDeferred() == nullptr);
	for (int32 Left = 1 + Draw(3); Left > 0; --Left)
	{
		const FMatrix Matrix = (*MathGenerators::Transform(MathGenerators::NonZeroScale())).ToMatrixWithScale();
		FStaticMeshOperations::ApplyTransform(*Later, Matrix);
		FStaticMeshOperations::ApplyTransform(*Now, Matrix);
	}
	RC_ASSERT(Later->GetDeferred() != nullptr);
	RC_ASSERT(Later->ComputeBoundingBox() == Now->ComputeBoundingBox());
	RC_ASSERT(Later->CountNonFiniteVertices() == Now->CountNonFiniteVertices());
	const TSceneResult<FGltfMeshChange> FromFile = Streamed.MakeChange(*Later);
	const TSceneResult<FGltfMeshChange> FromMemory = InMemory.MakeChange(*Now);
	RC_ASSERT(FromFile.IsOk() && FromMemory.IsOk());
	RC_ASSERT(Later->GetDeferred() != nullptr);
	RC_ASSERT(Difference(*FromFile, *FromMemory) == std::string());
	RC_ASSERT(*Later == *Now);
}

TEST(SceneMesh, LargeMeshesAreStreamedOnAllCoresAlike)
{
	const FTempFolder Folder;
	const std::shared_ptr<const FGltfDocument> Document = MustLoad(GridScene(500).WriteBinary(Folder));
	const FSceneMeshData Streamed(Document, 0);
	const FSceneMeshData InMemory(Document, 0);
	const TSharedPtr<FMeshDescription> Later = Streamed.Decode();
	const TSharedPtr<FMeshDescription> Now = InMemory.Decode();
	ASSERT_EQ(Now->Vertices().Num(), 250000);
	const FMatrix Matrix =
		FTransform(FQuat({0, 0, 1}, std::numbers::pi / 5), {1, 2, 3}, {-1, 2, 0.5}).ToMatrixWithScale();
	FStaticMeshOperations::ApplyTransform(*Later, Matrix);
	FStaticMeshOperations::ApplyTransform(*Now, Matrix);
	EXPECT_EQ(Later->ComputeBoundingBox(), Now->ComputeBoundingBox());
	EXPECT_EQ(Difference(*Streamed.MakeChange(*Later), *InMemory.MakeChange(*Now)), "");
	EXPECT_TRUE(Later->GetDeferred());
	EXPECT_EQ(*Later, *Now);
}

TEST(SceneMesh, NamesTheFirstOfManyBadIndicesWhateverTheCores)
{
	const FTempFolder Folder;
	FSceneText Scene = GridScene(500);
	const std::uint32_t Bad[] = {250000, 0xFFFFFFFFu};
	const std::size_t Indices = 250000 * 12;
	std::memcpy(Scene.Bytes.data() + Indices + 4 * 1400000, &Bad[0], 4);
	std::memcpy(Scene.Bytes.data() + Indices + 4 * 1000001, &Bad[1], 4);
	std::memcpy(Scene.Bytes.data() + Indices + 4 * 1000002, &Bad[0], 4);
	const std::shared_ptr<const FGltfDocument> Document = MustLoad(Scene.WriteBinary(Folder));
	const auto Result = FSceneMeshData(Document, 0).TryDecode();
	ASSERT_FALSE(Result.IsOk());
	EXPECT_THAT(Result.Error().Message, HasSubstr("element 1000001 is 4294967295"));
}

TEST(SceneMesh, AMeshWithoutPositionsHasNothing)
{
	const FTempFolder Folder;
	FSceneText Scene;
	Scene.AddMesh("\"NORMAL\":" + std::to_string(Scene.AddVec3({0, 0, 1, 0, 0, 1, 0, 0, 1})));
	const FSceneMeshData Data(MustLoad(Scene.WriteBinary(Folder)), 0);
	EXPECT_TRUE(Data.IsEmpty());
	const TSharedPtr<FMeshDescription> Description = Data.Decode();
	ASSERT_TRUE(Description.IsValid());
	EXPECT_TRUE(Description->IsEmpty());
	EXPECT_EQ(Description->Triangles().Num(), 0);
}
