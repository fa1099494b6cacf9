// SPDX-License-Identifier: MIT
#include "SceneIO/SceneMeshSource.h"

#include "MeshDescription/MeshTransformKernels.h"
#include "SceneIO/GltfPrimitiveData.h"
#include "SceneIO/SceneSpace.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <limits>
#include <string_view>

#include <tbb/blocked_range.h>
#include <tbb/parallel_reduce.h>

namespace
{
/// Elements that are read at a time.
constexpr std::size_t ChunkElements = 1024;

/// Elements that are worth waking another core for.
constexpr std::size_t TaskElements = 64 * ChunkElements;

/// Calls Take(first, count) for the pieces of an array.
template <class TTake>
void ForPieces(std::size_t Count, const TTake& Take)
{
	for (std::size_t First = 0; First < Count; First += ChunkElements)
	{
		Take(First, std::min(ChunkElements, Count - First));
	}
}

/// By ESceneAttribute.
constexpr std::array<std::string_view, 3> Semantics = {"POSITION", "NORMAL", "TANGENT"};

constexpr std::size_t NumComponents(ESceneAttribute Which)
{
	return Which == ESceneAttribute::Tangent ? 4 : 3;
}

/// From what an accessor holds to the host's space and back, without the binormal sign.
FVector3f ToHost(ESceneAttribute Which, const float* V)
{
	return Which == ESceneAttribute::Position ? SceneSpace::PointToHost(V[0], V[1], V[2])
											  : SceneSpace::DirectionToHost(V[0], V[1], V[2]);
}

std::array<float, 3> ToFile(ESceneAttribute Which, const FVector3f& V)
{
	return Which == ESceneAttribute::Position ? SceneSpace::PointToFile(V) : SceneSpace::DirectionToFile(V);
}

void Apply(ESceneAttribute Which, const FMeshTransform& Transform, std::span<FVector3f> Vectors)
{
	switch (Which)
	{
	case ESceneAttribute::Position:
		return Transform.TransformPositions(Vectors);
	case ESceneAttribute::Normal:
		return Transform.TransformNormals(Vectors);
	case ESceneAttribute::Tangent:
		return Transform.TransformTangents(Vectors);
	}
}

std::span<float> Floats(std::span<FVector3f> Vectors)
{
	static_assert(sizeof(FVector3f) == 3 * sizeof(float));
	return {reinterpret_cast<float*>(Vectors.data()), Vectors.size() * 3};
}
} // namespace

bool FSceneMeshSource::CanOpen(const FGltfDocument& Document, FGltfIndex Mesh)
{
	const std::vector<FGltfPrimitive>& Primitives = Document.Mesh(Mesh).Primitives;
	return std::ranges::none_of(
		Primitives, [](const FGltfPrimitive& Primitive) { return Primitive.Draco.has_value(); });
}

TSceneResult<std::shared_ptr<const FSceneMeshSource>> FSceneMeshSource::Open(
	const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Mesh, const FSceneMeshLayout& Layout)
{
	if (Layout.NumSlots > std::numeric_limits<int32>::max())
	{
		return Document->Error(Document->Mesh(Mesh).Json, "has more vertices than can be handled");
	}
	const std::shared_ptr<FSceneMeshSource> Source(new FSceneMeshSource(Document, Mesh, Layout));
	if (FSceneStatus Status = Source->ReadThrough(); !Status)
	{
		return Status.Error();
	}
	return std::shared_ptr<const FSceneMeshSource>(Source);
}

FSceneMeshSource::FSceneMeshSource(
	const std::shared_ptr<const FGltfDocument>& InDocument, FGltfIndex InMesh, const FSceneMeshLayout& InLayout)
	: Document(InDocument)
	, Mesh(InMesh)
	, Layout(InLayout)
	, Views(InLayout.Blocks.size())
{
}

