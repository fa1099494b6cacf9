// SPDX-License-Identifier: MIT
#include "Core/Log.h"
#include "Core/ModuleManager.h"
#include "CoreUObject/GarbageCollector.h"
#include "Support/ThrowingAssertions.h"
#include "ToolMenusFixture.h"

namespace
{
using testing::ElementsAre;

using ToolMenus = FToolMenusTest;

FText Text(const TCHAR* Literal)
{
	return FText::FromString(Literal);
}

TEST_F(ToolMenus, SectionsAndEntriesStandInTheOrderOfTheirAddition)
{
	AddPlain(Extend().AddSection(TEXT("First")), TEXT("A"));
	AddPlain(Extend().AddSection(TEXT("Second")), TEXT("B"));
	AddPlain(Extend().FindOrAddSection(TEXT("First")), TEXT("C"));
	EXPECT_THAT(Layout(*Open()), ElementsAre(FString(TEXT("First: A C")), FString(TEXT("Second: B"))));
}

TEST_F(ToolMenus, SectionsGoBeforeAndAfterTheirAnchors)
{
	const auto Add = [](const TCHAR* Name, const TCHAR* Anchor, EToolMenuInsertType Position)
	{ AddPlain(Extend().AddSection(Name, FText(), FToolMenuInsert(Anchor, Position)), TEXT("x")); };
	Add(TEXT("AfterLate"), TEXT("Late"), EToolMenuInsertType::After);
	Add(TEXT("Plain"), nullptr, EToolMenuInsertType::Default);
	Add(TEXT("BeforePlain"), TEXT("Plain"), EToolMenuInsertType::Before);
	Add(TEXT("Late"), TEXT("BeforePlain"), EToolMenuInsertType::Before);
	Add(TEXT("Lost"), TEXT("Nowhere"), EToolMenuInsertType::Before);
	Add(TEXT("Front"), nullptr, EToolMenuInsertType::First);
	EXPECT_THAT(
		Layout(*Open()), ElementsAre(FString(TEXT("Front: x")), FString(TEXT("Late: x")), FString(TEXT("AfterLate: x")),
							 FString(TEXT("BeforePlain: x")), FString(TEXT("Plain: x")), FString(TEXT("Lost: x"))));
}

TEST_F(ToolMenus, EntriesGoBeforeAndAfterTheirAnchors)
{
	FToolMenuSection& Section = Extend().AddSection(TEXT("Section"));
	AddPlain(Section, TEXT("A"));
	AddPlain(Section, TEXT("B"));
	AddPlain(Section, TEXT("C")).InsertPosition = FToolMenuInsert(TEXT("A"), EToolMenuInsertType::After);
	EXPECT_THAT(Layout(*Open()), ElementsAre(FString(TEXT("Section: A C B"))));
}

TEST_F(ToolMenus, SectionThatExistsIsFoundAndKeepsItsLabel)
{
	FToolMenuSection& Section = Extend().AddSection(TEXT("Section"), Text(TEXT("Label")));
	EXPECT_EQ(&Extend().FindOrAddSection(TEXT("Section"), Text(TEXT("Other"))), &Section);
	EXPECT_EQ(&Extend().AddSection(TEXT("Section")), &Section);
	EXPECT_EQ(Section.Label.ToString(), TEXT("Label"));
	EXPECT_EQ(Extend().FindSection(TEXT("Section")), &Section);
	EXPECT_EQ(Extend().FindSection(TEXT("Elsewhere")), nullptr);
	Extend().RemoveSection(TEXT("Section"));
	EXPECT_EQ(Extend().FindSection(TEXT("Section")), nullptr);
}

TEST_F(ToolMenus, SectionWithoutALabelTakesTheFirstOneGiven)
{
	FToolMenuSection& Section = Extend().FindOrAddSection(TEXT("Section"));
	Extend().FindOrAddSection(TEXT("Section"), Text(TEXT("Label")));
	EXPECT_EQ(Section.Label.ToString(), TEXT("Label"));
}

TEST_F(ToolMenus, SectionsStayWhereTheyAreWhileOthersAreAdded)
{
	FToolMenuSection& First = Extend().AddSection(TEXT("First"));
	for (int32 Index = 0; Index < 100; ++Index)
	{
		Extend().AddSection(*FString::Printf(TEXT("Section%d"), Index));
	}
	AddPlain(First, TEXT("A"));
	EXPECT_THAT(Layout(*Open()), ElementsAre(FString(TEXT("First: A"))));
}

TEST_F(ToolMenus, EntryOfOneNameReplacesTheOtherInItsPlace)
{
	FToolMenuSection& Section = Extend().AddSection(TEXT("Section"));
	AddPlain(Section, TEXT("A"));
	AddPlain(Section, TEXT("B"));
	Section.AddMenuEntry(TEXT("A"), Text(TEXT("New")), FText(), FSlateIcon(), FUIAction());
	EXPECT_THAT(Layout(*Open()), ElementsAre(FString(TEXT("Section: A B"))));
	EXPECT_EQ(Section.FindEntry(TEXT("A"))->Label.ToString(), TEXT("New"));
}

TEST_F(ToolMenus, OnlyRegisteredMenusAreOpened)
{
	const FName Other = TEXT("Other");
	EXPECT_EQ(Menus().FindMenu(Other), nullptr);
	UToolMenu* const Extended = Menus().ExtendMenu(Other);
	ASSERT_NE(Extended, nullptr);
	EXPECT_EQ(Extended->GetMenuName(), Other);
	EXPECT_EQ(Menus().FindMenu(Other), Extended);
	EXPECT_FALSE(Menus().IsMenuRegistered(Other));
	EXPECT_FALSE(Menus().GenerateMenu(Other, FToolMenuContext()).IsValid());
	EXPECT_FALSE(Menus().GenerateMenu(TEXT("Unknown"), FToolMenuContext()).IsValid());
}

TEST_F(ToolMenus, ExtensionMadeBeforeRegistrationIsKept)
{
	AddPlain(Menus().ExtendMenu(TEXT("Other"))->AddSection(TEXT("Extension")), TEXT("A"));
	UToolMenu* const Registered = Menus().RegisterMenu(TEXT("Other"));
	AddPlain(Registered->AddSection(TEXT("Own")), TEXT("B"));
	EXPECT_TRUE(Menus().IsMenuRegistered(TEXT("Other")));
	EXPECT_THAT(Layout(*Menus().GenerateMenu(TEXT("Other"), FToolMenuContext())),
		ElementsAre(FString(TEXT("Extension: A")), FString(TEXT("Own: B"))));
}

TEST_F(ToolMenus, RegisteringTwiceWarnsAndKeepsTheMenu)
{
	UToolMenu* const Menu = Menus().FindMenu(MenuName);
	FCaptureLogSink Log;
	EXPECT_EQ(Menus().RegisterMenu(MenuName), Menu);
	ASSERT_EQ(Log.Records().Num(), 1);
	EXPECT_EQ(Log.Records()[0].Message, TEXT("LevelEditor.ActorContextMenu: the menu is registered already"));
}

TEST_F(ToolMenus, RemovedMenuIsGone)
{
	AddPlain(Extend().AddSection(TEXT("Section")), TEXT("A"));
	Menus().RemoveMenu(MenuName);
	Menus().RemoveMenu(MenuName);
	EXPECT_EQ(Menus().FindMenu(MenuName), nullptr);
	EXPECT_TRUE(Extend().GetSections().IsEmpty());
}

TEST_F(ToolMenus, OwnerTakesOutEverythingItAdded)
{
	int32 Address = 0;
	AddPlain(Extend().AddSection(TEXT("Host")), TEXT("Select"));
	{
		const FToolMenuOwnerScoped Scope(&Address);
		AddPlain(Extend().AddSection(TEXT("Mine")), TEXT("A"));
		AddPlain(Extend().FindOrAddSection(TEXT("Host")), TEXT("B"));
		AddPlain(Menus().RegisterMenu(TEXT("MyMenu"))->AddSection(TEXT("Section")), TEXT("C"));
	}
	EXPECT_THAT(Layout(*Open()), ElementsAre(FString(TEXT("Host: Select B")), FString(TEXT("Mine: A"))));
	Menus().UnregisterOwner(&Address);
	EXPECT_THAT(Layout(*Open()), ElementsAre(FString(TEXT("Host: Select"))));
	EXPECT_EQ(Extend().FindSection(TEXT("Mine")), nullptr);
	EXPECT_EQ(Menus().FindMenu(TEXT("MyMenu")), nullptr);
}

TEST_F(ToolMenus, SectionStaysWhileOthersHaveEntriesInIt)
{
	{
		const FToolMenuOwnerScoped Scope(TEXT("First"));
		AddPlain(Extend().AddSection(TEXT("Shared")), TEXT("A"));
		AddPlain(Menus().RegisterMenu(TEXT("MyMenu"))->AddSection(TEXT("Section")), TEXT("C"));
	}
	{
		const FToolMenuOwnerScoped Scope(TEXT("Second"));
		AddPlain(Extend().FindOrAddSection(TEXT("Shared")), TEXT("B"));
		AddPlain(Menus().ExtendMenu(TEXT("MyMenu"))->FindOrAddSection(TEXT("Section")), TEXT("D"));
	}
	Menus().UnregisterOwner(TEXT("First"));
	EXPECT_THAT(Layout(*Open()), ElementsAre(FString(TEXT("Shared: B"))));
	EXPECT_FALSE(Menus().IsMenuRegistered(TEXT("MyMenu")));
	ASSERT_NE(Menus().FindMenu(TEXT("MyMenu")), nullptr);
	EXPECT_EQ(Menus().FindMenu(TEXT("MyMenu"))->GetSections().Num(), 1);
}

TEST_F(ToolMenus, NobodyInParticularOwnsWhatTheHostAdds)
{
	AddPlain(Extend().AddSection(TEXT("Host")), TEXT("Select"));
	Menus().UnregisterOwner(FToolMenuOwner());
	EXPECT_THAT(Layout(*Open()), ElementsAre(FString(TEXT("Host: Select"))));
}

TEST_F(ToolMenus, OwnersByPointerAndByNameAreDifferent)
{
	const int32 Addresses[2] = {};
	EXPECT_EQ(FToolMenuOwner(&Addresses[0]), FToolMenuOwner(&Addresses[0]));
	EXPECT_NE(FToolMenuOwner(&Addresses[0]), FToolMenuOwner(&Addresses[1]));
	EXPECT_NE(FToolMenuOwner(&Addresses[0]), FToolMenuOwner(TEXT("Name")));
	EXPECT_FALSE(FToolMenuOwner().IsSet());
}

TEST_F(ToolMenus, OwnersArePushedAndPoppedInPairs)
{
	Menus().PushOwner(TEXT("Outer"));
	Menus().PushOwner(TEXT("Inner"));
	EXPECT_EQ(Menus().CurrentOwner(), FToolMenuOwner(TEXT("Inner")));
	{
		const FThrowingAssertions Assertions;
		EXPECT_THROW(Menus().PopOwner(TEXT("Outer")), FAssertionFailed);
	}
	Menus().PopOwner(TEXT("Inner"));
	Menus().PopOwner(TEXT("Outer"));
	EXPECT_FALSE(Menus().CurrentOwner().IsSet());
	const FThrowingAssertions Assertions;
	EXPECT_THROW(Menus().PopOwner(TEXT("Outer")), FAssertionFailed);
}

TEST_F(ToolMenus, OwnerThatLeavesTakesItsLinesOutOfOpenMenus)
{
	AddPlain(Extend().AddSection(TEXT("Host")), TEXT("Select"));
	{
		const FToolMenuOwnerScoped Scope(TEXT("Plugin"));
		Extend()
			.AddSection(TEXT("Mine"))
			.AddSubMenu(TEXT("Sub"), FText(), FText(),
				FNewToolMenuDelegate::CreateLambda(
					[](UToolMenu* Menu) { AddPlain(Menu->FindOrAddSection(TEXT("Section")), TEXT("A")); }));
	}
	const TSharedRef<FMenuModel> Model = Open();
	const TSharedRef<FMenuModel> Sub = Model->FindItem(TEXT("Sub"))->OpenSubMenu();
	EXPECT_THAT(Layout(*Sub), ElementsAre(FString(TEXT("Section: A"))));
	int32 Changes = 0;
	Model->OnChanged().AddLambda([&Changes] { ++Changes; });
	Sub->OnChanged().AddLambda([&Changes] { ++Changes; });

	Menus().UnregisterOwner(TEXT("Plugin"));
	EXPECT_THAT(Layout(*Model), ElementsAre(FString(TEXT("Host: Select"))));
	EXPECT_THAT(Layout(*Sub), ElementsAre());
	EXPECT_EQ(Changes, 2);
}

TEST_F(ToolMenus, MenusSurviveACollection)
{
	AddPlain(Extend().AddSection(TEXT("Section")), TEXT("A"));
	const TWeakObjectPtr<UToolMenu> Menu = &Extend();
	ASSERT_TRUE(CollectGarbage());
	EXPECT_TRUE(Menu.IsValid());
	EXPECT_THAT(Layout(*Open()), ElementsAre(FString(TEXT("Section: A"))));
}

TEST_F(ToolMenus, SubMenusLeaveNoObjectsBehind)
{
	TWeakObjectPtr<UToolMenu> Built;
	Extend()
		.AddSection(TEXT("Section"))
		.AddSubMenu(TEXT("Sub"), FText(), FText(),
			FNewToolMenuDelegate::CreateLambda(
				[&Built](UToolMenu* Menu)
				{
					Built = Menu;
					EXPECT_TRUE(CollectGarbage());
					EXPECT_TRUE(Built.IsValid());
				}));
	Open()->FindItem(TEXT("Sub"))->OpenSubMenu();
	EXPECT_FALSE(Built.IsValid());
}

/// The menu system before and after it is ready.
class StartupCallbacks : public testing::Test
{
protected:
	StartupCallbacks() { UToolMenus::ShutDown(); }
	~StartupCallbacks() override { UToolMenus::ShutDown(); }

