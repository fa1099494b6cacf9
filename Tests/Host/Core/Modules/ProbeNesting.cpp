// SPDX-License-Identifier: MIT
#include "ProbeInterface.h"

DEFINE_LOG_CATEGORY_STATIC(LogProbe, Log, All)

namespace
{
/// Loads the module Probe in its start and needs it in its stop.
class FProbeNesting : public IModuleInterface
{
public:
	void StartupModule() override
	{
		FModuleManager::Get().LoadModuleChecked<IProbe>(TEXT("Probe")).CountCall();
		HOST_LOG(LogProbe, Log, TEXT("ProbeNesting started"));
	}
	void ShutdownModule() override
	{
		const bool bStillThere = FModuleManager::Get().IsModuleLoaded(TEXT("Probe"));
		HOST_LOG(LogProbe, Log, TEXT("ProbeNesting stops %s Probe"), bStillThere ? TEXT("before") : TEXT("after"));
	}
};
} // namespace

IMPLEMENT_MODULE(FProbeNesting, ProbeNesting)
