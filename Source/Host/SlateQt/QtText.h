// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Text.h"
#include "SlateQt/QtPrelude.h"

#include <QString>

/// The same text for Qt, and back.
QString ToQString(const FString& Text);
QString ToQString(const FText& Text);
FString ToFString(const QString& Text);

/// What a user typed, as a text that is never translated.
FText ToFText(const QString& Text);

/// For buttons, check boxes and menu entries: an ampersand is shown and marks no letter.
QString ToLabel(const FText& Text);

/// For menu entries, where a tab would begin the text of a chord.
QString ToMenuLabel(const FText& Text);

/// For window titles, where "[*]" would stand for a mark of unsaved changes.
QString ToWindowTitle(const FText& Text);

/// For tool tips, where a text that looks like rich text would be taken for it. Wraps long texts.
QString ToToolTip(const FText& Text);
