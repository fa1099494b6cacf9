// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// Turns reads of mapped bytes that are gone (SIGBUS) into reads of zeros, for the ranges that are registered.
///
/// A process-wide signal handler looks the address up in a fixed table without locks, puts zeroed memory over the page
/// and returns; signals for any other address go to the handler that was there before.
namespace MappedFileGuard
{
/// Registers a range and returns its slot; -1 when the table is full (the range is then unguarded).
int Register(const void* Begin, std::size_t Length);
void Unregister(int Slot);
/// True when a read within the range of `Slot` met bytes that were gone.
bool WasHit(int Slot);
}
