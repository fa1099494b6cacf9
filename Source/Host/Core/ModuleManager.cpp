// SPDX-License-Identifier: MIT
#include "Core/ModuleManager.h"

#include "Core/Log.h"
#include "Core/Map.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>

DEFINE_LOG_CATEGORY_STATIC(LogModuleManager, Log, All)

namespace
{
/// Where a loaded module stands in its life.
enum class EModuleState : uint8
{
	Starting,
	Running,
	Stopping,
};

struct FModule
{
	std::unique_ptr<IModuleInterface> Instance;
	void* Library = nullptr; ///< null for a module that is linked into the program
	EModuleState State = EModuleState::Starting;
};

FString FolderOfThisLibrary()
{
	Dl_info Info{};
	if (dladdr(reinterpret_cast<const void*>(&FolderOfThisLibrary), &Info) == 0 || Info.dli_fname == nullptr)
	{
		return FString();
	}
	return FString::FromUtf8(std::filesystem::path(Info.dli_fname).parent_path().string());
}

/// What the loader last complained about; made of one line.
FString TakeLoaderError()
{
	const char* Error = dlerror();
	return Error != nullptr ? FString::FromUtf8(Error).Replace(TEXT("\n"), TEXT(" ")) : FString(TEXT("unknown error"));
}

void ShutDownAtExit()
{
	FModuleManager::Get().UnloadModulesAtShutdown();
}
}

struct FModuleManager::FState
{
	TMap<FName, FModuleFactory> Factories;
	TMap<FName, std::unique_ptr<FModule>> Modules;
	TArray<FName> LoadOrder; ///< by the end of their start
	TArray<FString> SearchPaths;

	FString FindLibrary(FName Name) const;
	void* OpenLibrary(FName Name, FString& OutReason) const;
	IModuleInterface* Load(FName Name, FString& OutReason);
	void Unload(FName Name);
	void Discard(FName Name);
};

IModuleInterface::~IModuleInterface() = default;

FModuleManager::FModuleManager()
	: State(std::make_unique<FState>())
{
}

FModuleManager::~FModuleManager() = default;

FModuleManager& FModuleManager::Get()
{
	// Never destroyed: registrations in statics of other libraries are taken back after this library's statics are
	// gone.
	static FModuleManager& Instance = *new FModuleManager;
	return Instance;
}

FString FModuleManager::FState::FindLibrary(FName Name) const
{
	TArray<FString> Folders = SearchPaths;
	Folders.Add(FolderOfThisLibrary());
	for (const FString& Folder : Folders)
	{
		for (const TCHAR* Prefix : {TEXT("libTarvin"), TEXT("lib")})
		{
			const FString Path = Folder / (Prefix + Name.ToString() + TEXT(".so"));
			std::error_code Error;
			if (std::filesystem::is_regular_file(Path.ToUtf8(), Error))
			{
				return Path;
			}
		}
	}
	return FString();
}

void* FModuleManager::FState::OpenLibrary(FName Name, FString& OutReason) const
{
	const FString Path = FindLibrary(Name);
	if (Path.IsEmpty())
	{
		OutReason = TEXT("there is no such module in the program and no library of that name in the module folders");
		return nullptr;
	}
	// An absolute path: with a bare file name the loader would search folders of its own.
	const std::string File = std::filesystem::absolute(Path.ToUtf8()).string();
	void* Library = dlopen(File.c_str(), RTLD_NOW | RTLD_LOCAL);
	if (Library == nullptr)
	{
		OutReason = TakeLoaderError();
		return nullptr;
	}
	const std::string Marker = "HostModuleMarker_" + Name.ToString().ToUtf8();
	if (dlsym(Library, Marker.c_str()) == nullptr || !Factories.Contains(Name))
	{
		OutReason = FString::Printf(TEXT("%s carries no module of that name"), *Path);
		dlclose(Library);
		return nullptr;
	}
	return Library;
}

