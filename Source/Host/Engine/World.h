// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Delegate.h"
#include "Core/Transform.h"
#include "CoreUObject/ObjectPtr.h"

class AActor;

/// What a world is for.
enum class EWorldType : uint8
{
	Editor, ///< the level that is being edited
	Play,   ///< the copy in which a play session runs
};

/// A level: the actors in it, in order. A world is a root of collection from its creation to its destruction.
class UWorld : public UObject
{
	DECLARE_CLASS(UWorld, UObject)

public:
	/// Makes an empty world.
	static UWorld* Create(EWorldType Type, FName Name = NAME_None);

	/// Copies the world, actors and components included, for a play session. Assets are shared, not copied.
	UWorld* DuplicateForPlay() const;

	/// Destroys all actors and lets the world be collected. Not undoable.
	void Destroy();

	EWorldType GetWorldType() const { return Type; }

	/// The live actors, in order.
	TArray<AActor*> GetActors() const;

	/// Makes an actor of class `T`, with no component yet. Inside a transaction, undo takes it away again.
	template <class T>
	T* SpawnActor(FName Name = NAME_None)
	{
		return static_cast<T*>(SpawnActorOfClass(T::StaticClass(), Name));
	}
	AActor* SpawnActorOfClass(UClass* ActorClass, FName Name = NAME_None);

	/// Copies an actor with its components. What the original is attached to, the copy is attached to as well.
	AActor* DuplicateActor(AActor* Actor);

	/// Destroys an actor and its components. What was attached to them keeps its world place. Undoable inside a
	/// transaction.
	void DestroyActor(AActor* Actor);

	/// Told of every actor of any world that was spawned, destroyed or brought back.
	static TMulticastDelegate<void(UWorld*)>& OnActorListChanged();

	void Serialize(FArchive& Archive) override;
	void PostEditUndo() override;

private:
	EWorldType Type = EWorldType::Editor;
	TArray<TObjectPtr<AActor>> Actors;
};

/// Where a world stands in the editor.
struct FWorldContext
{
	UWorld* World() const { return ThisWorld; }
	void SetCurrentWorld(UWorld* InWorld) { ThisWorld = InWorld; }

	TObjectPtr<UWorld> ThisWorld;
};
