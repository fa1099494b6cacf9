// SPDX-License-Identifier: MIT
#include "SceneIO/GltfElements.h"

#include "SceneIO/GltfPrimitiveData.h"
#include "SceneIO/NewElements.h"
#include "SceneIO/PrimitiveTopology.h"
#include "SceneText.h"

#include <array>
#include <bit>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <set>

using testing::ElementsAre;
using testing::HasSubstr;

namespace
{
std::vector<float> Floats(const std::string& Path, FGltfIndex Accessor)
{
	TSceneResult<FElementView> View = ViewElements(MustLoad(Path), Accessor);
	if (!View)
	{
		ADD_FAILURE() << View.Error().Message;
		return {};
	}
	std::vector<float> Out(View->Count * ComponentCount(View->Type));
	ReadComponents(*View, 0, Out);
	return Out;
}

std::string GeometryRefusal(const FSceneText& Scene)
{
	const FTempFolder Folder;
	const TSceneResult<FPrimitiveData> Data = ReadPrimitive(MustLoad(Scene.WriteBinary(Folder)), 0, 0);
	return Data ? "accepted" : Data.Error().Message;
}

template <typename T>
std::string Raw(const std::vector<T>& Values)
{
	return {reinterpret_cast<const char*>(Values.data()), Values.size() * sizeof(T)};
}

constexpr std::array AllComponents = {EGltfComponent::Byte, EGltfComponent::UnsignedByte, EGltfComponent::Short,
	EGltfComponent::UnsignedShort, EGltfComponent::UnsignedInt, EGltfComponent::Float};
}

TEST(Elements, EveryComponentTypeIsReadAsItsNumber)
{
	FSceneText Scene;
	Scene.Add<std::int8_t>({-128, 127, 3, 0}, 5120, "SCALAR", 1);
	Scene.Add<std::uint8_t>({255, 0, 7, 1}, 5121, "SCALAR", 1);
	Scene.Add<std::int16_t>({-32768, 32767}, 5122, "SCALAR", 1);
	Scene.Add<std::uint16_t>({65535, 2}, 5123, "SCALAR", 1);
	Scene.Add<std::uint32_t>({4000000000u}, 5125, "SCALAR", 1);
	Scene.Add<float>({-0.5f}, 5126, "SCALAR", 1);
	const FTempFolder Folder;
	const std::string Path = Scene.WriteBinary(Folder);
	EXPECT_THAT(Floats(Path, 0), ElementsAre(-128, 127, 3, 0));
	EXPECT_THAT(Floats(Path, 1), ElementsAre(255, 0, 7, 1));
	EXPECT_THAT(Floats(Path, 2), ElementsAre(-32768, 32767));
	EXPECT_THAT(Floats(Path, 3), ElementsAre(65535, 2));
	EXPECT_THAT(Floats(Path, 4), ElementsAre(4e9f));
	EXPECT_THAT(Floats(Path, 5), ElementsAre(-0.5f));
}

TEST(Elements, NormalisedIntegersAreFractions)
{
	FSceneText Scene;
	const std::string Normalised = ",\"normalized\":true";
	Scene.Add<std::int8_t>({-128, -127, 127, 0}, 5120, "SCALAR", 1, Normalised);
	Scene.Add<std::uint8_t>({255, 51}, 5121, "SCALAR", 1, Normalised);
	Scene.Add<std::int16_t>({-32768, 32767}, 5122, "SCALAR", 1, Normalised);
	Scene.Add<std::uint16_t>({65535, 13107}, 5123, "SCALAR", 1, Normalised);
	const FTempFolder Folder;
	const std::string Path = Scene.WriteText(Folder);
	EXPECT_THAT(Floats(Path, 0), ElementsAre(-1, -1, 1, 0));
	EXPECT_THAT(Floats(Path, 1), ElementsAre(1, 0.2f));
	EXPECT_THAT(Floats(Path, 2), ElementsAre(-1, 1));
	EXPECT_THAT(Floats(Path, 3), ElementsAre(1, 0.2f));
}

