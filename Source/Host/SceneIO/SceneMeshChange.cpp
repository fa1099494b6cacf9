// SPDX-License-Identifier: MIT
// What a file must become for its mesh to be another.
#include "SceneIO/GltfPrimitiveData.h"
#include "SceneIO/PrimitiveTopology.h"
#include "SceneIO/SceneMeshData.h"
#include "SceneIO/SceneSpace.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

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

/// True when an attribute of a used vertex of the block has other bits.
template <class T>
bool Differs(
	const FMeshDescription& Mesh, const FSceneVertexBlock& Block, std::span<const T> Old, std::span<const T> New)
{
	if (Old.empty() || New.empty())
	{
		return Old.size() != New.size();
	}
	const auto Vertices = Mesh.Vertices();
	for (int32 Slot = Block.FirstSlot; Slot < Block.FirstSlot + Block.Count; ++Slot)
	{
		const std::size_t At = std::size_t(Slot);
		if (std::memcmp(&Old[At], &New[At], sizeof(T)) != 0 && Vertices.IsValid(FVertexID(Slot)))
		{
			return true;
		}
	}
	return false;
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

/// Elements of a block as they are after the transforms, read and stored piece by piece.
FNewElementsPtr StreamElements(const FGltfAccessor& Like, ESceneAttribute Which, std::size_t Block,
	const std::shared_ptr<const FSceneMeshSource>& Source, const std::shared_ptr<const FDeferredMesh>& Deferred)
{
	const std::size_t Components = ComponentCount(Like.Type);
	const auto Count = static_cast<std::size_t>(Source->NumElements(Block));
	if (Like.Component != EGltfComponent::Float)
	{
		// Whether they fit the old storage must be known of all of them.
		std::vector<float> All(Count * Components);
		Source->Read(Which, Block, Deferred->Transforms, 0, All);
		const double Tolerance =
			Which == ESceneAttribute::Position ? StorageTolerance * LargestMagnitude(All) : DirectionTolerance;
		return NewElements::FromFloatsLike(Like, std::move(All), Tolerance);
	}
	auto Out = std::make_shared<FNewElements>();
	Out->Type = Like.Type;
	Out->Count = Count;
	Out->Produce = [Source, Deferred, Which, Block, Components](std::uint64_t First, std::span<std::byte> Bytes)
	{
		std::array<float, 3072> Buffer; // whole elements of three numbers and of four
		for (std::size_t Done = 0; Done < Bytes.size(); Done += sizeof(Buffer))
		{
			const std::span<std::byte> Part = Bytes.subspan(Done, std::min(sizeof(Buffer), Bytes.size() - Done));
			const std::span<float> Piece = std::span(Buffer).first(Part.size() / sizeof(float));
			const std::size_t Skipped = Done / sizeof(float) / Components;
			Source->Read(Which, Block, Deferred->Transforms, static_cast<std::size_t>(First) + Skipped, Piece);
			std::memcpy(Part.data(), Piece.data(), Part.size());
		}
	};
	return Out;
}
} // namespace

FGltfMeshChange FSceneMeshData::CompareElements(const FMeshDescription& Original, const FMeshDescription& Edited) const
{
	FGltfMeshChange Change;
	for (const FSceneVertexBlock& Block : Layout.Blocks)
	{
		const FBlockValues Values(Block, Original, Edited);
		if (Block.Position != NoIndex &&
			Differs(Original, Block, Original.GetVertexPositions(), Edited.GetVertexPositions()))
		{
			std::vector<float> New = Values.Positions();
			const double Tolerance = StorageTolerance * LargestMagnitude(New);
			SetForAll(Block, "POSITION",
				NewElements::FromFloatsLike(Document->Accessor(Block.Position), std::move(New), Tolerance), Change);
		}
		if (Block.Normal != NoIndex && Differs(Original, Block, Original.GetNormals(), Edited.GetNormals()))
		{
			SetForAll(Block, "NORMAL",
				NewElements::FromFloatsLike(Document->Accessor(Block.Normal), Values.Normals(), DirectionTolerance),
				Change);
		}
		if (Block.Tangent != NoIndex &&
			(Differs(Original, Block, Original.GetTangents(), Edited.GetTangents()) ||
				Differs(Original, Block, Original.GetBinormalSigns(), Edited.GetBinormalSigns())))
		{
			SetForAll(Block, "TANGENT",
				NewElements::FromFloatsLike(Document->Accessor(Block.Tangent), Values.Tangents(), DirectionTolerance),
				Change);
		}
	}
	return Change;
}

FGltfMeshChange FSceneMeshData::TransformElements(const std::shared_ptr<const FDeferredMesh>& Deferred) const
{
	FGltfMeshChange Change;
	for (std::size_t Index = 0; Index < Layout.Blocks.size(); ++Index)
	{
		const FSceneVertexBlock& Block = Layout.Blocks[Index];
		const auto Add = [&](ESceneAttribute Which, const char* Semantic, FGltfIndex Accessor)
		{
			if (Accessor != NoIndex && Source->Changes(Which, Index, Deferred->Transforms))
			{
				SetForAll(Block, Semantic, StreamElements(Document->Accessor(Accessor), Which, Index, Source, Deferred),
					Change);
			}
		};
		Add(ESceneAttribute::Position, "POSITION", Block.Position);
		Add(ESceneAttribute::Normal, "NORMAL", Block.Normal);
		Add(ESceneAttribute::Tangent, "TANGENT", Block.Tangent);
	}
	return Change;
}

TSceneResult<FGltfMeshChange> FSceneMeshData::MakeChange(const FMeshDescription& Edited) const
{
	const std::shared_ptr<const FDeferredMesh>& Deferred = Edited.GetDeferred();
	FGltfMeshChange Change;
	bool bTurnedOver = false;
	if (Source && Deferred && Deferred->Source == Source)
	{
		Change = TransformElements(Deferred);
		bTurnedOver = std::ranges::count_if(Deferred->Transforms, &FMeshTransform::Mirrors) % 2 == 1;
	}
	else
	{
		TSceneResult<TSharedPtr<FMeshDescription>> Original = TryDecode();
		if (!Original)
		{
			return Original.Error();
		}
		Change = CompareElements(**Original, Edited);
		bTurnedOver = IsTurnedOver(**Original, Edited);
	}
	if (FSceneStatus Status = bTurnedOver ? TurnOver(Change) : FSceneStatus(); !Status)
	{
		return Status.Error();
	}
	return Change;
}

/// Triangles that use a vertex twice have no side: a mesh of such alone stays.
FSceneStatus FSceneMeshData::TurnOver(FGltfMeshChange& Change) const
{
	FGltfMeshChange Turned;
	bool bAny = false;
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
		bAny = bAny || PrimitiveTopology::HasSides(Primitives[Index].Mode, Old);
		const FGltfIndex OldAccessor = Primitives[Index].Indices;
		const std::optional<EGltfComponent> Preferred =
			OldAccessor == NoIndex ? std::nullopt : std::optional(Document->Accessor(OldAccessor).Component);
		Turned.Elements[{Index, ""}] =
			NewElements::FromIndices(PrimitiveTopology::Flipped(Primitives[Index].Mode, Old), Preferred);
	}
	if (bAny)
	{
		Change.Elements.merge(Turned.Elements);
	}
	return {};
}
