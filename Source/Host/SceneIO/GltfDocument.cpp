// SPDX-License-Identifier: MIT
#include "SceneIO/GltfDocument.h"

#include "SceneIO/Base64.h"
#include "SceneIO/CheckedMath.h"
#include "SceneIO/GltfReader.h"
#include "SceneIO/MeshoptView.h"
#include "SceneIO/PrintableText.h"
#include "SceneIO/SceneLimits.h"
#include "SceneIO/SceneUri.h"

#include <algorithm>
#include <map>
#include <new>

struct FGltfDocument::FPlainView
{
	FMeshoptBytes Bytes;
};

FGltfDocument::~FGltfDocument() = default;

TSceneResult<std::shared_ptr<const FGltfDocument>> FGltfDocument::Load(const std::string& Path)
{
	TSceneResult<FScenePlace> Place = SceneFolder::Resolve(Path);
	if (!Place)
	{
		return Place.Error();
	}
	TSceneResult<std::shared_ptr<const FMappedFile>> File = FMappedFile::Open(Place->Path());
	return File ? Load(File.Take(), *Place) : File.Error();
}

TSceneResult<std::shared_ptr<const FGltfDocument>> FGltfDocument::Load(
	std::shared_ptr<const FMappedFile> File, const FScenePlace& Place)
{
	try
	{
		TSceneResult<FGltfContainer> Container = OpenGltfContainer(std::move(File));
		if (!Container)
		{
			return Container.Error();
		}
		std::shared_ptr<FGltfDocument> Document(new FGltfDocument());
		Document->ScenePlace = Place;
		Document->Container = Container.Take();
		if (const FSceneStatus Status = Document->Read(); !Status)
		{
			return Status.Error();
		}
		return std::shared_ptr<const FGltfDocument>(std::move(Document));
	}
	catch (const std::bad_alloc&)
	{
		return FSceneError{"Cannot read \"" + PrintableText(Place.Path()) + "\": there is not enough memory."};
	}
}

FSceneStatus FGltfDocument::Read()
{
	const std::string FileName = ScenePlace.Path();
	TSceneResult<FJsonText> Parsed = FJsonText::Parse(std::move(Container.JsonText), FileName);
	if (!Parsed)
	{
		return Parsed.Error();
	}
	Container.JsonText.clear();
	Text = Parsed.Take();
	FGltfReader Reader(Text, FileName, Records);
	const bool bRead = ReadGltfAsset(Reader) && ReadGltfStorage(Reader, Container.BinaryChunkIndex >= 0) &&
					   ReadGltfNamed(Reader) && ReadGltfMeshes(Reader) && ReadGltfShapes(Reader) &&
					   ReadGltfNodes(Reader) && ReadGltfAnimations(Reader) && ReadGltfReferences(Reader);
	if (!bRead)
	{
		return Reader.TakeError();
	}
	EmbeddedBytes.resize(Records.Buffers.size());
	PlainViews.resize(Records.BufferViews.size());
	if (const FSceneStatus Status = MapFiles(); !Status)
	{
		return Status.Error();
	}
	return CheckDecodedSize();
}

FSceneStatus FGltfDocument::MapFiles()
{
	BufferFiles.resize(Records.Buffers.size());
	std::map<std::string, std::shared_ptr<const FMappedFile>> Mapped;
	for (std::size_t I = 0; I < Records.Buffers.size(); ++I)
	{
		const FGltfBuffer& Record = Records.Buffers[I];
		std::uint64_t Available = Record.ByteLength;
		if (Record.Kind == EGltfBufferKind::File)
		{
			std::shared_ptr<const FMappedFile>& Slot = Mapped[Record.Path];
			if (Slot == nullptr)
			{
				if (Mapped.size() > SceneLimits::MaxExternalFiles)
				{
					return Error(Record.Json,
						"is one of more than " + std::to_string(SceneLimits::MaxExternalFiles) + " external files");
				}
				TSceneResult<std::shared_ptr<const FMappedFile>> Opened =
					SceneFolder::MapBeneath(ScenePlace.Folder, Record.Path);
				if (!Opened)
				{
					std::string Why = Opened.Error().Message;
					Why.pop_back(); // its full stop: the sentence goes on
					return Error(Record.Json, "names a file that cannot be read: " + Why);
				}
				Slot = Opened.Take();
			}
			BufferFiles[I] = Slot;
			Available = Slot->Bytes().size();
		}
		else if (Record.Kind == EGltfBufferKind::Chunk)
		{
			Available = Container.ChunkBytes(Container.BinaryChunkIndex).size();
		}
		if (Available < Record.ByteLength)
		{
			return Error(Record.Json,
				"says " + std::to_string(Record.ByteLength) + " bytes, but there are " + std::to_string(Available));
		}
	}
	return {};
}

