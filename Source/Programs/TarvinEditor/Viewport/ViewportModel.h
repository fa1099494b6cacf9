// SPDX-License-Identifier: MIT
#pragma once

#include "ViewportCamera.h"
#include "ViewportEvents.h"
#include "ViewportPicker.h"
#include "ViewportScene.h"

#include <functional>

/// How a click or a rectangle goes together with what is selected already.
enum class ESelectHow : uint8
{
	Replace,
	Add,
	Toggle,
};

/// What a viewport shows, without the showing: the scene, kept true to the editor, the camera, and what can be asked
/// of and done to both. Places in the picture are in pixels of the widget.
class FViewportModel
{
public:
	/// `InOnChange` is told whenever another picture is due, as often as there is a reason.
	explicit FViewportModel(std::function<void()> InOnChange);

	FViewportCamera& GetCamera() { return Camera; }
	const FViewportCamera& GetCamera() const { return Camera; }
	const FViewportScene& GetScene() const { return Scene; }

	/// The world that is shown: that of the running play session, else the edited one; may be none.
	static UWorld* GetShownWorld();

	/// Where the pivot of the selection is shown; false for nowhere, while nothing is selected or a session is played.
	static bool FindPivot(FVector& OutPivot);

	/// Brings the scene up to date, and prepares meshes for at most so long. Returns false where more is to come: the
	/// next picture should follow this one. While a transaction is open nothing is looked at, since it is half done.
	bool Update(double Milliseconds);

	/// The same at once, as far as meshes have appeared: for asking what is where.
	void UpdateForPicking();

	/// Another scene was opened: everything is framed as soon as it can be seen.
	void SetWorldChanged();

	void FrameAll();
	/// Frames what is selected, everything where nothing is.
	void FrameSelection();

	void Orbit(double DeltaX, double DeltaY);
	void Pan(double DeltaX, double DeltaY);
	void Zoom(double Factor, const FViewportPoint& Cursor);

	/// The actor that shows at a point, or null. Of a play session's world there is none to be had.
	AActor* ActorAt(const FViewportPoint& Point);

	/// Selects as a click at that point does: the actor there, and none where there is none.
	void SelectAt(const FViewportPoint& Point, ESelectHow How);
	/// Selects as a rectangle drawn there does.
	void SelectInRectangle(const FViewportRectangle& Rectangle, ESelectHow How);

private:
	void CollectIfChanged();
	void Select(const std::vector<AActor*>& Actors, ESelectHow How);
	double SmallestFrame() const;
	void ChangeView();

	FViewportCamera Camera;
	FViewportScene Scene;
	std::function<void()> OnChange;
	FViewportEvents Events;
	bool bSceneChanged = true;
	bool bSelectionChanged = true;
	/// Everything is framed again with each picture until all meshes have appeared, or the user takes over.
	bool bFrameAll = true;
};
