// SPDX-License-Identifier: MIT
// What users of the editor wait for: the window, a scene of many actors, and the next page of the outliner.
//
// Off screen, so without the picture of the level. "Start" ends with a window that has been drawn; "Open" with an
// outliner that shows the scene; "Scroll" moves the outliner by one page and draws it.
#include "EditorSession.h"
#include "EditorSettings.h"
#include "LogPanel.h"
#include "MainWindow.h"
#include "OutlinerPanel.h"
#include "SlateQt/QtPrelude.h"

#include <QApplication>
#include <QScrollBar>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

namespace
{
class FRunningEditor
{
public:
	FRunningEditor()
	{
		Window.show();
		Settle();
	}

	static void Settle()
	{
		QCoreApplication::processEvents();
		QCoreApplication::processEvents();
	}

	FEditorSettings Settings{QString()};
	FLogPanel* Log = new FLogPanel;
	FEditorSession Session{FEditorOptions()};
	FMainWindow Window{Session, Settings, Log};
};

/// A scene of `NumNodes` nodes that share one triangle; gone at the end.
class FSceneFile
{
public:
	explicit FSceneFile(int64_t NumNodes)
		: Path(std::filesystem::temp_directory_path() /
			   ("tarvin-benchmark-" + std::to_string(NumNodes) + "-" + std::to_string(std::rand()) + ".gltf"))
	{
		std::ofstream File(Path);
		File
			<< R"({"asset":{"version":"2.0"},"scene":0,"buffers":[{"byteLength":36,"uri":"data:application/octet-stream;base64,)"
			<< R"(AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"}],"bufferViews":[{"buffer":0,"byteLength":36}],)"
			<< R"("accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]}],)"
			<< R"("meshes":[{"name":"Triangle","primitives":[{"attributes":{"POSITION":0}}]}],"scenes":[{"nodes":[)";
		for (int64_t Node = 0; Node < NumNodes; ++Node)
		{
			File << (Node ? "," : "") << Node;
		}
		File << R"(]}],"nodes":[)";
		for (int64_t Node = 0; Node < NumNodes; ++Node)
		{
			File << (Node ? "," : "") << R"({"name":"Node )" << Node << R"(","mesh":0,"scale":[2,1,1],"translation":[)"
				 << Node % 316 << ",0," << Node / 316 << "]}";
		}
		File << "]}";
	}
	~FSceneFile() { std::filesystem::remove(Path); }
	FSceneFile(const FSceneFile&) = delete;
	FSceneFile& operator=(const FSceneFile&) = delete;

	QString Name() const { return QString::fromStdString(Path.string()); }

private:
	std::filesystem::path Path;
};

void Start(benchmark::State& State)
{
	for (auto _ : State)
	{
		auto Editor = std::make_unique<FRunningEditor>();
		State.PauseTiming();
		Editor.reset();
		State.ResumeTiming();
	}
}

void Open(benchmark::State& State)
{
	FRunningEditor Editor;
	const FSceneFile Scene(State.range(0));
	for (auto _ : State)
	{
		if (!Editor.Window.OpenScene(Scene.Name()))
		{
			State.SkipWithError("the scene was not opened");
			return;
		}
		FRunningEditor::Settle();
	}
	if (Editor.Window.GetOutliner()->GetModel()->GetNumActors() != State.range(0))
	{
		State.SkipWithError("the outliner does not show the scene");
	}
}

void Scroll(benchmark::State& State)
{
	FRunningEditor Editor;
	const FSceneFile Scene(State.range(0));
	if (!Editor.Window.OpenScene(Scene.Name()))
	{
		State.SkipWithError("the scene was not opened");
		return;
	}
	FRunningEditor::Settle();
	QScrollBar& Bar = *Editor.Window.GetOutliner()->GetView()->verticalScrollBar();
	for (auto _ : State)
	{
		Bar.setValue(Bar.value() >= Bar.maximum() - Bar.pageStep() ? 0 : Bar.value() + Bar.pageStep());
		FRunningEditor::Settle();
	}
}
} // namespace

BENCHMARK(Start)->Unit(benchmark::kMillisecond);
BENCHMARK(Open)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(Scroll)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

int main(int ArgumentCount, char** Arguments)
{
	if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
	{
		qputenv("QT_QPA_PLATFORM", "offscreen");
	}
	const QApplication Application(ArgumentCount, Arguments);
	benchmark::Initialize(&ArgumentCount, Arguments);
	benchmark::RunSpecifiedBenchmarks();
	benchmark::Shutdown();
	return 0;
}
