// SPDX-License-Identifier: MIT
// A working day in the real window: X key and mouse events from outside, on a virtual screen with a window manager.
// Pictures of the steps are written to the folder that TARVIN_SCREENSHOTS names.
#include "AssetPanel.h"
#include "EditorWindowFixture.h"
#include "Viewport/ViewportPanel.h"

#include <QAbstractButton>
#include <QMenu>
#include <QPointer>
#include <QProcess>
#include <QScreen>
#include <QTimer>

using testing::ElementsAre;

namespace
{
constexpr int PatienceMs = 20000;

class RealWindow : public FEditorWindowTest
{
protected:
	/// Runs xdotool while the window goes on working.
	static void Send(const QStringList& Words)
	{
		QProcess Tool;
		bool bDone = false;
		QObject::connect(&Tool, &QProcess::finished, [&] { bDone = true; });
		Tool.start(QStringLiteral("xdotool"), Words);
		ASSERT_TRUE(Until([&] { return bDone; })) << Words.join(QLatin1Char(' ')).toStdString();
		ASSERT_EQ(Tool.exitCode(), 0) << Tool.readAllStandardError().toStdString();
		Pump(80);
	}

	static void Pump(int Milliseconds) { QTest::qWait(Milliseconds); }
	static bool Until(const std::function<bool()>& Condition) { return QTest::qWaitFor(Condition, PatienceMs); }

	static void Click(const QPoint& OnScreen, const char* Button = "1")
	{
		Send({QStringLiteral("mousemove"), QStringLiteral("--sync"), QString::number(OnScreen.x()),
			QString::number(OnScreen.y())});
		Send({QStringLiteral("click"), QLatin1String(Button)});
	}
	static void Click(const QWidget& Widget) { Click(Widget.mapToGlobal(Widget.rect().center())); }

	QPoint LineOf(const char* Label)
	{
		FOutlinerView& View = *Window().GetOutliner()->GetView();
		const QModelIndex Line = Window().GetOutliner()->GetModel()->IndexOf(Actor(Label));
		View.scrollTo(Line);
		return View.viewport()->mapToGlobal(View.visualRect(Line).center());
	}

	/// Clicks on the line until it is what is selected.
	void Select(const char* Label)
	{
		Click(LineOf(Label));
		ASSERT_TRUE(Until([&] { return SelectedLabels() == std::vector<std::string>{Label}; })) << Label;
	}

	static void Chord(const char* Keys) { Send({QStringLiteral("key"), QLatin1String(Keys)}); }

	/// Presses Ctrl and a key of the keypad, named by its place on the keyboard.
	static void KeypadChord(int KeyCode)
	{
		Send({QStringLiteral("keydown"), QStringLiteral("ctrl"), QStringLiteral("key"), QString::number(KeyCode),
			QStringLiteral("keyup"), QStringLiteral("ctrl")});
	}

	static void Picture(const char* Name)
	{
		const QString Folder = qEnvironmentVariable("TARVIN_SCREENSHOTS");
		if (!Folder.isEmpty())
		{
			const QPixmap Shot = QGuiApplication::primaryScreen()->grabWindow(0);
			EXPECT_TRUE(Shot.save(Folder + QLatin1Char('/') + QLatin1String(Name) + QStringLiteral(".png")));
		}
	}

	static bool IsBaked(const char* Label)
	{
		const FTransform World = Actor(Label)->GetActorTransform();
		return World.GetRotation().Equals(FQuat::Identity) && World.GetScale3D().Equals(FVector::OneVector);
	}

	/// Runs `Action` after a modal window came up and had time to be drawn.
	void WithPrompt(std::function<void(QWidget&)> Action)
	{
		WhenModalOpens(
			[Action = std::move(Action)](QWidget& Prompt)
			{
				Pump(300);
				Action(Prompt);
			});
	}

