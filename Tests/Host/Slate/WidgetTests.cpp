// SPDX-License-Identifier: MIT
#include "Slate/Box.h"
#include "Slate/BoxPanel.h"
#include "Slate/Button.h"
#include "Slate/CheckBox.h"
#include "Slate/EditableText.h"
#include "Slate/NativeWidget.h"
#include "Slate/TextBlock.h"
#include "Support/ThrowingAssertions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
FText Text(const TCHAR* Literal)
{
	return FText::FromString(Literal);
}

TEST(Widgets, DescriptionBuildsTheTreeThatItReadsLike)
{
	TSharedPtr<SCheckBox> Check;
	// clang-format off
	const TSharedRef<SBox> Box = SNew(SBox).MaxDesiredWidth(460.0f)
	[
		SNew(SVerticalBox)
		+ SVerticalBox::Slot().AutoHeight().Padding(0.0f, 0.0f, 0.0f, 12.0f)
		[
			SNew(STextBlock).Text(Text(TEXT("Body"))).AutoWrapText(true)
		]
		+ SVerticalBox::Slot()
		[
			SAssignNew(Check, SCheckBox).IsChecked(ECheckBoxState::Checked)
			[
				SNew(STextBlock).Text(Text(TEXT("Label")))
			]
		]
	];
	// clang-format on

	EXPECT_EQ(Box->GetMaxDesiredWidth(), 460.0f);
	const TSharedPtr<SVerticalBox> Column = StaticCastSharedPtr<SVerticalBox>(Box->GetContent());
	ASSERT_TRUE(Column.IsValid());
	ASSERT_EQ(Column->GetSlots().Num(), 2);
	EXPECT_EQ(Column->GetSlots()[0].GetPadding(), FMargin(0.0f, 0.0f, 0.0f, 12.0f));
	EXPECT_EQ(Column->GetSlots()[1].GetPadding(), FMargin());

	const TArray<TSharedRef<STextBlock>> Texts = FindWidgets<STextBlock>(*Box);
	ASSERT_EQ(Texts.Num(), 2);
	EXPECT_EQ(Texts[0]->GetText().ToString(), TEXT("Body"));
	EXPECT_TRUE(Texts[0]->GetAutoWrapText());
	EXPECT_EQ(Texts[1]->GetText().ToString(), TEXT("Label"));
	EXPECT_FALSE(Texts[1]->GetAutoWrapText());
	ASSERT_TRUE(Check.IsValid());
	EXPECT_EQ(Check->GetCheckedState(), ECheckBoxState::Checked);
	EXPECT_EQ(Texts[1]->GetParentWidget(), Check);
	EXPECT_EQ(Check->GetParentWidget(), Column);
	EXPECT_FALSE(Box->GetParentWidget().IsValid());
}

TEST(Widgets, TypeNameIsTheNameOfTheClass)
{
	EXPECT_EQ((SNew(STextBlock))->GetTypeAsString(), TEXT("STextBlock"));
	EXPECT_EQ((SNew(SVerticalBox))->GetType(), FName(TEXT("SVerticalBox")));
}

TEST(Widgets, WhateverTakesTypedTextIsKnownByItsTypeName)
{
	const TSharedRef<SWidget> Typed[] = {SNew(SEditableText), SNew(SEditableTextBox), SNew(SMultiLineEditableText),
		SNew(SNativeWidget).TypeName(TEXT("SNativeEditableText"))};
	for (const TSharedRef<SWidget>& Widget : Typed)
	{
		EXPECT_TRUE(Widget->GetTypeAsString().Contains(TEXT("EditableText"))) << Widget->GetTypeAsString();
		EXPECT_TRUE(Widget->SupportsKeyboardFocus());
	}
	const TSharedRef<SSearchBox> Search = SNew(SSearchBox);
	EXPECT_FALSE(Search->SupportsKeyboardFocus());
	EXPECT_EQ(Search->GetEditableText()->GetTypeAsString(), TEXT("SEditableText"));
}

TEST(Widgets, CommonArgumentsAreKept)
{
	const TSharedRef<SButton> Button = SNew(SButton)
										   .Tag(TEXT("Go"))
										   .ToolTipText(Text(TEXT("Goes")))
										   .IsEnabled(false)
										   .Visibility(EVisibility::Collapsed)
										   .Text(Text(TEXT("Go!")));
	EXPECT_EQ(Button->GetTag(), FName(TEXT("Go")));
	EXPECT_EQ(Button->GetToolTipText().ToString(), TEXT("Goes"));
	EXPECT_FALSE(Button->IsEnabled());
	EXPECT_EQ(Button->GetVisibility(), EVisibility::Collapsed);
	EXPECT_EQ(Button->GetText().ToString(), TEXT("Go!"));
}

