// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Types.h"
#include "CoreUObject/ObjectHandle.h"

/// Something outside the object system that keeps objects alive. It is asked at every collection while it exists.
class FReferenceSource
{
public:
	FReferenceSource();
	virtual ~FReferenceSource();
	FReferenceSource(const FReferenceSource&) = delete;
	FReferenceSource& operator=(const FReferenceSource&) = delete;

	/// Names every object to keep by calling `Keep`.
	virtual void AddReferences(const class FReferenceCollector& Collector) = 0;

	/// True when destroyed objects are kept too, as an undo history needs. Other sources, and live objects, do not keep
	/// them.
	virtual bool KeepsGarbage() const { return false; }
};

/// Takes the references of an `FReferenceSource`.
class FReferenceCollector
{
public:
	virtual ~FReferenceCollector() = default;
	virtual void Keep(FObjectHandle Handle) const = 0;
};

/// Frees every object that cannot be reached from a root: rooted objects, packages with assets, class-default objects
/// and reference sources. Does nothing and returns false while a `FCollectionLock` exists.
bool CollectGarbage();

/// While one exists nothing is collected: commands, transactions, slow tasks and modal dialogs hold one.
class FCollectionLock
{
public:
	FCollectionLock();
	~FCollectionLock();
	FCollectionLock(const FCollectionLock&) = delete;
	FCollectionLock& operator=(const FCollectionLock&) = delete;

	static bool IsLocked();
};
