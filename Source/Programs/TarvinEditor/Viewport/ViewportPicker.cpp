// SPDX-License-Identifier: MIT
#include "ViewportPicker.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace
{
constexpr double Nowhere = std::numeric_limits<double>::infinity();
/// A ray through an edge belongs to both triangles rather than to none, whatever the rounding.
constexpr double EdgeTolerance = 1e-9;

/// Where the ray enters a valid box, 0 inside it; `Nowhere` if it passes by.
double EnterBox(const FBox& Box, const FViewportRay& Ray)
{
	// Boxes of flat things have no thickness, and world boxes are rounded: they get a hair more.
	const double Hair = 1e-9 * (1.0 + Box.Min.GetAbsMax() + Box.Max.GetAbsMax());
	double Enter = 0.0;
	double Leave = Nowhere;
	for (int32 Axis = 0; Axis < 3; ++Axis)
	{
		const double Origin = Ray.Origin[Axis];
		const double Direction = Ray.Direction[Axis];
		const double Low = Box.Min[Axis] - Hair - Origin;
		const double High = Box.Max[Axis] + Hair - Origin;
		if (Direction == 0.0)
		{
			if (Low > 0.0 || High < 0.0)
			{
				return Nowhere;
			}
			continue;
		}
		const double A = Low / Direction;
		const double B = High / Direction;
		Enter = std::max(Enter, std::min(A, B));
		Leave = std::min(Leave, std::max(A, B));
	}
	return Enter <= Leave ? Enter : Nowhere;
}

/// Where the ray meets a triangle, from either side; `Nowhere` if it does not.
double MeetTriangle(const FViewportRay& Ray, const FVector& A, const FVector& B, const FVector& C)
{
	const FVector Edge1 = B - A;
	const FVector Edge2 = C - A;
	const FVector P = Ray.Direction ^ Edge2;
	const double Determinant = Edge1 | P;
	const double Reciprocal = 1.0 / Determinant;
	if (!std::isfinite(Reciprocal))
	{
		return Nowhere;
	}
	const FVector ToOrigin = Ray.Origin - A;
	const double U = (ToOrigin | P) * Reciprocal;
	const FVector Q = ToOrigin ^ Edge1;
	const double V = (Ray.Direction | Q) * Reciprocal;
	if (!(U >= -EdgeTolerance && V >= -EdgeTolerance && U + V <= 1.0 + EdgeTolerance))
	{
		return Nowhere;
	}
	const double Distance = (Edge2 | Q) * Reciprocal;
	return Distance >= 0.0 ? Distance : Nowhere;
}

/// Where the ray first meets the triangles of an item.
double MeetItem(const FViewportScene& Scene, const FViewportItem& Item, const FViewportRay& Ray)
{
	UStaticMesh* const Mesh = Scene.GetMeshes()[std::size_t(Item.Mesh)].Mesh.Get();
	const FStaticMeshLodRenderData* const Data = Mesh ? Mesh->GetRenderData(0) : nullptr;
	if (!Data)
	{
		return Nowhere;
	}
	// An affine map keeps the distance along the ray, as long as its direction is not made a unit vector again. What is
	// flattened to a plane has no way back: its corners are brought to the world instead.
	FMatrix WorldToLocal;
	const bool bLocal = Item.LocalToWorld.TryInverse(WorldToLocal);
	const FViewportRay Used =
		bLocal ? FViewportRay{WorldToLocal.TransformPosition(Ray.Origin), WorldToLocal.TransformVector(Ray.Direction)}
			   : Ray;
	const auto Corner = [&](int64 Index)
	{
		const FVector Local(Data->Positions.GetData()[Data->Indices.GetData()[Index]]);
		return bLocal ? Local : Item.LocalToWorld.TransformPosition(Local);
	};
	double Nearest = Nowhere;
	for (int64 Index = 0; Index + 2 < int64(Data->Indices.Num()); Index += 3)
	{
		Nearest = std::min(Nearest, MeetTriangle(Used, Corner(Index), Corner(Index + 1), Corner(Index + 2)));
	}
	return Nearest;
}

/// The planes of what shows in a rectangle: each through the eye, its normal pointing inwards; and that of the eye.
std::array<FVector, 5> PlanesThrough(const FViewportCamera& Camera, const FViewportRectangle& Rectangle)
{
	const double Left = std::min(Rectangle.From.X, Rectangle.To.X);
	const double Right = std::max(Rectangle.From.X, Rectangle.To.X);
	const double Upper = std::min(Rectangle.From.Y, Rectangle.To.Y);
	const double Lower = std::max(Rectangle.From.Y, Rectangle.To.Y);
	const FVector UpperLeft = Camera.GetRay({Left, Upper}).Direction;
	const FVector UpperRight = Camera.GetRay({Right, Upper}).Direction;
	const FVector LowerLeft = Camera.GetRay({Left, Lower}).Direction;
	const FVector LowerRight = Camera.GetRay({Right, Lower}).Direction;
	const FVector Up = Camera.GetUp();
	const FVector Across = Camera.GetRight();
	// The upper corners need not be apart from the lower ones, nor the left ones from the right ones.
	return {LowerLeft ^ Up, Up ^ UpperRight, UpperLeft ^ Across, Across ^ LowerRight, Camera.GetForward()};
}

bool IsInFront(const FVector& Normal, const FMatrix& LocalToWorld, const FBox& Box, const FVector& Eye)
{
	for (int32 Index = 0; Index < 8; ++Index)
	{
		const FVector Corner(
			Index & 1 ? Box.Max.X : Box.Min.X, Index & 2 ? Box.Max.Y : Box.Min.Y, Index & 4 ? Box.Max.Z : Box.Min.Z);
		if (((LocalToWorld.TransformPosition(Corner) - Eye) | Normal) >= 0.0)
		{
			return true;
		}
	}
	return false;
}
}

