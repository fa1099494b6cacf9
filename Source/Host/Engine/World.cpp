// SPDX-License-Identifier: MIT
#include "Engine/World.h"

#include "CoreUObject/Archive.h"
#include "CoreUObject/ObjectSnapshot.h"
#include "CoreUObject/Transaction.h"
#include "Engine/Actor.h"
#include "Engine/SceneComponent.h"

DEFINE_CLASS(UWorld)

UWorld* UWorld::Create(EWorldType Type, FName Name)
{
	UWorld* const World = NewObject<UWorld>(nullptr, Name);
	World->Type = Type;
	World->AddToRoot();
	return World;
}

UWorld* UWorld::DuplicateForPlay() const
{
	UWorld* const Copy = DuplicateObject(const_cast<UWorld*>(this), GetOuter());
	Copy->Type = EWorldType::Play;
	Copy->AddToRoot();
	return Copy;
}

void UWorld::Destroy()
{
	for (AActor* Actor : GetActors())
	{
		for (UActorComponent* Component : Actor->GetComponents())
		{
			Component->MarkAsGarbage();
		}
		Actor->MarkAsGarbage();
	}
	RemoveFromRoot();
	MarkAsGarbage();
}

TArray<AActor*> UWorld::GetActors() const
{
	TArray<AActor*> Result;
	for (const TObjectPtr<AActor>& Actor : Actors)
	{
		if (IsValid(Actor))
		{
			Result.Add(Actor);
		}
	}
	return Result;
}

AActor* UWorld::SpawnActorOfClass(UClass* ActorClass, FName Name)
{
	check(ActorClass && ActorClass->IsChildOf(AActor::StaticClass()));
	Modify();
	AActor* const Actor = CastChecked<AActor>(NewObjectOfClass(ActorClass, this, Name));
	if (GUndo)
	{
		GUndo->SaveCreation(Actor);
	}
	Actors.Add(Actor);
	OnActorListChanged().Broadcast(this);
	return Actor;
}

AActor* UWorld::DuplicateActor(AActor* Actor)
{
	check(IsValid(Actor) && Actor->GetWorld() == this);
	Modify();
	AActor* const Copy = DuplicateObject(Actor, this);
	if (GUndo)
	{
		GUndo->SaveCreation(Copy);
		for (UActorComponent* Component : Copy->GetComponents())
		{
			GUndo->SaveCreation(Component);
		}
	}
	Actors.Add(Copy);
	OnActorListChanged().Broadcast(this);
	return Copy;
}

void UWorld::DestroyActor(AActor* Actor)
{
	if (!IsValid(Actor))
	{
		return;
	}
	Modify();
	Actor->Modify();
	for (UActorComponent* Component : Actor->GetComponents())
	{
		Component->Modify();
		if (USceneComponent* const SceneComponent = Cast<USceneComponent>(Component))
		{
			const TArray<TObjectPtr<USceneComponent>> Children = SceneComponent->GetAttachChildren();
			for (const TObjectPtr<USceneComponent>& Child : Children)
			{
				if (IsValid(Child) && Child->GetOwner() != Actor)
				{
					Child->DetachFromComponent(EAttachmentRule::KeepWorld);
				}
			}
			const USceneComponent* const Parent = SceneComponent->GetAttachParent();
			if (Parent && Parent->GetOwner() != Actor)
			{
				SceneComponent->DetachFromComponent(EAttachmentRule::KeepWorld);
			}
		}
		Component->MarkAsGarbage();
	}
	Actor->MarkAsGarbage();
	Actors.RemoveSingle(Actor);
	OnActorListChanged().Broadcast(this);
}

TMulticastDelegate<void(UWorld*)>& UWorld::OnActorListChanged()
{
	static auto* const Event = new TMulticastDelegate<void(UWorld*)>();
	return *Event;
}

void UWorld::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << Type << Actors;
}

void UWorld::PostEditUndo()
{
	Super::PostEditUndo();
	OnActorListChanged().Broadcast(this);
}
