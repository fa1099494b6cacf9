// SPDX-License-Identifier: MIT
#include "SceneIO/Scene.h"

#include "Core/Map.h"
#include "CoreUObject/ObjectIterator.h"
#include "CoreUObject/Package.h"
#include "Engine/InstancedStaticMeshComponent.h"
#include "SceneIO/NodeReferences.h"
#include "SceneIO/SceneActor.h"
#include "SceneIO/SceneExtensions.h"
#include "SceneIO/SceneMeshData.h"
#include "SceneIO/SceneParts.h"
#include "SceneIO/SceneSpace.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace
{
constexpr const TCHAR* SceneRoot = TEXT("/Scene");

/// A name without what would make a path of it.
FString PlainName(const std::string& Name)
{
	return FString::FromUtf8(Name).Replace(TEXT("/"), TEXT("_"));
}

FString Stem(const std::string& FileName)
{
	const std::size_t Dot = FileName.find_last_of('.');
	return PlainName(Dot == std::string::npos || Dot == 0 ? FileName : FileName.substr(0, Dot));
}

bool HasPackages(const FString& Folder)
{
	const FString Prefix = Folder + TEXT("/");
	return std::ranges::any_of(
		GetObjectsOf<UPackage>(), [&](const UPackage* Package) { return Package->GetName().StartsWith(*Prefix); });
}

/// A folder in which no package lives: a file may be read again while it is still open.
FString FreeFolder(const FString& Wanted)
{
	FString Folder = Wanted;
	for (int32 Number = 2; HasPackages(Folder); ++Number)
	{
		Folder = FString::Printf(TEXT("%s_%d"), *Wanted, Number);
	}
	return Folder;
}
} // namespace

TSceneResult<std::unique_ptr<FScene>> FScene::Load(const std::string& Path, UWorld* World)
{
	TSceneResult<std::shared_ptr<const FGltfDocument>> Document = FGltfDocument::Load(Path);
	if (!Document)
	{
		return Document.Error();
	}
	std::unique_ptr<FScene> Scene(new FScene());
	Scene->Source = Document.Take();
	Scene->World = World;
	static int32 LastId = 0;
	Scene->Id = ++LastId;
	Scene->PackageFolder = FreeFolder(FString(SceneRoot) / Stem(Scene->Source->Place().Name));
	const std::size_t NumMeshes = Scene->Source->Model().Meshes.size();
	for (std::size_t Mesh = 0; Mesh < NumMeshes; ++Mesh)
	{
		Scene->Data.push_back(MakeShared<FSceneMeshData>(Scene->Source, FGltfIndex(Mesh)));
	}
	if (FSceneStatus Status = Scene->MakeAssets(); !Status)
	{
		return Status.Error();
	}
	if (FSceneStatus Status = Scene->MakeActors(); !Status)
	{
		return Status.Error();
	}
	Scene->MakeTrueMatrices();
	return Scene;
}

FScene::~FScene()
{
	// Copies go with what they were copied from.
	for (AActor* Actor : World ? World->GetActors() : TArray<AActor*>())
	{
		if (SourceOf(Actor) != NoIndex)
		{
			for (UActorComponent* Component : Actor->GetComponents())
			{
				Component->MarkAsGarbage();
			}
			Actor->MarkAsGarbage();
		}
	}
	const FString Prefix = PackageFolder + TEXT("/");
	for (UPackage* Package : GetObjectsOf<UPackage>())
	{
		if (!Package->GetName().StartsWith(*Prefix))
		{
			continue;
		}
		for (const TObjectPtr<UObject>& Asset : Package->GetAssets())
		{
			if (Asset)
			{
				Asset->MarkAsGarbage();
			}
		}
		Package->MarkAsGarbage();
	}
}

FGltfIndex FScene::NodeOf(const AActor* Actor) const
{
	const FGltfIndex Index = SourceOf(Actor);
	return Index != NoIndex && Node(Index).Actor == Actor ? Index : NoIndex;
}

FGltfIndex FScene::SourceOf(const AActor* Actor) const
{
	const ASceneActor* const SceneActor = Cast<ASceneActor>(Actor);
	return SceneActor && SceneActor->SceneId == Id ? SceneActor->SourceNode : NoIndex;
}

FString FScene::NodeName(FGltfIndex Index) const
{
	const std::string& Name = Source->Node(Index).Name;
	return Name.empty() ? FString::Printf(TEXT("node %d"), Index) : FString::FromUtf8(Name);
}

