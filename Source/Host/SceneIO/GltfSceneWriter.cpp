// SPDX-License-Identifier: MIT
#include "SceneIO/GltfSceneWriter.h"

#include "SceneIO/PrintableText.h"

#include <array>
#include <limits>

namespace
{
std::uint64_t AlignedTo4(std::uint64_t Length)
{
	return (Length + 3) / 4 * 4;
}

/// The text of a JSON chunk, without the padding that it had.
std::string_view WithoutPadding(std::string_view Text)
{
	return Text.substr(0, Text.find_last_not_of(std::string_view(" \t\r\n\0", 5)) + 1);
}

FSceneStatus SendWords(const FByteSink& Sink, std::span<const std::uint32_t> Words)
{
	return Sink(std::as_bytes(Words));
}

/// The parts of a binary scene that follow from the content.
class FBinaryScene
{
public:
	FBinaryScene(const FGltfDocument& InDocument, const FSceneContent& InContent)
		: Document(InDocument)
		, Content(InContent)
		, File(InDocument.File())
	{
		if (Content.Text)
		{
			Text = WithoutPadding(*Content.Text);
		}
	}

	std::uint64_t DeclaredLength() const
	{
		std::uint64_t Sum = FGltfContainer::HeaderBytes + FGltfContainer::ChunkHeaderBytes + TextLength();
		if (Content.bNewChunk)
		{
			Sum += FGltfContainer::ChunkHeaderBytes + AlignedTo4(WrittenLength(*Content.Chunk, {}));
		}
		for (std::size_t I = 0; I < File.Chunks.size(); ++I)
		{
			Sum += FGltfContainer::ChunkHeaderBytes + ChunkLength(I);
		}
		return Sum;
	}

	std::uint64_t TailLength() const { return File.File->Bytes().size() - File.TailOffset; }

	FSceneStatus Send(const FByteSink& Sink) const
	{
		const std::array<std::uint32_t, 5> Head = {FGltfContainer::Magic, 2,
			static_cast<std::uint32_t>(DeclaredLength()), static_cast<std::uint32_t>(TextLength()),
			FGltfContainer::JsonChunk};
		FSceneStatus Status = SendWords(Sink, Head);
		const std::string_view Source = Content.Text ? Text : std::string_view(Document.Json().Text());
		const std::string_view Padding =
			std::string_view("   ").substr(0, Content.Text ? TextLength() - Text.size() : 0);
		Status = Status ? Sink(std::as_bytes(std::span(Source))) : Status;
		Status = Status ? Sink(std::as_bytes(std::span(Padding))) : Status;
		if (Status && Content.bNewChunk)
		{
			Status = SendPlanned(Sink, {});
		}
		for (std::size_t I = 0; I < File.Chunks.size() && Status; ++I)
		{
			const std::span<const std::byte> Bytes = File.ChunkBytes(static_cast<std::int32_t>(I));
			if (IsPlanned(I))
			{
				Status = SendPlanned(Sink, Bytes);
				continue;
			}
			const std::array<std::uint32_t, 2> ChunkHead = {
				static_cast<std::uint32_t>(Bytes.size()), File.Chunks[I].Type};
			Status = SendWords(Sink, ChunkHead);
			Status = Status ? Sink(Bytes) : Status;
		}
		return Status ? Sink(File.File->Bytes().subspan(static_cast<std::size_t>(File.TailOffset))) : Status;
	}

private:
	std::uint64_t TextLength() const { return Content.Text ? AlignedTo4(Text.size()) : File.JsonChunkLength; }

	bool IsPlanned(std::size_t Chunk) const
	{
		return Content.Chunk != nullptr && static_cast<std::int32_t>(Chunk) == File.BinaryChunkIndex;
	}

	std::uint64_t ChunkLength(std::size_t Chunk) const
	{
		const std::span<const std::byte> Bytes = File.ChunkBytes(static_cast<std::int32_t>(Chunk));
		return IsPlanned(Chunk) ? AlignedTo4(WrittenLength(*Content.Chunk, Bytes)) : Bytes.size();
	}

	FSceneStatus SendPlanned(const FByteSink& Sink, std::span<const std::byte> Old) const
	{
		const std::uint64_t Length = WrittenLength(*Content.Chunk, Old);
		const std::array<std::uint32_t, 2> Head = {
			static_cast<std::uint32_t>(AlignedTo4(Length)), FGltfContainer::BinaryChunk};
		constexpr std::array<std::byte, 3> Padding = {};
		FSceneStatus Status = SendWords(Sink, Head);
		Status = Status ? WriteBuffer(*Content.Chunk, Old, Sink) : Status;
		return Status ? Sink(std::span(Padding).first(static_cast<std::size_t>(AlignedTo4(Length) - Length))) : Status;
	}

	const FGltfDocument& Document;
	const FSceneContent& Content;
	const FGltfContainer& File;
	std::string_view Text;
};

bool IsUnchanged(const FSceneContent& Content)
{
	return !Content.Text && Content.Chunk == nullptr;
}
}

TSceneResult<std::uint64_t> SceneFileLength(const FGltfDocument& Document, const FSceneContent& Content)
{
	if (IsUnchanged(Content))
	{
		return std::uint64_t{Document.File().File->Bytes().size()};
	}
	if (!Document.IsBinary())
	{
		return std::uint64_t{Content.Text ? Content.Text->size() : Document.Json().Text().size()};
	}
	const FBinaryScene Scene(Document, Content);
	if (Scene.DeclaredLength() > std::numeric_limits<std::uint32_t>::max())
	{
		return FSceneError{
			"Cannot save the changes to \"" + PrintableText(Document.Place().Path()) +
			"\": a binary scene cannot be larger than 4 GiB. Save it as .gltf with a separate buffer first."};
	}
	return Scene.DeclaredLength() + Scene.TailLength();
}

FSceneStatus WriteSceneFile(const FGltfDocument& Document, const FSceneContent& Content, const FByteSink& Sink)
{
	if (IsUnchanged(Content))
	{
		return Sink(Document.File().File->Bytes());
	}
	if (!Document.IsBinary())
	{
		return Sink(std::as_bytes(std::span(Content.Text ? *Content.Text : Document.Json().Text())));
	}
	return FBinaryScene(Document, Content).Send(Sink);
}
