// SPDX-License-Identifier: MIT
#pragma once

#include "DetailsPanel.h"
#include "Editor/EditorEngine.h"
#include "Editor/TransBuffer.h"
#include "EditorSession.h"
#include "EditorSettings.h"
#include "Engine/StaticMesh.h"
#include "LogPanel.h"
#include "MainWindow.h"
#include "OutlinerPanel.h"
#include "Programs/Tarvin/TarvinProcess.h"
#include "SelectionQueries.h"
#include "SlateQt/QtPrelude.h"

#include <QApplication>
#include <QTest>

#include <functional>
#include <gmock/gmock.h>
#include <memory>

/// The editor's window, off screen, on a copy of the sample yard of its own, with settings and chords in files of its
/// own. Keys and clicks go through the event loop to the window that has the focus, as the window system sends them.
class FEditorWindowTest : public FYardFixture
{
protected:
	FEditorWindowTest();
	~FEditorWindowTest() override;

	/// Takes the session down and makes a new one, as a new run of the program would.
	void Restart(const FEditorOptions& Options);
	FEditorOptions DefaultOptions() const;

	FMainWindow& Window() { return *MainWindow; }
	FEditorDocument& Document() { return Session->GetDocument(); }
	static UTransBuffer& History() { return *CastChecked<UTransBuffer>(GEditor->Trans.Get()); }

	/// The actor of that label; a failure where there is none.
	static AActor* Actor(const char* Label);
	static std::vector<std::string> Labels(const TArray<AActor*>& Actors);
	static std::vector<std::string> SelectedLabels() { return Labels(SelectionQueries::SelectedActors()); }

	/// Clicks on the actor's line in the outliner.
	void ClickLine(const char* Label, Qt::KeyboardModifiers Modifiers = Qt::NoModifier);

	/// Clicks in the middle of a widget, through its window.
	static void ClickOn(const QWidget& Widget);

	/// Presses and releases a key in the window that has the focus.
	static void Press(Qt::Key Key, Qt::KeyboardModifiers Modifiers = Qt::NoModifier);

	/// Types over what a field holds, and presses Enter.
	static void TypeInto(QLineEdit& Field, const char* Text);

	/// Runs `Action` once a modal window is up and has the focus.
	static void WhenModalOpens(std::function<void(QWidget&)> Action);

	/// Presses the button of that text in a window; a failure where there is none.
	static void PressButton(QWidget& In, const char* Text);

	/// Everything that is waiting in the event loop happens.
	static void Settle();

	/// The texts of the notifications that have not expired.
	static std::vector<std::string> Toasts();

	std::unique_ptr<FEditorSettings> Settings;
	std::unique_ptr<FEditorSession> Session;
	std::unique_ptr<FMainWindow> MainWindow;
	FLogPanel* Log = nullptr;
};

inline constexpr Qt::KeyboardModifiers Ctrl = Qt::ControlModifier;
inline constexpr Qt::KeyboardModifiers CtrlShift = Qt::ControlModifier | Qt::ShiftModifier;
inline constexpr Qt::KeyboardModifiers CtrlKeypad = Qt::ControlModifier | Qt::KeypadModifier;
