// SPDX-License-Identifier: MIT
#include "TarvinInputPreProcessor.h"

#include "Platform/Editor.h"
#include "Platform/Engine.h"
#include "TarvinTransformCommands.h"

namespace
{
bool HasStaticMesh(const AActor& Actor)
{
	for (const UStaticMeshComponent* Component : Actor.GetComponentsOf<UStaticMeshComponent>())
	{
		if (Component->GetStaticMesh())
		{
			return true;
		}
	}
	return false;
}
} // namespace

void FTarvinInputPreProcessor::Tick(const float, FSlateApplication&, TSharedRef<ICursor>) {}

bool FTarvinInputPreProcessor::HandleKeyDownEvent(FSlateApplication&, const FKeyEvent& Event)
{
	// Holding a chord down runs its command once.
	if (Event.IsRepeat())
	{
		return false;
	}
	const FInputChord Chord(
		Event.GetKey(), Event.IsShiftDown(), Event.IsControlDown(), Event.IsAltDown(), Event.IsCommandDown());
	const TSharedPtr<FUICommandInfo> Command = FindCommandByChord(Chord);
	if (!Command.IsValid() || !ShouldIntercept(GatherInterceptState()))
	{
		return false;
	}
	const FLevelEditorModule* const LevelEditor =
		FModuleManager::Get().GetModulePtr<FLevelEditorModule>(TEXT("LevelEditor"));
	if (!LevelEditor)
	{
		return false;
	}
	const FUIAction* const Action = LevelEditor->GetGlobalLevelEditorActions()->GetActionForCommand(Command);
	if (!Action || !Action->CanExecute())
	{
		return false;
	}
	// Executing asks once more; the chord is used up whatever the answer.
	Action->Execute();
	return true;
}

const TCHAR* FTarvinInputPreProcessor::GetDebugName() const
{
	return TEXT("TarvinTransform");
}

TSharedPtr<FUICommandInfo> FTarvinInputPreProcessor::FindCommandByChord(const FInputChord& Chord)
{
	if (!Chord.Key.IsValid() || Chord.Key.IsModifierKey())
	{
		return nullptr;
	}
	for (const TSharedPtr<FUICommandInfo>& Command : FTarvinTransformCommands::GetAllCommands())
	{
		if (Command.IsValid() && (Command->GetActiveChord(EMultipleKeyBindingIndex::Primary) == Chord ||
									 Command->GetActiveChord(EMultipleKeyBindingIndex::Secondary) == Chord))
		{
			return Command;
		}
	}
	return nullptr;
}

FTarvinInterceptState FTarvinInputPreProcessor::GatherInterceptState()
{
	FTarvinInterceptState State;
	if (FSlateApplication::IsInitialized())
	{
		const TSharedPtr<SWidget> Focused = FSlateApplication::Get().GetKeyboardFocusedWidget();
		State.bTextFieldFocused =
			Focused.IsValid() && Focused->GetTypeAsString().Contains(TEXT("EditableText"), ESearchCase::IgnoreCase);
	}
	if (!GEditor)
	{
		return State;
	}
	State.bInPlayInEditor = GEditor->PlayWorld != nullptr;
	const USelection* const Selection = GEditor->GetSelectedActors();
	for (int32 Index = 0; Selection && Index < Selection->Num() && !State.bHasStaticMeshSelected; ++Index)
	{
		const AActor* const Actor = Cast<AActor>(Selection->GetSelectedObject(Index));
		State.bHasStaticMeshSelected = Actor && HasStaticMesh(*Actor);
	}
	return State;
}

bool FTarvinInputPreProcessor::ShouldIntercept(const FTarvinInterceptState& State)
{
	return !State.bTextFieldFocused && !State.bInPlayInEditor && State.bHasStaticMeshSelected;
}
