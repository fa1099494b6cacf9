// SPDX-License-Identifier: MIT
#pragma once

#include "SlateQt/QtPrelude.h"
#include "ViewportModel.h"

#include <QPoint>
#include <QRect>

#include <functional>

class QEvent;
class QMouseEvent;
class QWheelEvent;

/// The mouse in a viewport, whatever widget it is over.
///
/// Left: click selects, drag draws a selection rectangle; Shift adds, Ctrl toggles. Alt and left, or middle: orbit.
/// Shift or Alt and middle: pan. Wheel, or Alt and right: zoom. Right click: context menu of what is there.
class FViewportInput
{
public:
	explicit FViewportInput(FViewportModel& InModel)
		: Model(InModel)
	{
	}

	/// Takes an event of the widget. Returns whether it was one of the mouse's, which is accepted then. Keys are never
	/// taken.
	bool HandleEvent(QEvent& Event);

	/// The selection rectangle that is being drawn, in pixels of the widget; null when there is none.
	QRect GetRubberBand() const;

	/// A right click without a drag, after what is under it was selected.
	std::function<void(const QPoint& GlobalPosition)> OnContextMenu;

	/// The selection rectangle was changed.
	std::function<void()> OnRubberBand;

private:
	enum class EGesture : uint8
	{
		None,
		Orbit,
		Pan,
		Zoom,
		Select,  ///< left button, not moved far enough for a rectangle yet
		Band,    ///< left button, drawing a rectangle
		Menu,    ///< right button, not moved far enough to be a drag
		Ignored, ///< a drag without a meaning
	};

	void Press(const QMouseEvent& Event);
	void Move(const QMouseEvent& Event);
	void Release(const QMouseEvent& Event);
	void Wheel(const QWheelEvent& Event);
	void OpenContextMenu(const QMouseEvent& Event);
	void EndGesture();

	FViewportModel& Model;
	EGesture Gesture = EGesture::None;
	Qt::MouseButton Button = Qt::NoButton; ///< that began the gesture
	QPointF Start;
	QPointF Last;
};
