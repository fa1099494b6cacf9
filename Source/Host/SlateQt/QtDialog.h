// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/CustomDialog.h"
#include "SlateQt/QtPrelude.h"

#include <QDialog>

#include <functional>

/// A custom dialog of the host as a window of Qt.
///
/// Its content stands above its buttons, which are in the order of their index and named "Button0", "Button1" and so
/// on; the window itself is named "SCustomDialog". It closes when the host's dialog does, and the other way round.
class FQtDialog : public QDialog
{
public:
	FQtDialog(const TSharedRef<SCustomDialog>& InHost, QWidget* Parent);
	~FQtDialog() override;

	/// Shows the window, and returns once it is closed, was destroyed with its parent, or the program is quitting.
	/// Windows other than this one get no input meanwhile.
	void RunModal();

	/// What Escape does.
	void reject() override;

protected:
	void closeEvent(QCloseEvent* Event) override;
	void hideEvent(QHideEvent* Event) override;
	void keyPressEvent(QKeyEvent* Event) override;

private:
	QWidget* MakeButtonRow();

	TSharedRef<SCustomDialog> Host;
	std::function<void()> EndLoop;
};
