// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Name.h"
#include "Core/String.h"
#include "CoreUObject/Class.h"
#include "CoreUObject/ObjectHandle.h"

class FArchive;
class UPackage;

/// What an object is, as its maker says. Kept for the object's life.
enum EObjectFlags : uint32
{
	RF_NoFlags = 0,
	RF_ClassDefaultObject = 1u << 0, ///< the class-default object of its class, or inside one
	RF_Transient = 1u << 1,          ///< never part of what is saved
	RF_NeedLoad = 1u << 2,           ///< still being loaded: iteration leaves it out
};

/// The base of everything that is named, collected, duplicated and undone.
///
/// Objects are made by `NewObject` only. They live until a collection finds them unreachable; destroying one flags it
/// as garbage at once, and frees it at a later collection. A class lists its state in `Serialize`, once, for undo,
/// duplication and reference collection alike.
class UObject
{
public:
	static UClass* StaticClass();

	UObject();
	virtual ~UObject();
	UObject(const UObject&) = delete;
	UObject& operator=(const UObject&) = delete;

	UClass* GetClass() const { return ClassPrivate; }
	FName GetFName() const { return NamePrivate; }
	FString GetName() const { return NamePrivate.ToString(); }
	UObject* GetOuter() const { return OuterPrivate; }

	/// "/Folder/Package.Asset:Inner.Inner": the package, then the names of the outers, then the object's own.
	FString GetPathName() const;

	/// The package at the end of the outer chain (the object itself when it is a package), or null when there is none.
	UPackage* GetOutermost() const;

	/// The nearest outer, not the object itself, that is a `TOuter`, or null.
	template <class TOuter>
	TOuter* GetTypedOuter() const
	{
		return static_cast<TOuter*>(GetTypedOuter(TOuter::StaticClass()));
	}
	UObject* GetTypedOuter(const UClass* OuterClass) const;

	/// True when `Other` is somewhere in the outer chain of this object.
	bool IsIn(const UObject* Other) const;

	bool IsA(const UClass* Other) const { return ClassPrivate->IsChildOf(Other); }
	template <class T>
	bool IsA() const
	{
		return IsA(T::StaticClass());
	}

	bool HasAnyFlags(uint32 Mask) const { return (ObjectFlags & Mask) != 0; }
	void SetFlags(uint32 Mask) { ObjectFlags |= Mask; }
	void ClearFlags(uint32 Mask) { ObjectFlags &= ~Mask; }

	/// Renames the object and moves it to another outer (null: keeps its own). Neither is recorded for undo.
	virtual void Rename(FName NewName, UObject* NewOuter = nullptr);

	/// Keeps the object, and all that it references, from being collected, until `RemoveFromRoot`. Calls do not nest.
	void AddToRoot() { bRooted = true; }
	void RemoveFromRoot() { bRooted = false; }
	bool IsRooted() const { return bRooted; }

	/// Destroys the object as far as everyone else can see: weak references to it are stale, and iteration and
	/// `IsValid` leave it out. Clearing the flag (undoing the deletion) makes it valid again.
	void MarkAsGarbage() { bGarbage = true; }
	void ClearGarbage() { bGarbage = false; }
	bool IsGarbage() const { return bGarbage; }
	bool IsUnreachable() const { return bUnreachable; }

	/// Records the object in the open transaction before its first change there, and marks its package dirty.
	/// Returns true when a transaction recorded it, now or earlier.
	virtual bool Modify(bool bAlwaysMarkDirty = true);

	/// Marks the object's package as having unsaved changes. Returns false when the object is in no package, or in the
	/// transient one.
	bool MarkPackageDirty() const;

	/// Reads or writes every field that is the object's state. Derived data is no state.
	virtual void Serialize(FArchive& Archive);

	/// Follows an edit: rebuilds what is derived from the state and is now stale.
	virtual void PostEditChange() {}

	/// Drops what was derived from the state that an undo or redo has just replaced. Called before any notification.
	virtual void DropDerivedData() {}

	/// Follows an undo or redo that changed this object, once all objects of the transaction have their states.
	virtual void PostEditUndo() {}

	/// Follows the copying of this object from another one, once all its inner objects have their states too.
	virtual void PostDuplicate() {}

	/// The object's place in the global object array.
	FObjectHandle GetHandle() const;

private:
	friend class FObjectArray;
	friend class FGarbageCollector;
	friend UObject* NewObjectOfClass(UClass*, UObject*, FName, uint32);

	UClass* ClassPrivate;
	UObject* OuterPrivate;
	FName NamePrivate;
	uint32 ObjectFlags;
	int32 Slot = INDEX_NONE;
	int32 ClassIndex = INDEX_NONE;
	bool bGarbage = false;
	bool bUnreachable = false;
	bool bRooted = false;
};

/// Makes an object. Without a name it gets its class's name and a number that no unnamed object of the class had
/// before. Objects without an outer are put into the transient package, packages excepted.
UObject* NewObjectOfClass(UClass* Class, UObject* Outer, FName Name = NAME_None, uint32 Flags = RF_NoFlags);

template <class T>
T* NewObject(UObject* Outer = nullptr, FName Name = NAME_None, uint32 Flags = RF_NoFlags)
{
	return static_cast<T*>(NewObjectOfClass(T::StaticClass(), Outer, Name, Flags));
}

/// True for an object that is neither null nor destroyed nor found unreachable.
inline bool IsValid(const UObject* Object)
{
	return Object && !Object->IsGarbage() && !Object->IsUnreachable();
}

/// The object as a `T`, or null when it is null or none.
template <class T>
T* Cast(UObject* Object)
{
	return Object && Object->IsA(T::StaticClass()) ? static_cast<T*>(Object) : nullptr;
}
template <class T>
const T* Cast(const UObject* Object)
{
	return Object && Object->IsA(T::StaticClass()) ? static_cast<const T*>(Object) : nullptr;
}

/// The object as a `T`; anything else, null included, is a broken precondition.
template <class T>
T* CastChecked(UObject* Object)
{
	T* const Result = Cast<T>(Object);
	check(Result);
	return Result;
}