	/// Runs `Action` once a menu is up and had time to be drawn; closes it afterwards if it still is.
	static void WhenMenuOpens(std::function<void(QMenu&)> Action)
	{
		auto* const Poll = new QTimer(qApp);
		QObject::connect(Poll, &QTimer::timeout, Poll,
			[Poll, Action = std::move(Action), Patience = PatienceMs / 50]() mutable
			{
				const QPointer<QMenu> Menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
				if (!Menu && --Patience > 0)
				{
					return;
				}
				Poll->stop();
				Poll->deleteLater();
				ASSERT_TRUE(Menu) << "no menu came up";
				Pump(300);
				Action(*Menu);
				if (Menu)
				{
					Menu->close();
				}
			});
		Poll->start(50);
	}

	static QAbstractButton* ButtonOf(QWidget& In, const char* Text)
	{
		for (QAbstractButton* Button : In.findChildren<QAbstractButton*>())
		{
			if (Button->text().remove(QLatin1Char('&')) == QLatin1String(Text))
			{
				return Button;
			}
		}
		ADD_FAILURE() << Text;
		return nullptr;
	}
};
} // namespace

TEST_F(RealWindow, ADaysWork)
{
	Pump(1500);
	Picture("01-yard");
	std::filesystem::copy_file(Yard(), Path("before.gltf"));

	// A chord bakes; its toast comes and goes.
	Select("Crate");
	Chord("ctrl+shift+b");
	ASSERT_TRUE(Until([] { return IsBaked("Crate"); }));
	Pump(700);
	EXPECT_THAT(Toasts(), ElementsAre("Baked 1 mesh(es)"));
	Picture("02-baked");
	EXPECT_TRUE(Until([] { return Toasts().empty(); }));

	// A click into the picture selects what is there.
	if (Window().GetViewport()->HasPicture())
	{
		FViewportPanel& View = *Window().GetViewport();
		const FBox Box =
			SelectionQueries::MeshOf(*Actor("Shed"))->GetBoundingBox().TransformBy(Actor("Shed")->GetActorTransform());
		Click(View.mapToGlobal(View.PlaceOf(Box.GetCenter())));
		EXPECT_TRUE(Until([] { return SelectedLabels() == std::vector<std::string>{"Shed"}; }));
		Chord("f");
		Pump(600);
		Picture("03-picked");
	}

	// The prompt, answered by keyboard and by mouse; nothing else hears chords meanwhile.
	Select("Wall A");
	const int32 Steps = History().GetQueueLength();
	WithPrompt(
		[&](QWidget&)
		{
			Picture("04-prompt");
			Chord("ctrl+shift+b");
			Chord("ctrl+z");
			EXPECT_EQ(History().GetUndoCount(), 0);
			Chord("Return");
		});
	Chord("ctrl+shift+b");
	ASSERT_TRUE(Until([] { return IsBaked("Wall A"); }));
	EXPECT_EQ(SelectionQueries::MeshOf(*Actor("Wall A"))->GetName().ToUtf8(), "Wall_Baked");
	Select("Wall mirrored");
	WithPrompt([](QWidget& Prompt) { Click(*ButtonOf(Prompt, "Create new asset")); });
	Chord("ctrl+shift+b");
	ASSERT_TRUE(Until([] { return IsBaked("Wall mirrored"); }));
	EXPECT_EQ(History().GetQueueLength(), Steps + 2);

	// Undo and redo.
	Chord("ctrl+z");
	EXPECT_TRUE(Until([] { return !IsBaked("Wall mirrored"); }));
	Chord("ctrl+y");
	EXPECT_TRUE(Until([] { return IsBaked("Wall mirrored"); }));

	// Every pivot chord, whatever NumLock says: the keys 7 5 9 4 6 2 8 0 of the keypad.
	Select("Crate");
	for (const bool bToggleNumLock : {false, true})
	{
		if (bToggleNumLock)
		{
			Chord("Num_Lock");
		}
		for (const int KeyCode : {79, 84, 81, 83, 85, 88, 80, 90})
		{
			const FVector Before = Actor("Crate")->GetActorTransform().GetTranslation();
			KeypadChord(KeyCode);
			EXPECT_TRUE(Until([&] { return !(Actor("Crate")->GetActorTransform().GetTranslation() == Before); }))
				<< KeyCode;
		}
	}
	Chord("Num_Lock");

	// The menu of a right click, and its submenu.
	Pump(300);
	const FVector AtOrigin = Actor("Crate")->GetActorTransform().GetTranslation();
	bool bMenuSeen = false;
	WhenMenuOpens(
		[&](QMenu& Menu)
		{
			bMenuSeen = true;
			for (QAction* Action : Menu.actions())
			{
				if (Action->menu() && Action->text() == QLatin1String("Set Pivot"))
				{
					const QPoint Place = Menu.mapToGlobal(Menu.actionGeometry(Action).center());
					Send({QStringLiteral("mousemove"), QString::number(Place.x()), QString::number(Place.y())});
					EXPECT_TRUE(Until([&] { return Action->menu()->isVisible(); })) << "opens when pointed at";
					Pump(300);
					Picture("05-menu");
					QMenu& Pivots = *Action->menu();
					for (QAction* Pivot : Pivots.actions())
					{
						if (Pivot->objectName() == QLatin1String("PivotTop"))
						{
							Click(Pivots.mapToGlobal(Pivots.actionGeometry(Pivot).center()));
							return;
						}
					}
				}
			}
		});
	Click(LineOf("Crate"), "3");
	EXPECT_TRUE(Until([&] { return bMenuSeen && !QApplication::activePopupWidget(); }));
	EXPECT_TRUE(Until([&] { return !(Actor("Crate")->GetActorTransform().GetTranslation() == AtOrigin); }));

	// Chords pass while text is typed, and while a session is played.
	const int32 Length = History().GetQueueLength();
	Select("Rock");
	Click(*Window().GetOutliner()->GetSearchField());
	Chord("ctrl+shift+b");
	Chord("r");
	EXPECT_EQ(Window().GetOutliner()->GetSearchField()->text().toStdString(), "r");
	EXPECT_EQ(History().GetQueueLength(), Length);
	Chord("BackSpace");
	Select("Rock");
	Chord("alt+p");
	EXPECT_TRUE(Until([] { return GEditor->PlayWorld != nullptr; }));
	Chord("ctrl+shift+b");
	Pump(200);
	Picture("06-play");
	EXPECT_EQ(History().GetQueueLength(), Length);
	Chord("Escape");
	EXPECT_TRUE(Until([] { return GEditor->PlayWorld == nullptr; }));

	// Save, compare, open again.
	Chord("ctrl+s");
	EXPECT_TRUE(Until([&] { return !Document().IsDirty(); }));
	const FTarvinRun Diff = RunTarvin({"diff", Path("before.gltf"), Yard()});
	EXPECT_EQ(Diff.ExitCode, 0) << Diff.Output;
	EXPECT_TRUE(Window().OpenScene(QString::fromStdString(Yard())));
	EXPECT_TRUE(IsBaked("Wall A"));
	Pump(800);
	Picture("07-reopened");
}

