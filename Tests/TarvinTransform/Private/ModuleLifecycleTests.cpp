// SPDX-License-Identifier: MIT
#include "StartedModule.h"
#include "TarvinTransformCommands.h"
#include "TarvinTransformModule.h"

#include "Slate/SlateApplication.h"
#include "TarvinTransformOp.h"

namespace
{
using FLines = std::vector<std::string>;

const FName Module = TEXT("TarvinTransform");
const FTransform Doubled(FQuat::Identity, FVector(500, -200, 30), FVector(2, 2, 2));

struct FCommandRow
{
	const char* Name;
	const char* Label;
	const char* Description;
	FInputChord Chord;
	const char* ChordText;
	const char* Summary;
};

const std::vector<FCommandRow>& Rows()
{
	const auto Pivot = [](const FKey& Key) { return FInputChord(Key, false, true, false, false); };
	static const std::vector<FCommandRow> Table = {
		{"BakeTransform", "Bake Transform", "Bakes the selected static mesh's rotation and scale into the mesh itself",
			FInputChord(EKeys::B, true, true, false, false), "Ctrl+Shift+B", "Baked 1 mesh(es)"},
		{"PivotCenter", "Pivot to Center", "Moves the mesh pivot to the centre of its bounding box",
			Pivot(EKeys::NumPadFive), "Ctrl+Num 5", "Pivot moved to center on 1 mesh(es)"},
		{"PivotBottom", "Pivot to Bottom", "Moves the mesh pivot to the bottom of its bounding box",
			Pivot(EKeys::NumPadSeven), "Ctrl+Num 7", "Pivot moved to bottom on 1 mesh(es)"},
		{"PivotTop", "Pivot to Top", "Moves the mesh pivot to the top of its bounding box", Pivot(EKeys::NumPadNine),
			"Ctrl+Num 9", "Pivot moved to top on 1 mesh(es)"},
		{"PivotLeft", "Pivot to Left", "Moves the mesh pivot to the left side of its bounding box",
			Pivot(EKeys::NumPadFour), "Ctrl+Num 4", "Pivot moved to left on 1 mesh(es)"},
		{"PivotRight", "Pivot to Right", "Moves the mesh pivot to the right side of its bounding box",
			Pivot(EKeys::NumPadSix), "Ctrl+Num 6", "Pivot moved to right on 1 mesh(es)"},
		{"PivotFront", "Pivot to Front", "Moves the mesh pivot to the front of its bounding box",
			Pivot(EKeys::NumPadTwo), "Ctrl+Num 2", "Pivot moved to front on 1 mesh(es)"},
		{"PivotBack", "Pivot to Back", "Moves the mesh pivot to the back of its bounding box",
			Pivot(EKeys::NumPadEight), "Ctrl+Num 8", "Pivot moved to back on 1 mesh(es)"},
		{"PivotWorldOrigin", "Pivot to World Origin", "Moves the mesh pivot to the world origin",
			Pivot(EKeys::NumPadZero), "Ctrl+Num 0", "Pivot moved to world origin on 1 mesh(es)"},
	};
	return Table;
}

/// Starts and stops the module by hand.
class ModuleLifecycle : public FModuleTest
{
protected:
	~ModuleLifecycle() override
	{
		Stop();
		FTarvinTransformCommands::Unregister();
	}

	static FTarvinTransformModule& Start()
	{
		return FModuleManager::Get().LoadModuleChecked<FTarvinTransformModule>(Module);
	}
	static void Stop() { FModuleManager::Get().UnloadModule(Module); }

