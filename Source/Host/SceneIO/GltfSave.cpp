// SPDX-License-Identifier: MIT
#include "SceneIO/GltfSave.h"

#include "SceneIO/AtomicFile.h"
#include "SceneIO/Base64.h"
#include "SceneIO/GltfSceneWriter.h"
#include "SceneIO/JsonWrite.h"
#include "SceneIO/PatchLayout.h"
#include "SceneIO/PrintableText.h"
#include "SceneIO/SceneFiles.h"
#include "SceneIO/SceneFolder.h"
#include "SceneIO/SceneUri.h"

#include <algorithm>
#include <map>
#include <new>

namespace
{
/// One save, from its plan to the renamed file.
class FSaver
{
public:
	FSaver(FGltfPatch InPatch, FScenePlace InPlace)
		: Patch(std::move(InPatch))
		, DocumentPtr(Patch.DocumentPtr())
		, Document(*DocumentPtr)
		, Place(std::move(InPlace))
		, Plan(FJsonEdit(Document.Json()))
		, Files(Place.Folder)
	{
	}

	TSceneResult<FSaveReport> Run();

private:
	FSceneStatus CheckTarget() const;
	bool IsSameFolder() const;
	FSceneStatus WriteBuffers();
	FSceneStatus WriteBufferFile(FGltfIndex Buffer, const FBufferPlan& BufferPlan);
	FSceneStatus EmbedBuffer(FGltfIndex Buffer, const FBufferPlan& BufferPlan);
	void SetBufferMember(FGltfIndex Buffer, const char* Key, std::string Text);
	FSceneStatus TakeFilesAlong();
	FSceneStatus WriteScene();