TEST(RealProgram, OpensAScenesWindowAndEndsWhenItIsClosed)
{
	const std::filesystem::path Folder =
		std::filesystem::temp_directory_path() / ("tarvin-real-" + std::to_string(getpid()));
	std::filesystem::create_directories(Folder);
	const std::string Scene = (Folder / "yard.gltf").string();
	ASSERT_EQ(RunTarvin({"demo", Scene}).ExitCode, 0);
	ASSERT_EQ(setenv("XDG_CONFIG_HOME", (Folder / "config").c_str(), 1), 0);
	// What the graphics driver leaves behind is not ours, and has no name any more once the driver is unloaded. Leaks
	// of the window itself are looked for in the test above.
	const std::string Script = "ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0 " + std::string(TARVIN_EDITOR) + " " + Scene +
							   " & Window=$(timeout 30 xdotool search --sync --onlyvisible --name '^yard.gltf - Tarvin "
							   "Editor$') && xdotool windowactivate --sync $Window key ctrl+q; wait %1";
	const FTarvinRun Run = RunProgram({"bash", "-c", Script});
	EXPECT_EQ(Run.ExitCode, 0) << Run.Errors;
	EXPECT_TRUE(std::filesystem::exists(Folder / "config/tarvin/editor.ini"));
	std::filesystem::remove_all(Folder);
}
