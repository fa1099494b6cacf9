// SPDX-License-Identifier: MIT
#include "Engine/StaticMeshComponent.h"

#include "CoreUObject/Archive.h"
#include "Engine/StaticMesh.h"

DEFINE_CLASS(UStaticMeshComponent)

UStaticMesh* UStaticMeshComponent::GetStaticMesh() const
{
	return StaticMesh;
}

bool UStaticMeshComponent::SetStaticMesh(UStaticMesh* NewMesh)
{
	if (StaticMesh == NewMesh)
	{
		return false;
	}
	StaticMesh = NewMesh;
	MarkRenderStateDirty();
	return true;
}

void UStaticMeshComponent::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << StaticMesh;
}