TEST(Elements, InterleavedElementsAreReadByTheirStride)
{
	FSceneText Scene;
	const int View = Scene.AddView(Raw<float>({1, 2, 3, 10, 20, 30, 4, 5, 6, 40, 50, 60}), ",\"byteStride\":24");
	Scene.AddAccessor(View, 5126, 2, "VEC3");
	Scene.AddAccessor(View, 5126, 2, "VEC3", ",\"byteOffset\":12");
	const FTempFolder Folder;
	const std::string Path = Scene.WriteText(Folder);
	EXPECT_THAT(Floats(Path, 0), ElementsAre(1, 2, 3, 4, 5, 6));
	EXPECT_THAT(Floats(Path, 1), ElementsAre(10, 20, 30, 40, 50, 60));
}

TEST(Elements, UnalignedElementsAreReadAllTheSame)
{
	FSceneText Scene;
	const int View = Scene.AddView("x" + Raw<float>({1.5f, -2.5f, 7}));
	Scene.AddAccessor(View, 5126, 1, "VEC3", ",\"byteOffset\":1");
	const FTempFolder Folder;
	EXPECT_THAT(Floats(Scene.WriteBinary(Folder), 0), ElementsAre(1.5f, -2.5f, 7));
}

TEST(Elements, SparseElementsReplaceThoseOfTheViewOrZeros)
{
	FSceneText Scene;
	const int Base = Scene.AddView(Raw<float>({1, 2, 3, 4}));
	const int Places = Scene.AddView(Raw<std::uint8_t>({0, 3}));
	const int Values = Scene.AddView(Raw<float>({-7, -9}));
	const std::string Sparse = ",\"sparse\":{\"count\":2,\"indices\":{\"bufferView\":" + std::to_string(Places) +
							   ",\"componentType\":5121},\"values\":{\"bufferView\":" + std::to_string(Values) + "}}";
	Scene.AddAccessor(Base, 5126, 4, "SCALAR", Sparse);
	Scene.Accessors.push_back("{\"componentType\":5126,\"count\":4,\"type\":\"SCALAR\"" + Sparse + "}");
	const FTempFolder Folder;
	const std::string Path = Scene.WriteText(Folder);
	EXPECT_THAT(Floats(Path, 0), ElementsAre(-7, 2, 3, -9));
	EXPECT_THAT(Floats(Path, 1), ElementsAre(-7, 0, 0, -9));
}

TEST(Elements, SparseElementsBeyondTheEndAreRefused)
{
	FSceneText Scene;
	const int Base = Scene.AddView(Raw<float>({1, 2}));
	const int Places = Scene.AddView(Raw<std::uint8_t>({2}));
	Scene.AddAccessor(Base, 5126, 2, "SCALAR",
		",\"sparse\":{\"count\":1,\"indices\":{\"bufferView\":" + std::to_string(Places) +
			",\"componentType\":5121},\"values\":{\"bufferView\":0}}");
	const FTempFolder Folder;
	const TSceneResult<FElementView> View = ViewElements(MustLoad(Scene.WriteText(Folder)), 0);
	ASSERT_FALSE(View.IsOk());
	EXPECT_THAT(View.Error().Message, HasSubstr("/accessors/0 replaces element 2, but has only 2"));
}

TEST(Elements, ColumnsOfSmallMatricesArePadded)
{
	FSceneText Scene;
	const int View = Scene.AddView(Raw<std::uint8_t>({1, 2, 0, 0, 3, 4, 0, 0}));
	Scene.AddAccessor(View, 5121, 1, "MAT2");
	const FTempFolder Folder;
	EXPECT_THAT(Floats(Scene.WriteText(Folder), 0), ElementsAre(1, 2, 3, 4));
}

