// SPDX-License-Identifier: MIT
#include "SelectionQueries.h"

#include "Editor/EditorEngine.h"
#include "Engine/StaticMeshComponent.h"

UWorld* SelectionQueries::EditedWorld()
{
	return GEditor ? GEditor->GetEditorWorldContext().World() : nullptr;
}

TArray<AActor*> SelectionQueries::SelectedActors()
{
	TArray<AActor*> Actors;
	if (!GEditor)
	{
		return Actors;
	}
	for (UObject* Object : GEditor->GetSelectedActors()->GetSelectedObjects())
	{
		if (AActor* const Actor = Cast<AActor>(Object))
		{
			Actors.Add(Actor);
		}
	}
	return Actors;
}

void SelectionQueries::Select(const TArray<AActor*>& Actors)
{
	GEditor->SelectNone();
	for (AActor* Actor : Actors)
	{
		GEditor->SelectActor(Actor, true);
	}
	GEditor->UpdatePivotLocationForSelection();
	GEditor->RedrawLevelEditingViewports(false);
}

UStaticMesh* SelectionQueries::MeshOf(const AActor& Actor)
{
	const UStaticMeshComponent* const Component = Cast<UStaticMeshComponent>(Actor.GetRootComponent());
	return Component ? Component->GetStaticMesh() : nullptr;
}

AActor* SelectionQueries::ParentOf(const AActor& Actor)
{
	const USceneComponent* const Root = Actor.GetRootComponent();
	const USceneComponent* const Parent = Root ? Root->GetAttachParent() : nullptr;
	return IsValid(Parent) ? Parent->GetOwner() : nullptr;
}

TArray<AActor*> SelectionQueries::ChildrenOf(const AActor& Actor)
{
	TArray<AActor*> Children;
	const USceneComponent* const Root = Actor.GetRootComponent();
	if (!Root)
	{
		return Children;
	}
	for (const TObjectPtr<USceneComponent>& Child : Root->GetAttachChildren())
	{
		AActor* const Owner = IsValid(Child) ? Child->GetOwner() : nullptr;
		if (Owner && Owner != &Actor)
		{
			Children.Add(Owner);
		}
	}
	return Children;
}
