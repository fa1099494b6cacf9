// SPDX-License-Identifier: MIT
#include "Support/TestActors.h"

#include "Support/TestMeshes.h"

UStaticMeshComponent* MakeActor(UWorld* World, UStaticMesh* Mesh, const FTransform& Relative, USceneComponent* Parent)
{
	AActor* const Actor = World->SpawnActor<AActor>();
	UStaticMeshComponent* const Root = Actor->AddComponent<UStaticMeshComponent>();
	Root->SetStaticMesh(Mesh);
	if (Parent)
	{
		Root->AttachToComponent(Parent);
	}
	Root->SetRelativeTransform(Relative);
	return Root;
}

UStaticMeshComponent* AddMeshComponent(USceneComponent* Parent, UStaticMesh* Mesh, const FTransform& Relative)
{
	UStaticMeshComponent* const Component = Parent->GetOwner()->AddComponent<UStaticMeshComponent>();
	Component->SetStaticMesh(Mesh);
	Component->AttachToComponent(Parent);
	Component->SetRelativeTransform(Relative);
	return Component;
}

TArray<FVector> WorldPositions(const UStaticMeshComponent* Component, int32 Lod)
{
	TArray<FVector> Positions = LocalPositions(Component->GetStaticMesh(), Lod);
	for (FVector& Position : Positions)
	{
		Position = Component->GetComponentTransform().TransformPosition(Position);
	}
	return Positions;
}

bool IsWorldTransformDerived(const USceneComponent* Component)
{
	const auto IsSame = [](const FTransform& A, const FTransform& B)
	{
		return A.GetRotation() == B.GetRotation() && A.GetTranslation() == B.GetTranslation() &&
			   A.GetScale3D() == B.GetScale3D();
	};
	for (; Component; Component = Component->GetAttachParent())
	{
		const USceneComponent* const Parent = Component->GetAttachParent();
		const FTransform Derived = Parent ? Component->GetRelativeTransform() * Parent->GetComponentTransform()
										  : Component->GetRelativeTransform();
		if (!IsSame(Derived, Component->GetComponentTransform()))
		{
			return false;
		}
	}
	return true;
}
