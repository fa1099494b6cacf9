// SPDX-License-Identifier: MIT
#include "TarvinTransformModule.h"

#include "Platform/CoreUObject.h"
#include "Platform/ToolMenus.h"
#include "TarvinInputPreProcessor.h"
#include "TarvinMenus.h"
#include "TarvinSelectionAction.h"
#include "TarvinTransformCommands.h"
#include "TarvinTransformLog.h"
#include "TarvinTransformOp.h"

DEFINE_LOG_CATEGORY(LogTarvinAction);
DEFINE_LOG_CATEGORY(LogTarvinOp);

IMPLEMENT_MODULE(FTarvinTransformModule, TarvinTransform)

namespace
{
/// The editor's transaction buffer; null when there is no editor, or its transaction system is another one.
UTransBuffer* FindTransactionBuffer()
{
	return GEditor ? Cast<UTransBuffer>(GEditor->Trans.Get()) : nullptr;
}
} // namespace

void FTarvinTransformModule::StartupModule()
{
	FTarvinTransformCommands::Register();

	CommandList =
		FModuleManager::Get().LoadModuleChecked<FLevelEditorModule>(TEXT("LevelEditor")).GetGlobalLevelEditorActions();
	MapCommands();

	if (UTransBuffer* const Buffer = FindTransactionBuffer())
	{
		UndoHandle = Buffer->OnUndo().AddStatic(&FTarvinTransformModule::HandleUndoRedo);
		RedoHandle = Buffer->OnRedo().AddStatic(&FTarvinTransformModule::HandleUndoRedo);
	}
	if (FSlateApplication::IsInitialized())
	{
		InputPreProcessor = MakeShared<FTarvinInputPreProcessor>();
		FSlateApplication::Get().RegisterInputPreProcessor(InputPreProcessor);
	}
	ToolMenusStartupHandle =
		UToolMenus::RegisterStartupCallback(FSimpleDelegate::CreateStatic(&TarvinMenus::RegisterMenus));
}

void FTarvinTransformModule::ShutdownModule()
{
	UToolMenus::UnRegisterStartupCallback(ToolMenusStartupHandle);
	if (FModuleManager::Get().IsModuleLoaded(TEXT("ToolMenus")))
	{
		if (UToolMenus* const ToolMenus = UToolMenus::Get())
		{
			ToolMenus->UnregisterOwner(this);
		}
	}
	if (InputPreProcessor.IsValid())
	{
		if (FSlateApplication::IsInitialized())
		{
			FSlateApplication::Get().UnregisterInputPreProcessor(InputPreProcessor);
		}
		InputPreProcessor.Reset();
	}
	if (UTransBuffer* const Buffer = FindTransactionBuffer())
	{
		Buffer->OnUndo().Remove(UndoHandle);
		Buffer->OnRedo().Remove(RedoHandle);
	}
	UnmapCommands();
	FTarvinTransformCommands::Unregister();
}

void FTarvinTransformModule::MapCommands()
{
	const TSharedPtr<FUICommandInfo> BakeTransform = FTarvinTransformCommands::Get().BakeTransform;
	if (!CommandList->IsActionMapped(BakeTransform))
	{
		CommandList->MapAction(BakeTransform,
			FExecuteAction::CreateStatic(&FTarvinSelectionAction::ExecuteFromEditorSelection),
			EUIActionRepeatMode::RepeatDisabled);
	}
	const TArray<TSharedPtr<FUICommandInfo>> PivotCommands = FTarvinTransformCommands::GetPivotCommands();
	for (int32 Index = 0; Index < PivotCommands.Num(); ++Index)
	{
		if (!CommandList->IsActionMapped(PivotCommands[Index]))
		{
			CommandList->MapAction(PivotCommands[Index],
				FExecuteAction::CreateStatic(
					&FTarvinSelectionAction::ExecuteSetPivot, static_cast<ETarvinPivotPosition>(Index)),
				EUIActionRepeatMode::RepeatDisabled);
		}
	}
}

void FTarvinTransformModule::UnmapCommands()
{
	if (!CommandList.IsValid())
	{
		return;
	}
	// Unmaps what start found already mapped, too.
	for (const TSharedPtr<FUICommandInfo>& Command : FTarvinTransformCommands::GetAllCommands())
	{
		CommandList->UnmapAction(Command);
	}
	CommandList.Reset();
}

void FTarvinTransformModule::HandleUndoRedo(const FTransactionContext& Context, bool bSucceeded)
{
	if (bSucceeded && Context.Context.Equals(TEXT("TarvinTransform"), ESearchCase::IgnoreCase))
	{
		FTarvinTransformOp::RebuildMeshesAfterUndo();
	}
}
