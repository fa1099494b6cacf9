// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Delegate.h"
#include "CoreUObject/GarbageCollector.h"
#include "Editor/TransactionRecord.h"
#include "Editor/Transactor.h"

#include <memory>
#include <optional>
#include <vector>

/// The engine's transaction buffer: a stack of committed transactions, a place in it, and the open transaction, if any.
///
/// It keeps every object that its transactions need. Opening a transaction touches neither side of the stack;
/// committing one drops what was there to redo. A nested scope joins the outer one. A transaction that recorded nothing
/// leaves both sides as they were.
class UTransBuffer : public UTransactor
{
	DECLARE_CLASS(UTransBuffer, UTransactor)

public:
	/// Told after every undo (or redo), with what the transaction said of itself and whether it succeeded.
	using FEvent = TMulticastDelegate<void(const FTransactionContext&, bool)>;

	UTransBuffer();
	~UTransBuffer() override;

	int32 Begin(const FTransactionContext& Context) override;
	int32 End() override;
	void Cancel(int32 StartIndex) override;
	bool CanUndo() const override;
	bool CanRedo() const override;

	/// Takes the last transaction back. Fails, telling `OnUndo`, when there is none; refused while one is open.
	bool Undo() override;
	bool Redo() override;
	void Reset() override;
	bool IsActive() const override { return !Scopes.empty() || bExchanging; }

	FEvent& OnUndo() { return UndoEvent; }
	FEvent& OnRedo() { return RedoEvent; }

	/// Told of every change of the stack: a commit, an undo, a redo, a reset.
	TMulticastDelegate<void()>& OnChanged() { return ChangedEvent; }

	/// How many transactions are on the stack, those that were undone included.
	int32 GetQueueLength() const { return int32(Queue.size()); }

	/// How many of them are undone.
	int32 GetUndoCount() const { return NumUndone; }

	/// The committed transaction at `Index`, oldest first.
	const FTransactionRecord& GetTransaction(int32 Index) const { return *Queue[uint32(Index)]; }

	/// Names the state that the transactions so far have led to: the same number for as long as nothing is committed,
	/// undone or redone, and again once undo or redo lead back to it. An editor compares it with that of its last save.
	uint64 GetStateId() const;

	/// Oldest transactions are dropped while the stack holds more bytes than this; the newest is never dropped.
	void SetMemoryLimit(uint64 Bytes);
	uint64 GetMemoryLimit() const { return MemoryLimit; }

	/// Bytes that the stack holds, large shared data included, each counted once.
	uint64 MemoryBytes() const;

private:
	class FReferences;
	void Commit(std::unique_ptr<FTransactionRecord> Record);
	void DropOldest();
	bool Step(bool bUndo);

	std::vector<std::unique_ptr<FTransactionRecord>> Queue;
	int32 NumUndone = 0;
	uint64 LastSerial = 0;
	/// The state in front of the oldest transaction.
	uint64 BaseState = 0;
	/// While an undo or redo exchanges states, whoever it notifies can open no transaction and undo nothing.
	bool bExchanging = false;
	std::unique_ptr<FTransactionRecord> Open;
	/// For each open scope, how many objects were recorded when it began.
	std::vector<int32> Scopes;
	std::optional<FCollectionLock> Lock;
	uint64 MemoryLimit = uint64(2) << 30;
	std::unique_ptr<FReferences> References;
	FEvent UndoEvent;
	FEvent RedoEvent;
	TMulticastDelegate<void()> ChangedEvent;
};
