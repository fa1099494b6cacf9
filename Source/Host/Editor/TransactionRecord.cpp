// SPDX-License-Identifier: MIT
#include "Editor/TransactionRecord.h"

#include "Engine/SceneComponent.h"

void FTransactionRecord::SaveObject(UObject* Object)
{
	if (EntryOfObject.emplace(Object->GetHandle(), Num()).second)
	{
		Entries.push_back({Object->GetHandle(), FObjectSnapshot(*Object)});
	}
}

void FTransactionRecord::SaveCreation(UObject* Object)
{
	SaveObject(Object);
	Entries[uint32(EntryOfObject.at(Object->GetHandle()))].State.SetGarbage(true);
}

void FTransactionRecord::DropFrom(int32 Mark)
{
	while (Num() > Mark)
	{
		EntryOfObject.erase(Entries.back().Object);
		Entries.pop_back();
	}
}

void FTransactionRecord::Exchange()
{
	const TArray<UObject*> Objects = GetObjects();
	for (FEntry& Entry : Entries)
	{
		UObject& Object = *ResolveObject(Entry.Object);
		FObjectSnapshot Live(Object);
		Entry.State.Restore(Object);
		Entry.State = std::move(Live);
	}
	TArray<USceneComponent*> Moved;
	for (UObject* Object : Objects)
	{
		Object->DropDerivedData();
		if (USceneComponent* const Component = Cast<USceneComponent>(Object))
		{
			Moved.Add(Component);
		}
	}
	USceneComponent::UpdateWorldTransforms(Moved);
	for (UObject* Object : Objects)
	{
		Object->PostEditUndo();
	}
}

TArray<UObject*> FTransactionRecord::GetObjects() const
{
	TArray<UObject*> Objects;
	for (const FEntry& Entry : Entries)
	{
		// The record keeps its objects, so they exist.
		UObject* const Object = ResolveObject(Entry.Object);
		check(Object);
		Objects.Add(Object);
	}
	return Objects;
}

void FTransactionRecord::AddMemory(FSnapshotMemory& Memory) const
{
	Memory.Bytes += sizeof(*this);
	for (const FEntry& Entry : Entries)
	{
		Memory.Bytes += sizeof(FObjectHandle);
		Entry.State.AddMemory(Memory);
	}
}
