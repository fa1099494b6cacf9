// SPDX-License-Identifier: MIT
#include "Slate/CustomDialog.h"
#include "Slate/HeadlessBackend.h"
#include "Slate/SlateApplication.h"
#include "Support/ThrowingAssertions.h"
#include "ToolMenusFixture.h"

namespace
{
using testing::ElementsAre;

FText Text(const TCHAR* Literal)
{
	return FText::FromString(Literal);
}

using OpenMenu = FToolMenusTest;

TEST_F(OpenMenu, EntryOfACommandShowsItsTextsAndChord)
{
	Extend().FindOrAddSection(TEXT("Section"), Text(TEXT("A section"))).AddMenuEntryWithCommandList(Bake, List);
	const TSharedRef<FMenuModel> Model = Open();
	ASSERT_EQ(Model->GetSections().Num(), 1);
	EXPECT_EQ(Model->GetSections()[0].Label.ToString(), TEXT("A section"));
	const FMenuItem& Item = *Model->GetSections()[0].Items[0];
	EXPECT_EQ(Item.GetName(), FName(TEXT("Bake")));
	EXPECT_EQ(Item.GetLabel().ToString(), TEXT("Bake it"));
	EXPECT_EQ(Item.GetToolTip().ToString(), TEXT("Bakes it"));
	EXPECT_EQ(Item.GetChordText().ToString(), TEXT("Ctrl+Shift+B"));
	EXPECT_FALSE(Item.GetIcon().IsSet());
	EXPECT_EQ(Item.GetType(), EToolMenuEntryType::MenuEntry);
	EXPECT_EQ(Item.GetUserInterfaceType(), EUserInterfaceActionType::Button);
}

TEST_F(OpenMenu, TextsOfACommandCanBeOverridden)
{
	Extend()
		.AddSection(TEXT("Section"))
		.AddMenuEntryWithCommandList(
			Bake, List, Text(TEXT("Other")), Text(TEXT("Other tip")), FSlateIcon(TEXT("Style"), TEXT("Icon")));
	const TSharedPtr<FMenuItem> Item = Open()->FindItem(TEXT("Bake"));
	EXPECT_EQ(Item->GetLabel().ToString(), TEXT("Other"));
	EXPECT_EQ(Item->GetToolTip().ToString(), TEXT("Other tip"));
	EXPECT_EQ(Item->GetIcon().StyleName, FName(TEXT("Icon")));
	EXPECT_EQ(Item->GetChordText().ToString(), TEXT("Ctrl+Shift+B"));
}

TEST_F(OpenMenu, ChordShownIsTheActiveOne)
{
	Extend().AddSection(TEXT("Section")).AddMenuEntryWithCommandList(Pivot, List);
	const TSharedRef<FMenuModel> Model = Open();
	EXPECT_EQ(Model->FindItem(TEXT("Pivot"))->GetChordText().ToString(), TEXT("Ctrl+Num 5"));
	Pivot->SetActiveChord(EKeys::F5, EMultipleKeyBindingIndex::Primary);
	EXPECT_EQ(Model->FindItem(TEXT("Pivot"))->GetChordText().ToString(), TEXT("F5"));
	Pivot->ResetActiveChords();
}

TEST_F(OpenMenu, ChoosingAnEntryRunsTheActionOfItsChord)
{
	Extend().AddSection(TEXT("Section")).AddMenuEntryWithCommandList(Pivot, List);
	EXPECT_TRUE(Open()->FindItem(TEXT("Pivot"))->Execute());
	EXPECT_TRUE(List->ProcessCommandBindings(
		FKeyEvent(EKeys::NumPadFive, FModifierKeysState::FromMask(EModifierKey::Control))));
	EXPECT_THAT(Ran, ElementsAre(FString(TEXT("pivot")), FString(TEXT("pivot"))));
}

TEST_F(OpenMenu, EntryIsEnabledWhileItsActionCanExecute)
{
	Extend().AddSection(TEXT("Section")).AddMenuEntryWithCommandList(Bake, List);
	const TSharedPtr<FMenuItem> Item = Open()->FindItem(TEXT("Bake"));
	EXPECT_TRUE(Item->IsEnabled());
	bMayBake = false;
	EXPECT_FALSE(Item->IsEnabled());
	EXPECT_FALSE(Item->Execute());
	EXPECT_THAT(Ran, ElementsAre());
}

TEST_F(OpenMenu, EntryWhoseCommandIsNotMappedIsDisabled)
{
	Extend().AddSection(TEXT("Section")).AddMenuEntryWithCommandList(Unmapped, List);
	const TSharedPtr<FMenuItem> Item = Open()->FindItem(TEXT("Unmapped"));
	EXPECT_FALSE(Item->IsEnabled());
	EXPECT_FALSE(Item->Execute());
}

TEST_F(OpenMenu, CommandWithoutAListRunsAsTheContextSays)
{
	Extend().AddSection(TEXT("Section")).AddMenuEntry(Pivot);
	EXPECT_FALSE(Open()->FindItem(TEXT("Pivot"))->IsEnabled());
	FToolMenuContext Context(MakeShared<FUICommandList>());
	Context.AppendCommandList({});
	Context.AppendCommandList(List);
	const TSharedPtr<FMenuModel> Model = Menus().GenerateMenu(MenuName, Context);
	EXPECT_TRUE(Model->FindItem(TEXT("Pivot"))->Execute());
	EXPECT_THAT(Ran, ElementsAre(FString(TEXT("pivot"))));
}

TEST_F(OpenMenu, EntryMayHaveAnActionOfItsOwn)
{
	bool bChecked = false;
	FUIAction Action(FExecuteAction::CreateLambda([&bChecked] { bChecked = !bChecked; }), FCanExecuteAction(),
		FGetActionCheckState::CreateLambda(
			[&bChecked] { return bChecked ? ECheckBoxState::Checked : ECheckBoxState::Unchecked; }));
	Extend()
		.AddSection(TEXT("Section"))
		.AddMenuEntry(TEXT("Grid"), Text(TEXT("Show grid")), Text(TEXT("Shows it")), FSlateIcon(), Action,
			EUserInterfaceActionType::ToggleButton);
	const TSharedPtr<FMenuItem> Item = Open()->FindItem(TEXT("Grid"));
	EXPECT_EQ(Item->GetLabel().ToString(), TEXT("Show grid"));
	EXPECT_EQ(Item->GetUserInterfaceType(), EUserInterfaceActionType::ToggleButton);
	EXPECT_TRUE(Item->GetChordText().IsEmpty());
	EXPECT_EQ(Item->GetCheckState(), ECheckBoxState::Unchecked);
	EXPECT_TRUE(Item->Execute());
	EXPECT_EQ(Item->GetCheckState(), ECheckBoxState::Checked);
}

TEST_F(OpenMenu, InvisibleEntriesAndEmptySectionsAreLeftOut)
{
	bool bVisible = false;
	FUIAction Action(FExecuteAction::CreateLambda([] {}));
	Action.IsActionVisibleDelegate = FIsActionButtonVisible::CreateLambda([&bVisible] { return bVisible; });
	Extend().AddSection(TEXT("Empty"));
	Extend().AddSection(TEXT("Hidden")).AddMenuEntry(TEXT("Entry"), Text(TEXT("Entry")), FText(), FSlateIcon(), Action);
	EXPECT_THAT(Layout(*Open()), ElementsAre());
	bVisible = true;
	EXPECT_THAT(Layout(*Open()), ElementsAre(FString(TEXT("Hidden: Entry"))));
}

TEST_F(OpenMenu, SeparatorIsNoChoice)
{
	Extend().AddSection(TEXT("Section")).AddSeparator(TEXT("Line"));
	const TSharedPtr<FMenuItem> Item = Open()->FindItem(TEXT("Line"));
	EXPECT_EQ(Item->GetType(), EToolMenuEntryType::Separator);
	EXPECT_FALSE(Item->IsEnabled());
	EXPECT_FALSE(Item->Execute());
}

TEST_F(OpenMenu, SubMenuIsBuiltEachTimeItIsOpened)
{
	int32 Builds = 0;
	Extend()
		.AddSection(TEXT("Section"))
		.AddSubMenu(TEXT("Sub"), Text(TEXT("Set Pivot")), Text(TEXT("A tip")),
			FNewToolMenuDelegate::CreateLambda(
				[&, this](UToolMenu* Menu)
				{
					++Builds;
					FToolMenuSection& Section = Menu->FindOrAddSection(TEXT("SubSection"));
					Section.AddMenuEntryWithCommandList(Pivot, List);
					Section.AddMenuEntryWithCommandList(Bake, List);
				}));
	const TSharedPtr<FMenuItem> Item = Open()->FindItem(TEXT("Sub"));
	EXPECT_EQ(Builds, 0);
	EXPECT_EQ(Item->GetLabel().ToString(), TEXT("Set Pivot"));
	EXPECT_EQ(Item->GetToolTip().ToString(), TEXT("A tip"));
	EXPECT_TRUE(Item->IsEnabled());
	EXPECT_FALSE(Item->OpensOnClick());
	EXPECT_TRUE(Item->ClosesMenuAfterSelection());
	EXPECT_FALSE(Item->Execute());
	for (const int32 Round : {1, 2})
	{
		const TSharedRef<FMenuModel> Sub = Item->OpenSubMenu();
		EXPECT_EQ(Builds, Round);
		EXPECT_THAT(Layout(*Sub), ElementsAre(FString(TEXT("SubSection: Pivot Bake"))));
		EXPECT_TRUE(Sub->GetSections()[0].Label.IsEmpty());
		EXPECT_TRUE(Sub->FindItem(TEXT("Pivot"))->Execute());
	}
	EXPECT_EQ(Ran.Num(), 2);
}

TEST_F(OpenMenu, SubMenuWithoutABuilderIsEmpty)
{
	Extend()
		.AddSection(TEXT("Section"))
		.AddSubMenu(TEXT("Sub"), FText(), FText(), FNewToolMenuChoice(), true, FSlateIcon(), false);
	const TSharedPtr<FMenuItem> Item = Open()->FindItem(TEXT("Sub"));
	EXPECT_TRUE(Item->OpensOnClick());
	EXPECT_FALSE(Item->ClosesMenuAfterSelection());
	EXPECT_THAT(Layout(*Item->OpenSubMenu()), ElementsAre());
}

TEST_F(OpenMenu, OnlySubMenusCanBeOpened)
{
	const FThrowingAssertions Assertions;
	Extend().AddSection(TEXT("Section")).AddMenuEntryWithCommandList(Bake, List);
	EXPECT_THROW(Open()->FindItem(TEXT("Bake"))->OpenSubMenu(), FAssertionFailed);
}

TEST_F(OpenMenu, NothingIsChosenWhileADialogIsUp)
{
	Extend().AddSection(TEXT("Section")).AddMenuEntryWithCommandList(Pivot, List);
	const TSharedPtr<FMenuItem> Item = Open()->FindItem(TEXT("Pivot"));
	const TSharedRef<FHeadlessSlateBackend> Backend = MakeShared<FHeadlessSlateBackend>();
	FSlateApplication::Create(Backend);
	Backend->RespondOnce([&Item](SCustomDialog&) { EXPECT_FALSE(Item->Execute()); });
	const TSharedRef<SCustomDialog> Dialog = SNew(SCustomDialog);
	Dialog->ShowModal();
	EXPECT_THAT(Ran, ElementsAre());
	EXPECT_TRUE(Item->Execute());
	FSlateApplication::Shutdown();
}

TEST_F(OpenMenu, IsAPictureOfTheMomentInWhichItWasOpened)
{
	Extend().AddSection(TEXT("Section")).AddMenuEntryWithCommandList(Bake, List);
	const TSharedRef<FMenuModel> Before = Open();
	AddPlain(Extend().FindOrAddSection(TEXT("Section")), TEXT("Late"));
	EXPECT_FALSE(Before->FindItem(TEXT("Late")).IsValid());
	EXPECT_TRUE(Open()->FindItem(TEXT("Late")).IsValid());
}
}
