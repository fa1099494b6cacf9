// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Types.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

namespace ArrayDetail
{
inline constexpr std::size_t MaxNum = static_cast<std::size_t>(std::numeric_limits<int32>::max());

/// Whether `Extra` elements may join `Num` others and still be indexed by int32.
constexpr bool HasRoomFor(std::size_t Num, std::size_t Extra)
{
	return Extra <= MaxNum - Num;
}
} // namespace ArrayDetail

/// A dynamic array: `std::vector` under the host's names, indexed by int32, every access checked.
template <typename T>
class TArray
{
	static_assert(!std::is_same_v<T, bool>, "An array of bool has no addressable elements: use TArray<uint8>.");

public:
	using ElementType = T;
	using value_type = T;
	using iterator = T*;
	using const_iterator = const T*;

	TArray() = default;

	TArray(std::initializer_list<T> Items)
		: Storage(Items)
	{
	}

	/// Copies `Count` elements from `Items`.
	TArray(const T* Items, int32 Count)
	{
		check(Count >= 0);
		Storage.assign(Items, Items + Count);
	}

	int32 Num() const { return static_cast<int32>(Storage.size()); }
	bool IsEmpty() const { return Storage.empty(); }
	bool IsValidIndex(int32 Index) const { return Index >= 0 && Index < Num(); }

	/// Elements that fit into the storage held now.
	int32 Max() const { return static_cast<int32>(std::min<std::size_t>(Storage.capacity(), ArrayDetail::MaxNum)); }

	T* GetData() { return Storage.data(); }
	const T* GetData() const { return Storage.data(); }

	T& operator[](int32 Index)
	{
		check(IsValidIndex(Index));
		return Storage[static_cast<std::size_t>(Index)];
	}

	const T& operator[](int32 Index) const
	{
		check(IsValidIndex(Index));
		return Storage[static_cast<std::size_t>(Index)];
	}

	/// The element `IndexFromTheEnd` places before the last one; the array must be long enough.
	T& Last(int32 IndexFromTheEnd = 0) { return (*this)[Num() - 1 - CheckedCount(IndexFromTheEnd)]; }
	const T& Last(int32 IndexFromTheEnd = 0) const { return (*this)[Num() - 1 - CheckedCount(IndexFromTheEnd)]; }

	/// Appends one element and returns its index.
	int32 Add(const T& Item)
	{
		Emplace(Item);
		return Num() - 1;
	}

	int32 Add(T&& Item)
	{
		Emplace(std::move(Item));
		return Num() - 1;
	}

	/// Constructs an element at the end and returns its index.
	template <typename... ArgumentTypes>
	int32 Emplace(ArgumentTypes&&... Arguments)
	{
		CheckRoomFor(1);
		Storage.emplace_back(std::forward<ArgumentTypes>(Arguments)...);
		return Num() - 1;
	}

	/// As Emplace, returning the new element.
	template <typename... ArgumentTypes>
	T& Emplace_GetRef(ArgumentTypes&&... Arguments)
	{
		return (*this)[Emplace(std::forward<ArgumentTypes>(Arguments)...)];
	}

	/// Appends a default-constructed element and returns it.
	T& AddDefaulted_GetRef() { return Emplace_GetRef(); }

	/// Appends `Item` unless an equal element is there; returns the index of the one or the other.
	int32 AddUnique(const T& Item)
	{
		const int32 Index = Find(Item);
		return Index != INDEX_NONE ? Index : Add(Item);
	}

	/// Appends all elements of `Other`, which may be this array.
	void Append(const TArray& Other)
	{
		const int32 Count = Other.Num();
		CheckRoomFor(static_cast<std::size_t>(Count));
		Storage.reserve(GrownCapacity(static_cast<std::size_t>(Count)));
		for (int32 Index = 0; Index < Count; ++Index)
		{
			Storage.push_back(Other.Storage[static_cast<std::size_t>(Index)]);
		}
	}

	/// Moves all elements of `Other` to the end of this array and leaves `Other` empty.
	void Append(TArray&& Other)
	{
		check(this != &Other);
		CheckRoomFor(Other.Storage.size());
		Storage.insert(Storage.end(), std::make_move_iterator(Other.Storage.begin()),
			std::make_move_iterator(Other.Storage.end()));
		Other.Storage.clear();
	}

	/// Inserts before `Index`, which may be Num(); returns `Index`.
	int32 Insert(const T& Item, int32 Index)
	{
		CheckInsertion(Index);
		Storage.insert(Storage.begin() + Index, Item);
		return Index;
	}

	int32 Insert(T&& Item, int32 Index)
	{
		CheckInsertion(Index);
		Storage.insert(Storage.begin() + Index, std::move(Item));
		return Index;
	}

	/// Removes `Count` elements from `Index` on and closes the gap.
	void RemoveAt(int32 Index, int32 Count = 1)
	{
		check(Index >= 0 && Count >= 0 && Index <= Num() - Count);
		Storage.erase(Storage.begin() + Index, Storage.begin() + Index + Count);
	}

	/// Removes one element and fills its place with the last one: constant time, order is not kept.
	void RemoveAtSwap(int32 Index)
	{
		check(IsValidIndex(Index));
		if (Index != Num() - 1)
		{
			Storage[static_cast<std::size_t>(Index)] = std::move(Storage.back());
		}
		Storage.pop_back();
	}

