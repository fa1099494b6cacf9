// SPDX-License-Identifier: MIT
#include "MainWindow.h"

#include "ActorMenu.h"
#include "AssetPanel.h"
#include "DetailsPanel.h"
#include "Editor/EditorEngine.h"
#include "HistoryPanel.h"
#include "LevelCommands.h"
#include "LogPanel.h"
#include "OutlinerPanel.h"
#include "Questions.h"
#include "SelectionQueries.h"
#include "ShortcutsDialog.h"
#include "Slate/SlateApplication.h"
#include "SlateQt/QtText.h"
#include "Viewport/ViewportPanel.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QTimer>

namespace
{
QString SceneFilter()
{
	return ToQString(NSLOCTEXT("TarvinEditor", "SceneFilter", "glTF scenes")) + QStringLiteral(" (*.gltf *.glb)");
}

/// The first local file among what is dragged that may be a scene; empty for none.
QString DraggedScene(const QMimeData& Data)
{
	for (const QUrl& Url : Data.urls())
	{
		const QString Path = Url.toLocalFile();
		if (Path.endsWith(QLatin1String(".gltf"), Qt::CaseInsensitive) ||
			Path.endsWith(QLatin1String(".glb"), Qt::CaseInsensitive))
		{
			return Path;
		}
	}
	return {};
}
} // namespace

FMainWindow::FMainWindow(FEditorSession& InSession, FEditorSettings& InSettings, FLogPanel* InLog)
	: Session(InSession)
	, Settings(InSettings)
	, Viewport(new FViewportPanel(this))
	, Outliner(new FOutlinerPanel(this))
	, Details(new FDetailsPanel(InSession.GetDocument(), this))
	, Assets(new FAssetPanel(InSession.GetDocument(), this))
	, History(new FHistoryPanel(InSession.GetDocument(), this))
	, Log(InLog)
	, SelectionStatus(new QLabel(this))
	, PlayStatus(new QLabel(this))
{
	setObjectName(QStringLiteral("MainWindow"));
	setAcceptDrops(true);
	resize(1280, 800);
	setCentralWidget(Viewport);
	AddDocks();
	statusBar()->addWidget(SelectionStatus, 1);
	statusBar()->addPermanentWidget(PlayStatus);
	MapActions();
	AddMenus();
	if (!Settings.Geometry.isEmpty())
	{
		restoreGeometry(Settings.Geometry);
		restoreState(Settings.Layout);
	}
	const auto OpenMenu = [this](const QPoint& Place) { ActorMenu::Open(Place, this); };
	Outliner->OnContextMenu = OpenMenu;
	Viewport->OnContextMenu = OpenMenu;
	Session.SetFocusAction([this] { Viewport->FrameSelection(); });

	FEditorDocument& Document = Session.GetDocument();
	ChangedHandle = Document.OnChanged().AddLambda([this] { ShowStateSoon(); });
	OpenedHandle = Document.OnOpened().AddLambda([this] { Viewport->SetWorldChanged(); });
	SelectionHandle = GEditor->GetSelectedActors()->OnChanged().AddLambda([this] { ShowStateSoon(); });
	PlayHandle = GEditor->OnPlaySession().AddLambda([this](bool) { ShowStateSoon(); });
	Session.GetBackend().SetMainWindow(this);
	// Not the search field, which comes first: chords are to work from the start.
	Outliner->GetView()->setFocus();
	ShowState();
}

FMainWindow::~FMainWindow()
{
	Session.GetBackend().SetMainWindow(nullptr);
	Session.SetFocusAction({});
	UnmapActions();
	Session.GetDocument().OnChanged().Remove(ChangedHandle);
	Session.GetDocument().OnOpened().Remove(OpenedHandle);
	GEditor->GetSelectedActors()->OnChanged().Remove(SelectionHandle);
	GEditor->OnPlaySession().Remove(PlayHandle);
}

