// SPDX-License-Identifier: MIT
#include "CoreUObject/GarbageCollector.h"

#include "CoreUObject/Archive.h"
#include "CoreUObject/ObjectArray.h"
#include "CoreUObject/Package.h"

#include <algorithm>
#include <vector>

namespace
{
int32 GNumCollectionLocks = 0;

std::vector<FReferenceSource*>& ReferenceSources()
{
	static auto* const Sources = new std::vector<FReferenceSource*>();
	return *Sources;
}
} // namespace

/// One collection: marks from the roots, then frees what was not reached.
class FGarbageCollector final : public FArchive
{
public:
	FGarbageCollector()
		: FArchive(EArchiveMode::CollectingReferences)
		, Array(FObjectArray::Get())
	{
	}

	void Run()
	{
		for (const FObjectArray::FSlot& Slot : Array.Slots)
		{
			if (Slot.Object)
			{
				Slot.Object->bUnreachable = true;
			}
		}
		MarkRoots();
		MarkSources();
		Sweep();
	}

	void SerializeBytes(void*, uint64) override {}
	void SerializeShared(std::shared_ptr<const void>&, uint64) override {}
	void SerializeObject(FObjectHandle& Handle) override { Mark(Array.Resolve(Handle), bFromGarbage); }

private:
	struct FSourceCollector final : FReferenceCollector
	{
		FSourceCollector(FGarbageCollector& InOwner, bool bInKeepsGarbage)
			: Owner(InOwner)
			, bKeepsGarbage(bInKeepsGarbage)
		{
		}
		void Keep(FObjectHandle Handle) const override { Owner.Mark(Owner.Array.Resolve(Handle), bKeepsGarbage); }

		FGarbageCollector& Owner;
		bool bKeepsGarbage;
	};

	void MarkRoots()
	{
		for (const FObjectArray::FSlot& Slot : Array.Slots)
		{
			UObject* const Object = Slot.Object;
			if (!Object)
			{
				continue;
			}
			const UPackage* const Package = Cast<UPackage>(Object);
			const bool bHoldsAssets =
				Package && Package->GetAssets().FindByPredicate([](UObject* Asset) { return IsAlive(Asset); });
			if (Object->bRooted || Object->HasAnyFlags(RF_ClassDefaultObject) || bHoldsAssets)
			{
				Mark(Object, true);
			}
		}
		Trace();
	}

	void MarkSources()
	{
		for (FReferenceSource* Source : ReferenceSources())
		{
			Source->AddReferences(FSourceCollector(*this, Source->KeepsGarbage()));
		}
		Trace();
	}

	static bool IsAlive(const UObject* Object) { return Object && !Object->IsGarbage(); }

	// Live objects do not keep destroyed ones; the undo history does, and a destroyed object that it keeps keeps its
	// own.
	void Mark(UObject* Object, bool bKeepsGarbage)
	{
		if (Object && Object->bUnreachable && (bKeepsGarbage || !Object->bGarbage))
		{
			Object->bUnreachable = false;
			Pending.push_back(Object);
		}
	}

	void Trace()
	{
		while (!Pending.empty())
		{
			UObject* const Object = Pending.back();
			Pending.pop_back();
			bFromGarbage = Object->bGarbage;
			Mark(Object->OuterPrivate, true);
			Object->Serialize(*this);
		}
	}

	void Sweep()
	{
		std::vector<UObject*> Unreachable;
		for (const FObjectArray::FSlot& Slot : Array.Slots)
		{
			if (Slot.Object && Slot.Object->bUnreachable)
			{
				Unreachable.push_back(Slot.Object);
			}
		}
		for (UObject* Object : Unreachable)
		{
			delete Object;
		}
	}

	FObjectArray& Array;
	std::vector<UObject*> Pending;
	bool bFromGarbage = false;
};

FReferenceSource::FReferenceSource()
{
	ReferenceSources().push_back(this);
}

FReferenceSource::~FReferenceSource()
{
	std::erase(ReferenceSources(), this);
}

bool CollectGarbage()
{
	if (FCollectionLock::IsLocked())
	{
		return false;
	}
	FGarbageCollector().Run();
	return true;
}

FCollectionLock::FCollectionLock()
{
	++GNumCollectionLocks;
}

FCollectionLock::~FCollectionLock()
{
	--GNumCollectionLocks;
}

bool FCollectionLock::IsLocked()
{
	return GNumCollectionLocks > 0;
}
