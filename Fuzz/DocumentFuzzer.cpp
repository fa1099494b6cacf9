// SPDX-License-Identifier: MIT
// Feeds bytes to the reader of scene files: load, decode everything, lay out an edit of everything, and read the new
// text. How to run it stands in Docs/fuzzing.md.
#include "SceneIO/GltfPrimitiveData.h"
#include "SceneIO/PatchLayout.h"
#include "SceneIO/PrimitiveTopology.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace
{
/// A document from bytes that are on no disk; null where they are refused.
std::shared_ptr<const FGltfDocument> Load(const std::uint8_t* Data, std::size_t Size)
{
	const int File = memfd_create("scene", MFD_CLOEXEC);
	if (File < 0 || write(File, Data, Size) != static_cast<ssize_t>(Size))
	{
		std::abort();
	}
	TSceneResult<std::shared_ptr<const FMappedFile>> Mapped = FMappedFile::Map(File, "memory/scene");
	close(File);
	if (!Mapped)
	{
		std::abort();
	}
	TSceneResult<std::shared_ptr<const FGltfDocument>> Document =
		FGltfDocument::Load(Mapped.Take(), {"/nonexistent", "scene"});
	return Document ? *Document : nullptr;
}

void DecodePrimitive(const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Mesh, std::size_t Primitive)
{
	// Small files may stand for large meshes; those only slow the search down.
	constexpr std::uint64_t FewElements = 1u << 20;
	const FGltfPrimitive& Record = Document->Mesh(Mesh).Primitives[Primitive];
	std::uint64_t Elements = Record.Indices == NoIndex ? 0 : Document->Accessor(Record.Indices).Count;
	for (const FGltfAttribute& Attribute : Record.Attributes)
	{
		Elements += Document->Accessor(Attribute.Accessor).Count;
	}
	if (Elements > FewElements)
	{
		return;
	}
	const TSceneResult<FPrimitiveData> Data = ReadPrimitive(Document, Mesh, Primitive);
	if (!Data)
	{
		return;
	}
	for (const FVertexAttribute& Attribute : Data->Attributes)
	{
		std::vector<float> Values(Attribute.Elements.Count * ComponentCount(Attribute.Elements.Type));
		ReadComponents(Attribute.Elements, 0, Values);
	}
	for (const std::uint32_t Index : PrimitiveTopology::TriangleList(Data->Mode, Data->Indices))
	{
		if (Index >= Data->VertexCount)
		{
			std::abort();
		}
	}
}

/// The text with every node and every plain mesh changed must be one that can be read.
void EditAll(const std::shared_ptr<const FGltfDocument>& Document)
{
	const FGltfModel& Model = Document->Model();
	FGltfPatch Patch(Document);
	for (std::size_t Node = 0; Node < Model.Nodes.size(); ++Node)
	{
		Patch.SetNodeTransform(static_cast<FGltfIndex>(Node), {1, 2, 3}, {0, 0, 0, 1}, {1, 1, 1});
	}
	for (std::size_t Mesh = 0; Mesh < Model.Meshes.size(); ++Mesh)
	{
		FGltfMeshChange Change;
		for (std::size_t I = 0; I < Model.Meshes[Mesh].Primitives.size(); ++I)
		{
			if (!Model.Meshes[Mesh].Primitives[I].Draco)
			{
				Change.Elements[{I, "POSITION"}] = NewElements::FromFloats({7, -3, 2}, EGltfType::Vec3);
			}
		}
		Patch.ChangeMesh(static_cast<FGltfIndex>(Mesh), Change);
		Patch.CopyMesh(static_cast<FGltfIndex>(Mesh), "copy", std::move(Change));
	}
	const TSceneResult<FPatchPlan> Plan = FPatchLayout(Patch).Run();
	if (!Plan || !FJsonText::Parse(Plan->Edit.ApplyAll(), "edited"))
	{
		std::abort();
	}
}
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
	const std::shared_ptr<const FGltfDocument> Document = Load(Data, Size);
	if (Document == nullptr)
	{
		return 0;
	}
	for (std::size_t Mesh = 0; Mesh < Document->Model().Meshes.size(); ++Mesh)
	{
		for (std::size_t I = 0; I < Document->Model().Meshes[Mesh].Primitives.size(); ++I)
		{
			DecodePrimitive(Document, static_cast<FGltfIndex>(Mesh), I);
		}
	}
	EditAll(Document);
	return 0;
}
