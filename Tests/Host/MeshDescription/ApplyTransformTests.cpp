// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

// Before Core's headers: it has functions named check, which is a macro there.
#include <rapidcheck/gtest.h>

#include "../Core/MathGenerators.h"
#include "MeshShapes.h"

#include <bit>
#include <limits>

namespace
{
constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();

FMeshDescription Transformed(FMeshDescription Mesh, const FTransform& Transform)
{
	FStaticMeshOperations::ApplyTransform(Mesh, Transform.ToMatrixWithScale());
	return Mesh;
}

/// A transform that only scales and turns.
FTransform Bake(const FVector& Scale, const FQuat& Rotation = FQuat::Identity)
{
	return FTransform(Rotation, FVector::ZeroVector, Scale);
}

template <typename FunctionType>
void ForCorners(const FMeshDescription& Mesh, const FunctionType& Function)
{
	for (const FTriangleID Triangle : Mesh.Triangles().GetElementIDs())
	{
		for (const FVertexInstanceID Corner : Mesh.GetTriangleVertexInstances(Triangle))
		{
			Function(Triangle, Corner);
		}
	}
}

bool SameBits(const FVector3f& A, const FVector3f& B)
{
	return std::bit_cast<std::array<uint32, 3>>(A) == std::bit_cast<std::array<uint32, 3>>(B);
}

/// One vertex with one instance of this normal.
FMeshDescription WithNormal(const FVector3f& Normal)
{
	FMeshDescription Mesh;
	Mesh.SetVertexInstanceNormal(Mesh.CreateVertexInstance(Mesh.CreateVertex()), Normal);
	return Mesh;
}

FVector3f NormalAfter(const FVector3f& Normal, const FMatrix& Matrix, bool bCorrect = true)
{
	FMeshDescription Mesh = WithNormal(Normal);
	FStaticMeshOperations::ApplyTransform(Mesh, Matrix, bCorrect);
	return Mesh.GetVertexInstanceNormal(FVertexInstanceID(0));
}
}

TEST(ApplyTransform, UniformScaleKeepsCountsAndMovesEveryVertexTenTimesAsFar)
{
	const FMeshDescription Before = MeshShapes::Box({-1, -2, -3}, {5, 7, 11});
	const FMeshDescription After = Transformed(Before, Bake({10, 10, 10}));
	EXPECT_EQ(After.Vertices().Num(), 8);
	EXPECT_EQ(After.Triangles().Num(), 12);
	for (const FVertexID Vertex : After.Vertices().GetElementIDs())
	{
		EXPECT_EQ(FVector(After.GetVertexPosition(Vertex)), FVector(Before.GetVertexPosition(Vertex)) * 10.0);
	}
}

TEST(ApplyTransform, MatrixTakesPositionsWithItsTranslation)
{
	FMeshDescription Mesh;
	Mesh.CreateVertex({2.f, 3.f, 5.f});
	FStaticMeshOperations::ApplyTransform(Mesh, FMatrix({0, 2, 0}, {0, 0, 3}, {5, 0, 0}, {7, 11, 13}));
	EXPECT_EQ(Mesh.GetVertexPosition(FVertexID(0)), FVector3f(32.f, 15.f, 22.f));
}

TEST(ApplyTransform, RotationTurnsSlantedNormalsByItsAngleAndKeepsThoseOnItsAxis)
{
	const FMatrix QuarterTurn = Bake({1, 1, 1}, FQuat(FVector::UpVector, PI / 2.0)).ToMatrixWithScale();
	EXPECT_EQ(NormalAfter({0.f, 0.f, 1.f}, QuarterTurn), FVector3f(0.f, 0.f, 1.f));
	EXPECT_TRUE(NormalAfter({0.6f, 0.f, 0.8f}, QuarterTurn).Equals({0.f, 0.6f, 0.8f}, 1.e-7f));
}

