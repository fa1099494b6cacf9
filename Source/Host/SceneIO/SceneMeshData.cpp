// SPDX-License-Identifier: MIT
#include "SceneIO/SceneMeshData.h"

#include "SceneIO/GltfPrimitiveData.h"
#include "SceneIO/PrimitiveTopology.h"
#include "SceneIO/SceneSpace.h"

#include <algorithm>
#include <cstring>
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

FSceneMeshData::FSceneMeshData(std::shared_ptr<const FGltfDocument> InDocument, FGltfIndex InMesh)
	: Document(std::move(InDocument))
	, Mesh(InMesh)
	, Layout(MakeMeshLayout(*Document, InMesh))
{
}

TSharedPtr<FMeshDescription> FSceneMeshData::Decode() const
{
	TSceneResult<TSharedPtr<FMeshDescription>> Result = TryDecode();
	return Result ? Result.Take() : TSharedPtr<FMeshDescription>();
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

TSceneResult<TSharedPtr<FMeshDescription>> FSceneMeshData::TryDecode() const
{
	if (Layout.NumSlots > std::numeric_limits<int32>::max())
	{
		return Document->Error(Document->Mesh(Mesh).Json, "has more vertices than can be handled");
	}
	TSharedPtr<FMeshDescription> Description = MakeShared<FMeshDescription>();
	MakeSlots(Layout, *Description);
	std::vector<uint8> bUsed(std::size_t(Layout.NumSlots), 0);
	for (std::size_t Index = 0; Index < Layout.BlockOfPrimitive.size(); ++Index)
	{
		const FSceneVertexBlock& Block = Layout.Blocks[Layout.BlockOfPrimitive[Index]];
		const FPolygonGroupID Group =
			Description->CreatePolygonGroup(FName(FString::Printf(TEXT("primitive %d"), int32(Index))));
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
			FillBlock(*Data, Block, *Description);
		}
		const std::size_t First = std::size_t(Block.FirstSlot);
		const std::vector<std::uint32_t> Indices =
			Data->bIndexed ? std::move(Data->Indices) : PrimitiveTopology::Sequence(Data->VertexCount);
		for (const std::uint32_t Vertex : Indices)
		{
			bUsed[First + Vertex] = 1;
		}
		const std::vector<std::uint32_t> Triangles = PrimitiveTopology::TriangleList(Data->Mode, Indices);
		const std::span<FTriangleCorners> Corners = Description->AppendTriangles(Group, int32(Triangles.size() / 3));
		for (std::size_t Corner = 0; Corner < Triangles.size(); ++Corner)
		{
			Corners[Corner / 3][Corner % 3] = FVertexInstanceID(int32(First + Triangles[Corner]));
		}
	}
	Description->KeepOnlyVertexInstances(bUsed);
	Description->KeepOnlyVertices(bUsed);
	return Description;
}

namespace
{
/// True when the triangles of the two descriptions, which have the same ones, are wound the other way.
bool IsTurnedOver(const FMeshDescription& Original, const FMeshDescription& Edited)
{
	const std::span<const FTriangleCorners> Old = Original.GetTriangleCorners();
	const std::span<const FTriangleCorners> New = Edited.GetTriangleCorners();
	for (std::size_t Index = 0; Index < Old.size(); ++Index)
	{
		const bool bRotated = New[Index] == FTriangleCorners{Old[Index][1], Old[Index][2], Old[Index][0]} ||
							  New[Index] == FTriangleCorners{Old[Index][2], Old[Index][0], Old[Index][1]};
		if (New[Index] != Old[Index] && !bRotated)
		{
			return true;
		}
	}
	return false;
}

template <class T>
bool IsSameBits(std::span<const T> A, std::span<const T> B)
{
	return A.size() == B.size() && (A.empty() || std::memcmp(A.data(), B.data(), A.size_bytes()) == 0);
}

template <class T>
std::span<const T> Part(std::span<const T> All, const FSceneVertexBlock& Block)
{
	return All.empty() ? All : All.subspan(std::size_t(Block.FirstSlot), std::size_t(Block.Count));
}

/// The largest error that storing a value in the old component type may bring: in positions a share of the block's
/// size, in directions an absolute one.
constexpr double StorageTolerance = 1.e-7;
constexpr double DirectionTolerance = 1.e-6;

/// The block's elements as the file holds them, from a description; those of slots that the mesh does not use from
/// `Original`.
class FBlockValues
{
public:
	FBlockValues(const FSceneVertexBlock& InBlock, const FMeshDescription& InOriginal, const FMeshDescription& InEdited)
		: Block(InBlock)
		, Original(InOriginal)
		, Edited(InEdited)
	{
	}

	std::vector<float> Positions() const
	{
		return Collect<3>([](const FMeshDescription& D, std::size_t Slot, float* Out)
			{ Store(SceneSpace::PointToFile(D.GetVertexPositions()[Slot]), Out); });
	}

