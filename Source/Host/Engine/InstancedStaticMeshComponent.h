// SPDX-License-Identifier: MIT
#pragma once

#include "Engine/StaticMeshComponent.h"

/// Shows one static mesh many times: instance · component's world transform is the place of each.
class UInstancedStaticMeshComponent : public UStaticMeshComponent
{
	DECLARE_CLASS(UInstancedStaticMeshComponent, UStaticMeshComponent)

public:
	/// The instances' transforms in component space.
	const TArray<FTransform>& GetInstances() const { return Instances; }
	void AddInstance(const FTransform& Instance) { Instances.Add(Instance); }

	void Serialize(FArchive& Archive) override;

private:
	TArray<FTransform> Instances;
};

/// An instanced component that sorts its instances into a tree for culling.
class UHierarchicalInstancedStaticMeshComponent : public UInstancedStaticMeshComponent
{
	DECLARE_CLASS(UHierarchicalInstancedStaticMeshComponent, UInstancedStaticMeshComponent)
};