TEST(ApplyTransform, MirrorNegatesBinormalSignsAndKeepsGeometricNormalsOutside)
{
	const FMeshDescription Before = MeshShapes::Box({-1, -2, -3}, {5, 7, 11});
	const FMeshDescription After = Transformed(Before, Bake({-1, 1, 1}));
	EXPECT_EQ(After.GetVertexPosition(FVertexID(1)), FVector3f(-5.f, -2.f, -3.f));
	EXPECT_EQ(FStaticMeshOperations::ComputeTriangleNormal(After, FTriangleID(2)), FVector::UpVector);
	EXPECT_DOUBLE_EQ(
		FStaticMeshOperations::ComputeSignedVolume(After), FStaticMeshOperations::ComputeSignedVolume(Before));
	const FTriangleCorners Old = Before.GetTriangleVertexInstances(FTriangleID(2));
	EXPECT_EQ(After.GetTriangleVertexInstances(FTriangleID(2)), (FTriangleCorners{Old[0], Old[2], Old[1]}));
	for (const FVertexInstanceID Instance : After.VertexInstances().GetElementIDs())
	{
		EXPECT_EQ(After.GetVertexInstanceBinormalSign(Instance), -1.f);
	}
	ForCorners(After,
		[&](FTriangleID Triangle, FVertexInstanceID Corner)
		{
			EXPECT_EQ(FVector(After.GetVertexInstanceNormal(Corner)),
				FStaticMeshOperations::ComputeTriangleNormal(After, Triangle));
		});
}

TEST(ApplyTransform, TwoMirrorsAreATurnAndKeepSignsAndWinding)
{
	const FMeshDescription Before = MeshShapes::Wedge();
	const FMeshDescription After = Transformed(Before, Bake({-2, -3, 5}));
	EXPECT_EQ(After.GetTriangleVertexInstances(FTriangleID(1)), Before.GetTriangleVertexInstances(FTriangleID(1)));
	EXPECT_EQ(After.GetVertexInstanceBinormalSign(FVertexInstanceID(0)), -1.f);
}

TEST(ApplyTransform, TinyMirrorIsStillAMirror)
{
	const FMeshDescription After = Transformed(MeshShapes::Wedge(), Bake({-1.1e-8, 2.e-8, 3.e-8}));
	EXPECT_EQ(After.GetVertexInstanceBinormalSign(FVertexInstanceID(0)), 1.f);
}

TEST(ApplyTransform, NormalsOfASlantGoByTheInverseTranspose)
{
	// A slope of 45 degrees, stretched to twice its height.
	const float Half = std::sqrt(0.5f);
	const FMatrix Stretch = Bake({1, 1, 2}).ToMatrixWithScale();
	const FVector Steep = FVector(2, 0, 1).GetSafeNormal();
	EXPECT_TRUE(NormalAfter({Half, 0.f, Half}, Stretch).Equals(FVector3f(Steep), 1.e-7f));
	const FVector AlongLinear = FVector(1, 0, 2).GetSafeNormal();
	EXPECT_TRUE(NormalAfter({Half, 0.f, Half}, Stretch, false).Equals(FVector3f(AlongLinear), 1.e-7f));
}

RC_GTEST_PROP(ApplyTransform, NormalsStayPerpendicularOutsideAndOfLengthOne, ())
{
	const FTransform Transform = *MathGenerators::Transform(MathGenerators::NonZeroScale());
	const FMeshDescription Mesh =
		Transformed(MeshShapes::Wedge(), Bake(Transform.GetScale3D(), Transform.GetRotation()));
	RC_ASSERT(FStaticMeshOperations::ComputeSignedVolume(Mesh) > 0.0);
	ForCorners(Mesh,
		[&Mesh](FTriangleID Triangle, FVertexInstanceID Corner)
		{
			const FVector Normal(Mesh.GetVertexInstanceNormal(Corner));
			const FVector Tangent(Mesh.GetVertexInstanceTangent(Corner));
			const FVector Geometric = FStaticMeshOperations::ComputeTriangleNormal(Mesh, Triangle);
			// Positions of single precision, stretched by up to 400, fix a normal only so far.
			RC_ASSERT((Normal - Geometric).Size() < 1.e-3);
			RC_ASSERT(FMath::Abs(Normal.Size() - 1.0) < 1.2e-7);
			RC_ASSERT(FMath::Abs(Tangent.Size() - 1.0) < 1.2e-7);
			// Normals were rounded once and are stretched across the surface at most by the ratio of two scales.
			RC_ASSERT(FMath::Abs(Normal | Tangent) < 400.0 * 2.e-7);
		});
}

