// SPDX-License-Identifier: MIT
#include "Engine/StaticMesh.h"

#include "CoreUObject/Archive.h"
#include "CoreUObject/Transaction.h"
#include "Engine/BodySetup.h"
#include "Engine/SlowTask.h"
#include "Engine/StaticMeshSocket.h"

#include <utility>

DEFINE_CLASS(UStaticMesh)

void FStaticMeshSourceModel::SetBulkData(TSharedPtr<const FMeshBulkData> InBulkData)
{
	BulkData = std::move(InBulkData);
	DropCache();
}

FMeshDescription* FStaticMeshSourceModel::Edit()
{
	if (!IsValid())
	{
		return nullptr;
	}
	if (!IsCacheFresh())
	{
		Cache = BulkData->Decode();
		CacheSource = BulkData;
	}
	bCacheIsEdited = Cache.IsValid();
	return Cache.Get();
}

const FMeshDescription* FStaticMeshSourceModel::Read() const
{
	if (!IsValid())
	{
		return nullptr;
	}
	if (IsCacheFresh())
	{
		return Cache.Get();
	}
	if (const FMeshDescription* const InMemory = BulkData->GetDescription())
	{
		return InMemory;
	}
	Cache = BulkData->Decode();
	CacheSource = BulkData;
	bCacheIsEdited = false;
	return Cache.Get();
}

TSharedPtr<const FMeshDescription> FStaticMeshSourceModel::ReadCommitted() const
{
	if (!IsValid())
	{
		return nullptr;
	}
	if (const FMeshDescription* const InMemory = BulkData->GetDescription())
	{
		return TSharedPtr<const FMeshDescription>(std::shared_ptr<const FMeshDescription>(BulkData.ToStd(), InMemory));
	}
	if (IsCacheFresh() && bCacheIsEdited)
	{
		return BulkData->Decode();
	}
	Read();
	return Cache;
}

void FStaticMeshSourceModel::Commit()
{
	if (IsCacheFresh() && bCacheIsEdited)
	{
		BulkData = MakeShared<FDescriptionBulkData>(std::move(*Cache));
		DropCache();
	}
}

bool UStaticMesh::IsMeshDescriptionValid(int32 Lod) const
{
	return SourceModels.IsValidIndex(Lod) && SourceModels[Lod].IsValid();
}

bool UStaticMesh::ModifyMeshDescription(int32 Lod, bool bAlwaysMarkDirty)
{
	return IsMeshDescriptionValid(Lod) && (Modify(bAlwaysMarkDirty), true);
}

bool UStaticMesh::ModifyHiResMeshDescription(bool bAlwaysMarkDirty)
{
	return IsHiResMeshDescriptionValid() && (Modify(bAlwaysMarkDirty), true);
}

FMeshDescription* UStaticMesh::GetMeshDescription(int32 Lod)
{
	return IsMeshDescriptionValid(Lod) ? SourceModels[Lod].Edit() : nullptr;
}

const FMeshDescription* UStaticMesh::GetMeshDescription(int32 Lod) const
{
	return IsMeshDescriptionValid(Lod) ? SourceModels[Lod].Read() : nullptr;
}

void UStaticMesh::CommitMeshDescription(int32 Lod, const FCommitMeshDescriptionParams& Params)
{
	check(SourceModels.IsValidIndex(Lod));
	SourceModels[Lod].Commit();
	if (Params.bMarkPackageDirty)
	{
		MarkPackageDirty();
	}
}

void UStaticMesh::CommitHiResMeshDescription(const FCommitMeshDescriptionParams& Params)
{
	HiResSourceModel.Commit();
	if (Params.bMarkPackageDirty)
	{
		MarkPackageDirty();
	}
}

void UStaticMesh::SetMeshDescription(int32 Lod, FMeshDescription&& Description)
{
	check(Lod >= 0);
	if (Lod >= GetNumSourceModels())
	{
		SetNumSourceModels(Lod + 1);
	}
	SourceModels[Lod].SetBulkData(MakeShared<FDescriptionBulkData>(std::move(Description)));
}

void UStaticMesh::SetHiResMeshDescription(FMeshDescription&& Description)
{
	HiResSourceModel.SetBulkData(MakeShared<FDescriptionBulkData>(std::move(Description)));
}

namespace
{
FStaticMeshDerivedData::FSource SourceOf(const UStaticMesh& Mesh)
{
	FStaticMeshDerivedData::FSource Source;
	for (int32 Lod = 0; Lod < Mesh.GetNumSourceModels(); ++Lod)
	{
		Source.Add(Mesh.GetSourceModel(Lod).GetBulkData());
	}
	Source.Add(Mesh.GetHiResSourceModel().GetBulkData());
	return Source;
}
} // namespace

