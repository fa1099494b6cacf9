// SPDX-License-Identifier: MIT
#include "SlateQt/QtInputRouter.h"

#include "Slate/SlateApplication.h"
#include "SlateQt/QtDialog.h"
#include "SlateQt/QtProgressWindow.h"
#include "SlateQt/QtShortcuts.h"

#include <QActionEvent>
#include <QApplication>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QWheelEvent>
#include <QWindow>

#include <utility>

namespace
{
/// Whether the window is `Modal` or belongs to it.
bool BelongsTo(const QWindow& Window, const QWidget* Modal)
{
	for (const QWindow* Above = &Window; Above != nullptr; Above = Above->transientParent())
	{
		if (Modal != nullptr && Above == Modal->windowHandle())
		{
			return true;
		}
	}
	return false;
}

/// A held key that opened a dialog must not answer it; held in a text it types.
bool WouldAnswerByRepeat(const QKeyEvent& Event)
{
	const QWidget* Focused = QApplication::focusWidget();
	if (!Event.isAutoRepeat() || dynamic_cast<const FQtDialog*>(QApplication::activeModalWidget()) == nullptr)
	{
		return false;
	}
	switch (Event.key())
	{
	case Qt::Key_Escape:
		return true;
	case Qt::Key_Return:
	case Qt::Key_Enter:
		return qobject_cast<const QPlainTextEdit*>(Focused) == nullptr &&
			   qobject_cast<const QTextEdit*>(Focused) == nullptr;
	case Qt::Key_Space:
		return Focused == nullptr || !IsTextInput(*Focused);
	default:
		return false;
	}
}

/// Whether the key would mark a letter rather than type it. Fields of Qt type it all the same, since Qt expects a
/// shortcut to take it first.
bool IsAltAndLetter(const QKeyEvent& Event)
{
	const Qt::KeyboardModifiers Modifiers = Event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
	return Modifiers == Qt::AltModifier && !Event.text().isEmpty() && Event.text()[0].isPrint();
}

bool IsHostModal(const QWidget& Widget)
{
	return dynamic_cast<const FQtDialog*>(&Widget) != nullptr ||
		   dynamic_cast<const FQtProgressWindow*>(&Widget) != nullptr;
}

/// Opens the menu that a menu bar marks with the letter of a key that nothing wanted. Qt would do it by a shortcut.
bool OpenMenuByLetter(const QKeyEvent& Event)
{
	const QWidget* Active = QApplication::activeWindow();
	if (Active == nullptr || Event.modifiers() != Qt::AltModifier)
	{
		return false;
	}
	for (QMenuBar* Bar : Active->findChildren<QMenuBar*>())
	{
		for (QAction* Menu : Bar->actions())
		{
			const QKeySequence Letter = QKeySequence::mnemonic(Menu->text());
			if (!Letter.isEmpty() && Letter[0] == QKeyCombination(Qt::AltModifier, static_cast<Qt::Key>(Event.key())) &&
				Menu->isEnabled() && Menu->isVisible())
			{
				Bar->setActiveAction(Menu);
				return true;
			}
		}
	}
	return false;
}

FScreenPosition ToHost(QPointF Position)
{
	return {Position.x(), Position.y()};
}
}

FQtInputRouter::FQtInputRouter()
	: Focus([this] { return ForwardToQt(); })
{
	qApp->installEventFilter(this);
	connect(qApp, &QApplication::focusChanged, &Focus, [this](QWidget*, QWidget* Now) { Focus.Follow(Now); });
}

FQtInputRouter::~FQtInputRouter() = default;

bool FQtInputRouter::eventFilter(QObject* Receiver, QEvent* Event)
{
	switch (Event->type())
	{
	case QEvent::ShortcutOverride:
		// Accepted and kept from everyone, windows and widgets alike (a press that is handed on to Qt makes Qt ask
		// once more, the widget this time): Qt then looks for no shortcut.
		Event->accept();
		return true;
	case QEvent::ActionAdded:
	case QEvent::ActionChanged:
		StripShortcuts(*static_cast<QActionEvent*>(Event)->action());
		return false;
	case QEvent::Show:
	case QEvent::Hide:
		if (Receiver->isWidgetType())
		{
			OnWidgetEvent(*static_cast<QWidget*>(Receiver), *Event);
		}
		return false;
	default:
		// Widgets get the window's events a second time, handed on by Qt.
		return Receiver->isWindowType() && OnWindowEvent(*static_cast<QWindow*>(Receiver), *Event);
	}
}

bool FQtInputRouter::OnWindowEvent(QWindow& Window, QEvent& Event)
{
	switch (Event.type())
	{
	case QEvent::KeyPress:
		return OnKeyPress(Window, static_cast<QKeyEvent&>(Event));
	case QEvent::KeyRelease:
		return OnKeyRelease(Window, static_cast<QKeyEvent&>(Event));
	case QEvent::MouseMove:
	case QEvent::MouseButtonPress:
	case QEvent::MouseButtonRelease:
	case QEvent::MouseButtonDblClick:
		return OnMouse(static_cast<QMouseEvent&>(Event));
	case QEvent::Wheel:
		return OnWheel(static_cast<QWheelEvent&>(Event));
	default:
		return false;
	}
}

