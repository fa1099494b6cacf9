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
		// Listeners look at what was local to a test, and is gone.
		GEditor->OnPlaySession().Clear();
		GEditor->GetSelectedActors()->OnChanged().Clear();
		if (UTransBuffer* const Buffer = Cast<UTransBuffer>(GEditor->Trans.Get()))
		{
			Buffer->OnChanged().Clear();
			Buffer->OnUndo().Clear();
			Buffer->OnRedo().Clear();
		}
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