	FSimpleDelegate Record(const TCHAR* Name)
	{
		return FSimpleDelegate::CreateLambda([this, Name] { Ran.Add(Name); });
	}

	TArray<FString> Ran;
};

TEST_F(StartupCallbacks, WaitUntilTheMenuSystemIsReady)
{
	EXPECT_TRUE(UToolMenus::RegisterStartupCallback(Record(TEXT("first"))).IsValid());
	UToolMenus::RegisterStartupCallback(Record(TEXT("second")));
	UToolMenus::Get();
	EXPECT_FALSE(UToolMenus::IsReady());
	EXPECT_THAT(Ran, ElementsAre());
	UToolMenus::StartUp();
	EXPECT_TRUE(UToolMenus::IsReady());
	EXPECT_THAT(Ran, ElementsAre(FString(TEXT("first")), FString(TEXT("second"))));
}

TEST_F(StartupCallbacks, RunAtOnceWhenTheMenuSystemIsReady)
{
	UToolMenus::StartUp();
	const FDelegateHandle Handle = UToolMenus::RegisterStartupCallback(Record(TEXT("late")));
	EXPECT_TRUE(Handle.IsValid());
	EXPECT_THAT(Ran, ElementsAre(FString(TEXT("late"))));
	UToolMenus::UnRegisterStartupCallback(Handle);
}

TEST_F(StartupCallbacks, RunOnce)
{
	UToolMenus::RegisterStartupCallback(Record(TEXT("once")));
	UToolMenus::StartUp();
	UToolMenus::ShutDown();
	UToolMenus::StartUp();
	EXPECT_EQ(Ran.Num(), 1);
}

TEST_F(StartupCallbacks, ThoseTakenBackDoNotRun)
{
	const FDelegateHandle Handle = UToolMenus::RegisterStartupCallback(Record(TEXT("first")));
	UToolMenus::RegisterStartupCallback(Record(TEXT("second")));
	UToolMenus::UnRegisterStartupCallback(Handle);
	UToolMenus::UnRegisterStartupCallback(FDelegateHandle());
	UToolMenus::StartUp();
	EXPECT_THAT(Ran, ElementsAre(FString(TEXT("second"))));
}

TEST_F(StartupCallbacks, RunWhenTheModuleIsLoaded)
{
	UToolMenus::RegisterStartupCallback(Record(TEXT("loaded")));
	FModuleManager& Modules = FModuleManager::Get();
	Modules.LoadModuleChecked(TEXT("ToolMenus"));
	EXPECT_THAT(Ran, ElementsAre(FString(TEXT("loaded"))));
	EXPECT_TRUE(UToolMenus::IsReady());
	EXPECT_NE(UToolMenus::TryGet(), nullptr);
	EXPECT_TRUE(Modules.UnloadModule(TEXT("ToolMenus")));
	EXPECT_FALSE(UToolMenus::IsReady());
	EXPECT_EQ(UToolMenus::TryGet(), nullptr);
}
}
