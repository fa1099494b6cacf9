// SPDX-License-Identifier: MIT
#include "SceneIO/MeshoptView.h"

#include <cmath>
#include <cstring>
#include <meshoptimizer.h>

namespace
{
/// The fewest bytes that the codec can need: an attribute byte costs two bits for every sixteen, a triangle or an index
/// one byte. Keeps a short stream from claiming a large result.
std::uint64_t FewestBytes(const FGltfMeshopt& Packed)
{
	switch (Packed.Mode)
	{
	case FGltfMeshopt::EMode::Attributes:
		return Packed.Count * Packed.ByteStride / 64;
	case FGltfMeshopt::EMode::Triangles:
		return Packed.Count / 3;
	case FGltfMeshopt::EMode::Indices:
		return Packed.Count;
	}
	return 0;
}

int Decode(const FGltfMeshopt& Packed, std::span<const std::byte> Compressed, void* Out)
{
	const auto* const Bytes = reinterpret_cast<const unsigned char*>(Compressed.data());
	const auto Count = static_cast<std::size_t>(Packed.Count);
	const auto Stride = static_cast<std::size_t>(Packed.ByteStride);
	switch (Packed.Mode)
	{
	case FGltfMeshopt::EMode::Attributes:
		return meshopt_decodeVertexBuffer(Out, Count, Stride, Bytes, Compressed.size());
	case FGltfMeshopt::EMode::Triangles:
		return meshopt_decodeIndexBuffer(Out, Count, Stride, Bytes, Compressed.size());
	case FGltfMeshopt::EMode::Indices:
		return meshopt_decodeIndexSequence(Out, Count, Stride, Bytes, Compressed.size());
	}
	return -1;
}

/// One colour of four components of type U, from luma and chrominance back to red, green, blue and alpha.
template <typename U, typename S>
void DecodeColor(std::byte* Element)
{
	U In[4];
	std::memcpy(In, Element, sizeof(In));
	int HighBit = -1;
	for (int Bit = static_cast<int>(sizeof(U) * 8) - 1; Bit >= 0 && HighBit < 0; --Bit)
	{
		HighBit = (In[3] & (1u << Bit)) != 0 ? Bit : -1;
	}
	if (HighBit < 0)
	{
		return; // no scale: not a value that the filter produces
	}
	const int Scale = (1 << (HighBit + 1)) - 1;
	const int Y = In[0];
	const int Co = static_cast<S>(In[1]);
	const int Cg = static_cast<S>(In[2]);
	const int AlphaBits = In[3] & (Scale >> 1);
	const int Colors[4] = {Y + Co - Cg, Y + Cg, Y - Co - Cg, (AlphaBits << 1) | (AlphaBits & 1)};
	constexpr float Largest = static_cast<float>(static_cast<U>(~U{0}));
	for (int I = 0; I < 4; ++I)
	{
		const float Value = std::round(static_cast<float>(Colors[I]) * (Largest / static_cast<float>(Scale)));
		In[I] = static_cast<U>(std::fmin(std::fmax(Value, 0.0f), Largest));
	}
	std::memcpy(Element, In, sizeof(In));
}

void Unfilter(const FGltfMeshopt& Packed, std::byte* Data)
{
	const auto Count = static_cast<std::size_t>(Packed.Count);
	const auto Stride = static_cast<std::size_t>(Packed.ByteStride);
	switch (Packed.Filter)
	{
	case FGltfMeshopt::EFilter::None:
		return;
	case FGltfMeshopt::EFilter::Octahedral:
		return meshopt_decodeFilterOct(Data, Count, Stride);
	case FGltfMeshopt::EFilter::Quaternion:
		return meshopt_decodeFilterQuat(Data, Count, Stride);
	case FGltfMeshopt::EFilter::Exponential:
		return meshopt_decodeFilterExp(Data, Count, Stride);
	case FGltfMeshopt::EFilter::Color:
		for (std::size_t I = 0; I < Count; ++I)
		{
			Stride == 4 ? DecodeColor<std::uint8_t, std::int8_t>(Data + I * Stride)
						: DecodeColor<std::uint16_t, std::int16_t>(Data + I * Stride);
		}
		return;
	}
}

bool IsNewerVertexCodec(const FGltfMeshopt& Packed, std::span<const std::byte> Compressed)
{
	constexpr std::byte Version1{0xA1};
	return Packed.Mode == FGltfMeshopt::EMode::Attributes && !Compressed.empty() && Compressed[0] == Version1;
}
}

std::optional<FMeshoptBytes> DecodeMeshopt(
	const FGltfMeshopt& Packed, std::span<const std::byte> Compressed, std::string& OutWhy)
{
	if (IsNewerVertexCodec(Packed, Compressed))
	{
		OutWhy = "is compressed with version 1 of the vertex codec, which cannot be decoded here";
		return std::nullopt;
	}
	if (Compressed.size() < FewestBytes(Packed))
	{
		OutWhy = "is too short for the elements that it is said to hold";
		return std::nullopt;
	}
	FMeshoptBytes Out;
	Out.Size = static_cast<std::size_t>(Packed.Count * Packed.ByteStride);
	Out.Data = std::make_unique_for_overwrite<std::byte[]>(Out.Size);
	if (Decode(Packed, Compressed, Out.Data.get()) != 0)
	{
		OutWhy = "holds compressed data that is damaged";
		return std::nullopt;
	}
	Unfilter(Packed, Out.Data.get());
	return Out;
}
