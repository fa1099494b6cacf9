// SPDX-License-Identifier: MIT
#include "CoreUObject/Package.h"

#include "CoreUObject/Archive.h"

#include <unordered_map>

DEFINE_CLASS(UPackage)

namespace
{
std::unordered_map<FName, UPackage*>& Packages()
{
	static auto* const Map = new std::unordered_map<FName, UPackage*>();
	return *Map;
}
} // namespace

UPackage::~UPackage()
{
	Unregister();
}

bool UPackage::Unregister()
{
	const auto Found = Packages().find(GetFName());
	const bool bRegistered = Found != Packages().end() && Found->second == this;
	if (bRegistered)
	{
		Packages().erase(Found);
	}
	return bRegistered;
}

void UPackage::Rename(FName NewName, UObject* NewOuter)
{
	check(!NewOuter);
	const bool bWasRegistered = Unregister();
	Super::Rename(NewName);
	if (bWasRegistered)
	{
		Packages()[NewName] = this;
	}
}

void UPackage::SetDirtyFlag(bool bInDirty)
{
	if (bDirty != bInDirty)
	{
		bDirty = bInDirty;
		OnDirtyChanged().Broadcast(this);
	}
}

void UPackage::AddAsset(UObject* Asset)
{
	check(Asset && Asset->GetOuter() == this);
	Assets.AddUnique(Asset);
}

void UPackage::RemoveAsset(UObject* Asset)
{
	Assets.RemoveSingle(Asset);
}

UObject* UPackage::FindAsset(FName AssetName) const
{
	for (const TObjectPtr<UObject>& Asset : Assets)
	{
		if (IsValid(Asset) && Asset->GetFName() == AssetName)
		{
			return Asset;
		}
	}
	return nullptr;
}

void UPackage::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << Assets;
}

TMulticastDelegate<void(UPackage*)>& UPackage::OnDirtyChanged()
{
	static auto* const Event = new TMulticastDelegate<void(UPackage*)>();
	return *Event;
}

UPackage* CreatePackage(const FString& Name)
{
	UPackage* Package = FindPackage(Name);
	if (!Package)
	{
		Package = NewObject<UPackage>(nullptr, FName(Name));
		Packages()[FName(Name)] = Package;
	}
	return Package;
}

UPackage* FindPackage(const FString& Name)
{
	const auto Found = Packages().find(FName(Name));
	return Found != Packages().end() && IsValid(Found->second) ? Found->second : nullptr;
}

UPackage* GetTransientPackage()
{
	static UPackage* const Package = []()
	{
		UPackage* const Made = NewObject<UPackage>(nullptr, FName(TEXT("/Transient")), RF_Transient);
		Made->AddToRoot();
		Packages()[Made->GetFName()] = Made;
		return Made;
	}();
	return Package;
}

namespace
{
int32 LastSlash(const FString& PackageName)
{
	int32 Slash = INDEX_NONE;
	PackageName.FindLastChar(TEXT('/'), Slash);
	return Slash;
}
} // namespace

FString FPackageName::GetLongPackagePath(const FString& PackageName)
{
	const int32 Slash = LastSlash(PackageName);
	return Slash == INDEX_NONE ? FString() : PackageName.Left(Slash);
}

FString FPackageName::GetShortName(const FString& PackageName)
{
	return PackageName.Mid(LastSlash(PackageName) + 1);
}
