// SPDX-License-Identifier: MIT
#include "EditorDocument.h"

#include "Core/Log.h"
#include "CoreUObject/GarbageCollector.h"
#include "CoreUObject/ObjectIterator.h"
#include "CoreUObject/Package.h"
#include "Editor/EditorEngine.h"
#include "Editor/TransBuffer.h"
#include "Engine/InstancedStaticMeshComponent.h"
#include "SceneIO/SceneWriter.h"
#include "SlateQt/QtPrelude.h"

#include <QTimer>
#include <filesystem>

DEFINE_LOG_CATEGORY_STATIC(LogDocument, Log, All)

namespace
{
/// Gives instanced components their instances, which are in the file's geometry, so that they can be shown.
void ShowInstances(const FScene& Scene)
{
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		UInstancedStaticMeshComponent* const Component =
			Cast<UInstancedStaticMeshComponent>(Scene.Node(Node).Component.Get());
		if (!Component)
		{
			continue;
		}
		const TSceneResult<std::vector<FTransform>> Instances = ReadSceneInstances(Scene.Document(), Node);
		if (!Instances)
		{
			HOST_LOG(LogDocument, Warning, TEXT("The instances of '%s' are not shown: %s"), *Scene.NodeName(Node),
				*FString::FromUtf8(Instances.Error().Message));
			continue;
		}
		for (const FTransform& Instance : *Instances)
		{
			Component->AddInstance(Instance);
		}
	}
}

UTransBuffer& History()
{
	return *CastChecked<UTransBuffer>(GEditor->Trans.Get());
}

std::string Absolute(const std::string& Path)
{
	std::error_code Error;
	const std::filesystem::path Result = std::filesystem::absolute(Path, Error);
	return Error ? Path : Result.lexically_normal().string();
}
} // namespace

FEditorDocument::FEditorDocument()
{
	Listen();
	SavedState = History().GetStateId();
}

FEditorDocument::~FEditorDocument()
{
	if (GEditor)
	{
		History().OnChanged().Remove(HistoryHandle);
		GEditor->GetSelectedActors()->OnChanged().Remove(SelectionHandle);
	}
	Protection.reset();
}

void FEditorDocument::Listen()
{
	HistoryHandle = History().OnChanged().AddLambda(
		[this]
		{
			ProtectSoon();
			Changed.Broadcast();
		});
	SelectionHandle = GEditor->GetSelectedActors()->OnChanged().AddLambda([this] { ProtectSoon(); });
}

void FEditorDocument::ProtectSoon()
{
	if (bProtectionIsStale)
	{
		return;
	}
	bProtectionIsStale = true;
	QTimer::singleShot(0,
		[this, Watch = std::weak_ptr<int>(Alive)]
		{
			if (!Watch.expired())
			{
				UpdateProtection();
			}
		});
}

void FEditorDocument::UpdateProtection()
{
	if (bProtectionIsStale && Protection)
	{
		Protection->Update();
	}
	bProtectionIsStale = false;
}

std::string FEditorDocument::WhyLeftAlone(const AActor* Actor) const
{
	return Protection ? Protection->ReasonFor(Actor) : std::string();
}

FSceneStatus FEditorDocument::Open(const std::string& InPath)
{
	UWorld* const World = UWorld::Create(EWorldType::Editor);
	TSceneResult<std::unique_ptr<FScene>> Loaded = FScene::Load(InPath, World);
	if (!Loaded)
	{
		World->Destroy();
		CollectGarbage();
		return Loaded.Error();
	}
	GEditor->EndPlaySession();
	GEditor->SelectNone();
	Protection.reset();
	History().Reset();
	UWorld* const Old = GEditor->GetEditorWorldContext().World();
	GEditor->GetEditorWorldContext().SetCurrentWorld(World);
	Scene = Loaded.Take();
	ShowInstances(*Scene);
	Old->Destroy();
	Protection = std::make_unique<FSceneProtection>(*Scene);
	Path = Absolute(InPath);
	MarkSaved();
	CollectGarbage();
	GEditor->UpdatePivotLocationForSelection();
	Opened.Broadcast();
	Changed.Broadcast();
	GEditor->RedrawLevelEditingViewports(true);
	return {};
}

FSceneStatus FEditorDocument::Save(const std::string& InPath)
{
	if (!Scene)
	{
		return FSceneError{"There is no scene to save."};
	}
	const TSceneResult<FSaveReport> Saved = SaveScene(*Scene, InPath);
	if (!Saved)
	{
		return Saved.Error();
	}
	Path = Absolute(InPath);
	MarkSaved();
	Changed.Broadcast();
	return {};
}

void FEditorDocument::MarkSaved()
{
	SavedState = History().GetStateId();
	const FString Prefix = Scene->GetPackageFolder() + TEXT("/");
	for (UPackage* Package : GetObjectsOf<UPackage>())
	{
		if (Package->IsDirty() && Package->GetName().StartsWith(*Prefix))
		{
			Package->SetDirtyFlag(false);
		}
	}
}

bool FEditorDocument::IsDirty() const
{
	return History().GetStateId() != SavedState;
}

std::string FEditorDocument::GetFileName() const
{
	return std::filesystem::path(Path).filename().string();
}
