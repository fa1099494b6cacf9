// SPDX-License-Identifier: MIT
#include "ProbeInterface.h"

DEFINE_LOG_CATEGORY_STATIC(LogProbe, Log, All)

namespace
{
/// Will be neither unloaded nor shut down.
class FProbeStubborn : public IModuleInterface
{
public:
	void ShutdownModule() override { HOST_LOG(LogProbe, Log, TEXT("ProbeStubborn stops")); }
	bool SupportsDynamicReloading() override { return false; }
	bool SupportsAutomaticShutdown() override { return false; }
};
} // namespace

IMPLEMENT_MODULE(FProbeStubborn, ProbeStubborn)
