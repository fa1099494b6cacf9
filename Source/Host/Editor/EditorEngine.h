// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Delegate.h"
#include "Core/Text.h"
#include "Core/Vector.h"
#include "CoreUObject/ObjectPtr.h"
#include "Editor/Selection.h"
#include "Editor/Transactor.h"
#include "Engine/World.h"

class AActor;

/// The level editor: the edited world and the played one, the selection, the transaction system, and what the viewports
/// show of them.
class UEditorEngine : public UObject
{
	DECLARE_CLASS(UEditorEngine, UObject)

public:
	/// Makes the editor engine of the process, with an empty world and a transaction buffer, and makes it `GEditor`.
	static UEditorEngine* Create();

	/// Ends the play session, destroys the worlds, lets go of everything, and leaves `GEditor` null.
	static void Destroy();

	/// The transaction system; may be none.
	TObjectPtr<UTransactor> Trans;

	/// The world of the running play session, or null.
	TObjectPtr<UWorld> PlayWorld;

	USelection* GetSelectedActors() const { return SelectedActors; }
	FWorldContext& GetEditorWorldContext() { return EditorWorldContext; }

	/// Selects or deselects one actor.
	void SelectActor(AActor* Actor, bool bSelected);
	void SelectNone();

	/// Opens a transaction, or joins the open one; returns the index of the scope, or INDEX_NONE without a transaction
	/// system.
	int32 BeginTransaction(const TCHAR* Context, const FText& Description, UObject* PrimaryObject);
	int32 EndTransaction();
	void CancelTransaction(int32 StartIndex);

	/// Takes back, or does again, one transaction, and puts the pivot where the selection is now. Refused while a
	/// transaction is open. Returns whether anything was done.
	bool UndoTransaction();
	bool RedoTransaction();

	/// Puts the pivot display at the root of the actor that was selected last, and at the world's origin without one.
	void UpdatePivotLocationForSelection(bool bOnChange = false);
	const FVector& GetPivotLocation() const { return PivotLocation; }

	/// Asks every level viewport for a new picture, and, with the flag, for fresh picking.
	void RedrawLevelEditingViewports(bool bInvalidateHitProxies = true);

	/// How many redraws were asked for, and the same of pivot updates.
	int32 GetNumRedraws() const { return NumRedraws; }
	int32 GetNumPivotUpdates() const { return NumPivotUpdates; }
	TMulticastDelegate<void(bool)>& OnRedraw() { return RedrawEvent; }

	/// Starts a play session in a copy of the edited world. Returns false when one is running.
	bool StartPlaySession();

	/// Ends the play session and destroys its world.
	void EndPlaySession();

	/// Told when a play session has started (true) or ended (false).
	TMulticastDelegate<void(bool)>& OnPlaySession() { return PlaySessionEvent; }

	void Serialize(FArchive& Archive) override;

private:
	bool StepTransaction(bool bUndo);

	TObjectPtr<USelection> SelectedActors;
	FWorldContext EditorWorldContext;
	FVector PivotLocation = FVector::ZeroVector;
	int32 NumRedraws = 0;
	int32 NumPivotUpdates = 0;
	TMulticastDelegate<void(bool)> RedrawEvent;
	TMulticastDelegate<void(bool)> PlaySessionEvent;
};

/// The editor engine of the process. Null where there is no editor.
extern UEditorEngine* GEditor;