	std::vector<float> Normals() const
	{
		return Collect<3>([](const FMeshDescription& D, std::size_t Slot, float* Out)
			{ Store(SceneSpace::DirectionToFile(D.GetNormals()[Slot]), Out); });
	}

	std::vector<float> Tangents() const
	{
		return Collect<4>(
			[](const FMeshDescription& D, std::size_t Slot, float* Out)
			{
				Store(SceneSpace::DirectionToFile(D.GetTangents()[Slot]), Out);
				Out[3] = D.GetBinormalSigns()[Slot];
			});
	}

private:
	static void Store(const std::array<float, 3>& Values, float* Out) { std::copy(Values.begin(), Values.end(), Out); }

	template <std::size_t NumComponents, class TFill>
	std::vector<float> Collect(const TFill& Fill) const
	{
		std::vector<float> Values(std::size_t(Block.Count) * NumComponents);
		const auto Vertices = Edited.Vertices();
		for (int32 Index = 0; Index < Block.Count; ++Index)
		{
			const int32 Slot = Block.FirstSlot + Index;
			const FMeshDescription& Source = Vertices.IsValid(FVertexID(Slot)) ? Edited : Original;
			Fill(Source, std::size_t(Slot), &Values[std::size_t(Index) * NumComponents]);
		}
		return Values;
	}

	const FSceneVertexBlock& Block;
	const FMeshDescription& Original;
	const FMeshDescription& Edited;
};

double LargestMagnitude(const std::vector<float>& Values)
{
	double Largest = 0.0;
	for (const float Value : Values)
	{
		Largest = std::isfinite(Value) ? std::max(Largest, std::abs(double(Value))) : Largest;
	}
	return Largest;
}

void SetForAll(
	const FSceneVertexBlock& Block, const char* Semantic, const FNewElementsPtr& Elements, FGltfMeshChange& Change)
{
	for (const std::size_t Primitive : Block.Primitives)
	{
		Change.Elements[{Primitive, Semantic}] = Elements;
	}
}
} // namespace

TSceneResult<FGltfMeshChange> FSceneMeshData::MakeChange(
	const FMeshDescription& Original, const FMeshDescription& Edited) const
{
	FGltfMeshChange Change;
	for (const FSceneVertexBlock& Block : Layout.Blocks)
	{
		const FBlockValues Values(Block, Original, Edited);
		const auto Differs = [&](auto Old, auto New) { return !IsSameBits(Part(Old, Block), Part(New, Block)); };
		if (Block.Position != NoIndex && Differs(Original.GetVertexPositions(), Edited.GetVertexPositions()))
		{
			std::vector<float> New = Values.Positions();
			const double Tolerance = StorageTolerance * LargestMagnitude(New);
			SetForAll(Block, "POSITION",
				NewElements::FromFloatsLike(Document->Accessor(Block.Position), std::move(New), Tolerance), Change);
		}
		if (Block.Normal != NoIndex && Differs(Original.GetNormals(), Edited.GetNormals()))
		{
			SetForAll(Block, "NORMAL",
				NewElements::FromFloatsLike(Document->Accessor(Block.Normal), Values.Normals(), DirectionTolerance),
				Change);
		}
		if (Block.Tangent != NoIndex && (Differs(Original.GetTangents(), Edited.GetTangents()) ||
											Differs(Original.GetBinormalSigns(), Edited.GetBinormalSigns())))
		{
			SetForAll(Block, "TANGENT",
				NewElements::FromFloatsLike(Document->Accessor(Block.Tangent), Values.Tangents(), DirectionTolerance),
				Change);
		}
	}
	if (!IsTurnedOver(Original, Edited))
	{
		return Change;
	}
	const std::vector<FGltfPrimitive>& Primitives = Document->Mesh(Mesh).Primitives;
	for (std::size_t Index = 0; Index < Primitives.size(); ++Index)
	{
		if (!PrimitiveTopology::HasTriangles(Primitives[Index].Mode))
		{
			continue;
		}
		TSceneResult<FPrimitiveData> Data = ReadPrimitive(Document, Mesh, Index);
		if (!Data)
		{
			return Data.Error();
		}
		const std::vector<std::uint32_t> Old =
			Data->bIndexed ? std::move(Data->Indices) : PrimitiveTopology::Sequence(Data->VertexCount);
		const FGltfIndex OldAccessor = Primitives[Index].Indices;
		const std::optional<EGltfComponent> Preferred =
			OldAccessor == NoIndex ? std::nullopt : std::optional(Document->Accessor(OldAccessor).Component);
		Change.Elements[{Index, ""}] =
			NewElements::FromIndices(PrimitiveTopology::Flipped(Primitives[Index].Mode, Old), Preferred);
	}
	return Change;
}