void FMainWindow::AddDocks()
{
	const auto AddDock = [this](QWidget* Content, const FText& Title, Qt::DockWidgetArea Area)
	{
		auto* Dock = new QDockWidget(ToQString(Title), this);
		Dock->setObjectName(Content->objectName() + QStringLiteral("Dock"));
		Dock->setWidget(Content);
		addDockWidget(Area, Dock);
		return Dock;
	};
	setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
	AddDock(Outliner, NSLOCTEXT("TarvinEditor", "OutlinerDock", "Outliner"), Qt::RightDockWidgetArea);
	AddDock(Details, NSLOCTEXT("TarvinEditor", "DetailsDock", "Details"), Qt::RightDockWidgetArea);
	QDockWidget* const AssetDock =
		AddDock(Assets, NSLOCTEXT("TarvinEditor", "AssetsDock", "Assets"), Qt::BottomDockWidgetArea);
	QDockWidget* const LogDock = AddDock(Log, NSLOCTEXT("TarvinEditor", "LogDock", "Log"), Qt::BottomDockWidgetArea);
	QDockWidget* const HistoryDock =
		AddDock(History, NSLOCTEXT("TarvinEditor", "HistoryDock", "History"), Qt::BottomDockWidgetArea);
	resizeDocks({findChild<QDockWidget*>(QStringLiteral("OutlinerDock"))}, {340}, Qt::Horizontal);
	resizeDocks({findChild<QDockWidget*>(QStringLiteral("OutlinerDock")),
					findChild<QDockWidget*>(QStringLiteral("DetailsDock"))},
		{480, 220}, Qt::Vertical);
	resizeDocks({AssetDock, LogDock, HistoryDock}, {320, 420, 200}, Qt::Horizontal);
	resizeDocks({AssetDock, LogDock, HistoryDock}, {170, 170, 170}, Qt::Vertical);
}

void FMainWindow::AddMenus()
{
	const auto Add = [this](const char* Name, const FText& Title, std::function<std::vector<FQtMenuEntry>()> Make)
	{
		auto* Menu = new FQtMenu(std::move(Make), this);
		Menu->setObjectName(QLatin1String(Name));
		Menu->setTitle(ToLabel(Title));
		menuBar()->addMenu(Menu);
		// A menu bar passes over menus that are empty before they open.
		Menu->Rebuild();
	};
	const FLevelCommands* const Level = &FLevelCommands::Get();
	const FWindowCommands* const Window = &FWindowCommands::Get();
	const auto LevelEntry = [List = Session.GetLevelActions()](const TSharedPtr<FUICommandInfo>& Command)
	{ return FQtMenuEntry::Command(Command.ToSharedRef(), List); };
	const auto WindowEntry = [List = Session.GetWindowActions()](const TSharedPtr<FUICommandInfo>& Command)
	{ return FQtMenuEntry::Command(Command.ToSharedRef(), List); };
	const FQtMenuEntry Line = FQtMenuEntry::Section(FText());

	Add("FileMenu", NSLOCTEXT("TarvinEditor", "FileMenu", "File"), [this] { return MakeFileEntries(); });
	Add("EditMenu", NSLOCTEXT("TarvinEditor", "EditMenu", "Edit"),
		[=]
		{
			return std::vector<FQtMenuEntry>{LevelEntry(Level->Undo), LevelEntry(Level->Redo), Line,
				LevelEntry(Level->SelectAll), LevelEntry(Level->SelectNone), Line, LevelEntry(Level->Duplicate),
				LevelEntry(Level->Delete), Line, WindowEntry(Window->EditShortcuts)};
		});
	Add("ActorMenuBar", NSLOCTEXT("TarvinEditor", "ActorMenu", "Actor"), [] { return ActorMenu::MakeEntries(); });
	Add("ViewMenu", NSLOCTEXT("TarvinEditor", "ViewMenu", "View"), [this] { return MakeViewEntries(); });
	Add("PlayMenu", NSLOCTEXT("TarvinEditor", "PlayMenu", "Play"),
		[=] {
			return std::vector<FQtMenuEntry>{WindowEntry(Window->StartPlay), WindowEntry(Window->StopPlay)};
		});
}

std::vector<FQtMenuEntry> FMainWindow::MakeFileEntries()
{
	const FWindowCommands& Commands = FWindowCommands::Get();
	const auto Entry = [this](const TSharedPtr<FUICommandInfo>& Command)
	{ return FQtMenuEntry::Command(Command.ToSharedRef(), Session.GetWindowActions()); };
	const auto MakeRecent = [this]
	{
		std::vector<FQtMenuEntry> Entries;
		for (const QString& Path : Settings.GetRecentScenes())
		{
			Entries.push_back(FQtMenuEntry::Plain(ToFText(QFileInfo(Path).fileName()), ToFText(Path),
				FUIAction(FExecuteAction::CreateLambda([this, Path] { OpenScene(Path); }))));
		}
		return Entries;
	};
	std::vector<FQtMenuEntry> Entries = {Entry(Commands.OpenScene)};
	if (!Settings.GetRecentScenes().isEmpty())
	{
		FQtMenuEntry Recent = FQtMenuEntry::SubMenu(NSLOCTEXT("TarvinEditor", "RecentScenes", "Recent Scenes"),
			NSLOCTEXT("TarvinEditor", "RecentScenesTip", "The scenes that were opened or saved last"), MakeRecent);
		Recent.Name = FName(TEXT("RecentScenes"));
		Entries.push_back(Recent);
	}
	Entries.insert(
		Entries.end(), {FQtMenuEntry::Section(FText()), Entry(Commands.SaveScene), Entry(Commands.SaveSceneAs),
						   FQtMenuEntry::Section(FText()), Entry(Commands.Quit)});
	return Entries;
}

