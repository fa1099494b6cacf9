// SPDX-License-Identifier: MIT
#include "SlateQtTestFixture.h"

#include "Slate/BindingContext.h"
#include "Slate/InputBindingManager.h"

namespace
{
TSharedRef<FSlateQtBackend> MakeBackend()
{
	TSharedRef<FSlateQtBackend> Backend = MakeShared<FSlateQtBackend>();
	FSlateApplication::Create(Backend);
	return Backend;
}

/// Something without text input that takes the focus.
class FPanel : public QWidget
{
public:
	explicit FPanel(QWidget* Parent)
		: QWidget(Parent)
	{
		setFocusPolicy(Qt::StrongFocus);
		setMinimumSize(200, 100);
	}
};
}

QApplication& EnsureQtApplication()
{
	// Not destroyed at the end: other statics still refer to Qt then.
	static QApplication* const Application = []
	{
		if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
		{
			qputenv("QT_QPA_PLATFORM", "offscreen");
		}
		static int Count = 1;
		static char Name[] = "SlateQtTests";
		static char* Arguments[] = {Name, nullptr};
		return new QApplication(Count, Arguments);
	}();
	return *Application;
}

FOneCommand::FOneCommand()
{
	const TSharedRef<FBindingContext> Context = MakeShared<FBindingContext>(
		FName(TEXT("QtTest")), FText::FromString(TEXT("Qt Test")), FName(), FName(TEXT("TestStyle")));
	FUICommandInfo::MakeCommandInfo(Context, Command, TEXT("Bake"), FText::FromString(TEXT("Bake & Go")),
		FText::FromString(TEXT("Bakes <it>")), EUserInterfaceActionType::Button,
		FInputChord(EModifierKey::Control | EModifierKey::Shift, EKeys::B));
	List->MapAction(Command, FExecuteAction::CreateLambda([this] { ++Runs; }));
	FSlateApplication::AddGlobalCommandList(List);
}

FOneCommand::~FOneCommand()
{
	FSlateApplication::RemoveGlobalCommandList(List);
	FInputBindingManager::Get().RemoveContextByName(TEXT("QtTest"));
}

FSlateQtTest::FSlateQtTest()
	: Window((EnsureQtApplication(), nullptr))
	, Backend(MakeBackend())
{
	FSlateNotificationManager::Get().SetClock([this] { return Time; });
	auto* Central = new QWidget(&Window);
	auto* Layout = new QVBoxLayout(Central);
	Line = new QLineEdit(Central);
	Panel = new FPanel(Central);
	Layout->addWidget(Line);
	Layout->addWidget(Panel);
	Window.setCentralWidget(Central);
	Window.resize(800, 600);
	Window.show();
	Activate(Window);
	Panel->setFocus();
	Backend->SetMainWindow(&Window);
	App().RegisterInputPreProcessor(Processor);
}

FSlateQtTest::~FSlateQtTest()
{
	FSlateApplication::Shutdown();
	FSlateNotificationManager::Get().Clear();
	FSlateNotificationManager::Get().SetClock({});
}

void FSlateQtTest::Click(Qt::Key Key, Qt::KeyboardModifiers Modifiers)
{
	ASSERT_NE(QGuiApplication::focusWindow(), nullptr);
	QTest::keyClick(QGuiApplication::focusWindow(), Key, Modifiers);
}

void FSlateQtTest::Repeat(Qt::Key Key, Qt::KeyboardModifiers Modifiers, const QString& Text)
{
	ASSERT_NE(QGuiApplication::focusWindow(), nullptr);
	qt_handleKeyEvent(QGuiApplication::focusWindow(), QEvent::KeyPress, Key, Modifiers, Text, true);
}

void FSlateQtTest::WhenModalOpens(std::function<void(QWidget&)> Action)
{
	QTimer::singleShot(0,
		[Action = std::move(Action)]() mutable
		{
			QWidget* Modal = QApplication::activeModalWidget();
			if (Modal == nullptr || !Modal->isActiveWindow())
			{
				WhenModalOpens(std::move(Action));
				return;
			}
			Action(*Modal);
		});
}

void FSlateQtTest::ClickOn(const QWidget& Widget)
{
	ClickOn(Widget, Widget.rect().center());
}

void FSlateQtTest::ClickOn(const QWidget& Widget, QPoint Place)
{
	QWindow* Handle = Widget.window()->windowHandle();
	ASSERT_NE(Handle, nullptr);
	QTest::mouseClick(Handle, Qt::LeftButton, Qt::NoModifier, Widget.mapTo(Widget.window(), Place));
}

void FSlateQtTest::InMainLoop(std::function<void()> Action)
{
	QTimer::singleShot(0,
		[&Action]
		{
			Action();
			QCoreApplication::quit();
		});
	QCoreApplication::exec();
}

void FSlateQtTest::Activate(QWidget& Below)
{
	Below.activateWindow();
	EXPECT_TRUE(QTest::qWaitForWindowActive(&Below));
}