/// Finds the vertices that are used, and their box, and everything that cannot be read.
FSceneStatus FSceneMeshSource::ReadThrough()
{
	std::vector<uint8> bUsed(std::size_t(Layout.NumSlots), 0);
	const std::vector<FGltfPrimitive>& Primitives = Document->Mesh(Mesh).Primitives;
	for (std::size_t Index = 0; Index < Primitives.size(); ++Index)
	{
		FBlockViews& Block = Views[Layout.BlockOfPrimitive[Index]];
		if (!Primitives[Index].FindAttribute("POSITION"))
		{
			continue; // it has no geometry
		}
		for (const FGltfAttribute& Attribute : Primitives[Index].Attributes)
		{
			TSceneResult<FElementView> View = ViewElements(Document, Attribute.Accessor);
			if (!View)
			{
				return View.Error();
			}
			const auto Known = std::ranges::find(Semantics, Attribute.Semantic);
			if (Known != Semantics.end())
			{
				Block[std::size_t(Known - Semantics.begin())] = View.Take();
			}
		}
		if (FSceneStatus Status = MarkUsed(Index, bUsed); !Status)
		{
			return Status;
		}
	}
	Used.Append(int32(Layout.NumSlots));
	Used.AllocateOnly(bUsed);
	Untransformed = Measure({});
	return {};
}

FSceneStatus FSceneMeshSource::MarkUsed(std::size_t Primitive, std::vector<uint8>& bUsed) const
{
	const FSceneVertexBlock& Block = Layout.Blocks[Layout.BlockOfPrimitive[Primitive]];
	const FGltfIndex Indices = Document->Mesh(Mesh).Primitives[Primitive].Indices;
	uint8* const First = bUsed.data() + Block.FirstSlot;
	if (Indices == NoIndex)
	{
		std::fill_n(First, Block.Count, uint8(1));
		return {};
	}
	return ForEachIndex(Document, Indices, uint32(Block.Count),
		[First](std::size_t, std::span<const std::uint32_t> Piece)
		{
			for (const std::uint32_t Vertex : Piece)
			{
				std::atomic_ref(First[Vertex]).store(1, std::memory_order_relaxed);
			}
		});
}

void FSceneMeshSource::Fill(FMeshDescription& Empty) const
{
	if (!DecodeMesh(Document, Mesh, Layout, Empty))
	{
		Empty.Empty();
	}
}

struct FSceneMeshSource::FExtremes
{
	FVector3f Min = MeshTransformKernels::EmptyMin;
	FVector3f Max = MeshTransformKernels::EmptyMax;
	std::size_t NumNonFinite = 0;
};

void FSceneMeshSource::Grow(FExtremes& Extremes, std::size_t Block, std::size_t First, std::size_t Count,
	std::span<const FMeshTransform> Transforms) const
{
	std::array<FVector3f, ChunkElements> Buffer;
	const std::span<FVector3f> Points = std::span(Buffer).first(Count);
	ReadComponents(ViewOf(ESceneAttribute::Position, Block), First, Floats(Points));
	const bool bAllUsed = !Used.HasGaps();
	std::size_t NumUsed = 0;
	for (std::size_t Index = 0; Index < Count; ++Index)
	{
		const FVector3f Point = Points[Index];
		Points[NumUsed] = SceneSpace::PointToHost(Point.X, Point.Y, Point.Z);
		NumUsed += bAllUsed || IsUsed(Block, First + Index) ? 1u : 0u;
	}
	for (const FMeshTransform& Transform : Transforms)
	{
		Transform.TransformPositions(Points.first(NumUsed));
	}
	MeshTransformKernels::GrowBounds(Points.data(), NumUsed, Extremes.Min, Extremes.Max);
	Extremes.NumNonFinite += MeshTransformKernels::CountNonFinite(Points.data(), NumUsed);
}