TEST(Elements, DoublesAreNotRoundedOnTheWay)
{
	FSceneText Scene;
	Scene.Add<std::uint8_t>({51}, 5121, "SCALAR", 1, ",\"normalized\":true");
	const FTempFolder Folder;
	const TSceneResult<FElementView> View = ViewElements(MustLoad(Scene.WriteText(Folder)), 0);
	double Value = 0;
	ReadComponents(*View, 0, std::span(&Value, 1));
	EXPECT_EQ(Value, 0.2);
}

RC_GTEST_PROP(
	Elements, AnyStoredNumbersComeBackFromTheirFloats, (const std::vector<std::uint32_t>& Bits, bool bNormalized))
{
	const EGltfComponent Component = *rc::gen::elementOf(AllComponents);
	const std::size_t Size = ComponentSize(Component);
	FElementView View;
	View.Data = reinterpret_cast<const std::byte*>(Bits.data());
	View.Stride = Size;
	View.Count = Bits.size() * sizeof(std::uint32_t) / Size;
	View.Component = Component;
	View.bNormalized = bNormalized && Component != EGltfComponent::UnsignedInt && Component != EGltfComponent::Float;
	// 32-bit integers have more digits than a float.
	RC_PRE(Component != EGltfComponent::UnsignedInt);
	std::vector<float> Values(View.Count);
	ReadComponents(View, 0, Values);
	std::vector<std::byte> Stored(Values.size() * Size);
	WriteComponents(Values, Component, View.bNormalized, Stored);
	FElementView Again = View;
	Again.Data = Stored.data();
	std::vector<float> Reread(View.Count);
	ReadComponents(Again, 0, Reread);
	for (std::size_t I = 0; I < Values.size(); ++I)
	{
		RC_ASSERT(std::bit_cast<std::uint32_t>(Values[I]) == std::bit_cast<std::uint32_t>(Reread[I]));
	}
	const bool bAnyNan = std::any_of(Values.begin(), Values.end(), [](float Value) { return std::isnan(Value); });
	RC_ASSERT(bAnyNan || FitsStorage(Values, Component, View.bNormalized, 0));
}

TEST(Elements, ValuesThatStorageCannotHoldDoNotFit)
{
	const std::vector<float> Inside = {-1, 0, 1};
	const std::vector<float> Outside = {1.5f};
	EXPECT_TRUE(FitsStorage(Inside, EGltfComponent::Short, true, 1e-6));
	EXPECT_FALSE(FitsStorage(Outside, EGltfComponent::Short, true, 1e-6));
	EXPECT_FALSE(FitsStorage(Outside, EGltfComponent::Short, false, 1e-6));
	EXPECT_TRUE(FitsStorage(Outside, EGltfComponent::Short, false, 0.5));
	EXPECT_FALSE(FitsStorage(std::vector<float>{40000}, EGltfComponent::Short, false, 0.5));
	EXPECT_FALSE(FitsStorage(std::vector<float>{-1}, EGltfComponent::UnsignedByte, false, 0.1));
	EXPECT_FALSE(FitsStorage(std::vector<float>{NAN}, EGltfComponent::Short, false, 0.5));
	EXPECT_TRUE(FitsStorage(std::vector<float>{NAN}, EGltfComponent::Float, false, 0));
}

TEST(NewElements, ValuesThatDoNotFitBecomeSinglePrecision)
{
	FGltfAccessor Like;
	Like.Component = EGltfComponent::Short;
	Like.Type = EGltfType::Vec3;
	Like.bNormalized = true;
	const FNewElementsPtr Fits = NewElements::FromFloatsLike(Like, {1, 0, -1}, 1e-6);
	EXPECT_EQ(Fits->Component, EGltfComponent::Short);
	EXPECT_TRUE(Fits->bNormalized);
	EXPECT_THAT(Fits->Bounds().Min, ElementsAre(32767, 0, -32767));
	const FNewElementsPtr Beyond = NewElements::FromFloatsLike(Like, {1, 0, -1.25f}, 1e-6);
	EXPECT_EQ(Beyond->Component, EGltfComponent::Float);
	EXPECT_FALSE(Beyond->bNormalized);
	EXPECT_THAT(Beyond->Bounds().Max, ElementsAre(1, 0, -1.25));
}

