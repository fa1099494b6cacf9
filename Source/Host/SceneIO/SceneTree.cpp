// SPDX-License-Identifier: MIT
#include "SceneIO/SceneTree.h"

FSceneTree::FSceneTree(const FScene& InScene)
	: Scene(InScene)
{
	FindActors();
	FindParents();
}

void FSceneTree::FindActors()
{
	Nodes.resize(std::size_t(Scene.NumNodes()));
	for (FGltfIndex Index = 0; Index < Scene.NumNodes(); ++Index)
	{
		const FGltfIndex Owner = Scene.Node(Index).LevelOf;
		const bool bGoesWithOwner = Owner != NoIndex && !Scene.IsAlive(Owner);
		if (Scene.IsAlive(Index) && !bGoesWithOwner)
		{
			Nodes[std::size_t(Index)] = {Scene.Node(Index).Actor, Scene.Node(Index).Component, Index, NoIndex, {}};
		}
	}
	for (AActor* Actor : Scene.GetWorld()->GetActors())
	{
		if (Scene.NodeOf(Actor) == NoIndex && !Actor->HasAnyFlags(RF_Transient))
		{
			NewNodes.emplace(Actor, Num());
			Nodes.push_back({Actor, Actor->GetRootComponent(), Scene.SourceOf(Actor), NoIndex, {}});
		}
	}
}

void FSceneTree::FindParents()
{
	for (FGltfIndex Index = 0; Index < Num(); ++Index)
	{
		const USceneComponent* const Above = Node(Index).Root ? Node(Index).Root->GetAttachParent() : nullptr;
		const AActor* const Owner = IsValid(Above) ? Above->GetOwner() : nullptr;
		const FGltfIndex Parent = Owner ? IndexOf(Owner) : NoIndex;
		if (Parent != NoIndex && Node(Parent).Actor)
		{
			Nodes[std::size_t(Index)].Parent = Parent;
			Nodes[std::size_t(Parent)].Children.push_back(Index);
		}
	}
}

FGltfIndex FSceneTree::IndexOf(const AActor* Actor) const
{
	const FGltfIndex OfFile = Scene.NodeOf(Actor);
	const auto Found = OfFile == NoIndex ? NewNodes.find(Actor) : NewNodes.end();
	return Found == NewNodes.end() ? OfFile : Found->second;
}

bool FSceneTree::IsAsInFile() const
{
	if (Num() != Scene.NumNodes())
	{
		return false;
	}
	for (FGltfIndex Index = 0; Index < Num(); ++Index)
	{
		if (IsDeleted(Index) || Node(Index).Parent != Scene.Document()->Node(Index).Parent)
		{
			return false;
		}
	}
	return true;
}

FGltfIndex FSceneTree::TopOf(FGltfIndex Index) const
{
	while (Node(Index).Parent != NoIndex)
	{
		Index = Node(Index).Parent;
	}
	return Index;
}