IModuleInterface* FModuleManager::FState::Load(FName Name, FString& OutReason)
{
	if (const std::unique_ptr<FModule>* Present = Modules.Find(Name))
	{
		return (*Present)->Instance.get();
	}
	void* Library = nullptr;
	if (!Factories.Contains(Name))
	{
		Library = OpenLibrary(Name, OutReason);
		if (Library == nullptr)
		{
			return nullptr;
		}
	}
	// Registered after the library's statics were made, so that it runs before they are destroyed.
	std::atexit(&ShutDownAtExit);

	FModule& Module = *Modules.Add(Name, std::make_unique<FModule>());
	Module.Library = Library;
	Module.Instance.reset((*Factories.Find(Name))());
	try
	{
		Module.Instance->StartupModule();
	}
	catch (...)
	{
		// Only a failed check throws, and only where a test has seen to it: the next test must find the module gone.
		Discard(Name);
		throw;
	}
	Module.State = EModuleState::Running;
	LoadOrder.Add(Name);
	Module.Instance->PostLoadCallback();
	return Module.Instance.get();
}

void FModuleManager::FState::Unload(FName Name)
{
	FModule& Module = **Modules.Find(Name);
	Module.State = EModuleState::Stopping;
	Module.Instance->PreUnloadCallback();
	Module.Instance->ShutdownModule();
	LoadOrder.RemoveSingle(Name);
	Discard(Name);
}

void FModuleManager::FState::Discard(FName Name)
{
	FModule& Module = **Modules.Find(Name);
	// The instance is destroyed while its code is still there.
	Module.Instance.reset();
	void* const Library = Module.Library;
	Modules.Remove(Name);
	if (Library != nullptr)
	{
		dlclose(Library);
	}
}

IModuleInterface* FModuleManager::LoadModule(FName Name)
{
	FString Reason;
	IModuleInterface* Module = State->Load(Name, Reason);
	if (Module == nullptr)
	{
		HOST_LOG(LogModuleManager, Warning, TEXT("Cannot load module '%s': %s"), *Name.ToString(), *Reason);
	}
	return Module;
}

IModuleInterface& FModuleManager::LoadModuleChecked(FName Name)
{
	FString Reason;
	IModuleInterface* Module = State->Load(Name, Reason);
	if (Module == nullptr)
	{
		HOST_LOG(LogModuleManager, Fatal, TEXT("Cannot load module '%s': %s"), *Name.ToString(), *Reason);
	}
	return *Module;
}

IModuleInterface* FModuleManager::GetModule(FName Name) const
{
	const std::unique_ptr<FModule>* Module = State->Modules.Find(Name);
	return Module != nullptr ? (*Module)->Instance.get() : nullptr;
}

bool FModuleManager::UnloadModule(FName Name)
{
	const std::unique_ptr<FModule>* Module = State->Modules.Find(Name);
	if (Module == nullptr || (*Module)->State != EModuleState::Running ||
		!(*Module)->Instance->SupportsDynamicReloading())
	{
		return false;
	}
	State->Unload(Name);
	return true;
}

void FModuleManager::UnloadModulesAtShutdown()
{
	const TArray<FName> Loaded = State->LoadOrder;
	for (int32 Index = Loaded.Num() - 1; Index >= 0; --Index)
	{
		// A module's shutdown may have unloaded others.
		const std::unique_ptr<FModule>* Module = State->Modules.Find(Loaded[Index]);
		if (Module != nullptr && (*Module)->State == EModuleState::Running &&
			(*Module)->Instance->SupportsAutomaticShutdown())
		{
			State->Unload(Loaded[Index]);
		}
	}
}

void FModuleManager::AddSearchPath(const FString& Folder)
{
	State->SearchPaths.RemoveSingle(Folder);
	State->SearchPaths.Insert(Folder, 0);
}

void FModuleManager::RegisterFactory(FName Name, FModuleFactory Factory)
{
	checkf(!State->Factories.Contains(Name), TEXT("Module '%s' is registered twice"), *Name.ToString());
	State->Factories.Add(Name, Factory);
}

void FModuleManager::UnregisterFactory(FName Name, FModuleFactory Factory)
{
	const FModuleFactory* Registered = State->Factories.Find(Name);
	if (Registered != nullptr && *Registered == Factory)
	{
		State->Factories.Remove(Name);
	}
}
