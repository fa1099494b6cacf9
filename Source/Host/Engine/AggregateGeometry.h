// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Box.h"
#include "Core/Rotator.h"
#include "Core/Transform.h"
#include "Core/Vector.h"
#include "CoreUObject/Archive.h"

/// A ball, in the mesh's local space.
struct FKSphereElem
{
	FVector Center = FVector::ZeroVector;
	float Radius = 1.f;

	bool operator==(const FKSphereElem&) const = default;
};

/// A box with sides of the full lengths `X`, `Y`, `Z` along its own axes, turned by `Rotation` about its centre.
struct FKBoxElem
{
	FVector Center = FVector::ZeroVector;
	FRotator Rotation;
	float X = 1.f;
	float Y = 1.f;
	float Z = 1.f;

	bool operator==(const FKBoxElem&) const = default;
};

/// A capsule along its own Z: two half balls of `Radius`, and a straight part of `Length` between them.
struct FKSphylElem
{
	FVector Center = FVector::ZeroVector;
	FRotator Rotation;
	float Radius = 1.f;
	float Length = 1.f;

	bool operator==(const FKSphylElem&) const = default;
};

/// A capsule whose upper end (own +Z) has `Radius0` and whose lower end has `Radius1`.
struct FKTaperedCapsuleElem
{
	FVector Center = FVector::ZeroVector;
	FRotator Rotation;
	float Radius0 = 1.f;
	float Radius1 = 1.f;
	float Length = 1.f;

	bool operator==(const FKTaperedCapsuleElem&) const = default;
};

/// A convex hull of points, placed in the mesh's local space by its own transform.
struct FKConvexElem
{
	TArray<FVector> VertexData;
	TArray<int32> IndexData; ///< corner triples of the hull's triangles; empty until someone needs them
	FBox ElemBox;            ///< the box of the points, before the transform

	const FTransform& GetTransform() const { return Transform; }

	/// The transform must hold no NaN and no infinity: "InTransform.IsValid()".
	void SetTransform(const FTransform& InTransform);

	/// Makes `ElemBox` the box of the points.
	void UpdateElemBox();

	bool operator==(const FKConvexElem& Other) const;

private:
	friend FArchive& operator<<(FArchive& Archive, FKConvexElem& Element);

	FTransform Transform;
};

/// A shape that this host keeps but cannot cook: its placement and the name of its data.
struct FKOpaqueElem
{
	FTransform Transform;
	FName DataName;

	bool operator==(const FKOpaqueElem& Other) const;
};

struct FKLevelSetElem : FKOpaqueElem
{
};
struct FKSkinnedLevelSetElem : FKOpaqueElem
{
};
struct FKMLLevelSetElem : FKOpaqueElem
{
};
struct FKSkinnedTriangleMeshElem : FKOpaqueElem
{
};

/// The simple collision of a mesh: one list for each kind of shape.
struct FKAggregateGeom
{
	TArray<FKSphereElem> SphereElems;
	TArray<FKBoxElem> BoxElems;
	TArray<FKSphylElem> SphylElems;
	TArray<FKConvexElem> ConvexElems;
	TArray<FKTaperedCapsuleElem> TaperedCapsuleElems;
	TArray<FKLevelSetElem> LevelSetElems;
	TArray<FKSkinnedLevelSetElem> SkinnedLevelSetElems;
	TArray<FKMLLevelSetElem> MLLevelSetElems;
	TArray<FKSkinnedTriangleMeshElem> SkinnedTriangleMeshElems;

	/// How many shapes all lists hold together.
	int32 GetElementCount() const;

	bool operator==(const FKAggregateGeom&) const = default;
};

FArchive& operator<<(FArchive& Archive, FKAggregateGeom& Geometry);
