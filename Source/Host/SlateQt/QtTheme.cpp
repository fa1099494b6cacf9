// SPDX-License-Identifier: MIT
#include "SlateQt/QtTheme.h"

#include "SlateQt/QtPrelude.h"

#include <QApplication>
#include <QEvent>
#include <QPalette>
#include <QStyle>

namespace
{
EQtTheme AppliedTheme = EQtTheme::System;

bool IsDark(const QPalette& Palette)
{
	return Palette.color(QPalette::Window).lightness() < Palette.color(QPalette::WindowText).lightness();
}

/// Whether the desktop's own colours are dark.
bool IsSystemDark()
{
	// An empty palette makes Qt fall back on the platform's.
	QApplication::setPalette(QPalette());
	return IsDark(QApplication::palette());
}

struct FRoleColour
{
	QPalette::ColorRole Role;
	QRgb Light;
	QRgb Dark;
};

constexpr FRoleColour Colours[] = {
	{QPalette::Window, 0xfff0f0f0, 0xff2a2a2a},
	{QPalette::WindowText, 0xff1e1e1e, 0xffdedede},
	{QPalette::Base, 0xffffffff, 0xff1e1e1e},
	{QPalette::AlternateBase, 0xfff6f6f6, 0xff252525},
	{QPalette::Text, 0xff1e1e1e, 0xffdedede},
	{QPalette::PlaceholderText, 0xff8a8a8a, 0xff858585},
	{QPalette::Button, 0xffe6e6e6, 0xff383838},
	{QPalette::ButtonText, 0xff1e1e1e, 0xffdedede},
	{QPalette::BrightText, 0xffffffff, 0xffffffff},
	{QPalette::Light, 0xffffffff, 0xff4a4a4a},
	{QPalette::Midlight, 0xfff5f5f5, 0xff404040},
	{QPalette::Mid, 0xffb8b8b8, 0xff242424},
	{QPalette::Dark, 0xffa0a0a0, 0xff1a1a1a},
	{QPalette::Shadow, 0xff6e6e6e, 0xff101010},
	{QPalette::Highlight, 0xff2a6fc4, 0xff2f6db5},
	{QPalette::HighlightedText, 0xffffffff, 0xffffffff},
	{QPalette::Link, 0xff1f5fae, 0xff6ea8e6},
	{QPalette::LinkVisited, 0xff6b4fa0, 0xffb09ae0},
	{QPalette::ToolTipBase, 0xfffffbe6, 0xff3a3a3a},
	{QPalette::ToolTipText, 0xff1e1e1e, 0xffdedede},
};

/// Looks again at what the desktop prefers whenever it changes its theme.
class FSystemThemeFollower : public QObject
{
public:
	using QObject::QObject;

	bool eventFilter(QObject*, QEvent* Event) override
	{
		// Changing the colours sends the event once more.
		if (Event->type() == QEvent::ThemeChange && AppliedTheme == EQtTheme::System && !bApplying)
		{
			bApplying = true;
			ApplyQtTheme(EQtTheme::System);
			bApplying = false;
		}
		return false;
	}

private:
	bool bApplying = false;
};

void FollowSystemTheme()
{
	const QString Name = QStringLiteral("SystemThemeFollower");
	if (qApp->findChild<QObject*>(Name, Qt::FindDirectChildrenOnly) == nullptr)
	{
		auto* Follower = new FSystemThemeFollower(qApp);
		Follower->setObjectName(Name);
		qApp->installEventFilter(Follower);
	}
}
}

QPalette MakeQtPalette(bool bDark)
{
	QPalette Palette;
	for (const FRoleColour& Colour : Colours)
	{
		Palette.setColor(Colour.Role, QColor(bDark ? Colour.Dark : Colour.Light));
	}
	const QColor Disabled(bDark ? 0xff7a7a7a : 0xff9a9a9a);
	for (const QPalette::ColorRole Role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
	{
		Palette.setColor(QPalette::Disabled, Role, Disabled);
	}
	Palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(bDark ? 0xff4a4a4a : 0xffc4c4c4));
	return Palette;
}

void ApplyQtTheme(EQtTheme Theme)
{
	AppliedTheme = Theme;
	FollowSystemTheme();
	// One style on all desktops: it takes all its colours from the palette.
	if (QApplication::style()->name() != QLatin1String("fusion"))
	{
		QApplication::setStyle(QStringLiteral("fusion"));
	}
	QApplication::setPalette(MakeQtPalette(Theme == EQtTheme::System ? IsSystemDark() : Theme == EQtTheme::Dark));
}

EQtTheme GetQtTheme()
{
	return AppliedTheme;
}

bool IsQtThemeDark()
{
	return IsDark(QApplication::palette());
}
