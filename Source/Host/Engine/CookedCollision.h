// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/String.h"
#include "Engine/AggregateGeometry.h"

#include <memory>

/// The kinds of shapes that physics knows.
enum class ECollisionShape : uint8
{
	Sphere,
	Box,
	Capsule,
	TaperedCapsule,
	Convex,
};

/// The name of a shape in running text: "sphere".
const TCHAR* ToString(ECollisionShape Shape);

/// Where a ray met a shape. All in the mesh's local space.
struct FCollisionHit
{
	double Fraction = 1.0; ///< of the way from the ray's start to its end
	FVector Point = FVector::ZeroVector;
	FVector Normal = FVector::ZeroVector;
	ECollisionShape Shape = ECollisionShape::Sphere;
	int32 ElementIndex = INDEX_NONE; ///< in the list of that kind
};

/// The shapes that physics and picking work with, made from simple collision. Never changes.
///
/// Level sets and skinned elements are not cooked. An element that cannot be a shape (a size that is zero, negative or
/// not finite, a hull of fewer than four points, or of points in one plane) is left out, and named in `GetProblems`.
class FCookedCollision
{
public:
	explicit FCookedCollision(const FKAggregateGeom& InGeometry);
	~FCookedCollision();
	FCookedCollision(const FCookedCollision&) = delete;
	FCookedCollision& operator=(const FCookedCollision&) = delete;

	/// The nearest hit of the ray from `Start` to `End`, if there is one. A ray that starts inside a shape does not hit
	/// that shape.
	bool RayCast(const FVector& Start, const FVector& End, FCollisionHit& OutHit) const;

	int32 GetNumShapes() const;

	/// One sentence part for each element that was left out: "convex 2 has no volume".
	const TArray<FString>& GetProblems() const { return Problems; }

	/// What the shapes were made from.
	const FKAggregateGeom& GetSource() const { return Geometry; }

private:
	struct FShapes;

	FKAggregateGeom Geometry;
	std::unique_ptr<FShapes> Shapes;
	TArray<FString> Problems;
};
