// SPDX-License-Identifier: MIT
#include "Engine/InstancedStaticMeshComponent.h"

#include "CoreUObject/Archive.h"

DEFINE_CLASS(UInstancedStaticMeshComponent)
DEFINE_CLASS(UHierarchicalInstancedStaticMeshComponent)

void UInstancedStaticMeshComponent::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << Instances;
}
