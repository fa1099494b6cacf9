// SPDX-License-Identifier: MIT
#include "SceneIO/SceneMeshPatch.h"

#include "SceneIO/PrintableText.h"
#include "SceneIO/SceneExtensions.h"

namespace
{
std::string CopyName(const UStaticMesh& Asset, int32 Lod)
{
	const std::string Name = Asset.GetName().ToUtf8();
	return Lod == 0 ? Name : Name + "_LOD" + std::to_string(Lod);
}
} // namespace

FSceneMeshPatch::FSceneMeshPatch(const FScene& InScene, FGltfPatch& InPatch)
	: Scene(InScene)
	, Document(*InScene.Document())
	, Patch(InPatch)
{
	for (std::size_t Mesh = 0; Mesh < Document.Model().Meshes.size(); ++Mesh)
	{
		MeshOfLoaded.emplace(Scene.MeshAsset(FGltfIndex(Mesh)), FGltfIndex(Mesh));
	}
}

TSceneResult<std::vector<FGltfIndex>> FSceneMeshPatch::Write(const UStaticMesh& Asset, FGltfIndex Mesh)
{
	const auto Known = Written.find(&Asset);
	if (Known != Written.end())
	{
		return Known->second;
	}
	const auto Loaded = MeshOfLoaded.find(&Asset);
	const FGltfIndex Source = Loaded != MeshOfLoaded.end() ? Loaded->second : Mesh;
	if (Source == NoIndex || (Loaded == MeshOfLoaded.end() && !ComesFrom(Source, Asset)))
	{
		return FSceneError{"Cannot save \"" + PrintableText(Document.Place().Path()) + "\": the asset '" +
						   PrintableText(Asset.GetName().ToUtf8()) + "' comes from no mesh of the file."};
	}
	TSceneResult<std::vector<FGltfIndex>> Levels = WriteAs(Source, Asset);
	if (Levels)
	{
		Written.emplace(&Asset, *Levels);
	}
	return Levels;
}

/// A copy has as many levels, and as many vertices in them, whatever was baked into it.
bool FSceneMeshPatch::ComesFrom(FGltfIndex Mesh, const UStaticMesh& Asset) const
{
	const TArray<FGltfIndex>& Lods = Scene.AssetMeshes(Mesh).Lods;
	bool bSame = Asset.GetNumSourceModels() == Lods.Num();
	for (int32 Lod = 0; bSame && Lod < Lods.Num(); ++Lod)
	{
		const TSharedPtr<const FMeshBulkData>& Data = Asset.GetSourceModel(Lod).GetBulkData();
		const FSceneMeshData& Original = *Scene.MeshData(Lods[Lod]);
		const FMeshDescription* const Edited = Data.IsValid() ? Data->GetDescription() : nullptr;
		bSame = Data.Get() == &Original || (Edited && Original.IsSourceOf(*Edited));
	}
	return bSame;
}

/// Writes the asset's levels, finest first, and returns the meshes that they are in the patched document.
TSceneResult<std::vector<FGltfIndex>> FSceneMeshPatch::WriteAs(FGltfIndex Mesh, const UStaticMesh& Asset)
{
	const bool bCopy = Scene.MeshAsset(Mesh) != &Asset;
	const FScene::FAssetMeshes& Sources = Scene.AssetMeshes(Mesh);
	std::vector<FGltfIndex> Levels;
	for (int32 Lod = 0; Lod < Sources.Lods.Num(); ++Lod)
	{
		const FGltfIndex Source = Sources.Lods[Lod];
		TSceneResult<FGltfMeshChange> Change = MakeChange(Source, Asset.GetSourceModel(Lod));
		if (!Change)
		{
			return Change.Error();
		}
		if (Lod == 0)
		{
			if (FSceneStatus Status = AddExtension(Mesh, Asset, Sources.HiRes, *Change); !Status)
			{
				return Status.Error();
			}
		}
		Levels.push_back(Apply(Source, bCopy, CopyName(Asset, Lod), Change.Take()));
	}
	return Levels;
}

FGltfIndex FSceneMeshPatch::Apply(FGltfIndex Source, bool bCopy, std::string Name, FGltfMeshChange Change)
{
	if (bCopy)
	{
		return Patch.CopyMesh(Source, std::move(Name), std::move(Change));
	}
	if (!Change.Elements.empty() || !Change.Modes.empty() || !Change.Members.empty())
	{
		Patch.ChangeMesh(Source, std::move(Change));
	}
	return Source;
}

/// What the mesh of the file must become to be the present source of the level.
TSceneResult<FGltfMeshChange> FSceneMeshPatch::MakeChange(FGltfIndex Source, const FStaticMeshSourceModel& Model) const
{
	const TSharedPtr<const FSceneMeshData>& Data = Scene.MeshData(Source);
	// Nothing is left of a mesh none of whose vertices is used.
	if (Model.GetBulkData().Get() == Data.Get() || !Model.IsValid())
	{
		return FGltfMeshChange();
	}
	const FMeshDescription* const Edited = Model.Read();
	check(Edited);
	return Data->MakeChange(*Edited);
}

/// Adds what the project's own extension of the mesh must say: sockets and collision, and another mesh for a
/// changed HiRes source.
FSceneStatus FSceneMeshPatch::AddExtension(
	FGltfIndex Mesh, const UStaticMesh& Asset, FGltfIndex HiRes, FGltfMeshChange& Change)
{
	FGltfIndex NewHiRes = NoIndex;
	if (HiRes != NoIndex)
	{
		TSceneResult<FGltfMeshChange> HiResChange = MakeChange(HiRes, Asset.GetHiResSourceModel());
		if (!HiResChange)
		{
			return HiResChange.Error();
		}
		if (!HiResChange->Elements.empty())
		{
			// The old one may be shown, or serve another asset: it stays.
			NewHiRes = Patch.CopyMesh(HiRes, Asset.GetName().ToUtf8() + "_HiRes", HiResChange.Take());
		}
	}
	if (!SceneExtensions::HasStaticMesh(Document, Mesh))
	{
		return {};
	}
	const std::string Text = SceneExtensions::WriteStaticMesh(Document, Mesh, Asset, NewHiRes);
	if (!Text.empty())
	{
		Change.Members["extensions"] = Text;
	}
	return {};
}
