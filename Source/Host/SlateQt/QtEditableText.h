// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/EditableText.h"
#include "SlateQt/QtPrelude.h"

#include <QLineEdit>
#include <QPlainTextEdit>

/// A line in which a user edits the text of a host widget.
class FQtTextLine : public QLineEdit
{
public:
	FQtTextLine(const TSharedRef<SEditableTextBase>& InHost, QWidget* Parent);

	/// Shows the host widget's text, hint and read-only flag. A text that is the same already keeps its cursor and its
	/// own undo.
	void ShowHostText();

private:
	void Commit(ETextCommit How);

	TSharedRef<SEditableTextBase> Host;
	bool bUncommitted = false;
};

/// As FQtTextLine, for texts of any number of lines.
class FQtMultiLineText : public QPlainTextEdit
{
public:
	FQtMultiLineText(const TSharedRef<SEditableTextBase>& InHost, QWidget* Parent);

	/// See FQtTextLine::ShowHostText.
	void ShowHostText();

protected:
	void focusOutEvent(QFocusEvent* Event) override;

private:
	TSharedRef<SEditableTextBase> Host;
	bool bUncommitted = false;
	bool bShowing = false;
};