std::uint64_t FGltfDocument::FileBytes() const
{
	std::vector<const FMappedFile*> Files = {Container.File.get()};
	for (const std::shared_ptr<const FMappedFile>& File : BufferFiles)
	{
		Files.push_back(File.get());
	}
	std::sort(Files.begin(), Files.end());
	Files.erase(std::unique(Files.begin(), Files.end()), Files.end());
	std::uint64_t Sum = 0;
	for (const FMappedFile* const File : Files)
	{
		Sum += File == nullptr ? 0 : File->Bytes().size();
	}
	return Sum;
}

FSceneStatus FGltfDocument::CheckDecodedSize() const
{
	const std::uint64_t Limit = SceneLimits::DecodedBytes(FileBytes());
	std::uint64_t Sum = 0;
	// Counts below 2^32, elements below 100 bytes, and a sum that is checked each time: no overflow.
	const auto Add = [&Sum, Limit](std::uint64_t Bytes)
	{
		Sum += Bytes;
		return Sum <= Limit;
	};
	const auto TooLarge = [this, Limit](FJsonIndex At)
	{ return Error(At, "makes the scene unfold to more than " + std::to_string(Limit / SceneLimits::MiB) + " MiB"); };

	for (const FGltfBufferView& Record : Records.BufferViews)
	{
		if (Record.Meshopt && (Record.ByteLength > Limit || !Add(Record.ByteLength)))
		{
			return TooLarge(Record.Json);
		}
	}
	for (const FGltfMesh& Record : Records.Meshes)
	{
		std::vector<FGltfIndex> Used;
		for (const FGltfPrimitive& Primitive : Record.Primitives)
		{
			for (const FGltfAttribute& Attribute : Primitive.Attributes)
			{
				Used.push_back(Attribute.Accessor);
			}
			Used.push_back(Primitive.Indices);
		}
		std::sort(Used.begin(), Used.end());
		Used.erase(std::unique(Used.begin(), Used.end()), Used.end());
		for (const FGltfIndex Index : Used)
		{
			if (Index != NoIndex && !Add(Accessor(Index).Count * Accessor(Index).ElementBytes()))
			{
				return TooLarge(Record.Json);
			}
		}
	}
	for (const FGltfNode& Record : Records.Nodes)
	{
		if (Record.Extensions != nullptr && Record.Extensions->bInstanced && !Record.Extensions->Instances.empty())
		{
			constexpr std::uint64_t InstanceBytes = 80;
			if (!Add(Accessor(Record.Extensions->Instances.front().Accessor).Count * InstanceBytes))
			{
				return TooLarge(Record.Json);
			}
		}
	}
	return {};
}

