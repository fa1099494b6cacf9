// SPDX-License-Identifier: MIT
#pragma once

class QAction;
class QObject;

/// Takes all key sequences from an action; whether it had any. Chords belong to commands, and Qt holds none of its own.
bool StripShortcuts(QAction& Action);

/// Takes the key sequences from all actions, buttons and shortcut objects at and below `Root`; how many had one. What a
/// button's or menu's label marks as its letter counts as none.
int StripShortcutsBelow(QObject& Root);
