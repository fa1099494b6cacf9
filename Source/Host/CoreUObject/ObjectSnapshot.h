// SPDX-License-Identifier: MIT
#pragma once

#include "CoreUObject/ObjectPtr.h"

#include <functional>
#include <memory>
#include <unordered_set>
#include <vector>

/// Adds up what snapshots hold. Shared data are counted once, however many snapshots share them.
struct FSnapshotMemory
{
	uint64 Bytes = 0;
	std::unordered_set<const void*> Counted;
};

/// The state of one object at one moment: its plain fields as bytes, the objects that it points at, and its large
/// immutable data, shared. Taking one costs what the plain fields cost, however large the shared data are.
class FObjectSnapshot
{
public:
	FObjectSnapshot() = default;

	/// Records the present state of `Object`.
	explicit FObjectSnapshot(UObject& Object);

	/// Gives `Object`, which must be of the class that was recorded, the recorded state.
	void Restore(UObject& Object) const;

	/// Replaces every object reference by what `Map` says of it.
	void MapReferences(const std::function<FObjectHandle(FObjectHandle)>& Map);

	/// The recorded garbage flag.
	bool IsGarbage() const { return bGarbage; }
	void SetGarbage(bool bInGarbage) { bGarbage = bInGarbage; }

	const std::vector<FObjectHandle>& GetReferences() const { return References; }

	/// Adds what the snapshot holds, large shared data included.
	void AddMemory(FSnapshotMemory& Memory) const;

	/// Equal to the bit: the same bytes, the same objects, the same shared data.
	bool operator==(const FObjectSnapshot& Other) const = default;

	/// Large immutable data, and its size.
	struct FShared
	{
		std::shared_ptr<const void> Data;
		uint64 NumBytes = 0;

		bool operator==(const FShared& Other) const { return Data == Other.Data; }
	};

private:
	std::vector<uint8> Bytes;
	std::vector<FObjectHandle> References;
	std::vector<FShared> Shared;
	bool bGarbage = false;
};

/// Copies `Source` and the objects inside it (those whose outer chain holds it and that its state references);
/// references among them point at the copies, all others stay. The copy gets the outer (null: the transient package)
/// and the name (none: a unique one); inner objects keep their names. Large immutable data are shared. Null gives null.
UObject* DuplicateObject(UObject* Source, UObject* Outer, FName Name = NAME_None);

template <class T>
T* DuplicateObject(T* Source, UObject* Outer, FName Name = NAME_None)
{
	return static_cast<T*>(DuplicateObject(static_cast<UObject*>(Source), Outer, Name));
}
