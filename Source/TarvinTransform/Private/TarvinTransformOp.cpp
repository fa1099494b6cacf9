// SPDX-License-Identifier: MIT
#include "TarvinTransformOp.h"

#include "Platform/CoreUObject.h"
#include "Platform/Editor.h"
#include "Platform/Engine.h"
#include "Platform/MeshDescription.h"
#include "TarvinCollisionBake.h"
#include "TarvinTolerance.h"
#include "TarvinTransformLog.h"

#include <cmath>

namespace
{
/// The meshes that the present batch has changed, in the order of their first change.
struct FTrackedMeshes
{
	TArray<FWeakObjectPtr> Meshes;
	TSet<FObjectHandle> Known; ///< those of `Meshes`: batches may change a hundred thousand

	void Add(const UStaticMesh* Mesh)
	{
		const FWeakObjectPtr Entry(Mesh);
		if (!Known.Contains(Entry.GetHandle()))
		{
			Known.Add(Entry.GetHandle());
			Meshes.Add(Entry);
		}
	}

	void RemoveAtSwap(int32 Index)
	{
		Known.Remove(Meshes[Index].GetHandle());
		Meshes.RemoveAtSwap(Index);
	}

	void Reset()
	{
		Meshes.Reset();
		Known.Reset();
	}
};

FTrackedMeshes& TrackedMeshes()
{
	static FTrackedMeshes Tracked;
	return Tracked;
}

bool HasZeroScale(const FVector& Scale)
{
	return std::abs(Scale.X) <= TarvinTolerance::Zero || std::abs(Scale.Y) <= TarvinTolerance::Zero ||
		   std::abs(Scale.Z) <= TarvinTolerance::Zero;
}

bool HasSourceGeometry(const UStaticMesh& Mesh)
{
	bool bFound = Mesh.IsHiResMeshDescriptionValid();
	for (int32 Lod = 0; Lod < Mesh.GetNumSourceModels() && !bFound; ++Lod)
	{
		bFound = Mesh.IsMeshDescriptionValid(Lod);
	}
	return bFound;
}

/// Whether any of the sources can be decoded. What is decoded here stays cached for the bake.
bool HasReadableGeometry(const UStaticMesh& Mesh)
{
	bool bFound = Mesh.GetHiResMeshDescription() != nullptr;
	for (int32 Lod = 0; Lod < Mesh.GetNumSourceModels() && !bFound; ++Lod)
	{
		bFound = Mesh.GetMeshDescription(Lod) != nullptr;
	}
	return bFound;
}

bool IsFinite(const FVector& Vector)
{
	return std::isfinite(Vector.X) && std::isfinite(Vector.Y) && std::isfinite(Vector.Z);
}

/// Says how many vertices are nowhere: they stay there, and the others are baked.
void WarnOfUnplacedVertices(const UStaticMesh& Mesh)
{
	const auto CountIn = [](const FMeshDescription* Description)
	{ return Description ? Description->CountNonFiniteVertices() : 0; };
	int32 Count = CountIn(Mesh.GetHiResMeshDescription());
	for (int32 Lod = 0; Lod < Mesh.GetNumSourceModels(); ++Lod)
	{
		Count += CountIn(Mesh.GetMeshDescription(Lod));
	}
	if (Count > 0)
	{
		HOST_LOG(LogTarvinOp, Warning, TEXT("%s: %d vertex position(s) are not finite -- they stay so"),
			*Mesh.GetName(), Count);
	}
}

bool HasBakedGeometry(const FTarvinTransformStats& Stats)
{
	return Stats.NumLodsBaked > 0 || Stats.bHiResBaked;
}

FCommitMeshDescriptionParams CommitParams()
{
	FCommitMeshDescriptionParams Params;
	Params.bMarkPackageDirty = true;
	Params.bUseHashAsGuid = false;
	return Params;
}

void BakeLods(UStaticMesh& Mesh, const FMatrix& Matrix, FTarvinTransformStats& Stats)
{
	for (int32 Lod = 0; Lod < Mesh.GetNumSourceModels(); ++Lod)
	{
		if (!Mesh.IsMeshDescriptionValid(Lod))
		{
			continue;
		}
		Mesh.ModifyMeshDescription(Lod, true);
		if (FMeshDescription* const Description = Mesh.GetMeshDescription(Lod))
		{
			FStaticMeshOperations::ApplyTransform(*Description, Matrix, true);
			Mesh.CommitMeshDescription(Lod, CommitParams());
			++Stats.NumLodsBaked;
		}
	}
}

void BakeHiRes(UStaticMesh& Mesh, const FMatrix& Matrix, FTarvinTransformStats& Stats)
{
	if (!Mesh.IsHiResMeshDescriptionValid())
	{
		return;
	}
	Mesh.ModifyHiResMeshDescription(true);
	if (FMeshDescription* const Description = Mesh.GetHiResMeshDescription())
	{
		FStaticMeshOperations::ApplyTransform(*Description, Matrix, true);
		Mesh.CommitHiResMeshDescription(CommitParams());
		Stats.bHiResBaked = true;
	}
}

void Rebuild(UStaticMesh& Mesh)
{
	const FText Text = FText::Format(
		NSLOCTEXT("TarvinTransform", "TarvinBuilding", "Tarvin: building {0}"), FText::FromString(Mesh.GetName()));
	FSlowTask SlowTask(1.0f, Text, true, *GWarn);
	SlowTask.Initialize();
	SlowTask.MakeDialogDelayed(0.5f, false, false);
	SlowTask.EnterProgressFrame(1.0f, FText());
	Mesh.Build(true, nullptr);
	Mesh.PostEditChange();
	Mesh.MarkPackageDirty();
	SlowTask.Destroy();
}
} // namespace