	/// Removes the first equal element; returns how many were removed, 0 or 1.
	int32 RemoveSingle(const T& Item)
	{
		const int32 Index = Find(Item);
		if (Index == INDEX_NONE)
		{
			return 0;
		}
		RemoveAt(Index);
		return 1;
	}

	/// Removes all equal elements, keeping order; returns how many. `Item` may be an element of this array.
	int32 Remove(const T& Item)
	{
		const T Wanted = Item;
		return RemoveAll([&Wanted](const T& Element) { return Element == Wanted; });
	}

	/// Removes all elements for which `Predicate` holds, keeping order; returns how many.
	template <typename PredicateType>
	int32 RemoveAll(PredicateType Predicate)
	{
		return static_cast<int32>(std::erase_if(Storage, Predicate));
	}

	/// Removes all elements, keeps the storage, and makes room for `ExpectedNum`.
	void Reset(int32 ExpectedNum = 0)
	{
		Storage.clear();
		Reserve(ExpectedNum);
	}

	/// Removes all elements, frees the storage, and makes room for `ExpectedNum`.
	void Empty(int32 ExpectedNum = 0)
	{
		std::vector<T>().swap(Storage);
		Reserve(ExpectedNum);
	}

	/// Makes room for `Count` elements in all.
	void Reserve(int32 Count) { Storage.reserve(CheckedSize(Count)); }

	/// Cuts the array, or fills it up with default-constructed elements, to `Count`.
	void SetNum(int32 Count) { Storage.resize(CheckedSize(Count)); }

	/// Removes the last element and returns it.
	T Pop()
	{
		check(!IsEmpty());
		T Item = std::move(Storage.back());
		Storage.pop_back();
		return Item;
	}

	bool Contains(const T& Item) const { return Find(Item) != INDEX_NONE; }

	template <typename PredicateType>
	bool ContainsByPredicate(PredicateType Predicate) const
	{
		return IndexOfByPredicate(Predicate) != INDEX_NONE;
	}

	/// The index of the first equal element, or INDEX_NONE.
	int32 Find(const T& Item) const { return IndexOf(std::find(Storage.begin(), Storage.end(), Item)); }

	/// As Find, with the index as an out parameter.
	bool Find(const T& Item, int32& OutIndex) const
	{
		OutIndex = Find(Item);
		return OutIndex != INDEX_NONE;
	}

	/// The first element for which `Predicate` holds, or null.
	template <typename PredicateType>
	T* FindByPredicate(PredicateType Predicate)
	{
		const int32 Index = IndexOfByPredicate(Predicate);
		return Index == INDEX_NONE ? nullptr : &Storage[static_cast<std::size_t>(Index)];
	}

	template <typename PredicateType>
	const T* FindByPredicate(PredicateType Predicate) const
	{
		const int32 Index = IndexOfByPredicate(Predicate);
		return Index == INDEX_NONE ? nullptr : &Storage[static_cast<std::size_t>(Index)];
	}

	/// The index of the first element for which `Predicate` holds, or INDEX_NONE.
	template <typename PredicateType>
	int32 IndexOfByPredicate(PredicateType Predicate) const
	{
		return IndexOf(std::find_if(Storage.begin(), Storage.end(), Predicate));
	}

	/// Sorts; equal elements may change places.
	template <typename PredicateType = std::less<>>
	void Sort(PredicateType Less = {})
	{
		std::sort(Storage.begin(), Storage.end(), Less);
	}

	/// Sorts; equal elements keep their order.
	template <typename PredicateType = std::less<>>
	void StableSort(PredicateType Less = {})
	{
		std::stable_sort(Storage.begin(), Storage.end(), Less);
	}

	void Swap(int32 First, int32 Second)
	{
		using std::swap;
		swap((*this)[First], (*this)[Second]);
	}

	T* begin() { return Storage.data(); }
	T* end() { return Storage.data() + Storage.size(); }
	const T* begin() const { return Storage.data(); }
	const T* end() const { return Storage.data() + Storage.size(); }

	friend bool operator==(const TArray& Left, const TArray& Right) { return Left.Storage == Right.Storage; }

private:
	static int32 CheckedCount(int32 Count)
	{
		check(Count >= 0);
		return Count;
	}

	static std::size_t CheckedSize(int32 Count) { return static_cast<std::size_t>(CheckedCount(Count)); }

	void CheckRoomFor(std::size_t Count) const { check(ArrayDetail::HasRoomFor(Storage.size(), Count)); }

	void CheckInsertion(int32 Index) const
	{
		check(Index >= 0 && Index <= Num());
		CheckRoomFor(1);
	}

	/// Capacity for `Extra` more that still grows geometrically, so that many small appends stay linear.
	std::size_t GrownCapacity(std::size_t Extra) const
	{
		const std::size_t Wanted = Storage.size() + Extra;
		return Wanted <= Storage.capacity() ? Wanted : std::max(Wanted, 2 * Storage.capacity());
	}

	template <typename IteratorType>
	int32 IndexOf(IteratorType Found) const
	{
		return Found == Storage.end() ? INDEX_NONE : static_cast<int32>(Found - Storage.begin());
	}

	std::vector<T> Storage;
};
