// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/InputBindingManager.h"
#include "ToolMenus/ToolMenus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// A ready menu system with one registered menu, three commands and a list that maps two of them, for one test.
class FToolMenusTest : public testing::Test
{
protected:
	FToolMenusTest()
	{
		UToolMenus::StartUp();
		Menus().RegisterMenu(MenuName);
		Bake = MakeCommand(TEXT("Bake"), FInputChord(EModifierKey::Control | EModifierKey::Shift, EKeys::B));
		Pivot = MakeCommand(TEXT("Pivot"), FInputChord(EModifierKey::Control, EKeys::NumPadFive));
		Unmapped = MakeCommand(TEXT("Unmapped"), FInputChord());
		List->MapAction(Bake, FExecuteAction::CreateLambda([this] { Ran.Add(TEXT("bake")); }),
			FCanExecuteAction::CreateLambda([this] { return bMayBake; }));
		List->MapAction(Pivot, FExecuteAction::CreateLambda([this] { Ran.Add(TEXT("pivot")); }));
	}
	~FToolMenusTest() override
	{
		UToolMenus::ShutDown();
		FInputBindingManager::Get().RemoveContextByName(TEXT("ToolMenusTest"));
	}

	static UToolMenus& Menus() { return *UToolMenus::Get(); }
	static UToolMenu& Extend() { return *Menus().ExtendMenu(MenuName); }

	TSharedRef<FMenuModel> Open() const
	{
		const TSharedPtr<FMenuModel> Model = Menus().GenerateMenu(MenuName, FToolMenuContext());
		EXPECT_TRUE(Model.IsValid());
		return Model.ToSharedRef();
	}

	/// "Section: Item Item" for each section of a menu.
	static TArray<FString> Layout(const FMenuModel& Model)
	{
		TArray<FString> Lines;
		for (const FMenuModel::FSection& Section : Model.GetSections())
		{
			FString Line = Section.Name.ToString() + TEXT(":");
			for (const TSharedRef<FMenuItem>& Item : Section.Items)
			{
				Line += TEXT(" ") + Item->GetName().ToString();
			}
			Lines.Add(Line);
		}
		return Lines;
	}

	/// Adds an entry that does nothing.
	static FToolMenuEntry& AddPlain(FToolMenuSection& Section, const TCHAR* Name)
	{
		return Section.AddMenuEntry(
			Name, FText::FromString(Name), FText(), FSlateIcon(), FUIAction(FExecuteAction::CreateLambda([] {})));
	}

	static inline const FName MenuName = TEXT("LevelEditor.ActorContextMenu");
	TSharedPtr<FUICommandInfo> Bake;
	TSharedPtr<FUICommandInfo> Pivot;
	TSharedPtr<FUICommandInfo> Unmapped;
	TSharedRef<FUICommandList> List = MakeShared<FUICommandList>();
	TArray<FString> Ran;
	bool bMayBake = true;

private:
	TSharedPtr<FUICommandInfo> MakeCommand(const TCHAR* Name, const FInputChord& Chord) const
	{
		TSharedPtr<FUICommandInfo> Command;
		FUICommandInfo::MakeCommandInfo(CommandContext, Command, Name, FText::FromString(FString(Name) + TEXT(" it")),
			FText::FromString(FString(Name) + TEXT("s it")), EUserInterfaceActionType::Button, Chord);
		return Command;
	}

	TSharedRef<FBindingContext> CommandContext =
		MakeShared<FBindingContext>(TEXT("ToolMenusTest"), FText(), NAME_None, NAME_None);
};
