// SPDX-License-Identifier: MIT
#pragma once

#include "MeshDescription/MeshSource.h"
#include "SceneIO/GltfElements.h"
#include "SceneIO/SceneMeshLayout.h"

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <vector>

/// What a transform changes in the vertices of a mesh of the file.
enum class ESceneAttribute : std::uint8_t
{
	Position, ///< three numbers to the element
	Normal,   ///< three
	Tangent,  ///< four: the last is the binormal sign
};

/// A mesh of the file whose vertices are read where they stand, piece by piece, so that it need never be in memory as a
/// whole. All but what is compressed with Draco.
class FSceneMeshSource final : public FMeshSource
{
public:
	/// False for meshes that must be decoded as a whole.
	static bool CanOpen(const FGltfDocument& Document, FGltfIndex Mesh);

	/// Reads through the mesh once. Fails where it cannot be decoded.
	static TSceneResult<std::shared_ptr<const FSceneMeshSource>> Open(
		const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Mesh, const FSceneMeshLayout& Layout);

	/// Gives an empty description when the file changed, and became damaged, since it was opened: then
	/// FGltfDocument::CheckIntact fails, too.
	void Fill(FMeshDescription& Empty) const override;
	int32 NumVertices() const override { return Used.GetNumAllocated(); }
	FMeshMeasure Measure(std::span<const FMeshTransform> Transforms) const override;

	std::size_t NumElements(std::size_t Block) const { return std::size_t(Layout.Blocks[Block].Count); }

	/// Fills `Out` with elements of a block from `First` on, in the file's space, as they are after the transforms. The
	/// block must have the attribute. Vertices that the mesh does not use stay as they are in the file.
	void Read(ESceneAttribute Which, std::size_t Block, std::span<const FMeshTransform> Transforms, std::size_t First,
		std::span<float> Out) const;

	/// True when the transforms change any bit of what Read gives.
	bool Changes(ESceneAttribute Which, std::size_t Block, std::span<const FMeshTransform> Transforms) const;

private:
	/// By ESceneAttribute.
	using FBlockViews = std::array<FElementView, 3>;

	FSceneMeshSource(
		const std::shared_ptr<const FGltfDocument>& InDocument, FGltfIndex InMesh, const FSceneMeshLayout& InLayout);
	FSceneStatus ReadThrough();
	FSceneStatus MarkUsed(std::size_t Primitive, std::vector<uint8>& bUsed) const;
	template <ESceneAttribute Which>
	void ReadAs(
		std::size_t Block, std::span<const FMeshTransform> Transforms, std::size_t First, std::span<float> Out) const;
	struct FExtremes;
	void Grow(FExtremes& Extremes, std::size_t Block, std::size_t First, std::size_t Count,
		std::span<const FMeshTransform> Transforms) const;
	bool IsUsed(std::size_t Block, std::size_t Index) const
	{
		return Used.IsAllocated(Layout.Blocks[Block].FirstSlot + int32(Index));
	}
	const FElementView& ViewOf(ESceneAttribute Which, std::size_t Block) const
	{
		return Views[Block][static_cast<std::size_t>(Which)];
	}

	std::shared_ptr<const FGltfDocument> Document;
	FGltfIndex Mesh;
	FSceneMeshLayout Layout;
	std::vector<FBlockViews> Views; ///< of the blocks of the layout
	FMeshElementSlots Used;         ///< one slot for each vertex of the layout
	std::optional<FMeshMeasure> Untransformed;
};
