// SPDX-License-Identifier: MIT
#include "EditorSession.h"

#include "ActorMenu.h"
#include "CoreUObject/GarbageCollector.h"
#include "Editor/EditorEngine.h"
#include "Editor/LevelEditor.h"
#include "LevelActions.h"
#include "LevelCommands.h"
#include "Slate/InputBindingManager.h"
#include "Slate/SlateApplication.h"
#include "Slate/SlateNotificationManager.h"

/// Sees keys before plug-ins do, so that what they may work on is known when a chord runs them.
class FEditorSession::FProtectFirst final : public IInputProcessor
{
public:
	explicit FProtectFirst(FEditorDocument& InDocument)
		: Document(InDocument)
	{
	}

	void Tick(const float, FSlateApplication&, TSharedRef<ICursor>) override {}
	bool HandleKeyDownEvent(FSlateApplication&, const FKeyEvent&) override
	{
		Document.UpdateProtection();
		return false;
	}
	const TCHAR* GetDebugName() const override { return TEXT("SceneProtection"); }

private:
	FEditorDocument& Document;
};

FEditorSession::FEditorSession(const FEditorOptions& Options)
{
	FSlateApplication::Create(StaticCastSharedPtr<ISlateBackend>(TSharedPtr<FSlateQtBackend>(Backend)).ToSharedRef());
	UEditorEngine::Create();
	Progress = std::make_unique<FSlowTaskProgress>();
	Document = std::make_unique<FEditorDocument>();
	ProtectFirst = MakeShared<FProtectFirst>(*Document);
	FSlateApplication::Get().RegisterInputPreProcessor(ProtectFirst);

	FInputBindingManager::Get().SetUserChordsFile(Options.ChordsFile);
	FModuleManager& Modules = FModuleManager::Get();
	LevelActions = Modules.LoadModuleChecked<FLevelEditorModule>(TEXT("LevelEditor")).GetGlobalLevelEditorActions();
	FLevelCommands::Register();
	FWindowCommands::Register();
	LevelActions::Map(*LevelActions,
		[Run = Focus]
		{
			if (*Run)
			{
				(*Run)();
			}
		});
	FSlateApplication::AddGlobalCommandList(WindowActions);
	Modules.LoadModuleChecked(TEXT("ToolMenus"));
	ActorMenu::Register(LevelActions);
	LoadPlugIns(Options.PlugIns);
}

FEditorSession::~FEditorSession()
{
	FModuleManager& Modules = FModuleManager::Get();
	while (!LoadedPlugIns.IsEmpty())
	{
		Modules.UnloadModule(LoadedPlugIns.Pop());
	}
	ActorMenu::Unregister();
	Modules.UnloadModule(TEXT("ToolMenus"));
	FSlateApplication::RemoveGlobalCommandList(WindowActions);
	LevelActions::Unmap(*LevelActions);
	FWindowCommands::Unregister();
	FLevelCommands::Unregister();
	Modules.UnloadModule(TEXT("LevelEditor"));
	FInputBindingManager::Get().SetUserChordsFile(FString());
	FSlateApplication::Get().UnregisterInputPreProcessor(ProtectFirst);
	Document.reset();
	Progress.reset();
	UEditorEngine::Destroy();
	FSlateNotificationManager::Get().Clear();
	FSlateApplication::Shutdown();
	CollectGarbage();
}

void FEditorSession::LoadPlugIns(const TArray<FName>& Names)
{
	for (const FName& Name : Names)
	{
		if (FModuleManager::Get().LoadModule(Name))
		{
			LoadedPlugIns.Add(Name);
		}
	}
}
