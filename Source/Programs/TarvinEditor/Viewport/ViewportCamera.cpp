// SPDX-License-Identifier: MIT
#include "ViewportCamera.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace
{
constexpr double Pi = std::numbers::pi;
/// The angle between the upper and the lower edge of the picture: 45 degrees, a calm perspective for editing.
constexpr double FieldOfView = Pi / 4.0;
/// A drag over the picture's height turns by half a turn.
constexpr double OrbitPerHeight = Pi;
/// Keeps the distance within what doubles and depth buffers can do.
constexpr double SmallestDistance = 1e-3;
constexpr double LargestDistance = 1e12;
/// Room around what is framed.
constexpr double FrameMargin = 1.12;
/// A depth buffer of 24 bits tells little apart nearer than this share of its far end.
constexpr double SmallestNearShare = 1e-5;

/// The corners of a box, one for each value of `Index` from 0 to 7.
FVector Corner(const FBox& Box, int32 Index)
{
	return {Index & 1 ? Box.Max.X : Box.Min.X, Index & 2 ? Box.Max.Y : Box.Min.Y, Index & 4 ? Box.Max.Z : Box.Min.Z};
}
}

void FViewportCamera::SetPictureSize(double InWidth, double InHeight)
{
	Width = std::max(InWidth, 1.0);
	Height = std::max(InHeight, 1.0);
}

void FViewportCamera::LookAt(const FVector& InTarget, double InDistance, double InYaw, double InPitch)
{
	Target = InTarget;
	Distance = std::clamp(InDistance, SmallestDistance, LargestDistance);
	Yaw = std::remainder(InYaw, 2.0 * Pi);
	Pitch = std::clamp(InPitch, -Pi / 2.0, Pi / 2.0);
}

FVector FViewportCamera::GetForward() const
{
	return {std::cos(Pitch) * std::cos(Yaw), std::cos(Pitch) * std::sin(Yaw), std::sin(Pitch)};
}

FVector FViewportCamera::GetRight() const
{
	// From the yaw alone, so that it is there when the camera looks straight down.
	return {std::sin(Yaw), -std::cos(Yaw), 0.0};
}

double FViewportCamera::TanHalfHeight() const
{
	return std::tan(FieldOfView / 2.0);
}

double FViewportCamera::GetPixelsPerUnit(double Depth) const
{
	return Height / (2.0 * TanHalfHeight() * std::max(Depth, SmallestDistance));
}

void FViewportCamera::Orbit(double DeltaX, double DeltaY)
{
	const double PerPixel = OrbitPerHeight / Height;
	LookAt(Target, Distance, Yaw - DeltaX * PerPixel, Pitch - DeltaY * PerPixel);
}

void FViewportCamera::Pan(double DeltaX, double DeltaY)
{
	const double PerPixel = 1.0 / GetPixelsPerUnit(Distance);
	Target += GetRight() * (-DeltaX * PerPixel) + GetUp() * (DeltaY * PerPixel);
}

void FViewportCamera::Zoom(double Factor, const FViewportPoint& Cursor)
{
	// The eye moves along the ray through the cursor, so that all of the ray stays where it is in the picture.
	const FVector Eye = GetEye();
	const double NewDistance = std::clamp(Distance * Factor, SmallestDistance, LargestDistance);
	const FVector NewEye = Eye + DirectionThrough(Cursor) * (Distance - NewDistance);
	LookAt(NewEye + GetForward() * NewDistance, NewDistance, Yaw, Pitch);
}

void FViewportCamera::Frame(const FBox& Bounds, double SmallestSize)
{
	if (!Bounds.IsValid)
	{
		return;
	}
	const FVector Center = Bounds.GetCenter();
	FBox Box = Bounds;
	if (Box.GetSize().GetMax() <= 0.0)
	{
		const FVector Half(SmallestSize / 2.0);
		Box = FBox(Center - Half, Center + Half);
	}
	double Needed = 0.0;
	for (int32 Index = 0; Index < 8; ++Index)
	{
		const FVector Offset = Corner(Box, Index) - Center;
		const double Depth = Offset | GetForward();
		const double Across =
			std::max(std::abs(Offset | GetRight()) / TanHalfWidth(), std::abs(Offset | GetUp()) / TanHalfHeight());
		// What is long and seen end on stays at some distance in front of the eye.
		Needed = std::max({Needed, Across * FrameMargin - Depth, Box.GetSize().GetMax() * 0.5 - Depth});
	}
	LookAt(Center, Needed, Yaw, Pitch);
}

void FViewportCamera::FitDepthRange(const FBox& Bounds)
{
	Near = Distance * 0.01;
	Far = Distance * 10.0;
	if (!Bounds.IsValid)
	{
		return;
	}
	double Nearest = std::numeric_limits<double>::max();
	double Farthest = 0.0;
	for (int32 Index = 0; Index < 8; ++Index)
	{
		const double Depth = (Corner(Bounds, Index) - GetEye()) | GetForward();
		Nearest = std::min(Nearest, Depth);
		Farthest = std::max(Farthest, Depth);
	}
	// A little more than the box, so that what lies in its faces is not cut; and enough where all is behind the eye.
	Far = std::max(Farthest * 1.01, Distance * 0.1);
	Near = std::max(Nearest * 0.99, std::min(Distance * 0.01, Far * 0.01));
	Near = std::min(std::max(Near, Far * SmallestNearShare), Far * 0.99);
}

FMatrix FViewportCamera::GetViewProjection(const FVector& Origin) const
{
	const FVector Right = GetRight();
	const FVector Up = GetUp();
	const FVector Back = -GetForward();
	const FVector Shift = Origin - GetEye();
	const FMatrix View(FVector(Right.X, Up.X, Back.X), FVector(Right.Y, Up.Y, Back.Y), FVector(Right.Z, Up.Z, Back.Z),
		FVector(Shift | Right, Shift | Up, Shift | Back));
	FMatrix Projection;
	Projection.M[0][0] = 1.0 / TanHalfWidth();
	Projection.M[1][1] = 1.0 / TanHalfHeight();
	Projection.M[2][2] = -(Far + Near) / (Far - Near);
	Projection.M[2][3] = -1.0;
	Projection.M[3][2] = -2.0 * Far * Near / (Far - Near);
	Projection.M[3][3] = 0.0;
	return View * Projection;
}

bool FViewportCamera::Project(const FVector& World, FViewportPoint& OutPoint) const
{
	const FVector Offset = World - GetEye();
	const double Depth = Offset | GetForward();
	if (!(Depth > 0.0))
	{
		return false;
	}
	OutPoint.X = Width * 0.5 * (1.0 + (Offset | GetRight()) / (Depth * TanHalfWidth()));
	OutPoint.Y = Height * 0.5 * (1.0 - (Offset | GetUp()) / (Depth * TanHalfHeight()));
	return true;
}

/// From the eye to the plane at depth 1.
FVector FViewportCamera::DirectionThrough(const FViewportPoint& Point) const
{
	return GetForward() + GetRight() * ((2.0 * Point.X / Width - 1.0) * TanHalfWidth()) +
		   GetUp() * ((1.0 - 2.0 * Point.Y / Height) * TanHalfHeight());
}

FViewportRay FViewportCamera::GetRay(const FViewportPoint& Point) const
{
	return {GetEye(), DirectionThrough(Point).GetSafeNormal()};
}
