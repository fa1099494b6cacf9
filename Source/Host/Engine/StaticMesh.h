// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Box.h"
#include "Core/Delegate.h"
#include "Core/SharedPointer.h"
#include "Core/Text.h"
#include "CoreUObject/ObjectPtr.h"
#include "Engine/StaticMeshRenderData.h"
#include "MeshDescription/MeshBulkData.h"
#include "MeshDescription/MeshDescription.h"

class UBodySetup;
class UStaticMeshSocket;

/// How a commit is to be done.
struct FCommitMeshDescriptionParams
{
	bool bMarkPackageDirty = true;
	bool bUseHashAsGuid = false; ///< this host names committed data by identity, so that the flag changes nothing
};

/// One source of geometry of a mesh: a level of detail, or the HiRes source.
///
/// The bulk data are the state: immutable, shared with undo records and copies. The description is a cache that is
/// decoded from them on demand, edited, and committed back.
class FStaticMeshSourceModel
{
public:
	/// The screen size below which this level is shown, as a share of the screen's height; 0 for "not given".
	float ScreenSize = 0.f;

	const TSharedPtr<const FMeshBulkData>& GetBulkData() const { return BulkData; }

	/// Replaces the source, dropping the cached description.
	void SetBulkData(TSharedPtr<const FMeshBulkData> InBulkData);

	/// True when there are bulk data that hold something.
	bool IsValid() const { return BulkData.IsValid() && !BulkData->IsEmpty(); }

	/// The editable description, decoded if need be; null when there is none or when decoding fails. Stays valid until
	/// it is committed, or dropped by an undo.
	FMeshDescription* Edit();

	/// The description for reading: an uncommitted edit if there is one, else what the bulk data hold, without copying
	/// it if it is in memory. Null as above.
	const FMeshDescription* Read() const;

	/// What the bulk data hold, whatever is being edited: what is derived from the mesh is derived from this. Null as
	/// above.
	TSharedPtr<const FMeshDescription> ReadCommitted() const;

	/// Makes the edited description the new bulk data, without copying it. Does nothing when nothing was being edited.
	void Commit();

	/// Drops the cached description; an edit that was not committed is lost.
	void DropCache() const { Cache.Reset(); }

private:
	bool IsCacheFresh() const { return Cache.IsValid() && CacheSource == BulkData; }

	TSharedPtr<const FMeshBulkData> BulkData;
	mutable TSharedPtr<FMeshDescription> Cache;
	mutable TSharedPtr<const FMeshBulkData> CacheSource;
	mutable bool bCacheIsEdited = false;
};

/// A material slot, named as the polygon groups of the descriptions name it.
struct FStaticMaterial
{
	FName SlotName;
	FName MaterialName;
};

/// The properties that a build on other threads may hold.
enum class EStaticMeshAsyncProperties : uint8
{
	BodySetup,
};

/// A static mesh asset: source geometry for each level of detail and, it may be, a HiRes source; materials, sockets and
/// simple collision; and what is derived from them for drawing.
class UStaticMesh : public UObject
{
	DECLARE_CLASS(UStaticMesh, UObject)

public:
	int32 GetNumSourceModels() const { return int32(SourceModels.Num()); }
	void SetNumSourceModels(int32 Num) { SourceModels.SetNum(Num); }
	FStaticMeshSourceModel& GetSourceModel(int32 Lod) { return SourceModels[Lod]; }
	const FStaticMeshSourceModel& GetSourceModel(int32 Lod) const { return SourceModels[Lod]; }
	FStaticMeshSourceModel& GetHiResSourceModel() { return HiResSourceModel; }
	const FStaticMeshSourceModel& GetHiResSourceModel() const { return HiResSourceModel; }

	/// True when the level exists and has source geometry.
	bool IsMeshDescriptionValid(int32 Lod) const;
	bool IsHiResMeshDescriptionValid() const { return HiResSourceModel.IsValid(); }

	/// Records the source of the level in the open transaction. Returns false when the level has none.
	bool ModifyMeshDescription(int32 Lod, bool bAlwaysMarkDirty = true);
	bool ModifyHiResMeshDescription(bool bAlwaysMarkDirty = true);

	/// The level's editable description, or null when it has none or its source cannot be decoded. Valid until
	/// committed.
	FMeshDescription* GetMeshDescription(int32 Lod);
	const FMeshDescription* GetMeshDescription(int32 Lod) const;
	FMeshDescription* GetHiResMeshDescription() { return HiResSourceModel.Edit(); }
	const FMeshDescription* GetHiResMeshDescription() const { return HiResSourceModel.Read(); }

	/// Makes the edited description the level's source.
	void CommitMeshDescription(int32 Lod, const FCommitMeshDescriptionParams& Params = {});
	void CommitHiResMeshDescription(const FCommitMeshDescriptionParams& Params = {});

	/// Gives the level (or the HiRes source) this geometry, adding levels as needed. Not recorded for undo.
	void SetMeshDescription(int32 Lod, FMeshDescription&& Description);
	void SetHiResMeshDescription(FMeshDescription&& Description);

	/// Drops what was derived from the source, and cooks the collision. Bounds and render data are made again on first
	/// use, the latter level by level. A level that cannot be decoded adds a line to `OutErrors` and is left out.
	void Build(bool bSilent = true, TArray<FText>* OutErrors = nullptr);

	/// How many builds there were.
	int32 GetNumBuilds() const { return NumBuilds; }

	/// True when the derived data are those of the present source.
	bool IsBuilt() const;

	/// The box of level 0 (of the HiRes source when there are no levels) in local space, fresh. Not valid for an empty
	/// mesh.
	const FBox& GetBoundingBox();

	/// What is drawn for the level, fresh; made on first use. Null when the level has no geometry.
	const FStaticMeshLodRenderData* GetRenderData(int32 Lod);

	UBodySetup* GetBodySetup() const;

	/// Waits until no build on another thread holds the property.
	void WaitUntilAsyncPropertyReleased(EStaticMeshAsyncProperties Property) const;

	/// The body setup, made when there is none.
	UBodySetup* CreateBodySetup();
	void SetBodySetup(UBodySetup* InBodySetup);

	TArray<TObjectPtr<UStaticMeshSocket>> Sockets;
	TArray<FStaticMaterial> StaticMaterials;

	/// Adds a socket of that name, without moving it from the origin.
	UStaticMeshSocket* AddSocket(FName SocketName);

	/// Told of every mesh that was edited, once it is built.
	static TMulticastDelegate<void(UStaticMesh*)>& OnMeshEdited();

	void Serialize(FArchive& Archive) override;
	void PostEditChange() override;
	void DropDerivedData() override;

private:
	void EnsureBuilt();

	TArray<FStaticMeshSourceModel> SourceModels;
	FStaticMeshSourceModel HiResSourceModel;
	TObjectPtr<UBodySetup> BodySetup;

	FStaticMeshDerivedData Derived;
	int32 NumBuilds = 0;
};
