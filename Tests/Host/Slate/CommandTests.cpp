// SPDX-License-Identifier: MIT
#include "Slate/AppStyle.h"
#include "Slate/Commands.h"
#include "Slate/UICommandList.h"
#include "Support/ThrowingAssertions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
class FTestCommands : public TCommands<FTestCommands>
{
public:
	FTestCommands()
		: TCommands(TEXT("CommandTest"), NSLOCTEXT("Contexts", "CommandTest", "Command Test"), NAME_None,
			  FAppStyle::GetAppStyleSetName())
	{
	}

	void RegisterCommands() override
	{
		++Registrations;
		Make(Save, TEXT("Save"), TEXT("Save_ToolTip"), ".Save", TEXT("Save It"), TEXT("Saves it"),
			FInputChord(EModifierKey::Control, EKeys::S));
		Make(Turn, TEXT("Turn"), TEXT("Turn_ToolTip"), ".Turn", TEXT("Turn It"), TEXT("Turns it"), FInputChord());
	}

	TSharedPtr<FUICommandInfo> Save;
	TSharedPtr<FUICommandInfo> Turn;
	inline static int32 Registrations = 0;

private:
	void Make(TSharedPtr<FUICommandInfo>& Field, const TCHAR* Name, const TCHAR* ToolTipKey, const char* DotName,
		const TCHAR* Label, const TCHAR* Description, const FInputChord& Chord)
	{
		MakeUICommand_InternalUseOnly(this, Field, TEXT("FTestCommands"), Name, ToolTipKey, DotName, Label, Description,
			EUserInterfaceActionType::Button, Chord);
	}
};

class Commands : public testing::Test
{
protected:
	Commands()
	{
		FTestCommands::Registrations = 0;
		Handle = FBindingContext::CommandsChanged.AddLambda(
			[this](const FBindingContext& Context) { Changed.Add(Context.GetContextName()); });
	}
	~Commands() override
	{
		FTestCommands::Unregister();
		FBindingContext::CommandsChanged.Remove(Handle);
	}

	static FKeyEvent KeyEvent(const FKey& Key, EModifierKey::Type Modifiers, bool bRepeat = false)
	{
		return FKeyEvent(Key, FModifierKeysState::FromMask(Modifiers), 0, bRepeat);
	}

	FExecuteAction Count()
	{
		return FExecuteAction::CreateLambda([this] { ++Runs; });
	}

	int32 Runs = 0;
	TArray<FName> Changed;
	FDelegateHandle Handle;
};

TEST_F(Commands, RegisteredSetHasItsCommands)
{
	FTestCommands::Register();
	const FUICommandInfo& Save = *FTestCommands::Get().Save;
	EXPECT_EQ(Save.GetCommandName(), FName(TEXT("Save")));
	EXPECT_EQ(Save.GetBindingContext(), FName(TEXT("CommandTest")));
	EXPECT_EQ(Save.GetLabel().ToString(), TEXT("Save It"));
	EXPECT_EQ(Save.GetDescription().ToString(), TEXT("Saves it"));
	EXPECT_EQ(Save.GetUserInterfaceType(), EUserInterfaceActionType::Button);
	EXPECT_EQ(Save.GetActiveChord(EMultipleKeyBindingIndex::Primary), FInputChord(EModifierKey::Control, EKeys::S));
	EXPECT_FALSE(Save.GetActiveChord(EMultipleKeyBindingIndex::Secondary).IsValidChord());
	EXPECT_EQ(Save.GetLabel().GetNamespace(), TEXT("UICommands.FTestCommands"));
	EXPECT_EQ(Save.GetLabel().GetKey(), TEXT("Save"));
	EXPECT_EQ(Save.GetDescription().GetKey(), TEXT("Save_ToolTip"));
}

TEST_F(Commands, RegisteringTellsTheChangeOnce)
{
	EXPECT_FALSE(FTestCommands::IsRegistered());
	FTestCommands::Register();
	FTestCommands::Register();
	EXPECT_TRUE(FTestCommands::IsRegistered());
	EXPECT_EQ(FTestCommands::Registrations, 1);
	EXPECT_THAT(Changed, testing::ElementsAre(FName(TEXT("CommandTest"))));
}

