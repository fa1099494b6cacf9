// SPDX-License-Identifier: MIT
#include "CoreUObject/Object.h"

#include "CoreUObject/ObjectArray.h"
#include "CoreUObject/Package.h"
#include "CoreUObject/Transaction.h"

#include <string>

ITransaction* GUndo = nullptr;

namespace
{
// What the constructor of `UObject` picks up: classes have default constructors only.
struct FPendingObject
{
	UClass* Class = nullptr;
	UObject* Outer = nullptr;
	FName Name;
	uint32 Flags = RF_NoFlags;
};

FPendingObject GPendingObject;
} // namespace

UClass* UObject::StaticClass()
{
	static UClass* const Class = new UClass(TEXT("Object"), nullptr, []() -> UObject* { return new UObject(); });
	return Class;
}

UObject::UObject()
	: ClassPrivate(GPendingObject.Class)
	, OuterPrivate(GPendingObject.Outer)
	, NamePrivate(GPendingObject.Name)
	, ObjectFlags(GPendingObject.Flags)
{
	checkf(ClassPrivate, TEXT("objects are made by NewObject"));
	GPendingObject = {};
	FObjectArray::Get().Add(this);
}

UObject::~UObject()
{
	FObjectArray::Get().Remove(this);
}

FString UObject::GetPathName() const
{
	if (!OuterPrivate)
	{
		return GetName();
	}
	// A subobject of an asset is set off from it by a colon, all other steps by a dot.
	const bool bIsSubobject =
		OuterPrivate->OuterPrivate && OuterPrivate->OuterPrivate->IsA<UPackage>() && !OuterPrivate->IsA<UPackage>();
	return OuterPrivate->GetPathName() + (bIsSubobject ? TEXT(":") : TEXT(".")) + GetName();
}

UPackage* UObject::GetOutermost() const
{
	const UObject* Top = this;
	while (Top->OuterPrivate)
	{
		Top = Top->OuterPrivate;
	}
	return Cast<UPackage>(const_cast<UObject*>(Top));
}

UObject* UObject::GetTypedOuter(const UClass* OuterClass) const
{
	UObject* Current = OuterPrivate;
	while (Current && !Current->IsA(OuterClass))
	{
		Current = Current->OuterPrivate;
	}
	return Current;
}

bool UObject::IsIn(const UObject* Other) const
{
	const UObject* Current = OuterPrivate;
	while (Current && Current != Other)
	{
		Current = Current->OuterPrivate;
	}
	return Current != nullptr;
}

void UObject::Rename(FName NewName, UObject* NewOuter)
{
	NamePrivate = NewName;
	OuterPrivate = NewOuter ? NewOuter : OuterPrivate;
}

bool UObject::Modify(bool bAlwaysMarkDirty)
{
	const bool bRecords = GUndo && !HasAnyFlags(RF_ClassDefaultObject);
	if (bRecords)
	{
		GUndo->SaveObject(this);
	}
	if (bAlwaysMarkDirty || bRecords)
	{
		MarkPackageDirty();
	}
	return bRecords;
}

bool UObject::MarkPackageDirty() const
{
	UPackage* const Package = GetOutermost();
	if (!Package || Package == GetTransientPackage())
	{
		return false;
	}
	Package->SetDirtyFlag(true);
	return true;
}

void UObject::Serialize(FArchive&) {}

FObjectHandle UObject::GetHandle() const
{
	return {Slot, FObjectArray::Get().Slots[uint32(Slot)].Serial};
}

UObject* NewObjectOfClass(UClass* Class, UObject* Outer, FName Name, uint32 Flags)
{
	check(Class);
	if (!(Flags & RF_ClassDefaultObject))
	{
		Class->GetDefaultObject();
	}
	if (!Outer && !Class->IsChildOf(UPackage::StaticClass()))
	{
		Outer = GetTransientPackage();
	}
	if (Outer && Outer->HasAnyFlags(RF_ClassDefaultObject))
	{
		// Parts that a class makes in its constructor: those of the class-default object are templates like itself.
		Flags |= RF_ClassDefaultObject;
	}
	if (Name.IsNone())
	{
		Name = FName(Class->Name.ToString() + TEXT("_") + FString::FromInt(int32(Class->NextNumber++)));
	}
	GPendingObject = {Class, Outer, Name, Flags};
	return Class->Factory();
}
