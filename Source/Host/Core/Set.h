// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Hash.h"

#include <initializer_list>
#include <unordered_set>
#include <utility>

/// A set without order: `std::unordered_set` under the host's names. Pointers to elements survive additions.
template <typename T>
class TSet
{
	using FStorage = std::unordered_set<T, TKeyHash<T>>;

public:
	using ElementType = T;
	using value_type = T;
	using const_iterator = typename FStorage::const_iterator;

	TSet() = default;

	TSet(std::initializer_list<T> Items)
		: Storage(Items)
	{
	}

	int32 Num() const { return static_cast<int32>(Storage.size()); }
	bool IsEmpty() const { return Storage.empty(); }
	bool Contains(const T& Item) const { return Storage.find(Item) != Storage.end(); }

	/// The element equal to `Item`, or null.
	const T* Find(const T& Item) const
	{
		const auto Found = Storage.find(Item);
		return Found == Storage.end() ? nullptr : &*Found;
	}

	/// Adds `Item`; `bOutIsAlreadyInSet`, if given, says whether an equal one was there. Returns the element.
	const T& Add(T Item, bool* bOutIsAlreadyInSet = nullptr)
	{
		const auto [Place, bAdded] = Storage.insert(std::move(Item));
		if (bOutIsAlreadyInSet != nullptr)
		{
			*bOutIsAlreadyInSet = !bAdded;
		}
		return *Place;
	}

	/// Removes an element; returns how many were removed, 0 or 1.
	int32 Remove(const T& Item) { return static_cast<int32>(Storage.erase(Item)); }

	/// Adds all elements of `Other`.
	void Append(const TSet& Other)
	{
		if (this != &Other)
		{
			Storage.insert(Other.begin(), Other.end());
		}
	}

	void Append(const TArray<T>& Other) { Storage.insert(Other.begin(), Other.end()); }

	/// Makes room for `Count` elements in all.
	void Reserve(int32 Count)
	{
		check(Count >= 0);
		Storage.reserve(static_cast<std::size_t>(Count));
	}

	/// Removes all elements and keeps the buckets.
	void Reset() { Storage.clear(); }

	/// Removes all elements and frees the storage.
	void Empty() { FStorage().swap(Storage); }

	/// The elements as an array, in no particular order.
	TArray<T> Array() const
	{
		TArray<T> Items;
		Items.Reserve(Num());
		for (const T& Item : Storage)
		{
			Items.Add(Item);
		}
		return Items;
	}

	const_iterator begin() const { return Storage.begin(); }
	const_iterator end() const { return Storage.end(); }

	friend bool operator==(const TSet& Left, const TSet& Right) { return Left.Storage == Right.Storage; }

private:
	FStorage Storage;
};
