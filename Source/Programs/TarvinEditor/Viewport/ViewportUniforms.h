// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Matrix.h"
#include "SlateQt/QtPrelude.h"

#include <QColor>
#include <QMatrix4x4>
#include <QVector3D>

/// What shaders are given, in single precision.
inline QVector3D ToQt(const FVector& Vector)
{
	return {float(Vector.X), float(Vector.Y), float(Vector.Z)};
}

inline QVector3D ToQt(const QColor& Colour)
{
	return {Colour.redF(), Colour.greenF(), Colour.blueF()};
}

inline QMatrix4x4 ToQt(const FMatrix& Matrix)
{
	QMatrix4x4 Result;
	for (int Row = 0; Row < 4; ++Row)
	{
		for (int Column = 0; Column < 4; ++Column)
		{
			// Row vectors here, column vectors there.
			Result(Column, Row) = float(Matrix.M[Row][Column]);
		}
	}
	return Result;
}
