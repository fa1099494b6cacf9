// SPDX-License-Identifier: MIT
#include "EditorSettings.h"

#include "Core/Log.h"
#include "SlateQt/QtText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

DEFINE_LOG_CATEGORY_STATIC(LogSettings, Log, All)

namespace
{
constexpr int MostRecentScenes = 10;

const QString RecentKey = QStringLiteral("RecentScenes");
const QString ThemeKey = QStringLiteral("Theme");
const QString GeometryKey = QStringLiteral("Window/Geometry");
const QString LayoutKey = QStringLiteral("Window/Layout");

/// Lines of this kind of file are sections, comments, or have an equals sign. Qt itself takes anything.
bool IsSettingsFile(const QString& Path)
{
	QFile Source(Path);
	if (!Source.open(QIODevice::ReadOnly))
	{
		return false;
	}
	while (!Source.atEnd())
	{
		const QByteArray Line = Source.readLine().trimmed();
		const bool bSection = Line.startsWith('[') && Line.endsWith(']');
		if (Line.contains('\0') || (!Line.isEmpty() && !bSection && !Line.startsWith(';') && !Line.contains('=')))
		{
			return false;
		}
	}
	return true;
}

QString KeepAside(const QString& Path)
{
	QString Aside = Path + QStringLiteral(".broken");
	for (int Number = 2; QFileInfo::exists(Aside); ++Number)
	{
		Aside = Path + QStringLiteral(".broken-%1").arg(Number);
	}
	return QFile::rename(Path, Aside) ? Aside : QString();
}
} // namespace

FEditorSettings::FEditorSettings(const QString& InFile)
	: File(InFile)
{
	if (!File.isEmpty() && QFileInfo::exists(File))
	{
		Read();
	}
}

QString FEditorSettings::DefaultFile()
{
	return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
		   QStringLiteral("/tarvin/editor.ini");
}

void FEditorSettings::Read()
{
	if (!IsSettingsFile(File))
	{
		const QString Aside = KeepAside(File);
		HOST_LOG(LogSettings, Warning,
			TEXT("Cannot read the settings in %s: defaults are used, and the file is kept as %s."), *ToFString(File),
			*ToFString(Aside.isEmpty() ? File : Aside));
		if (Aside.isEmpty())
		{
			File.clear();
		}
		return;
	}
	const QSettings Settings(File, QSettings::IniFormat);
	RecentScenes = Settings.value(RecentKey).toStringList().mid(0, MostRecentScenes);
	const QString Name = Settings.value(ThemeKey).toString();
	Theme = Name == QLatin1String("Light")  ? EQtTheme::Light
			: Name == QLatin1String("Dark") ? EQtTheme::Dark
											: EQtTheme::System;
	Geometry = Settings.value(GeometryKey).toByteArray();
	Layout = Settings.value(LayoutKey).toByteArray();
}

void FEditorSettings::Save() const
{
	if (File.isEmpty())
	{
		return;
	}
	QDir().mkpath(QFileInfo(File).absolutePath());
	QSettings Settings(File, QSettings::IniFormat);
	Settings.setValue(RecentKey, RecentScenes);
	Settings.setValue(ThemeKey, Theme == EQtTheme::Light  ? QStringLiteral("Light")
								: Theme == EQtTheme::Dark ? QStringLiteral("Dark")
														  : QStringLiteral("System"));
	Settings.setValue(GeometryKey, Geometry);
	Settings.setValue(LayoutKey, Layout);
	Settings.sync();
	if (Settings.status() != QSettings::NoError)
	{
		HOST_LOG(LogSettings, Warning, TEXT("Cannot write the settings to %s."), *ToFString(File));
	}
}

void FEditorSettings::AddRecentScene(const QString& Path)
{
	RecentScenes.removeAll(Path);
	RecentScenes.prepend(Path);
	RecentScenes = RecentScenes.mid(0, MostRecentScenes);
	Save();
}

void FEditorSettings::RemoveRecentScene(const QString& Path)
{
	RecentScenes.removeAll(Path);
	Save();
}

void FEditorSettings::SetTheme(EQtTheme InTheme)
{
	Theme = InTheme;
	ApplyQtTheme(Theme);
	Save();
}
