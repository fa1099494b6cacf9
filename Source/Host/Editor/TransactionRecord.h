// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "CoreUObject/ObjectSnapshot.h"
#include "CoreUObject/Transaction.h"
#include "Editor/Transactor.h"

#include <unordered_map>

/// One undoable step: for each object that it changed, the state on the other side of the step.
///
/// Undo and redo are one act: `Exchange` swaps what is stored with what is live.
class FTransactionRecord final : public ITransaction
{
public:
	explicit FTransactionRecord(const FTransactionContext& InContext)
		: Context(InContext)
	{
	}

	/// The number of the transaction among all that its buffer ever committed.
	uint64 Serial = 0;

	void SaveObject(UObject* Object) override;
	void SaveCreation(UObject* Object) override;

	/// How many objects are recorded; a mark for `DropFrom`.
	int32 Num() const { return int32(Entries.size()); }

	/// Forgets the objects that were recorded since there were `Mark` of them.
	void DropFrom(int32 Mark);

	/// Swaps the stored states with the live ones, all first; then has the objects drop what they derived from the old
	/// states; then derives the world transforms, parents first; then tells the objects.
	void Exchange();

	const FTransactionContext& GetContext() const { return Context; }

	/// The recorded objects, in the order in which they were recorded.
	TArray<UObject*> GetObjects() const;

	/// Adds what the record holds.
	void AddMemory(FSnapshotMemory& Memory) const;

	/// Names every object that the record needs to `Keep`.
	template <class TKeep>
	void ForEachReference(const TKeep& Keep) const
	{
		Keep(Context.PrimaryObject.GetHandle());
		for (const FEntry& Entry : Entries)
		{
			Keep(Entry.Object);
			for (const FObjectHandle& Reference : Entry.State.GetReferences())
			{
				Keep(Reference);
			}
		}
	}

private:
	struct FEntry
	{
		FObjectHandle Object;
		FObjectSnapshot State;
	};

	FTransactionContext Context;
	std::vector<FEntry> Entries;
	std::unordered_map<FObjectHandle, int32> EntryOfObject;
};
