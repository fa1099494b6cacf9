// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/InputChord.h"
#include "SlateQt/QtKeys.h"

#include <QLineEdit>

#include <functional>

/// A field that takes the chord that is pressed in it. Backspace and Delete alone take the chord away; Tab moves on and
/// Escape closes the dialog, as everywhere.
class FChordField : public QLineEdit
{
public:
	explicit FChordField(QWidget* Parent = nullptr);

	const FInputChord& GetChord() const { return Chord; }
	void SetChord(const FInputChord& NewChord);

	/// Called after the user pressed a chord, or took it away.
	std::function<void(const FInputChord&)> OnChordPressed;

protected:
	void keyPressEvent(QKeyEvent* Event) override;
	void contextMenuEvent(QContextMenuEvent*) override {}

private:
	FInputChord Chord;
	FQtModifierSides Sides;
};
