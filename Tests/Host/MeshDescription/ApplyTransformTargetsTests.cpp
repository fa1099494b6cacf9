// SPDX-License-Identifier: MIT
#include "MeshShapes.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>
#include <tbb/global_control.h>

#include <bit>
#include <cmath>
#include <random>

namespace
{
/// Restores the choice of instruction sets when it goes.
struct FChosenTarget
{
	explicit FChosenTarget(int64_t Target) { hwy::SetSupportedTargetsForTest(Target); }
	~FChosenTarget() { hwy::SetSupportedTargetsForTest(0); }
};

/// Positions, normals and tangents over all magnitudes, with zeros, infinities and NaNs strewn in.
FMeshDescription RandomMesh(int32 Num, uint32 Seed)
{
	std::mt19937 Random(Seed);
	const auto Unit = [&Random] { return static_cast<float>(static_cast<double>(Random()) / 2147483648.0 - 1.0); };
	const auto AnyBits = [&Random] { return std::bit_cast<float>(static_cast<uint32>(Random())); };
	const auto Direction = [&](int32 Index)
	{
		return Index % 37 == 5 ? FVector3f(AnyBits(), AnyBits(), AnyBits())
							   : (Index % 41 == 7 ? FVector3f(0.f, 0.f, 0.f) : FVector3f(Unit(), Unit(), Unit()));
	};
	FMeshDescription Mesh;
	Mesh.AddAttributes(EVertexInstanceAttributes::All);
	const FPolygonGroupID Group = Mesh.CreatePolygonGroup();
	Mesh.AppendVertices(Num);
	Mesh.AppendVertexInstances(Num);
	for (int32 Index = 0; Index < Num; ++Index)
	{
		const std::size_t Slot = static_cast<std::size_t>(Index);
		Mesh.GetVertexPositions()[Slot] = Direction(Index) * (Index % 2 == 0 ? 1000.f : 1.f);
		Mesh.GetVertexInstanceVertices()[Slot] = FVertexID(Index);
		Mesh.GetNormals()[Slot] = Direction(Index + 3);
		Mesh.GetTangents()[Slot] = Direction(Index + 6);
		Mesh.GetBinormalSigns()[Slot] = Index % 3 == 0 ? 1.f : -1.f;
		Mesh.GetColors()[Slot] = FVector4f(0.f, 0.25f, 0.5f, 1.f);
	}
	for (FTriangleCorners& Corners : Mesh.AppendTriangles(Group, Num))
	{
		for (FVertexInstanceID& Corner : Corners)
		{
			Corner = FVertexInstanceID(static_cast<int32>(Random() % static_cast<uint32>(Num)));
		}
	}
	return Mesh;
}

/// A direction by the definition, all in double precision.
FVector3f ExpectedDirection(const FVector3f& Direction, const FMatrix& Matrix)
{
	const FVector V = Matrix.TransformVector(FVector(Direction));
	const double Square = V.SizeSquared();
	return Square > 0.0 && std::isfinite(Square) ? FVector3f(V / std::sqrt(Square)) : Direction;
}

/// The inverse transpose by another road than the one under test.
FMatrix InverseTranspose(FMatrix Matrix)
{
	Matrix.M[3][0] = Matrix.M[3][1] = Matrix.M[3][2] = 0.0;
	return Matrix.Inverse().GetTransposed();
}

/// Units in the last place between two numbers of like size; huge for numbers that have nothing to do with each other.
int64 Distance(float A, float B)
{
	if (std::bit_cast<uint32>(A) == std::bit_cast<uint32>(B))
	{
		return 0;
	}
	const double Step = std::abs(std::nextafter(A, 10.f) - A);
	const double Steps = std::abs(static_cast<double>(A) - static_cast<double>(B)) / Step;
	return Steps < 1.e9 ? static_cast<int64>(Steps) : int64(1) << 40;
}

const FTransform Mirror(FRotator(20, -130, 70), FVector(300, -0.25, 7), FVector(-2, 0.5, 11));
}

TEST(ApplyTransformTargets, EveryInstructionSetGivesTheSameBits)
{
	const FMatrix Matrix = Mirror.ToMatrixWithScale();
	for (const int32 Num : {1, 2, 3, 7, 8, 9, 15, 16, 17, 1003})
	{
		const FMeshDescription Source = RandomMesh(Num, static_cast<uint32>(Num));
		FMeshDescription Best = Source;
		FStaticMeshOperations::ApplyTransform(Best, Matrix);
		int32 NumTargets = 0;
		for (const int64_t Target : hwy::SupportedAndGeneratedTargets())
		{
			const FChosenTarget Chosen(Target);
			FMeshDescription Mesh = Source;
			FStaticMeshOperations::ApplyTransform(Mesh, Matrix);
			EXPECT_TRUE(Mesh == Best) << hwy::TargetName(Target) << " with " << Num << " vertices";
			EXPECT_EQ(Mesh.ComputeBoundingBox(), Best.ComputeBoundingBox()) << hwy::TargetName(Target);
			++NumTargets;
		}
		EXPECT_GE(NumTargets, 1);
	}
}

