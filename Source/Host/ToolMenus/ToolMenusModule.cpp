// SPDX-License-Identifier: MIT
#include "Core/ModuleManager.h"
#include "ToolMenus/ToolMenus.h"

/// The module "ToolMenus": the menu system is ready while it is loaded.
class FToolMenusModule : public IModuleInterface
{
public:
	void StartupModule() override { UToolMenus::StartUp(); }
	void ShutdownModule() override { UToolMenus::ShutDown(); }
};

IMPLEMENT_MODULE(FToolMenusModule, ToolMenus)
