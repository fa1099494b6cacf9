// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Name.h"
#include "Core/Types.h"

#include <vector>

class UObject;

/// Describes one class of objects: its name, its single base class, how an instance is made, and where its instances
/// are. Descriptions are made once and live as long as the process.
class UClass
{
public:
	using FFactory = UObject* (*)();

	/// Registers a class. `Super` is null for the root class only.
	UClass(const TCHAR* InName, UClass* InSuper, FFactory InFactory);
	UClass(const UClass&) = delete;
	UClass& operator=(const UClass&) = delete;

	FName GetFName() const { return Name; }
	UClass* GetSuperClass() const { return Super; }

	/// True when this class is `Other` or derives from it. Takes constant time. False for null.
	bool IsChildOf(const UClass* Other) const;

	/// The class-default object, made on first use. It is an instance like any other, flagged `RF_ClassDefaultObject`.
	UObject* GetDefaultObject();

	/// The instances of exactly this class, the class-default object included, in no particular order.
	const std::vector<UObject*>& GetInstances() const { return Instances; }

	/// The classes that derive from this one directly.
	const std::vector<UClass*>& GetDerivedClasses() const { return Derived; }

	/// The registered class of that name, or null.
	static UClass* Find(FName Name);

private:
	friend class FObjectArray;
	friend class UObject;
	friend UObject* NewObjectOfClass(UClass*, UObject*, FName, uint32);

	FName Name;
	UClass* Super;
	FFactory Factory;
	UObject* DefaultObject = nullptr;
	uint32 NextNumber = 0;
	std::vector<const UClass*> Ancestors;
	std::vector<UClass*> Derived;
	std::vector<UObject*> Instances;
};

/// Stands in the body of every object class: names the base as `Super` and declares the class description.
#define DECLARE_CLASS(TClass, TSuper) \
public:                               \
	using Super = TSuper;             \
	static UClass* StaticClass();     \
                                      \
private:

/// Stands in one source of the library that owns the class. The class needs a default constructor.
#define DEFINE_CLASS(TClass)                                                                                        \
	UClass* TClass::StaticClass()                                                                                   \
	{                                                                                                               \
		static UClass* const Class =                                                                                \
			new UClass(&TEXT(#TClass)[1], TClass::Super::StaticClass(), []() -> UObject* { return new TClass(); }); \
		return Class;                                                                                               \
	}                                                                                                               \
	namespace                                                                                                       \
	{                                                                                                               \
	[[maybe_unused]] UClass* const G##TClass##Class = TClass::StaticClass();                                        \
	}