void UStaticMesh::Build(bool, TArray<FText>* OutErrors)
{
	++NumBuilds;
	Derived = FStaticMeshDerivedData();
	Derived.bBuilt = true;
	Derived.Source = SourceOf(*this);
	Derived.Lods.SetNum(GetNumSourceModels());

	if (BodySetup)
	{
		BodySetup->BeginCooking();
	}
	for (int32 Lod = 0; Lod < GetNumSourceModels(); ++Lod)
	{
		GWarn->Tick();
		if (OutErrors && IsMeshDescriptionValid(Lod) && !SourceModels[Lod].ReadCommitted())
		{
			OutErrors->Add(FText::Format(NSLOCTEXT("StaticMesh", "UndecodableLod", "{0}: level {1} cannot be decoded"),
				FText::FromString(GetName()), FText::AsNumber(Lod)));
		}
	}
	WaitUntilAsyncPropertyReleased(EStaticMeshAsyncProperties::BodySetup);
}

void UStaticMesh::WaitUntilAsyncPropertyReleased(EStaticMeshAsyncProperties) const
{
	if (BodySetup)
	{
		BodySetup->FinishCooking();
	}
}

bool UStaticMesh::IsBuilt() const
{
	return Derived.bBuilt && Derived.Source == SourceOf(*this);
}

void UStaticMesh::EnsureBuilt()
{
	if (!IsBuilt())
	{
		Build();
	}
}

const FBox& UStaticMesh::GetBoundingBox()
{
	EnsureBuilt();
	if (!Derived.Bounds)
	{
		const TSharedPtr<const FMeshDescription> Source =
			(IsMeshDescriptionValid(0) ? SourceModels[0] : HiResSourceModel).ReadCommitted();
		Derived.Bounds = Source ? Source->ComputeBoundingBox() : FBox();
	}
	return *Derived.Bounds;
}

const FStaticMeshLodRenderData* UStaticMesh::GetRenderData(int32 Lod)
{
	EnsureBuilt();
	if (!IsMeshDescriptionValid(Lod))
	{
		return nullptr;
	}
	if (!Derived.Lods[Lod].IsValid())
	{
		if (const TSharedPtr<const FMeshDescription> Description = SourceModels[Lod].ReadCommitted())
		{
			Derived.Lods[Lod] = MakeShared<FStaticMeshLodRenderData>(BuildLodRenderData(*Description));
		}
	}
	return Derived.Lods[Lod].Get();
}

UBodySetup* UStaticMesh::GetBodySetup() const
{
	return BodySetup;
}

void UStaticMesh::SetBodySetup(UBodySetup* InBodySetup)
{
	BodySetup = InBodySetup;
}

UBodySetup* UStaticMesh::CreateBodySetup()
{
	if (!BodySetup)
	{
		BodySetup = NewObject<UBodySetup>(this);
	}
	return BodySetup;
}

UStaticMeshSocket* UStaticMesh::AddSocket(FName SocketName)
{
	UStaticMeshSocket* const Socket = NewObject<UStaticMeshSocket>(this);
	Socket->SocketName = SocketName;
	Sockets.Add(Socket);
	return Socket;
}

TMulticastDelegate<void(UStaticMesh*)>& UStaticMesh::OnMeshEdited()
{
	static auto* const Event = new TMulticastDelegate<void(UStaticMesh*)>();
	return *Event;
}

static FArchive& operator<<(FArchive& Archive, FStaticMeshSourceModel& Model)
{
	TSharedPtr<const FMeshBulkData> BulkData = Model.GetBulkData();
	Archive << BulkData << Model.ScreenSize;
	if (Archive.IsLoading())
	{
		Model.SetBulkData(BulkData);
	}
	return Archive;
}

static FArchive& operator<<(FArchive& Archive, FStaticMaterial& Material)
{
	return Archive << Material.SlotName << Material.MaterialName;
}

void UStaticMesh::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << SourceModels << HiResSourceModel << BodySetup << Sockets << StaticMaterials;
}

void UStaticMesh::PostEditChange()
{
	Super::PostEditChange();
	EnsureBuilt();
	OnMeshEdited().Broadcast(this);
}

void UStaticMesh::DropDerivedData()
{
	Super::DropDerivedData();
	for (const FStaticMeshSourceModel& Model : SourceModels)
	{
		Model.DropCache();
	}
	HiResSourceModel.DropCache();
}