TEST(NewElements, BoundsLeaveOutNanAndSayWhereTheyAreNotFinite)
{
	const FNewElementsPtr Some = NewElements::FromFloats({1, NAN, 3, -5, 2, 7}, EGltfType::Vec3);
	EXPECT_TRUE(Some->Bounds().bFinite);
	EXPECT_THAT(Some->Bounds().Min, ElementsAre(-5, 2, 3));
	EXPECT_FALSE(NewElements::FromFloats({NAN, 0, 0}, EGltfType::Vec3)->Bounds().bFinite);
	EXPECT_FALSE(NewElements::FromFloats({INFINITY, 0, 0}, EGltfType::Vec3)->Bounds().bFinite);
}

TEST(NewElements, IndicesTakeTheSmallestTypeThatHoldsThem)
{
	const auto Component = [](std::vector<std::uint32_t> Indices, std::optional<EGltfComponent> Preferred)
	{ return NewElements::FromIndices(std::move(Indices), Preferred)->Component; };
	EXPECT_EQ(Component({0, 254}, EGltfComponent::UnsignedByte), EGltfComponent::UnsignedByte);
	EXPECT_EQ(Component({0, 255}, EGltfComponent::UnsignedByte), EGltfComponent::UnsignedShort);
	EXPECT_EQ(Component({65534}, std::nullopt), EGltfComponent::UnsignedShort);
	EXPECT_EQ(Component({65535}, std::nullopt), EGltfComponent::UnsignedInt);
	EXPECT_EQ(Component({1}, EGltfComponent::UnsignedInt), EGltfComponent::UnsignedInt);
}

TEST(PrimitiveData, GeometryIsReadWithItsIndices)
{
	const FTempFolder Folder;
	const TSceneResult<FPrimitiveData> Data = ReadPrimitive(MustLoad(TriangleScene().WriteText(Folder)), 0, 0);
	ASSERT_TRUE(Data.IsOk());
	EXPECT_EQ(Data->VertexCount, 3u);
	EXPECT_THAT(Data->Indices, ElementsAre(0, 1, 2));
	EXPECT_NE(Data->Find("NORMAL"), nullptr);
	EXPECT_EQ(Data->Find("TANGENT"), nullptr);
}

TEST(PrimitiveData, IndicesBeyondTheVerticesAreRefused)
{
	FSceneText Scene;
	Scene.AddVec3({0, 0, 0, 2, 0, 0, 0, 3, 5});
	Scene.AddIndices({0, 1, 3});
	Scene.AddMesh("\"POSITION\":0", ",\"indices\":1");
	EXPECT_THAT(GeometryRefusal(Scene),
		HasSubstr("/accessors/1 holds an index beyond the vertices: element 2 is 3, but there are 3"));
}

TEST(PrimitiveData, TheIndexThatMeansRestartIsRefused)
{
	FSceneText Scene;
	Scene.Add<std::int8_t>(std::vector<std::int8_t>(256 * 4), 5120, "VEC3", 4);
	Scene.Views.back() = "{\"buffer\":0,\"byteLength\":1024,\"byteStride\":4}";
	Scene.Add<std::uint8_t>({0, 1, 255}, 5121, "SCALAR", 1);
	Scene.AddMesh("\"POSITION\":0", ",\"indices\":1");
	EXPECT_THAT(
		GeometryRefusal(Scene), HasSubstr("holds the index that means \"primitive restart\": element 2 is 255"));
}

