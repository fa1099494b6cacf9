// SPDX-License-Identifier: MIT
#include "PromptDialog.h"
#include "Slate/EditableText.h"
#include "Slate/InputBindingManager.h"
#include "Slate/NativeWidget.h"
#include "Slate/SlateProgress.h"
#include "Slate/UICommandList.h"
#include "SlateTestFixture.h"

#include <gmock/gmock.h>

namespace
{
/// Writes down what it sees, and consumes what it is told to.
class FRecordingProcessor : public IInputProcessor
{
public:
	FRecordingProcessor(TArray<FString>& InSeen, const TCHAR* InName)
		: Seen(InSeen)
		, Name(InName)
	{
	}

	void Tick(const float, FSlateApplication&, TSharedRef<ICursor>) override { ++Ticks; }
	bool HandleKeyDownEvent(FSlateApplication&, const FKeyEvent& Event) override
	{
		Seen.Add(FString(Name) + TEXT(" down ") + Event.GetKey().ToString());
		if (OnKey)
		{
			OnKey();
		}
		return bConsumes;
	}
	bool HandleKeyUpEvent(FSlateApplication&, const FKeyEvent& Event) override
	{
		Seen.Add(FString(Name) + TEXT(" up ") + Event.GetKey().ToString());
		return bConsumes;
	}
	bool HandleMouseButtonDownEvent(FSlateApplication&, const FPointerEvent& Event) override
	{
		Seen.Add(FString(Name) + TEXT(" press ") + Event.GetEffectingButton().ToString());
		return bConsumes;
	}
	bool HandleMouseWheelOrGestureEvent(FSlateApplication&, const FPointerEvent& Event, const FPointerEvent*) override
	{
		Seen.Add(FString(Name) + FString::Printf(TEXT(" wheel %.1f"), static_cast<double>(Event.GetWheelDelta())));
		return bConsumes;
	}

	TArray<FString>& Seen;
	const TCHAR* Name;
	bool bConsumes = false;
	int32 Ticks = 0;
	TFunction<void()> OnKey;
};

class InputRouting : public FSlateTest
{
protected:
	~InputRouting() override
	{
		FSlateApplication::RemoveGlobalCommandList(Commands);
		FInputBindingManager::Get().RemoveContextByName(TEXT("RoutingTest"));
	}

	TSharedRef<FRecordingProcessor> AddProcessor(const TCHAR* Name)
	{
		const TSharedRef<FRecordingProcessor> Processor = MakeShared<FRecordingProcessor>(Seen, Name);
		EXPECT_TRUE(App().RegisterInputPreProcessor(Processor));
		return Processor;
	}

	TSharedRef<SNativeWidget> AddFocusedWidget(bool bHandles)
	{
		const TSharedRef<SNativeWidget> Widget = SNew(SNativeWidget)
													 .OnKeyDown(FOnNativeKey::CreateLambda(
														 [this, bHandles](const FKeyEvent& Event)
														 {
															 Seen.Add(TEXT("widget ") + Event.GetKey().ToString());
															 return bHandles ? FReply::Handled() : FReply::Unhandled();
														 }));
		EXPECT_TRUE(App().SetKeyboardFocus(Widget));
		return Widget;
	}

	void AddGlobalCommand(const FInputChord& Chord)
	{
		FUICommandInfo::MakeCommandInfo(MakeShared<FBindingContext>(TEXT("RoutingTest"), FText(), NAME_None, NAME_None),
			Command, TEXT("Command"), FText(), FText(), EUserInterfaceActionType::Button, Chord);
		Commands->MapAction(Command, FExecuteAction::CreateLambda([this] { Seen.Add(TEXT("command")); }));
		FSlateApplication::AddGlobalCommandList(Commands);
	}

