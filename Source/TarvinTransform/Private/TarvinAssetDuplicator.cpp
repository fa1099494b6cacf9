// SPDX-License-Identifier: MIT
#include "TarvinAssetDuplicator.h"

#include "Platform/Core.h"
#include "Platform/CoreUObject.h"
#include "Platform/Editor.h"
#include "Platform/Engine.h"

UStaticMesh* FTarvinAssetDuplicator::Duplicate(UStaticMesh* Source)
{
	if (!Source)
	{
		return nullptr;
	}
	const UPackage* const Package = Source->GetOutermost();
	if (!Package || Package == GetTransientPackage())
	{
		return DuplicateObject(Source, GetTransientPackage());
	}
	IAssetTools& AssetTools = FModuleManager::Get().LoadModuleChecked<FAssetToolsModule>(TEXT("AssetTools")).Get();
	const FString Folder = FPackageName::GetLongPackagePath(Package->GetName());
	FString PackageName;
	FString AssetName;
	AssetTools.CreateUniqueAssetName(Folder / Source->GetName() + TEXT("_Baked"), FString(), PackageName, AssetName);
	return Cast<UStaticMesh>(AssetTools.DuplicateAsset(AssetName, Folder, Source));
}
