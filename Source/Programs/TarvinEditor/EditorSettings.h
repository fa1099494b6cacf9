// SPDX-License-Identifier: MIT
#pragma once

#include "SlateQt/QtPrelude.h"
#include "SlateQt/QtTheme.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// What the editor remembers from one run to the next, in one file of the user's: recent scenes, the window's layout,
/// the theme. Key chords have a file of their own.
class FEditorSettings
{
public:
	/// Reads the file. A missing one means defaults, a broken one too: it is kept aside under a new name, and one
	/// warning in the log says so. Empty: nothing is kept.
	explicit FEditorSettings(const QString& InFile);

	/// tarvin/editor.ini under XDG_CONFIG_HOME or ~/.config.
	static QString DefaultFile();

	/// The scenes that were opened or saved last, newest first, as absolute paths.
	const QStringList& GetRecentScenes() const { return RecentScenes; }

	/// Puts a scene in front of the recent ones, of which a few are kept, and saves.
	void AddRecentScene(const QString& Path);

	/// Forgets a scene that is not there any more, and saves.
	void RemoveRecentScene(const QString& Path);

	EQtTheme GetTheme() const { return Theme; }
	void SetTheme(EQtTheme InTheme);

	/// The window's place and its docks, as Qt wrote them; empty at first.
	QByteArray Geometry;
	QByteArray Layout;

	/// Writes the file; a warning in the log when that fails.
	void Save() const;

private:
	void Read();

	QString File;
	QStringList RecentScenes;
	EQtTheme Theme = EQtTheme::System;
};
