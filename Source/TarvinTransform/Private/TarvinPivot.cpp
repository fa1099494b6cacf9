// SPDX-License-Identifier: MIT
#include "TarvinPivot.h"

#include "Platform/Engine.h"
#include "Platform/MeshDescription.h"

#include <cmath>

namespace
{
bool IsNotANumber(const FVector& Vector)
{
	return std::isnan(Vector.X) || std::isnan(Vector.Y) || std::isnan(Vector.Z);
}
} // namespace

const TCHAR* TarvinPivot::GetPositionName(ETarvinPivotPosition Position)
{
	static constexpr const TCHAR* Names[] = {TEXT("center"), TEXT("bottom"), TEXT("top"), TEXT("left"), TEXT("right"),
		TEXT("front"), TEXT("back"), TEXT("world origin")};
	const uint8 Index = static_cast<uint8>(Position);
	return Index < sizeof(Names) / sizeof(Names[0]) ? Names[Index] : TEXT("unknown");
}

bool TarvinPivot::ComputeLocalBounds(const UStaticMesh* Mesh, FBox& OutBounds)
{
	const FMeshDescription* const Description = Mesh ? Mesh->GetMeshDescription(0) : nullptr;
	if (!Description || Description->Vertices().Num() == 0)
	{
		return false;
	}
	OutBounds = FBox();
	for (const FVertexID Vertex : Description->Vertices().GetElementIDs())
	{
		const FVector Position(Description->GetVertexPosition(Vertex));
		// A coordinate that is no number would take the place of the extremes found so far.
		if (!IsNotANumber(Position))
		{
			OutBounds += Position;
		}
	}
	return OutBounds.IsValid;
}

bool TarvinPivot::ComputePivotPoint(
	const UStaticMesh* Mesh, ETarvinPivotPosition Position, const FTransform& WorldTransform, FVector& OutPoint)
{
	if (Position == ETarvinPivotPosition::WorldOrigin)
	{
		OutPoint = WorldTransform.InverseTransformPosition(FVector::ZeroVector);
		return true;
	}
	FBox Bounds;
	if (!ComputeLocalBounds(Mesh, Bounds))
	{
		return false;
	}
	FVector Point = (Bounds.Min + Bounds.Max) * 0.5;
	switch (Position)
	{
	case ETarvinPivotPosition::Bottom:
		Point.Z = Bounds.Min.Z;
		break;
	case ETarvinPivotPosition::Top:
		Point.Z = Bounds.Max.Z;
		break;
	case ETarvinPivotPosition::Left:
		Point.Y = Bounds.Min.Y;
		break;
	case ETarvinPivotPosition::Right:
		Point.Y = Bounds.Max.Y;
		break;
	case ETarvinPivotPosition::Front:
		Point.X = Bounds.Min.X;
		break;
	case ETarvinPivotPosition::Back:
		Point.X = Bounds.Max.X;
		break;
	default:
		break;
	}
	OutPoint = Point;
	return true;
}
