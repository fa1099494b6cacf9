// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

// Before Core's headers: it has functions named check, which is a macro there.
#include <rapidcheck/gtest.h>

#include "MathGenerators.h"

#include <algorithm>

namespace
{
/// The linear part of A then B, as a matrix.
FMatrix LinearProduct(const FTransform& A, const FTransform& B)
{
	FMatrix Result;
	for (int32 Axis = 0; Axis < 3; ++Axis)
	{
		FVector Unit;
		Unit[Axis] = 1.0;
		const FVector Image = B.TransformVector(A.TransformVector(Unit));
		for (int32 Column = 0; Column < 3; ++Column)
		{
			Result.M[Axis][Column] = Image[Column];
		}
	}
	return Result;
}

/// The largest cosine between two columns that are not zero: how far the product is from being a transform.
double Shear(const FTransform& A, const FTransform& B)
{
	const FMatrix Product = LinearProduct(A, B);
	double Worst = 0.0;
	for (int32 Axis = 0; Axis < 3; ++Axis)
	{
		const FVector U = Product.GetRow(Axis);
		const FVector V = Product.GetRow((Axis + 1) % 3);
		const double Lengths = U.Size() * V.Size();
		Worst = Lengths > 0.0 ? FMath::Max(Worst, FMath::Abs(U | V) / Lengths) : Worst;
	}
	return Worst;
}

/// How far A * B is from A, then B, on points of the unit cube's size, relative to the numbers involved.
double ProductError(const FTransform& A, const FTransform& B)
{
	const FTransform Product = A * B;
	const FVector Reach =
		FVector(A.GetTranslation().GetAbsMax() + 2.0 * A.GetScale3D().GetAbsMax()) * B.GetScale3D().GetAbsMax();
	const double Size = Reach.X + B.GetTranslation().GetAbsMax() + 1.e-300;
	double Worst = 0.0;
	for (const FVector P :
		{FVector(0, 0, 0), FVector(1, 0, 0), FVector(0, 1, 0), FVector(0, 0, 1), FVector(0.3, -0.7, 0.9)})
	{
		const FVector Expected = B.TransformPosition(A.TransformPosition(P));
		Worst = FMath::Max(Worst, (Product.TransformPosition(P) - Expected).GetAbsMax() / Size);
	}
	return Worst;
}

const FVector Signs[8] = {
	{1, 1, 1}, {-1, 1, 1}, {1, -1, 1}, {1, 1, -1}, {-1, -1, 1}, {-1, 1, -1}, {1, -1, -1}, {-1, -1, -1}};
}

TEST(TransformProduct, EveryQuarterTurnAndSignUnderUnevenScaleIsExact)
{
	int32 Count = 0;
	for (int32 Turn = 0; Turn < 64; ++Turn)
	{
		const FQuat Rotation = FRotator(90.0 * (Turn & 3), 90.0 * (Turn >> 2 & 3), 90.0 * (Turn >> 4)).Quaternion();
		for (const FVector& SignsA : Signs)
		{
			for (const FVector& SignsB : Signs)
			{
				const FTransform A(Rotation, FVector(3, -5, 7), SignsA * FVector(2, 0.5, 11));
				const FTransform B(FRotator(20, 50, -70), FVector(-13, 17, 19), SignsB * FVector(1, 2, 3));
				ASSERT_LT(ProductError(A, B), 1.e-15) << "turn " << Turn;
				++Count;
			}
		}
	}
	EXPECT_EQ(Count, 64 * 64);
}

TEST(TransformProduct, PlainProductOfRotationsAndScalesWouldBeWrongUnderAMirror)
{
	const FTransform A(FQuat(FVector::UpVector, 0.5), FVector::ZeroVector, FVector(2, 3, 5));
	const FTransform B(FQuat::Identity, FVector::ZeroVector, FVector(-1, 1, 1));
	const FVector P(7, 11, 13);
	const FVector Expected = B.TransformPosition(A.TransformPosition(P));

	EXPECT_TRUE((A * B).TransformPosition(P).Equals(Expected, 1.e-12));
	const FTransform Plain(B.GetRotation() * A.GetRotation(), FVector::ZeroVector, A.GetScale3D() * B.GetScale3D());
	EXPECT_GT((Plain.TransformPosition(P) - Expected).Size(), 1.0);
}