std::vector<FQtMenuEntry> FMainWindow::MakeViewEntries()
{
	const FWindowCommands& Commands = FWindowCommands::Get();
	std::vector<FQtMenuEntry> Entries = {
		FQtMenuEntry::Command(FLevelCommands::Get().FocusSelection.ToSharedRef(), Session.GetLevelActions()),
		FQtMenuEntry::Section(NSLOCTEXT("TarvinEditor", "PanelsSection", "Panels"))};
	for (QDockWidget* Dock : findChildren<QDockWidget*>())
	{
		FQtMenuEntry Entry = FQtMenuEntry::Plain(ToFText(Dock->windowTitle()), FText(),
			FUIAction(FExecuteAction::CreateLambda([Dock] { Dock->setVisible(!Dock->isVisible()); }),
				FCanExecuteAction(),
				FGetActionCheckState::CreateLambda(
					[Dock] { return Dock->isVisible() ? ECheckBoxState::Checked : ECheckBoxState::Unchecked; })));
		Entry.Type = EUserInterfaceActionType::Check;
		Entry.Name = FName(ToFString(Dock->objectName()));
		Entries.push_back(Entry);
	}
	Entries.push_back(FQtMenuEntry::Section(NSLOCTEXT("TarvinEditor", "ThemeSection", "Colours")));
	for (const TSharedPtr<FUICommandInfo>& Theme : {Commands.SystemTheme, Commands.LightTheme, Commands.DarkTheme})
	{
		Entries.push_back(FQtMenuEntry::Command(Theme.ToSharedRef(), Session.GetWindowActions()));
	}
	return Entries;
}

void FMainWindow::MapActions()
{
	const FWindowCommands& Commands = FWindowCommands::Get();
	FUICommandList& List = *Session.GetWindowActions();
	const auto Map = [&List](const TSharedPtr<FUICommandInfo>& Command, auto Run, auto Can)
	{ List.MapAction(Command, FExecuteAction::CreateLambda(Run), FCanExecuteAction::CreateLambda(Can)); };
	const auto IsSceneOpen = [this] { return Session.GetDocument().IsOpen(); };
	const auto Always = [] { return true; };
	Map(
		Commands.OpenScene, [this] { ChooseSceneToOpen(); }, Always);
	Map(
		Commands.SaveScene, [this] { SaveScene(); }, IsSceneOpen);
	Map(
		Commands.SaveSceneAs, [this] { ChooseWhereToSave(); }, IsSceneOpen);
	Map(
		Commands.Quit, [this] { close(); }, Always);
	Map(
		Commands.StartPlay, [] { GEditor->StartPlaySession(); },
		[this] { return Session.GetDocument().IsOpen() && !GEditor->PlayWorld; });
	Map(
		Commands.StopPlay, [] { GEditor->EndPlaySession(); }, [] { return GEditor->PlayWorld != nullptr; });
	Map(
		Commands.EditShortcuts, [this] { EditShortcuts(); }, Always);
	const auto MapTheme = [&](const TSharedPtr<FUICommandInfo>& Command, EQtTheme Theme)
	{
		List.MapAction(Command, FExecuteAction::CreateLambda([this, Theme] { Settings.SetTheme(Theme); }),
			FCanExecuteAction(),
			FGetActionCheckState::CreateLambda([this, Theme]
				{ return Settings.GetTheme() == Theme ? ECheckBoxState::Checked : ECheckBoxState::Unchecked; }));
	};
	MapTheme(Commands.SystemTheme, EQtTheme::System);
	MapTheme(Commands.LightTheme, EQtTheme::Light);
	MapTheme(Commands.DarkTheme, EQtTheme::Dark);
}

void FMainWindow::UnmapActions()
{
	for (const TSharedRef<FUICommandInfo>& Command :
		FInputBindingManager::Get().GetCommandInfosFromContext(FWindowCommands::Get().GetContextName()))
	{
		Session.GetWindowActions()->UnmapAction(Command);
	}
}

bool FMainWindow::MayReplaceScene()
{
	const FEditorDocument& Document = Session.GetDocument();
	if (!Document.IsDirty())
	{
		return true;
	}
	switch (Questions::AskAboutUnsaved(FString::FromUtf8(Document.GetFileName())))
	{
	case Questions::EUnsavedAnswer::Save:
		return SaveScene();
	case Questions::EUnsavedAnswer::Discard:
		return true;
	default:
		return false;
	}
}

