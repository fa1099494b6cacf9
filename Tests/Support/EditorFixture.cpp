// SPDX-License-Identifier: MIT
#include "Support/EditorFixture.h"

#include "CoreUObject/GarbageCollector.h"
#include "CoreUObject/ObjectIterator.h"
#include "CoreUObject/Package.h"

FEditorFixture::FEditorFixture()
{
	DestroyEditorAndAssets();
	UEditorEngine::Create();
}

FEditorFixture::~FEditorFixture()
{
	DestroyEditorAndAssets();
}

void DestroyEditorAndAssets()
{
	if (GEditor)
	{
		UEditorEngine::Destroy();
	}
	for (UPackage* Package : GetObjectsOf<UPackage>())
	{
		const TArray<TObjectPtr<UObject>> Assets = Package->GetAssets();
		for (const TObjectPtr<UObject>& Asset : Assets)
		{
			Package->RemoveAsset(Asset);
		}
	}
	CollectGarbage();
}
