// SPDX-License-Identifier: MIT
#include "Support/RapidCheck.h"

#include "Host/Core/MathGenerators.h"
#include "Viewport/ViewportCamera.h"

#include <cmath>

namespace
{
/// Any camera, its picture of any shape.
FViewportCamera AnyCamera()
{
	const auto Side = [] { return 1.0 + *rc::gen::inRange(30, 4000); };
	FViewportCamera Camera;
	Camera.SetPictureSize(Side(), Side());
	Camera.LookAt(*MathGenerators::Point(), std::abs(*MathGenerators::Magnitude(0.1, 1.e6)),
		*rc::gen::inRange(-3600, 3601) * 0.001, *rc::gen::inRange(-1570, 1571) * 0.001);
	return Camera;
}

FViewportPoint AnyPointOf(const FViewportCamera& Camera)
{
	const auto Share = [] { return *rc::gen::inRange(0, 1001) * 0.001; };
	return {Share() * Camera.GetWidth(), Share() * Camera.GetHeight()};
}

double PixelsApart(const FViewportPoint& A, const FViewportPoint& B)
{
	return std::hypot(A.X - B.X, A.Y - B.Y);
}

/// Where a world point is in the picture by way of the matrix, as the graphics card has it.
FViewportPoint ProjectByMatrix(const FViewportCamera& Camera, const FVector& World, double& OutDepth)
{
	const FMatrix Matrix = Camera.GetViewProjection(FVector(3.0, 5.0, -7.0));
	const FVector P = World - FVector(3.0, 5.0, -7.0);
	double Clip[4];
	for (int Column = 0; Column < 4; ++Column)
	{
		Clip[Column] =
			P.X * Matrix.M[0][Column] + P.Y * Matrix.M[1][Column] + P.Z * Matrix.M[2][Column] + Matrix.M[3][Column];
	}
	OutDepth = Clip[2] / Clip[3];
	return {(Clip[0] / Clip[3] + 1.0) * 0.5 * Camera.GetWidth(), (1.0 - Clip[1] / Clip[3]) * 0.5 * Camera.GetHeight()};
}
}

RC_GTEST_PROP(ViewportCamera, EveryPointOfARayShowsWhereTheRayWasSent, ())
{
	const FViewportCamera Camera = AnyCamera();
	const FViewportPoint Point = AnyPointOf(Camera);
	const FVector World =
		Camera.GetRay(Point).At(Camera.GetDistance() * std::abs(*MathGenerators::Magnitude(0.5, 3.0)));
	FViewportPoint Back;
	RC_ASSERT(Camera.Project(World, Back));
	RC_ASSERT(PixelsApart(Point, Back) < 1.e-3);
}

RC_GTEST_PROP(ViewportCamera, TheMatrixPutsPointsWhereProjectDoes, ())
{
	FViewportCamera Camera = AnyCamera();
	const FViewportPoint Point = AnyPointOf(Camera);
	const FVector World = Camera.GetRay(Point).At(Camera.GetDistance());
	FBox Bounds(World, World);
	Bounds += Camera.GetTarget();
	Camera.FitDepthRange(Bounds);
	double Depth = 0.0;
	const FViewportPoint ByMatrix = ProjectByMatrix(Camera, World, Depth);
	RC_ASSERT(PixelsApart(Point, ByMatrix) < 1.e-3);
	RC_ASSERT(std::abs(Depth) <= 1.0);
}

RC_GTEST_PROP(ViewportCamera, FramingBringsAllOfABoxIntoThePictureAndTheDepthRange, ())
{
	FViewportCamera Camera = AnyCamera();
	FBox Box(*MathGenerators::Point(), FVector::ZeroVector);
	Box.Max = Box.Min + (*MathGenerators::Point()).GetAbs();
	Camera.Frame(Box, 10.0);
	Camera.FitDepthRange(Box);
	for (int32 Index = 0; Index < 8; ++Index)
	{
		const FVector Corner(
			Index & 1 ? Box.Max.X : Box.Min.X, Index & 2 ? Box.Max.Y : Box.Min.Y, Index & 4 ? Box.Max.Z : Box.Min.Z);
		double Depth = 0.0;
		const FViewportPoint Place = ProjectByMatrix(Camera, Corner, Depth);
		RC_ASSERT(Place.X >= 0.0 && Place.X <= Camera.GetWidth());
		RC_ASSERT(Place.Y >= 0.0 && Place.Y <= Camera.GetHeight());
		RC_ASSERT(std::abs(Depth) <= 1.0);
	}
	// And from no farther than a ball around the box would need, with some room.
	const double Radius = Box.GetSize().Size() / 2.0;
	const double SmallerSide = std::min(Camera.GetWidth(), Camera.GetHeight()) / (2.0 * Camera.GetPixelsPerUnit(1.0));
	RC_ASSERT(Radius == 0.0 || Camera.GetDistance() <= Radius * (1.2 / SmallerSide + 2.0));
}

