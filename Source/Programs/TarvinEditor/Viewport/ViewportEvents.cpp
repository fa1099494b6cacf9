// SPDX-License-Identifier: MIT
#include "ViewportEvents.h"

#include "Editor/EditorEngine.h"
#include "Engine/StaticMesh.h"

#include <utility>

FViewportEvents::FViewportEvents(std::function<void(EViewportChange)> InOnChange)
	: OnChange(std::move(InOnChange))
{
	ActorList = UWorld::OnActorListChanged().AddLambda([this](UWorld*) { OnChange(EViewportChange::Scene); });
	MeshEdited = UStaticMesh::OnMeshEdited().AddLambda([this](UStaticMesh*) { OnChange(EViewportChange::Scene); });
	FollowEditor();
}

FViewportEvents::~FViewportEvents()
{
	LeaveEditor();
	UStaticMesh::OnMeshEdited().Remove(MeshEdited);
	UWorld::OnActorListChanged().Remove(ActorList);
}

bool FViewportEvents::FollowEditor()
{
	if (Editor.Get() == GEditor && (GEditor || Editor.GetHandle() == FObjectHandle()))
	{
		return false;
	}
	LeaveEditor();
	Editor = GEditor;
	if (GEditor)
	{
		Selection = GEditor->GetSelectedActors();
		Redraw = GEditor->OnRedraw().AddLambda([this](bool) { OnChange(EViewportChange::Scene); });
		PlaySession = GEditor->OnPlaySession().AddLambda([this](bool) { OnChange(EViewportChange::Scene); });
		SelectionChanged = Selection->OnChanged().AddLambda([this] { OnChange(EViewportChange::Selection); });
	}
	return true;
}

void FViewportEvents::LeaveEditor()
{
	// Tracked pointers: an engine that was destroyed, and not collected yet, still has its events.
	if (Editor)
	{
		Editor->OnRedraw().Remove(Redraw);
		Editor->OnPlaySession().Remove(PlaySession);
	}
	if (Selection)
	{
		Selection->OnChanged().Remove(SelectionChanged);
	}
	Editor = nullptr;
	Selection = nullptr;
}
