// SPDX-License-Identifier: MIT
#pragma once

#include "CoreUObject/ObjectPtr.h"
#include "ToolMenus/MenuModel.h"
#include "ToolMenus/ToolMenu.h"

/// The menu system: all menus by name, open to extension by any module. Main thread only.
///
/// It exists from the first time that it is asked for, and is ready once the module "ToolMenus" has started.
class UToolMenus : public UObject
{
	DECLARE_CLASS(UToolMenus, UObject)

public:
	/// The menu system, made if need be.
	static UToolMenus* Get();

	/// The menu system, or null while there is none.
	static UToolMenus* TryGet();

	/// Runs `InDelegate` once the menu system is ready: at once if it is, otherwise when it becomes so, in the order of
	/// registration. The handle takes a callback back that has not run.
	static FDelegateHandle RegisterStartupCallback(const FSimpleDelegate& InDelegate);

	/// Forgets a callback. Handles of callbacks that have run, and invalid ones, are ignored.
	static void UnRegisterStartupCallback(FDelegateHandle InHandle);

	static bool IsReady();

	/// Called by the module "ToolMenus": makes the menu system ready and runs the startup callbacks.
	static void StartUp();

	/// Called by the module "ToolMenus": takes all menus down.
	static void ShutDown();

	/// Makes a menu that can be opened. One that was extended already keeps its extensions; one that is registered
	/// already is returned as it is, with a warning.
	UToolMenu* RegisterMenu(FName InName);

	/// The menu of that name, to be extended; one that nobody has registered is kept until somebody does.
	UToolMenu* ExtendMenu(FName InName);

	/// The menu of that name, registered or only extended; null where there is none.
	UToolMenu* FindMenu(FName InName) const;
	bool IsMenuRegistered(FName InName) const;

	/// Removes a menu with all that anybody added to it. Unknown names are ignored.
	void RemoveMenu(FName InName);

	/// Opens a menu: what is to be shown of it now. Empty for one that nobody has registered.
	TSharedPtr<FMenuModel> GenerateMenu(FName InName, const FToolMenuContext& InContext);

	/// Opens a menu that `InMenu` fills and that is registered nowhere, for `InOwner`.
	TSharedRef<FMenuModel> GenerateSubMenu(const FNewToolMenuChoice& InMenu, FName InName,
		const FToolMenuOwner& InOwner, const FToolMenuContext& InContext);

	/// Makes `InOwner` the owner of what is added from now on, until it is popped. Popping another one than was pushed
	/// last is an assertion failure.
	void PushOwner(const FToolMenuOwner& InOwner);
	void PopOwner(const FToolMenuOwner& InOwner);

	/// The owner pushed last; unset for none.
	FToolMenuOwner CurrentOwner() const;

	/// Removes everything that an owner added: entries, sections in which nobody else has entries, its registrations of
	/// menus, and its lines in open menus. An unset owner is ignored.
	void UnregisterOwner(const FToolMenuOwner& InOwner);

	void Serialize(FArchive& Archive) override;

private:
	UToolMenu* FindOrMakeMenu(FName InName);
	void RememberOpen(const TSharedRef<FMenuModel>& Model);

	TArray<TObjectPtr<UToolMenu>> Menus;
	TArray<FToolMenuOwner> OwnerStack;
	TArray<TWeakPtr<FMenuModel>> OpenMenus;
};
