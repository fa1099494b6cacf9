// SPDX-License-Identifier: MIT
#include "OpenGlSupport.h"

#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QSurfaceFormat>

#include <utility>

namespace
{
constexpr std::pair<int, int> NeededVersion(3, 3);

/// The platforms on which such a widget is known to work wherever a context can be made. On others it may crash even
/// so.
bool IsKnownPlatform(const QString& Platform)
{
	return Platform == QLatin1String("xcb") || Platform.startsWith(QLatin1String("wayland"));
}
}

QSurfaceFormat ViewportSurfaceFormat()
{
	QSurfaceFormat Format;
	Format.setRenderableType(QSurfaceFormat::OpenGL);
	Format.setVersion(NeededVersion.first, NeededVersion.second);
	Format.setProfile(QSurfaceFormat::CoreProfile);
	return Format;
}

QString WhyNoOpenGl()
{
	if (qEnvironmentVariable("TARVIN_NO_OPENGL") == QLatin1String("1"))
	{
		return QStringLiteral("There is no 3D view because TARVIN_NO_OPENGL is set.");
	}
	const QString Platform = QGuiApplication::platformName();
	if (!IsKnownPlatform(Platform))
	{
		return QStringLiteral("There is no 3D view because the display platform \"%1\" has no OpenGL for windows.")
			.arg(Platform);
	}
	QOpenGLContext Context;
	Context.setFormat(ViewportSurfaceFormat());
	QOffscreenSurface Surface;
	Surface.setFormat(ViewportSurfaceFormat());
	Surface.create();
	if (!Context.create() || !Surface.isValid() || !Context.makeCurrent(&Surface))
	{
		return QStringLiteral("There is no 3D view because this display has no OpenGL.");
	}
	const std::pair<int, int> Version = Context.format().version();
	Context.doneCurrent();
	if (Context.isOpenGLES() || Version < NeededVersion)
	{
		return QStringLiteral("There is no 3D view because it needs OpenGL 3.3, and this display has %1%2.%3.")
			.arg(Context.isOpenGLES() ? QStringLiteral("OpenGL ES ") : QString())
			.arg(Version.first)
			.arg(Version.second);
	}
	return {};
}