	FGltfPatch Patch;
	const std::shared_ptr<const FGltfDocument> DocumentPtr; ///< the layout takes the patch over
	const FGltfDocument& Document;
	FScenePlace Place;
	FPatchPlan Plan;
	FSceneFiles Files;
	FSaveReport Report;
	std::map<std::string, std::string> NewBufferMembers; ///< of the buffer that is added
	std::vector<FJsonIndex> RewrittenUris;
};

bool EndsWithIgnoringCase(const std::string& Name, std::string_view Suffix)
{
	return Name.size() >= Suffix.size() && std::equal(Suffix.rbegin(), Suffix.rend(), Name.rbegin(),
											   [](char A, char B) { return A == B || A == (B | 0x20); });
}

FSceneStatus FSaver::CheckTarget() const
{
	const bool bBinaryName = EndsWithIgnoringCase(Place.Name, ".glb");
	const bool bTextName = EndsWithIgnoringCase(Place.Name, ".gltf");
	if ((bBinaryName && !Document.IsBinary()) || (bTextName && Document.IsBinary()))
	{
		return FSceneError{"Cannot write \"" + PrintableText(Place.Path()) + "\": \"" +
						   PrintableText(Document.Place().Name) + "\" is a " +
						   (Document.IsBinary() ? "binary (.glb)" : "text (.gltf)") +
						   " scene, and a save does not change the container."};
	}
	return Document.CheckIntact();
}

bool FSaver::IsSameFolder() const
{
	const std::optional<FFileState> Source = ReadFileState(Document.Place().Folder);
	const std::optional<FFileState> Target = ReadFileState(Place.Folder);
	return Source && Target && Source->IsSameFile(*Target);
}

TSceneResult<FSaveReport> FSaver::Run()
{
	if (const FSceneStatus Status = CheckTarget(); !Status)
	{
		return Status.Error();
	}
	Report.Path = Place.Path();
	const bool bSameFolder = IsSameFolder();
	if (bSameFolder && Place.Name == Document.Place().Name && Patch.IsEmpty())
	{
		return Report;
	}
	TSceneResult<FPatchPlan> Layout = FPatchLayout(std::move(Patch)).Run();
	if (!Layout)
	{
		return Layout.Error();
	}
	Plan = Layout.Take();
	FSceneStatus Status = WriteBuffers();
	if (Status && !bSameFolder)
	{
		Status = TakeFilesAlong();
	}
	if (Status)
	{
		Status = WriteScene();
	}
	if (!Status)
	{
		return Status.Error();
	}
	Files.Keep();
	Report.bWritten = true;
	Report.FilesWritten = Files.Written();
	return Report;
}

/// The bytes that a buffer has now; none for one that is added.
std::span<const std::byte> OldBytes(const FGltfDocument& Document, FGltfIndex Buffer)
{
	if (static_cast<std::size_t>(Buffer) >= Document.Model().Buffers.size())
	{
		return {};
	}
	if (const std::shared_ptr<const FMappedFile> File = Document.BufferFile(Buffer))
	{
		return File->Bytes(); // bytes beyond byteLength included
	}
	const TSceneResult<std::span<const std::byte>> Bytes = Document.BufferBytes(Buffer);
	return Bytes ? *Bytes : std::span<const std::byte>();
}

FSceneStatus FSaver::WriteBuffers()
{
	for (const auto& [Buffer, BufferPlan] : Plan.Buffers)
	{
		const bool bNew = static_cast<std::size_t>(Buffer) >= Document.Model().Buffers.size();
		const EGltfBufferKind Kind = bNew ? *Plan.NewBuffer : Document.Buffer(Buffer).Kind;
		FSceneStatus Status;
		if (Kind == EGltfBufferKind::File)
		{
			Status = WriteBufferFile(Buffer, BufferPlan);
		}
		else if (Kind == EGltfBufferKind::Embedded)
		{
			Status = EmbedBuffer(Buffer, BufferPlan);
		}
		if (!Status)
		{
			return Status;
		}
		if (bNew || BufferPlan.NewLength != Document.Buffer(Buffer).ByteLength)
		{
			SetBufferMember(Buffer, "byteLength", JsonWrite::Integer(BufferPlan.NewLength));
		}
	}
	if (Plan.NewBuffer)
	{
		std::string Text;
		for (const auto& [Key, Value] : NewBufferMembers)
		{
			Text += (Text.empty() ? "" : ",") + JsonWrite::String(Key) + ":" + Value;
		}
		const FJsonText& Json = Document.Json();
		const FJsonIndex Array = Json.Find(Json.Root(), "buffers");
		Array != NoJson ? Plan.Edit.AppendElement(Array, "{" + Text + "}")
						: Plan.Edit.SetMember(Json.Root(), "buffers", "[{" + Text + "}]");
	}
	return {};
}

void FSaver::SetBufferMember(FGltfIndex Buffer, const char* Key, std::string Text)
{
	if (static_cast<std::size_t>(Buffer) < Document.Model().Buffers.size())
	{
		Plan.Edit.SetMember(Document.Buffer(Buffer).Json, Key, std::move(Text));
		return;
	}
	NewBufferMembers[Key] = std::move(Text);
}

FSceneStatus FSaver::WriteBufferFile(FGltfIndex Buffer, const FBufferPlan& BufferPlan)
{
	const FGltfBuffer& Record = Document.Buffer(Buffer);
	const std::span<const std::byte> Old = OldBytes(Document, Buffer);
	// Where the old file may stand, its name is taken for good: the old scene needs it until it is replaced.
	TSceneResult<std::string> Name = Files.Put(Record.Path, IsSameFolder(), WrittenLength(BufferPlan, Old),
		[&](const FByteSink& Sink) { return WriteBuffer(BufferPlan, Old, Sink); });
	if (!Name)
	{
		return Name.Error();
	}
	RewrittenUris.push_back(Document.Json().Find(Record.Json, "uri"));
	if (*Name != Record.Path)
	{
		SetBufferMember(Buffer, "uri", JsonWrite::String(SceneUri::FromPath(*Name)));
		if (IsSameFolder())
		{
			Report.FilesLeftOver.push_back(Record.Path);
		}
	}
	return {};
}

FSceneStatus FSaver::EmbedBuffer(FGltfIndex Buffer, const FBufferPlan& BufferPlan)
{
	std::vector<std::byte> Bytes;
	const FSceneStatus Status = WriteBuffer(BufferPlan, OldBytes(Document, Buffer),
		[&Bytes](std::span<const std::byte> Block) -> FSceneStatus
		{
			Bytes.insert(Bytes.end(), Block.begin(), Block.end());
			return {};
		});
	std::string Head = "data:application/octet-stream;base64";
	if (static_cast<std::size_t>(Buffer) < Document.Model().Buffers.size())
	{
		const std::string Uri = *Document.Json().String(Document.Json().Find(Document.Buffer(Buffer).Json, "uri"));
		Head = Uri.substr(0, Uri.find(','));
	}
	SetBufferMember(Buffer, "uri", JsonWrite::String(Head + "," + Base64::Encode(Bytes)));
	return Status;
}

FSceneStatus FSaver::TakeFilesAlong()
{
	std::map<std::string, std::string> NewPaths;
	for (const FGltfFileReference& Reference : Document.Model().Files)
	{
		if (std::find(RewrittenUris.begin(), RewrittenUris.end(), Reference.Json) != RewrittenUris.end())
		{
			continue;
		}
		const auto [Known, bNew] = NewPaths.try_emplace(Reference.Path, Reference.Path);
		if (bNew)
		{
			TSceneResult<std::shared_ptr<const FMappedFile>> Source =
				SceneFolder::MapBeneath(Document.Place().Folder, Reference.Path);
			if (!Source)
			{
				Report.FilesMissing.push_back(Reference.Path);
				continue;
			}
			const std::span<const std::byte> Bytes = (*Source)->Bytes();
			TSceneResult<std::string> Name =
				Files.Put(Reference.Path, false, Bytes.size(), [Bytes](const FByteSink& Sink) { return Sink(Bytes); });
			if (!Name)
			{
				return Name.Error();
			}
			Known->second = Name.Take();
		}
		if (Known->second != Reference.Path)
		{
			Plan.Edit.Replace(Reference.Json, JsonWrite::String(SceneUri::FromPath(Known->second)));
		}
	}
	return {};
}

FSceneStatus FSaver::WriteScene()
{
	FSceneContent Content;
	if (!Plan.Edit.IsEmpty())
	{
		Content.Text = Plan.Edit.ApplyAll();
	}
	const auto Chunk = std::find_if(Plan.Buffers.begin(), Plan.Buffers.end(),
		[this](const auto& Entry)
		{
			const bool bNew = static_cast<std::size_t>(Entry.first) >= Document.Model().Buffers.size();
			return (bNew ? *Plan.NewBuffer : Document.Buffer(Entry.first).Kind) == EGltfBufferKind::Chunk;
		});
	if (Chunk != Plan.Buffers.end())
	{
		Content.Chunk = &Chunk->second;
		Content.bNewChunk = Plan.NewBuffer == EGltfBufferKind::Chunk;
	}
	TSceneResult<std::uint64_t> Length = SceneFileLength(Document, Content);
	if (!Length)
	{
		return Length.Error();
	}
	FAtomicFile File;
	FSceneStatus Status = File.Create(Place.Folder, Place.Name, *Length);
	if (Status)
	{
		Status =
			WriteSceneFile(Document, Content, [&File](std::span<const std::byte> Bytes) { return File.Write(Bytes); });
	}
	// What was read while writing is only now known to have been there.
	if (Status)
	{
		Status = Document.CheckIntact();
	}
	return Status ? File.Replace() : Status;
}
}

TSceneResult<FSaveReport> SaveGltf(FGltfPatch Patch, const std::string& Path)
{
	TSceneResult<FScenePlace> Place = SceneFolder::Resolve(Path);
	if (!Place)
	{
		return Place.Error();
	}
	try
	{
		return FSaver(std::move(Patch), Place.Take()).Run();
	}
	catch (const std::bad_alloc&)
	{
		return FSceneError{"Cannot write \"" + PrintableText(Path) + "\": there is not enough memory."};
	}
}
