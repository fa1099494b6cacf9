// SPDX-License-Identifier: MIT
#include "EditorSession.h"
#include "EditorSettings.h"
#include "LogPanel.h"
#include "MainWindow.h"
#include "Slate/InputBindingManager.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <clocale>

int main(int ArgumentCount, char** Arguments)
{
	QApplication Application(ArgumentCount, Arguments);
	// Numbers are written the same way everywhere; the toolkit's own way with them is of no concern to the host.
	std::setlocale(LC_NUMERIC, "C");
	QApplication::setApplicationName(QStringLiteral("tarvin-editor"));
	QApplication::setApplicationDisplayName(QString());
	QApplication::setApplicationVersion(QStringLiteral(TARVIN_VERSION));
	QCommandLineParser Parser;
	Parser.setApplicationDescription(QStringLiteral("Edits glTF scenes: turns and scales are folded into meshes, "
													"pivots are moved, and nothing moves in the world."));
	Parser.addHelpOption();
	Parser.addVersionOption();
	Parser.addPositionalArgument(
		QStringLiteral("SCENE"), QStringLiteral("The .gltf or .glb file to open."), QStringLiteral("[SCENE]"));
	Parser.process(Application);
	if (Parser.positionalArguments().size() > 1)
	{
		Parser.showHelp(2);
	}

	FTerminalLogSink Terminal(stderr, ELogVerbosity::Warning);
	FLog::AddSink(&Terminal);
	// Made first, so that it shows what starting up had to say.
	auto* Log = new FLogPanel;
	FEditorSettings Settings(FEditorSettings::DefaultFile());
	ApplyQtTheme(Settings.GetTheme());
	FEditorOptions Options;
	Options.ChordsFile = FInputBindingManager::DefaultUserChordsFile();
	FEditorSession Session(Options);
	FMainWindow Window(Session, Settings, Log);
	Window.show();
	if (!Parser.positionalArguments().isEmpty())
	{
		QTimer::singleShot(0, &Window, [&] { Window.OpenScene(Parser.positionalArguments().constFirst()); });
	}
	return QApplication::exec();
}
