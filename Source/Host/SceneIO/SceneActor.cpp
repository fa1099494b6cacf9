// SPDX-License-Identifier: MIT
#include "SceneIO/SceneActor.h"

#include "CoreUObject/Archive.h"

DEFINE_CLASS(ASceneActor)

void ASceneActor::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << SceneId << SourceNode;
}
