// SPDX-License-Identifier: MIT
#include "Core/ModuleManager.h"
#include "Slate/InputBindingManager.h"
#include "SlateTestFixture.h"

#include <dlfcn.h>

#include <gmock/gmock.h>

namespace
{
bool IsMapped(const char* Library)
{
	void* const Handle = ::dlopen(Library, RTLD_LAZY | RTLD_NOLOAD);
	if (Handle != nullptr)
	{
		::dlclose(Handle);
	}
	return Handle != nullptr;
}

using ModuleUnloading = FSlateTest;

TEST_F(ModuleUnloading, HostWorksOnWithoutTheModuleThatUsedEverything)
{
	const FName Module = TEXT("SlateUnloadable");
	const char* const Library = UNLOADABLE_FOLDER "/libSlateUnloadable.so";
	const auto PressChord = [] { return Press(EKeys::U, EModifierKey::Control); };
	FModuleManager::Get().AddSearchPath(FString::FromUtf8(UNLOADABLE_FOLDER));
	for (int32 Round = 1; Round <= 2; ++Round)
	{
		FModuleManager::Get().LoadModuleChecked(Module);
		EXPECT_TRUE(IsMapped(Library));
		EXPECT_TRUE(PressChord());
		EXPECT_EQ(Backend->GetShownDialogs().Num(), Round);

		EXPECT_TRUE(FModuleManager::Get().UnloadModule(Module));
		ASSERT_FALSE(IsMapped(Library)) << "something in the host holds the library";
		EXPECT_FALSE(PressChord());
		EXPECT_FALSE(FInputBindingManager::Get().GetContextByName(TEXT("Unloadable")).IsValid());
		FBindingContext::CommandsChanged.Broadcast(FBindingContext(TEXT("Other"), FText(), NAME_None, NAME_None));
		App().Tick(0.0f);
		ASSERT_EQ(FSlateNotificationManager::Get().GetNotifications().Num(), Round);
		EXPECT_EQ(FSlateNotificationManager::Get().GetNotifications().Last()->GetText().ToString(), TEXT("Done"));
	}
}
}
