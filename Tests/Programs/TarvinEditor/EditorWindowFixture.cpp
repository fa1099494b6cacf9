// SPDX-License-Identifier: MIT
#include "EditorWindowFixture.h"

#include "Slate/SlateNotificationManager.h"

#include <QAbstractButton>
#include <QTimer>
#include <QWindow>

namespace
{
/// The one application of Qt in the process. Not destroyed at the end: other statics still refer to it then.
void EnsureQtApplication()
{
	if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
	{
		qputenv("QT_QPA_PLATFORM", "offscreen");
	}
	static int Count = 1;
	static char Name[] = "TarvinEditorTests";
	static char* Arguments[] = {Name, nullptr};
	static QApplication* const Application = new QApplication(Count, Arguments);
	static_cast<void>(Application);
}
} // namespace

FEditorWindowTest::FEditorWindowTest()
{
	EnsureQtApplication();
	Restart(DefaultOptions());
	EXPECT_TRUE(Window().OpenScene(QString::fromStdString(Yard())));
	Settle();
}

FEditorWindowTest::~FEditorWindowTest()
{
	MainWindow.reset();
	Session.reset();
}

FEditorOptions FEditorWindowTest::DefaultOptions() const
{
	FEditorOptions Options;
	Options.ChordsFile = FString::FromUtf8(Path("chords.txt"));
	return Options;
}

void FEditorWindowTest::Restart(const FEditorOptions& Options)
{
	MainWindow.reset();
	Session.reset();
	Log = new FLogPanel;
	Settings = std::make_unique<FEditorSettings>(QString::fromStdString(Path("editor.ini")));
	Session = std::make_unique<FEditorSession>(Options);
	MainWindow = std::make_unique<FMainWindow>(*Session, *Settings, Log);
	Window().show();
	Window().activateWindow();
	EXPECT_TRUE(QTest::qWaitForWindowActive(&Window()));
	Window().GetOutliner()->GetView()->setFocus();
}

AActor* FEditorWindowTest::Actor(const char* Label)
{
	for (AActor* Candidate : SelectionQueries::EditedWorld()->GetActors())
	{
		if (Candidate->GetActorLabel().ToUtf8() == Label)
		{
			return Candidate;
		}
	}
	ADD_FAILURE() << "no actor '" << Label << "'";
	return nullptr;
}

std::vector<std::string> FEditorWindowTest::Labels(const TArray<AActor*>& Actors)
{
	std::vector<std::string> Result;
	for (const AActor* Each : Actors)
	{
		Result.push_back(Each->GetActorLabel().ToUtf8());
	}
	return Result;
}

void FEditorWindowTest::ClickLine(const char* Label, Qt::KeyboardModifiers Modifiers)
{
	FOutlinerView& View = *Window().GetOutliner()->GetView();
	const QModelIndex Line = Window().GetOutliner()->GetModel()->IndexOf(Actor(Label));
	ASSERT_TRUE(Line.isValid()) << Label;
	View.scrollTo(Line);
	const QPoint Place = View.viewport()->mapTo(&Window(), View.visualRect(Line).center());
	QTest::mouseClick(Window().windowHandle(), Qt::LeftButton, Modifiers, Place);
	Settle();
}

void FEditorWindowTest::ClickOn(const QWidget& Widget)
{
	QTest::mouseClick(Widget.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
		Widget.mapTo(Widget.window(), Widget.rect().center()));
	Settle();
}

namespace
{
/// Does what a window manager does for the window below one that was closed.
void ActivateBelow()
{
	for (QWidget* Top : QApplication::topLevelWidgets())
	{
		if (!QGuiApplication::focusWindow() && qobject_cast<QMainWindow*>(Top) && Top->isVisible())
		{
			Top->activateWindow();
			EXPECT_TRUE(QTest::qWaitForWindowActive(Top));
		}
	}
}
} // namespace

void FEditorWindowTest::Press(Qt::Key Key, Qt::KeyboardModifiers Modifiers)
{
	ActivateBelow();
	ASSERT_NE(QGuiApplication::focusWindow(), nullptr);
	QTest::keyClick(QGuiApplication::focusWindow(), Key, Modifiers);
	Settle();
}

void FEditorWindowTest::TypeInto(QLineEdit& Field, const char* Text)
{
	Field.setFocus();
	Press(Qt::Key_A, Ctrl);
	for (const char* Letter = Text; *Letter; ++Letter)
	{
		QTest::keyClick(QGuiApplication::focusWindow(), *Letter);
	}
	Press(Qt::Key_Return);
}

void FEditorWindowTest::WhenModalOpens(std::function<void(QWidget&)> Action)
{
	// Asked again and again, but not for ever: where no window comes up the test fails and goes on.
	auto* const Poll = new QTimer(qApp);
	QObject::connect(Poll, &QTimer::timeout, Poll,
		[Poll, Action = std::move(Action), Patience = 2000]() mutable
		{
			QWidget* const Modal = QApplication::activeModalWidget();
			const bool bUp = Modal && Modal->isActiveWindow();
			if (!bUp && --Patience > 0)
			{
				return;
			}
			Poll->stop();
			Poll->deleteLater();
			ASSERT_TRUE(bUp) << "no modal window came up";
			Action(*Modal);
		});
	Poll->start(1);
}

void FEditorWindowTest::PressButton(QWidget& In, const char* Text)
{
	for (QAbstractButton* Button : In.findChildren<QAbstractButton*>())
	{
		if (Button->text().remove(QLatin1Char('&')) == QLatin1String(Text))
		{
			ClickOn(*Button);
			return;
		}
	}
	ADD_FAILURE() << "no button '" << Text << "'";
}

void FEditorWindowTest::Settle()
{
	QCoreApplication::processEvents();
	QCoreApplication::processEvents();
}

std::vector<std::string> FEditorWindowTest::Toasts()
{
	std::vector<std::string> Texts;
	for (const TSharedRef<SNotificationItem>& Item : FSlateNotificationManager::Get().GetNotifications())
	{
		Texts.push_back(Item->GetText().ToString().ToUtf8());
	}
	return Texts;
}
