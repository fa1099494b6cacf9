// SPDX-License-Identifier: MIT
#include "MeshDescription/MeshElementSlots.h"

#include "MeshDescription/MeshArray.h"

#include <bit>
#include <limits>
#include <new>

#include <sys/mman.h>

namespace
{
constexpr std::size_t HugePage = std::size_t(2) << 20;

/// From two pages on, the rounding up is worth it.
bool UsesHugePages(std::size_t Bytes)
{
	return Bytes >= 2 * HugePage;
}
}

void* AllocateMeshStorage(std::size_t Bytes)
{
	if (!UsesHugePages(Bytes))
	{
		return ::operator new(Bytes);
	}
	const std::size_t Rounded = (Bytes + HugePage - 1) / HugePage * HugePage;
	void* Storage = ::operator new(Rounded, std::align_val_t(HugePage));
	// A hint: without it the pages are small and all else is the same.
	(void)madvise(Storage, Rounded, MADV_HUGEPAGE);
	return Storage;
}

void FreeMeshStorage(void* Storage, std::size_t Bytes)
{
	if (UsesHugePages(Bytes))
	{
		::operator delete(Storage, std::align_val_t(HugePage));
	}
	else
	{
		::operator delete(Storage);
	}
}

int32 FMeshElementSlots::FindNext(int32 Index) const
{
	if (Bits.empty() || Index >= NumSlots)
	{
		return Index < NumSlots ? Index : NumSlots;
	}
	std::size_t WordIndex = Word(Index);
	uint64 Current = Bits[WordIndex] & ~(Bit(Index) - 1);
	while (Current == 0)
	{
		if (++WordIndex == Bits.size())
		{
			return NumSlots;
		}
		Current = Bits[WordIndex];
	}
	return static_cast<int32>(WordIndex * 64 + static_cast<std::size_t>(std::countr_zero(Current)));
}

int32 FMeshElementSlots::Append(int32 Count)
{
	check(Count >= 0 && Count <= std::numeric_limits<int32>::max() - NumSlots);
	const int32 First = NumSlots;
	if (Count == 0)
	{
		return First;
	}
	NumSlots += Count;
	NumAllocated += Count;
	if (!Bits.empty())
	{
		Bits.resize(Word(NumSlots - 1) + 1);
		for (int32 Index = First; Index < NumSlots; ++Index)
		{
			Bits[Word(Index)] |= Bit(Index);
		}
	}
	return First;
}

void FMeshElementSlots::AllocateAt(int32 Index)
{
	check(Index >= 0 && Index < std::numeric_limits<int32>::max() && !IsAllocated(Index));
	if (Index == NumSlots)
	{
		Append();
		return;
	}
	MakeBits();
	NumSlots = NumSlots > Index ? NumSlots : Index + 1;
	Bits.resize(Word(NumSlots - 1) + 1);
	Bits[Word(Index)] |= Bit(Index);
	++NumAllocated;
}

void FMeshElementSlots::Free(int32 Index)
{
	check(IsAllocated(Index));
	MakeBits();
	Bits[Word(Index)] &= ~Bit(Index);
	--NumAllocated;
}

void FMeshElementSlots::AllocateOnly(std::span<const uint8> bUsed)
{
	check(bUsed.size() == static_cast<std::size_t>(NumSlots));
	Bits.assign(bUsed.size() / 64 + 1, 0);
	NumAllocated = 0;
	for (int32 Index = 0; Index < NumSlots; ++Index)
	{
		if (bUsed[static_cast<std::size_t>(Index)] != 0)
		{
			Bits[Word(Index)] |= Bit(Index);
			++NumAllocated;
		}
	}
	if (!HasGaps())
	{
		Bits = std::vector<uint64>();
	}
}

bool FMeshElementSlots::operator==(const FMeshElementSlots& Other) const
{
	if (NumAllocated != Other.NumAllocated)
	{
		return false;
	}
	if (!HasGaps() && !Other.HasGaps())
	{
		return true;
	}
	int32 Index = FindNext(0);
	int32 OtherIndex = Other.FindNext(0);
	for (int32 Remaining = NumAllocated; Remaining > 0; --Remaining)
	{
		if (Index != OtherIndex)
		{
			return false;
		}
		Index = FindNext(Index + 1);
		OtherIndex = Other.FindNext(OtherIndex + 1);
	}
	return true;
}

void FMeshElementSlots::MakeBits()
{
	if (Bits.empty())
	{
		// Never empty again, whatever the number of slots: empty means no gap.
		Bits.assign(static_cast<std::size_t>(NumSlots) / 64 + 1, 0);
		for (int32 Index = 0; Index < NumSlots; ++Index)
		{
			Bits[Word(Index)] |= Bit(Index);
		}
	}
}
