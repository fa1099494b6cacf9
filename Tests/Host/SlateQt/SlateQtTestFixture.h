// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/SlateApplication.h"
#include "Slate/SlateNotificationManager.h"
#include "Slate/UICommandList.h"
#include "SlateQt/QtPrelude.h"
#include "SlateQt/SlateQtBackend.h"

#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

/// Sees all input first, writes down what it saw, and consumes what it was told to.
class FRecordingProcessor : public IInputProcessor
{
public:
	void Tick(const float, FSlateApplication&, TSharedRef<ICursor>) override { ++Ticks; }

	bool HandleKeyDownEvent(FSlateApplication&, const FKeyEvent& InKeyEvent) override
	{
		Downs.push_back(InKeyEvent);
		return Consumed.Contains(InKeyEvent.GetKey());
	}
	bool HandleKeyUpEvent(FSlateApplication&, const FKeyEvent& InKeyEvent) override
	{
		Ups.push_back(InKeyEvent);
		return false;
	}
	bool HandleMouseButtonDownEvent(FSlateApplication&, const FPointerEvent& MouseEvent) override
	{
		ButtonsDown.push_back(MouseEvent);
		return bConsumeMouse;
	}
	bool HandleMouseWheelOrGestureEvent(
		FSlateApplication&, const FPointerEvent& InWheelEvent, const FPointerEvent*) override
	{
		Wheels.push_back(InWheelEvent.GetWheelDelta());
		return false;
	}

	/// The chords that went down, without the modifier keys' own, in their invariant form.
	std::vector<std::string> Chords() const
	{
		std::vector<std::string> Result;
		for (const FKeyEvent& Event : Downs)
		{
			if (!Event.GetKey().IsModifierKey())
			{
				Result.push_back(FInputChord(Event).ToString().ToUtf8());
			}
		}
		return Result;
	}

	std::vector<FKeyEvent> Downs;
	std::vector<FKeyEvent> Ups;
	std::vector<FPointerEvent> ButtonsDown;
	std::vector<float> Wheels;
	TArray<FKey> Consumed;
	bool bConsumeMouse = false;
	int Ticks = 0;
};

/// A context with one command on Ctrl+Shift+B, for the length of one test.
class FOneCommand
{
public:
	FOneCommand();
	~FOneCommand();

	TSharedPtr<FUICommandInfo> Command;
	TSharedRef<FUICommandList> List = MakeShared<FUICommandList>();
	int Runs = 0;
};

/// Makes the one application of Qt that all tests of the process share, off screen.
QApplication& EnsureQtApplication();

/// The widget application on Qt, off screen, with a window that has a text line and a plain panel.
class FSlateQtTest : public testing::Test
{
protected:
	FSlateQtTest();
	~FSlateQtTest() override;

	static FSlateApplication& App() { return FSlateApplication::Get(); }

	/// Presses and releases a key as the window system would, in the window that has the focus.
	static void Click(Qt::Key Key, Qt::KeyboardModifiers Modifiers = Qt::NoModifier);

	/// Sends a press of a held key.
	static void Repeat(Qt::Key Key, Qt::KeyboardModifiers Modifiers = Qt::NoModifier, const QString& Text = {});

	/// Runs `Action` once a modal window is up and has the focus.
	static void WhenModalOpens(std::function<void(QWidget&)> Action);

	/// Presses the left button of the mouse at a place in a widget, in its middle where none is given, through its
	/// window.
	static void ClickOn(const QWidget& Widget);
	static void ClickOn(const QWidget& Widget, QPoint Place);

	/// Runs `Action` in the main event loop of a program, which then ends.
	static void InMainLoop(std::function<void()> Action);

	/// Does what a window manager does for the window below one that was closed.
	static void Activate(QWidget& Below);

	/// The time of the notification manager, in seconds.
	double Time = 100.0;

	QMainWindow Window;
	QPointer<QLineEdit> Line;
	QPointer<QWidget> Panel;
	TSharedRef<FSlateQtBackend> Backend;
	TSharedRef<FRecordingProcessor> Processor = MakeShared<FRecordingProcessor>();
};
