// SPDX-License-Identifier: MIT
#pragma once

#include "CoreUObject/ObjectSnapshot.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <iosfwd>
#include <string>
#include <unordered_map>
#include <vector>

class UWorld;

/// The state of all objects that a world reaches (actors, components, and the assets that they use, with all inside
/// them) at one moment, and where the components stand in the world. Two are equal when the same objects are reached
/// and each has the same state, to the bit. Keeps no object alive.
class FWorldState
{
public:
	/// Looks at `World` and at the other objects given (null ones are passed over), and at all that these reference.
	explicit FWorldState(UWorld* World, std::initializer_list<UObject*> Others = {});

	bool operator==(const FWorldState& Other) const;

	/// One line for each object that differs, is missing or is new in `Other`; empty when they are equal.
	std::string Difference(const FWorldState& Other) const;

	int32 NumObjects() const { return int32(Objects.size()); }

private:
	struct FObjectState
	{
		std::string Name;
		/// What a reader can make something of, the derived world transform included.
		std::string Description;
		FObjectSnapshot Snapshot;

		bool operator==(const FObjectState& Other) const
		{
			return Snapshot == Other.Snapshot && Description == Other.Description;
		}
	};

	std::vector<FObjectHandle> Order;
	std::unordered_map<FObjectHandle, FObjectState> Objects;
};

/// Succeeds when `After` is the state `Before` to the bit; else says what differs.
testing::AssertionResult IsSameState(const FWorldState& Before, const FWorldState& After);
