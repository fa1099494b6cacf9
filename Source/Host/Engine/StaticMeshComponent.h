// SPDX-License-Identifier: MIT
#pragma once

#include "Engine/SceneComponent.h"

class UStaticMesh;

/// Shows a static mesh at the component's place.
class UStaticMeshComponent : public USceneComponent
{
	DECLARE_CLASS(UStaticMeshComponent, USceneComponent)

public:
	UStaticMesh* GetStaticMesh() const;

	/// Shows another mesh, or none. Returns true when that is a change. The caller records it for undo.
	virtual bool SetStaticMesh(UStaticMesh* NewMesh);

	void Serialize(FArchive& Archive) override;

private:
	TObjectPtr<UStaticMesh> StaticMesh;
};
