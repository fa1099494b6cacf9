// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Box.h"
#include "Core/Matrix.h"

/// A place in a picture: pixels from its upper left corner, downwards.
struct FViewportPoint
{
	double X = 0.0;
	double Y = 0.0;
};

/// A half line in the world. `Direction` has length 1.
struct FViewportRay
{
	FVector Origin;
	FVector Direction;

	FVector At(double Distance) const { return Origin + Direction * Distance; }
};

/// A perspective camera that turns around a target. The world is Z-up and right-handed; angles are in radians.
///
/// The picture is `Width` by `Height` pixels, of any unit that the caller likes, as long as points are given in the
/// same one. The camera never rolls.
class FViewportCamera
{
public:
	/// A picture is at least one pixel wide and high.
	void SetPictureSize(double InWidth, double InHeight);
	double GetWidth() const { return Width; }
	double GetHeight() const { return Height; }

	const FVector& GetTarget() const { return Target; }
	double GetDistance() const { return Distance; }
	double GetYaw() const { return Yaw; }
	double GetPitch() const { return Pitch; }

	/// Where the camera looks at, from how far, and in which direction: yaw about Z from +X, pitch upwards.
	void LookAt(const FVector& InTarget, double InDistance, double InYaw, double InPitch);

	FVector GetEye() const { return Target - GetForward() * Distance; }
	FVector GetForward() const;
	FVector GetRight() const;
	FVector GetUp() const { return GetRight() ^ GetForward(); }

	/// How many pixels a length of one has, seen squarely at this depth in front of the eye.
	double GetPixelsPerUnit(double Depth) const;

	/// Turns around the target by a drag of so many pixels: what was grabbed goes along with the pointer.
	void Orbit(double DeltaX, double DeltaY);

	/// Moves the target, and the eye with it, by a drag of so many pixels: what is at the target's depth goes along
	/// with the pointer.
	void Pan(double DeltaX, double DeltaY);

	/// Multiplies the distance by `Factor` and moves the eye so that everything under `Cursor` stays under it.
	void Zoom(double Factor, const FViewportPoint& Cursor);

	/// Looks at the middle of a box from the present direction, from where all of it fits in the picture. A box of no
	/// size is taken for one of `SmallestSize`; an invalid one changes nothing.
	void Frame(const FBox& Bounds, double SmallestSize);

	/// Sets the depths between which the picture is drawn: around the box as tightly as depth buffers like it.
	void FitDepthRange(const FBox& Bounds);
	double GetNear() const { return Near; }
	double GetFar() const { return Far; }

	/// World to clip space (-1 to 1 along all three axes, as OpenGL has it), for points relative to `Origin`.
	FMatrix GetViewProjection(const FVector& Origin) const;

	/// Where a point in the world is in the picture. False, leaving `OutPoint` alone, for one that is not in front of
	/// the eye.
	bool Project(const FVector& World, FViewportPoint& OutPoint) const;

	/// The ray from the eye through a point of the picture.
	FViewportRay GetRay(const FViewportPoint& Point) const;

private:
	double TanHalfHeight() const;
	double TanHalfWidth() const { return TanHalfHeight() * Width / Height; }
	FVector DirectionThrough(const FViewportPoint& Point) const;

	FVector Target;
	double Distance = 1000.0;
	double Yaw = 0.0;
	double Pitch = 0.0;
	double Width = 1.0;
	double Height = 1.0;
	double Near = 1.0;
	double Far = 10000.0;
};