RC_GTEST_PROP(ViewportCamera, ZoomKeepsWhatIsUnderTheCursorUnderIt, ())
{
	FViewportCamera Camera = AnyCamera();
	const FViewportPoint Cursor = AnyPointOf(Camera);
	const double Factor = std::abs(*MathGenerators::Magnitude(0.5, 2.0));
	// Deep enough that the eye does not pass it.
	const FViewportRay Ray = Camera.GetRay(Cursor);
	const FVector World = Ray.At(Camera.GetDistance() * 5.0 / (Ray.Direction | Camera.GetForward()));
	const double Before = Camera.GetDistance();
	Camera.Zoom(Factor, Cursor);
	FViewportPoint After;
	RC_ASSERT(Camera.Project(World, After));
	RC_ASSERT(PixelsApart(Cursor, After) < 1.e-3);
	RC_ASSERT(std::abs(Camera.GetDistance() - Before * Factor) <= 1.e-9 * Before);
}

RC_GTEST_PROP(ViewportCamera, PanMovesTheTargetWithThePointer, ())
{
	FViewportCamera Camera = AnyCamera();
	const FVector Target = Camera.GetTarget();
	Camera.Pan(17.0, -29.0);
	FViewportPoint After;
	RC_ASSERT(Camera.Project(Target, After));
	RC_ASSERT(PixelsApart(After, {Camera.GetWidth() / 2.0 + 17.0, Camera.GetHeight() / 2.0 - 29.0}) < 1.e-3);
}

RC_GTEST_PROP(ViewportCamera, OrbitKeepsTheTargetAndItsDistance, ())
{
	FViewportCamera Camera = AnyCamera();
	const FVector Target = Camera.GetTarget();
	const double Distance = Camera.GetDistance();
	Camera.Orbit(*rc::gen::inRange(-2000, 2001), *rc::gen::inRange(-2000, 2001));
	RC_ASSERT(Camera.GetTarget() == Target);
	RC_ASSERT(std::abs(FVector::Dist(Camera.GetEye(), Target) - Distance) <= 1.e-6 * (Distance + Target.Size()));
	RC_ASSERT(std::abs(Camera.GetPitch()) <= 1.5708);
}

TEST(ViewportCamera, IsRightHandedWithZUp)
{
	FViewportCamera Camera;
	Camera.SetPictureSize(400.0, 300.0);
	Camera.LookAt(FVector::ZeroVector, 100.0, 0.0, 0.0);
	FViewportPoint Left;
	FViewportPoint Up;
	ASSERT_TRUE(Camera.Project({0.0, 10.0, 0.0}, Left));
	ASSERT_TRUE(Camera.Project({0.0, 0.0, 10.0}, Up));
	EXPECT_LT(Left.X, 200.0);
	EXPECT_DOUBLE_EQ(Left.Y, 150.0);
	EXPECT_DOUBLE_EQ(Up.X, 200.0);
	EXPECT_LT(Up.Y, 150.0);
}

TEST(ViewportCamera, DragToTheRightTurnsTheFrontToTheRight)
{
	FViewportCamera Camera;
	Camera.SetPictureSize(400.0, 300.0);
	Camera.LookAt(FVector::ZeroVector, 100.0, 0.0, 0.0);
	Camera.Orbit(20.0, 0.0);
	FViewportPoint Nearer;
	ASSERT_TRUE(Camera.Project({-10.0, 0.0, 0.0}, Nearer));
	EXPECT_GT(Nearer.X, 200.0);
	Camera.Orbit(-20.0, 20.0);
	ASSERT_TRUE(Camera.Project({-10.0, 0.0, 0.0}, Nearer));
	EXPECT_GT(Nearer.Y, 150.0);
}

TEST(ViewportCamera, ShowsNothingBehindTheEye)
{
	FViewportCamera Camera;
	Camera.LookAt(FVector::ZeroVector, 100.0, 0.0, 0.0);
	FViewportPoint Point{-5.0, -6.0};
	EXPECT_FALSE(Camera.Project({-101.0, 0.0, 0.0}, Point));
	EXPECT_EQ(Point.X, -5.0);
	EXPECT_FALSE(Camera.Project(Camera.GetEye(), Point));
}

TEST(ViewportCamera, FramingNothingChangesNothing)
{
	FViewportCamera Camera;
	Camera.LookAt({2.0, 3.0, 5.0}, 70.0, 0.4, -0.3);
	Camera.Frame(FBox(), 10.0);
	EXPECT_EQ(Camera.GetTarget(), FVector(2.0, 3.0, 5.0));
	EXPECT_EQ(Camera.GetDistance(), 70.0);
}
