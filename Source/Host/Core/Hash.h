// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Types.h"

#include <functional>

/// Hashes a key of `TSet` and `TMap`: by the key's own `GetTypeHash` where there is one, else by `std::hash`.
template <typename KeyType>
struct TKeyHash
{
	std::size_t operator()(const KeyType& Key) const
	{
		if constexpr (requires { GetTypeHash(Key); })
		{
			return static_cast<std::size_t>(GetTypeHash(Key));
		}
		else
		{
			return std::hash<KeyType>{}(Key);
		}
	}
};

/// Mixes a further hash into `Seed`.
constexpr std::size_t HashCombine(std::size_t Seed, std::size_t Value)
{
	return Seed ^ (Value + 0x9e3779b97f4a7c15ULL + (Seed << 6) + (Seed >> 2));
}
