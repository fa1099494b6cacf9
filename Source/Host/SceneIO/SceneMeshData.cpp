// SPDX-License-Identifier: MIT
#include "SceneIO/SceneMeshData.h"

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

void FSceneMeshData::ReadAhead() const
{
	if (FSceneMeshSource::CanOpen(*Document, Mesh))
	{
		(void)OpenSource(); // what fails here fails again where it is reported
	}
}

TSceneResult<std::shared_ptr<const FSceneMeshSource>> FSceneMeshData::OpenSource() const
{
	if (!Source)
	{
		TSceneResult<std::shared_ptr<const FSceneMeshSource>> Opened = FSceneMeshSource::Open(Document, Mesh, Layout);
		if (!Opened)
		{
			return Opened;
		}
		Source = Opened.Take();
	}
	return Source;
}

TSceneResult<TSharedPtr<FMeshDescription>> FSceneMeshData::TryDecode() const
{
	if (FSceneMeshSource::CanOpen(*Document, Mesh))
	{
		TSceneResult<std::shared_ptr<const FSceneMeshSource>> Opened = OpenSource();
		return Opened ? TSceneResult<TSharedPtr<FMeshDescription>>(MakeShared<FMeshDescription>(Opened.Take()))
					  : Opened.Error();
	}
	TSharedPtr<FMeshDescription> Description = MakeShared<FMeshDescription>();
	if (FSceneStatus Status = DecodeMesh(Document, Mesh, Layout, *Description); !Status)
	{
		return Status.Error();
	}
	return Description;
}

bool FSceneMeshData::IsSourceOf(const FMeshDescription& Description) const
{
	const std::shared_ptr<const FDeferredMesh>& Deferred = Description.GetDeferred();
	return Deferred ? Deferred->Source == Source : int64(Description.GetVertexPositions().size()) == Layout.NumSlots;
}
