// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Name.h"
#include "Core/String.h"

#include <memory>

/// What every module implements. Called on the main thread.
class IModuleInterface
{
public:
	virtual ~IModuleInterface();

	/// Called once after loading; the module manager knows the module already.
	virtual void StartupModule() {}

	/// Called before ShutdownModule when the module is about to be unloaded.
	virtual void PreUnloadCallback() {}

	/// Called after StartupModule has returned.
	virtual void PostLoadCallback() {}

	/// Called once before the module goes; must take back everything that StartupModule gave to the host.
	virtual void ShutdownModule() {}

	/// Whether the module may be unloaded and loaded again while the program runs.
	virtual bool SupportsDynamicReloading() { return true; }

	/// Whether the module is shut down at the end of the program. One that is not stays as it is.
	virtual bool SupportsAutomaticShutdown() { return true; }

	virtual bool IsGameModule() const { return false; }
};

/// Makes the one instance of a module; the caller owns it.
using FModuleFactory = IModuleInterface* (*)();

/// Loads and unloads modules by name. A module is either linked into the program and registered by its static state, or
/// a shared library that is opened on demand and registers itself then. Main thread only.
class FModuleManager
{
public:
	static FModuleManager& Get();

	/// Loads and starts a module, or returns the running one. Null, with the reason in the log, when that cannot be
	/// done.
	IModuleInterface* LoadModule(FName Name);

	/// As LoadModule; a module that cannot be loaded is fatal.
	IModuleInterface& LoadModuleChecked(FName Name);

	template <typename InterfaceType>
	InterfaceType& LoadModuleChecked(FName Name)
	{
		return static_cast<InterfaceType&>(LoadModuleChecked(Name));
	}

	/// The instance, from before its start until after its shutdown; else null.
	IModuleInterface* GetModule(FName Name) const;

	template <typename InterfaceType>
	InterfaceType* GetModulePtr(FName Name) const
	{
		return static_cast<InterfaceType*>(GetModule(Name));
	}

	/// The instance of a module that must be loaded.
	template <typename InterfaceType>
	InterfaceType& GetModuleChecked(FName Name) const
	{
		InterfaceType* Module = GetModulePtr<InterfaceType>(Name);
		checkf(Module != nullptr, TEXT("Cannot use module '%s': it is not loaded"), *Name.ToString());
		return *Module;
	}

	bool IsModuleLoaded(FName Name) const { return GetModule(Name) != nullptr; }

	/// Shuts a module down, destroys its instance and closes its library. False if it is not loaded, is starting or
	/// stopping just now, or does not support it.
	bool UnloadModule(FName Name);

	/// Shuts down all modules in the reverse order of their loading; one that was loaded by another's start counts as
	/// loaded before it. Programs call this at the end of `main`; otherwise it is done when the process exits.
	void UnloadModulesAtShutdown();

	/// Adds a folder in which libraries are looked for, before those that were added earlier. The folder of the host's
	/// own libraries is always looked at last.
	void AddSearchPath(const FString& Folder);

	/// Used by IMPLEMENT_MODULE alone.
	void RegisterFactory(FName Name, FModuleFactory Factory);
	void UnregisterFactory(FName Name, FModuleFactory Factory);

	FModuleManager(const FModuleManager&) = delete;
	FModuleManager& operator=(const FModuleManager&) = delete;

private:
	FModuleManager();
	~FModuleManager();

	struct FState;
	std::unique_ptr<FState> State;
};

/// Makes a module known to the manager for as long as the library that it is in is loaded.
template <typename ModuleType>
class TModuleRegistration
{
public:
	explicit TModuleRegistration(const TCHAR* InName)
		: Name(InName)
	{
		FModuleManager::Get().RegisterFactory(Name, &Create);
	}
	~TModuleRegistration() { FModuleManager::Get().UnregisterFactory(Name, &Create); }
	TModuleRegistration(const TModuleRegistration&) = delete;
	TModuleRegistration& operator=(const TModuleRegistration&) = delete;

private:
	static IModuleInterface* Create() { return new ModuleType; }

	FName Name;
};

/// Registers `ModuleClass` as the module `ModuleName`, and exports the marker by which a library is known to carry it.
#define IMPLEMENT_MODULE(ModuleClass, ModuleName)                                                     \
	static const TModuleRegistration<ModuleClass> ModuleRegistration_##ModuleName(TEXT(#ModuleName)); \
	extern "C" __attribute__((visibility("default"), used)) void HostModuleMarker_##ModuleName();     \
	extern "C" void HostModuleMarker_##ModuleName() {}
