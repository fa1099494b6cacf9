// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfPhysics.h"
#include "SceneIO/GltfStorage.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// What a file says, one record for each of its objects, in file order. Every record knows its JSON value, whose span
/// can be spliced. Spaces and units are the file's own: metres, Y up, right-handed, column vectors.

/// A vertex attribute, or one of a morph target, or one of instances.
struct FGltfAttribute
{
	std::string Semantic; ///< "POSITION", "_ID" …
	FGltfIndex Accessor = NoIndex;
	FJsonIndex Json = NoJson; ///< the number that names the accessor
};

/// The values are those of the format.
enum class EGltfMode : std::uint8_t
{
	Points,
	Lines,
	LineLoop,
	LineStrip,
	Triangles,
	TriangleStrip,
	TriangleFan,
};

/// A primitive's compressed form. Its accessors describe what comes out.
struct FGltfDraco
{
	struct FAttribute
	{
		std::string Semantic;
		std::uint32_t UniqueId = 0;
	};

	FGltfIndex View = NoIndex;
	std::vector<FAttribute> Attributes;
};

struct FGltfPrimitive
{
	FJsonIndex Json = NoJson;
	EGltfMode Mode = EGltfMode::Triangles;
	FGltfIndex Indices = NoIndex;
	FGltfIndex Material = NoIndex;
	std::vector<FGltfAttribute> Attributes;
	std::vector<std::vector<FGltfAttribute>> Targets;
	std::optional<FGltfDraco> Draco;
	std::vector<std::string> ExtensionNames;

	/// Null where the primitive has no such attribute.
	const FGltfAttribute* FindAttribute(std::string_view Semantic) const;
};

struct FGltfMesh
{
	FJsonIndex Json = NoJson;
	std::string Name;
	std::vector<FGltfPrimitive> Primitives;
	std::vector<std::string> ExtensionNames;

	bool IsMorphed() const;
};

/// What few nodes carry.
struct FGltfNodeExtensions
{
	std::vector<std::string> Names; ///< of all extensions on the node, known or not, in file order
	FGltfIndex Light = NoIndex;
	std::vector<FGltfIndex> LodNodes;      ///< MSFT_lod: the lower levels, finest first
	std::vector<FGltfAttribute> Instances; ///< EXT_mesh_gpu_instancing; all accessors have the same count
	bool bInstanced = false;
	std::optional<FGltfRigidBody> RigidBody;
};

struct FGltfNode
{
	FJsonIndex Json = NoJson;
	std::string Name;
	FGltfIndex Parent = NoIndex;
	std::vector<FGltfIndex> Children;
	FGltfIndex Mesh = NoIndex;
	FGltfIndex Skin = NoIndex;
	FGltfIndex Camera = NoIndex;
	bool bHasMatrix = false;
	std::array<double, 16> Matrix = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}; ///< column by column
	std::array<double, 3> Translation = {0, 0, 0};
	std::array<double, 4> Rotation = {0, 0, 0, 1}; ///< x, y, z, w as written, not normalised
	std::array<double, 3> Scale = {1, 1, 1};
	bool bHasWeights = false;
	bool bHasExtras = false;
	std::shared_ptr<const FGltfNodeExtensions> Extensions; ///< null where the node has none
};

struct FGltfScene
{
	FJsonIndex Json = NoJson;
	std::string Name;
	std::vector<FGltfIndex> Nodes;
};

struct FGltfSkin
{
	FJsonIndex Json = NoJson;
	std::string Name;
	FGltfIndex InverseBindMatrices = NoIndex;
	FGltfIndex Skeleton = NoIndex;
	std::vector<FGltfIndex> Joints;
};

struct FGltfChannel
{
	FJsonIndex Json = NoJson;
	FGltfIndex Sampler = NoIndex;
	FGltfIndex Node = NoIndex;
	std::string Path;    ///< "translation", "rotation", "scale", "weights", "pointer" or something unknown
	std::string Pointer; ///< KHR_animation_pointer: the JSON pointer of what is animated
};

struct FGltfAnimation
{
	FJsonIndex Json = NoJson;
	std::string Name;
	std::vector<FGltfChannel> Channels;
	std::vector<FGltfIndex> SamplerAccessors; ///< inputs and outputs of all samplers
};

/// A camera or a light: kept as it is; only its name and kind are shown.
struct FGltfNamed
{
	FJsonIndex Json = NoJson;
	std::string Name;
	std::string Type;
};

struct FGltfImage
{
	FJsonIndex Json = NoJson;
	FGltfIndex View = NoIndex;
};

/// A string under the key "uri" that names a file, anywhere in the document.
struct FGltfFileReference
{
	FJsonIndex Json = NoJson; ///< the string
	std::string Path;         ///< relative to the scene's folder
};

struct FGltfModel
{
	std::string Generator;
	std::vector<std::string> ExtensionsUsed;
	std::vector<std::string> ExtensionsRequired;
	FGltfIndex DefaultScene = NoIndex;
	std::vector<FGltfScene> Scenes;
	std::vector<FGltfNode> Nodes;
	std::vector<FGltfMesh> Meshes;
	std::vector<FGltfAccessor> Accessors;
	std::vector<FGltfBufferView> BufferViews;
	std::vector<FGltfBuffer> Buffers;
	std::vector<FGltfSkin> Skins;
	std::vector<FGltfAnimation> Animations;
	std::vector<FGltfNamed> Cameras;
	std::vector<FGltfNamed> Lights;
	std::vector<FGltfNamed> Materials;
	std::vector<FGltfImage> Images;
	std::vector<FGltfShape> Shapes;
	std::vector<FGltfFileReference> Files;

	/// Which accessors and buffer views an extension that is not understood may refer to, by index.
	std::vector<bool> AccessorsSeenByUnknown;
	std::vector<bool> ViewsSeenByUnknown;

	std::vector<std::string> RootExtensionNames;
};
