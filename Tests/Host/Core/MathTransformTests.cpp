// SPDX-License-Identifier: MIT
#include "Core/Transform.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{
const FQuat QuarterTurnZ(FVector::UpVector, PI / 2.0);
}

TEST(Transform, ScalesThenRotatesThenTranslates)
{
	const FTransform Transform(QuarterTurnZ, FVector(500, -200, 30), FVector(2, 3, 5));
	EXPECT_TRUE(Transform.TransformPosition({1, 0, 0}).Equals({500, -198, 30}, 1.e-12));
	EXPECT_TRUE(Transform.TransformPosition({0, 1, 0}).Equals({497, -200, 30}, 1.e-12));
	EXPECT_TRUE(Transform.TransformVector({0, 1, 7}).Equals({-3, 0, 35}, 1.e-12));
}

TEST(Transform, ProductAppliesTheLeftOneFirst)
{
	const FTransform Turn(QuarterTurnZ);
	const FTransform Move(FVector(10, 0, 0));
	EXPECT_TRUE((Turn * Move).TransformPosition({1, 0, 0}).Equals({10, 1, 0}, 1.e-12));
	EXPECT_TRUE((Move * Turn).TransformPosition({1, 0, 0}).Equals({0, 11, 0}, 1.e-12));
}

TEST(Transform, IdentityFactorChangesNoBit)
{
	const FTransform Odd(FRotator(10, 20, 30), FVector(0.1, -0.2, 0.3), FVector(-1.1, 2.2, 0.0));
	EXPECT_EQ(Odd * FTransform::Identity, Odd);
	EXPECT_EQ(FTransform::Identity * Odd, Odd);
	EXPECT_EQ(Odd.GetRelativeTransform(FTransform::Identity), Odd);
}

TEST(Transform, FlattenedShapeTurnedInItsPlaneUnderUnevenScaleIsExact)
{
	// Tilted about its own X axis, a sheet stays a rectangle under uneven scale, with another tilt.
	const FTransform Sheet(FQuat(FVector::ForwardVector, 0.7), FVector(1, 2, 3), FVector(2, 3, 0));
	const FTransform Uneven(FQuat::Identity, FVector(5, 0, 0), FVector(1, 2, 7));
	const FTransform Product = Sheet * Uneven;
	for (const FVector P : {FVector(1, 0, 0), FVector(0, 1, 0), FVector(4, -5, 6)})
	{
		EXPECT_TRUE(Product.TransformPosition(P).Equals(Uneven.TransformPosition(Sheet.TransformPosition(P)), 1.e-13));
	}
	EXPECT_TRUE(Product.GetRelativeTransform(Uneven).Equals(Sheet, 1.e-14));
}

TEST(Transform, LineShapeUnderAnyScaleIsExact)
{
	const FTransform Line(FRotator(10, 25, 40), FVector(1, 2, 3), FVector(0, -3, 0));
	const FTransform Uneven(FRotator(-70, 5, 15), FVector(5, 0, 0), FVector(1, -2, 7));
	const FTransform Product = Line * Uneven;
	for (const FVector P : {FVector(1, 0, 0), FVector(0, 1, 0), FVector(4, -5, 6)})
	{
		EXPECT_TRUE(Product.TransformPosition(P).Equals(Uneven.TransformPosition(Line.TransformPosition(P)), 1.e-13));
	}
	EXPECT_TRUE(Product.GetRelativeTransform(Uneven).Equals(Line, 1.e-13));
}

TEST(Transform, ShearedProductKeepsTheLengthsOfTheAxes)
{
	const FTransform A(FQuat(FVector::UpVector, PI / 4.0), FVector::ZeroVector, FVector(2, 3, 5));
	const FTransform B(FQuat::Identity, FVector::ZeroVector, FVector(1, 7, 1));
	const FVector Scale = (A * B).GetScale3D();
	EXPECT_NEAR(Scale.X, B.TransformVector(A.TransformVector({1, 0, 0})).Size(), 1.e-12);
	EXPECT_NEAR(Scale.Y, B.TransformVector(A.TransformVector({0, 1, 0})).Size(), 1.e-12);
	EXPECT_NEAR(Scale.Z, 5.0, 1.e-12);
}

TEST(Transform, NearlyUniformScaleGivesNearlyThePlainProduct)
{
	const FTransform A(FRotator(10, 20, 30), FVector(1, 2, 3), FVector(2, 3, 5));
	const FTransform Uniform(FRotator(40, 50, 60), FVector::ZeroVector, FVector(2, 2, 2));
	const FTransform Nearly(FRotator(40, 50, 60), FVector::ZeroVector, FVector(2, 2 - 1.e-9, 2 + 1.e-9));
	EXPECT_TRUE((A * Uniform).Equals(A * Nearly, 1.e-7));
	EXPECT_EQ((A * Uniform).GetScale3D(), FVector(4, 6, 10));
}

