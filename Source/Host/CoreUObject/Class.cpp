// SPDX-License-Identifier: MIT
#include "CoreUObject/Class.h"

#include "CoreUObject/Object.h"

#include <unordered_map>

namespace
{
// Classes register while libraries are being loaded, in no known order, so the registry makes itself on first use.
std::unordered_map<FName, UClass*>& Registry()
{
	static auto* const Classes = new std::unordered_map<FName, UClass*>();
	return *Classes;
}
} // namespace

UClass::UClass(const TCHAR* InName, UClass* InSuper, FFactory InFactory)
	: Name(InName)
	, Super(InSuper)
	, Factory(InFactory)
{
	if (Super)
	{
		Ancestors = Super->Ancestors;
		Super->Derived.push_back(this);
	}
	Ancestors.push_back(this);
	Registry().emplace(Name, this);
}

bool UClass::IsChildOf(const UClass* Other) const
{
	return Other && Other->Ancestors.size() <= Ancestors.size() && Ancestors[Other->Ancestors.size() - 1] == Other;
}

UObject* UClass::GetDefaultObject()
{
	if (!DefaultObject)
	{
		const FString DefaultName = FString(TEXT("Default__")) + Name.ToString();
		DefaultObject = NewObjectOfClass(this, nullptr, FName(DefaultName), RF_ClassDefaultObject);
	}
	return DefaultObject;
}

UClass* UClass::Find(FName InName)
{
	const auto Found = Registry().find(InName);
	return Found == Registry().end() ? nullptr : Found->second;
}