FSceneStatus FScene::MakeAssets()
{
	const FGltfDocument& Document = *Source;
	const FGltfIndex NumMeshes = FGltfIndex(Document.Model().Meshes.size());
	std::set<FString> Names;
	MeshesOfAssets.resize(std::size_t(NumMeshes));
	for (FGltfIndex Mesh = 0; Mesh < NumMeshes; ++Mesh)
	{
		FString Base = PlainName(Document.Mesh(Mesh).Name);
		Base = Base.IsEmpty() ? FString::Printf(TEXT("mesh %d"), Mesh) : Base;
		FString Name = Base;
		for (int32 Number = 2; !Names.insert(Name).second; ++Number)
		{
			Name = FString::Printf(TEXT("%s_%d"), *Base, Number);
		}
		UPackage* const Package = CreatePackage(PackageFolder / Name);
		UStaticMesh* const Asset = NewObject<UStaticMesh>(Package, FName(Name));
		Package->AddAsset(Asset);
		MeshAssets.push_back(Asset);

		FAssetMeshes& Meshes = MeshesOfAssets[std::size_t(Mesh)];
		Meshes.Lods.Add(Mesh);
		Asset->SetNumSourceModels(1);
		Asset->GetSourceModel(0).SetBulkData(MeshData(Mesh));
		TSceneResult<FGltfIndex> HiRes = SceneExtensions::ReadHiRes(Document, Mesh);
		if (!HiRes)
		{
			return HiRes.Error();
		}
		Meshes.HiRes = *HiRes;
		if (Meshes.HiRes != NoIndex)
		{
			Asset->GetHiResSourceModel().SetBulkData(MeshData(Meshes.HiRes));
		}
		if (FSceneStatus Status = SceneExtensions::ReadStaticMesh(Document, Mesh, *Asset); !Status)
		{
			return Status;
		}
		for (std::size_t Primitive = 0; Primitive < Document.Mesh(Mesh).Primitives.size(); ++Primitive)
		{
			const FGltfIndex Material = Document.Mesh(Mesh).Primitives[Primitive].Material;
			const FString Slot = FString::Printf(TEXT("primitive %d"), int32(Primitive));
			const std::string MaterialName =
				Material == NoIndex ? "" : Document.Model().Materials[std::size_t(Material)].Name;
			Asset->StaticMaterials.Add({FName(Slot), FName(FString::FromUtf8(MaterialName))});
		}
	}
	return {};
}

namespace
{
UClass* ComponentClass(const FGltfNode& Node)
{
	if (Node.Mesh == NoIndex)
	{
		return USceneComponent::StaticClass();
	}
	return Node.Extensions && Node.Extensions->bInstanced ? UInstancedStaticMeshComponent::StaticClass()
														  : UStaticMeshComponent::StaticClass();
}
} // namespace

FSceneStatus FScene::MakeActors()
{
	const std::size_t NumNodes = Source->Model().Nodes.size();
	Nodes.resize(NumNodes);
	const std::vector<bool> bBlank = FindBlankNodes(*Source);
	for (std::size_t Index = 0; Index < NumNodes; ++Index)
	{
		const FGltfNode& Node = Source->Model().Nodes[Index];
		FSceneNode& Entry = Nodes[Index];
		if (bBlank[Index])
		{
			continue;
		}
		TSceneResult<EComponentCreationMethod> Method = SceneExtensions::ReadCreationMethod(*Source, FGltfIndex(Index));
		if (!Method)
		{
			return Method.Error();
		}
		ASceneActor* const Actor = World->SpawnActor<ASceneActor>();
		Actor->SceneId = Id;
		Actor->SourceNode = FGltfIndex(Index);
		Actor->SetActorLabel(NodeName(FGltfIndex(Index)));
		Entry.Actor = Actor;
		Entry.bHadActor = true;
		Entry.Component =
			CastChecked<USceneComponent>(Actor->AddComponentOfClass(ComponentClass(Node), NAME_None, *Method));
		if (UStaticMeshComponent* const MeshComponent = Cast<UStaticMeshComponent>(Entry.Component.Get()))
		{
			MeshComponent->SetStaticMesh(MeshAssets[std::size_t(Node.Mesh)]);
		}
		if (SceneParts::HasParts(*Source, FGltfIndex(Index)))
		{
			Actor->AddComponent<UScenePartComponent>();
		}
		PlaceNode(Node, Entry);
		Entry.Component->SetRelativeTransform(Entry.LoadedRelative);
	}
	AttachChildren();
	MakeLevels();
	return {};
}

