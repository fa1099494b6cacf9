// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Delegate.h"
#include "CoreUObject/ObjectPtr.h"

/// A file-to-be: the outermost object of the assets that one file holds, named by its path, "/Folder/Name".
///
/// A package with assets is a root of collection: it keeps them, and they keep what they reference.
class UPackage : public UObject
{
	DECLARE_CLASS(UPackage, UObject)

public:
	~UPackage() override;

	/// The package is found by its new name from now on, and no longer by the old one. Packages have no outer.
	void Rename(FName NewName, UObject* NewOuter = nullptr) override;

	/// Whether the package has changes that were not saved.
	bool IsDirty() const { return bDirty; }
	void SetDirtyFlag(bool bInDirty);

	/// Enters an object, whose outer this package is, as an asset of the package.
	void AddAsset(UObject* Asset);
	void RemoveAsset(UObject* Asset);
	const TArray<TObjectPtr<UObject>>& GetAssets() const { return Assets; }

	/// The live asset of that name, or null.
	UObject* FindAsset(FName AssetName) const;

	void Serialize(FArchive& Archive) override;

	/// Told of every package whose dirty flag changed.
	static TMulticastDelegate<void(UPackage*)>& OnDirtyChanged();

private:
	bool Unregister();

	bool bDirty = false;
	TArray<TObjectPtr<UObject>> Assets;
};

/// The package of that name, made when there is none.
UPackage* CreatePackage(const FString& Name);

/// The package of that name, or null.
UPackage* FindPackage(const FString& Name);

/// The package of objects that are never saved. It never becomes dirty and keeps nothing alive.
UPackage* GetTransientPackage();

/// Facts about package names.
struct FPackageName
{
	/// The folder that holds the package: everything before the last "/" ("/Scene/Yard" for "/Scene/Yard/Rock").
	static FString GetLongPackagePath(const FString& PackageName);

	/// The package's own name: everything behind the last "/".
	static FString GetShortName(const FString& PackageName);
};
