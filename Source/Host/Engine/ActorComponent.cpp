// SPDX-License-Identifier: MIT
#include "Engine/ActorComponent.h"

#include "CoreUObject/Archive.h"
#include "Engine/Actor.h"
#include "Engine/World.h"

DEFINE_CLASS(UActorComponent)

AActor* UActorComponent::GetOwner() const
{
	return GetTypedOuter<AActor>();
}

UWorld* UActorComponent::GetWorld() const
{
	return GetTypedOuter<UWorld>();
}

void UActorComponent::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << CreationMethod;
}

void UActorComponent::PostEditUndo()
{
	Super::PostEditUndo();
	MarkRenderStateDirty();
}