	static TSharedRef<FUICommandList> Actions()
	{
		return FModuleManager::Get()
			.LoadModuleChecked<FLevelEditorModule>(TEXT("LevelEditor"))
			.GetGlobalLevelEditorActions();
	}
	static TArray<TSharedRef<FUICommandInfo>> Registered()
	{
		return FInputBindingManager::Get().GetCommandInfosFromContext(Module);
	}
	static bool PressBake()
	{
		return FSlateApplication::Get().ProcessKeyDownEvent(
			FKeyEvent(EKeys::B, FModifierKeysState::FromMask(EModifierKey::Control | EModifierKey::Shift)));
	}
};

using StartedModule = FStartedModuleTest;

TEST_F(StartedModule, ContextOfItsCommandsIsThis)
{
	const TSharedPtr<FBindingContext> Context = FInputBindingManager::Get().GetContextByName(Module);
	ASSERT_TRUE(Context.IsValid());
	EXPECT_EQ(Context->GetContextDesc().GetSourceString(), TEXT("Morvel Mesh Transform"));
	EXPECT_EQ(Context->GetContextDesc().GetNamespace(), TEXT("Contexts"));
	EXPECT_EQ(Context->GetContextDesc().GetKey(), TEXT("TarvinTransform"));
	EXPECT_TRUE(Context->GetContextParent().IsNone());
	EXPECT_EQ(Context->GetStyleSetName(), FAppStyle::GetAppStyleSetName());
}

TEST_F(StartedModule, CommandsAreTheseInThisOrder)
{
	const TArray<TSharedRef<FUICommandInfo>> Commands = FInputBindingManager::Get().GetCommandInfosFromContext(Module);
	ASSERT_EQ(Commands.Num(), 9);
	for (int32 Index = 0; Index < 9; ++Index)
	{
		const FCommandRow& Row = Rows()[static_cast<std::size_t>(Index)];
		const FUICommandInfo& Command = *Commands[Index];
		EXPECT_EQ(Utf8(Command.GetCommandName().ToString()), Row.Name);
		EXPECT_EQ(Utf8(Command.GetLabel().ToString()), Row.Label);
		EXPECT_EQ(Utf8(Command.GetDescription().ToString()), Row.Description);
		EXPECT_EQ(Utf8(Command.GetLabel().GetNamespace()), "UICommands.FTarvinTransformCommands");
		EXPECT_EQ(Utf8(Command.GetLabel().GetKey()), Row.Name);
		EXPECT_EQ(Utf8(Command.GetDescription().GetKey()), std::string(Row.Name) + "_ToolTip");
		EXPECT_EQ(Command.GetUserInterfaceType(), EUserInterfaceActionType::Button);
		EXPECT_EQ(Command.GetActiveChord(EMultipleKeyBindingIndex::Primary), Row.Chord) << Row.Name;
		EXPECT_EQ(Command.GetDefaultChord(EMultipleKeyBindingIndex::Primary), Row.Chord);
		EXPECT_EQ(Command.GetActiveChord(EMultipleKeyBindingIndex::Secondary), FInputChord());
		EXPECT_EQ(Utf8(Command.GetInputText().ToString()), Row.ChordText);
	}
}

TEST_F(StartedModule, PivotCommandsAreListedByTheirPosition)
{
	const TArray<TSharedPtr<FUICommandInfo>> Pivots = FTarvinTransformCommands::GetPivotCommands();
	ASSERT_EQ(Pivots.Num(), 8);
	for (int32 Index = 0; Index < 8; ++Index)
	{
		EXPECT_EQ(Utf8(Pivots[Index]->GetCommandName().ToString()), Rows()[static_cast<std::size_t>(Index + 1)].Name);
	}
}

TEST_F(StartedModule, EveryCommandIsMappedToItsOwnActionWithoutConditionOrRepeat)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	for (const FCommandRow& Row : Rows())
	{
		const TSharedPtr<FUICommandInfo> Command =
			FInputBindingManager::Get().FindCommandInContext(Module, FName(FString::FromUtf8(Row.Name)));
		ASSERT_TRUE(Command.IsValid());
		const FUIAction* const Action = Actions()->GetActionForCommand(Command);
		ASSERT_NE(Action, nullptr);
		EXPECT_FALSE(Action->CanExecuteAction.IsBound());
		EXPECT_EQ(Action->RepeatMode, EUIActionRepeatMode::RepeatDisabled);
		EXPECT_TRUE(Actions()->ExecuteAction(Command.ToSharedRef()));
		EXPECT_EQ(Toasts().back(), Row.Summary);
	}
}

TEST_F(StartedModule, LevelEditorsOwnKeysRunTheCommandsToo)
{
	EXPECT_TRUE(FSlateApplication::Get().ProcessKeyDownEvent(
		FKeyEvent(EKeys::NumPadFour, FModifierKeysState::FromMask(EModifierKey::Control))));
	EXPECT_EQ(Toasts(), (FLines{"No static mesh selected"})) << "nothing selected: the interceptor let it pass";
}

TEST_F(StartedModule, KeepsTheLevelEditorsActionList)
{
	EXPECT_EQ(FModuleManager::Get().GetModuleChecked<FTarvinTransformModule>(Module).GetCommandList(),
		Actions().ToSharedPtr());
}

TEST_F(StartedModule, KeepsTheDefaultsOfAllModules)
{
	IModuleInterface& Started = FModuleManager::Get().GetModuleChecked<IModuleInterface>(Module);
	EXPECT_TRUE(Started.SupportsDynamicReloading());
	EXPECT_TRUE(Started.SupportsAutomaticShutdown());
	EXPECT_FALSE(Started.IsGameModule());
}

