// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Core.h"
#include "Platform/CoreUObject.h"
#include "Platform/Engine.h"
#include "TarvinPivot.h"
#include "TarvinTransformAPI.h"

/// One selected static-mesh component that can be worked on.
struct FTarvinItem
{
	TObjectPtr<UStaticMeshComponent> Component;
	TObjectPtr<UStaticMesh> Mesh; ///< the component's mesh when it was gathered; never null in a gathered item
	FTransform WorldTransform;    ///< the component's world transform when it was gathered
};

/// One bake of one asset, and the items that it serves.
struct FTarvinGroup
{
	TObjectPtr<UStaticMesh> Mesh;
	FTransform Bake;           ///< what all items of the group want baked into the mesh
	TArray<int32> ItemIndices; ///< ascending indices into the item array
	bool bConflict = false;    ///< whether another group wants a different transform baked into the same mesh
};

/// What a command did. Gathering counts what it skipped; the run counts the rest.
struct FTarvinRunResult
{
	int32 Baked = 0;                  ///< meshes baked, into the source asset or into a new duplicate
	int32 ComponentsUpdated = 0;      ///< components that were given their new world transform
	int32 SkippedInstanced = 0;       ///< instanced static-mesh components
	int32 SkippedNoMesh = 0;          ///< components without a static mesh
	int32 SkippedBlueprint = 0;       ///< components that were not created natively
	int32 SkippedUnrepresentable = 0; ///< components whose parent combines non-uniform scale with rotation
	int32 Duplicated = 0;             ///< groups baked into a new duplicate
	int32 NotBaked = 0;               ///< groups left unbaked: cancelled, no answer, no duplicate, or a failed bake
};

/// The answer to the shared-asset question.
enum class ETarvinSharedAssetChoice : uint8
{
	Duplicate = 0,  ///< bake a copy of the asset, for the selected components only
	ApplyToAll = 1, ///< bake the asset in place, which changes everyone who uses it
	Cancel = 2,     ///< leave the asset unbaked
};

/// Asks what to do with an asset that `OtherUsers` components outside the selection use, or that is wanted in two
/// shapes, in which case `bInPlaceAllowed` is false.
using FTarvinOnSharedAsset =
	TDelegate<ETarvinSharedAssetChoice(UStaticMesh* Mesh, int32 OtherUsers, bool bInPlaceAllowed)>;

/// What one command differs in from the others: what it bakes into a mesh, where the component goes afterwards, and its
/// texts.
struct TARVINTRANSFORM_API FTarvinOperation
{
	/// Computes what is to be baked into the item's mesh, in mesh space; false when the item has no bake.
	TFunction<bool(const FTarvinItem& Item, FTransform& OutBake)> ComputeBake;

	/// The component's new world transform, such that the baked mesh keeps its world shape and place.
	TFunction<FTransform(const FTarvinItem& Item, const FTransform& Bake)> ComputeNewComponentTransform;

	/// Whether components are skipped whose parent combines non-uniform scale with rotation.
	bool bRejectUnrepresentableParent = true;

	/// The undo history's text for the command.
	FText TransactionText;

	/// Makes the first sentence of the user message from the number of meshes baked. May be empty.
	TFunction<FString(int32 BakedCount)> FormatSummary;

	FTarvinOperation();
	FTarvinOperation(const FTarvinOperation& Other);

	/// Leaves the source's callables empty.
	FTarvinOperation(FTarvinOperation&& Other);
	FTarvinOperation& operator=(const FTarvinOperation& Other);

	/// Exchanges the callables with the source's; copies the flag and the text.
	FTarvinOperation& operator=(FTarvinOperation&& Other);
	~FTarvinOperation();

	/// "Bake Transform": rotation and scale go into the mesh, the location stays on the component.
	static FTarvinOperation RotationScaleBake();

	/// "Set Pivot": the mesh is shifted so that the pivot point becomes its origin, and the component moves onto that
	/// point.
	static FTarvinOperation SetPivot(ETarvinPivotPosition Position);
};
