// SPDX-License-Identifier: MIT
#include "ViewportInput.h"

#include "Editor/EditorEngine.h"
#include "Engine/Actor.h"

#include <QApplication>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWheelEvent>

#include <cmath>

namespace
{
/// One notch of a wheel goes this much nearer.
constexpr double ZoomPerNotch = 0.85;
/// So does a drag over this many pixels.
constexpr double PixelsPerNotch = 20.0;

FViewportPoint PointOf(const QPointF& Position)
{
	return {Position.x(), Position.y()};
}

ESelectHow HowToSelect(Qt::KeyboardModifiers Modifiers)
{
	if (Modifiers.testFlag(Qt::ControlModifier))
	{
		return ESelectHow::Toggle;
	}
	return Modifiers.testFlag(Qt::ShiftModifier) ? ESelectHow::Add : ESelectHow::Replace;
}

bool IsDrag(const QPointF& From, const QPointF& To)
{
	return (To - From).manhattanLength() >= QGuiApplication::styleHints()->startDragDistance();
}
}

bool FViewportInput::HandleEvent(QEvent& Event)
{
	switch (Event.type())
	{
	case QEvent::MouseButtonPress:
	case QEvent::MouseButtonDblClick:
		Press(static_cast<const QMouseEvent&>(Event));
		break;
	case QEvent::MouseMove:
		Move(static_cast<const QMouseEvent&>(Event));
		break;
	case QEvent::MouseButtonRelease:
		Release(static_cast<const QMouseEvent&>(Event));
		break;
	case QEvent::Wheel:
		Wheel(static_cast<const QWheelEvent&>(Event));
		break;
	case QEvent::Hide:
	case QEvent::WindowDeactivate:
		// The release will go elsewhere.
		EndGesture();
		return false;
	default:
		return false;
	}
	Event.accept();
	return true;
}

void FViewportInput::Press(const QMouseEvent& Event)
{
	if (Gesture != EGesture::None)
	{
		return;
	}
	const bool bAlt = Event.modifiers().testFlag(Qt::AltModifier);
	const bool bShift = Event.modifiers().testFlag(Qt::ShiftModifier);
	switch (Event.button())
	{
	case Qt::LeftButton:
		Gesture = bAlt ? EGesture::Orbit : EGesture::Select;
		break;
	case Qt::MiddleButton:
		Gesture = bAlt || bShift ? EGesture::Pan : EGesture::Orbit;
		break;
	case Qt::RightButton:
		Gesture = bAlt ? EGesture::Zoom : EGesture::Menu;
		break;
	default:
		return;
	}
	Button = Event.button();
	Start = Event.position();
	Last = Start;
}

void FViewportInput::Move(const QMouseEvent& Event)
{
	const QPointF Delta = Event.position() - Last;
	Last = Event.position();
	switch (Gesture)
	{
	case EGesture::Orbit:
		Model.Orbit(Delta.x(), Delta.y());
		break;
	case EGesture::Pan:
		Model.Pan(Delta.x(), Delta.y());
		break;
	case EGesture::Zoom:
		// To the right and up is nearer, at where the drag began.
		Model.Zoom(std::pow(ZoomPerNotch, (Delta.x() - Delta.y()) / PixelsPerNotch), PointOf(Start));
		break;
	case EGesture::Menu:
		Gesture = IsDrag(Start, Last) ? EGesture::Ignored : EGesture::Menu;
		break;
	case EGesture::Select:
	case EGesture::Band:
		if (Gesture == EGesture::Band || IsDrag(Start, Last))
		{
			Gesture = EGesture::Band;
			if (OnRubberBand)
			{
				OnRubberBand();
			}
		}
		break;
	case EGesture::None:
	case EGesture::Ignored:
		break;
	}
}

void FViewportInput::Release(const QMouseEvent& Event)
{
	if (Gesture == EGesture::None || Event.button() != Button)
	{
		return;
	}
	// Ended first: what follows may open a menu, and with it an event loop of its own.
	const EGesture Ended = Gesture;
	EndGesture();
	if (Ended == EGesture::Select)
	{
		Model.SelectAt(PointOf(Start), HowToSelect(Event.modifiers()));
	}
	else if (Ended == EGesture::Band)
	{
		Model.SelectInRectangle({PointOf(Start), PointOf(Event.position())}, HowToSelect(Event.modifiers()));
	}
	else if (Ended == EGesture::Menu)
	{
		OpenContextMenu(Event);
	}
}

void FViewportInput::Wheel(const QWheelEvent& Event)
{
	// Alt turns the wheel sideways on some systems.
	const int Angle = Event.angleDelta().y() != 0 ? Event.angleDelta().y() : Event.angleDelta().x();
	Model.Zoom(std::pow(ZoomPerNotch, Angle / double(QWheelEvent::DefaultDeltasPerStep)), PointOf(Event.position()));
}

void FViewportInput::OpenContextMenu(const QMouseEvent& Event)
{
	const AActor* const Actor = Model.ActorAt(PointOf(Start));
	if (Actor && !GEditor->GetSelectedActors()->IsSelected(Actor))
	{
		Model.SelectAt(PointOf(Start), ESelectHow::Replace);
	}
	if (OnContextMenu)
	{
		OnContextMenu(Event.globalPosition().toPoint());
	}
}

QRect FViewportInput::GetRubberBand() const
{
	return Gesture == EGesture::Band ? QRectF(Start, Last).normalized().toRect() : QRect();
}

void FViewportInput::EndGesture()
{
	const bool bBand = Gesture == EGesture::Band;
	Gesture = EGesture::None;
	if (bBand && OnRubberBand)
	{
		OnRubberBand();
	}
}
