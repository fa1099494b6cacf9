// SPDX-License-Identifier: MIT
#include "SceneIO/GltfPrimitiveData.h"

#include "SceneIO/DracoPrimitive.h"

#include <algorithm>
#include <new>

namespace
{
/// The value that starts a new strip on graphics hardware, whether or not that was meant.
std::uint32_t RestartIndex(EGltfComponent Component)
{
	return Component == EGltfComponent::UnsignedByte    ? 0xFFu
		   : Component == EGltfComponent::UnsignedShort ? 0xFFFFu
														: 0xFFFFFFFFu;
}

FSceneStatus ReadIndices(const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Accessor, FPrimitiveData& Out)
{
	TSceneResult<FElementView> View = ViewElements(Document, Accessor);
	if (!View)
	{
		return View.Error();
	}
	Out.bIndexed = true;
	Out.Indices.resize(View->Count);
	ReadUnsigned(*View, 0, Out.Indices);
	const std::uint32_t Restart = RestartIndex(View->Component);
	const auto Bad = std::find_if(Out.Indices.begin(), Out.Indices.end(),
		[&Out, Restart](std::uint32_t Index) { return Index >= Out.VertexCount || Index == Restart; });
	if (Bad == Out.Indices.end())
	{
		return {};
	}
	const std::string Which = "element " + std::to_string(Bad - Out.Indices.begin()) + " is " + std::to_string(*Bad);
	return Document->Error(Document->Accessor(Accessor).Json,
		*Bad >= Out.VertexCount
			? "holds an index beyond the vertices: " + Which + ", but there are " + std::to_string(Out.VertexCount)
			: "holds the index that means \"primitive restart\": " + Which);
}

TSceneResult<FPrimitiveData> Read(const std::shared_ptr<const FGltfDocument>& Document, const FGltfPrimitive& Record)
{
	const FGltfAttribute* const Position = Record.FindAttribute("POSITION");
	FPrimitiveData Out;
	Out.Mode = Record.Mode;
	if (Position == nullptr)
	{
		return Out;
	}
	Out.VertexCount = static_cast<std::uint32_t>(Document->Accessor(Position->Accessor).Count);
	if (Record.Draco)
	{
		if (const FSceneStatus Status = ReadDracoPrimitive(Document, Record, Out); !Status)
		{
			return Status.Error();
		}
	}
	for (const FGltfAttribute& Attribute : Record.Attributes)
	{
		if (Out.Find(Attribute.Semantic) != nullptr)
		{
			continue;
		}
		TSceneResult<FElementView> Elements = ViewElements(Document, Attribute.Accessor);
		if (!Elements)
		{
			return Elements.Error();
		}
		// A surplus beyond the positions belongs to no vertex.
		Elements->Count = Out.VertexCount;
		Out.Attributes.push_back({Attribute.Semantic, Elements.Take()});
	}
	if (Record.Indices != NoIndex && !Out.bIndexed)
	{
		if (const FSceneStatus Status = ReadIndices(Document, Record.Indices, Out); !Status)
		{
			return Status.Error();
		}
	}
	return Out;
}
}

const FVertexAttribute* FPrimitiveData::Find(std::string_view Semantic) const
{
	const auto Found = std::find_if(Attributes.begin(), Attributes.end(),
		[Semantic](const FVertexAttribute& Attribute) { return Attribute.Semantic == Semantic; });
	return Found == Attributes.end() ? nullptr : &*Found;
}

TSceneResult<FPrimitiveData> ReadPrimitive(
	const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Mesh, std::size_t Primitive)
{
	const FGltfPrimitive& Record = Document->Mesh(Mesh).Primitives[Primitive];
	try
	{
		return Read(Document, Record);
	}
	catch (const std::bad_alloc&)
	{
		return Document->Error(Record.Json, "needs more memory than there is");
	}
}
