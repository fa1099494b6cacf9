// SPDX-License-Identifier: MIT
#include "ProbeInterface.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

// Loads modules and ends, in one of several ways: ModuleExitProgram FOLDER return|exit|unload
int main(int ArgumentCount, char** Arguments)
{
	if (ArgumentCount != 3)
	{
		return 2;
	}
	// Never destroyed: it has to outlive `main`.
	FLog::AddSink(new FTerminalLogSink(stdout, ELogVerbosity::All));
	FModuleManager& Manager = FModuleManager::Get();
	Manager.AddSearchPath(FString::FromUtf8(Arguments[1]));
	Manager.LoadModuleChecked(TEXT("ProbeNesting"));
	Manager.LoadModuleChecked(TEXT("ProbeStubborn"));
	std::puts("-- end of main");
	const std::string_view Way = Arguments[2];
	if (Way == "unload")
	{
		Manager.UnloadModulesAtShutdown();
		std::puts("-- all unloaded");
	}
	if (Way == "exit")
	{
		std::exit(0);
	}
	return 0;
}
