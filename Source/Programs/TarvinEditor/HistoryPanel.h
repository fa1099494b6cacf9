// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Delegate.h"
#include "SlateQt/QtPrelude.h"

#include <QListWidget>

class FEditorDocument;

/// The transactions of the undo history, oldest first, below the state in front of them; the present state stands out,
/// what was undone is pale. A click undoes or redoes until there.
class FHistoryPanel : public QListWidget
{
public:
	explicit FHistoryPanel(FEditorDocument& InDocument, QWidget* Parent = nullptr);
	~FHistoryPanel() override;

private:
	void Refresh();
	void GoTo(int Row);

	FEditorDocument& Document;
	FDelegateHandle Handle;
	bool bPending = false;
};