RC_GTEST_PROP(TransformProduct, EqualsBothInTurnUnderUniformScaleOfAnySigns, ())
{
	const FTransform A = *MathGenerators::Transform(MathGenerators::AnyScale());
	FTransform B = *MathGenerators::Transform(MathGenerators::NonZeroScale());
	const FVector Scale = B.GetScale3D();
	const double S = Scale.X;
	B.SetScale3D({S, std::copysign(S, Scale.Y), std::copysign(S, Scale.Z)});
	RC_ASSERT(ProductError(A, B) < 1.e-14);
}

RC_GTEST_PROP(TransformProduct, EqualsBothInTurnWheneverItIsATransform, ())
{
	// Plane turns, axis turns and zero scales make products without shear common even under uneven scale.
	const FTransform A = *MathGenerators::Transform(MathGenerators::AnyScale());
	const FTransform B = *MathGenerators::Transform(MathGenerators::AnyScale());
	RC_PRE(Shear(A, B) < 1.e-14);
	RC_ASSERT(ProductError(A, B) < 1.e-12);
}

RC_GTEST_PROP(TransformProduct, MovesTheOriginExactlyEvenWithShear, ())
{
	const FTransform A = *MathGenerators::Transform(MathGenerators::AnyScale());
	const FTransform B = *MathGenerators::Transform(MathGenerators::AnyScale());
	RC_ASSERT((A * B).GetTranslation() == B.TransformPosition(A.GetTranslation()));
}

RC_GTEST_PROP(TransformProduct, KeepsTheHandednessEvenWithShear, ())
{
	const FTransform A = *MathGenerators::Transform(MathGenerators::NonZeroScale());
	const FTransform B = *MathGenerators::Transform(MathGenerators::NonZeroScale());
	RC_ASSERT(((A * B).GetDeterminant() < 0.0) == ((A.GetDeterminant() < 0.0) != (B.GetDeterminant() < 0.0)));
}

RC_GTEST_PROP(TransformProduct, StaysNormalisedOverLongChainsOfSinglePrecisionRotations, ())
{
	FTransform Chain = *MathGenerators::Transform(MathGenerators::NonZeroScale(0.9, 1.1));
	const FQuat Q = *MathGenerators::GeneralTurn();
	const auto Rounded = [](double Value) { return static_cast<double>(static_cast<float>(Value)); };
	const FTransform Step(FQuat(Rounded(Q.X), Rounded(Q.Y), Rounded(Q.Z), Rounded(Q.W)));
	for (int32 Index = 0; Index < 1000; ++Index)
	{
		Chain = Index % 3 == 0 ? Chain.GetRelativeTransform(Step) : Chain * Step;
	}
	RC_ASSERT(FMath::IsNearlyEqual(Chain.GetRotation().SizeSquared(), 1.0, 1.e-11));
}

RC_GTEST_PROP(RelativeTransform, GivesBackWhatWasMultipliedShearedOrNot, ())
{
	const FTransform A = *MathGenerators::Transform(MathGenerators::AnyScale());
	const FTransform B = *MathGenerators::Transform(MathGenerators::NonZeroScale());
	const FTransform Relative = (A * B).GetRelativeTransform(B);

	// Far from B's origin the position itself is only as good as the rounding of the largest number.
	const double Unevenness = B.GetScale3D().GetAbsMax() / B.GetScale3D().GetAbsMin();
	const double Reach =
		A.GetTranslation().GetAbsMax() * Unevenness + B.GetTranslation().GetAbsMax() / B.GetScale3D().GetAbsMin();
	RC_ASSERT(Relative.GetTranslation().Equals(A.GetTranslation(), 1.e-14 * Reach + 1.e-15));

	// Only a flattened shape's frame is made orthogonal again, which loses digits where B is very uneven. A small
	// factor across a large scale is as good as the rounding of the large one.
	const bool bFlattened = A.GetDeterminant() == 0.0;
	const double Tolerance = bFlattened ? 1.e-14 * Unevenness * Unevenness : 1.e-14;
	RC_ASSERT(Relative.GetRotation().Equals(A.GetRotation(), Tolerance));
	RC_ASSERT(Relative.GetScale3D().Equals(A.GetScale3D(), Tolerance * Unevenness * A.GetScale3D().GetAbsMax()));
}