TEST_F(ModuleLifecycle, StopTakesEverythingBack)
{
	const bool bUndoWasBound = Transactions().OnUndo().IsBound();
	Start();
	EXPECT_TRUE(Transactions().OnUndo().IsBound());
	EXPECT_TRUE(Transactions().OnRedo().IsBound());
	const TArray<TSharedRef<FUICommandInfo>> Commands = Registered();
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	Stop();
	EXPECT_FALSE(FInputBindingManager::Get().GetContextByName(Module).IsValid());
	for (const TSharedRef<FUICommandInfo>& Command : Commands)
	{
		EXPECT_FALSE(Actions()->IsActionMapped(Command));
	}
	EXPECT_EQ(Transactions().OnUndo().IsBound(), bUndoWasBound);
	EXPECT_FALSE(Transactions().OnRedo().IsBound());
	EXPECT_FALSE(PressBake());
	EXPECT_TRUE(Toasts().empty());
}

TEST_F(ModuleLifecycle, CanBeStartedAgain)
{
	Start();
	Stop();
	Start();
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	EXPECT_TRUE(PressBake());
	EXPECT_EQ(Toasts(), (FLines{"Baked 1 mesh(es)"}));
}

TEST_F(ModuleLifecycle, CommandsAreAnnouncedAtStartAndAtStop)
{
	int32 Announced = 0;
	const FDelegateHandle Handle = FBindingContext::CommandsChanged.AddLambda(
		[&Announced](const FBindingContext& Context) { Announced += Context.GetContextName() == Module ? 1 : 0; });
	Start();
	EXPECT_EQ(Announced, 1);
	Stop();
	EXPECT_EQ(Announced, 2);
	FBindingContext::CommandsChanged.Remove(Handle);
}

TEST_F(ModuleLifecycle, CommandThatIsMappedAlreadyKeepsItsActionAndIsUnmappedAtStop)
{
	FTarvinTransformCommands::Register();
	const TSharedPtr<FUICommandInfo> Bake = FTarvinTransformCommands::Get().BakeTransform;
	int32 Runs = 0;
	Actions()->MapAction(Bake, FExecuteAction::CreateLambda([&Runs] { ++Runs; }));
	Start();
	EXPECT_EQ(FTarvinTransformCommands::Get().BakeTransform, Bake) << "registered once";
	EXPECT_TRUE(Actions()->ExecuteAction(Bake.ToSharedRef()));
	EXPECT_EQ(Runs, 1);
	EXPECT_TRUE(Toasts().empty());
	Stop();
	EXPECT_FALSE(Actions()->IsActionMapped(Bake));
}

TEST_F(ModuleLifecycle, ContextThatExistsIsAdoptedAndNoCommandIsMadeAgain)
{
	const TSharedRef<FTarvinTransformCommands> Existing = MakeShared<FTarvinTransformCommands>();
	FInputBindingManager::Get().AddContext(Existing);
	int32 Announced = 0;
	const FDelegateHandle Handle =
		FBindingContext::CommandsChanged.AddLambda([&Announced](const FBindingContext&) { ++Announced; });
	FTarvinTransformCommands::Register();
	EXPECT_EQ(&FTarvinTransformCommands::Get(), &*Existing);
	EXPECT_EQ(Registered().Num(), 0);
	EXPECT_EQ(Announced, 0);
	FBindingContext::CommandsChanged.Remove(Handle);
}

TEST_F(ModuleLifecycle, WithoutAnApplicationThereIsNoInterceptorAtStartNorAtStop)
{
	FSlateApplication::Shutdown();
	Start();
	FSlateApplication::Create(Backend);
	FSlateApplication::RemoveGlobalCommandList(Actions());
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	EXPECT_FALSE(PressBake());
	Stop();
	FSlateApplication::AddGlobalCommandList(Actions());
	EXPECT_TRUE(Toasts().empty());
}

TEST_F(ModuleLifecycle, StopsAfterTheApplicationHasGone)
{
	Start();
	FSlateApplication::Shutdown();
	Stop();
	EXPECT_FALSE(FModuleManager::Get().IsModuleLoaded(Module));
}

TEST_F(ModuleLifecycle, WithoutAnEditorItStartsAndStops)
{
	UEditorEngine::Destroy();
	Start();
	EXPECT_EQ(Registered().Num(), 9);
	Stop();
	EXPECT_EQ(Registered().Num(), 0);
}

TEST_F(ModuleLifecycle, AnotherTransactionSystemIsNotFollowed)
{
	UTransBuffer& Buffer = Transactions();
	GEditor->Trans = NewObject<UTransactor>(GEditor);
	Start();
	EXPECT_FALSE(Buffer.OnUndo().IsBound());
	GEditor->Trans = nullptr;
	Stop();
	GEditor->Trans = &Buffer;
	EXPECT_FALSE(Buffer.OnUndo().IsBound());
}

TEST_F(ModuleLifecycle, AfterStopNobodyRebuildsAfterAnUndo)
{
	Start();
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	ASSERT_TRUE(PressBake());
	Stop();
	ASSERT_TRUE(Undo());
	EXPECT_TRUE(OpLines().empty());
}
}
