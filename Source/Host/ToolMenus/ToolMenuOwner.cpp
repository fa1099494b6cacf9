// SPDX-License-Identifier: MIT
#include "ToolMenus/ToolMenuOwner.h"

#include "ToolMenus/ToolMenus.h"

FToolMenuOwnerScoped::FToolMenuOwnerScoped(const FToolMenuOwner& InOwner)
	: Owner(InOwner)
{
	UToolMenus::Get()->PushOwner(Owner);
}

FToolMenuOwnerScoped::~FToolMenuOwnerScoped()
{
	UToolMenus::Get()->PopOwner(Owner);
}
