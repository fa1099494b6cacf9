// SPDX-License-Identifier: MIT
#pragma once

#include "CoreUObject/ObjectPtr.h"

class AActor;
class UWorld;

/// How a component came to its actor.
enum class EComponentCreationMethod : uint8
{
	Native,                   ///< made with the actor
	SimpleConstructionScript, ///< made by the component tree of a construction script
	UserConstructionScript,   ///< made by the code of a construction script
	Instance,                 ///< added to this one actor by hand
};

/// A part of an actor. Its outer is the actor.
class UActorComponent : public UObject
{
	DECLARE_CLASS(UActorComponent, UObject)

public:
	EComponentCreationMethod CreationMethod = EComponentCreationMethod::Native;

	/// The actor that the component belongs to, or null.
	AActor* GetOwner() const;

	/// The world that the component is in, or null.
	UWorld* GetWorld() const;

	/// Tells whoever draws the component that what it shows has changed.
	void MarkRenderStateDirty() { ++RenderStateRevision; }

	/// Grows with every `MarkRenderStateDirty`.
	uint32 GetRenderStateRevision() const { return RenderStateRevision; }

	void Serialize(FArchive& Archive) override;
	void PostEditUndo() override;

private:
	uint32 RenderStateRevision = 0;
};
