// SPDX-License-Identifier: MIT
#pragma once

#include "Core/ModuleManager.h"
#include "Core/String.h"

class UObject;

/// Makes assets out of assets.
class IAssetTools
{
public:
	virtual ~IAssetTools() = default;

	/// Gives a package name, and the asset name at its end, that no package has: `BasePackageName` and `Suffix`, with
	/// "_2", "_3" … behind them when that is taken. Takes constant time however many were given before.
	virtual void CreateUniqueAssetName(
		const FString& BasePackageName, const FString& Suffix, FString& OutPackageName, FString& OutAssetName) = 0;

	/// Copies `Original`, with all objects inside it, as the asset `AssetName` of a new package in the folder
	/// `PackagePath`. The package is dirty. Returns null, making nothing, without an original, with an empty or
	/// malformed name, and when the package has such an asset already.
	virtual UObject* DuplicateAsset(const FString& AssetName, const FString& PackagePath, UObject* Original) = 0;
};

/// The module "AssetTools".
class FAssetToolsModule : public IModuleInterface
{
public:
	/// The asset tools. Tests may put others in place; null puts the module's own back.
	IAssetTools& Get() const;
	void SetOverride(IAssetTools* InTools) { Override = InTools; }

private:
	IAssetTools* Override = nullptr;
};
