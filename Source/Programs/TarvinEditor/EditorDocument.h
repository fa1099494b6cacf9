// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Delegate.h"
#include "SceneIO/GltfSave.h"
#include "SceneIO/SceneResult.h"
#include "SceneProtection.h"

#include <memory>
#include <string>

/// The scene that is being edited: the file that it came from, the world made of it, and whether that has changes which
/// no file has. There may be none; the level is empty then.
class FEditorDocument
{
public:
	FEditorDocument();
	~FEditorDocument();
	FEditorDocument(const FEditorDocument&) = delete;
	FEditorDocument& operator=(const FEditorDocument&) = delete;

	/// Opens a scene in a new world in place of the present one, whose history goes with it. On failure, with one
	/// sentence, everything is as it was.
	FSceneStatus Open(const std::string& Path);

	/// Writes the scene to a file, which is the scene's from then on. On failure, with one sentence, the scene still
	/// has its changes and its old file. Without a scene there is nothing to save.
	FSceneStatus Save(const std::string& Path);

	bool IsOpen() const { return Scene != nullptr; }

	/// Whether anything was changed since the scene was opened or saved; undoing back to there counts as unchanged.
	bool IsDirty() const;

	/// The scene's file as an absolute path; empty for none.
	const std::string& GetPath() const { return Path; }

	/// The name of the scene's file; "" for none.
	std::string GetFileName() const;

	/// The scene; null for none.
	const FScene* GetScene() const { return Scene.get(); }

	/// Why plug-ins leave a selected actor alone; empty for one that they may work on.
	std::string WhyLeftAlone(const AActor* Actor) const;

	/// Brings what plug-ins may work on up to date with the selection and the level. Happens by itself in the next turn
	/// of the event loop; called where something may run before.
	void UpdateProtection();

	/// Told after another scene was opened, after a save, and after every change of the transaction history.
	TMulticastDelegate<void()>& OnChanged() { return Changed; }

	/// Told after another scene was opened.
	TMulticastDelegate<void()>& OnOpened() { return Opened; }

private:
	void Listen();
	void MarkSaved();
	void ProtectSoon();

	std::string Path;
	std::unique_ptr<FScene> Scene;
	std::unique_ptr<FSceneProtection> Protection;
	uint64 SavedState = 0;
	bool bProtectionIsStale = false;
	FDelegateHandle HistoryHandle;
	FDelegateHandle SelectionHandle;
	TMulticastDelegate<void()> Changed;
	TMulticastDelegate<void()> Opened;
	std::shared_ptr<int> Alive = std::make_shared<int>(0);
};
