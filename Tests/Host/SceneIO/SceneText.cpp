// SPDX-License-Identifier: MIT
#include "SceneText.h"

#include "SceneIO/Base64.h"

#include <gtest/gtest.h>

namespace
{
std::string List(const char* Name, const std::vector<std::string>& Items)
{
	if (Items.empty())
	{
		return "";
	}
	std::string Out = std::string(",\n  \"") + Name + "\" : [\n    ";
	for (const std::string& Item : Items)
	{
		Out += (&Item == &Items.front() ? "" : ",\n    ") + Item;
	}
	return Out + "\n  ]";
}

void AppendU32(std::string& Out, std::size_t Value)
{
	const auto Number = static_cast<std::uint32_t>(Value);
	Out.append(reinterpret_cast<const char*>(&Number), sizeof(Number));
}
}

int FSceneText::AddView(std::string_view Content, const std::string& More)
{
	Bytes.resize((Bytes.size() + 3) / 4 * 4);
	Views.push_back("{ \"buffer\": 0, \"byteOffset\": " + std::to_string(Bytes.size()) +
					", \"byteLength\": " + std::to_string(Content.size()) + More + " }");
	Bytes += Content;
	return static_cast<int>(Views.size()) - 1;
}

int FSceneText::AddAccessor(int View, int Component, std::size_t Count, const char* Type, const std::string& More)
{
	Accessors.push_back("{ \"bufferView\": " + std::to_string(View) +
						", \"componentType\": " + std::to_string(Component) + ", \"count\": " + std::to_string(Count) +
						", \"type\": \"" + Type + "\"" + More + " }");
	return static_cast<int>(Accessors.size()) - 1;
}

int FSceneText::AddMesh(const std::string& Attributes, const std::string& More)
{
	Meshes.push_back("{ \"name\": \"mesh " + std::to_string(Meshes.size()) +
					 "\", \"primitives\": [ { \"attributes\": { " + Attributes + " }" + More + " } ] }");
	return static_cast<int>(Meshes.size()) - 1;
}

int FSceneText::AddNode(const std::string& Members)
{
	Nodes.push_back("{ " + Members + " }");
	return static_cast<int>(Nodes.size()) - 1;
}

std::string FSceneText::Text(const std::string& Uri) const
{
	std::string Out = "{\n  \"asset\" : { \"version\" : \"2.0\" }";
	if (!Bytes.empty())
	{
		const std::string Target =
			Uri.empty() ? "data:application/octet-stream;base64," + Base64::Encode(AsBytes(Bytes)) : Uri;
		const std::string Member = Uri == "chunk" ? "" : ", \"uri\": \"" + Target + "\"";
		Out += List("buffers", {"{ \"byteLength\": " + std::to_string(Bytes.size()) + Member + " }"});
	}
	return Out + List("bufferViews", Views) + List("accessors", Accessors) + List("meshes", Meshes) +
		   List("nodes", Nodes) + Root + "\n}\n";
}

std::string FSceneText::WriteText(const FTempFolder& Folder, const std::string& Name) const
{
	Folder.Write("scene.bin", Bytes);
	return Folder.Write(Name, Text("scene.bin"));
}

std::string FSceneText::WriteEmbedded(const FTempFolder& Folder, const std::string& Name) const
{
	return Folder.Write(Name, Text(""));
}

std::string FSceneText::WriteBinary(const FTempFolder& Folder, const std::string& Name) const
{
	return Folder.Write(Name, BinaryScene(Text("chunk"), Bytes));
}

std::string BinaryScene(std::string Json, std::string Chunk)
{
	Json.resize((Json.size() + 3) / 4 * 4, ' ');
	Chunk.resize((Chunk.size() + 3) / 4 * 4);
	std::string Out = "glTF";
	AppendU32(Out, 2);
	AppendU32(Out, 12 + 8 + Json.size() + (Chunk.empty() ? 0 : 8 + Chunk.size()));
	AppendU32(Out, Json.size());
	Out += "JSON" + Json;
	if (!Chunk.empty())
	{
		AppendU32(Out, Chunk.size());
		Out += std::string("BIN\0", 4) + Chunk;
	}
	return Out;
}

std::shared_ptr<const FGltfDocument> MustLoad(const std::string& Path)
{
	TSceneResult<std::shared_ptr<const FGltfDocument>> Document = FGltfDocument::Load(Path);
	if (!Document)
	{
		ADD_FAILURE() << Document.Error().Message;
		std::abort(); // nothing after this can be meant
	}
	return *Document;
}

std::string RefusalOf(const std::string& Path)
{
	const TSceneResult<std::shared_ptr<const FGltfDocument>> Document = FGltfDocument::Load(Path);
	return Document ? "accepted" : Document.Error().Message;
}

std::string RefusalOfText(const std::string& Json)
{
	const FTempFolder Folder;
	std::string Sentence = RefusalOf(Folder.Write("scene.gltf", Json));
	// The folder has another name in every run.
	const std::string Path = Folder.Path("");
	for (std::size_t At = Sentence.find(Path); At != std::string::npos; At = Sentence.find(Path))
	{
		Sentence.erase(At, Path.size());
	}
	return Sentence;
}

FSceneText TriangleScene()
{
	FSceneText Scene;
	const int Positions =
		Scene.AddVec3({0, 0, 0, 2, 0, 0, 0, 3, 5}, ", \"min\": [ 0, 0, 0 ], \"max\": [ 2.0, 3.0, 5.0 ]");
	const int Normals = Scene.AddVec3({0, 0, 1, 0, 0, 1, 0, 0, 1});
	const int Indices = Scene.AddIndices({0, 1, 2});
	const int Mesh =
		Scene.AddMesh("\"POSITION\": " + std::to_string(Positions) + ", \"NORMAL\": " + std::to_string(Normals),
			", \"indices\": " + std::to_string(Indices));
	Scene.AddNode(
		"\"name\": \"A\", \"mesh\": " + std::to_string(Mesh) + ", \"rotation\": [0, 0, 1, 0], \"scale\": [2, 3, 5]");
	return Scene;
}

FGltfPatch MovedTriangle(const std::string& Path)
{
	FGltfPatch Patch(MustLoad(Path));
	FGltfMeshChange Change;
	Change.Elements[{0, "POSITION"}] = NewElements::FromFloats({7, -3, 2, 11, 13, -17, 19, 23, 29}, EGltfType::Vec3);
	Patch.ChangeMesh(0, Change);
	return Patch;
}
