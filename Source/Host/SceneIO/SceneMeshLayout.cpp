// SPDX-License-Identifier: MIT
#include "SceneIO/SceneMeshLayout.h"

#include "SceneIO/GltfPrimitiveData.h"
#include "SceneIO/PrimitiveTopology.h"
#include "SceneIO/SceneSpace.h"

#include <algorithm>
#include <limits>

namespace
{
FGltfIndex AccessorOf(const FGltfPrimitive& Primitive, std::string_view Semantic)
{
	const FGltfAttribute* const Attribute = Primitive.FindAttribute(Semantic);
	return Attribute ? Attribute->Accessor : NoIndex;
}

bool IsSameBlock(const FSceneVertexBlock& Block, const FGltfPrimitive& Primitive)
{
	return Block.Position == AccessorOf(Primitive, "POSITION") && Block.Normal == AccessorOf(Primitive, "NORMAL") &&
		   Block.Tangent == AccessorOf(Primitive, "TANGENT");
}
} // namespace

FSceneMeshLayout MakeMeshLayout(const FGltfDocument& Document, FGltfIndex Mesh)
{
	FSceneMeshLayout Layout;
	const std::vector<FGltfPrimitive>& Primitives = Document.Mesh(Mesh).Primitives;
	for (std::size_t Index = 0; Index < Primitives.size(); ++Index)
	{
		const FGltfPrimitive& Primitive = Primitives[Index];
		// What comes out of a decoder is the primitive's own, whatever accessors describe it.
		auto Block = Primitive.Draco
						 ? Layout.Blocks.end()
						 : std::find_if(Layout.Blocks.begin(), Layout.Blocks.end(),
							   [&](const FSceneVertexBlock& Known)
							   { return !Primitives[Known.Primitives[0]].Draco && IsSameBlock(Known, Primitive); });
		if (Block == Layout.Blocks.end())
		{
			FSceneVertexBlock New;
			New.Position = AccessorOf(Primitive, "POSITION");
			New.Normal = AccessorOf(Primitive, "NORMAL");
			New.Tangent = AccessorOf(Primitive, "TANGENT");
			const std::uint64_t Count = New.Position == NoIndex ? 0 : Document.Accessor(New.Position).Count;
			New.FirstSlot = int32(std::min<int64>(Layout.NumSlots, std::numeric_limits<int32>::max()));
			New.Count = int32(std::min<std::uint64_t>(Count, std::uint64_t(std::numeric_limits<int32>::max())));
			Layout.NumSlots += New.Count;
			Layout.bHasNormals |= New.Normal != NoIndex;
			Layout.bHasTangents |= New.Tangent != NoIndex;
			Layout.Blocks.push_back(New);
			Block = Layout.Blocks.end() - 1;
		}
		Block->Primitives.push_back(Index);
		Layout.BlockOfPrimitive.push_back(std::size_t(Block - Layout.Blocks.begin()));
	}
	return Layout;
}

