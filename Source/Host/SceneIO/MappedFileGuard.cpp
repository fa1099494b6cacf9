// SPDX-License-Identifier: MIT
#include "SceneIO/MappedFileGuard.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstdint>
#include <mutex>
#include <sys/mman.h>
#include <unistd.h>

namespace
{
/// Begin and End are zero in a free slot. The handler reads them while others may be changing: End is set last and
/// cleared first, so that a half-written slot matches no address.
struct FGuardedRange
{
	std::atomic<std::uintptr_t> Begin{0};
	std::atomic<std::uintptr_t> End{0};
	std::atomic<bool> bHit{false};
	std::atomic<bool> bTaken{false};
};

constexpr std::size_t MaxRanges = 16384 + 1024;
std::array<FGuardedRange, MaxRanges> Ranges;
std::atomic<std::size_t> UsedRanges{0};
struct sigaction PreviousAction;
std::uintptr_t PageSize = 4096;

bool PatchPage(std::uintptr_t Address)
{
	const std::size_t Used = UsedRanges.load(std::memory_order_acquire);
	for (std::size_t I = 0; I < Used; ++I)
	{
		FGuardedRange& Range = Ranges[I];
		const std::uintptr_t End = Range.End.load(std::memory_order_acquire);
		if (Address < End && Address >= Range.Begin.load(std::memory_order_acquire))
		{
			void* const Page = reinterpret_cast<void*>(Address & ~(PageSize - 1));
			constexpr int Flags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED;
			Range.bHit.store(true, std::memory_order_release);
			return mmap(Page, PageSize, PROT_READ, Flags, -1, 0) != MAP_FAILED;
		}
	}
	return false;
}

void OnBusError(int Signal, siginfo_t* Info, void* Context)
{
	if (PatchPage(reinterpret_cast<std::uintptr_t>(Info->si_addr)))
	{
		return;
	}
	if ((PreviousAction.sa_flags & SA_SIGINFO) != 0 && PreviousAction.sa_sigaction != nullptr)
	{
		PreviousAction.sa_sigaction(Signal, Info, Context);
		return;
	}
	if (PreviousAction.sa_handler != SIG_DFL && PreviousAction.sa_handler != SIG_IGN)
	{
		PreviousAction.sa_handler(Signal);
		return;
	}
	// As if this handler had never been there: the faulting instruction runs again and ends the program.
	signal(Signal, SIG_DFL);
}

void InstallHandler()
{
	PageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
	struct sigaction Action = {};
	Action.sa_sigaction = &OnBusError;
	Action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
	sigemptyset(&Action.sa_mask);
	sigaction(SIGBUS, &Action, &PreviousAction);
}
}

int MappedFileGuard::Register(const void* Begin, std::size_t Length)
{
	static std::once_flag bInstalled;
	std::call_once(bInstalled, InstallHandler);

	for (std::size_t I = 0; I < MaxRanges; ++I)
	{
		bool bFree = false;
		if (Ranges[I].bTaken.compare_exchange_strong(bFree, true))
		{
			const auto Address = reinterpret_cast<std::uintptr_t>(Begin);
			Ranges[I].bHit.store(false);
			Ranges[I].Begin.store(Address);
			Ranges[I].End.store(Address + Length, std::memory_order_release);
			std::size_t Used = UsedRanges.load();
			while (Used < I + 1 && !UsedRanges.compare_exchange_weak(Used, I + 1))
			{
			}
			return static_cast<int>(I);
		}
	}
	return -1;
}

void MappedFileGuard::Unregister(int Slot)
{
	if (Slot >= 0)
	{
		FGuardedRange& Range = Ranges[static_cast<std::size_t>(Slot)];
		Range.End.store(0, std::memory_order_release);
		Range.Begin.store(0, std::memory_order_release);
		Range.bTaken.store(false, std::memory_order_release);
	}
}

bool MappedFileGuard::WasHit(int Slot)
{
	return Slot >= 0 && Ranges[static_cast<std::size_t>(Slot)].bHit.load(std::memory_order_acquire);
}
