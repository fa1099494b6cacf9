// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/ByteViewers.h"
#include "SceneIO/GltfPatch.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

/// New elements at a place in a buffer.
struct FBufferPiece
{
	std::uint64_t Offset = 0;
	std::uint64_t Stride = 0;
	FNewElementsPtr Elements;

	std::uint64_t End() const;
};

/// What a buffer is to become: its old bytes, `Pieces` over them, zeros where neither is.
struct FBufferPlan
{
	std::uint64_t OldLength = 0;      ///< bytes that there are, those beyond byteLength included
	std::uint64_t NewLength = 0;      ///< of the new byteLength
	std::vector<FBufferPiece> Pieces; ///< by offset
};

/// Where everything in a patch goes.
struct FPatchPlan
{
	explicit FPatchPlan(FJsonEdit InEdit)
		: Edit(std::move(InEdit))
	{
	}

	FJsonEdit Edit; ///< complete but for the uri and byteLength of the buffers below
	std::map<FGltfIndex, FBufferPlan> Buffers;
	/// The kind of the buffer that is added behind the last; Buffers holds its content.
	std::optional<EGltfBufferKind> NewBuffer;
};

/// Decides what is written over old bytes and what is put beside them, and gives the latter buffer views and accessors.
class FPatchLayout
{
public:
	explicit FPatchLayout(FGltfPatch InPatch);

	/// Fails where a compressed primitive that changes cannot be decompressed.
	TSceneResult<FPatchPlan> Run();

private:
	/// A changed slot of a mesh in the document.
	struct FUse
	{
		FGltfIndex Mesh = NoIndex;
		FGltfSlot Slot;
		FNewElementsPtr Elements;
	};

	FSceneStatus Decompress(FGltfIndex Mesh, FGltfMeshChange& Change);
	void ForgetDraco();
	void WriteInPlace();
	bool MayWriteOver(FGltfIndex Accessor, const std::vector<FUse>& Uses);
	void WriteOver(FGltfIndex Accessor, const FNewElementsPtr& Elements, bool bPosition);
	void SetBounds(FGltfIndex Accessor, const FNewElements& Elements, bool bPosition);
	void EditMesh(FJsonEdit& Edit, FGltfIndex Mesh, const FGltfMeshChange& Change);
	void EditSlot(
		FJsonEdit& Edit, const FGltfPrimitive& Primitive, const FGltfSlot& Slot, const FNewElementsPtr& Elements);
	FGltfIndex AccessorFor(const FNewElementsPtr& Elements, bool bBounds);
	void PlaceNewAccessors();
	FGltfIndex PickBuffer();
	FBufferPlan& PlanFor(FGltfIndex Buffer);
	void AppendList(std::string_view List, std::vector<std::string> Texts);

	FGltfPatch Patch; ///< but for what stands below
	const FGltfDocument& Document;
	FPatchPlan Plan;
	FByteViewers Viewers;
	std::map<FGltfIndex, FGltfMeshChange> Changes; ///< with what decompression added
	std::vector<FGltfMeshChange> CopyChanges;
	std::map<std::pair<FGltfIndex, FGltfSlot>, bool> bInPlace;
	struct FNewAccessor
	{
		FNewElementsPtr Elements;
		bool bBounds = false;
	};
	std::vector<FNewAccessor> NewAccessors;
	std::map<const FNewElements*, std::size_t> NewAccessorOf;
	std::size_t DracoLeft = 0;
};
