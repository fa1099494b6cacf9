// SPDX-License-Identifier: MIT
#include "SceneIO/GltfPrimitiveData.h"

#include "SceneIO/DracoPrimitive.h"

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <new>

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace
{
/// The value that starts a new strip on graphics hardware, whether or not that was meant.
std::uint32_t RestartIndex(EGltfComponent Component)
{
	return Component == EGltfComponent::UnsignedByte    ? 0xFFu
		   : Component == EGltfComponent::UnsignedShort ? 0xFFFFu
														: 0xFFFFFFFFu;
}

FSceneError BadIndex(
	const FGltfDocument& Document, FGltfIndex Accessor, std::uint32_t VertexCount, std::size_t At, std::uint32_t Index)
{
	const std::string Which = "element " + std::to_string(At) + " is " + std::to_string(Index);
	return Document.Error(Document.Accessor(Accessor).Json,
		Index >= VertexCount
			? "holds an index beyond the vertices: " + Which + ", but there are " + std::to_string(VertexCount)
			: "holds the index that means \"primitive restart\": " + Which);
}

FSceneStatus ReadIndices(const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Accessor, FPrimitiveData& Out)
{
	Out.bIndexed = true;
	Out.Indices.resize(static_cast<std::size_t>(Document->Accessor(Accessor).Count));
	return ForEachIndex(Document, Accessor, Out.VertexCount,
		[&Out](std::size_t First, std::span<const std::uint32_t> Piece)
		{ std::ranges::copy(Piece, Out.Indices.begin() + static_cast<std::ptrdiff_t>(First)); });
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

FSceneStatus ForEachIndex(const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Accessor,
	std::uint32_t VertexCount, const std::function<void(std::size_t, std::span<const std::uint32_t>)>& Take)
{
	TSceneResult<FElementView> View = ViewElements(Document, Accessor);
	if (!View)
	{
		return View.Error();
	}
	// The largest value of a type is the restart index: no other bad one is below the number of vertices.
	const std::uint32_t End = std::min(VertexCount, RestartIndex(View->Component));
	std::mutex Mutex;
	std::map<std::size_t, std::uint32_t> Bad;
	const auto TakePieces = [&](const tbb::blocked_range<std::size_t>& Range)
	{
		constexpr std::size_t IndicesAtATime = 4096;
		std::array<std::uint32_t, IndicesAtATime> Buffer;
		for (std::size_t First = Range.begin(); First < Range.end(); First += IndicesAtATime)
		{
			// A copy: the file may change between the check and the use.
			const std::span Piece = std::span(Buffer).first(std::min(IndicesAtATime, Range.end() - First));
			ReadUnsigned(*View, First, Piece);
			if (std::ranges::max(Piece) >= End)
			{
				const auto Where = std::ranges::find_if(Piece, [End](std::uint32_t Index) { return Index >= End; });
				const std::lock_guard Lock(Mutex);
				Bad.emplace(First + static_cast<std::size_t>(Where - Piece.begin()), *Where);
				return;
			}
			Take(First, Piece);
		}
	};
	constexpr std::size_t TaskSize = std::size_t(1) << 17;
	const tbb::blocked_range<std::size_t> All(0, View->Count, TaskSize);
	View->Count < 2 * TaskSize ? TakePieces(All) : tbb::parallel_for(All, TakePieces);
	return Bad.empty() ? FSceneStatus()
					   : BadIndex(*Document, Accessor, VertexCount, Bad.begin()->first, Bad.begin()->second);
}
