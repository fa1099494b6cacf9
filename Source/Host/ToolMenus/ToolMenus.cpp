// SPDX-License-Identifier: MIT
#include "ToolMenus/ToolMenus.h"

#include "Core/Log.h"
#include "CoreUObject/Archive.h"
#include "CoreUObject/Package.h"

DEFINE_CLASS(UToolMenus)

namespace
{
DEFINE_LOG_CATEGORY_STATIC(LogToolMenus, Log, All);

struct FMenuSystem
{
	TObjectPtr<UToolMenus> Instance;
	bool bReady = false;
	TMulticastDelegate<void()> StartupCallbacks;
};

FMenuSystem& MenuSystem()
{
	// Never destroyed: modules that end with the process still take their menus down.
	static FMenuSystem* const System = new FMenuSystem;
	return *System;
}
}

UToolMenus* UToolMenus::Get()
{
	FMenuSystem& System = MenuSystem();
	if (!System.Instance)
	{
		System.Instance = NewObject<UToolMenus>();
		System.Instance->AddToRoot();
	}
	return System.Instance;
}

UToolMenus* UToolMenus::TryGet()
{
	return MenuSystem().Instance;
}

FDelegateHandle UToolMenus::RegisterStartupCallback(const FSimpleDelegate& InDelegate)
{
	FMenuSystem& System = MenuSystem();
	if (!System.bReady)
	{
		return System.StartupCallbacks.Add(InDelegate);
	}
	InDelegate.ExecuteIfBound();
	return InDelegate.GetHandle();
}

void UToolMenus::UnRegisterStartupCallback(FDelegateHandle InHandle)
{
	MenuSystem().StartupCallbacks.Remove(InHandle);
}

bool UToolMenus::IsReady()
{
	return MenuSystem().bReady;
}

void UToolMenus::StartUp()
{
	FMenuSystem& System = MenuSystem();
	Get();
	System.bReady = true;
	System.StartupCallbacks.Broadcast();
	System.StartupCallbacks.Clear();
}

void UToolMenus::ShutDown()
{
	FMenuSystem& System = MenuSystem();
	System.bReady = false;
	if (UToolMenus* Leaving = System.Instance)
	{
		for (const TObjectPtr<UToolMenu>& Menu : Leaving->Menus)
		{
			Menu->Sections.Empty();
			Menu->MarkAsGarbage();
		}
		Leaving->Menus.Empty();
		Leaving->RemoveFromRoot();
		Leaving->MarkAsGarbage();
		System.Instance = nullptr;
	}
}

UToolMenu* UToolMenus::FindOrMakeMenu(FName InName)
{
	UToolMenu* Menu = FindMenu(InName);
	if (Menu == nullptr)
	{
		Menu = NewObject<UToolMenu>(this);
		Menu->MenuName = InName;
		Menus.Add(Menu);
	}
	return Menu;
}

UToolMenu* UToolMenus::RegisterMenu(FName InName)
{
	UToolMenu* const Menu = FindOrMakeMenu(InName);
	if (Menu->bRegistered)
	{
		HOST_LOG(LogToolMenus, Warning, TEXT("%s: the menu is registered already"), *InName.ToString());
		return Menu;
	}
	Menu->bRegistered = true;
	Menu->RegisteredBy = CurrentOwner();
	return Menu;
}

UToolMenu* UToolMenus::ExtendMenu(FName InName)
{
	return FindOrMakeMenu(InName);
}

UToolMenu* UToolMenus::FindMenu(FName InName) const
{
	const TObjectPtr<UToolMenu>* Found =
		Menus.FindByPredicate([InName](const TObjectPtr<UToolMenu>& Menu) { return Menu->GetMenuName() == InName; });
	return Found != nullptr ? Found->Get() : nullptr;
}

bool UToolMenus::IsMenuRegistered(FName InName) const
{
	const UToolMenu* Menu = FindMenu(InName);
	return Menu != nullptr && Menu->bRegistered;
}

void UToolMenus::RemoveMenu(FName InName)
{
	if (UToolMenu* Leaving = FindMenu(InName))
	{
		Menus.RemoveAll([Leaving](const TObjectPtr<UToolMenu>& Menu) { return Menu == Leaving; });
		Leaving->Sections.Empty();
		Leaving->MarkAsGarbage();
	}
}

TSharedPtr<FMenuModel> UToolMenus::GenerateMenu(FName InName, const FToolMenuContext& InContext)
{
	const UToolMenu* Menu = FindMenu(InName);
	if (Menu == nullptr || !Menu->bRegistered)
	{
		return {};
	}
	const TSharedRef<FMenuModel> Model = FMenuModel::Make(Menu->GetSections(), InContext);
	RememberOpen(Model);
	return Model;
}

TSharedRef<FMenuModel> UToolMenus::GenerateSubMenu(
	const FNewToolMenuChoice& InMenu, FName InName, const FToolMenuOwner& InOwner, const FToolMenuContext& InContext)
{
	UToolMenu* const Menu = NewObject<UToolMenu>(this);
	Menu->MenuName = InName;
	Menu->AddToRoot();
	{
		// What the builder adds belongs to whoever added the submenu, although that is long ago.
		const FToolMenuOwnerScoped Scope(InOwner);
		InMenu.NewToolMenu.ExecuteIfBound(Menu);
	}
	const TSharedRef<FMenuModel> Model = FMenuModel::Make(Menu->GetSections(), InContext);
	Menu->Sections.Empty();
	Menu->RemoveFromRoot();
	Menu->MarkAsGarbage();
	RememberOpen(Model);
	return Model;
}

void UToolMenus::RememberOpen(const TSharedRef<FMenuModel>& Model)
{
	OpenMenus.RemoveAll([](const TWeakPtr<FMenuModel>& Open) { return !Open.IsValid(); });
	OpenMenus.Add(Model);
}

void UToolMenus::PushOwner(const FToolMenuOwner& InOwner)
{
	OwnerStack.Add(InOwner);
}

void UToolMenus::PopOwner(const FToolMenuOwner& InOwner)
{
	check(!OwnerStack.IsEmpty() && OwnerStack.Last() == InOwner);
	OwnerStack.Pop();
}

FToolMenuOwner UToolMenus::CurrentOwner() const
{
	return OwnerStack.IsEmpty() ? FToolMenuOwner() : OwnerStack.Last();
}

void UToolMenus::UnregisterOwner(const FToolMenuOwner& InOwner)
{
	if (!InOwner.IsSet())
	{
		return;
	}
	const TArray<TObjectPtr<UToolMenu>> Present = Menus;
	for (const TObjectPtr<UToolMenu>& Menu : Present)
	{
		Menu->RemoveOwner(InOwner);
		Menu->bRegistered = Menu->bRegistered && !(Menu->RegisteredBy == InOwner);
		if (!Menu->bRegistered && Menu->Sections.IsEmpty())
		{
			RemoveMenu(Menu->GetMenuName());
		}
	}
	const TArray<TWeakPtr<FMenuModel>> Open = OpenMenus;
	for (const TWeakPtr<FMenuModel>& Weak : Open)
	{
		if (const TSharedPtr<FMenuModel> Model = Weak.Pin())
		{
			Model->RemoveOwner(InOwner);
		}
	}
}

void UToolMenus::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << Menus;
}
