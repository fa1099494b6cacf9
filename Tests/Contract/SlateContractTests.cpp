// SPDX-License-Identifier: MIT
// What the module expects of its host's commands, input and menus.
#include "ContractHost.h"

#include "Platform/Editor.h"
#include "Platform/Slate.h"
#include "Platform/ToolMenus.h"

namespace
{
/// A set of one command, Control with the keypad's five.
class FContractCommands : public TCommands<FContractCommands>
{
public:
	FContractCommands()
		: TCommands<FContractCommands>(TEXT("Contract"), FText::FromString(TEXT("Contract")), NAME_None, NAME_None)
	{
	}
	void RegisterCommands() override
	{
		MakeUICommand_InternalUseOnly(this, Command, TEXT("FContractCommands"), TEXT("Command"),
			TEXT("Command_ToolTip"), ".Command", TEXT("Do it"), TEXT("Does it"), EUserInterfaceActionType::Button,
			FInputChord(EModifierKey::Control, EKeys::NumPadFive), FInputChord());
	}

	TSharedPtr<FUICommandInfo> Command;
};

/// Takes every key, or none.
class FContractProcessor : public IInputProcessor
{
public:
	void Tick(const float, FSlateApplication&, TSharedRef<ICursor>) override {}
	bool HandleKeyDownEvent(FSlateApplication&, const FKeyEvent& Event) override
	{
		Keys.Add(Event.GetKey());
		return bTakes;
	}

	TArray<FKey> Keys;
	bool bTakes = false;
};

class SlateContract : public FContractTest
{
protected:
	SlateContract() { FContractCommands::Register(); }
	~SlateContract() override { FContractCommands::Unregister(); }

	static TSharedPtr<FUICommandInfo> Command() { return FContractCommands::Get().Command; }
	static TSharedRef<FUICommandList> GlobalActions()
	{
		return FModuleManager::Get()
			.LoadModuleChecked<FLevelEditorModule>(TEXT("LevelEditor"))
			.GetGlobalLevelEditorActions();
	}
};

TEST_F(SlateContract, CommandsAreKnownByTheirContextAndHaveTheirDefaultChord)
{
	const TArray<TSharedRef<FUICommandInfo>> Known =
		FInputBindingManager::Get().GetCommandInfosFromContext(TEXT("Contract"));
	ASSERT_EQ(Known.Num(), 1);
	EXPECT_EQ(Known[0]->GetCommandName(), FName(TEXT("Command")));
	EXPECT_TRUE(Command()->GetActiveChord(EMultipleKeyBindingIndex::Primary) ==
				FInputChord(EKeys::NumPadFive, false, true, false, false));
	EXPECT_FALSE(Command()->GetActiveChord(EMultipleKeyBindingIndex::Secondary).Key.IsValid());
}

TEST_F(SlateContract, GlobalActionRunsByItsChordUntilItIsUnmapped)
{
	int32 NumRuns = 0;
	GlobalActions()->MapAction(Command(), FExecuteAction::CreateLambda([&NumRuns] { ++NumRuns; }));
	EXPECT_TRUE(GlobalActions()->IsActionMapped(Command()));
	EXPECT_TRUE(PressWithControl(TEXT("NumPadFive")));
	EXPECT_TRUE(GlobalActions()->GetActionForCommand(Command())->Execute());
	EXPECT_EQ(NumRuns, 2);
	GlobalActions()->UnmapAction(Command());
	EXPECT_EQ(GlobalActions()->GetActionForCommand(Command()), nullptr);
	EXPECT_FALSE(PressWithControl(TEXT("NumPadFive")));
}

TEST_F(SlateContract, PreProcessorSeesKeysFirstAndTakesThemFromCommands)
{
	int32 NumRuns = 0;
	GlobalActions()->MapAction(Command(), FExecuteAction::CreateLambda([&NumRuns] { ++NumRuns; }));
	const TSharedRef<FContractProcessor> Processor = MakeShared<FContractProcessor>();
	FSlateApplication::Get().RegisterInputPreProcessor(Processor);
	EXPECT_TRUE(PressWithControl(TEXT("NumPadFive")));
	EXPECT_EQ(NumRuns, 1);
	Processor->bTakes = true;
	EXPECT_TRUE(PressWithControl(TEXT("NumPadFive")));
	EXPECT_EQ(NumRuns, 1);
	FSlateApplication::Get().UnregisterInputPreProcessor(Processor);
	EXPECT_TRUE(PressWithControl(TEXT("NumPadFive")));
	EXPECT_EQ(NumRuns, 2);
	EXPECT_EQ(Processor->Keys, (TArray<FKey>{EKeys::NumPadFive, EKeys::NumPadFive}));
	GlobalActions()->UnmapAction(Command());
}

TEST_F(SlateContract, MenusAreExtendedOnceTheyAreReadyAndAnOwnersEntriesGoTogether)
{
	bool bReady = false;
	UToolMenus::RegisterStartupCallback(FSimpleDelegate::CreateLambda([&bReady] { bReady = true; }));
	EXPECT_TRUE(bReady) << "they are ready: it runs at once";
	UToolMenu* const Menu = UToolMenus::Get()->ExtendMenu(TEXT("LevelEditor.ActorContextMenu"));
	ASSERT_NE(Menu, nullptr);
	{
		const FToolMenuOwnerScoped Owner(this);
		FToolMenuSection& Section = Menu->FindOrAddSection(TEXT("Contract"), FText::FromString(TEXT("Contract")));
		Section.AddMenuEntryWithCommandList(Command(), GlobalActions());
		Section.AddSubMenu(
			TEXT("More"), FText(), FText(), FNewToolMenuChoice(FNewToolMenuDelegate::CreateLambda([](UToolMenu*) {})));
		EXPECT_EQ(Section.GetEntries().Num(), 2);
	}
	UToolMenus::Get()->UnregisterOwner(this);
	EXPECT_EQ(Menu->FindSection(TEXT("Contract")), nullptr);
}
}
