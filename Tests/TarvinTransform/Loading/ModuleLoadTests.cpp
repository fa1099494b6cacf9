// SPDX-License-Identifier: MIT
// The module as a host meets it: a library that is loaded by its name. This program does not link it.
#include "ModuleFixture.h"

#include "Core/ModuleManager.h"
#include "CoreUObject/GarbageCollector.h"
#include "Editor/LevelEditor.h"
#include "Slate/CheckBox.h"
#include "Slate/CustomDialog.h"
#include "Slate/InputBindingManager.h"
#include "Slate/SlateApplication.h"
#include "Slate/SlateNotificationManager.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

#include <dlfcn.h>

namespace
{
using FLines = std::vector<std::string>;

const FName Module = TEXT("TarvinTransform");
const FTransform Doubled(FQuat::Identity, FVector(500, -200, 30), FVector(2, 2, 2));

bool IsMapped()
{
	std::ifstream Maps("/proc/self/maps");
	for (std::string Line; std::getline(Maps, Line);)
	{
		if (Line.find("libTarvinTransform") != std::string::npos)
		{
			return true;
		}
	}
	return false;
}

/// The libraries that the module's library names as needed.
FLines NeededLibraries()
{
	FLines Result;
	std::FILE* const Output = ::popen("'" TARVIN_READELF "' -d '" TARVIN_MODULE_LIBRARY "'", "r");
	char Buffer[512];
	while (Output && std::fgets(Buffer, sizeof Buffer, Output))
	{
		const std::string Line = Buffer;
		const std::size_t Open = Line.find('[');
		if (Line.find("(NEEDED)") != std::string::npos && Open != std::string::npos)
		{
			Result.push_back(Line.substr(Open + 1, Line.find(']') - Open - 1));
		}
	}
	EXPECT_TRUE(Output && ::pclose(Output) == 0);
	return Result;
}

class ModuleLibrary : public FModuleTest
{
protected:
	~ModuleLibrary() override { FModuleManager::Get().UnloadModule(Module); }

	static bool Press(const FKey& Key, EModifierKey::Type Modifiers)
	{
		return FSlateApplication::Get().ProcessKeyDownEvent(FKeyEvent(Key, FModifierKeysState::FromMask(Modifiers)));
	}
	static bool PressBake() { return Press(EKeys::B, EModifierKey::Control | EModifierKey::Shift); }
};

TEST_F(ModuleLibrary, IsLoadedByNameAndMapsItsCommands)
{
	ASSERT_FALSE(IsMapped()) << "this program does not link it";
	FModuleManager::Get().LoadModuleChecked(Module);
	EXPECT_TRUE(IsMapped());
	const TSharedRef<FUICommandList> Actions =
		FModuleManager::Get().LoadModuleChecked<FLevelEditorModule>(TEXT("LevelEditor")).GetGlobalLevelEditorActions();
	const TArray<TSharedRef<FUICommandInfo>> Commands = FInputBindingManager::Get().GetCommandInfosFromContext(Module);
	ASSERT_EQ(Commands.Num(), 9);
	for (const TSharedRef<FUICommandInfo>& Command : Commands)
	{
		EXPECT_TRUE(Actions->IsActionMapped(Command)) << Command->GetCommandName();
	}
}

TEST_F(ModuleLibrary, WorksEachTimeItIsLoadedAndLeavesTheProcessEachTimeItIsUnloaded)
{
	for (int32 Round = 0; Round < 3; ++Round)
	{
		FModuleManager::Get().LoadModuleChecked(Module);
		GEditor->SelectNone();
		UStaticMesh* const Rock = MakeMesh(*FString::Printf(TEXT("Rock%d"), Round));
		UStaticMeshComponent* const Selected = PlaceSelected(Rock, Doubled);
		Place(Rock);
		Backend->RespondOnce(
			[](SCustomDialog& Dialog)
			{
				FindWidgets<SCheckBox>(Dialog)[0]->ToggleCheckedState();
				Dialog.PressButton(0);
			});
		EXPECT_TRUE(PressBake());
		EXPECT_EQ(Toasts().back(), "Baked 1 mesh(es) · 1 new asset(s)");
		EXPECT_TRUE(Press(EKeys::NumPadNine, EModifierKey::Control));
		EXPECT_NE(Selected->GetStaticMesh(), Rock);
		EXPECT_TRUE(Undo());

		EXPECT_TRUE(FModuleManager::Get().UnloadModule(Module));
		ASSERT_FALSE(IsMapped()) << "something in the host holds the library";
	}
}

TEST_F(ModuleLibrary, HostWorksOnWithWhatAnUnloadedModuleLeftBehind)
{
	FModuleManager::Get().LoadModuleChecked(Module);
	UStaticMeshComponent* const Component = PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	ASSERT_TRUE(PressBake());
	ASSERT_TRUE(FModuleManager::Get().UnloadModule(Module));
	ASSERT_FALSE(IsMapped());

	EXPECT_FALSE(PressBake());
	EXPECT_EQ(Transactions().GetTransaction(0).GetContext().Title.ToString(), TEXT("Bake Transform"));
	EXPECT_EQ(Toasts(), (FLines{"Baked 1 mesh(es)"}));
	EXPECT_TRUE(Undo());
	EXPECT_EQ(Component->GetComponentTransform(), Doubled);
	EXPECT_TRUE(Redo());
	EXPECT_TRUE(CollectGarbage());
	FSlateApplication::Get().Tick(0.1f);
	FSlateNotificationManager::Get().Clear();
	Transactions().Reset();
}

TEST_F(ModuleLibrary, NeedsHostLibrariesAndTheLanguageRuntimeOnly)
{
	const FLines Allowed = {"libTarvinCore.so", "libTarvinCoreUObject.so", "libTarvinMeshDescription.so",
		"libTarvinEngine.so", "libTarvinEditor.so", "libTarvinSlate.so", "libTarvinToolMenus.so", "libstdc++.so.6",
		"libm.so.6", "libgcc_s.so.1", "libc.so.6", "ld-linux-x86-64.so.2", "ld-linux-aarch64.so.1"};
	const FLines Needed = NeededLibraries();
	EXPECT_NE(std::find(Needed.begin(), Needed.end(), "libTarvinCore.so"), Needed.end());
	for (const std::string& Library : Needed)
	{
		EXPECT_NE(std::find(Allowed.begin(), Allowed.end(), Library), Allowed.end()) << Library;
	}
}

TEST_F(ModuleLibrary, ShowsItsPublicFunctionsAndItsMarkerAndHidesTheRest)
{
	void* const Library = ::dlopen(TARVIN_MODULE_LIBRARY, RTLD_NOW | RTLD_LOCAL);
	ASSERT_NE(Library, nullptr) << ::dlerror();
	for (const char* Shown :
		{"HostModuleMarker_TarvinTransform", "_ZN22FTarvinSelectionAction26ExecuteFromEditorSelectionEv",
			"_ZN18FTarvinTransformOp22RebuildMeshesAfterUndoEv"})
	{
		EXPECT_NE(::dlsym(Library, Shown), nullptr) << Shown;
	}
	for (const char* Hidden : {"_ZN23TarvinSharedAssetPrompt3AskEP11UStaticMeshibPb",
			 "_ZN23FTarvinTransformCommands16RegisterCommandsEv", "_ZN23FTarvinTransformModule13StartupModuleEv"})
	{
		EXPECT_EQ(::dlsym(Library, Hidden), nullptr) << Hidden;
	}
	::dlclose(Library);
	EXPECT_FALSE(IsMapped());
}
}
