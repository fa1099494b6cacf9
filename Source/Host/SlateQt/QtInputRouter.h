// SPDX-License-Identifier: MIT
#pragma once

#include "SlateQt/QtFocusMirror.h"
#include "SlateQt/QtKeys.h"
#include "SlateQt/QtPrelude.h"

#include <QPointer>
#include <QSet>

class QHoverEvent;
class QMouseEvent;
class QWheelEvent;
class QWidget;
class QWindow;

/// Sees every event of the program before Qt does, and routes each key and mouse event once.
///
/// A key goes through the widget application: pre-processors, the widget that has Qt's focus, command lists. Shortcuts
/// of Qt never get a key. While a modal window is up, keys go to it and to nothing else; while a menu or another popup
/// is open, to that. A modal window that is not of the widget application's making is announced to it.
class FQtInputRouter : public QObject
{
public:
	FQtInputRouter();
	~FQtInputRouter() override;

	FQtFocusMirror& FocusMirror() { return Focus; }

	bool eventFilter(QObject* Receiver, QEvent* Event) override;

private:
	/// The key that is being routed, which the focused widget's stand-in hands on to Qt.
	struct FRoutedKey
	{
		QPointer<QWindow> Window;
		QKeyEvent* Event = nullptr;
	};

	bool OnWindowEvent(QWindow& Window, QEvent& Event);
	bool OnKeyPress(QWindow& Window, QKeyEvent& Event);
	bool OnKeyRelease(QWindow& Window, QKeyEvent& Event);
	bool OnMouse(QMouseEvent& Event);
	bool OnWheel(QWheelEvent& Event);
	void OnWidgetEvent(QWidget& Widget, QEvent& Event);

	bool ForwardToQt() const;
	bool IsForwarded(const QKeyEvent& Event) const { return Routed.Event == &Event; }

	FQtModifierSides Sides;
	FQtFocusMirror Focus;
	FRoutedKey Routed;
	QSet<QObject*> ForeignModals;
};
