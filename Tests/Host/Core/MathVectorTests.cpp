// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

// Before Core's headers: it has functions named check, which is a macro there.
#include <rapidcheck/gtest.h>

#include "MathGenerators.h"

#include "Core/Box.h"

#include <limits>
#include <type_traits>

static_assert(std::is_trivial_v<FVector3f> && sizeof(FVector3f) == 12, "Mesh arrays hold plain coordinates");
static_assert(std::is_trivial_v<FVector2f> && sizeof(FVector2f) == 8);
static_assert(std::is_trivial_v<FVector4f> && sizeof(FVector4f) == 16);
static_assert(KINDA_SMALL_NUMBER == 9.999999747378752e-05, "Single precision, widened");

TEST(Vector, DotAndCrossFollowTheAxes)
{
	EXPECT_EQ(FVector(2, 3, 5) | FVector(7, -11, 13), 46.0);
	EXPECT_EQ(FVector(1, 0, 0) ^ FVector(0, 1, 0), FVector(0, 0, 1));
	EXPECT_EQ(FVector(2, 3, 5) ^ FVector(7, -11, 13), FVector(94, 9, -43));
}

TEST(Vector, ArithmeticIsPerComponent)
{
	const FVector A(2, 3, 5), B(7, -11, 13);
	EXPECT_EQ(A + B, FVector(9, -8, 18));
	EXPECT_EQ(A - B, FVector(-5, 14, -8));
	EXPECT_EQ(A * B, FVector(14, -33, 65));
	EXPECT_EQ(B / FVector(7, 11, 2), FVector(1, -1, 6.5));
	EXPECT_EQ(2.0 * A, A + A);
	EXPECT_EQ(-A, FVector(-2, -3, -5));
}

TEST(Vector, SizesAndExtremes)
{
	EXPECT_EQ(FVector(2, -3, 6).Size(), 7.0);
	EXPECT_EQ(FVector(2, -3, 6).GetMin(), -3.0);
	EXPECT_EQ(FVector(2, -3, 6).GetMax(), 6.0);
	EXPECT_EQ(FVector(2, -7, 6).GetAbsMax(), 7.0);
	EXPECT_EQ(FVector(2, -7, 6).GetAbsMin(), 2.0);
	EXPECT_EQ(FVector(0, -4, 3).GetSafeNormal(), FVector(0, -0.8, 0.6));
	EXPECT_EQ(FVector(0, 1.e-5, 0).GetSafeNormal(), FVector::ZeroVector);
}

TEST(Vector, ToleranceIsInclusiveAndNeverHoldsForNotANumber)
{
	EXPECT_TRUE(FVector(1, 2, 3).Equals({1, 2, 3.5}, 0.5));
	EXPECT_FALSE(FVector(1, 2, 3).Equals({1, 2, 3.5}, 0.49));
	const double NotANumber = std::numeric_limits<double>::quiet_NaN();
	EXPECT_FALSE(FVector(NotANumber, 2, 3).Equals({NotANumber, 2, 3}, 1.e9));
	EXPECT_TRUE(FVector(0, NotANumber, 0).ContainsNaN());
	EXPECT_TRUE(FVector(0, 0, std::numeric_limits<double>::infinity()).ContainsNaN());
	EXPECT_FALSE(FVector(0, 1, 2).ContainsNaN());
}

TEST(Vector, IndexNamesTheComponents)
{
	FVector V(2, 3, 5);
	V[1] = 7;
	EXPECT_EQ(V[0], 2.0);
	EXPECT_EQ(V[1], 7.0);
	EXPECT_EQ(V[2], 5.0);
}

TEST(Vector, TextHasThreeDecimals)
{
	EXPECT_TRUE(FVector(1, -0.0006, 1234.5).ToString() == TEXT("X=1.000 Y=-0.001 Z=1234.500"));
}

TEST(Vector, SinglePrecisionRoundsOnce)
{
	EXPECT_EQ(FVector3f(FVector(0.1, 1.0 + 0x1p-24, 1.0 + 0x1.8p-23)), FVector3f(0.1f, 1.0f, 1.0f + 0x1p-22f));
	EXPECT_EQ(FVector(FVector3f(0.1f, 2.f, 3.f)), FVector(static_cast<double>(0.1f), 2, 3));
}

