// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Hash.h"

#include <initializer_list>
#include <iterator>
#include <unordered_set>
#include <utility>

/// A key and its value.
template <typename KeyType, typename ValueType>
struct TPair
{
	KeyType Key;
	ValueType Value;

	friend bool operator==(const TPair&, const TPair&) = default;
};

/// A map without order, over a standard hash container of pairs. Pointers to pairs survive additions.
template <typename InKeyType, typename InValueType>
class TMap
{
public:
	using KeyType = InKeyType;
	using ValueType = InValueType;
	using FPair = TPair<const KeyType, ValueType>;

private:
	// A set of pairs, not std::unordered_map, so that elements have the members Key and Value.
	struct FPairHash
	{
		using is_transparent = void;
		std::size_t operator()(const KeyType& Key) const { return TKeyHash<KeyType>{}(Key); }
		std::size_t operator()(const FPair& Pair) const { return TKeyHash<KeyType>{}(Pair.Key); }
	};

	struct FPairEqual
	{
		using is_transparent = void;
		bool operator()(const FPair& Left, const FPair& Right) const { return Left.Key == Right.Key; }
		bool operator()(const FPair& Left, const KeyType& Right) const { return Left.Key == Right; }
		bool operator()(const KeyType& Left, const FPair& Right) const { return Left == Right.Key; }
	};

	using FStorage = std::unordered_set<FPair, FPairHash, FPairEqual>;

public:
	/// Walks the pairs; keys are constant, values are not.
	class FIterator
	{
	public:
		using iterator_category = std::forward_iterator_tag;
		using value_type = FPair;
		using difference_type = std::ptrdiff_t;
		using pointer = FPair*;
		using reference = FPair&;

		FIterator() = default;
		explicit FIterator(typename FStorage::iterator InPlace)
			: Place(InPlace)
		{
		}

		// A set shows its elements as constant because a changed key would be lost; the key is constant by itself.
		FPair& operator*() const { return const_cast<FPair&>(*Place); }
		FPair* operator->() const { return &**this; }

		FIterator& operator++()
		{
			++Place;
			return *this;
		}

		FIterator operator++(int)
		{
			FIterator Before = *this;
			++Place;
			return Before;
		}

		friend bool operator==(const FIterator&, const FIterator&) = default;

	private:
		typename FStorage::iterator Place;
	};

	using FConstIterator = typename FStorage::const_iterator;

	TMap() = default;

	TMap(std::initializer_list<TPair<KeyType, ValueType>> Pairs)
	{
		for (const TPair<KeyType, ValueType>& Pair : Pairs)
		{
			Add(Pair.Key, Pair.Value);
		}
	}

	int32 Num() const { return static_cast<int32>(Storage.size()); }
	bool IsEmpty() const { return Storage.empty(); }
	bool Contains(const KeyType& Key) const { return Storage.find(Key) != Storage.end(); }

	/// Sets the value of `Key`, replacing one that is there; returns the value in the map.
	ValueType& Add(const KeyType& Key, ValueType Value)
	{
		if (ValueType* Present = Find(Key))
		{
			*Present = std::move(Value);
			return *Present;
		}
		return (*FIterator(Storage.insert(FPair{Key, std::move(Value)}).first)).Value;
	}

	/// Sets the value of `Key` to a default-constructed one.
	ValueType& Add(const KeyType& Key) { return Add(Key, ValueType()); }

	template <typename... ArgumentTypes>
	ValueType& Emplace(const KeyType& Key, ArgumentTypes&&... Arguments)
	{
		return Add(Key, ValueType(std::forward<ArgumentTypes>(Arguments)...));
	}

	/// The value of `Key`, or null.
	ValueType* Find(const KeyType& Key)
	{
		const auto Found = Storage.find(Key);
		return Found == Storage.end() ? nullptr : &(*FIterator(Found)).Value;
	}

	const ValueType* Find(const KeyType& Key) const
	{
		const auto Found = Storage.find(Key);
		return Found == Storage.end() ? nullptr : &Found->Value;
	}

	/// A copy of the value of `Key`, or a default-constructed one.
	ValueType FindRef(const KeyType& Key) const
	{
		const ValueType* Found = Find(Key);
		return Found != nullptr ? *Found : ValueType();
	}

	/// The value of `Key`, added default-constructed if it is not there.
	ValueType& FindOrAdd(const KeyType& Key)
	{
		ValueType* Found = Find(Key);
		return Found != nullptr ? *Found : Add(Key);
	}

	/// The value of `Key`, which must be there.
	ValueType& operator[](const KeyType& Key) { return *CheckFound(Find(Key)); }
	const ValueType& operator[](const KeyType& Key) const { return *CheckFound(Find(Key)); }

	/// Removes a key; returns how many were removed, 0 or 1. `Key` may belong to the pair that goes.
	int32 Remove(const KeyType& Key)
	{
		const auto Found = Storage.find(Key);
		if (Found == Storage.end())
		{
			return 0;
		}
		Storage.erase(Found);
		return 1;
	}

	/// Takes a pair out, moving its value into `OutValue`; false, leaving it alone, if the key is not there.
	bool RemoveAndCopyValue(const KeyType& Key, ValueType& OutValue)
	{
		const auto Found = Storage.find(Key);
		if (Found == Storage.end())
		{
			return false;
		}
		OutValue = std::move((*FIterator(Found)).Value);
		Storage.erase(Found);
		return true;
	}

	/// Makes room for `Count` pairs in all.
	void Reserve(int32 Count)
	{
		check(Count >= 0);
		Storage.reserve(static_cast<std::size_t>(Count));
	}

	/// Removes all pairs and keeps the buckets.
	void Reset() { Storage.clear(); }

	/// Removes all pairs and frees the storage.
	void Empty() { FStorage().swap(Storage); }

	/// All keys, in no particular order.
	TArray<KeyType> GetKeys() const
	{
		TArray<KeyType> Keys;
		Keys.Reserve(Num());
		for (const FPair& Pair : Storage)
		{
			Keys.Add(Pair.Key);
		}
		return Keys;
	}

	FIterator begin() { return FIterator(Storage.begin()); }
	FIterator end() { return FIterator(Storage.end()); }
	FConstIterator begin() const { return Storage.begin(); }
	FConstIterator end() const { return Storage.end(); }

private:
	template <typename PointerType>
	static PointerType CheckFound(PointerType Found)
	{
		check(Found != nullptr);
		return Found;
	}

	FStorage Storage;
};
