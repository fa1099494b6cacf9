// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Rotator.h"
#include "Core/Vector.h"
#include "CoreUObject/Object.h"

/// A named frame in a mesh's local space, for things to be put there. Its outer is the mesh.
class UStaticMeshSocket : public UObject
{
	DECLARE_CLASS(UStaticMeshSocket, UObject)

public:
	FName SocketName;
	FVector RelativeLocation = FVector::ZeroVector;
	FRotator RelativeRotation;
	FVector RelativeScale = FVector::OneVector;

	void Serialize(FArchive& Archive) override;
};
