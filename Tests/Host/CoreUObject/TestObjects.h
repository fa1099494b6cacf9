// SPDX-License-Identifier: MIT
#pragma once

#include "CoreUObject/Archive.h"
#include "CoreUObject/GarbageCollector.h"
#include "CoreUObject/Object.h"
#include "CoreUObject/ObjectArray.h"
#include "CoreUObject/ObjectPtr.h"

#include <gtest/gtest.h>

#include <utility>

/// Large immutable data, as meshes have them: shared, never copied.
struct FTestBlob
{
	uint64 NumBytes = 0;
	uint64 MemoryBytes() const { return NumBytes; }
};

/// How much a door is open: an enumeration as object state.
enum class ETestDoor : uint8
{
	Shut,
	Ajar,
	Open,
};

/// An object with one field of every kind that archives know.
class UTestNode : public UObject
{
	DECLARE_CLASS(UTestNode, UObject)

public:
	~UTestNode() override { ++NumFreed; }

	int32 Number = 0;
	double Value = 0.0;
	bool bFlag = false;
	ETestDoor Door = ETestDoor::Shut;
	FName Tag;
	FString Text;
	FVector Place;
	FTransform Pose;
	FBox Bounds;
	TArray<int32> Numbers;
	TObjectPtr<UTestNode> Next;
	TArray<TObjectPtr<UObject>> Links;
	TSharedPtr<const FTestBlob> Blob;

	/// What is derived from the state, and so is no part of it.
	int32 NumPostDuplicates = 0;

	void Link(UObject* Other) { Links.Add(Other); }

	void Serialize(FArchive& Archive) override;
	void PostDuplicate() override { ++NumPostDuplicates; }

	/// How many nodes were freed by the process.
	static inline int32 NumFreed = 0;
};

class UTestLeaf : public UTestNode
{
	DECLARE_CLASS(UTestLeaf, UTestNode)
};

class UTestOther : public UObject
{
	DECLARE_CLASS(UTestOther, UObject)
};

/// Makes inner objects in its constructor.
class UTestMaker : public UObject
{
	DECLARE_CLASS(UTestMaker, UObject)

public:
	UTestMaker();
	TObjectPtr<UTestNode> Part;
	void Serialize(FArchive& Archive) override;
};

/// A reference source that keeps what it is told to.
class FTestSource final : public FReferenceSource
{
public:
	explicit FTestSource(bool bInKeepsGarbage)
		: bKeepsGarbage(bInKeepsGarbage)
	{
	}

	void AddReferences(const FReferenceCollector& Collector) override
	{
		for (const FObjectHandle& Handle : Kept)
		{
			Collector.Keep(Handle);
		}
	}
	bool KeepsGarbage() const override { return bKeepsGarbage; }

	void Keep(const UObject* Object) { Kept.push_back(Object->GetHandle()); }

private:
	std::vector<FObjectHandle> Kept;
	bool bKeepsGarbage;
};

/// Keeps one object for the length of a test, and lets go of it however the test ends.
template <class T>
class TRooted
{
public:
	explicit TRooted(T* InObject)
		: Object(InObject)
	{
		Object->AddToRoot();
	}
	~TRooted()
	{
		if (UObject* const Rooted = Object.Get())
		{
			Rooted->RemoveFromRoot();
		}
	}
	TRooted(const TRooted&) = delete;
	TRooted& operator=(const TRooted&) = delete;

	T* Get() const { return Object.Get(); }
	T* operator->() const { return Object.Get(); }
	operator T*() const { return Object.Get(); }

private:
	TObjectPtr<T> Object;
};

/// Starts and ends every case with nothing left to collect.
class FObjectTest : public testing::Test
{
protected:
	FObjectTest() { CollectGarbage(); }
	~FObjectTest() override { CollectGarbage(); }
};
