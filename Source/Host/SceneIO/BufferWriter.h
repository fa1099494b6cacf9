// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/PatchLayout.h"

#include <cstddef>
#include <functional>
#include <span>

/// Takes bytes in order; a failure ends the writing.
using FByteSink = std::function<FSceneStatus(std::span<const std::byte>)>;

/// Sends the new bytes of a buffer to `Sink`: `Old` with the plan's pieces over it, up to the new length or the end of
/// `Old`, whichever is further. Needs a fixed amount of memory, whatever the size.
FSceneStatus WriteBuffer(const FBufferPlan& Plan, std::span<const std::byte> Old, const FByteSink& Sink);

/// How many bytes WriteBuffer sends.
std::uint64_t WrittenLength(const FBufferPlan& Plan, std::span<const std::byte> Old);
