// SPDX-License-Identifier: MIT
#include "StartedModule.h"
#include "TarvinInputPreProcessor.h"
#include "TarvinTransformCommands.h"

#include "Engine/InstancedStaticMeshComponent.h"
#include "Slate/EditableText.h"
#include "Slate/SlateApplication.h"

namespace
{
const FTransform Doubled(FQuat::Identity, FVector(500, -200, 30), FVector(2, 2, 2));
const FInputChord BakeChord(EModifierKey::Control | EModifierKey::Shift, EKeys::B);

/// A panel that takes every key.
class SGreedyPanel : public SLeafWidget
{
public:
	bool SupportsKeyboardFocus() const override { return true; }
	FReply OnKeyDown(const FKeyEvent&) override
	{
		++NumKeys;
		return FReply::Handled();
	}

	int32 NumKeys = 0;
};

class ChordInterception : public FStartedModuleTest
{
protected:
	static bool Press(const FKey& Key, EModifierKey::Type Modifiers, bool bRepeat = false)
	{
		return FSlateApplication::Get().ProcessKeyDownEvent(
			FKeyEvent(Key, FModifierKeysState::FromMask(Modifiers), 0, bRepeat));
	}
	static bool PressBake() { return Press(EKeys::B, EModifierKey::Control | EModifierKey::Shift); }

	/// Takes the level editor's own key handling away, so that what handles a chord is the interceptor.
	void LeaveItToTheInterceptor() { FSlateApplication::RemoveGlobalCommandList(Actions()); }

	static std::size_t NumCommandsRun() { return Toasts().size(); }

	ChordInterception() { LeaveItToTheInterceptor(); }
	~ChordInterception() override { FSlateApplication::AddGlobalCommandList(Actions()); }
};

TEST_F(ChordInterception, BakeChordRunsBakeTransformAndIsConsumed)
{
	UStaticMeshComponent* const Component = PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	EXPECT_TRUE(PressBake());
	EXPECT_EQ(Toasts(), (std::vector<std::string>{"Baked 1 mesh(es)"}));
	EXPECT_EQ(Component->GetComponentTransform().GetScale3D(), FVector(1, 1, 1));
}

TEST_F(ChordInterception, ModifiersOfEitherSideCount)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	const FModifierKeysState RightOnes(false, true, false, true, false, false, false, false, false);
	EXPECT_TRUE(FSlateApplication::Get().ProcessKeyDownEvent(FKeyEvent(EKeys::B, RightOnes)));
	EXPECT_EQ(NumCommandsRun(), 1u);
}

TEST_F(ChordInterception, PivotChordRunsItsPivotAction)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	EXPECT_TRUE(Press(EKeys::NumPadSeven, EModifierKey::Control));
	EXPECT_EQ(Toasts(), (std::vector<std::string>{"Pivot moved to bottom on 1 mesh(es)"}));
}

TEST_F(ChordInterception, FocusInAPanelThatTakesTheChordItselfDoesNotHinderIt)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	const TSharedRef<SGreedyPanel> Panel = MakeShared<SGreedyPanel>();
	ASSERT_TRUE(FSlateApplication::Get().SetKeyboardFocus(Panel));
	EXPECT_TRUE(PressBake());
	EXPECT_EQ(NumCommandsRun(), 1u);
	EXPECT_EQ(Panel->NumKeys, 0);
}

TEST_F(ChordInterception, HeldChordRunsItsCommandOnce)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	EXPECT_FALSE(Press(EKeys::B, EModifierKey::Control | EModifierKey::Shift, true));
	EXPECT_EQ(NumCommandsRun(), 0u);
}

TEST_F(ChordInterception, OtherKeysAndModifiersPass)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	EXPECT_FALSE(Press(EKeys::B, EModifierKey::Control | EModifierKey::Shift | EModifierKey::Alt));
	EXPECT_FALSE(Press(EKeys::B, EModifierKey::Control | EModifierKey::Shift | EModifierKey::Command));
	EXPECT_FALSE(Press(EKeys::B, EModifierKey::Control));
	EXPECT_FALSE(Press(EKeys::NumPadSeven, EModifierKey::None));
	EXPECT_FALSE(Press(EKeys::Seven, EModifierKey::Control)) << "keypad keys only";
	EXPECT_FALSE(Press(EKeys::LeftShift, EModifierKey::Control | EModifierKey::Shift));
	EXPECT_EQ(NumCommandsRun(), 0u);
}

TEST_F(ChordInterception, WithoutASelectedStaticMeshTheChordPasses)
{
	Place(MakeMesh(TEXT("Rock")), Doubled);
	EXPECT_FALSE(PressBake());
	GEditor->SelectActor(PlaceFrame(FTransform())->GetOwner(), true);
	EXPECT_FALSE(PressBake());
	PlaceSelected(nullptr);
	EXPECT_FALSE(PressBake());
	EXPECT_EQ(NumCommandsRun(), 0u);
	PlaceSelected(MakeMesh(TEXT("Stone")), Doubled);
	EXPECT_TRUE(PressBake()) << "one of several is enough";
}

