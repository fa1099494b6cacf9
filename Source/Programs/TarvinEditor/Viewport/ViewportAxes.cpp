// SPDX-License-Identifier: MIT
#include "ViewportAxes.h"

#include <QFont>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

QImage DrawViewportAxes(const FViewportCamera& Camera, const FViewportColours& Colours, double PixelRatio)
{
	struct FArm
	{
		FVector Axis;
		QColor Colour;
		QString Letter;
		double Depth = 0.0;
	};
	// The axes of scene files, which users know: Y is up there. In the host's space these are -Y, Z and -X.
	std::array<FArm, 3> Arms = {FArm{{0.0, -1.0, 0.0}, Colours.AxisX, QStringLiteral("X")},
		FArm{{0.0, 0.0, 1.0}, Colours.AxisY, QStringLiteral("Y")},
		FArm{{-1.0, 0.0, 0.0}, Colours.AxisZ, QStringLiteral("Z")}};
	for (FArm& Arm : Arms)
	{
		Arm.Depth = Arm.Axis | Camera.GetForward();
	}
	std::sort(Arms.begin(), Arms.end(), [](const FArm& A, const FArm& B) { return A.Depth > B.Depth; });

	const int Pixels = int(std::ceil(ViewportAxesSize * PixelRatio));
	QImage Image(Pixels, Pixels, QImage::Format_RGBA8888_Premultiplied);
	Image.fill(Qt::transparent);
	QPainter Painter(&Image);
	Painter.setRenderHint(QPainter::Antialiasing);
	Painter.scale(PixelRatio, PixelRatio);
	QFont Font;
	Font.setPixelSize(11);
	Font.setBold(true);
	Painter.setFont(Font);
	const QPointF Middle(ViewportAxesSize / 2.0, ViewportAxesSize / 2.0);
	for (const FArm& Arm : Arms)
	{
		const QPointF Along(Arm.Axis | Camera.GetRight(), -(Arm.Axis | Camera.GetUp()));
		// What points away from the eye is fainter.
		const double Strength = std::clamp(0.8 - 0.25 * Arm.Depth, 0.0, 1.0);
		QColor Colour = Arm.Colour;
		Colour.setAlphaF(float(Strength));
		Painter.setPen(QPen(Colour, 2.2, Qt::SolidLine, Qt::RoundCap));
		Painter.drawLine(Middle, Middle + Along * 22.0);
		const QPointF Place = Middle + Along * 30.0;
		Painter.drawText(QRectF(Place.x() - 8.0, Place.y() - 8.0, 16.0, 16.0), Qt::AlignCenter, Arm.Letter);
	}
	return Image;
}