namespace
{
/// Elements that are converted at a time.
constexpr std::size_t ChunkElements = 4096;

/// Hands the components of all elements to `Take(Index, Components)`.
template <std::size_t NumComponents, class TTake>
void ForEachElement(const FElementView& View, std::size_t Count, const TTake& Take)
{
	std::vector<float> Chunk(ChunkElements * NumComponents);
	for (std::size_t First = 0; First < Count; First += ChunkElements)
	{
		const std::size_t Num = std::min(ChunkElements, Count - First);
		ReadComponents(View, First, std::span<float>(Chunk.data(), Num * NumComponents));
		for (std::size_t Index = 0; Index < Num; ++Index)
		{
			Take(First + Index, &Chunk[Index * NumComponents]);
		}
	}
}

void FillBlock(const FPrimitiveData& Data, const FSceneVertexBlock& Block, FMeshDescription& Description)
{
	const std::size_t First = std::size_t(Block.FirstSlot);
	const std::size_t Count = std::size_t(Block.Count);
	if (const FVertexAttribute* const Positions = Data.Find("POSITION"))
	{
		const std::span<FVector3f> Out = Description.GetVertexPositions();
		ForEachElement<3>(Positions->Elements, Count,
			[&](std::size_t Index, const float* P) { Out[First + Index] = SceneSpace::PointToHost(P[0], P[1], P[2]); });
	}
	if (const FVertexAttribute* const Normals = Data.Find("NORMAL"))
	{
		const std::span<FVector3f> Out = Description.GetNormals();
		ForEachElement<3>(Normals->Elements, Count,
			[&](std::size_t Index, const float* N)
			{ Out[First + Index] = SceneSpace::DirectionToHost(N[0], N[1], N[2]); });
	}
	if (const FVertexAttribute* const Tangents = Data.Find("TANGENT"))
	{
		const std::span<FVector3f> Out = Description.GetTangents();
		const std::span<float> Signs = Description.GetBinormalSigns();
		ForEachElement<4>(Tangents->Elements, Count,
			[&](std::size_t Index, const float* T)
			{
				Out[First + Index] = SceneSpace::DirectionToHost(T[0], T[1], T[2]);
				Signs[First + Index] = T[3];
			});
	}
}

/// Makes all slots of a description, with the attributes that some block has: those that others lack are zero.
void MakeSlots(const FSceneMeshLayout& Layout, FMeshDescription& Description)
{
	EVertexInstanceAttributes Attributes = EVertexInstanceAttributes::None;
	if (Layout.bHasNormals)
	{
		Attributes = Attributes | EVertexInstanceAttributes::Normals;
	}
	if (Layout.bHasTangents)
	{
		Attributes = Attributes | EVertexInstanceAttributes::Tangents | EVertexInstanceAttributes::BinormalSigns;
	}
	Description.AddAttributes(Attributes);
	const int32 NumSlots = int32(Layout.NumSlots);
	std::ranges::fill(Description.AppendVertices(NumSlots), FVector3f(0.f, 0.f, 0.f));
	Description.AppendVertexInstances(NumSlots);
	int32 Slot = 0;
	for (FVertexID& Vertex : Description.GetVertexInstanceVertices())
	{
		Vertex = FVertexID(Slot++);
	}
	std::ranges::fill(Description.GetNormals(), FVector3f(0.f, 0.f, 0.f));
	std::ranges::fill(Description.GetTangents(), FVector3f(0.f, 0.f, 0.f));
	std::ranges::fill(Description.GetBinormalSigns(), 1.f);
}
} // namespace

FSceneStatus DecodeMesh(const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Mesh,
	const FSceneMeshLayout& Layout, FMeshDescription& Description)
{
	if (Layout.NumSlots > std::numeric_limits<int32>::max())
	{
		return Document->Error(Document->Mesh(Mesh).Json, "has more vertices than can be handled");
	}
	MakeSlots(Layout, Description);
	std::vector<uint8> bUsed(std::size_t(Layout.NumSlots), 0);
	for (std::size_t Index = 0; Index < Layout.BlockOfPrimitive.size(); ++Index)
	{
		const FSceneVertexBlock& Block = Layout.Blocks[Layout.BlockOfPrimitive[Index]];
		const FPolygonGroupID Group =
			Description.CreatePolygonGroup(FName(FString::Printf(TEXT("primitive %d"), int32(Index))));
		TSceneResult<FPrimitiveData> Data = ReadPrimitive(Document, Mesh, Index);
		if (!Data)
		{
			return Data.Error();
		}
		if (Data->VertexCount != uint32(Block.Count))
		{
			return Document->Error(
				Document->Mesh(Mesh).Primitives[Index].Json, "decodes to another number of vertices than it says");
		}
		if (Block.Primitives.front() == Index)
		{
			FillBlock(*Data, Block, Description);
		}
		const std::size_t First = std::size_t(Block.FirstSlot);
		const std::vector<std::uint32_t> Indices =
			Data->bIndexed ? std::move(Data->Indices) : PrimitiveTopology::Sequence(Data->VertexCount);
		for (const std::uint32_t Vertex : Indices)
		{
			bUsed[First + Vertex] = 1;
		}
		const std::vector<std::uint32_t> Triangles = PrimitiveTopology::TriangleList(Data->Mode, Indices);
		const std::span<FTriangleCorners> Corners = Description.AppendTriangles(Group, int32(Triangles.size() / 3));
		for (std::size_t Corner = 0; Corner < Triangles.size(); ++Corner)
		{
			Corners[Corner / 3][Corner % 3] = FVertexInstanceID(int32(First + Triangles[Corner]));
		}
	}
	Description.KeepOnlyVertexInstances(bUsed);
	Description.KeepOnlyVertices(bUsed);
	return {};
}
