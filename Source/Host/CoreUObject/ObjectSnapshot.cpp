// SPDX-License-Identifier: MIT
#include "CoreUObject/ObjectSnapshot.h"

#include "CoreUObject/Archive.h"

#include <cstring>
#include <iterator>
#include <unordered_map>

namespace
{
class FSnapshotWriter final : public FArchive
{
public:
	FSnapshotWriter(std::vector<uint8>& InBytes, std::vector<FObjectHandle>& InReferences,
		std::vector<FObjectSnapshot::FShared>& InShared)
		: FArchive(EArchiveMode::Saving)
		, Bytes(InBytes)
		, References(InReferences)
		, Shared(InShared)
	{
	}

	void SerializeBytes(void* Data, uint64 NumBytes) override
	{
		const uint8* const Begin = static_cast<const uint8*>(Data);
		Bytes.insert(Bytes.end(), Begin, Begin + NumBytes);
	}
	void SerializeObject(FObjectHandle& Handle) override { References.push_back(Handle); }
	void SerializeShared(std::shared_ptr<const void>& Data, uint64 NumBytes) override
	{
		Shared.push_back({Data, NumBytes});
	}

private:
	std::vector<uint8>& Bytes;
	std::vector<FObjectHandle>& References;
	std::vector<FObjectSnapshot::FShared>& Shared;
};

class FSnapshotReader final : public FArchive
{
public:
	FSnapshotReader(const std::vector<uint8>& InBytes, const std::vector<FObjectHandle>& InReferences,
		const std::vector<FObjectSnapshot::FShared>& InShared)
		: FArchive(EArchiveMode::Loading)
		, Bytes(InBytes)
		, References(InReferences)
		, Shared(InShared)
	{
	}

	void SerializeBytes(void* Data, uint64 NumBytes) override
	{
		check(NumBytes <= Bytes.size() - NextByte);
		if (NumBytes > 0)
		{
			std::memcpy(Data, Bytes.data() + NextByte, NumBytes);
		}
		NextByte += NumBytes;
	}
	void SerializeObject(FObjectHandle& Handle) override
	{
		check(NextReference < References.size());
		Handle = References[NextReference++];
	}
	void SerializeShared(std::shared_ptr<const void>& Data, uint64) override
	{
		check(NextShared < Shared.size());
		Data = Shared[NextShared++].Data;
	}

	bool IsAtEnd() const
	{
		return NextByte == Bytes.size() && NextReference == References.size() && NextShared == Shared.size();
	}

private:
	const std::vector<uint8>& Bytes;
	const std::vector<FObjectHandle>& References;
	const std::vector<FObjectSnapshot::FShared>& Shared;
	uint64 NextByte = 0;
	uint64 NextReference = 0;
	uint64 NextShared = 0;
};
} // namespace

FObjectSnapshot::FObjectSnapshot(UObject& Object)
	: bGarbage(Object.IsGarbage())
{
	// What is written is collected where there is room already: a snapshot is made of every object that changes.
	struct FRoom
	{
		std::vector<uint8> Bytes;
		std::vector<FObjectHandle> References;
		std::vector<FShared> Shared;
	};
	static thread_local FRoom Kept;
	FRoom Room = std::move(Kept);
	FSnapshotWriter Writer(Room.Bytes, Room.References, Room.Shared);
	Object.Serialize(Writer);
	Bytes.assign(Room.Bytes.begin(), Room.Bytes.end());
	References.assign(Room.References.begin(), Room.References.end());
	Shared.assign(std::make_move_iterator(Room.Shared.begin()), std::make_move_iterator(Room.Shared.end()));
	Room.Bytes.clear();
	Room.References.clear();
	Room.Shared.clear();
	Kept = std::move(Room);
}

void FObjectSnapshot::Restore(UObject& Object) const
{
	FSnapshotReader Reader(Bytes, References, Shared);
	Object.Serialize(Reader);
	check(Reader.IsAtEnd());
	if (bGarbage)
	{
		Object.MarkAsGarbage();
	}
	else
	{
		Object.ClearGarbage();
	}
}

void FObjectSnapshot::MapReferences(const std::function<FObjectHandle(FObjectHandle)>& Map)
{
	for (FObjectHandle& Reference : References)
	{
		Reference = Map(Reference);
	}
}

void FObjectSnapshot::AddMemory(FSnapshotMemory& Memory) const
{
	Memory.Bytes += sizeof(*this) + Bytes.capacity() + References.capacity() * sizeof(FObjectHandle) +
					Shared.capacity() * sizeof(FShared);
	for (const FShared& Item : Shared)
	{
		Memory.Bytes += Item.Data && Memory.Counted.insert(Item.Data.get()).second ? Item.NumBytes : 0;
	}
}

UObject* DuplicateObject(UObject* Source, UObject* Outer, FName Name)
{
	if (!Source)
	{
		return nullptr;
	}

	struct FCopy
	{
		UObject* Original;
		UObject* Copy;
	};
	std::vector<FCopy> Copies;
	std::unordered_map<FObjectHandle, FObjectHandle> Mapping;
	const auto AddCopy = [&](UObject* Original, UObject* CopyOuter, FName CopyName)
	{
		UObject* const Copy = NewObjectOfClass(Original->GetClass(), CopyOuter, CopyName);
		Mapping.emplace(Original->GetHandle(), Copy->GetHandle());
		Copies.push_back({Original, Copy});
		return Copy;
	};
	// Inner objects may be met before their own outer, whose copy must come first.
	const std::function<UObject*(UObject*)> CopyOf = [&](UObject* Original) -> UObject*
	{
		const auto Known = Mapping.find(Original->GetHandle());
		return Known != Mapping.end() ? ResolveObject(Known->second)
									  : AddCopy(Original, CopyOf(Original->GetOuter()), Original->GetFName());
	};

	AddCopy(Source, Outer, Name);
	std::vector<FObjectSnapshot> States;
	for (uint64 Index = 0; Index < Copies.size(); ++Index)
	{
		States.emplace_back(*Copies[Index].Original);
		for (const FObjectHandle& Reference : States.back().GetReferences())
		{
			UObject* const Referenced = ResolveObject(Reference);
			if (IsValid(Referenced) && Referenced->IsIn(Source))
			{
				CopyOf(Referenced);
			}
		}
	}
	for (uint64 Index = 0; Index < Copies.size(); ++Index)
	{
		States[Index].MapReferences(
			[&](FObjectHandle Reference)
			{
				const auto Known = Mapping.find(Reference);
				return Known == Mapping.end() ? Reference : Known->second;
			});
		States[Index].Restore(*Copies[Index].Copy);
	}
	for (const FCopy& Copy : Copies)
	{
		Copy.Copy->PostDuplicate();
	}
	return Copies.front().Copy;
}