TEST(PrimitiveData, ABufferWithoutDataIsRefusedWhenItIsNeeded)
{
	FSceneText Scene = TriangleScene();
	const FTempFolder Folder;
	const auto Document = MustLoad(Folder.Write("scene.gltf", Scene.Text("chunk")));
	const TSceneResult<FPrimitiveData> Data = ReadPrimitive(Document, 0, 0);
	ASSERT_FALSE(Data.IsOk());
	EXPECT_THAT(Data.Error().Message, HasSubstr("/buffers/0 has no data"));
}

TEST(PrimitiveTopology, StripsAndFansWindAsTheFormatSays)
{
	using namespace PrimitiveTopology;
	const std::vector<std::uint32_t> Indices = {5, 6, 7, 8, 9};
	EXPECT_THAT(TriangleList(EGltfMode::Triangles, Indices), ElementsAre(5, 6, 7));
	EXPECT_THAT(TriangleList(EGltfMode::TriangleStrip, Indices), ElementsAre(5, 6, 7, 6, 8, 7, 7, 8, 9));
	EXPECT_THAT(TriangleList(EGltfMode::TriangleFan, Indices), ElementsAre(6, 7, 5, 7, 8, 5, 8, 9, 5));
	EXPECT_TRUE(TriangleList(EGltfMode::Lines, Indices).empty());
	EXPECT_TRUE(TriangleList(EGltfMode::TriangleStrip, std::vector<std::uint32_t>{1, 2}).empty());
	EXPECT_TRUE(TriangleList(EGltfMode::TriangleFan, {}).empty());
}

TEST(PrimitiveTopology, EmptyTrianglesThatJoinStripsAreLeftOut)
{
	const std::vector<std::uint32_t> Indices = {0, 1, 2, 2, 3, 3, 4, 5};
	EXPECT_THAT(PrimitiveTopology::TriangleList(EGltfMode::TriangleStrip, Indices), ElementsAre(0, 1, 2, 3, 5, 4));
}

namespace
{
/// Triangles turned so that each begins with its smallest index: equal exactly where winding and corners are.
std::multiset<std::array<std::uint32_t, 3>> Turned(const std::vector<std::uint32_t>& List, bool bReverse)
{
	std::multiset<std::array<std::uint32_t, 3>> Out;
	for (std::size_t I = 0; I + 2 < List.size(); I += 3)
	{
		std::array<std::uint32_t, 3> Triangle = {List[I], List[I + (bReverse ? 2 : 1)], List[I + (bReverse ? 1 : 2)]};
		std::rotate(Triangle.begin(), std::min_element(Triangle.begin(), Triangle.end()), Triangle.end());
		Out.insert(Triangle);
	}
	return Out;
}
}

RC_GTEST_PROP(
	PrimitiveTopology, FlippedIndicesMakeTheSameTrianglesTheOtherWayRound, (const std::vector<std::uint8_t>& Numbers))
{
	const std::vector<std::uint32_t> Indices(Numbers.begin(), Numbers.end());
	const EGltfMode Mode = *rc::gen::element(EGltfMode::Triangles, EGltfMode::TriangleStrip, EGltfMode::TriangleFan);
	// Lists may have triangles that use a vertex twice; they are turned like all others.
	RC_ASSERT(Turned(PrimitiveTopology::TriangleList(Mode, PrimitiveTopology::Flipped(Mode, Indices)), true) ==
			  Turned(PrimitiveTopology::TriangleList(Mode, Indices), false));
}

TEST(PrimitiveTopology, PointsAndLinesHaveNothingToFlip)
{
	const std::vector<std::uint32_t> Indices = {3, 1, 2, 0};
	for (const EGltfMode Mode : {EGltfMode::Points, EGltfMode::Lines, EGltfMode::LineLoop, EGltfMode::LineStrip})
	{
		EXPECT_EQ(PrimitiveTopology::Flipped(Mode, Indices), Indices);
	}
}
