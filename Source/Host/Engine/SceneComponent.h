// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Transform.h"
#include "Engine/ActorComponent.h"

struct FHitResult;

/// Which transform an attachment keeps.
enum class EAttachmentRule : uint8
{
	KeepRelative, ///< the relative transform stays, the component moves in the world
	KeepWorld,    ///< the world transform stays, as far as a relative transform can express it
};

/// How a move is told to physics. The editor's moves are `None`.
enum class ETeleportType : uint8
{
	None,
	TeleportPhysics,
};

/// A component with a place: a transform relative to the component that it is attached to, or to the world.
///
/// The relative transform (quaternion, never rotator) is the state. The world transform is a cache of relative ·
/// parent's world, brought up to date whenever the component or an ancestor moves.
class USceneComponent : public UActorComponent
{
	DECLARE_CLASS(USceneComponent, UActorComponent)

public:
	const FTransform& GetComponentTransform() const { return ComponentToWorld; }
	const FTransform& GetRelativeTransform() const { return RelativeTransform; }
	FVector GetComponentLocation() const { return ComponentToWorld.GetTranslation(); }

	/// Moves the component, and with it everything attached. The caller records it for undo.
	void SetRelativeTransform(const FTransform& NewTransform);

	/// Stores the relative transform that puts the component at `NewTransform` in the world, and derives the world
	/// transform from it again. Under a parent with rotation and uneven scale the two may differ: such a product can
	/// have shear. There is no sweep in this host, so `OutHit` is left alone.
	void SetWorldTransform(const FTransform& NewTransform, bool bSweep = false, FHitResult* OutHit = nullptr,
		ETeleportType Teleport = ETeleportType::None);

	USceneComponent* GetAttachParent() const { return AttachParent; }
	const TArray<TObjectPtr<USceneComponent>>& GetAttachChildren() const { return AttachChildren; }

	/// How many attach parents are above the component: 0 for one that is attached to nothing.
	int32 GetAttachDepth() const;

	/// True when `Other` is above this component in the attachment tree.
	bool IsAttachedTo(const USceneComponent* Other) const;

	/// Attaches the component, recording both ends (and the end that it leaves). Returns false, changing nothing, when
	/// the parent is null, destroyed, the component itself, or below it.
	bool AttachToComponent(USceneComponent* Parent, EAttachmentRule Rule = EAttachmentRule::KeepRelative);

	/// Detaches the component from its parent, recording both ends. Does nothing without a parent.
	void DetachFromComponent(EAttachmentRule Rule = EAttachmentRule::KeepWorld);

	/// Derives the world transform of this component and of everything below it.
	void UpdateComponentToWorld();

	/// Derives the world transforms of `Components` and of everything below them, parents first, each once.
	static void UpdateWorldTransforms(const TArray<USceneComponent*>& Components);

	void Serialize(FArchive& Archive) override;
	void PostDuplicate() override;

private:
	FTransform RelativeTransform;
	FTransform ComponentToWorld;
	TObjectPtr<USceneComponent> AttachParent;
	TArray<TObjectPtr<USceneComponent>> AttachChildren;
};
