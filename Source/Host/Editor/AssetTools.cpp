// SPDX-License-Identifier: MIT
#include "Editor/AssetTools.h"

#include "CoreUObject/ObjectSnapshot.h"
#include "CoreUObject/Package.h"

#include <unordered_map>

IMPLEMENT_MODULE(FAssetToolsModule, AssetTools)

namespace
{
/// The asset tools of this host.
class FHostAssetTools final : public IAssetTools
{
public:
	void CreateUniqueAssetName(
		const FString& BasePackageName, const FString& Suffix, FString& OutPackageName, FString& OutAssetName) override
	{
		const FString Base = BasePackageName + Suffix;
		OutPackageName = Base;
		if (FindPackage(Base))
		{
			// Goes on from the number found last, so that the thousandth copy does not try those of all earlier ones.
			int32& Number = NextNumber[FName(Base)];
			// From the start again once the names before it are free, as after another scene was opened.
			Number = Number > 2 && FindPackage(Numbered(Base, Number - 1)) ? Number : 2;
			OutPackageName = Numbered(Base, Number);
			while (FindPackage(OutPackageName))
			{
				OutPackageName = Numbered(Base, ++Number);
			}
		}
		OutAssetName = FPackageName::GetShortName(OutPackageName);
	}

	UObject* DuplicateAsset(const FString& AssetName, const FString& PackagePath, UObject* Original) override
	{
		if (!IsValid(Original) || AssetName.IsEmpty() || AssetName.Contains(TEXT("/")) ||
			!PackagePath.StartsWith(TEXT("/")))
		{
			return nullptr;
		}
		const FString PackageName = PackagePath / AssetName;
		UPackage* const Package = CreatePackage(PackageName);
		if (Package->FindAsset(FName(AssetName)))
		{
			return nullptr;
		}
		UObject* const Copy = DuplicateObject(Original, Package, FName(AssetName));
		Package->AddAsset(Copy);
		Package->SetDirtyFlag(true);
		return Copy;
	}

private:
	static FString Numbered(const FString& Base, int32 Number) { return FString::Printf(TEXT("%s_%d"), *Base, Number); }

	std::unordered_map<FName, int32> NextNumber;
};
} // namespace

IAssetTools& FAssetToolsModule::Get() const
{
	static FHostAssetTools Tools;
	return Override ? *Override : Tools;
}
