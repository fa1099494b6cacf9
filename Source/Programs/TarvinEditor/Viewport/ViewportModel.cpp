// SPDX-License-Identifier: MIT
#include "ViewportModel.h"

#include "Editor/EditorEngine.h"
#include "Engine/Actor.h"

#include <algorithm>
#include <limits>
#include <numbers>
#include <utility>

namespace
{
constexpr double Pi = std::numbers::pi;
/// The first look: at the front of things, which is their -X side, from above and a little to one side.
constexpr double FirstYaw = Pi * 0.2;
constexpr double FirstPitch = -Pi * 0.14;
/// What is framed of something without size in an empty scene: two metres.
constexpr double TwoMetres = 256.0;

bool IsTransactionOpen()
{
	return GEditor && GEditor->Trans && GEditor->Trans->IsActive();
}
}

FViewportModel::FViewportModel(std::function<void()> InOnChange)
	: OnChange(std::move(InOnChange))
	, Events(
		  [this](EViewportChange Change)
		  {
			  (Change == EViewportChange::Scene ? bSceneChanged : bSelectionChanged) = true;
			  OnChange();
		  })
{
	Camera.LookAt(FVector::ZeroVector, TwoMetres * 5.0, FirstYaw, FirstPitch);
}

UWorld* FViewportModel::GetShownWorld()
{
	if (!GEditor)
	{
		return nullptr;
	}
	return IsValid(GEditor->PlayWorld) ? GEditor->PlayWorld.Get() : GEditor->GetEditorWorldContext().World();
}

bool FViewportModel::FindPivot(FVector& OutPivot)
{
	if (!GEditor || GEditor->PlayWorld || GEditor->GetSelectedActors()->GetSelectedObjects().IsEmpty())
	{
		return false;
	}
	OutPivot = GEditor->GetPivotLocation();
	return true;
}

void FViewportModel::CollectIfChanged()
{
	bSceneChanged |= Events.FollowEditor();
	if (bSceneChanged)
	{
		Scene.Collect(GetShownWorld());
		bSelectionChanged = true;
	}
	else
	{
		// Whoever edits a mesh need not tell.
		Scene.RefreshMeshes();
	}
	if (bSelectionChanged)
	{
		Scene.UpdateSelection(GEditor ? GEditor->GetSelectedActors() : nullptr);
	}
	bSceneChanged = false;
	bSelectionChanged = false;
}

bool FViewportModel::Update(double Milliseconds)
{
	if (IsTransactionOpen())
	{
		return false;
	}
	CollectIfChanged();
	const bool bPrepared = Scene.IsPrepared() || Scene.Prepare(Milliseconds);
	if (bFrameAll)
	{
		Camera.Frame(Scene.GetBounds(), SmallestFrame());
		bFrameAll = !bPrepared;
	}
	return bPrepared;
}

void FViewportModel::UpdateForPicking()
{
	// A place in the world may have changed without a word, and a click is rare.
	bSceneChanged = true;
	if (!IsTransactionOpen())
	{
		CollectIfChanged();
	}
}

void FViewportModel::SetWorldChanged()
{
	bSceneChanged = true;
	bFrameAll = true;
	Camera.LookAt(Camera.GetTarget(), Camera.GetDistance(), FirstYaw, FirstPitch);
	OnChange();
}

void FViewportModel::FrameAll()
{
	bFrameAll = true;
	OnChange();
}

void FViewportModel::FrameSelection()
{
	UpdateForPicking();
	const FBox Bounds = Scene.GetSelectionBounds();
	if (!Bounds.IsValid)
	{
		FrameAll();
		return;
	}
	Camera.Frame(Bounds, SmallestFrame());
	ChangeView();
}

/// Something without size is shown with some of what is around it.
double FViewportModel::SmallestFrame() const
{
	const FBox& Bounds = Scene.GetBounds();
	const double Share = Bounds.IsValid ? Bounds.GetSize().GetMax() * 0.05 : 0.0;
	return Share > 0.0 ? Share : TwoMetres;
}

void FViewportModel::ChangeView()
{
	bFrameAll = false;
	OnChange();
}

void FViewportModel::Orbit(double DeltaX, double DeltaY)
{
	Camera.Orbit(DeltaX, DeltaY);
	ChangeView();
}

void FViewportModel::Pan(double DeltaX, double DeltaY)
{
	Camera.Pan(DeltaX, DeltaY);
	ChangeView();
}

void FViewportModel::Zoom(double Factor, const FViewportPoint& Cursor)
{
	Camera.Zoom(Factor, Cursor);
	ChangeView();
}

AActor* FViewportModel::ActorAt(const FViewportPoint& Point)
{
	if (!GEditor || GEditor->PlayWorld)
	{
		return nullptr;
	}
	UpdateForPicking();
	const FViewportHit Hit = PickNearest(Scene, Camera.GetRay(Point));
	return Hit.IsHit() ? Scene.GetActors()[std::size_t(Scene.GetItems()[std::size_t(Hit.Item)].Actor)].Actor.Get()
					   : nullptr;
}

void FViewportModel::SelectAt(const FViewportPoint& Point, ESelectHow How)
{
	if (AActor* const Actor = ActorAt(Point))
	{
		Select({Actor}, How);
	}
	else
	{
		Select({}, How);
	}
}

void FViewportModel::SelectInRectangle(const FViewportRectangle& Rectangle, ESelectHow How)
{
	if (!GEditor || GEditor->PlayWorld)
	{
		return;
	}
	UpdateForPicking();
	std::vector<AActor*> Actors;
	for (const int32 Index : PickInRectangle(Scene, Camera, Rectangle))
	{
		if (AActor* const Actor = Scene.GetActors()[std::size_t(Index)].Actor.Get())
		{
			Actors.push_back(Actor);
		}
	}
	Select(Actors, How);
}

void FViewportModel::Select(const std::vector<AActor*>& Actors, ESelectHow How)
{
	// What is selected is that of the edited world; what shows during a session is its copy.
	if (!GEditor || GEditor->PlayWorld || (Actors.empty() && How != ESelectHow::Replace))
	{
		return;
	}
	USelection& Selection = *GEditor->GetSelectedActors();
	const bool bSame =
		How == ESelectHow::Replace && Selection.Num() == int32(Actors.size()) &&
		std::all_of(Actors.begin(), Actors.end(), [&](const AActor* Actor) { return Selection.IsSelected(Actor); });
	if (bSame)
	{
		return;
	}
	if (How == ESelectHow::Replace)
	{
		GEditor->SelectNone();
	}
	for (AActor* Actor : Actors)
	{
		GEditor->SelectActor(Actor, How != ESelectHow::Toggle || !Selection.IsSelected(Actor));
	}
	GEditor->UpdatePivotLocationForSelection();
	GEditor->RedrawLevelEditingViewports();
}
