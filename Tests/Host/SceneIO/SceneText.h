// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfPatch.h"
#include "TempFolder.h"

#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Puts a scene together piece by piece, as text with blanks and digits of its own, so that tests see what is kept.
class FSceneText
{
public:
	std::string Bytes; ///< of the one buffer
	std::vector<std::string> Views;
	std::vector<std::string> Accessors;
	std::vector<std::string> Meshes;
	std::vector<std::string> Nodes;
	std::string Root; ///< more members of the root, each with a comma before it

	/// Bytes at the next multiple of four, as a buffer view; `More` are further members of it, each with a comma before
	/// it.
	int AddView(std::string_view Content, const std::string& More = "");

	/// An accessor on a buffer view.
	int AddAccessor(int View, int Component, std::size_t Count, const char* Type, const std::string& More = "");

	/// A buffer view and an accessor for it.
	template <typename T>
	int Add(const std::vector<T>& Values, int Component, const char* Type, std::size_t Components,
		const std::string& More = "")
	{
		const std::string_view Content(reinterpret_cast<const char*>(Values.data()), Values.size() * sizeof(T));
		return AddAccessor(AddView(Content), Component, Values.size() / Components, Type, More);
	}
	int AddVec3(const std::vector<float>& Values, const std::string& More = "")
	{
		return Add(Values, 5126, "VEC3", 3, More);
	}
	int AddVec4(const std::vector<float>& Values) { return Add(Values, 5126, "VEC4", 4); }
	int AddIndices(const std::vector<std::uint16_t>& Values) { return Add(Values, 5123, "SCALAR", 1); }

	/// A mesh with one primitive; `Attributes` and `More` are members ("\"POSITION\":0", ",\"indices\":1").
	int AddMesh(const std::string& Attributes, const std::string& More = "");
	int AddNode(const std::string& Members);

	/// The text with its buffer in a file of that name, in a data URI (empty name), or in the binary chunk ("chunk").
	std::string Text(const std::string& Uri) const;

	std::string WriteText(const FTempFolder& Folder, const std::string& Name = "scene.gltf") const;
	std::string WriteEmbedded(const FTempFolder& Folder, const std::string& Name = "scene.gltf") const;
	std::string WriteBinary(const FTempFolder& Folder, const std::string& Name = "scene.glb") const;
};

/// The bytes of a binary scene.
std::string BinaryScene(std::string Json, std::string Chunk);

/// Loads a scene, failing the test with the sentence where that is refused.
std::shared_ptr<const FGltfDocument> MustLoad(const std::string& Path);

/// Loads a scene that must be refused, and returns the sentence.
std::string RefusalOf(const std::string& Path);

/// The sentence with which a text, written as "scene.gltf", is refused; "accepted" where it is not.
std::string RefusalOfText(const std::string& Json);

/// A scene of one triangle mesh with positions, normals and indices, one node turned and scaled.
FSceneText TriangleScene();

/// A patch that writes new positions into the mesh of a TriangleScene that stands at `Path`.
FGltfPatch MovedTriangle(const std::string& Path);