	TArray<FString> Seen;
	TSharedPtr<FUICommandInfo> Command;
	TSharedRef<FUICommandList> Commands = MakeShared<FUICommandList>();
};

TEST_F(InputRouting, KeyGoesToPreProcessorsThenWidgetThenCommands)
{
	AddProcessor(TEXT("first"));
	AddProcessor(TEXT("second"));
	const TSharedRef<SWidget> Focused = AddFocusedWidget(false);
	AddGlobalCommand(EKeys::B);
	EXPECT_TRUE(Press(EKeys::B));
	EXPECT_THAT(Seen, testing::ElementsAre(FString(TEXT("first down B")), FString(TEXT("second down B")),
						  FString(TEXT("widget B")), FString(TEXT("command"))));
}

TEST_F(InputRouting, WhoeverHandlesAKeyIsTheLastToSeeIt)
{
	const TSharedRef<FRecordingProcessor> First = AddProcessor(TEXT("first"));
	AddProcessor(TEXT("second"));
	const TSharedRef<SWidget> Focused = AddFocusedWidget(true);
	AddGlobalCommand(EKeys::B);
	EXPECT_TRUE(Press(EKeys::B));
	EXPECT_THAT(Seen,
		testing::ElementsAre(FString(TEXT("first down B")), FString(TEXT("second down B")), FString(TEXT("widget B"))));
	Seen.Reset();
	First->bConsumes = true;
	EXPECT_TRUE(Press(EKeys::B));
	EXPECT_THAT(Seen, testing::ElementsAre(FString(TEXT("first down B"))));
}

TEST_F(InputRouting, CommandListThatTakesNoKeysIsPassedOver)
{
	AddGlobalCommand(EKeys::B);
	FSlateApplication::RemoveGlobalCommandList(Commands);
	bool bTakesKeys = false;
	FSlateApplication::AddGlobalCommandList(Commands, [&] { return bTakesKeys; });
	EXPECT_FALSE(Press(EKeys::B));
	bTakesKeys = true;
	EXPECT_TRUE(Press(EKeys::B));
	EXPECT_EQ(Seen.Num(), 1);
}

TEST_F(InputRouting, TextInputIsKnownByTheFocusedWidgetsType)
{
	EXPECT_FALSE(App().IsTextInputFocused());
	const TSharedRef<SWidget> Panel = AddFocusedWidget(false);
	EXPECT_FALSE(App().IsTextInputFocused());
	const TSharedRef<SEditableText> Field = SNew(SEditableText);
	EXPECT_TRUE(App().SetKeyboardFocus(Field));
	EXPECT_TRUE(App().IsTextInputFocused());
}

TEST_F(InputRouting, KeyThatNobodyWantsIsNotHandled)
{
	AddProcessor(TEXT("first"));
	AddGlobalCommand(EKeys::B);
	EXPECT_FALSE(Press(EKeys::C));
	EXPECT_FALSE(Press(EKeys::B, EModifierKey::Control));
}

TEST_F(InputRouting, KeyGoesUpFromTheFocusedWidgetToItsRoot)
{
	const TSharedRef<SEditableText> Field = SNew(SEditableText).IsReadOnly(true);
	const TSharedRef<SWindow> Window = SNew(SWindow)[SNew(SBox)[Field]];
	ASSERT_TRUE(App().SetKeyboardFocus(Field));
	EXPECT_TRUE(Press(EKeys::Escape));
	EXPECT_TRUE(Window->IsClosed());
}

TEST_F(InputRouting, FocusedTextTakesTypedCharactersBeforeCommands)
{
	const TSharedRef<SEditableText> Field = SNew(SEditableText);
	ASSERT_TRUE(App().SetKeyboardFocus(Field));
	AddGlobalCommand(EKeys::B);
	EXPECT_TRUE(App().ProcessKeyDownEvent(FKeyEvent(EKeys::B, {}, 0, false, U'b')));
	EXPECT_EQ(Field->GetText().ToString(), TEXT("b"));
	EXPECT_TRUE(Seen.IsEmpty());
}

TEST_F(InputRouting, ProcessorRegisteredTwiceSeesKeysOnce)
{
	const TSharedRef<FRecordingProcessor> Processor = AddProcessor(TEXT("only"));
	EXPECT_FALSE(App().RegisterInputPreProcessor(Processor));
	Press(EKeys::B);
	EXPECT_EQ(Seen.Num(), 1);
}

TEST_F(InputRouting, ProcessorCanBePutInFrontOfOthers)
{
	AddProcessor(TEXT("first"));
	const TSharedRef<FRecordingProcessor> Front = MakeShared<FRecordingProcessor>(Seen, TEXT("front"));
	App().RegisterInputPreProcessor(Front, 0);
	Press(EKeys::B);
	EXPECT_THAT(Seen, testing::ElementsAre(FString(TEXT("front down B")), FString(TEXT("first down B"))));
}

TEST_F(InputRouting, ProcessorsMayComeAndGoWhileAKeyIsDispatched)
{
	const TSharedRef<FRecordingProcessor> First = AddProcessor(TEXT("first"));
	const TSharedRef<FRecordingProcessor> Second = AddProcessor(TEXT("second"));
	const TSharedRef<FRecordingProcessor> Late = MakeShared<FRecordingProcessor>(Seen, TEXT("late"));
	First->OnKey = [&]
	{
		App().UnregisterInputPreProcessor(First);
		App().UnregisterInputPreProcessor(Second);
		App().RegisterInputPreProcessor(Late);
	};
	Press(EKeys::B);
	EXPECT_THAT(Seen, testing::ElementsAre(FString(TEXT("first down B"))));
	Press(EKeys::C);
	EXPECT_THAT(Seen, testing::ElementsAre(FString(TEXT("first down B")), FString(TEXT("late down C"))));
}

TEST_F(InputRouting, ApplicationMayEndWhileAKeyIsDispatched)
{
	const TSharedRef<FRecordingProcessor> First = AddProcessor(TEXT("first"));
	AddProcessor(TEXT("second"));
	First->OnKey = [] { FSlateApplication::Shutdown(); };
	EXPECT_FALSE(Press(EKeys::B));
	EXPECT_THAT(Seen, testing::ElementsAre(FString(TEXT("first down B"))));
	EXPECT_FALSE(FSlateApplication::IsInitialized());
}

TEST_F(InputRouting, UnregisteredProcessorIsReleased)
{
	TSharedRef<FRecordingProcessor> Processor = AddProcessor(TEXT("only"));
	App().UnregisterInputPreProcessor(Processor);
	EXPECT_TRUE(Processor.IsUnique());
	App().UnregisterInputPreProcessor(Processor);
	EXPECT_FALSE(Press(EKeys::B));
	EXPECT_TRUE(Seen.IsEmpty());
}

TEST_F(InputRouting, KeyUpAndMouseReachPreProcessors)
{
	AddProcessor(TEXT("first"));
	EXPECT_FALSE(App().ProcessKeyUpEvent(FKeyEvent(EKeys::B, {})));
	EXPECT_FALSE(App().ProcessMouseButtonDownEvent(FPointerEvent({3.0, 5.0}, EKeys::LeftMouseButton)));
	EXPECT_FALSE(App().ProcessMouseWheelOrGestureEvent(FPointerEvent({3.0, 5.0}, {}, {}, -2.0f), nullptr));
	EXPECT_THAT(Seen, testing::ElementsAre(FString(TEXT("first up B")), FString(TEXT("first press LeftMouseButton")),
						  FString(TEXT("first wheel -2.0"))));
}

TEST_F(InputRouting, ProcessorsTickOncePerFrame)
{
	const TSharedRef<FRecordingProcessor> Processor = AddProcessor(TEXT("first"));
	App().Tick(0.016f);
	App().Tick(0.016f);
	EXPECT_EQ(Processor->Ticks, 2);
}

TEST_F(InputRouting, WhileADialogIsUpNothingElseSeesInput)
{
	AddProcessor(TEXT("first"));
	const TSharedRef<SWidget> Focused = AddFocusedWidget(true);
	AddGlobalCommand(FInputChord(EModifierKey::Control | EModifierKey::Shift, EKeys::B));
	FPromptDialog Prompt;
	Backend->RespondOnce(
		[&](SCustomDialog& Dialog)
		{
			EXPECT_FALSE(Press(EKeys::B, EModifierKey::Control | EModifierKey::Shift));
			EXPECT_FALSE(App().ProcessKeyUpEvent(FKeyEvent(EKeys::B, {})));
			EXPECT_FALSE(App().ProcessMouseButtonDownEvent(FPointerEvent({3.0, 5.0}, EKeys::LeftMouseButton)));
			// Even where a back end puts the focus elsewhere meanwhile.
			App().SetKeyboardFocus(Focused);
			EXPECT_FALSE(Press(EKeys::C));
			EXPECT_FALSE(Dialog.IsClosed());
		});
	Prompt.Show();
	EXPECT_TRUE(Seen.IsEmpty());
	EXPECT_TRUE(Press(EKeys::C));
	EXPECT_EQ(Seen.Num(), 2);
}

TEST_F(InputRouting, WhileProgressIsShownNothingElseSeesKeys)
{
	AddProcessor(TEXT("first"));
	AddGlobalCommand(EKeys::B);
	const TSharedRef<FSlateProgress> Progress = App().OpenProgress(FText::FromString(TEXT("Building")), true);
	EXPECT_TRUE(Press(EKeys::B));
	EXPECT_FALSE(Progress->WantsCancel());
	EXPECT_TRUE(Press(EKeys::Escape));
	EXPECT_TRUE(Progress->WantsCancel());
	EXPECT_TRUE(Seen.IsEmpty());
	Progress->Close();
	EXPECT_TRUE(Press(EKeys::B));
	EXPECT_THAT(Seen, testing::ElementsAre(FString(TEXT("first down B")), FString(TEXT("command"))));
}

TEST_F(InputRouting, WhileABackEndShowsAWindowOfItsOwnKeysAreLeftToIt)
{
	AddProcessor(TEXT("first"));
	AddGlobalCommand(EKeys::B);
	App().BeginNativeModal();
	EXPECT_TRUE(App().IsModalOrProgressOpen());
	EXPECT_FALSE(Press(EKeys::B));
	EXPECT_TRUE(Seen.IsEmpty());
	App().EndNativeModal();
	EXPECT_TRUE(Press(EKeys::B));
}

TEST_F(InputRouting, FocusIsGivenOnlyToEnabledWidgetsThatTakeIt)
{
	const TSharedRef<SEditableText> Field = SNew(SEditableText);
	ASSERT_TRUE(App().SetKeyboardFocus(Field));
	EXPECT_FALSE(App().SetKeyboardFocus(SNew(STextBlock)));
	EXPECT_FALSE(App().SetKeyboardFocus(SNew(SEditableText).IsEnabled(false)));
	EXPECT_FALSE(App().SetKeyboardFocus({}));
	EXPECT_TRUE(Field->HasKeyboardFocus());
	EXPECT_EQ(App().GetUserFocusedWidget(0), Field.ToSharedPtr());
	EXPECT_FALSE(App().GetUserFocusedWidget(1).IsValid());
	App().ClearKeyboardFocus();
	EXPECT_FALSE(App().GetKeyboardFocusedWidget().IsValid());
}

TEST_F(InputRouting, FocusDoesNotKeepAWidgetAlive)
{
	{
		const TSharedRef<SEditableText> Field = SNew(SEditableText);
		ASSERT_TRUE(App().SetKeyboardFocus(Field));
	}
	EXPECT_FALSE(App().GetKeyboardFocusedWidget().IsValid());
	EXPECT_FALSE(Press(EKeys::B));
}

TEST(SlateApplication, MayBeAbsentAndComeAgain)
{
	EXPECT_FALSE(FSlateApplication::IsInitialized());
	FSlateApplication::Shutdown();
	for (int32 Round = 0; Round < 2; ++Round)
	{
		const TSharedRef<FHeadlessSlateBackend> Backend = MakeShared<FHeadlessSlateBackend>();
		FSlateApplication::Create(Backend);
		EXPECT_TRUE(FSlateApplication::IsInitialized());
		FSlateApplication::Shutdown();
		EXPECT_FALSE(FSlateApplication::IsInitialized());
		EXPECT_TRUE(Backend.IsUnique());
	}
}
}