bool FTarvinTransformOp::BakeIntoMesh(UStaticMesh* Mesh, const FTransform& BakeTransform,
	const FTarvinTransformOptions& Options, FTarvinTransformStats& Stats)
{
	if (!Mesh)
	{
		return false;
	}
	const FVector Scale = BakeTransform.GetScale3D();
	if (HasZeroScale(Scale))
	{
		HOST_LOG(
			LogTarvinOp, Warning, TEXT("%s: zero scale (%s) -- bake cancelled"), *Mesh->GetName(), *Scale.ToString());
		return false;
	}
	if (!IsFinite(Scale) || !IsFinite(BakeTransform.GetTranslation()))
	{
		HOST_LOG(LogTarvinOp, Warning, TEXT("%s: transform is not finite -- bake cancelled"), *Mesh->GetName());
		return false;
	}
	if (!HasSourceGeometry(*Mesh))
	{
		HOST_LOG(LogTarvinOp, Warning, TEXT("%s: no source geometry to bake (neither LOD nor HiRes) -- left untouched"),
			*Mesh->GetName());
		return false;
	}
	// Sockets and collision alone must not move when the geometry cannot.
	if (!HasReadableGeometry(*Mesh))
	{
		HOST_LOG(LogTarvinOp, Warning, TEXT("%s: source geometry cannot be read -- left untouched"), *Mesh->GetName());
		return HasBakedGeometry(Stats);
	}
	const FMatrix Matrix = BakeTransform.ToMatrixWithScale();
	WarnOfUnplacedVertices(*Mesh);
	Mesh->Modify(true);
	BakeLods(*Mesh, Matrix, Stats);
	BakeHiRes(*Mesh, Matrix, Stats);
	if (Options.bBakeSockets)
	{
		TarvinCollisionBake::BakeSockets(Mesh, BakeTransform, Stats);
	}
	if (Options.bBakeCollision)
	{
		TarvinCollisionBake::BakeSimpleCollision(Mesh, BakeTransform, !Options.bRebuild, Stats);
	}
	TrackedMeshes().Add(Mesh);
	if (Options.bRebuild)
	{
		Rebuild(*Mesh);
	}
	return HasBakedGeometry(Stats);
}

void FTarvinTransformOp::BeginUndoTrackedBatch()
{
	TrackedMeshes().Reset();
}

void FTarvinTransformOp::RebuildMeshesAfterUndo()
{
	FTrackedMeshes& Tracked = TrackedMeshes();
	int32 NumRebuilt = 0;
	for (int32 Index = Tracked.Meshes.Num() - 1; Index >= 0; --Index)
	{
		if (UObject* const Mesh = Tracked.Meshes[Index].Get())
		{
			Mesh->PostEditChange();
			++NumRebuilt;
		}
		else
		{
			Tracked.RemoveAtSwap(Index);
		}
	}
	if (NumRebuilt >= 1)
	{
		HOST_LOG(LogTarvinOp, Log, TEXT("Undo/redo: rebuilt %d mesh(es)"), NumRebuilt);
	}
}