TEST(Matrix, ProductAppliesTheLeftOneFirst)
{
	const FMatrix Stretch({2, 0, 0}, {0, 3, 0}, {0, 0, 5}, {0, 0, 0});
	const FMatrix Move({1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {7, 11, 13});
	EXPECT_EQ((Stretch * Move).TransformPosition({1, 1, 1}), FVector(9, 14, 18));
	EXPECT_EQ((Move * Stretch).TransformPosition({1, 1, 1}), FVector(16, 36, 70));
	EXPECT_EQ((Move * Stretch).TransformVector({1, 1, 1}), FVector(2, 3, 5));
}

TEST(Matrix, DeterminantCountsEveryRow)
{
	FMatrix Matrix({2, 1, 0}, {0, 3, 1}, {1, 0, 5}, {7, 11, 13});
	EXPECT_EQ(Matrix.LinearDeterminant(), 31.0);
	EXPECT_EQ(Matrix.Determinant(), 31.0);
	Matrix.M[3][3] = 2.0;
	EXPECT_EQ(Matrix.Determinant(), 62.0);
	Matrix.M[0][3] = 1.0;
	EXPECT_DOUBLE_EQ(Matrix.Determinant(), 62.0 - (7 * 15 + 11 * 1 + 13 * -3));
}

TEST(Matrix, SingularOrInfiniteHasNoInverse)
{
	FMatrix Result({2, 0, 0}, {0, 3, 0}, {0, 0, 5}, {0, 0, 0});
	const FMatrix Before = Result;
	EXPECT_FALSE(FMatrix({1, 2, 3}, {2, 4, 6}, {0, 0, 1}, {0, 0, 0}).TryInverse(Result));
	EXPECT_FALSE(FMatrix({1, 0, 0}, {0, HUGE_VAL, 0}, {0, 0, 1}, {0, 0, 0}).TryInverse(Result));
	EXPECT_FALSE(FMatrix({0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}).TryInverse(Result));
	EXPECT_EQ(Result, Before);
}

RC_GTEST_PROP(Matrix, InverseTakesPointsBack, ())
{
	const FTransform First = *MathGenerators::Transform(MathGenerators::NonZeroScale());
	const FTransform Second = *MathGenerators::Transform(MathGenerators::NonZeroScale());
	const FMatrix Matrix = First.ToMatrixWithScale() * Second.ToMatrixWithScale();
	const FVector P = *MathGenerators::Point();
	const FVector There = Matrix.TransformPosition(P);
	const double Reach = There.GetAbsMax() + Matrix.GetOrigin().GetAbsMax() + 1.0;
	// The scales lie between 1/20 and 20, twice.
	RC_ASSERT(Matrix.Inverse().TransformPosition(There).Equals(P, 1.e-13 * Reach * 400.0));
}

TEST(Box, IsEmptyAndInvalidUntilSomethingIsAdded)
{
	FBox Box;
	EXPECT_FALSE(Box.IsValid);
	EXPECT_EQ(Box.Min, FVector::ZeroVector);
	Box += FVector(5, -6, 7);
	EXPECT_EQ(Box, FBox({5, -6, 7}, {5, -6, 7}));
	Box += FVector(2, 3, 9);
	EXPECT_EQ(Box, FBox({2, -6, 7}, {5, 3, 9}));
	Box += FBox();
	EXPECT_EQ(Box, FBox({2, -6, 7}, {5, 3, 9}));
	Box.Init();
	EXPECT_EQ(Box, FBox());
}

TEST(Box, CenterExtentAndSize)
{
	const FBox Box({-50, -20, 0}, {50, 20, 100});
	EXPECT_EQ(Box.GetCenter(), FVector(0, 0, 50));
	EXPECT_EQ(Box.GetExtent(), FVector(50, 20, 50));
	EXPECT_EQ(Box.GetSize(), FVector(100, 40, 100));
}

TEST(Box, InsideIncludesTheSurface)
{
	const FBox Box({0, 0, 0}, {2, 3, 5});
	EXPECT_TRUE(Box.IsInside(FVector(2, 3, 5)));
	EXPECT_FALSE(Box.IsInside(FVector(2, 3.1, 5)));
	EXPECT_FALSE(FBox().IsInside(FVector::ZeroVector));
	EXPECT_TRUE(Box.IsInside(FBox({0, 1, 2}, {2, 2, 3})));
	EXPECT_FALSE(Box.IsInside(FBox({0, 1, 2}, {2, 2, 6})));
	EXPECT_TRUE(Box.Intersect(FBox({2, 3, 5}, {9, 9, 9})));
	EXPECT_FALSE(Box.Intersect(FBox({2.1, 0, 0}, {9, 9, 9})));
}

TEST(Box, StaysInvalidAndExactUnderTransforms)
{
	EXPECT_FALSE(FBox().TransformBy(FTransform(FVector(1, 2, 3))).IsValid);
	const FBox Box({0.1, -0.7, 0.3}, {0.9, 0.2, 0.35});
	EXPECT_EQ(Box.TransformBy(FTransform::Identity), Box);
	EXPECT_EQ(FBox({1, 2, 3}, {4, 6, 8}).TransformBy(FTransform(FQuat::Identity, {10, 0, 0}, {-1, 2, 0})),
		FBox({6, 4, 0}, {9, 12, 0}));
}

RC_GTEST_PROP(Box, TransformedHoldsExactlyItsTransformedCorners, ())
{
	const FTransform Transform = *MathGenerators::Transform(MathGenerators::AnyScale());
	FBox Box;
	Box += *MathGenerators::Point();
	Box += *MathGenerators::Point();
	FBox Corners;
	for (int32 Corner = 0; Corner < 8; ++Corner)
	{
		Corners += Transform.TransformPosition({Corner & 1 ? Box.Min.X : Box.Max.X, Corner & 2 ? Box.Min.Y : Box.Max.Y,
			Corner & 4 ? Box.Min.Z : Box.Max.Z});
	}
	const FBox Result = Box.TransformBy(Transform);
	const double Tolerance = 1.e-13 * (Corners.Min.GetAbsMax() + Corners.Max.GetAbsMax() +
										  Box.Min.GetAbsMax() * Transform.GetScale3D().GetAbsMax() +
										  Box.Max.GetAbsMax() * Transform.GetScale3D().GetAbsMax() + 1.0);
	RC_ASSERT(Result.Min.Equals(Corners.Min, Tolerance) && Result.Max.Equals(Corners.Max, Tolerance));
}
