// SPDX-License-Identifier: MIT
#include "Core/ModuleManager.h"
#include "CoreUObject/GarbageCollector.h"
#include "ToolMenus/ToolMenus.h"

#include <dlfcn.h>

#include <gtest/gtest.h>

namespace
{
const FName Plugin = TEXT("UnloadableMenus");
const FName System = TEXT("ToolMenus");
const FName Menu = TEXT("Unloading");

/// The module manager, with the folder of the module, before the menu system is loaded.
class MenuUnloading : public testing::Test
{
protected:
	MenuUnloading() { Modules.AddSearchPath(FString::FromUtf8(UNLOADABLE_FOLDER)); }
	~MenuUnloading() override
	{
		Modules.UnloadModule(Plugin);
		Modules.UnloadModule(System);
	}

	static bool IsMapped()
	{
		void* const Handle = ::dlopen(UNLOADABLE_FOLDER "/libUnloadableMenus.so", RTLD_LAZY | RTLD_NOLOAD);
		if (Handle != nullptr)
		{
			::dlclose(Handle);
		}
		return Handle != nullptr;
	}

	FModuleManager& Modules = FModuleManager::Get();
};

TEST_F(MenuUnloading, OpenMenusOutliveTheModuleThatExtendedThem)
{
	Modules.LoadModuleChecked(System);
	UToolMenus::Get()->RegisterMenu(Menu);
	Modules.LoadModuleChecked(Plugin);
	const TSharedPtr<FMenuModel> Open = UToolMenus::Get()->GenerateMenu(Menu, FToolMenuContext());
	const TSharedRef<FMenuModel> Sub = Open->FindItem(TEXT("Sub"))->OpenSubMenu();
	const TSharedPtr<FMenuItem> Act = Open->FindItem(TEXT("Act"));
	const TSharedPtr<FMenuItem> Deep = Sub->FindItem(TEXT("Deep"));
	EXPECT_TRUE(Act->Execute());
	EXPECT_TRUE(Deep->Execute());

	EXPECT_TRUE(Modules.UnloadModule(Plugin));
	ASSERT_FALSE(IsMapped()) << "something in the host holds the library";
	EXPECT_TRUE(Open->GetSections().IsEmpty());
	EXPECT_TRUE(Sub->GetSections().IsEmpty());
	EXPECT_FALSE(Act->Execute());
	EXPECT_FALSE(Deep->Execute());
	EXPECT_TRUE(UToolMenus::Get()->GenerateMenu(Menu, FToolMenuContext())->GetSections().IsEmpty());
	EXPECT_TRUE(CollectGarbage());
}

TEST_F(MenuUnloading, CallbackOfAModuleThatLeftDoesNotRun)
{
	Modules.LoadModuleChecked(Plugin);
	EXPECT_TRUE(Modules.UnloadModule(Plugin));
	ASSERT_FALSE(IsMapped());
	Modules.LoadModuleChecked(System);
	EXPECT_EQ(UToolMenus::Get()->FindMenu(Menu), nullptr);
}

TEST_F(MenuUnloading, ModuleLoadedFirstExtendsTheMenuOnceTheSystemIsReady)
{
	Modules.LoadModuleChecked(Plugin);
	EXPECT_EQ(UToolMenus::TryGet(), nullptr);
	Modules.LoadModuleChecked(System);
	UToolMenus::Get()->RegisterMenu(Menu);
	EXPECT_TRUE(UToolMenus::Get()->GenerateMenu(Menu, FToolMenuContext())->FindItem(TEXT("Act")).IsValid());
}

TEST_F(MenuUnloading, ModuleMayStopAfterTheMenuSystem)
{
	Modules.LoadModuleChecked(System);
	Modules.LoadModuleChecked(Plugin);
	EXPECT_TRUE(Modules.UnloadModule(System));
	EXPECT_TRUE(Modules.UnloadModule(Plugin));
	EXPECT_FALSE(IsMapped());
	EXPECT_EQ(UToolMenus::TryGet(), nullptr);
}
}
