// SPDX-License-Identifier: MIT
// A module that extends a menu once the menu system is ready, and takes its extension out at its stop.
#include "Core/ModuleManager.h"
#include "ToolMenus/ToolMenus.h"

namespace
{
class FUnloadableMenusModule : public IModuleInterface
{
public:
	void StartupModule() override
	{
		Handle = UToolMenus::RegisterStartupCallback(FSimpleDelegate::CreateStatic(&RegisterMenus));
	}

	void ShutdownModule() override
	{
		UToolMenus::UnRegisterStartupCallback(Handle);
		if (FModuleManager::Get().IsModuleLoaded(TEXT("ToolMenus")))
		{
			UToolMenus::Get()->UnregisterOwner(this);
		}
	}

private:
	static void RegisterMenus()
	{
		const FToolMenuOwnerScoped Scope(FModuleManager::Get().GetModule(TEXT("UnloadableMenus")));
		FToolMenuSection& Section = UToolMenus::Get()->ExtendMenu(TEXT("Unloading"))->FindOrAddSection(TEXT("Mine"));
		Section.AddMenuEntry(TEXT("Act"), FText::FromString(TEXT("Act")), FText(), FSlateIcon(),
			FUIAction(FExecuteAction::CreateStatic(&Act)));
		Section.AddSubMenu(
			TEXT("Sub"), FText::FromString(TEXT("Sub")), FText(), FNewToolMenuDelegate::CreateStatic(&BuildSubMenu));
	}

	static void Act() {}

	static void BuildSubMenu(UToolMenu* Menu)
	{
		Menu->FindOrAddSection(TEXT("Inner"))
			.AddMenuEntry(TEXT("Deep"), FText::FromString(TEXT("Deep")), FText(), FSlateIcon(),
				FUIAction(FExecuteAction::CreateStatic(&Act)));
	}

	FDelegateHandle Handle;
};
}

IMPLEMENT_MODULE(FUnloadableMenusModule, UnloadableMenus)
