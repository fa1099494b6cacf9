// SPDX-License-Identifier: MIT
#include "Engine/SceneComponent.h"

#include "CoreUObject/Archive.h"

#include <unordered_set>

DEFINE_CLASS(USceneComponent)

void USceneComponent::SetRelativeTransform(const FTransform& NewTransform)
{
	RelativeTransform = NewTransform;
	UpdateComponentToWorld();
}

void USceneComponent::SetWorldTransform(const FTransform& NewTransform, bool, FHitResult*, ETeleportType)
{
	const USceneComponent* const Parent = AttachParent;
	SetRelativeTransform(Parent ? NewTransform.GetRelativeTransform(Parent->ComponentToWorld) : NewTransform);
}

int32 USceneComponent::GetAttachDepth() const
{
	int32 Depth = 0;
	for (const USceneComponent* Parent = AttachParent; Parent; Parent = Parent->AttachParent)
	{
		++Depth;
	}
	return Depth;
}

bool USceneComponent::IsAttachedTo(const USceneComponent* Other) const
{
	const USceneComponent* Parent = AttachParent;
	while (Parent && Parent != Other)
	{
		Parent = Parent->AttachParent;
	}
	return Parent != nullptr;
}

bool USceneComponent::AttachToComponent(USceneComponent* Parent, EAttachmentRule Rule)
{
	// Only what has children can be above its new parent: a long chain that grows at its end is not walked at every
	// step.
	if (!IsValid(Parent) || Parent == this || (!AttachChildren.IsEmpty() && Parent->IsAttachedTo(this)))
	{
		return false;
	}
	const FTransform OldWorld = ComponentToWorld;
	if (USceneComponent* const OldParent = AttachParent)
	{
		OldParent->Modify();
		OldParent->AttachChildren.RemoveSingle(this);
	}
	Modify();
	Parent->Modify();
	AttachParent = Parent;
	Parent->AttachChildren.Add(this);
	if (Rule == EAttachmentRule::KeepWorld)
	{
		SetWorldTransform(OldWorld);
	}
	else
	{
		UpdateComponentToWorld();
	}
	return true;
}

void USceneComponent::DetachFromComponent(EAttachmentRule Rule)
{
	USceneComponent* const Parent = AttachParent;
	if (!Parent)
	{
		return;
	}
	Modify();
	Parent->Modify();
	Parent->AttachChildren.RemoveSingle(this);
	AttachParent = nullptr;
	SetRelativeTransform(Rule == EAttachmentRule::KeepWorld ? ComponentToWorld : RelativeTransform);
}

void USceneComponent::UpdateComponentToWorld()
{
	// A loop, not a recursion: scenes may nest as deep as they like.
	TArray<USceneComponent*> Pending;
	Pending.Add(this);
	while (!Pending.IsEmpty())
	{
		USceneComponent* const Component = Pending.Pop();
		const USceneComponent* const Parent = Component->AttachParent;
		Component->ComponentToWorld =
			Parent ? Component->RelativeTransform * Parent->ComponentToWorld : Component->RelativeTransform;
		for (const TObjectPtr<USceneComponent>& Child : Component->AttachChildren)
		{
			if (Child)
			{
				Pending.Add(Child);
			}
		}
	}
}

void USceneComponent::UpdateWorldTransforms(const TArray<USceneComponent*>& Components)
{
	const std::unordered_set<const USceneComponent*> All(Components.begin(), Components.end());
	const auto HasListedAncestor = [&](const USceneComponent* Component)
	{
		const USceneComponent* Parent = Component->AttachParent;
		while (Parent && !All.contains(Parent))
		{
			Parent = Parent->AttachParent;
		}
		return Parent != nullptr;
	};
	for (USceneComponent* Component : Components)
	{
		if (!HasListedAncestor(Component))
		{
			Component->UpdateComponentToWorld();
		}
	}
}

void USceneComponent::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << RelativeTransform << AttachParent << AttachChildren;
}

void USceneComponent::PostDuplicate()
{
	Super::PostDuplicate();
	// Children that were not copied along stay with the original; a parent that was not copied gains a child.
	TArray<TObjectPtr<USceneComponent>> OwnChildren;
	for (const TObjectPtr<USceneComponent>& Child : AttachChildren)
	{
		if (Child && Child->AttachParent == this)
		{
			OwnChildren.Add(Child);
		}
	}
	AttachChildren = OwnChildren;
	USceneComponent* const Parent = AttachParent;
	if (Parent && Parent->AttachChildren.Contains(this))
	{
		// The parent was copied too, and the world transforms are derived from the top of what was copied.
		return;
	}
	if (Parent)
	{
		Parent->Modify();
		Parent->AttachChildren.Add(this);
	}
	UpdateComponentToWorld();
}
