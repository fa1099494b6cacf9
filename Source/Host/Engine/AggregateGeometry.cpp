// SPDX-License-Identifier: MIT
#include "Engine/AggregateGeometry.h"

namespace
{
bool IsSame(const FTransform& A, const FTransform& B)
{
	return A.GetRotation() == B.GetRotation() && A.GetTranslation() == B.GetTranslation() &&
		   A.GetScale3D() == B.GetScale3D();
}
} // namespace

void FKConvexElem::SetTransform(const FTransform& InTransform)
{
	checkf(InTransform.IsValid(), TEXT("InTransform.IsValid()"));
	Transform = InTransform;
}

void FKConvexElem::UpdateElemBox()
{
	ElemBox = FBox();
	for (const FVector& Vertex : VertexData)
	{
		ElemBox += Vertex;
	}
}

bool FKConvexElem::operator==(const FKConvexElem& Other) const
{
	return VertexData == Other.VertexData && IndexData == Other.IndexData && IsSame(Transform, Other.Transform);
}

bool FKOpaqueElem::operator==(const FKOpaqueElem& Other) const
{
	return DataName == Other.DataName && IsSame(Transform, Other.Transform);
}

int32 FKAggregateGeom::GetElementCount() const
{
	return int32(SphereElems.Num() + BoxElems.Num() + SphylElems.Num() + ConvexElems.Num() + TaperedCapsuleElems.Num() +
				 LevelSetElems.Num() + SkinnedLevelSetElems.Num() + MLLevelSetElems.Num() +
				 SkinnedTriangleMeshElems.Num());
}

static FArchive& operator<<(FArchive& Archive, FKSphereElem& Element)
{
	return Archive << Element.Center << Element.Radius;
}

static FArchive& operator<<(FArchive& Archive, FKBoxElem& Element)
{
	return Archive << Element.Center << Element.Rotation << Element.X << Element.Y << Element.Z;
}

static FArchive& operator<<(FArchive& Archive, FKSphylElem& Element)
{
	return Archive << Element.Center << Element.Rotation << Element.Radius << Element.Length;
}

static FArchive& operator<<(FArchive& Archive, FKTaperedCapsuleElem& Element)
{
	return Archive << Element.Center << Element.Rotation << Element.Radius0 << Element.Radius1 << Element.Length;
}

FArchive& operator<<(FArchive& Archive, FKConvexElem& Element)
{
	return Archive << Element.VertexData << Element.IndexData << Element.ElemBox << Element.Transform;
}

static FArchive& operator<<(FArchive& Archive, FKOpaqueElem& Element)
{
	return Archive << Element.Transform << Element.DataName;
}

FArchive& operator<<(FArchive& Archive, FKAggregateGeom& Geometry)
{
	return Archive << Geometry.SphereElems << Geometry.BoxElems << Geometry.SphylElems << Geometry.ConvexElems
				   << Geometry.TaperedCapsuleElems << Geometry.LevelSetElems << Geometry.SkinnedLevelSetElems
				   << Geometry.MLLevelSetElems << Geometry.SkinnedTriangleMeshElems;
}
