// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

// Before Core's headers: it has functions named check, which is a macro there.
#include <rapidcheck/gtest.h>

#include "MeshDescription/MeshElementSlots.h"

#include <set>

namespace
{
std::vector<int32> Listed(const FMeshElementSlots& Slots)
{
	std::vector<int32> Result;
	for (int32 Index = Slots.FindNext(0); Index < Slots.GetNumSlots(); Index = Slots.FindNext(Index + 1))
	{
		Result.push_back(Index);
	}
	return Result;
}
}

TEST(MeshElementSlots, NumbersAscendAndAreNeverReused)
{
	FMeshElementSlots Slots;
	EXPECT_EQ(Slots.Append(), 0);
	EXPECT_EQ(Slots.Append(3), 1);
	Slots.Free(3);
	Slots.Free(1);
	EXPECT_EQ(Slots.Append(), 4);
	EXPECT_EQ(Listed(Slots), (std::vector<int32>{0, 2, 4}));
	EXPECT_EQ(Slots.GetNumSlots(), 5);
	EXPECT_EQ(Slots.GetNumAllocated(), 3);
}

TEST(MeshElementSlots, AGivenNumberLeavesAGapBeforeIt)
{
	FMeshElementSlots Slots;
	Slots.AllocateAt(70);
	Slots.AllocateAt(5);
	EXPECT_EQ(Listed(Slots), (std::vector<int32>{5, 70}));
	EXPECT_FALSE(Slots.IsAllocated(6));
	EXPECT_FALSE(Slots.IsAllocated(-1));
	EXPECT_FALSE(Slots.IsAllocated(71));
}

TEST(MeshElementSlots, EqualWhenTheSameNumbersAreAllocatedWhateverCameBetween)
{
	FMeshElementSlots Plain;
	Plain.Append(3);
	FMeshElementSlots Shrunk;
	Shrunk.Append(5);
	EXPECT_FALSE(Plain == Shrunk);
	Shrunk.Free(3);
	Shrunk.Free(4);
	EXPECT_TRUE(Plain == Shrunk);
	Plain.Free(0);
	Shrunk.Free(1);
	EXPECT_FALSE(Plain == Shrunk);
}

TEST(MeshElementSlots, MovingLeavesNoSlots)
{
	FMeshElementSlots Slots;
	Slots.Append(5);
	Slots.Free(2);
	const FMeshElementSlots Taken = std::move(Slots);
	EXPECT_EQ(Taken.GetNumAllocated(), 4);
	EXPECT_EQ(Slots.GetNumSlots(), 0);
	EXPECT_EQ(Slots.Append(), 0);
}

TEST(MeshElementSlots, KeepingOnlyUsedOnesTakesOneEntryPerSlot)
{
	FMeshElementSlots Slots;
	Slots.Append(4);
	Slots.AllocateOnly(std::vector<uint8>{1, 0, 1, 0});
	EXPECT_EQ(Listed(Slots), (std::vector<int32>{0, 2}));
	Slots.AllocateOnly(std::vector<uint8>{1, 1, 1, 1});
	EXPECT_FALSE(Slots.HasGaps());
	EXPECT_EQ(Slots.MemoryBytes(), 0u);
}

RC_GTEST_PROP(MeshElementSlots, BehaveAsASetOfNumbers, (const std::vector<int16>& Steps))
{
	FMeshElementSlots Slots;
	std::set<int32> Expected;
	int32 NumSlots = 0;
	for (const int16 Step : Steps)
	{
		const int32 Index = Step < 0 ? -(Step + 1) % 300 : Step % 300;
		if (Step % 3 == 0)
		{
			for (int32 Count = 0; Count < Step % 5; ++Count)
			{
				Expected.insert(NumSlots + Count);
			}
			const int32 Count = Step % 5 > 0 ? Step % 5 : 0;
			RC_ASSERT(Slots.Append(Count) == NumSlots);
			NumSlots += Count;
		}
		else if (Expected.erase(Index) > 0)
		{
			Slots.Free(Index);
		}
		else
		{
			Slots.AllocateAt(Index);
			Expected.insert(Index);
			NumSlots = std::max(NumSlots, Index + 1);
		}
	}
	RC_ASSERT(Listed(Slots) == std::vector<int32>(Expected.begin(), Expected.end()));
	RC_ASSERT(Slots.GetNumAllocated() == static_cast<int32>(Expected.size()));
	RC_ASSERT(Slots.GetNumSlots() == NumSlots);
}
