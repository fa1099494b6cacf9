// SPDX-License-Identifier: MIT
#include "SceneBuilder.h"

#include "SceneIO/Base64.h"
#include "SceneIO/JsonWrite.h"

#include <algorithm>
#include <cstring>

FBuilderGeometry MakeBuilderBox(const std::array<float, 3>& Min, const std::array<float, 3>& Max)
{
	FBuilderGeometry Box;
	for (std::size_t Axis = 0; Axis < 3; ++Axis)
	{
		for (const bool bHigh : {false, true})
		{
			// Two axes span the side; their order makes it face outwards.
			const std::size_t U = (Axis + (bHigh ? 1 : 2)) % 3;
			const std::size_t V = (Axis + (bHigh ? 2 : 1)) % 3;
			const std::uint16_t First = std::uint16_t(Box.Positions.size());
			for (const auto& [bU, bV] :
				{std::pair(false, false), std::pair(true, false), std::pair(true, true), std::pair(false, true)})
			{
				std::array<float, 3> Corner;
				Corner[Axis] = bHigh ? Max[Axis] : Min[Axis];
				Corner[U] = bU ? Max[U] : Min[U];
				Corner[V] = bV ? Max[V] : Min[V];
				Box.Positions.push_back(Corner);
				std::array<float, 3> Normal = {0, 0, 0};
				Normal[Axis] = bHigh ? 1.f : -1.f;
				Box.Normals.push_back(Normal);
			}
			for (const int Corner : {0, 1, 2, 0, 2, 3})
			{
				Box.Indices.push_back(std::uint16_t(First + Corner));
			}
		}
	}
	return Box;
}

namespace
{
constexpr int VertexTarget = 34962;
constexpr int IndexTarget = 34963;

template <class T>
std::string BytesOf(const std::vector<T>& Values)
{
	return std::string(reinterpret_cast<const char*>(Values.data()), Values.size() * sizeof(T));
}

std::size_t ComponentsOf(const char* Type)
{
	const std::string Name = Type;
	return Name == "SCALAR" ? 1 : Name == "VEC3" ? 3 : Name == "VEC4" ? 4 : 16;
}

std::vector<float> Flatten(const std::vector<std::array<float, 3>>& Vectors)
{
	std::vector<float> Values;
	for (const std::array<float, 3>& Vector : Vectors)
	{
		Values.insert(Values.end(), Vector.begin(), Vector.end());
	}
	return Values;
}
} // namespace

int FSceneBuilder::AddAccessor(const std::string& Bytes, int ComponentType, std::size_t Count, const char* Type,
	int Target, const std::string& More)
{
	Buffer.resize((Buffer.size() + 3) / 4 * 4);
	FJsonObject View;
	View.Integer("buffer", 0)
		.Integer("byteOffset", std::int64_t(Buffer.size()))
		.Integer("byteLength", std::int64_t(Bytes.size()));
	if (Target != 0)
	{
		View.Integer("target", Target);
	}
	Buffer += Bytes;
	Views.push_back(View.Text());
	FJsonObject Accessor;
	Accessor.Integer("bufferView", std::int64_t(Views.size()) - 1).Integer("componentType", ComponentType);
	Accessor.Integer("count", std::int64_t(Count)).String("type", Type);
	std::string Text = Accessor.Text();
	Text.insert(Text.size() - 1, More);
	Accessors.push_back(Text);
	return int(Accessors.size()) - 1;
}

int FSceneBuilder::AddFloats(const std::vector<float>& Values, const char* Type, bool bBounds)
{
	const std::size_t NumComponents = ComponentsOf(Type);
	std::string Bounds;
	if (bBounds)
	{
		std::vector<float> Min(Values.begin(), Values.begin() + std::ptrdiff_t(NumComponents));
		std::vector<float> Max = Min;
		for (std::size_t Index = 0; Index < Values.size(); ++Index)
		{
			Min[Index % NumComponents] = std::min(Min[Index % NumComponents], Values[Index]);
			Max[Index % NumComponents] = std::max(Max[Index % NumComponents], Values[Index]);
		}
		Bounds = ",\"min\":" + JsonWrite::Array(Min) + ",\"max\":" + JsonWrite::Array(Max);
	}
	const bool bVertices = NumComponents == 3 || NumComponents == 4;
	return AddAccessor(
		BytesOf(Values), 5126, Values.size() / NumComponents, Type, bVertices ? VertexTarget : 0, Bounds);
}

int FSceneBuilder::AddShorts(const std::vector<std::uint16_t>& Values, const char* Type, int Target)
{
	return AddAccessor(BytesOf(Values), 5123, Values.size() / ComponentsOf(Type), Type, Target, "");
}

