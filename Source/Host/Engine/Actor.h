// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "CoreUObject/ObjectPtr.h"
#include "Engine/SceneComponent.h"

class UWorld;

/// Something placed in a world: a list of components, one of which, the root, gives it its place. Its outer is the
/// world.
class AActor : public UObject
{
	DECLARE_CLASS(AActor, UObject)

public:
	/// The name that users see. Falls back to the object's name while it is empty.
	FString GetActorLabel() const { return Label.IsEmpty() ? GetName() : Label; }
	void SetActorLabel(const FString& InLabel) { Label = InLabel; }

	UWorld* GetWorld() const;
	USceneComponent* GetRootComponent() const { return RootComponent; }
	void SetRootComponent(USceneComponent* Component) { RootComponent = Component; }

	/// The root component's world transform; the identity without a root.
	FTransform GetActorTransform() const;

	/// The live components, in the order in which they were added.
	TArray<UActorComponent*> GetComponents() const;

	/// Those of class `T` or of a class derived from it.
	template <class T>
	TArray<T*> GetComponentsOf() const
	{
		TArray<T*> Result;
		for (UActorComponent* Component : GetComponents())
		{
			if (T* const Typed = Cast<T>(Component))
			{
				Result.Add(Typed);
			}
		}
		return Result;
	}

	/// Adds a component of class `T`. The first scene component becomes the root, later ones are attached to it.
	/// Inside a transaction, undo takes the component away again.
	template <class T>
	T* AddComponent(FName Name = NAME_None, EComponentCreationMethod Method = EComponentCreationMethod::Native)
	{
		return static_cast<T*>(AddComponentOfClass(T::StaticClass(), Name, Method));
	}
	UActorComponent* AddComponentOfClass(UClass* ComponentClass, FName Name, EComponentCreationMethod Method);

	/// Told that an editor move of the actor's components is going on (`bFinished` false) or over (true).
	virtual void PostEditMove(bool bFinished);

	/// How many finished editor moves the actor was told of.
	int32 GetNumFinishedMoves() const { return NumFinishedMoves; }

	void Serialize(FArchive& Archive) override;

private:
	FString Label;
	TObjectPtr<USceneComponent> RootComponent;
	TArray<TObjectPtr<UActorComponent>> OwnedComponents;
	int32 NumFinishedMoves = 0;
};