TEST_F(Commands, UnregisteringRemovesTheContextAndTellsTheChange)
{
	FTestCommands::Register();
	const TWeakPtr<const FTestCommands> Instance = FTestCommands::GetPtr();
	Changed.Reset();
	FTestCommands::Unregister();
	EXPECT_FALSE(FTestCommands::IsRegistered());
	EXPECT_FALSE(FTestCommands::GetPtr().IsValid());
	EXPECT_FALSE(FInputBindingManager::Get().GetContextByName(TEXT("CommandTest")).IsValid());
	EXPECT_THAT(Changed, testing::ElementsAre(FName(TEXT("CommandTest"))));
	EXPECT_FALSE(Instance.IsValid());
	FTestCommands::Unregister();
	EXPECT_EQ(Changed.Num(), 1);
}

TEST_F(Commands, SetCanBeRegisteredAgain)
{
	FTestCommands::Register();
	FTestCommands::Unregister();
	FTestCommands::Register();
	EXPECT_EQ(FTestCommands::Registrations, 2);
	EXPECT_TRUE(FTestCommands::Get().Save.IsValid());
}

TEST_F(Commands, ContextThatExistsIsAdoptedWithItsCommands)
{
	const TSharedRef<FTestCommands> Present = MakeShared<FTestCommands>();
	FInputBindingManager::Get().AddContext(Present);
	Present->RegisterCommands();
	FTestCommands::Register();
	EXPECT_EQ(FTestCommands::Registrations, 1);
	EXPECT_EQ(&FTestCommands::Get(), &Present.Get());
	EXPECT_TRUE(Changed.IsEmpty());
}

TEST_F(Commands, SetWhoseContextWasRemovedIsNotInUse)
{
	FTestCommands::Register();
	FInputBindingManager::Get().RemoveContextByName(TEXT("CommandTest"));
	EXPECT_FALSE(FTestCommands::IsRegistered());
	FTestCommands::Register();
	EXPECT_EQ(FTestCommands::Registrations, 2);
}

TEST_F(Commands, MissingInstanceIsAFailedCheck)
{
	const FThrowingAssertions Assertions;
	EXPECT_THROW(FTestCommands::Get(), FAssertionFailed);
}

TEST_F(Commands, CommandsAreFoundInTheirContext)
{
	FTestCommands::Register();
	const FInputBindingManager& Manager = FInputBindingManager::Get();
	const FTestCommands& Set = FTestCommands::Get();
	EXPECT_THAT(Manager.GetCommandInfosFromContext(TEXT("CommandTest")),
		testing::ElementsAre(Set.Save.ToSharedRef(), Set.Turn.ToSharedRef()));
	EXPECT_EQ(Manager.FindCommandInContext(TEXT("CommandTest"), FName(TEXT("Turn"))), Set.Turn);
	EXPECT_EQ(
		Manager.FindCommandInContext(TEXT("CommandTest"), FInputChord(EModifierKey::Control, EKeys::S)), Set.Save);
	EXPECT_FALSE(Manager.FindCommandInContext(TEXT("CommandTest"), FInputChord()).IsValid());
	EXPECT_FALSE(Manager.FindCommandInContext(TEXT("Elsewhere"), FName(TEXT("Turn"))).IsValid());
	EXPECT_TRUE(Manager.GetCommandInfosFromContext(TEXT("Elsewhere")).IsEmpty());
}

TEST_F(Commands, SecondCommandOfOneNameIsAFailedCheck)
{
	FTestCommands::Register();
	const FThrowingAssertions Assertions;
	TSharedPtr<FUICommandInfo> Second;
	EXPECT_THROW(
		FUICommandInfo::MakeCommandInfo(FInputBindingManager::Get().GetContextByName(TEXT("CommandTest")).ToSharedRef(),
			Second, TEXT("Save"), FText(), FText(), EUserInterfaceActionType::Button, FInputChord()),
		FAssertionFailed);
}