RC_GTEST_PROP(RelativeTransform, ReachesAnyWorldTransformThatNeedsNoShear, ())
{
	const FTransform World = *MathGenerators::Transform(MathGenerators::AnyScale());
	FTransform Base = *MathGenerators::Transform(MathGenerators::NonZeroScale());
	const FVector Scale = Base.GetScale3D();
	Base.SetScale3D({Scale.X, std::copysign(Scale.X, Scale.Y), std::copysign(Scale.X, Scale.Z)});

	const FTransform Again = World.GetRelativeTransform(Base) * Base;
	const double Reach = World.GetTranslation().GetAbsMax() + Base.GetTranslation().GetAbsMax() + 1.0;
	RC_ASSERT(Again.GetTranslation().Equals(World.GetTranslation(), 1.e-14 * Reach));
	RC_ASSERT(Again.GetRotation().Equals(World.GetRotation(), 1.e-14));
	RC_ASSERT(Again.GetScale3D().Equals(World.GetScale3D(), 1.e-14 * (World.GetScale3D().GetAbsMax() + 1.0)));
}

RC_GTEST_PROP(TransformSplit, ResidualAfterBakeGivesBackTheWorldTransform, ())
{
	const FTransform World = *MathGenerators::Transform(MathGenerators::AnyScale());
	const FTransform Bake(World.GetRotation(), FVector::ZeroVector, World.GetScale3D());
	const FTransform Residual(World.GetTranslation());

	const FVector P = *MathGenerators::Point();
	const double Reach = World.GetTranslation().GetAbsMax() + 2.0 * (World.GetScale3D() * P).Size() + 1.0;
	RC_ASSERT(Residual.TransformPosition(Bake.TransformPosition(P)).Equals(World.TransformPosition(P), 1.e-15 * Reach));
	RC_ASSERT(Bake * Residual == World);
}

RC_GTEST_PROP(TransformMatrix, MapsPointsAsTheTransformDoes, ())
{
	const FTransform Transform = *MathGenerators::Transform(MathGenerators::AnyScale());
	const FVector P = *MathGenerators::Point();
	const double Reach = Transform.GetTranslation().GetAbsMax() + 3.0 * (Transform.GetScale3D() * P).Size() + 1.0;
	RC_ASSERT(
		Transform.ToMatrixWithScale().TransformPosition(P).Equals(Transform.TransformPosition(P), 1.e-14 * Reach));
	const double Volume =
		Transform.GetScale3D().GetAbs().X * Transform.GetScale3D().GetAbs().Y * Transform.GetScale3D().GetAbs().Z;
	RC_ASSERT(FMath::IsNearlyEqual(
		Transform.ToMatrixWithScale().LinearDeterminant(), Transform.GetDeterminant(), 1.e-13 * (Volume + 1.e-3)));
}

RC_GTEST_PROP(TransformInverse, TakesTransformedPointsBack, ())
{
	const FTransform Transform = *MathGenerators::Transform(MathGenerators::NonZeroScale());
	const FVector P = *MathGenerators::Point();
	const double Reach = Transform.GetTranslation().GetAbsMax() + 2.0 * (Transform.GetScale3D() * P).Size();
	const double Tolerance = 1.e-14 * (Reach / Transform.GetScale3D().GetAbsMin() + 1.0);
	RC_ASSERT(Transform.InverseTransformPosition(Transform.TransformPosition(P)).Equals(P, Tolerance));
}