TEST_F(ChordInterception, AnyWidgetWhoseTypeSaysEditableTextInWhateverLettersGetsTheChord)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	const TSharedRef<SGreedyPanel> Field = MakeShared<SGreedyPanel>();
	Field->SetType(TEXT("SMyeditabletextOfNumbers"));
	ASSERT_TRUE(FSlateApplication::Get().SetKeyboardFocus(Field));
	EXPECT_TRUE(PressBake()) << "the field takes it";
	EXPECT_EQ(Field->NumKeys, 1);
	EXPECT_EQ(NumCommandsRun(), 0u);
}

TEST_F(ChordInterception, WhileTextIsTypedTheChordPasses)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	const TSharedRef<SSearchBox> Search = SNew(SSearchBox);
	const TSharedRef<SMultiLineEditableText> Notes = SNew(SMultiLineEditableText);
	const TSharedRef<SEditableTextBox> Number = SNew(SEditableTextBox);
	for (const TSharedPtr<SWidget>& Field :
		{TSharedPtr<SWidget>(Search->GetEditableText()), TSharedPtr<SWidget>(Notes), TSharedPtr<SWidget>(Number)})
	{
		ASSERT_TRUE(FSlateApplication::Get().SetKeyboardFocus(Field));
		PressBake();
		EXPECT_EQ(NumCommandsRun(), 0u);
	}
	FSlateApplication::Get().ClearKeyboardFocus();
	EXPECT_TRUE(PressBake());
}

TEST_F(ChordInterception, DuringAPlaySessionTheChordPasses)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	ASSERT_TRUE(GEditor->StartPlaySession());
	EXPECT_FALSE(PressBake());
	GEditor->EndPlaySession();
	EXPECT_TRUE(PressBake());
	EXPECT_EQ(NumCommandsRun(), 1u);
}

TEST_F(ChordInterception, WithoutAnEditorTheChordPasses)
{
	UEditorEngine::Destroy();
	EXPECT_FALSE(PressBake());
	EXPECT_EQ(NumCommandsRun(), 0u);
}

TEST_F(ChordInterception, ChordOfACommandThatIsNotMappedPasses)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	Actions()->UnmapAction(FTarvinTransformCommands::Get().BakeTransform);
	EXPECT_FALSE(PressBake());
	EXPECT_EQ(NumCommandsRun(), 0u);
}

TEST_F(ChordInterception, ActionThatCannotExecuteLetsTheChordPass)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	const TSharedPtr<FUICommandInfo> Command = FTarvinTransformCommands::Get().BakeTransform;
	int32 Runs = 0;
	bool bCan = false;
	Actions()->UnmapAction(Command);
	Actions()->MapAction(Command, FExecuteAction::CreateLambda([&Runs] { ++Runs; }),
		FCanExecuteAction::CreateLambda([&bCan] { return bCan; }));
	EXPECT_FALSE(PressBake());
	bCan = true;
	EXPECT_TRUE(PressBake());
	EXPECT_EQ(Runs, 1);
}

TEST_F(ChordInterception, ChordIsConsumedOnceItsActionWasAskedToExecute)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	const TSharedPtr<FUICommandInfo> Command = FTarvinTransformCommands::Get().BakeTransform;
	int32 Runs = 0;
	int32 Asked = 0;
	Actions()->UnmapAction(Command);
	Actions()->MapAction(Command, FExecuteAction::CreateLambda([&Runs] { ++Runs; }),
		FCanExecuteAction::CreateLambda([&Asked] { return ++Asked == 1; }));
	EXPECT_TRUE(PressBake());
	EXPECT_EQ(Runs, 0) << "executing asks again";
}

TEST_F(ChordInterception, CommandsFirstInOrderWinsAChordThatTwoHave)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	const FTarvinTransformCommands& Commands = FTarvinTransformCommands::Get();
	const FInputChord TopsChord(EModifierKey::Control, EKeys::NumPadNine);
	Commands.BakeTransform->SetActiveChord(TopsChord, EMultipleKeyBindingIndex::Secondary);
	EXPECT_EQ(FTarvinInputPreProcessor::FindCommandByChord(TopsChord), Commands.BakeTransform);
	Commands.BakeTransform->ResetActiveChords();
	EXPECT_EQ(FTarvinInputPreProcessor::FindCommandByChord(TopsChord), Commands.PivotTop);
}

