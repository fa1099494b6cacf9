// SPDX-License-Identifier: MIT
#include "SceneIO/Base64.h"
#include "SceneIO/CheckedMath.h"
#include "SceneIO/GltfReader.h"
#include "SceneIO/PrintableText.h"
#include "SceneIO/SceneUri.h"

namespace
{
/// Bytes that a data URI holds, without decoding them; empty where it is malformed.
std::optional<std::uint64_t> EmbeddedSize(const SceneUri::FTarget& Target)
{
	if (Target.bBase64)
	{
		return Base64::DecodedSize(Target.Payload);
	}
	return std::nullopt;
}

bool ReadBufferUri(FGltfReader& Reader, FGltfBuffer& Buffer)
{
	const FJsonIndex Value = Reader.Json.Find(Buffer.Json, "uri");
	std::string Uri;
	if (!Reader.String(Buffer.Json, "uri", Uri))
	{
		return false;
	}
	const SceneUri::FTarget Target = SceneUri::Parse(Uri);
	switch (Target.Kind)
	{
	case SceneUri::EKind::Refused:
		return Reader.Fail(Value, "(\"" + PrintableText(Uri, 80) + "\") " + Target.Why);
	case SceneUri::EKind::Relative:
		Buffer.Kind = EGltfBufferKind::File;
		Buffer.Path = Target.Path;
		Buffer.Uri = std::move(Uri);
		return true;
	case SceneUri::EKind::Data:
		break;
	}
	Buffer.Kind = EGltfBufferKind::Embedded;
	const std::optional<std::uint64_t> Size = EmbeddedSize(Target);
	if (!Size)
	{
		return Reader.Fail(Value, "is a data URI that is not valid base64");
	}
	return *Size >= Buffer.ByteLength ||
		   Reader.Fail(Value,
			   "holds " + std::to_string(*Size) + " bytes, but byteLength is " + std::to_string(Buffer.ByteLength));
}

bool ReadBuffer(FGltfReader& Reader, FJsonIndex Object, bool bFirstOfChunk)
{
	FGltfBuffer& Buffer = Reader.Model.Buffers.emplace_back();
	Buffer.Json = Object;
	if (!Reader.Required(Object, "byteLength") || !Reader.Unsigned(Object, "byteLength", Buffer.ByteLength))
	{
		return false;
	}
	if (Reader.Json.Find(Object, "uri") != NoJson)
	{
		return ReadBufferUri(Reader, Buffer);
	}
	Buffer.Kind = bFirstOfChunk ? EGltfBufferKind::Chunk : EGltfBufferKind::None;
	return true;
}

bool ReadMode(FGltfReader& Reader, FJsonIndex Object, FGltfMeshopt& Out)
{
	std::string Mode;
	std::string Filter = "NONE";
	if (!Reader.Required(Object, "mode") || !Reader.String(Object, "mode", Mode) ||
		!Reader.String(Object, "filter", Filter))
	{
		return false;
	}
	using EMode = FGltfMeshopt::EMode;
	using EFilter = FGltfMeshopt::EFilter;
	Out.Mode = Mode == "TRIANGLES" ? EMode::Triangles : Mode == "INDICES" ? EMode::Indices : EMode::Attributes;
	Out.Filter = Filter == "OCTAHEDRAL"    ? EFilter::Octahedral
				 : Filter == "QUATERNION"  ? EFilter::Quaternion
				 : Filter == "EXPONENTIAL" ? EFilter::Exponential
				 : Filter == "COLOR"       ? EFilter::Color
										   : EFilter::None;
	if (Out.Mode == EMode::Attributes && Mode != "ATTRIBUTES")
	{
		return Reader.FailMember(Object, "mode", "is not a known compression mode");
	}
	return Out.Filter != EFilter::None || Filter == "NONE" ||
		   Reader.FailMember(Object, "filter", "is not a known compression filter");
}

/// What the decoder asserts of its arguments, and what the format asks for.
bool CheckMeshopt(FGltfReader& Reader, FJsonIndex Object, const FGltfBufferView& View, const FGltfMeshopt& Packed)
{
	using EMode = FGltfMeshopt::EMode;
	using EFilter = FGltfMeshopt::EFilter;
	const std::uint64_t Stride = Packed.ByteStride;
	const bool bAttributes = Packed.Mode == EMode::Attributes;
	const bool bStrideFits = bAttributes ? Stride >= 4 && Stride <= 256 && Stride % 4 == 0 : Stride == 2 || Stride == 4;
	const bool bFourOrEight = Stride == 4 || Stride == 8;
	const bool bFilterFits =
		Packed.Filter == EFilter::None ||
		(bAttributes && (Packed.Filter == EFilter::Quaternion ? Stride == 8
															  : Packed.Filter == EFilter::Exponential || bFourOrEight));
	if (!bStrideFits)
	{
		return Reader.FailMember(Object, "byteStride", "does not suit the compression mode");
	}
	if (!bFilterFits)
	{
		return Reader.FailMember(Object, "filter", "does not suit the compression mode and stride");
	}
	if (Packed.Mode == EMode::Triangles && Packed.Count % 3 != 0)
	{
		return Reader.FailMember(Object, "count", "is not a multiple of 3");
	}
	const std::optional<std::uint64_t> Size = CheckedMath::Multiply(Packed.Count, Stride);
	if (!Size || *Size != View.ByteLength)
	{
		return Reader.FailMember(Object, "count", "times byteStride is not the byteLength of the buffer view");
	}
	const FGltfBuffer& Buffer = Reader.Model.Buffers[static_cast<std::size_t>(Packed.Buffer)];
	return CheckedMath::IsWithin(Packed.ByteOffset, Packed.ByteLength, Buffer.ByteLength) ||
		   Reader.Fail(Object, "reaches beyond the end of its buffer");
}

bool ReadMeshopt(FGltfReader& Reader, FGltfBufferView& View)
{
	FJsonIndex Object = NoJson;
	if (!Reader.Extension(View.Json, "EXT_meshopt_compression", Object) ||
		(Object == NoJson && !Reader.Extension(View.Json, "KHR_meshopt_compression", Object)))
	{
		return false;
	}
	if (Object == NoJson)
	{
		return true;
	}
	FGltfMeshopt& Packed = View.Meshopt.emplace();
	return Reader.Required(Object, "buffer") && Reader.Required(Object, "byteLength") &&
		   Reader.Required(Object, "byteStride") && Reader.Required(Object, "count") &&
		   Reader.Index(Object, "buffer", Reader.Model.Buffers.size(), "buffers", Packed.Buffer) &&
		   Reader.Unsigned(Object, "byteOffset", Packed.ByteOffset) &&
		   Reader.Unsigned(Object, "byteLength", Packed.ByteLength) &&
		   Reader.Unsigned(Object, "byteStride", Packed.ByteStride) && Reader.Unsigned(Object, "count", Packed.Count) &&
		   ReadMode(Reader, Object, Packed) && CheckMeshopt(Reader, Object, View, Packed);
}

bool ReadBufferView(FGltfReader& Reader, FJsonIndex Object)
{
	FGltfBufferView& View = Reader.Model.BufferViews.emplace_back();
	View.Json = Object;
	if (!Reader.Required(Object, "buffer") || !Reader.Required(Object, "byteLength") ||
		!Reader.Index(Object, "buffer", Reader.Model.Buffers.size(), "buffers", View.Buffer) ||
		!Reader.Unsigned(Object, "byteOffset", View.ByteOffset) ||
		!Reader.Unsigned(Object, "byteLength", View.ByteLength) ||
		!Reader.Unsigned(Object, "byteStride", View.ByteStride))
	{
		return false;
	}
	const std::uint64_t BufferLength = Reader.Model.Buffers[static_cast<std::size_t>(View.Buffer)].ByteLength;
	if (!CheckedMath::IsWithin(View.ByteOffset, View.ByteLength, BufferLength))
	{
		return Reader.Fail(Object, "reaches from byte " + std::to_string(View.ByteOffset) + " over " +
									   std::to_string(View.ByteLength) + " bytes, but its buffer has " +
									   std::to_string(BufferLength));
	}
	return ReadMeshopt(Reader, View);
}

EGltfType TypeFromName(std::string_view Name)
{
	for (const EGltfType Type : {EGltfType::Scalar, EGltfType::Vec2, EGltfType::Vec3, EGltfType::Vec4, EGltfType::Mat2,
			 EGltfType::Mat3, EGltfType::Mat4})
	{
		if (Name == TypeName(Type))
		{
			return Type;
		}
	}
	return EGltfType::Unknown;
}

EGltfComponent ComponentFromNumber(std::uint64_t Number)
{
	const bool bKnown = Number >= 5120 && Number <= 5126 && Number != 5124;
	return bKnown ? static_cast<EGltfComponent>(Number) : EGltfComponent::Unknown;
}

/// Checks that `Count` elements of `Size` bytes fit a buffer view, from `Offset` on, with the view's stride.
bool CheckElements(FGltfReader& Reader, FJsonIndex At, FGltfIndex ViewIndex, std::uint64_t Offset, std::uint64_t Count,
	std::uint64_t Size)
{
	const FGltfBufferView& View = Reader.Model.BufferViews[static_cast<std::size_t>(ViewIndex)];
	if (View.ByteStride != 0 && View.ByteStride < Size)
	{
		return Reader.Fail(At, "has elements of " + std::to_string(Size) +
								   " bytes, but the byteStride of its buffer view is " +
								   std::to_string(View.ByteStride));
	}
	const std::uint64_t Stride = View.ByteStride == 0 ? Size : View.ByteStride;
	const std::optional<std::uint64_t> Length = CheckedMath::StridedLength(Count, Stride, Size);
	return (Length && CheckedMath::IsWithin(Offset, *Length, View.ByteLength)) ||
		   Reader.Fail(At, "reaches beyond the end of its buffer view: " + std::to_string(Count) + " elements of " +
							   std::to_string(Size) + " bytes every " + std::to_string(Stride) + " from byte " +
							   std::to_string(Offset) + " do not fit in " + std::to_string(View.ByteLength) + " bytes");
}

bool ReadSparse(FGltfReader& Reader, FGltfAccessor& Accessor)
{
	FJsonIndex Object = NoJson;
	if (!Reader.ObjectMember(Accessor.Json, "sparse", Object) || Object == NoJson)
	{
		return Object == NoJson;
	}
	FGltfSparse& Sparse = Accessor.Sparse.emplace();
	FJsonIndex Indices = NoJson;
	FJsonIndex Values = NoJson;
	std::uint64_t Component = 0;
	const std::size_t Views = Reader.Model.BufferViews.size();
	if (!Reader.Required(Object, "count") || !Reader.Required(Object, "indices") ||
		!Reader.Required(Object, "values") || !Reader.Unsigned(Object, "count", Sparse.Count) ||
		!Reader.ObjectMember(Object, "indices", Indices) || !Reader.ObjectMember(Object, "values", Values) ||
		!Reader.Required(Indices, "bufferView") || !Reader.Required(Values, "bufferView") ||
		!Reader.Required(Indices, "componentType") ||
		!Reader.Index(Indices, "bufferView", Views, "buffer views", Sparse.IndicesView) ||
		!Reader.Index(Values, "bufferView", Views, "buffer views", Sparse.ValuesView) ||
		!Reader.Unsigned(Indices, "byteOffset", Sparse.IndicesOffset) ||
		!Reader.Unsigned(Values, "byteOffset", Sparse.ValuesOffset) ||
		!Reader.Unsigned(Indices, "componentType", Component))
	{
		return false;
	}
	Sparse.IndicesComponent = ComponentFromNumber(Component);
	const bool bUnsigned = Sparse.IndicesComponent == EGltfComponent::UnsignedByte ||
						   Sparse.IndicesComponent == EGltfComponent::UnsignedShort ||
						   Sparse.IndicesComponent == EGltfComponent::UnsignedInt;
	if (!bUnsigned)
	{
		return Reader.FailMember(Indices, "componentType", "is not an unsigned integer type");
	}
	if (Sparse.Count > Accessor.Count)
	{
		return Reader.FailMember(Object, "count", "is larger than the accessor's own");
	}
	return CheckElements(Reader, Indices, Sparse.IndicesView, Sparse.IndicesOffset, Sparse.Count,
			   ComponentSize(Sparse.IndicesComponent)) &&
		   (Accessor.ElementBytes() == 0 || CheckElements(Reader, Values, Sparse.ValuesView, Sparse.ValuesOffset,
												Sparse.Count, Accessor.ElementBytes()));
}

bool ReadAccessor(FGltfReader& Reader, FJsonIndex Object)
{
	FGltfAccessor& Accessor = Reader.Model.Accessors.emplace_back();
	Accessor.Json = Object;
	std::uint64_t Component = 0;
	std::string Type;
	if (!Reader.Required(Object, "componentType") || !Reader.Required(Object, "count") ||
		!Reader.Required(Object, "type") || !Reader.Unsigned(Object, "componentType", Component) ||
		!Reader.Unsigned(Object, "count", Accessor.Count) || !Reader.String(Object, "type", Type) ||
		!Reader.Bool(Object, "normalized", Accessor.bNormalized) ||
		!Reader.Unsigned(Object, "byteOffset", Accessor.ByteOffset) ||
		!Reader.Index(Object, "bufferView", Reader.Model.BufferViews.size(), "buffer views", Accessor.View) ||
		!Reader.ArrayMember(Object, "min", Accessor.Min) || !Reader.ArrayMember(Object, "max", Accessor.Max))
	{
		return false;
	}
	Accessor.Component = ComponentFromNumber(Component);
	Accessor.Type = TypeFromName(Type);
	// Vertices and indices are numbered with 32 bits everywhere.
	if (Accessor.Count > 0xFFFFFFFFu)
	{
		return Reader.FailMember(Object, "count", "is larger than 2^32 - 1");
	}
	if (Accessor.View != NoIndex && Accessor.ElementBytes() != 0 &&
		!CheckElements(Reader, Object, Accessor.View, Accessor.ByteOffset, Accessor.Count, Accessor.ElementBytes()))
	{
		return false;
	}
	return ReadSparse(Reader, Accessor);
}
}

bool ReadGltfStorage(FGltfReader& Reader, bool bHasChunk)
{
	const FJsonIndex Root = Reader.Json.Root();
	std::vector<FJsonIndex> Buffers;
	std::vector<FJsonIndex> Views;
	std::vector<FJsonIndex> Accessors;
	if (!Reader.Objects(Root, "buffers", Buffers) || !Reader.Objects(Root, "bufferViews", Views) ||
		!Reader.Objects(Root, "accessors", Accessors))
	{
		return false;
	}
	Reader.Model.Buffers.reserve(Buffers.size());
	Reader.Model.BufferViews.reserve(Views.size());
	Reader.Model.Accessors.reserve(Accessors.size());
	for (const FJsonIndex Object : Buffers)
	{
		if (!ReadBuffer(Reader, Object, bHasChunk && Reader.Model.Buffers.empty()))
		{
			return false;
		}
	}
	for (const FJsonIndex Object : Views)
	{
		if (!ReadBufferView(Reader, Object))
		{
			return false;
		}
	}
	for (const FJsonIndex Object : Accessors)
	{
		if (!ReadAccessor(Reader, Object))
		{
			return false;
		}
	}
	return true;
}
