// SPDX-License-Identifier: MIT
#include "Engine/Actor.h"

#include "CoreUObject/Archive.h"
#include "CoreUObject/Transaction.h"
#include "Engine/SceneComponent.h"
#include "Engine/World.h"

DEFINE_CLASS(AActor)

UWorld* AActor::GetWorld() const
{
	return GetTypedOuter<UWorld>();
}

FTransform AActor::GetActorTransform() const
{
	return RootComponent ? RootComponent->GetComponentTransform() : FTransform();
}

TArray<UActorComponent*> AActor::GetComponents() const
{
	TArray<UActorComponent*> Result;
	for (const TObjectPtr<UActorComponent>& Component : OwnedComponents)
	{
		if (IsValid(Component))
		{
			Result.Add(Component);
		}
	}
	return Result;
}

UActorComponent* AActor::AddComponentOfClass(UClass* ComponentClass, FName Name, EComponentCreationMethod Method)
{
	check(ComponentClass && ComponentClass->IsChildOf(UActorComponent::StaticClass()));
	Modify();
	UActorComponent* const Component = CastChecked<UActorComponent>(NewObjectOfClass(ComponentClass, this, Name));
	Component->CreationMethod = Method;
	if (GUndo)
	{
		GUndo->SaveCreation(Component);
	}
	OwnedComponents.Add(Component);
	if (USceneComponent* const SceneComponent = Cast<USceneComponent>(Component))
	{
		if (RootComponent)
		{
			SceneComponent->AttachToComponent(RootComponent);
		}
		else
		{
			RootComponent = SceneComponent;
		}
	}
	return Component;
}

void AActor::PostEditMove(bool bFinished)
{
	NumFinishedMoves += bFinished ? 1 : 0;
}

void AActor::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << Label << RootComponent << OwnedComponents;
}