void FScene::PlaceNode(const FGltfNode& Node, FSceneNode& Entry)
{
	if (Node.bHasMatrix)
	{
		Entry.TrueLocal = SceneSpace::MatrixToHost(Node.Matrix);
		const FMatrixParts Parts = DecomposeMatrix(Entry.TrueLocal);
		Entry.LoadedRelative = Parts.Transform;
		Entry.LocalShear = Parts.Shear;
		return;
	}
	const FQuat Rotation = SceneSpace::RotationToHost(Node.Rotation);
	// Viewers turn by the quaternion as it is written; one that is off by rounding turns as its direction does. What it
	// is off by, places are off by twice as a share of their size.
	Entry.bUnitRotation = std::abs(std::sqrt(Rotation.SizeSquared()) - 1.0) <= 5e-7;
	Entry.LoadedRelative = FTransform(
		Rotation.GetNormalized(), SceneSpace::PointToHost(Node.Translation), SceneSpace::ScaleToHost(Node.Scale));
	Entry.TrueLocal = Entry.LoadedRelative.ToMatrixWithScale();
}

void FScene::AttachChildren()
{
	// Parents first, so that every attachment derives one world transform only.
	std::vector<FGltfIndex> Pending;
	for (FGltfIndex Index = 0; Index < NumNodes(); ++Index)
	{
		if (Source->Node(Index).Parent == NoIndex)
		{
			Pending.push_back(Index);
		}
	}
	while (!Pending.empty())
	{
		const FGltfIndex Parent = Pending.back();
		Pending.pop_back();
		for (const FGltfIndex Child : Source->Node(Parent).Children)
		{
			Node(Child).Component->AttachToComponent(Node(Parent).Component, EAttachmentRule::KeepRelative);
			Pending.push_back(Child);
		}
	}
}

void FScene::MakeTrueMatrices()
{
	std::vector<FGltfIndex> Pending;
	for (FGltfIndex Index = 0; Index < NumNodes(); ++Index)
	{
		if (Source->Node(Index).Parent == NoIndex)
		{
			Nodes[std::size_t(Index)].TrueWorld = Node(Index).TrueLocal;
			Pending.push_back(Index);
		}
	}
	while (!Pending.empty())
	{
		const FGltfIndex Parent = Pending.back();
		Pending.pop_back();
		for (const FGltfIndex Child : Source->Node(Parent).Children)
		{
			Nodes[std::size_t(Child)].TrueWorld = Node(Child).TrueLocal * Node(Parent).TrueWorld;
			Pending.push_back(Child);
		}
	}
}

TSceneResult<std::vector<FTransform>> ReadSceneInstances(
	const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Index)
{
	std::vector<FTransform> Instances;
	const FGltfNode& Instanced = Document->Node(Index);
	if (!Instanced.Extensions || !Instanced.Extensions->bInstanced)
	{
		return Instances;
	}
	for (const FGltfAttribute& Attribute : Instanced.Extensions->Instances)
	{
		TSceneResult<FElementView> View = ViewElements(Document, Attribute.Accessor);
		if (!View)
		{
			return View.Error();
		}
		Instances.resize(View->Count);
		const std::size_t NumComponents = ComponentCount(View->Type);
		std::vector<double> Values(View->Count * NumComponents);
		ReadComponents(*View, 0, std::span<double>(Values));
		for (std::size_t Instance = 0; Instance < Instances.size(); ++Instance)
		{
			const double* const V = &Values[Instance * NumComponents];
			if (Attribute.Semantic == "TRANSLATION" && NumComponents == 3)
			{
				Instances[Instance].SetTranslation(SceneSpace::PointToHost({V[0], V[1], V[2]}));
			}
			else if (Attribute.Semantic == "ROTATION" && NumComponents == 4)
			{
				Instances[Instance].SetRotation(SceneSpace::RotationToHost({V[0], V[1], V[2], V[3]}).GetNormalized());
			}
			else if (Attribute.Semantic == "SCALE" && NumComponents == 3)
			{
				Instances[Instance].SetScale3D(SceneSpace::ScaleToHost({V[0], V[1], V[2]}));
			}
		}
	}
	return Instances;
}
