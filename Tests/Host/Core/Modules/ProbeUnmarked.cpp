// SPDX-License-Identifier: MIT
#include "ProbeInterface.h"

namespace
{
/// Registers itself, but its library does not export the marker of a module.
class FProbeUnmarked : public IModuleInterface
{
};

const TModuleRegistration<FProbeUnmarked> Registration(TEXT("ProbeUnmarked"));
}