TEST(Widgets, DisabledParentDisablesItsChildren)
{
	const TSharedRef<SButton> Button = SNew(SButton);
	const TSharedRef<SBox> Box = SNew(SBox)[Button];
	EXPECT_TRUE(Button->IsEnabled());
	Box->SetEnabled(false);
	EXPECT_FALSE(Button->IsEnabled());
}

TEST(Widgets, WidgetHasOneParent)
{
	const FThrowingAssertions Assertions;
	const TSharedRef<STextBlock> Shared = SNew(STextBlock);
	const TSharedRef<SBox> First = SNew(SBox)[Shared];
	EXPECT_THROW(SNew(SBox)[Shared], FAssertionFailed);

	First->SetContent({});
	EXPECT_FALSE(Shared->GetParentWidget().IsValid());
	const TSharedRef<SBox> Second = SNew(SBox)[Shared];
	EXPECT_EQ(Shared->GetParentWidget(), TSharedPtr<SWidget>(Second));
}

TEST(Widgets, WidgetFoundByTag)
{
	const TSharedRef<SHorizontalBox> Row =
		SNew(SHorizontalBox) + SHorizontalBox::Slot()[SNew(SButton).Tag(TEXT("Left"))] +
		SHorizontalBox::Slot()[SNew(SButton).Tag(TEXT("Right")).Text(Text(TEXT("R")))];
	const TSharedPtr<SButton> Right = FindWidgetByTag<SButton>(*Row, TEXT("Right"));
	ASSERT_TRUE(Right.IsValid());
	EXPECT_EQ(Right->GetText().ToString(), TEXT("R"));
	EXPECT_FALSE(FindWidgetByTag<SButton>(*Row, TEXT("Middle")).IsValid());
	EXPECT_FALSE(FindWidgetByTag<SCheckBox>(*Row, TEXT("Right")).IsValid());
}

TEST(Widgets, TogglingCheckBoxTellsItsNewState)
{
	TArray<ECheckBoxState> Told;
	const TSharedRef<SCheckBox> Check = SNew(SCheckBox)
											.IsChecked(ECheckBoxState::Undetermined)
											.OnCheckStateChanged(FOnCheckStateChanged::CreateLambda(
												[&Told](ECheckBoxState State) { Told.Add(State); }));
	Check->ToggleCheckedState();
	Check->ToggleCheckedState();
	EXPECT_THAT(Told, testing::ElementsAre(ECheckBoxState::Checked, ECheckBoxState::Unchecked));

	Check->SetIsChecked(ECheckBoxState::Checked);
	EXPECT_EQ(Told.Num(), 2);
	Check->SetEnabled(false);
	Check->ToggleCheckedState();
	EXPECT_TRUE(Check->IsChecked());
	EXPECT_EQ(Told.Num(), 2);
}

TEST(Widgets, DisabledButtonIsNotClicked)
{
	int32 Clicks = 0;
	const TSharedRef<SButton> Button = SNew(SButton).OnClicked(FOnClicked::CreateLambda(
		[&Clicks]
		{
			++Clicks;
			return FReply::Handled();
		}));
	EXPECT_TRUE(Button->Click().IsEventHandled());
	Button->SetEnabled(false);
	EXPECT_FALSE(Button->Click().IsEventHandled());
	EXPECT_EQ(Clicks, 1);
}

TEST(Widgets, ChangesThatUsersSeeAreTold)
{
	const TSharedRef<STextBlock> Block = SNew(STextBlock);
	int32 Changes = 0;
	Block->OnChanged().AddLambda(
		[&](SWidget& Widget)
		{
			EXPECT_EQ(&Widget, &Block.Get());
			++Changes;
		});
	Block->SetText(Text(TEXT("New")));
	Block->SetEnabled(false);
	Block->SetEnabled(false);
	Block->SetVisibility(EVisibility::Hidden);
	EXPECT_EQ(Changes, 3);
}

TEST(Widgets, ReadOnlyTextIsNotTyped)
{
	TArray<FString> Typed;
	const TSharedRef<SEditableText> Line =
		SNew(SEditableText)
			.OnTextChanged(FOnTextChanged::CreateLambda([&Typed](const FText& New) { Typed.Add(New.ToString()); }));
	Line->TypeText(Text(TEXT("a")));
	Line->SetIsReadOnly(true);
	Line->TypeText(Text(TEXT("b")));
	EXPECT_THAT(Typed, testing::ElementsAre(FString(TEXT("a"))));
	EXPECT_EQ(Line->GetText().ToString(), TEXT("a"));
}
}
