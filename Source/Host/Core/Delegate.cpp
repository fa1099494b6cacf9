// SPDX-License-Identifier: MIT
#include "Core/Delegate.h"

#include <atomic>

FDelegateHandle FDelegateHandle::GenerateNewHandle()
{
	static std::atomic<uint64> LastId{0};
	FDelegateHandle Handle;
	Handle.Id = ++LastId;
	return Handle;
}