TEST(Transform, ZeroScaleComponentCountsAsPositive)
{
	const FTransform A(FRotator(0, 90, 0), FVector::ZeroVector, FVector(2, 3, 5));
	const FTransform Flat(FQuat::Identity, FVector::ZeroVector, FVector(-0.0, 4, 1));
	const FTransform Product = A * Flat;
	const FVector P(1, 1, 1);
	EXPECT_TRUE(Product.TransformPosition(P).Equals(Flat.TransformPosition(A.TransformPosition(P)), 1.e-12));
}

TEST(Transform, RelativeToAFlatBaseIsZeroAlongTheLostAxis)
{
	const FTransform Base(FQuat::Identity, FVector(1, 1, 1), FVector(2, 1.e-8, 4));
	const FTransform Relative =
		FTransform(FQuat::Identity, FVector(5, 5, 5), FVector(1, 1, 1)).GetRelativeTransform(Base);
	EXPECT_EQ(Relative.GetTranslation(), FVector(2, 0, 1));
	EXPECT_EQ(Relative.GetScale3D(), FVector(0.5, 0, 0.25));
}

TEST(Transform, ScaleReciprocalIsZeroUpToOneHundredMillionth)
{
	EXPECT_EQ(FTransform::GetSafeScaleReciprocal({1.e-8, -1.e-8, 0}), FVector(0, 0, 0));
	EXPECT_EQ(FTransform::GetSafeScaleReciprocal({2, -4, 1.1e-8}), FVector(0.5, -0.25, 1 / 1.1e-8));
}

TEST(Transform, InverseIgnoresAxesWithoutExtent)
{
	const FTransform Flat(QuarterTurnZ, FVector(100, 0, 0), FVector(2, 0, 5));
	EXPECT_TRUE(Flat.InverseTransformPosition({0, 0, 0}).Equals({0, 0, 0}, 1.e-12));
	EXPECT_TRUE(Flat.InverseTransformPosition({100, 6, 10}).Equals({3, 0, 2}, 1.e-12));
}

TEST(Transform, MatrixRowsAreTheRotatedAxesTimesTheirScale)
{
	const FMatrix Matrix = FTransform(QuarterTurnZ, FVector(7, 11, 13), FVector(2, -3, 5)).ToMatrixWithScale();
	EXPECT_TRUE(Matrix.Equals(FMatrix({0, 2, 0}, {3, 0, 0}, {0, 0, 5}, {7, 11, 13}), 1.e-12));
	EXPECT_EQ(FTransform::Identity.ToMatrixWithScale(), FMatrix::Identity);
}

TEST(Transform, DeterminantIsNegativeForAnOddNumberOfMirrors)
{
	EXPECT_EQ(FTransform(FQuat::Identity, FVector::ZeroVector, {-2, 3, 5}).GetDeterminant(), -30.0);
	EXPECT_EQ(FTransform(FQuat::Identity, FVector::ZeroVector, {-2, -3, 5}).GetDeterminant(), 30.0);
}

TEST(Transform, IsValidRefusesNotANumberAndUnnormalisedRotations)
{
	EXPECT_TRUE(FTransform(FRotator(1, 2, 3), FVector(1, 2, 3), FVector(0, 0, 0)).IsValid());
	EXPECT_FALSE(FTransform(FVector(std::numeric_limits<double>::quiet_NaN(), 0, 0)).IsValid());
	EXPECT_FALSE(FTransform(FQuat(0, 0, 0, 1.01)).IsValid());
	EXPECT_FALSE(FTransform(FQuat(0, 0, 0, 0)).IsValid());
}

TEST(Transform, EqualsTakesAQuaternionAndItsNegativeAsOneRotation)
{
	const FQuat Q = FRotator(10, 20, 30).Quaternion();
	const FTransform A(Q, FVector(1, 2, 3), FVector(2, 3, 5));
	EXPECT_TRUE(A.Equals(FTransform(-Q, FVector(1, 2, 3.00005), FVector(2, 3, 5))));
	EXPECT_FALSE(A.Equals(FTransform(-Q, FVector(1, 2, 3.0002), FVector(2, 3, 5))));
	EXPECT_FALSE(A.Equals(FTransform(Q, FVector(1, 2, 3), FVector(2, 3, 5.0002))));
}
