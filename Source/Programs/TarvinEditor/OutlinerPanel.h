// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Delegate.h"
#include "OutlinerModel.h"

#include <QLineEdit>
#include <QTreeView>
#include <QWidget>

#include <functional>

class QItemSelection;
class QLabel;

/// The tree of the outliner. Keys that it has no use for go on to the level editor's commands.
class FOutlinerView : public QTreeView
{
public:
	explicit FOutlinerView(QWidget* Parent);

protected:
	void keyPressEvent(QKeyEvent* Event) override;
	void selectionChanged(const QItemSelection& Selected, const QItemSelection& Deselected) override;

private:
	friend class FOutlinerPanel;
	std::function<void()> OnUserSelected;
};

/// The actors of the level with a search field. What is selected in it is what the editor has selected, both ways.
class FOutlinerPanel : public QWidget
{
public:
	explicit FOutlinerPanel(QWidget* Parent = nullptr);
	~FOutlinerPanel() override;

	QLineEdit* GetSearchField() const { return Search; }
	FOutlinerView* GetView() const { return View; }
	FOutlinerModel* GetModel() const { return Model; }

	/// Takes tree and selection from the level now. Happens by itself in the next turn of the event loop.
	void Refresh();

	/// Called where the menu of the selected actors is to be opened.
	std::function<void(const QPoint& GlobalPosition)> OnContextMenu;

private:
	void RefreshSoon(bool bInTreeToo);
	void ShowEditorSelection();
	void TakeUserSelection();
	void OpenMenu(const QPoint& Place);
	void ShowCount();

	QLineEdit* Search;
	FOutlinerModel* Model;
	FOutlinerView* View;
	QLabel* Count;
	bool bPending = false;
	bool bTreeToo = false;
	bool bShowingSelection = false;
	FDelegateHandle ActorsHandle;
	FDelegateHandle SelectionHandle;
	FDelegateHandle HistoryHandle;
};
