// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/UICommandInfo.h"
#include "SlateQt/QtPrelude.h"

#include <QDialog>

class FChordField;
class QLabel;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

/// Shows all commands with their two chords, which can be changed; changes count at once and are kept. A chord that
/// another command has is said at once, with that command's name, and is given all the same: the user may want it.
class FShortcutsDialog : public QDialog
{
public:
	explicit FShortcutsDialog(QWidget* Parent = nullptr);

	/// The field of a command's chord; null for a command that is not shown.
	FChordField* FieldOf(FName Command, EMultipleKeyBindingIndex Index) const;

	/// What is said of the last change: who else has the chord. Empty for nobody.
	QString GetMessage() const;

private:
	void Fill();
	void AddCommand(QTreeWidgetItem* Group, const TSharedRef<FUICommandInfo>& Command);
	void Change(const TSharedRef<FUICommandInfo>& Command, EMultipleKeyBindingIndex Index, const FInputChord& Chord);
	void Filter(const QString& Text);
	void ResetAll();

	QLineEdit* Search;
	QTreeWidget* Tree;
	QLabel* Message;
};