FViewportHit PickNearest(const FViewportScene& Scene, const FViewportRay& Ray)
{
	std::vector<std::pair<double, int32>> Candidates;
	const std::vector<FViewportItem>& Items = Scene.GetItems();
	for (std::size_t Index = 0; Index < Items.size(); ++Index)
	{
		const double Enter = Items[Index].WorldBounds.IsValid ? EnterBox(Items[Index].WorldBounds, Ray) : Nowhere;
		if (Enter < Nowhere)
		{
			Candidates.emplace_back(Enter, int32(Index));
		}
	}
	std::sort(Candidates.begin(), Candidates.end());
	FViewportHit Hit;
	double Nearest = Nowhere;
	for (const auto& [Enter, Index] : Candidates)
	{
		if (Enter > Nearest)
		{
			break;
		}
		const double Distance = MeetItem(Scene, Items[std::size_t(Index)], Ray);
		if (Distance < Nearest)
		{
			Nearest = Distance;
			Hit = {Index, Distance, Ray.At(Distance)};
		}
	}
	return Hit;
}

std::vector<int32> PickInRectangle(
	const FViewportScene& Scene, const FViewportCamera& Camera, const FViewportRectangle& Rectangle)
{
	const std::array<FVector, 5> Planes = PlanesThrough(Camera, Rectangle);
	const FVector Eye = Camera.GetEye();
	const auto Shows = [&](const FMatrix& LocalToWorld, const FBox& Box)
	{
		return std::all_of(Planes.begin(), Planes.end(),
			[&](const FVector& Normal) { return IsInFront(Normal, LocalToWorld, Box, Eye); });
	};
	std::vector<bool> Inside(Scene.GetActors().size(), false);
	for (const FViewportItem& Item : Scene.GetItems())
	{
		if (Item.WorldBounds.IsValid && !Inside[std::size_t(Item.Actor)] &&
			Shows(Item.LocalToWorld, Scene.GetMeshes()[std::size_t(Item.Mesh)].Bounds))
		{
			Inside[std::size_t(Item.Actor)] = true;
		}
	}
	std::vector<int32> Result;
	for (std::size_t Index = 0; Index < Inside.size(); ++Index)
	{
		const FViewportActor& Actor = Scene.GetActors()[Index];
		if (Inside[Index] || (!Actor.Bounds.IsValid && Shows(FMatrix(), FBox(Actor.Pivot, Actor.Pivot))))
		{
			Result.push_back(int32(Index));
		}
	}
	return Result;
}
