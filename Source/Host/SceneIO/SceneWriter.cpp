// SPDX-License-Identifier: MIT
#include "SceneIO/SceneWriter.h"

#include "Engine/BodySetup.h"
#include "Engine/StaticMeshComponent.h"
#include "Engine/StaticMeshSocket.h"
#include "SceneIO/SceneExtensions.h"
#include "SceneIO/SceneMeshData.h"
#include "SceneIO/SceneSpace.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace
{
/// Differences below this, as a share of the value or of one, are rounding.
constexpr double RoundingTolerance = 1e-12;

template <std::size_t N>
bool IsRounding(const std::array<double, N>& A, const std::array<double, N>& B)
{
	double Size = 1.0;
	double Difference = 0.0;
	for (std::size_t Index = 0; Index < N; ++Index)
	{
		Size = std::max(Size, std::abs(B[Index]));
		Difference = std::max(Difference, std::abs(A[Index] - B[Index]));
	}
	return Difference <= RoundingTolerance * Size;
}

/// `Value`, or whichever of the others it equals but for rounding.
template <std::size_t N>
std::array<double, N> Settled(
	const std::array<double, N>& Value, const std::array<double, N>& Own, const std::array<double, N>& Plain)
{
	return IsRounding(Value, Own) ? Own : IsRounding(Value, Plain) ? Plain : Value;
}

/// The change of one scene, in the making.
class FScenePatchMaker
{
public:
	explicit FScenePatchMaker(const FScene& InScene)
		: Scene(InScene)
		, Document(*InScene.Document())
		, Patch(InScene.Document())
	{
	}

	TSceneResult<FGltfPatch> Run()
	{
		for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
		{
			const FSceneNode& Entry = Scene.Node(Node);
			if (!IsValid(Entry.Actor))
			{
				continue;
			}
			PatchTransform(Node, Entry.Component->GetRelativeTransform());
			for (const FGltfIndex Level : Entry.LodNodes)
			{
				PatchTransform(Level, Entry.Component->GetRelativeTransform());
			}
			if (FSceneStatus Status = PatchMesh(Node, Entry); !Status)
			{
				return Status.Error();
			}
		}
		return std::move(Patch);
	}

private:
	void PatchTransform(FGltfIndex Node, const FTransform& Relative)
	{
		const FSceneNode& Entry = Scene.Node(Node);
		if (Relative == Entry.LoadedRelative)
		{
			return;
		}
		// A node given by a matrix has no numbers of its own to keep; what was taken from the matrix stands for them.
		const FTransform& Loaded = Entry.LoadedRelative;
		const auto Translation = Settled(SceneSpace::PointToFile(Relative.GetTranslation()),
			SceneSpace::PointToFile(Loaded.GetTranslation()), std::array<double, 3>{0, 0, 0});
		const auto Rotation = Settled(SameSide(SceneSpace::RotationToFile(Relative.GetRotation()), Loaded),
			SceneSpace::RotationToFile(Loaded.GetRotation()), std::array<double, 4>{0, 0, 0, 1});
		const auto Scale = Settled(SceneSpace::ScaleToFile(Relative.GetScale3D()),
			SceneSpace::ScaleToFile(Loaded.GetScale3D()), std::array<double, 3>{1, 1, 1});
		const bool bSame = IsRounding(Translation, SceneSpace::PointToFile(Loaded.GetTranslation())) &&
						   IsRounding(Rotation, SceneSpace::RotationToFile(Loaded.GetRotation())) &&
						   IsRounding(Scale, SceneSpace::ScaleToFile(Loaded.GetScale3D()));
		if (!bSame)
		{
			const FGltfNode& Own = Document.Node(Node);
			Patch.SetNodeTransform(Node, OwnNumbers(Translation, Own.Translation, Own.bHasMatrix),
				OwnNumbers(Rotation, Own.Rotation, Own.bHasMatrix), OwnNumbers(Scale, Own.Scale, Own.bHasMatrix));
		}
	}

	/// The quaternion or its negation, whichever is nearer to the one that was read, or else to the identity.
	static std::array<double, 4> SameSide(std::array<double, 4> Rotation, const FTransform& Loaded)
	{
		const std::array<double, 4> Own = SceneSpace::RotationToFile(Loaded.GetRotation());
		double Dot = 0.0;
		for (std::size_t Index = 0; Index < 4; ++Index)
		{
			Dot += Rotation[Index] * Own[Index];
		}
		const bool bNegate = std::abs(Rotation[3]) > 1.0 - RoundingTolerance ? Rotation[3] < 0.0 : Dot < 0.0;
		for (double& Component : Rotation)
		{
			Component = bNegate ? -Component : Component;
		}
		return Rotation;
	}

	/// The file's own numbers where the value is theirs: reading has normalised quaternions.
	template <std::size_t N>
	static std::array<double, N> OwnNumbers(
		const std::array<double, N>& Value, const std::array<double, N>& Own, bool bHasMatrix)
	{
		return !bHasMatrix && IsRounding(Value, Own) ? Own : Value;
	}

	FSceneStatus PatchMesh(FGltfIndex Node, const FSceneNode& Entry)
	{
		const UStaticMeshComponent* const Component = Cast<UStaticMeshComponent>(Entry.Component.Get());
		UStaticMesh* const Asset = Component ? Component->GetStaticMesh() : nullptr;
		if (!Asset || Entry.LevelOf != NoIndex)
		{
			return {};
		}
		const FGltfIndex Mesh = Document.Node(Node).Mesh;
		auto Known = MeshesOf.find(Asset);
		if (Known == MeshesOf.end())
		{
			TSceneResult<std::vector<FGltfIndex>> Written = WriteAsset(Mesh, *Asset);
			if (!Written)
			{
				return Written.Error();
			}
			Known = MeshesOf.emplace(Asset, Written.Take()).first;
		}
		const std::vector<FGltfIndex>& Levels = Known->second;
		if (Levels.front() != Mesh)
		{
			Patch.SetNodeMesh(Node, Levels.front());
		}
		for (int32 Level = 0; Level < Entry.LodNodes.Num(); ++Level)
		{
			const FGltfIndex LevelNode = Entry.LodNodes[Level];
			const FGltfIndex LevelMesh = Levels[std::size_t(Level) + 1];
			if (Document.Node(LevelNode).Mesh != LevelMesh)
			{
				Patch.SetNodeMesh(LevelNode, LevelMesh);
			}
		}
		return {};
	}

	/// Writes the asset's levels, finest first, and returns the meshes that they are in the patched document.
	TSceneResult<std::vector<FGltfIndex>> WriteAsset(FGltfIndex Mesh, const UStaticMesh& Asset)
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

	static std::string CopyName(const UStaticMesh& Asset, int32 Lod)
	{
		const std::string Name = Asset.GetName().ToUtf8();
		return Lod == 0 ? Name : Name + "_LOD" + std::to_string(Lod);
	}

	FGltfIndex Apply(FGltfIndex Source, bool bCopy, std::string Name, FGltfMeshChange Change)
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
	TSceneResult<FGltfMeshChange> MakeChange(FGltfIndex Source, const FStaticMeshSourceModel& Model)
	{
		const TSharedPtr<const FSceneMeshData>& Data = Scene.MeshData(Source);
		if (Model.GetBulkData().Get() == Data.Get())
		{
			return FGltfMeshChange();
		}
		TSceneResult<TSharedPtr<FMeshDescription>> Original = Data->TryDecode();
		if (!Original)
		{
			return Original.Error();
		}
		const FMeshDescription* const Edited = Model.Read();
		check(Edited);
		return Data->MakeChange(**Original, *Edited);
	}

	/// Adds what the project's own extension of the mesh must say: sockets and collision, and another mesh for a
	/// changed HiRes source.
	FSceneStatus AddExtension(FGltfIndex Mesh, const UStaticMesh& Asset, FGltfIndex HiRes, FGltfMeshChange& Change)
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

	const FScene& Scene;
	const FGltfDocument& Document;
	FGltfPatch Patch;
	std::map<const UStaticMesh*, std::vector<FGltfIndex>> MeshesOf;
};
} // namespace

TSceneResult<FGltfPatch> MakeScenePatch(const FScene& Scene)
{
	return FScenePatchMaker(Scene).Run();
}

TSceneResult<FSaveReport> SaveScene(const FScene& Scene, const std::string& Path)
{
	TSceneResult<FGltfPatch> Patch = MakeScenePatch(Scene);
	if (!Patch)
	{
		return Patch.Error();
	}
	return SaveGltf(*Patch, Path);
}
