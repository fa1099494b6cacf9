// SPDX-License-Identifier: MIT
#include "SceneIO/GltfContainer.h"

#include "SceneIO/CheckedMath.h"
#include "SceneIO/PrintableText.h"
#include "SceneIO/SceneLimits.h"

#include <cstring>

namespace
{
/// Little-endian, as the format and every machine this builds for.
std::uint32_t ReadU32(std::span<const std::byte> Bytes, std::uint64_t Offset)
{
	std::uint32_t Out = 0;
	std::memcpy(&Out, Bytes.data() + Offset, sizeof(Out));
	return Out;
}

FSceneError Refuse(const FGltfContainer& Container, const std::string& Why)
{
	return FSceneError{"Cannot read \"" + PrintableText(Container.File->Path()) + "\": " + Why + "."};
}

std::string CopyText(std::span<const std::byte> Bytes)
{
	return {reinterpret_cast<const char*>(Bytes.data()), Bytes.size()};
}

FSceneStatus ReadChunks(FGltfContainer& Container, std::span<const std::byte> Bytes, std::uint64_t Declared)
{
	std::uint64_t At = FGltfContainer::HeaderBytes;
	bool bFirst = true;
	while (At < Declared)
	{
		if (!CheckedMath::IsWithin(At, FGltfContainer::ChunkHeaderBytes, Declared))
		{
			// Up to seven stray bytes: padding that some writers count into the length.
			break;
		}
		const std::uint64_t Length = ReadU32(Bytes, At);
		const std::uint32_t Type = ReadU32(Bytes, At + 4);
		At += FGltfContainer::ChunkHeaderBytes;
		if (!CheckedMath::IsWithin(At, Length, Declared))
		{
			return Refuse(Container, "a chunk of " + std::to_string(Length) + " bytes at byte " + std::to_string(At) +
										 " reaches beyond the end of the file");
		}
		if (bFirst)
		{
			if (Type != FGltfContainer::JsonChunk)
			{
				return Refuse(Container, "its first chunk is not JSON");
			}
			if (Length > SceneLimits::MaxJsonBytes)
			{
				return Refuse(Container, "its JSON text is larger than " +
											 std::to_string(SceneLimits::MaxJsonBytes / SceneLimits::MiB) + " MiB");
			}
			Container.JsonChunkLength = Length;
			Container.JsonText = CopyText(Bytes.subspan(At, Length));
			bFirst = false;
		}
		else
		{
			if (Type == FGltfContainer::BinaryChunk)
			{
				if (Container.BinaryChunkIndex >= 0)
				{
					return Refuse(Container, "it has two binary chunks, and only one can be meant");
				}
				Container.BinaryChunkIndex = static_cast<std::int32_t>(Container.Chunks.size());
			}
			Container.Chunks.push_back({Type, At, Length});
		}
		At += Length;
	}
	return bFirst ? FSceneStatus(Refuse(Container, "it ends before its JSON chunk")) : FSceneStatus();
}

FSceneStatus ReadBinary(FGltfContainer& Container, std::span<const std::byte> Bytes)
{
	if (Bytes.size() < FGltfContainer::HeaderBytes)
	{
		return Refuse(Container, "it ends within its header");
	}
	const std::uint32_t Version = ReadU32(Bytes, 4);
	if (Version != 2)
	{
		return Refuse(Container,
			"it is a binary scene of version " + std::to_string(Version) + ", but only version 2 can be read");
	}
	const std::uint64_t Declared = ReadU32(Bytes, 8);
	if (Declared > Bytes.size())
	{
		return Refuse(Container,
			"its header says " + std::to_string(Declared) + " bytes, but it has " + std::to_string(Bytes.size()));
	}
	Container.TailOffset = Declared;
	return ReadChunks(Container, Bytes, Declared);
}
}

std::span<const std::byte> FGltfContainer::ChunkBytes(std::int32_t Index) const
{
	const FGltfChunk& Chunk = Chunks[static_cast<std::size_t>(Index)];
	return File->Bytes().subspan(Chunk.Offset, Chunk.Length);
}

TSceneResult<FGltfContainer> OpenGltfContainer(std::shared_ptr<const FMappedFile> File)
{
	FGltfContainer Container;
	Container.File = std::move(File);
	const std::span<const std::byte> Bytes = Container.File->Bytes();
	Container.bBinary = Bytes.size() >= 4 && ReadU32(Bytes, 0) == FGltfContainer::Magic;
	if (Container.bBinary)
	{
		if (const FSceneStatus Status = ReadBinary(Container, Bytes); !Status)
		{
			return Status.Error();
		}
	}
	else
	{
		if (Bytes.size() > SceneLimits::MaxJsonBytes)
		{
			return Refuse(Container, "it is no binary scene, and too large for JSON text (" +
										 std::to_string(SceneLimits::MaxJsonBytes / SceneLimits::MiB) +
										 " MiB at most)");
		}
		Container.JsonText = CopyText(Bytes);
		Container.TailOffset = Bytes.size();
	}
	if (!Container.File->IsIntact())
	{
		return Refuse(Container, "it changed while it was being read");
	}
	return Container;
}