bool FMainWindow::OpenScene(const QString& Path)
{
	if (!MayReplaceScene())
	{
		return false;
	}
	QApplication::setOverrideCursor(Qt::WaitCursor);
	const FSceneStatus Status = Session.GetDocument().Open(Path.toStdString());
	QApplication::restoreOverrideCursor();
	if (!Status)
	{
		if (!QFileInfo::exists(Path))
		{
			Settings.RemoveRecentScene(QFileInfo(Path).absoluteFilePath());
		}
		Questions::TellError(NSLOCTEXT("TarvinEditor", "OpenFailed", "The Scene Cannot Be Opened"),
			FString::FromUtf8(Status.Error().Message));
		return false;
	}
	Settings.AddRecentScene(QString::fromStdString(Session.GetDocument().GetPath()));
	Outliner->Refresh();
	return true;
}

bool FMainWindow::SaveScene()
{
	return SaveSceneTo(QString::fromStdString(Session.GetDocument().GetPath()));
}

bool FMainWindow::SaveSceneTo(const QString& Path)
{
	QApplication::setOverrideCursor(Qt::WaitCursor);
	const FSceneStatus Status = Session.GetDocument().Save(Path.toStdString());
	QApplication::restoreOverrideCursor();
	if (!Status)
	{
		Questions::TellError(NSLOCTEXT("TarvinEditor", "SaveFailed", "The Scene Was Not Saved"),
			FString::FromUtf8(Status.Error().Message));
		return false;
	}
	Settings.AddRecentScene(QString::fromStdString(Session.GetDocument().GetPath()));
	return true;
}

void FMainWindow::ChooseSceneToOpen()
{
	const QString Folder = QFileInfo(QString::fromStdString(Session.GetDocument().GetPath())).absolutePath();
	const QString Path =
		QFileDialog::getOpenFileName(this, ToQString(NSLOCTEXT("TarvinEditor", "OpenTitle", "Open Scene")), Folder,
			SceneFilter(), nullptr, QFileDialog::DontUseNativeDialog);
	if (!Path.isEmpty())
	{
		OpenScene(Path);
	}
}

void FMainWindow::ChooseWhereToSave()
{
	const QString Path =
		QFileDialog::getSaveFileName(this, ToQString(NSLOCTEXT("TarvinEditor", "SaveTitle", "Save Scene As")),
			QString::fromStdString(Session.GetDocument().GetPath()), SceneFilter(), nullptr,
			QFileDialog::DontUseNativeDialog);
	if (!Path.isEmpty())
	{
		SaveSceneTo(Path);
	}
}

void FMainWindow::EditShortcuts()
{
	FShortcutsDialog Dialog(this);
	Dialog.exec();
}

void FMainWindow::closeEvent(QCloseEvent* Event)
{
	if (FSlateApplication::Get().IsModalOrProgressOpen() || !MayReplaceScene())
	{
		Event->ignore();
		return;
	}
	GEditor->EndPlaySession();
	Settings.Geometry = saveGeometry();
	Settings.Layout = saveState();
	Settings.Save();
	Event->accept();
}

void FMainWindow::dragEnterEvent(QDragEnterEvent* Event)
{
	if (!DraggedScene(*Event->mimeData()).isEmpty())
	{
		Event->acceptProposedAction();
	}
}

void FMainWindow::dropEvent(QDropEvent* Event)
{
	const QString Path = DraggedScene(*Event->mimeData());
	if (!Path.isEmpty())
	{
		Event->acceptProposedAction();
		// The program that the file comes from waits for the end of the drop, not for a question.
		QTimer::singleShot(0, this, [this, Path] { OpenScene(Path); });
	}
}

void FMainWindow::ShowStateSoon()
{
	if (!bStatePending)
	{
		bStatePending = true;
		QTimer::singleShot(0, this, [this] { ShowState(); });
	}
}

void FMainWindow::ShowState()
{
	bStatePending = false;
	const FEditorDocument& Document = Session.GetDocument();
	const FText Name = Document.IsOpen() ? FText::FromString(FString::FromUtf8(Document.GetFileName()))
										 : NSLOCTEXT("TarvinEditor", "NoScene", "No scene");
	setWindowTitle(ToWindowTitle(Name) + QStringLiteral("[*] - Tarvin Editor"));
	setWindowModified(Document.IsDirty());
	const TArray<AActor*> Selected = SelectionQueries::SelectedActors();
	SelectionStatus->setText(
		Selected.Num() == 1
			? ToQString(Selected[0]->GetActorLabel()).toHtmlEscaped()
			: ToQString(FText::Format(NSLOCTEXT("TarvinEditor", "StatusSelected", "{0} actors selected"),
				  FText::AsNumber(Selected.Num()))));
	PlayStatus->setText(GEditor->PlayWorld
							? ToQString(NSLOCTEXT("TarvinEditor", "Playing", "Play session: press Escape to stop"))
							: QString());
}
