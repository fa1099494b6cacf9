// SPDX-License-Identifier: MIT
#include "SceneIO/DracoPrimitive.h"

#include "SceneIO/DracoProcess.h"

namespace
{
/// The accessor that says what a compressed attribute decompresses to.
const FGltfAccessor& AccessorOf(
	const FGltfDocument& Document, const FGltfPrimitive& Record, const std::string& Semantic)
{
	return Document.Accessor(Record.FindAttribute(Semantic)->Accessor);
}

FElementView ViewOf(const FGltfAccessor& Accessor, std::shared_ptr<std::vector<std::byte>> Bytes, std::size_t Count)
{
	FElementView View;
	View.Data = Bytes->data();
	View.Stride = ComponentSize(Accessor.Component) * ComponentCount(Accessor.Type);
	View.Count = Count;
	View.Component = Accessor.Component;
	View.Type = Accessor.Type;
	View.bNormalized = Accessor.bNormalized;
	View.Owner = std::move(Bytes);
	return View;
}
}

FSceneStatus ReadDracoPrimitive(
	const std::shared_ptr<const FGltfDocument>& Document, const FGltfPrimitive& Record, FPrimitiveData& Out)
{
	const FGltfDraco& Draco = *Record.Draco;
	std::vector<DracoProtocol::FAttribute> Wanted;
	for (const FGltfDraco::FAttribute& Attribute : Draco.Attributes)
	{
		const FGltfAccessor& Accessor = AccessorOf(*Document, Record, Attribute.Semantic);
		const bool bVector = Accessor.Type >= EGltfType::Scalar && Accessor.Type <= EGltfType::Vec4;
		if (!bVector || Accessor.Component == EGltfComponent::Unknown || Accessor.Count != Out.VertexCount)
		{
			return Document->Error(Accessor.Json, "does not suit a compressed attribute");
		}
		Wanted.push_back(
			{Attribute.UniqueId, static_cast<std::uint32_t>(Accessor.Component), ComponentCount(Accessor.Type)});
	}
	TSceneResult<std::span<const std::byte>> Compressed = Document->ViewBytes(Draco.View);
	if (!Compressed)
	{
		return Compressed.Error();
	}
	std::string Why;
	std::optional<FDracoOutput> Plain = Document->DecodeDraco(*Compressed, Wanted, Out.VertexCount, Why);
	if (!Plain)
	{
		return Document->Error(Record.Json, Why);
	}
	const bool bList = Record.Mode == EGltfMode::Triangles;
	if (bList && Record.Indices != NoIndex && Document->Accessor(Record.Indices).Count != Plain->Indices.size())
	{
		return Document->Error(Record.Json, "decompresses to " + std::to_string(Plain->Indices.size()) +
												" indices, but its accessor has " +
												std::to_string(Document->Accessor(Record.Indices).Count));
	}
	Out.bWasCompressed = true;
	Out.bIndexed = true;
	Out.Mode = EGltfMode::Triangles; // what the decoder gives, whatever it was made from
	Out.Indices = std::move(Plain->Indices);
	for (std::size_t I = 0; I < Wanted.size(); ++I)
	{
		const std::string& Semantic = Draco.Attributes[I].Semantic;
		Out.Attributes.push_back(
			{Semantic, ViewOf(AccessorOf(*Document, Record, Semantic), Plain->Attributes[I], Out.VertexCount)});
	}
	return {};
}