FMeshMeasure FSceneMeshSource::Measure(std::span<const FMeshTransform> Transforms) const
{
	if (Transforms.empty() && Untransformed)
	{
		return *Untransformed;
	}
	FExtremes All;
	for (std::size_t Block = 0; Block < Views.size(); ++Block)
	{
		const auto GrowBy = [&](const tbb::blocked_range<std::size_t>& Range, FExtremes So)
		{
			ForPieces(Range.size(), [&](std::size_t First, std::size_t Count)
				{ Grow(So, Block, Range.begin() + First, Count, Transforms); });
			return So;
		};
		const auto Join = [](FExtremes A, const FExtremes& B)
		{
			// Where B has no point, its least is the greatest number, and the other way round.
			A.Min = {std::min(A.Min.X, B.Min.X), std::min(A.Min.Y, B.Min.Y), std::min(A.Min.Z, B.Min.Z)};
			A.Max = {std::max(A.Max.X, B.Max.X), std::max(A.Max.Y, B.Max.Y), std::max(A.Max.Z, B.Max.Z)};
			A.NumNonFinite += B.NumNonFinite;
			return A;
		};
		const tbb::blocked_range<std::size_t> Elements(0, NumElements(Block), TaskElements);
		All = Join(All, Elements.is_divisible() ? tbb::parallel_reduce(Elements, FExtremes(), GrowBy, Join)
												: GrowBy(Elements, FExtremes()));
	}
	return {MeshTransformKernels::MakeBox(All.Min, All.Max), int32(All.NumNonFinite)};
}

template <ESceneAttribute Which>
void FSceneMeshSource::ReadAs(
	std::size_t Block, std::span<const FMeshTransform> Transforms, std::size_t First, std::span<float> Out) const
{
	constexpr std::size_t Size = NumComponents(Which);
	ReadComponents(ViewOf(Which, Block), First, Out);
	const bool bNegatesSign =
		Which == ESceneAttribute::Tangent && std::ranges::count_if(Transforms, &FMeshTransform::Mirrors) % 2 == 1;
	const bool bAllUsed = !Used.HasGaps();
	std::array<FVector3f, ChunkElements> Buffer;
	ForPieces(Out.size() / Size,
		[&](std::size_t From, std::size_t Count)
		{
			float* const Elements = Out.data() + From * Size;
			for (std::size_t Index = 0; Index < Count; ++Index)
			{
				Buffer[Index] = ToHost(Which, Elements + Index * Size);
			}
			for (const FMeshTransform& Transform : Transforms)
			{
				Apply(Which, Transform, std::span(Buffer).first(Count));
			}
			for (std::size_t Index = 0; Index < Count; ++Index)
			{
				if (bAllUsed || IsUsed(Block, First + From + Index))
				{
					float* const Element = Elements + Index * Size;
					std::ranges::copy(ToFile(Which, Buffer[Index]), Element);
					if (bNegatesSign)
					{
						Element[Size - 1] = -Element[Size - 1];
					}
				}
			}
		});
}

void FSceneMeshSource::Read(ESceneAttribute Which, std::size_t Block, std::span<const FMeshTransform> Transforms,
	std::size_t First, std::span<float> Out) const
{
	switch (Which)
	{
	case ESceneAttribute::Position:
		return ReadAs<ESceneAttribute::Position>(Block, Transforms, First, Out);
	case ESceneAttribute::Normal:
		return ReadAs<ESceneAttribute::Normal>(Block, Transforms, First, Out);
	case ESceneAttribute::Tangent:
		return ReadAs<ESceneAttribute::Tangent>(Block, Transforms, First, Out);
	}
}

bool FSceneMeshSource::Changes(
	ESceneAttribute Which, std::size_t Block, std::span<const FMeshTransform> Transforms) const
{
	std::array<float, 4 * ChunkElements> Old;
	std::array<float, 4 * ChunkElements> New;
	const std::size_t Count = std::size_t(Layout.Blocks[Block].Count);
	for (std::size_t First = 0; First < Count; First += ChunkElements)
	{
		const std::size_t Num = std::min(ChunkElements, Count - First) * NumComponents(Which);
		// On the same road: the two spaces need not agree on the bits of what is no number.
		Read(Which, Block, {}, First, std::span(Old).first(Num));
		Read(Which, Block, Transforms, First, std::span(New).first(Num));
		if (std::memcmp(Old.data(), New.data(), Num * sizeof(float)) != 0)
		{
			return true;
		}
	}
	return false;
}
