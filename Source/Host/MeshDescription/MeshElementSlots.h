// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Types.h"

#include <compare>
#include <cstddef>
#include <functional>
#include <span>
#include <utility>
#include <vector>

/// The stable number of one element of a mesh. It stays the same while other elements come and go. Invalid by default.
template <typename TagType>
struct TMeshElementID
{
	int32 Value = INDEX_NONE;

	constexpr TMeshElementID() = default;
	constexpr explicit TMeshElementID(int32 InValue)
		: Value(InValue)
	{
	}

	constexpr int32 GetValue() const { return Value; }
	/// True for a number that could be an element's; whether there is such an element, its mesh knows.
	constexpr bool IsSet() const { return Value >= 0; }

	constexpr auto operator<=>(const TMeshElementID&) const = default;
	friend std::size_t GetTypeHash(TMeshElementID ID) { return std::hash<int32>{}(ID.Value); }
};

/// A corner position, shared by the vertex instances that meet there.
using FVertexID = TMeshElementID<struct FVertexTag>;
/// A vertex with its normal, tangent, texture coordinates and colour.
using FVertexInstanceID = TMeshElementID<struct FVertexInstanceTag>;
using FTriangleID = TMeshElementID<struct FTriangleTag>;
/// The triangles of one material slot.
using FPolygonGroupID = TMeshElementID<struct FPolygonGroupTag>;

/// Which of the slots of an array hold an element. Slots are given out in ascending order and never reused, so that a
/// number always means the same element.
class FMeshElementSlots
{
public:
	FMeshElementSlots() = default;
	FMeshElementSlots(const FMeshElementSlots&) = default;
	FMeshElementSlots& operator=(const FMeshElementSlots&) = default;
	/// Leaves the source without slots, as its arrays are left without entries.
	FMeshElementSlots(FMeshElementSlots&& Other) noexcept
		: NumSlots(std::exchange(Other.NumSlots, 0))
		, NumAllocated(std::exchange(Other.NumAllocated, 0))
		, Bits(std::exchange(Other.Bits, {}))
	{
	}
	FMeshElementSlots& operator=(FMeshElementSlots&& Other) noexcept
	{
		NumSlots = std::exchange(Other.NumSlots, 0);
		NumAllocated = std::exchange(Other.NumAllocated, 0);
		Bits = std::exchange(Other.Bits, {});
		return *this;
	}

	/// Slots, gaps included: the length of the attribute arrays.
	int32 GetNumSlots() const { return NumSlots; }
	int32 GetNumAllocated() const { return NumAllocated; }
	bool HasGaps() const { return NumAllocated != NumSlots; }

	bool IsAllocated(int32 Index) const
	{
		return Index >= 0 && Index < NumSlots && (Bits.empty() || (Bits[Word(Index)] & Bit(Index)) != 0);
	}

	/// The first allocated slot at or after `Index`, or the number of slots.
	int32 FindNext(int32 Index) const;

	/// Allocates `Count` slots after all others and returns the first. Fails a check beyond what an int32 counts.
	int32 Append(int32 Count = 1);

	/// Allocates one slot by its number, with gaps before it if need be. It must be free: checked.
	void AllocateAt(int32 Index);

	/// Frees one slot, which must be allocated: checked.
	void Free(int32 Index);

	/// Leaves only those slots allocated whose entry is not zero. One entry per slot: checked.
	void AllocateOnly(std::span<const uint8> bUsed);

	/// Equal when the same numbers are allocated.
	bool operator==(const FMeshElementSlots& Other) const;

	uint64 MemoryBytes() const { return Bits.capacity() * sizeof(uint64); }

private:
	static constexpr std::size_t Word(int32 Index) { return static_cast<std::size_t>(Index) / 64; }
	static constexpr uint64 Bit(int32 Index) { return uint64(1) << (static_cast<uint32>(Index) % 64); }
	void MakeBits();

	int32 NumSlots = 0;
	int32 NumAllocated = 0;
	/// One bit per slot; empty as long as there was never a gap.
	std::vector<uint64> Bits;
};

/// The elements of one kind in a mesh: `for (FVertexID ID : Mesh.Vertices().GetElementIDs())` visits them in ascending
/// order. Not to be kept while elements are added or deleted.
template <typename IDType>
class TMeshElements
{
public:
	class FIterator
	{
	public:
		FIterator(const FMeshElementSlots* InSlots, int32 InIndex)
			: Slots(InSlots)
			, Index(InIndex)
		{
		}
		IDType operator*() const { return IDType(Index); }
		FIterator& operator++()
		{
			Index = Slots->FindNext(Index + 1);
			return *this;
		}
		bool operator==(const FIterator& Other) const { return Index == Other.Index; }

	private:
		const FMeshElementSlots* Slots;
		int32 Index;
	};

	class FRange
	{
	public:
		explicit FRange(const FMeshElementSlots* InSlots)
			: Slots(InSlots)
		{
		}
		FIterator begin() const { return {Slots, Slots->FindNext(0)}; }
		FIterator end() const { return {Slots, Slots->GetNumSlots()}; }

	private:
		const FMeshElementSlots* Slots;
	};

	explicit TMeshElements(const FMeshElementSlots& InSlots)
		: Slots(&InSlots)
	{
	}

	/// Elements that there are.
	int32 Num() const { return Slots->GetNumAllocated(); }
	/// Slots, gaps included: one more than the largest number ever used.
	int32 GetArraySize() const { return Slots->GetNumSlots(); }
	bool HasGaps() const { return Slots->HasGaps(); }
	bool IsValid(IDType ID) const { return Slots->IsAllocated(ID.Value); }
	FRange GetElementIDs() const { return FRange(Slots); }

private:
	const FMeshElementSlots* Slots;
};