TEST_F(ChordInterception, SecondaryChordFindsItsCommandBesideThePrimaryOne)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	const TSharedPtr<FUICommandInfo> Bake = FTarvinTransformCommands::Get().BakeTransform;
	const FInputChord Second(EModifierKey::Alt, EKeys::K);
	EXPECT_FALSE(FTarvinInputPreProcessor::FindCommandByChord(Second).IsValid());
	Bake->SetActiveChord(Second, EMultipleKeyBindingIndex::Secondary);
	EXPECT_EQ(FTarvinInputPreProcessor::FindCommandByChord(Second), Bake);
	EXPECT_EQ(FTarvinInputPreProcessor::FindCommandByChord(BakeChord), Bake);
	EXPECT_TRUE(Press(EKeys::K, EModifierKey::Alt));
	EXPECT_EQ(NumCommandsRun(), 1u);
	Bake->ResetActiveChords();
}

TEST_F(ChordInterception, ChordThatTheUserTookAwayFindsNothing)
{
	const TSharedPtr<FUICommandInfo> Bake = FTarvinTransformCommands::Get().BakeTransform;
	Bake->RemoveActiveChord(EMultipleKeyBindingIndex::Primary);
	EXPECT_FALSE(FTarvinInputPreProcessor::FindCommandByChord(BakeChord).IsValid());
	Bake->ResetActiveChords();
}

TEST_F(ChordInterception, NoKeyAndModifierKeysAloneFindNothing)
{
	const TSharedPtr<FUICommandInfo> Bake = FTarvinTransformCommands::Get().BakeTransform;
	EXPECT_FALSE(FTarvinInputPreProcessor::FindCommandByChord(FInputChord()).IsValid())
		<< "though every command has an empty secondary chord";
	Bake->SetActiveChord(FInputChord(EKeys::LeftShift), EMultipleKeyBindingIndex::Secondary);
	EXPECT_FALSE(FTarvinInputPreProcessor::FindCommandByChord(FInputChord(EKeys::LeftShift)).IsValid());
	Bake->ResetActiveChords();
}

TEST_F(ChordInterception, OnlyKeysThatGoDownAreEverConsumed)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	FSlateApplication& App = FSlateApplication::Get();
	const FKeyEvent Key(EKeys::B, FModifierKeysState::FromMask(EModifierKey::Control | EModifierKey::Shift));
	const FPointerEvent Pointer(FScreenPosition{}, EKeys::LeftMouseButton);
	EXPECT_FALSE(App.ProcessKeyUpEvent(Key));
	EXPECT_FALSE(App.ProcessAnalogInputEvent(FAnalogInputEvent(Key, 0.5f)));
	EXPECT_FALSE(App.ProcessMouseMoveEvent(Pointer));
	EXPECT_FALSE(App.ProcessMouseButtonDownEvent(Pointer));
	EXPECT_FALSE(App.ProcessMouseButtonUpEvent(Pointer));
	EXPECT_FALSE(App.ProcessMouseButtonDoubleClickEvent(Pointer));
	EXPECT_FALSE(App.ProcessMouseWheelOrGestureEvent(Pointer, &Pointer));
	EXPECT_FALSE(App.ProcessMotionDetectedEvent(FMotionEvent()));
	App.Tick(0.1f);
	EXPECT_EQ(NumCommandsRun(), 0u);
}

TEST_F(ChordInterception, IsNamedAfterTheModule)
{
	EXPECT_EQ(FString(FTarvinInputPreProcessor().GetDebugName()), TEXT("TarvinTransform"));
}

TEST(InterceptDecision, IsYesOnlyForASelectedMeshWithNothingInTheWay)
{
	for (const bool bText : {false, true})
	{
		for (const bool bPlay : {false, true})
		{
			for (const bool bMesh : {false, true})
			{
				EXPECT_EQ(FTarvinInputPreProcessor::ShouldIntercept({bText, bPlay, bMesh}), !bText && !bPlay && bMesh);
			}
		}
	}
}

TEST_F(ChordInterception, StateIsGatheredOfAllThree)
{
	const auto Gather = &FTarvinInputPreProcessor::GatherInterceptState;
	EXPECT_FALSE(Gather().bTextFieldFocused);
	EXPECT_FALSE(Gather().bInPlayInEditor);
	EXPECT_FALSE(Gather().bHasStaticMeshSelected);
	const TSharedRef<SEditableText> Field = SNew(SEditableText);
	FSlateApplication::Get().SetKeyboardFocus(Field);
	EXPECT_TRUE(Gather().bTextFieldFocused);
	GEditor->GetSelectedActors()->Select(MakeMesh(TEXT("Rock")));
	EXPECT_FALSE(Gather().bHasStaticMeshSelected) << "an asset is no actor";
	PlaceSelected(MakeMesh(TEXT("Stone")));
	EXPECT_TRUE(Gather().bHasStaticMeshSelected);
	GEditor->StartPlaySession();
	EXPECT_TRUE(Gather().bInPlayInEditor);
	FSlateApplication::Shutdown();
	EXPECT_FALSE(Gather().bTextFieldFocused) << "without an application nothing has the focus";
	EXPECT_TRUE(Gather().bInPlayInEditor);
}
}