TEST(ApplyTransformTargets, SumsRunFromXToZAndProductsAreRoundedOnEveryInstructionSet)
{
	// In any other order the one is lost; with a fused multiplication the two thirds leave their rounding behind.
	const double Third = 1.0 / 3.0;
	const FMatrix Matrix({1, Third, 0}, {1, -Third, 0}, {1, 0, 1}, {0, 0, 0});
	for (const int64_t Target : hwy::SupportedAndGeneratedTargets())
	{
		const FChosenTarget Chosen(Target);
		FMeshDescription Mesh;
		for (int32 Index = 0; Index < 33; ++Index)
		{
			Mesh.CreateVertex(Index % 2 == 0 ? FVector3f(1.e30f, -1.e30f, 1.f) : FVector3f(0.1f, 0.1f, 0.f));
		}
		FStaticMeshOperations::ApplyTransform(Mesh, Matrix);
		for (int32 Index = 0; Index < 33; ++Index)
		{
			const FVector3f Position = Mesh.GetVertexPosition(FVertexID(Index));
			if (Index % 2 == 0)
			{
				EXPECT_EQ(Position.X, 1.f) << hwy::TargetName(Target);
			}
			else
			{
				EXPECT_EQ(Position.Y, 0.f) << hwy::TargetName(Target);
			}
		}
	}
}

TEST(ApplyTransformTargets, EveryInstructionSetAgreesWithPlainDoublePrecision)
{
	const FMatrix Matrix = Mirror.ToMatrixWithScale();
	const FMatrix ForNormals = InverseTranspose(Matrix);
	const FMeshDescription Source = RandomMesh(1003, 1);
	for (const int64_t Target : hwy::SupportedAndGeneratedTargets())
	{
		const FChosenTarget Chosen(Target);
		FMeshDescription Mesh = Source;
		FStaticMeshOperations::ApplyTransform(Mesh, Matrix);
		int32 NumOff = 0;
		for (std::size_t Slot = 0; Slot < 1003; ++Slot)
		{
			const FVector3f Position(Matrix.TransformPosition(FVector(Source.GetVertexPositions()[Slot])));
			const FVector3f Normal = ExpectedDirection(Source.GetNormals()[Slot], ForNormals);
			const FVector3f Tangent = ExpectedDirection(Source.GetTangents()[Slot], Matrix);
			const FVector3f& Is = Mesh.GetVertexPositions()[Slot];
			for (const auto& [A, B] :
				{std::pair(Is.X, Position.X), std::pair(Is.Y, Position.Y), std::pair(Is.Z, Position.Z)})
			{
				// One NaN is as good as another: which of two that meet wins is the compiler's choice.
				ASSERT_TRUE(std::bit_cast<uint32>(A) == std::bit_cast<uint32>(B) || (std::isnan(A) && std::isnan(B)));
			}
			// Both round the same direction; only where it lies half way between two numbers may they part.
			const FVector3f& N = Mesh.GetNormals()[Slot];
			const FVector3f& T = Mesh.GetTangents()[Slot];
			for (const auto& [A, B] : {std::pair(N.X, Normal.X), std::pair(N.Y, Normal.Y), std::pair(N.Z, Normal.Z),
					 std::pair(T.X, Tangent.X), std::pair(T.Y, Tangent.Y), std::pair(T.Z, Tangent.Z)})
			{
				ASSERT_LE(Distance(A, B), 1) << hwy::TargetName(Target) << " element " << Slot;
				NumOff += std::bit_cast<uint32>(A) != std::bit_cast<uint32>(B) ? 1 : 0;
			}
		}
		EXPECT_LE(NumOff, 2) << hwy::TargetName(Target);
	}
}

TEST(ApplyTransformTargets, NumberOfCoresDoesNotShow)
{
	const FMatrix Matrix = Mirror.ToMatrixWithScale();
	const FMeshDescription Source = RandomMesh(200'001, 5);
	FMeshDescription Parallel = Source;
	FStaticMeshOperations::ApplyTransform(Parallel, Matrix);
	FMeshDescription Single = Source;
	{
		const tbb::global_control OneThread(tbb::global_control::max_allowed_parallelism, 1);
		FStaticMeshOperations::ApplyTransform(Single, Matrix);
	}
	EXPECT_TRUE(Parallel == Single);
}