TEST_F(Commands, SecondaryChordIsActiveBesideThePrimaryOne)
{
	FTestCommands::Register();
	FUICommandInfo& Save = *FTestCommands::Get().Save;
	const FInputChord Primary(EModifierKey::Control, EKeys::S);
	const FInputChord Secondary(EModifierKey::Alt, EKeys::F5);
	Save.SetActiveChord(Secondary, EMultipleKeyBindingIndex::Secondary);
	EXPECT_TRUE(Save.HasActiveChord(Primary));
	EXPECT_TRUE(Save.HasActiveChord(Secondary));
	EXPECT_FALSE(Save.HasActiveChord(FInputChord(EKeys::F5)));
	EXPECT_FALSE(Save.HasActiveChord(FInputChord()));
	EXPECT_EQ(Save.GetInputText().ToString(), TEXT("Ctrl+S or Alt+F5"));
	EXPECT_FALSE(Save.HasDefaultChords());
	Save.RemoveActiveChord(EMultipleKeyBindingIndex::Primary);
	EXPECT_EQ(Save.GetInputText().ToString(), TEXT("Alt+F5"));
	Save.ResetActiveChords();
	EXPECT_EQ(Save.GetInputText().ToString(), TEXT("Ctrl+S"));
	EXPECT_TRUE(Save.HasDefaultChords());
}

TEST_F(Commands, MappedCommandRunsUntilItIsUnmapped)
{
	FTestCommands::Register();
	const TSharedPtr<FUICommandInfo> Save = FTestCommands::Get().Save;
	FUICommandList List;
	EXPECT_FALSE(List.IsActionMapped(Save));
	EXPECT_EQ(List.GetActionForCommand(Save), nullptr);
	EXPECT_FALSE(List.ExecuteAction(Save.ToSharedRef()));

	List.MapAction(Save, Count());
	EXPECT_TRUE(List.IsActionMapped(Save));
	EXPECT_FALSE(List.IsActionMapped(FTestCommands::Get().Turn));
	ASSERT_NE(List.GetActionForCommand(Save), nullptr);
	EXPECT_EQ(List.GetActionForCommand(Save)->RepeatMode, EUIActionRepeatMode::RepeatDisabled);
	EXPECT_TRUE(List.GetActionForCommand(Save)->CanExecute());
	EXPECT_TRUE(List.ExecuteAction(Save.ToSharedRef()));
	EXPECT_EQ(Runs, 1);

	List.UnmapAction(Save);
	List.UnmapAction(Save);
	EXPECT_FALSE(List.IsActionMapped(Save));
	EXPECT_FALSE(List.TryExecuteAction(Save.ToSharedRef()));
	EXPECT_EQ(Runs, 1);
}

TEST_F(Commands, MappingTwiceOrNothingIsAFailedCheck)
{
	FTestCommands::Register();
	const FThrowingAssertions Assertions;
	FUICommandList List;
	List.MapAction(FTestCommands::Get().Save, Count());
	EXPECT_THROW(List.MapAction(FTestCommands::Get().Save, Count()), FAssertionFailed);
	EXPECT_THROW(List.MapAction({}, Count()), FAssertionFailed);
	EXPECT_FALSE(List.IsActionMapped({}));
}

TEST_F(Commands, ActionThatCannotExecuteDoesNotRun)
{
	FTestCommands::Register();
	const TSharedRef<FUICommandInfo> Save = FTestCommands::Get().Save.ToSharedRef();
	bool bAllowed = false;
	FUICommandList List;
	List.MapAction(Save, Count(), FCanExecuteAction::CreateLambda([&bAllowed] { return bAllowed; }));
	EXPECT_FALSE(List.CanExecuteAction(Save));
	EXPECT_FALSE(List.ExecuteAction(Save));
	EXPECT_FALSE(List.GetActionForCommand(Save)->Execute());
	EXPECT_FALSE(List.ProcessCommandBindings(KeyEvent(EKeys::S, EModifierKey::Control)));
	bAllowed = true;
	EXPECT_TRUE(List.CanExecuteAction(Save));
	EXPECT_TRUE(List.GetActionForCommand(Save)->Execute());
	EXPECT_EQ(Runs, 1);
}

TEST_F(Commands, EitherActiveChordRunsTheCommand)
{
	FTestCommands::Register();
	FTestCommands::Get().Save->SetActiveChord(EKeys::F5, EMultipleKeyBindingIndex::Secondary);
	FUICommandList List;
	List.MapAction(FTestCommands::Get().Save, Count());
	EXPECT_TRUE(List.ProcessCommandBindings(KeyEvent(EKeys::S, EModifierKey::Control)));
	EXPECT_TRUE(List.ProcessCommandBindings(KeyEvent(EKeys::F5, EModifierKey::None)));
	EXPECT_FALSE(List.ProcessCommandBindings(KeyEvent(EKeys::S, EModifierKey::Control | EModifierKey::Alt)));
	EXPECT_FALSE(List.ProcessCommandBindings(KeyEvent(EKeys::S, EModifierKey::None)));
	EXPECT_FALSE(List.ProcessCommandBindings(KeyEvent(EKeys::LeftControl, EModifierKey::Control)));
	EXPECT_EQ(Runs, 2);
}

