// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/SlateProgress.h"
#include "SlateQt/QtPrelude.h"

#include <QDialog>
#include <QElapsedTimer>

#include <memory>
#include <vector>

class QBoxLayout;
class QLabel;
class QProgressBar;
class QPushButton;

/// Shows all work that is in progress, outermost first, while no event loop runs.
///
/// It is named "SlateProgress"; each piece of work has a "Title", a "Bar" from 0 to 1000 and a "Message", and there is
/// one "Cancel" button for the innermost. It lets the platform's events through itself, as often as what it shows
/// changes: other windows are repainted, and input goes to this window alone. Timers of the program run meanwhile;
/// they look at FSlateApplication::IsModalOrProgressOpen before they touch the document.
class FQtProgressWindow : public QDialog
{
public:
	explicit FQtProgressWindow(QWidget* Parent);
	~FQtProgressWindow() override;

	/// Shows one more piece of work, and the window once there is any.
	void Open(const TSharedRef<FSlateProgress>& Progress);
	void Change(const TSharedRef<FSlateProgress>& Progress);

	/// Hides the window with the last piece of work.
	void Close(const TSharedRef<FSlateProgress>& Progress);

	/// Asks the innermost work to stop. Escape does the same.
	void reject() override;

protected:
	void closeEvent(QCloseEvent* Event) override;

private:
	struct FRow;

	FRow* Find(const FSlateProgress& Progress);
	void ShowCancel();
	void Repaint();
	void LetEventsThrough();
	void WaitUntilExposed();

	QBoxLayout* RowLayout;
	QPushButton* CancelButton;
	std::vector<std::unique_ptr<FRow>> Rows;
	QElapsedTimer SinceEvents;
	bool bInEvents = false;
};