bool FQtInputRouter::OnKeyPress(QWindow& Window, QKeyEvent& Event)
{
	if (IsForwarded(Event))
	{
		return false;
	}
	Sides.Observe(Event);
	if (!FSlateApplication::IsInitialized() || QApplication::activePopupWidget() != nullptr)
	{
		return false;
	}
	FSlateApplication& Application = FSlateApplication::Get();
	const QWidget* Modal = QApplication::activeModalWidget();
	if (Modal != nullptr || Application.IsModalOrProgressOpen())
	{
		Event.accept();
		return !BelongsTo(Window, Modal) || WouldAnswerByRepeat(Event);
	}
	Focus.Follow(Window.focusObject() != nullptr ? Window.focusObject() : &Window);
	const FRoutedKey Outer = std::exchange(Routed, FRoutedKey{&Window, &Event});
	const bool bHandled = Application.ProcessKeyDownEvent(ToHostKeyEvent(Event, Sides)) || OpenMenuByLetter(Event);
	Routed = Outer;
	Event.setAccepted(bHandled);
	return true;
}

bool FQtInputRouter::OnKeyRelease(QWindow& Window, QKeyEvent& Event)
{
	if (IsForwarded(Event))
	{
		return false;
	}
	Sides.Observe(Event);
	// A held key goes down again and again, and up once.
	if (Event.isAutoRepeat() || !FSlateApplication::IsInitialized() || QApplication::activePopupWidget() != nullptr ||
		QApplication::activeModalWidget() != nullptr || FSlateApplication::Get().IsModalOrProgressOpen())
	{
		return false;
	}
	Focus.Follow(Window.focusObject() != nullptr ? Window.focusObject() : &Window);
	const FRoutedKey Outer = std::exchange(Routed, FRoutedKey{&Window, &Event});
	Event.setAccepted(FSlateApplication::Get().ProcessKeyUpEvent(ToHostKeyEvent(Event, Sides)));
	Routed = Outer;
	return true;
}

bool FQtInputRouter::ForwardToQt() const
{
	if (Routed.Window.isNull() || Routed.Event == nullptr)
	{
		return false;
	}
	const QObject* Focused = Routed.Window->focusObject();
	if (Focused != nullptr && IsTextInput(*Focused) && IsAltAndLetter(*Routed.Event))
	{
		return false;
	}
	Routed.Event->accept();
	QCoreApplication::sendEvent(Routed.Window, Routed.Event);
	return Routed.Event->isAccepted();
}

bool FQtInputRouter::OnMouse(QMouseEvent& Event)
{
	if (!FSlateApplication::IsInitialized() || QApplication::activePopupWidget() != nullptr)
	{
		return false;
	}
	FSlateApplication& Application = FSlateApplication::Get();
	const bool bMove = Event.type() == QEvent::MouseMove;
	const FPointerEvent HostEvent(ToHost(Event.globalPosition()), bMove ? FKey() : ToHostMouseButton(Event.button()),
		Sides.Resolve(Event.modifiers()));
	switch (Event.type())
	{
	case QEvent::MouseMove:
		return Application.ProcessMouseMoveEvent(HostEvent);
	case QEvent::MouseButtonPress:
		return Application.ProcessMouseButtonDownEvent(HostEvent);
	case QEvent::MouseButtonRelease:
		return Application.ProcessMouseButtonUpEvent(HostEvent);
	default:
		return Application.ProcessMouseButtonDoubleClickEvent(HostEvent);
	}
}

bool FQtInputRouter::OnWheel(QWheelEvent& Event)
{
	if (!FSlateApplication::IsInitialized() || QApplication::activePopupWidget() != nullptr)
	{
		return false;
	}
	// Qt counts in eighths of a degree, and a notch is 15 degrees.
	const float Notches = static_cast<float>(Event.angleDelta().y()) / 120.0f;
	const FPointerEvent HostEvent(ToHost(Event.globalPosition()), FKey(), Sides.Resolve(Event.modifiers()), Notches);
	return FSlateApplication::Get().ProcessMouseWheelOrGestureEvent(HostEvent, nullptr);
}

void FQtInputRouter::OnWidgetEvent(QWidget& Widget, QEvent& Event)
{
	if (!Widget.isWindow() || !FSlateApplication::IsInitialized())
	{
		return;
	}
	if (Event.type() == QEvent::Show && Widget.isModal() && !IsHostModal(Widget) && !ForeignModals.contains(&Widget))
	{
		ForeignModals.insert(&Widget);
		FSlateApplication::Get().BeginNativeModal();
	}
	else if (Event.type() == QEvent::Hide && ForeignModals.remove(&Widget))
	{
		FSlateApplication::Get().EndNativeModal();
	}
}