RC_GTEST_PROP(ApplyTransform, PositionsAreThoseOfTheTransformRoundedOnce, ())
{
	const FTransform Transform = *MathGenerators::Transform(MathGenerators::AnyScale());
	const FMatrix Matrix = Transform.ToMatrixWithScale();
	FMeshDescription Mesh;
	const int32 Num = *rc::gen::inRange(0, 100);
	std::vector<FVector3f> Points;
	for (int32 Index = 0; Index < Num; ++Index)
	{
		Points.push_back(FVector3f(*MathGenerators::Point()));
		Mesh.CreateVertex(Points.back());
	}
	FStaticMeshOperations::ApplyTransform(Mesh, Matrix);
	for (int32 Index = 0; Index < Num; ++Index)
	{
		const FVector3f Expected(Matrix.TransformPosition(FVector(Points[static_cast<std::size_t>(Index)])));
		RC_ASSERT(SameBits(Mesh.GetVertexPosition(FVertexID(Index)), Expected));
	}
}

TEST(ApplyTransform, WithoutTurnOrStretchDirectionsStayBitForBit)
{
	FMeshDescription Before = MeshShapes::Wedge();
	Before.SetVertexInstanceNormal(FVertexInstanceID(0), {0.3f, 0.2f, 0.1f});
	Before.SetVertexInstanceTangent(FVertexInstanceID(1), {-0.f, NotANumber, 0.1f});
	for (const double Scale : {1.0, 3.0})
	{
		const FTransform Transform(FQuat::Identity, FVector(0.1, -2, 3), FVector(Scale));
		const FMeshDescription After = Transformed(Before, Transform);
		EXPECT_FALSE(SameBits(After.GetVertexPosition(FVertexID(0)), Before.GetVertexPosition(FVertexID(0))));
		ForCorners(Before,
			[&](FTriangleID, FVertexInstanceID Corner)
			{
				EXPECT_TRUE(SameBits(After.GetVertexInstanceNormal(Corner), Before.GetVertexInstanceNormal(Corner)));
				EXPECT_TRUE(SameBits(After.GetVertexInstanceTangent(Corner), Before.GetVertexInstanceTangent(Corner)));
			});
	}
}

TEST(ApplyTransform, IdentityChangesNoBitAtAll)
{
	FMeshDescription Mesh = MeshShapes::Wedge();
	Mesh.SetVertexPosition(FVertexID(0), {-0.f, NotANumber, Infinity});
	const FMeshDescription Before = Mesh;
	FStaticMeshOperations::ApplyTransform(Mesh, FMatrix::Identity);
	EXPECT_TRUE(Mesh == Before);
}

TEST(ApplyTransform, ZeroAndUnreadableDirectionsStayBitForBitAmongOthers)
{
	const FVector3f Odd[] = {{0.f, -0.f, 0.f}, {NotANumber, 0.f, 1.f}, {std::bit_cast<float>(0xffa12345u), 1.f, 2.f},
		{0.f, Infinity, 0.f}, {-Infinity, Infinity, 1.f}};
	for (const FVector3f& Direction : Odd)
	{
		for (int32 Place = 0; Place < 40; ++Place)
		{
			FMeshDescription Mesh;
			const FVertexID Vertex = Mesh.CreateVertex();
			for (int32 Index = 0; Index < 40; ++Index)
			{
				const FVector3f Value = Index == Place ? Direction : FVector3f(0.f, 0.6f, 0.8f);
				const FVertexInstanceID Instance = Mesh.CreateVertexInstance(Vertex);
				Mesh.SetVertexInstanceNormal(Instance, Value);
				Mesh.SetVertexInstanceTangent(Instance, Value);
			}
			const FMeshDescription After = Transformed(Mesh, Bake({1, -1, 1}));
			for (int32 Index = 0; Index < 40; ++Index)
			{
				const FVector3f Expected = Index == Place ? Direction : FVector3f(0.f, -0.6f, 0.8f);
				ASSERT_TRUE(SameBits(After.GetVertexInstanceNormal(FVertexInstanceID(Index)), Expected)) << Place;
				ASSERT_TRUE(SameBits(After.GetVertexInstanceTangent(FVertexInstanceID(Index)), Expected)) << Place;
			}
		}
	}
}

