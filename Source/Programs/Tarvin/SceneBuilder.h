// SPDX-License-Identifier: MIT
#pragma once

#include "JsonReport.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// The shape of a primitive that `FSceneBuilder` makes.
struct FBuilderGeometry
{
	std::vector<std::array<float, 3>> Positions;
	std::vector<std::array<float, 3>> Normals;
	std::vector<std::uint16_t> Indices; ///< triangles; empty: each three vertices make one
};

/// A box from `Min` to `Max`, with flat normals.
FBuilderGeometry MakeBuilderBox(const std::array<float, 3>& Min, const std::array<float, 3>& Max);

/// Puts a scene file together, list by list. Functions return the index of what they added.
class FSceneBuilder
{
public:
	int AddFloats(const std::vector<float>& Values, const char* Type, bool bBounds);
	int AddShorts(const std::vector<std::uint16_t>& Values, const char* Type, int Target);
	int AddBytes(const std::vector<std::uint8_t>& Values, const char* Type);

	/// A mesh of one primitive. `Attributes` adds members to its attributes (`,"JOINTS_0":7`), `Members` to the mesh.
	int AddMesh(const std::string& Name, const FBuilderGeometry& Geometry, int Material,
		const std::string& Members = {}, const std::string& Attributes = {});
	int AddMaterial(const std::string& Name, const std::array<double, 3>& Color);

	/// A node from its members beside the name.
	int AddNode(const std::string& Name, const FJsonObject& Members);

	/// Adds a root list: `"skins":[…]`.
	void AddRoot(const std::string& Key, const std::string& Text);
	void UseExtension(const std::string& Name) { Extensions.push_back(Name); }

	/// The whole file: a .glb, or a .gltf with its buffer inside.
	std::string Finish(const std::vector<int>& Roots, bool bBinary) const;

private:
	int AddAccessor(const std::string& Bytes, int ComponentType, std::size_t Count, const char* Type, int Target,
		const std::string& More);
	std::string Json(const std::vector<int>& Roots, bool bBinary) const;

	std::string Buffer;
	std::vector<std::string> Accessors;
	std::vector<std::string> Views;
	std::vector<std::string> Meshes;
	std::vector<std::string> Materials;
	std::vector<std::string> Nodes;
	std::vector<std::string> Extensions;
	FJsonObject Root;
};