TSceneResult<std::span<const std::byte>> FGltfDocument::BufferBytes(FGltfIndex Index) const
{
	const FGltfBuffer& Record = Buffer(Index);
	const auto Slot = static_cast<std::size_t>(Index);
	const auto Length = static_cast<std::size_t>(Record.ByteLength);
	switch (Record.Kind)
	{
	case EGltfBufferKind::Chunk:
		return Container.ChunkBytes(Container.BinaryChunkIndex).first(Length);
	case EGltfBufferKind::File:
		return BufferFiles[Slot]->Bytes().first(Length);
	case EGltfBufferKind::Embedded:
	{
		const std::lock_guard Lock(CacheMutex);
		if (EmbeddedBytes[Slot] == nullptr)
		{
			const std::string Uri = *Text.String(Text.Find(Record.Json, "uri"));
			std::optional<std::vector<std::byte>> Bytes = Base64::Decode(SceneUri::Parse(Uri).Payload);
			if (!Bytes || Bytes->size() < Length)
			{
				return Error(Record.Json, "holds damaged data");
			}
			EmbeddedBytes[Slot] = std::make_shared<const std::vector<std::byte>>(std::move(*Bytes));
		}
		return std::span<const std::byte>(*EmbeddedBytes[Slot]).first(Length);
	}
	case EGltfBufferKind::None:
		break;
	}
	return Error(Record.Json, "has no data (no uri, and no binary chunk that it could mean)");
}

TSceneResult<std::span<const std::byte>> FGltfDocument::ViewBytes(FGltfIndex Index) const
{
	const FGltfBufferView& Record = View(Index);
	const auto Slot = static_cast<std::size_t>(Index);
	TSceneResult<std::span<const std::byte>> Source =
		BufferBytes(Record.Meshopt ? Record.Meshopt->Buffer : Record.Buffer);
	if (!Source)
	{
		return Source;
	}
	if (!Record.Meshopt)
	{
		return Source->subspan(
			static_cast<std::size_t>(Record.ByteOffset), static_cast<std::size_t>(Record.ByteLength));
	}
	const std::lock_guard Lock(CacheMutex);
	if (PlainViews[Slot] == nullptr)
	{
		std::string Why;
		std::optional<FMeshoptBytes> Plain = DecodeMeshopt(*Record.Meshopt,
			Source->subspan(static_cast<std::size_t>(Record.Meshopt->ByteOffset),
				static_cast<std::size_t>(Record.Meshopt->ByteLength)),
			Why);
		if (!Plain)
		{
			return Error(Record.Json, Why);
		}
		PlainViews[Slot] = std::make_shared<const FPlainView>(FPlainView{std::move(*Plain)});
	}
	const FMeshoptBytes& Plain = PlainViews[Slot]->Bytes;
	return std::span<const std::byte>(Plain.Data.get(), Plain.Size);
}

std::optional<FDracoOutput> FGltfDocument::DecodeDraco(std::span<const std::byte> Compressed,
	std::span<const DracoProtocol::FAttribute> Attributes, std::uint32_t ExpectedVertices, std::string& OutWhy) const
{
	const std::lock_guard Lock(DracoMutex);
	return Draco.Decode(Compressed, Attributes, ExpectedVertices, OutWhy);
}

std::shared_ptr<const FMappedFile> FGltfDocument::BufferFile(FGltfIndex Index) const
{
	return BufferFiles[static_cast<std::size_t>(Index)];
}

FSceneStatus FGltfDocument::CheckIntact() const
{
	const auto Check = [](const FMappedFile& File)
	{
		return File.IsIntact() ? FSceneStatus()
							   : FSceneStatus(FSceneError{"Cannot go on with \"" + PrintableText(File.Path()) +
														  "\": the file changed on disk since it was read."});
	};
	if (const FSceneStatus Status = Check(*Container.File); !Status)
	{
		return Status;
	}
	const FMappedFile* Previous = nullptr;
	for (const std::shared_ptr<const FMappedFile>& File : BufferFiles)
	{
		if (File != nullptr && File.get() != Previous)
		{
			if (const FSceneStatus Status = Check(*File); !Status)
			{
				return Status;
			}
			Previous = File.get();
		}
	}
	return {};
}

FSceneError FGltfDocument::Error(FJsonIndex At, const std::string& Why) const
{
	const std::string Pointer = Text.Pointer(At);
	return FSceneError{"Cannot read \"" + PrintableText(ScenePlace.Path()) +
					   "\": " + (Pointer.empty() ? "/" : PrintableText(Pointer)) + " " + Why + "."};
}