TEST(ApplyTransform, DirectionsSurviveTinyHugeAndVeryUnevenScales)
{
	const FVector3f Slant(0.6f, 0.f, 0.8f);
	for (const double Scale : {1.1e-8, 1.e-30, 1.e30, 1.e-150, -1.e-150, 1.e200, -1.e200})
	{
		const FMatrix Even = Bake({Scale, -Scale, Scale}).ToMatrixWithScale();
		const float Side = Scale > 0.0 ? 1.f : -1.f;
		EXPECT_TRUE(NormalAfter(Slant, Even).Equals(Slant * Side, 1.e-7f)) << Scale;
	}
	const FMatrix Uneven = Bake({1.1e-8, 1.0, 1.e30}).ToMatrixWithScale();
	const double Leaning = static_cast<double>(Slant.Z) / static_cast<double>(Slant.X) * 1.1e-38;
	EXPECT_EQ(NormalAfter(Slant, Uneven), FVector3f(FVector(1.0, 0.0, Leaning)));
	EXPECT_EQ(NormalAfter({0.f, 0.f, 1.f}, Uneven), FVector3f(0.f, 0.f, 1.f));
	EXPECT_EQ(NormalAfter({0.f, 1.e-30f, 0.f}, Uneven), FVector3f(0.f, 1.f, 0.f));
	EXPECT_EQ(NormalAfter({0.f, -3.e38f, 0.f}, Uneven), FVector3f(0.f, -1.f, 0.f));
	EXPECT_EQ(NormalAfter({1.e-45f, 0.f, 0.f}, Uneven), FVector3f(1.f, 0.f, 0.f));
	const FMatrix Thin = Bake({1.e-200, 1.e-200, 1.0}).ToMatrixWithScale();
	EXPECT_EQ(NormalAfter({0.f, 4.f, 0.f}, Thin), FVector3f(0.f, 1.f, 0.f));
}

TEST(ApplyTransform, FlatteningGivesTheNormalOfThePlaneAndKeepsWhatHasNone)
{
	const FMatrix Flat = Bake({2, 3, 0}).ToMatrixWithScale();
	EXPECT_EQ(NormalAfter({0.6f, 0.f, 0.8f}, Flat), FVector3f(0.f, 0.f, 1.f));
	EXPECT_EQ(NormalAfter({1.f, 0.f, 0.f}, Flat), FVector3f(1.f, 0.f, 0.f));
	const FMatrix Line = Bake({2, 0, 0}).ToMatrixWithScale();
	EXPECT_EQ(NormalAfter({0.6f, 0.f, 0.8f}, Line), FVector3f(0.6f, 0.f, 0.8f));
}

TEST(ApplyTransform, PositionsBeyondSinglePrecisionAreInfiniteAndNeverSomethingElse)
{
	FMeshDescription Mesh;
	for (int32 Index = 0; Index < 20; ++Index)
	{
		Mesh.CreateVertex({2.f, -3.e38f, 1.e-30f});
	}
	FStaticMeshOperations::ApplyTransform(Mesh, Bake({1.e30, 5, 1.e30}).ToMatrixWithScale());
	for (const FVertexID Vertex : Mesh.Vertices().GetElementIDs())
	{
		EXPECT_EQ(Mesh.GetVertexPosition(Vertex), FVector3f(2.e30f, -Infinity, 1.f));
	}
}

TEST(ApplyTransform, GapsAndMissingAttributesStayAsTheyAre)
{
	FMeshDescription Mesh;
	Mesh.CreateVertex({2.f, 3.f, 5.f});
	Mesh.CreateVertexWithID(FVertexID(1000), {7.f, 11.f, 13.f});
	const FVertexInstanceID Instance = Mesh.CreateVertexInstance(FVertexID(1000));
	Mesh.SetVertexInstanceUV(Instance, 0, {0.25f, 0.5f});
	FStaticMeshOperations::ApplyTransform(Mesh, Bake({-1, 2, 3}).ToMatrixWithScale());
	EXPECT_EQ(Mesh.Vertices().Num(), 2);
	EXPECT_FALSE(Mesh.Vertices().IsValid(FVertexID(500)));
	EXPECT_EQ(Mesh.GetVertexPosition(FVertexID(1000)), FVector3f(-7.f, 22.f, 39.f));
	EXPECT_EQ(Mesh.GetAttributes(), EVertexInstanceAttributes::None);
	EXPECT_TRUE(Mesh.GetNormals().empty() && Mesh.GetTangents().empty() && Mesh.GetBinormalSigns().empty());
	EXPECT_EQ(Mesh.GetVertexInstanceUV(Instance, 0), FVector2f(0.25f, 0.5f));
}

TEST(ApplyTransform, OfAnEmptyMeshDoesNothing)
{
	FMeshDescription Mesh;
	FStaticMeshOperations::ApplyTransform(Mesh, Bake({-1, 2, 3}).ToMatrixWithScale());
	EXPECT_TRUE(Mesh == FMeshDescription());
}
