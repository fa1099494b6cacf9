// SPDX-License-Identifier: MIT
#include "ChordField.h"

#include "SlateQt/QtText.h"

FChordField::FChordField(QWidget* Parent)
	: QLineEdit(Parent)
{
	setPlaceholderText(ToQString(NSLOCTEXT("TarvinEditor", "NoChord", "none")));
	setAcceptDrops(false);
}

void FChordField::SetChord(const FInputChord& NewChord)
{
	Chord = NewChord;
	setText(ToQString(Chord.GetInputText()));
}

void FChordField::keyPressEvent(QKeyEvent* Event)
{
	const FKeyEvent HostEvent = ToHostKeyEvent(*Event, Sides);
	const FInputChord Pressed(HostEvent);
	const bool bAlone = !Pressed.HasAnyModifierKeys();
	if (bAlone && (Pressed.Key == EKeys::Escape || Pressed.Key == EKeys::Enter))
	{
		Event->ignore();
		return;
	}
	const bool bTakeAway = bAlone && (Pressed.Key == EKeys::BackSpace || Pressed.Key == EKeys::Delete);
	if (!bTakeAway && !Pressed.IsValidChord())
	{
		return;
	}
	const FInputChord Wanted = bTakeAway ? FInputChord() : Pressed;
	SetChord(Wanted);
	if (OnChordPressed)
	{
		OnChordPressed(Wanted);
	}
}
