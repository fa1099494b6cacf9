// SPDX-License-Identifier: MIT
#include "TestObjects.h"

DEFINE_CLASS(UTestNode)
DEFINE_CLASS(UTestLeaf)
DEFINE_CLASS(UTestOther)
DEFINE_CLASS(UTestMaker)

void UTestNode::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << Number << Value << bFlag << Door << Tag << Text << Place << Pose << Bounds << Numbers << Next << Links
			<< Blob;
}

UTestMaker::UTestMaker()
	: Part(NewObject<UTestNode>(this, TEXT("Part")))
{
}

void UTestMaker::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << Part;
}