TEST_F(Commands, HeldChordRunsOnlyWhatAllowsIt)
{
	FTestCommands::Register();
	const FTestCommands& Set = FTestCommands::Get();
	Set.Turn->SetActiveChord(EKeys::T, EMultipleKeyBindingIndex::Primary);
	FUICommandList List;
	List.MapAction(Set.Save, Count());
	List.MapAction(Set.Turn, Count(), EUIActionRepeatMode::RepeatEnabled);
	EXPECT_FALSE(List.ProcessCommandBindings(KeyEvent(EKeys::S, EModifierKey::Control, true)));
	EXPECT_EQ(Runs, 0);
	EXPECT_TRUE(List.ProcessCommandBindings(KeyEvent(EKeys::T, EModifierKey::None, true)));
	EXPECT_EQ(Runs, 1);
}

TEST_F(Commands, OfTwoCommandsWithOneChordTheFirstThatCanRuns)
{
	FTestCommands::Register();
	const FTestCommands& Set = FTestCommands::Get();
	Set.Turn->SetActiveChord(FInputChord(EModifierKey::Control, EKeys::S), EMultipleKeyBindingIndex::Primary);
	bool bAllowed = true;
	TArray<FString> Ran;
	FUICommandList List;
	List.MapAction(Set.Save, FExecuteAction::CreateLambda([&Ran] { Ran.Add(TEXT("save")); }),
		FCanExecuteAction::CreateLambda([&bAllowed] { return bAllowed; }));
	List.MapAction(Set.Turn, FExecuteAction::CreateLambda([&Ran] { Ran.Add(TEXT("turn")); }));
	List.ProcessCommandBindings(KeyEvent(EKeys::S, EModifierKey::Control));
	bAllowed = false;
	List.ProcessCommandBindings(KeyEvent(EKeys::S, EModifierKey::Control));
	EXPECT_THAT(Ran, testing::ElementsAre(FString(TEXT("save")), FString(TEXT("turn"))));
}

TEST_F(Commands, ActionMayUnmapItselfAndMapOthers)
{
	FTestCommands::Register();
	const FTestCommands& Set = FTestCommands::Get();
	FUICommandList List;
	// Held by the delegate: gone, and noticed by a sanitizer, if the list destroyed it while it runs.
	const FString Held = TEXT("a text that is too long to stand in the string itself");
	FString Seen;
	List.MapAction(Set.Save, FExecuteAction::CreateLambda(
								 [&, Held]
								 {
									 List.UnmapAction(Set.Save);
									 List.MapAction(Set.Turn, Count());
									 Seen = Held;
								 }));
	EXPECT_TRUE(List.ProcessCommandBindings(KeyEvent(EKeys::S, EModifierKey::Control)));
	EXPECT_EQ(Seen, Held);
	EXPECT_FALSE(List.IsActionMapped(Set.Save));
	EXPECT_TRUE(List.IsActionMapped(Set.Turn));
}

TEST_F(Commands, CheckStateAndVisibilityComeFromTheAction)
{
	FTestCommands::Register();
	const TSharedRef<FUICommandInfo> Save = FTestCommands::Get().Save.ToSharedRef();
	FUIAction Action(Count());
	Action.GetActionCheckState = FGetActionCheckState::CreateLambda([] { return ECheckBoxState::Checked; });
	Action.IsActionVisibleDelegate = FIsActionButtonVisible::CreateLambda([] { return false; });
	FUICommandList List;
	EXPECT_TRUE(List.GetVisibility(Save));
	List.MapAction(Save, Action);
	EXPECT_EQ(List.GetCheckState(Save), ECheckBoxState::Checked);
	EXPECT_FALSE(List.GetVisibility(Save));
	EXPECT_THAT(List.GetMappedCommands(), testing::ElementsAre(TSharedRef<const FUICommandInfo>(Save)));
}
}
