// SPDX-License-Identifier: MIT
#include "ProbeInterface.h"

namespace
{
/// Needs a module that does not exist.
class FProbeHungry : public IModuleInterface
{
public:
	void StartupModule() override { FModuleManager::Get().LoadModuleChecked(TEXT("ProbeMissing")); }
};
} // namespace

IMPLEMENT_MODULE(FProbeHungry, ProbeHungry)
