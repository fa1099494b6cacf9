// SPDX-License-Identifier: MIT
#include "ViewportSurface.h"

#include "OpenGlSupport.h"
#include "SlateQt/QtTheme.h"

#include <QElapsedTimer>
#include <QEvent>
#include <QOpenGLContext>
#include <QSurfaceFormat>

#include <algorithm>

namespace
{
/// Meshes are prepared for as long between two pictures. The editor answers in between.
constexpr double PrepareMilliseconds = 8.0;
/// Waiting for a transaction to end.
constexpr int RetryMilliseconds = 30;
}

FViewportSurface::FViewportSurface(QWidget* Parent)
	: QOpenGLWidget(Parent)
	, Model([this] { update(); })
	, Input(Model)
{
	setFormat(ViewportSurfaceFormat());
	setObjectName(QStringLiteral("ViewportSurface"));
	setFocusPolicy(Qt::StrongFocus);
	setContextMenuPolicy(Qt::PreventContextMenu);
	setMinimumSize(80, 60);
	Input.OnRubberBand = [this] { update(); };
	NextPicture.setSingleShot(true);
	connect(&NextPicture, &QTimer::timeout, this, [this] { update(); });
}

FViewportSurface::~FViewportSurface()
{
	disconnect(ContextEnds);
	ReleaseGl();
}

void FViewportSurface::initializeGL()
{
	// Moving the widget to another window gives it another context.
	ContextEnds = connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, [this] { ReleaseGl(); });
	const QString WhyNot = Renderer.Initialize();
	bCanDraw = WhyNot.isEmpty();
	if (!bCanDraw && OnFailed)
	{
		OnFailed(WhyNot);
	}
}

void FViewportSurface::ReleaseGl()
{
	if (context() == nullptr)
	{
		return;
	}
	makeCurrent();
	Renderer.Release();
	doneCurrent();
	bCanDraw = false;
}

void FViewportSurface::paintGL()
{
	if (!bCanDraw)
	{
		return;
	}
	QElapsedTimer Timer;
	Timer.start();
	Model.GetCamera().SetPictureSize(width(), height());
	// Where a picture takes long, more is prepared for each, so that all is there in twice the time at most.
	const bool bComplete = Model.Update(std::max(PrepareMilliseconds, PictureMilliseconds));
	const qint64 Prepared = Timer.nsecsElapsed();
	FViewportPicture Picture;
	Picture.PixelRatio = devicePixelRatio();
	Picture.bDark = IsQtThemeDark();
	Picture.RubberBand = Input.GetRubberBand();
	Picture.Framebuffer = defaultFramebufferObject();
	Renderer.Draw(Model, Picture);
	++NumPictures;
	PictureMilliseconds = double(Timer.nsecsElapsed() - Prepared) / 1e6;
	if (!bComplete)
	{
		NextPicture.start(Model.GetScene().IsPrepared() ? RetryMilliseconds : 0);
	}
}

bool FViewportSurface::event(QEvent* Event)
{
	switch (Event->type())
	{
	case QEvent::PaletteChange:
	case QEvent::ApplicationPaletteChange:
		update();
		break;
	default:
		if (Input.HandleEvent(*Event))
		{
			if (Event->type() == QEvent::MouseButtonPress)
			{
				setFocus(Qt::MouseFocusReason);
			}
			return true;
		}
		break;
	}
	return QOpenGLWidget::event(Event);
}
