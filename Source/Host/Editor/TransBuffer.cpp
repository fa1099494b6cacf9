// SPDX-License-Identifier: MIT
#include "Editor/TransBuffer.h"

DEFINE_CLASS(UTransBuffer)

class UTransBuffer::FReferences final : public FReferenceSource
{
public:
	explicit FReferences(const UTransBuffer& InBuffer)
		: Buffer(InBuffer)
	{
	}

	void AddReferences(const FReferenceCollector& Collector) override
	{
		for (const std::unique_ptr<FTransactionRecord>& Record : Buffer.Queue)
		{
			Record->ForEachReference([&](FObjectHandle Handle) { Collector.Keep(Handle); });
		}
	}
	bool KeepsGarbage() const override { return true; }

private:
	const UTransBuffer& Buffer;
};

UTransBuffer::UTransBuffer()
	: References(std::make_unique<FReferences>(*this))
{
}

UTransBuffer::~UTransBuffer()
{
	if (Open && GUndo == Open.get())
	{
		GUndo = nullptr;
	}
}

int32 UTransBuffer::Begin(const FTransactionContext& Context)
{
	if (bExchanging)
	{
		return INDEX_NONE;
	}
	if (Scopes.empty())
	{
		Open = std::make_unique<FTransactionRecord>(Context);
		Lock.emplace();
		GUndo = Open.get();
	}
	Scopes.push_back(Open->Num());
	return int32(Scopes.size()) - 1;
}

int32 UTransBuffer::End()
{
	if (Scopes.empty())
	{
		return INDEX_NONE;
	}
	Scopes.pop_back();
	const int32 Index = int32(Scopes.size());
	if (Index == 0)
	{
		GUndo = nullptr;
		std::unique_ptr<FTransactionRecord> Record = std::move(Open);
		Lock.reset();
		if (Record->Num() > 0)
		{
			Commit(std::move(Record));
		}
	}
	return Index;
}

void UTransBuffer::Commit(std::unique_ptr<FTransactionRecord> Record)
{
	Queue.resize(Queue.size() - uint32(NumUndone));
	NumUndone = 0;
	Record->Serial = ++LastSerial;
	Queue.push_back(std::move(Record));
	DropOldest();
	ChangedEvent.Broadcast();
}

void UTransBuffer::Cancel(int32 StartIndex)
{
	if (StartIndex < 0 || StartIndex >= int32(Scopes.size()))
	{
		return;
	}
	Open->DropFrom(Scopes[uint32(StartIndex)]);
	Scopes.resize(uint32(StartIndex));
	if (Scopes.empty())
	{
		GUndo = nullptr;
		Open.reset();
		Lock.reset();
	}
}

bool UTransBuffer::CanUndo() const
{
	return !IsActive() && NumUndone < GetQueueLength();
}

bool UTransBuffer::CanRedo() const
{
	return !IsActive() && NumUndone > 0;
}

bool UTransBuffer::Undo()
{
	return Step(true);
}

bool UTransBuffer::Redo()
{
	return Step(false);
}

bool UTransBuffer::Step(bool bUndo)
{
	FEvent& Event = bUndo ? UndoEvent : RedoEvent;
	if (!(bUndo ? CanUndo() : CanRedo()))
	{
		Event.Broadcast(FTransactionContext(), false);
		return false;
	}
	FTransactionContext Context;
	{
		// Whoever is told must not collect, nor drop, what is being exchanged.
		const FCollectionLock StepLock;
		NumUndone += bUndo ? 1 : 0;
		FTransactionRecord& Record = *Queue[Queue.size() - uint32(NumUndone)];
		NumUndone -= bUndo ? 0 : 1;
		Context = Record.GetContext();
		bExchanging = true;
		Record.Exchange();
		bExchanging = false;
		Event.Broadcast(Context, true);
	}
	ChangedEvent.Broadcast();
	return true;
}

void UTransBuffer::Reset()
{
	check(!IsActive());
	BaseState = GetStateId();
	Queue.clear();
	NumUndone = 0;
	ChangedEvent.Broadcast();
}

uint64 UTransBuffer::GetStateId() const
{
	const uint64 NumApplied = Queue.size() - uint32(NumUndone);
	return NumApplied == 0 ? BaseState : Queue[NumApplied - 1]->Serial;
}

void UTransBuffer::SetMemoryLimit(uint64 Bytes)
{
	MemoryLimit = Bytes;
	DropOldest();
}

uint64 UTransBuffer::MemoryBytes() const
{
	FSnapshotMemory Memory;
	for (const std::unique_ptr<FTransactionRecord>& Record : Queue)
	{
		Record->AddMemory(Memory);
	}
	return Memory.Bytes;
}

void UTransBuffer::DropOldest()
{
	// Counted from the newest on, so that what several transactions share is charged to the one that stays longest.
	FSnapshotMemory Memory;
	uint64 NumKept = 0;
	while (NumKept < Queue.size())
	{
		Queue[Queue.size() - 1 - NumKept]->AddMemory(Memory);
		if (NumKept > 0 && Memory.Bytes > MemoryLimit)
		{
			break;
		}
		++NumKept;
	}
	if (NumKept < Queue.size())
	{
		BaseState = Queue[Queue.size() - 1 - NumKept]->Serial;
	}
	Queue.erase(Queue.begin(), Queue.end() - int64(NumKept));
	NumUndone = NumUndone < GetQueueLength() ? NumUndone : GetQueueLength();
}
