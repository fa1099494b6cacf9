// SPDX-License-Identifier: MIT
#include "ProbeInterface.h"

namespace
{
/// Lives in a library of another name.
class FProbeOfAnotherName : public IModuleInterface
{
};
} // namespace

IMPLEMENT_MODULE(FProbeOfAnotherName, ProbeOfAnotherName)
