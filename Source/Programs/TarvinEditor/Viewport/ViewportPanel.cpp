// SPDX-License-Identifier: MIT
#include "ViewportPanel.h"

#include "OpenGlSupport.h"
#include "ViewportSurface.h"

#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

#include <cmath>

FViewportPanel::FViewportPanel(QWidget* Parent)
	: QWidget(Parent)
{
	setObjectName(QStringLiteral("Viewport"));
	setFocusPolicy(Qt::StrongFocus);
	auto* const Layout = new QVBoxLayout(this);
	Layout->setContentsMargins(0, 0, 0, 0);
	const QString NoOpenGl = WhyNoOpenGl();
	if (!NoOpenGl.isEmpty())
	{
		ShowWhyNot(NoOpenGl);
		return;
	}
	Surface = new FViewportSurface(this);
	setFocusProxy(Surface);
	Layout->addWidget(Surface);
	Surface->GetInput().OnContextMenu = [this](const QPoint& GlobalPosition)
	{
		if (OnContextMenu)
		{
			OnContextMenu(GlobalPosition);
		}
	};
	Surface->OnFailed = [this](const QString& Reason)
	{
		// Told while the widget is painted, when it cannot be taken away.
		QTimer::singleShot(0, this,
			[this, Reason]
			{
				Surface->deleteLater();
				Surface->hide();
				Surface = nullptr;
				ShowWhyNot(QStringLiteral("There is no 3D view because %1").arg(Reason));
			});
	};
}

void FViewportPanel::ShowWhyNot(const QString& InWhyNot)
{
	WhyNot = InWhyNot;
	setFocusProxy(nullptr);
	auto* const Label = new QLabel(WhyNot, this);
	Label->setObjectName(QStringLiteral("WhyNoPicture"));
	Label->setTextFormat(Qt::PlainText);
	Label->setAlignment(Qt::AlignCenter);
	Label->setWordWrap(true);
	Label->setMargin(24);
	setAutoFillBackground(true);
	setBackgroundRole(QPalette::Base);
	layout()->addWidget(Label);
}

void FViewportPanel::FrameSelection()
{
	if (Surface != nullptr)
	{
		Surface->GetModel().FrameSelection();
	}
}

void FViewportPanel::FrameAll()
{
	if (Surface != nullptr)
	{
		Surface->GetModel().FrameAll();
	}
}

void FViewportPanel::SetWorldChanged()
{
	if (Surface != nullptr)
	{
		Surface->GetModel().SetWorldChanged();
	}
}

QImage FViewportPanel::GrabPicture()
{
	return Surface != nullptr ? Surface->grabFramebuffer() : QImage();
}

QPoint FViewportPanel::PlaceOf(const FVector& World) const
{
	FViewportPoint Point;
	if (Surface == nullptr || !Surface->GetModel().GetCamera().Project(World, Point))
	{
		return {-1, -1};
	}
	const QPoint InSurface(int(std::floor(Point.X)), int(std::floor(Point.Y)));
	return Surface->mapTo(this, InSurface);
}
