// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Delegate.h"
#include "EditorSession.h"
#include "EditorSettings.h"

#include <QMainWindow>

class FAssetPanel;
class FDetailsPanel;
class FHistoryPanel;
class FLogPanel;
class FOutlinerPanel;
class FQtMenu;
class FViewportPanel;
class QLabel;

/// The window of the level editor: viewport, outliner, details, assets, history and log; menus and status bar.
class FMainWindow : public QMainWindow
{
public:
	/// `InSettings` and `InSession` must live longer; `InLog` becomes the window's, so that it can be made first and
	/// misses nothing.
	FMainWindow(FEditorSession& InSession, FEditorSettings& InSettings, FLogPanel* InLog);
	~FMainWindow() override;

	/// Opens a scene in place of the present one, after asking about unsaved changes. What goes wrong is said in a
	/// dialog, and the old scene stays. Returns whether the scene was opened.
	bool OpenScene(const QString& Path);

	/// Saves where the scene came from. What goes wrong is said in a dialog, and the scene stays unsaved.
	bool SaveScene();
	bool SaveSceneTo(const QString& Path);

	FOutlinerPanel* GetOutliner() const { return Outliner; }
	FDetailsPanel* GetDetails() const { return Details; }
	FAssetPanel* GetAssets() const { return Assets; }
	FHistoryPanel* GetHistory() const { return History; }
	FViewportPanel* GetViewport() const { return Viewport; }

protected:
	void closeEvent(QCloseEvent* Event) override;
	void dragEnterEvent(QDragEnterEvent* Event) override;
	void dropEvent(QDropEvent* Event) override;

private:
	void AddDocks();
	void AddMenus();
	std::vector<struct FQtMenuEntry> MakeFileEntries();
	std::vector<struct FQtMenuEntry> MakeViewEntries();
	void MapActions();
	void UnmapActions();
	void ChooseSceneToOpen();
	void ChooseWhereToSave();
	void EditShortcuts();
	bool MayReplaceScene();
	void ShowState();
	void ShowStateSoon();

	FEditorSession& Session;
	FEditorSettings& Settings;
	FViewportPanel* Viewport;
	FOutlinerPanel* Outliner;
	FDetailsPanel* Details;
	FAssetPanel* Assets;
	FHistoryPanel* History;
	FLogPanel* Log;
	QLabel* SelectionStatus;
	QLabel* PlayStatus;
	bool bStatePending = false;
	FDelegateHandle ChangedHandle;
	FDelegateHandle OpenedHandle;
	FDelegateHandle SelectionHandle;
	FDelegateHandle PlayHandle;
};
