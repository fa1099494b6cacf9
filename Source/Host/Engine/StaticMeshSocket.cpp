// SPDX-License-Identifier: MIT
#include "Engine/StaticMeshSocket.h"

#include "CoreUObject/Archive.h"

DEFINE_CLASS(UStaticMeshSocket)

void UStaticMeshSocket::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << SocketName << RelativeLocation << RelativeRotation << RelativeScale;
}
