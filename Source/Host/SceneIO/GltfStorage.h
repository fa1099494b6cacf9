// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/JsonText.h"

#include <cstdint>
#include <optional>
#include <string>

/// An index into one of the document's lists; NoIndex where a property is absent.
using FGltfIndex = std::int32_t;
constexpr FGltfIndex NoIndex = -1;

/// How one component of an accessor is stored; the values are those of the format.
enum class EGltfComponent : std::uint16_t
{
	Unknown = 0, ///< a type that this reader does not know; nothing can be decoded from it
	Byte = 5120,
	UnsignedByte = 5121,
	Short = 5122,
	UnsignedShort = 5123,
	UnsignedInt = 5125,
	Float = 5126,
};

enum class EGltfType : std::uint8_t
{
	Unknown,
	Scalar,
	Vec2,
	Vec3,
	Vec4,
	Mat2,
	Mat3,
	Mat4,
};

/// Bytes of one component; zero for Unknown.
std::uint32_t ComponentSize(EGltfComponent Component);
/// Components of one element; zero for Unknown.
std::uint32_t ComponentCount(EGltfType Type);
/// Bytes of one element, with the padding that small matrices have between their columns; zero for Unknown.
std::uint32_t ElementSize(EGltfComponent Component, EGltfType Type);
/// "VEC3" and the like.
const char* TypeName(EGltfType Type);

/// Where the bytes of a buffer are.
enum class EGltfBufferKind : std::uint8_t
{
	None,     ///< nowhere: a stand-in for compressed data, or a file without its data. Views of it cannot be read
	Chunk,    ///< the binary chunk of a .glb
	Embedded, ///< a data URI
	File,     ///< an external file
};

struct FGltfBuffer
{
	FJsonIndex Json = NoJson;
	EGltfBufferKind Kind = EGltfBufferKind::None;
	std::string Uri;  ///< as in the text, unescaped; Embedded: empty (it is read from the text when it is needed)
	std::string Path; ///< File: relative to the scene's folder
	std::uint64_t ByteLength = 0;
};

/// A buffer view's compressed form.
struct FGltfMeshopt
{
	enum class EMode : std::uint8_t
	{
		Attributes,
		Triangles,
		Indices,
	};
	enum class EFilter : std::uint8_t
	{
		None,
		Octahedral,
		Quaternion,
		Exponential,
		Color,
	};

	FGltfIndex Buffer = NoIndex;
	std::uint64_t ByteOffset = 0;
	std::uint64_t ByteLength = 0;
	std::uint64_t ByteStride = 0;
	std::uint64_t Count = 0;
	EMode Mode = EMode::Attributes;
	EFilter Filter = EFilter::None;
};

struct FGltfBufferView
{
	FJsonIndex Json = NoJson;
	FGltfIndex Buffer = NoIndex;
	std::uint64_t ByteOffset = 0;
	std::uint64_t ByteLength = 0;
	std::uint64_t ByteStride = 0; ///< zero: elements follow each other without gaps
	std::optional<FGltfMeshopt> Meshopt;
};

/// Elements of an accessor that differ from its buffer view.
struct FGltfSparse
{
	std::uint64_t Count = 0;
	FGltfIndex IndicesView = NoIndex;
	std::uint64_t IndicesOffset = 0;
	EGltfComponent IndicesComponent = EGltfComponent::UnsignedInt;
	FGltfIndex ValuesView = NoIndex;
	std::uint64_t ValuesOffset = 0;
};

struct FGltfAccessor
{
	FJsonIndex Json = NoJson;
	FGltfIndex View = NoIndex; ///< NoIndex: all zeros (or, in a Draco primitive, in the compressed data)
	std::uint64_t ByteOffset = 0;
	std::uint64_t Count = 0;
	EGltfComponent Component = EGltfComponent::Unknown;
	EGltfType Type = EGltfType::Unknown;
	bool bNormalized = false;
	std::optional<FGltfSparse> Sparse;
	FJsonIndex Min = NoJson;
	FJsonIndex Max = NoJson;

	std::uint32_t ElementBytes() const { return ElementSize(Component, Type); }
};