int FSceneBuilder::AddBytes(const std::vector<std::uint8_t>& Values, const char* Type)
{
	return AddAccessor(BytesOf(Values), 5121, Values.size() / ComponentsOf(Type), Type, VertexTarget, "");
}

int FSceneBuilder::AddMesh(const std::string& Name, const FBuilderGeometry& Geometry, int Material,
	const std::string& Members, const std::string& Attributes)
{
	const int Positions = AddFloats(Flatten(Geometry.Positions), "VEC3", true);
	const int Normals = AddFloats(Flatten(Geometry.Normals), "VEC3", false);
	std::string Primitive = "{\"attributes\":{\"POSITION\":" + std::to_string(Positions) +
							",\"NORMAL\":" + std::to_string(Normals) + Attributes + "}";
	if (!Geometry.Indices.empty())
	{
		Primitive += ",\"indices\":" + std::to_string(AddShorts(Geometry.Indices, "SCALAR", IndexTarget));
	}
	Primitive += ",\"material\":" + std::to_string(Material) + "}";
	Meshes.push_back("{\"name\":" + JsonWrite::String(Name) + ",\"primitives\":[" + Primitive + "]" + Members + "}");
	return int(Meshes.size()) - 1;
}

int FSceneBuilder::AddMaterial(const std::string& Name, const std::array<double, 3>& Color)
{
	const std::array<double, 4> Base = {Color[0], Color[1], Color[2], 1.0};
	Materials.push_back(
		FJsonObject()
			.String("name", Name)
			.Raw("pbrMetallicRoughness",
				FJsonObject().Raw("baseColorFactor", JsonWrite::Array(Base)).Number("metallicFactor", 0.0).Text())
			.Text());
	return int(Materials.size()) - 1;
}

int FSceneBuilder::AddNode(const std::string& Name, const FJsonObject& Members)
{
	std::string Text = Members.Text();
	const std::string Label = "\"name\":" + JsonWrite::String(Name);
	Text.insert(1, Text.size() > 2 ? Label + "," : Label);
	Nodes.push_back(Text);
	return int(Nodes.size()) - 1;
}

void FSceneBuilder::AddRoot(const std::string& Key, const std::string& Text)
{
	Root.Raw(Key, Text);
}

std::string FSceneBuilder::Json(const std::vector<int>& Roots, bool bBinary) const
{
	std::vector<std::string> RootNodes;
	for (const int Node : Roots)
	{
		RootNodes.push_back(std::to_string(Node));
	}
	FJsonObject BufferObject;
	if (!bBinary)
	{
		BufferObject.String("uri",
			"data:application/octet-stream;base64," + Base64::Encode(std::as_bytes(std::span<const char>(Buffer))));
	}
	BufferObject.Integer("byteLength", std::int64_t(Buffer.size()));
	FJsonObject Scene;
	Scene.Raw("asset", R"({"version":"2.0","generator":"tarvin demo"})");
	Scene.Strings("extensionsUsed", Extensions);
	Scene.Integer("scene", 0);
	Scene.Raw("scenes", JsonArray({FJsonObject().String("name", "Yard").Raw("nodes", JsonArray(RootNodes)).Text()}));
	Scene.Raw("nodes", JsonArray(Nodes)).Raw("meshes", JsonArray(Meshes)).Raw("materials", JsonArray(Materials));
	Scene.Raw("accessors", JsonArray(Accessors))
		.Raw("bufferViews", JsonArray(Views))
		.Raw("buffers", JsonArray({BufferObject.Text()}));
	std::string Text = Scene.Text();
	const std::string More = Root.Text();
	if (More.size() > 2)
	{
		Text.insert(Text.size() - 1, "," + More.substr(1, More.size() - 2));
	}
	return Text;
}

std::string FSceneBuilder::Finish(const std::vector<int>& Roots, bool bBinary) const
{
	std::string Text = Json(Roots, bBinary);
	if (!bBinary)
	{
		return Text + "\n";
	}
	Text.resize((Text.size() + 3) / 4 * 4, ' ');
	std::string Data = Buffer;
	Data.resize((Data.size() + 3) / 4 * 4);
	std::string File;
	const auto Word = [&File](std::size_t Value)
	{
		const std::uint32_t Little = std::uint32_t(Value);
		File.append(reinterpret_cast<const char*>(&Little), sizeof(Little));
	};
	Word(0x46546C67);
	Word(2);
	Word(12 + 8 + Text.size() + 8 + Data.size());
	Word(Text.size());
	Word(0x4E4F534A);
	File += Text;
	Word(Data.size());
	Word(0x004E4942);
	return File + Data;
}
