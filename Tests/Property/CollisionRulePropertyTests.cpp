// SPDX-License-Identifier: MIT
// What a bake makes of every field of collision and sockets under any scale, and what it says of it, beside the rules
// written down a second time: by points and axes, where the module composes transforms.
#include "Support/EditorFixture.h"
#include "Support/TestMeshes.h"
#include "Support/WorldGenerators.h"

#include "Core/Log.h"
#include "Engine/BodySetup.h"
#include "Engine/StaticMesh.h"
#include "Engine/StaticMeshSocket.h"
#include "TarvinTransformOp.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace
{
/// Sizes of capsules are single precision.
constexpr float LeastCapsule = 0.1f;

double DrawNumber(double Min, double Max)
{
	return Min + (Max - Min) * double(*WorldGenerators::Index(10001)) / 10000.0;
}

FVector DrawPoint(double Extent)
{
	return FVector(DrawNumber(-Extent, Extent), DrawNumber(-Extent, Extent), DrawNumber(-Extent, Extent));
}

/// Turned, unturned, turned all the way round, or by so little that it counts as nothing, or by a little more.
FRotator DrawRotator()
{
	switch (*WorldGenerators::Index(5))
	{
	case 0:
		return FRotator();
	case 1:
		return FRotator(0.0, 360.0, -720.0);
	case 2:
		return FRotator(9e-5, -9e-5, 360.0);
	case 3:
		return FRotator(0.0, 0.0, 359.9998);
	default:
		return FRotator(DrawNumber(-90.0, 90.0), DrawNumber(-180.0, 180.0), DrawNumber(-180.0, 180.0));
	}
}

/// Mostly uneven, some even, some at the border between both; any signs.
FVector DrawScale()
{
	const double Even = DrawNumber(0.2, 3.0);
	FVector Scale(Even, Even, Even);
	switch (*WorldGenerators::Index(4))
	{
	case 0:
		break;
	case 1:
		Scale[*WorldGenerators::Index(3)] += DrawNumber(-0.0015, 0.0015);
		break;
	default:
		Scale = FVector(Even, DrawNumber(0.001, 3.0), DrawNumber(0.001, 3.0));
	}
	for (int32 Axis = 0; Axis < 3; ++Axis)
	{
		Scale[Axis] *= *rc::gen::element(-1.0, 1.0);
	}
	return Scale;
}

/// Down to nothing, so that the smallest sizes matter.
float DrawSize()
{
	return float(*WorldGenerators::Index(3) == 0 ? DrawNumber(0.0, 0.2) : DrawNumber(0.0, 30.0));
}

int32 DrawCount()
{
	return std::max(0, *WorldGenerators::Index(5) - 2);
}

void AddCollision(FKAggregateGeom& Geometry)
{
	for (int32 Count = DrawCount(); Count > 0; --Count)
	{
		Geometry.SphereElems.Add({DrawPoint(50.0), DrawSize()});
	}
	for (int32 Count = DrawCount(); Count > 0; --Count)
	{
		Geometry.BoxElems.Add({DrawPoint(50.0), DrawRotator(), DrawSize(), DrawSize(), DrawSize()});
	}
	for (int32 Count = DrawCount(); Count > 0; --Count)
	{
		Geometry.SphylElems.Add({DrawPoint(50.0), DrawRotator(), DrawSize(), DrawSize()});
	}
	for (int32 Count = DrawCount(); Count > 0; --Count)
	{
		FKConvexElem Convex;
		for (int32 Point = *WorldGenerators::Index(7); Point > 0; --Point)
		{
			Convex.VertexData.Add(DrawPoint(20.0));
		}
		Convex.IndexData = {0, 1, 2};
		Convex.SetTransform(FTransform(DrawRotator(), DrawPoint(50.0), FVector(1.5, -0.75, 1.25)));
		Convex.UpdateElemBox();
		Geometry.ConvexElems.Add(Convex);
	}
	for (int32 Count = DrawCount(); Count > 0; --Count)
	{
		Geometry.TaperedCapsuleElems.Add({DrawPoint(50.0), DrawRotator(), DrawSize(), DrawSize(), DrawSize()});
	}
	Geometry.LevelSetElems.SetNum(DrawCount());
	Geometry.SkinnedLevelSetElems.SetNum(DrawCount());
	Geometry.MLLevelSetElems.SetNum(DrawCount());
	Geometry.SkinnedTriangleMeshElems.SetNum(DrawCount());
}

struct FSocketPlace
{
	FVector Location;
	FRotator Rotation;
	FVector Scale;
};

/// A mesh with collision and sockets, the bake that it goes through, and how it was before.
class FBakedSolid
{
public:
	FBakedSolid()
		: Bake(DrawRotator().Quaternion(), DrawPoint(100.0), DrawScale())
		, Mesh(MakeUnevenMesh(TEXT("/Property/Solid")))
	{
		AddCollision(Mesh->CreateBodySetup()->AggGeom);
		Old = Mesh->GetBodySetup()->AggGeom;
		for (int32 Index = *WorldGenerators::Index(4); Index > 0; --Index)
		{
			UStaticMeshSocket* const Socket = Mesh->AddSocket(FName(FString::Printf(TEXT("Socket%d"), Index)));
			Socket->RelativeLocation = DrawPoint(30.0);
			Socket->RelativeRotation = DrawRotator();
			Socket->RelativeScale = FVector(1.0, 2.0, -0.5);
			OldSockets.push_back({Socket->RelativeLocation, Socket->RelativeRotation, Socket->RelativeScale});
		}
		const FCaptureLogSink Log;
		RC_ASSERT(FTarvinTransformOp::BakeIntoMesh(Mesh, Bake, {*rc::gen::arbitrary<bool>(), true, true}, Stats));
		for (const FLogRecord& Record : Log.Records())
		{
			if (Record.Category == FName(TEXT("LogTarvinOp")))
			{
				RC_ASSERT(Record.Verbosity == ELogVerbosity::Warning);
				Lines.push_back(Record.Message.ToUtf8());
			}
		}
	}

	const FKAggregateGeom& New() const { return Mesh->GetBodySetup()->AggGeom; }

	FVector Scale() const { return Bake.GetScale3D().GetAbs(); }

	bool IsEven() const { return std::abs(Scale().X - Scale().Y) <= 0.001 && std::abs(Scale().X - Scale().Z) <= 0.001; }

	/// Fails unless the new rotation turns every axis as the bake does what the old one did, its scale and its mirrors
	/// apart.
	void CheckTurn(const FRotator& OldRotation, const FRotator& NewRotation) const
	{
		const FVector Sign(std::copysign(1.0, Bake.GetScale3D().X), std::copysign(1.0, Bake.GetScale3D().Y),
			std::copysign(1.0, Bake.GetScale3D().Z));
		for (int32 Axis = 0; Axis < 3; ++Axis)
		{
			FVector Unit;
			Unit[Axis] = 1.0;
			const FVector Turned = OldRotation.Quaternion().RotateVector(Unit * Sign[Axis]) * Sign;
			const FVector Expected = Bake.GetRotation().RotateVector(Turned);
			RC_ASSERT((NewRotation.Quaternion().RotateVector(Unit) - Expected).Size() < 1e-6);
		}
	}

	FTransform Bake;
	UStaticMesh* Mesh;
	FKAggregateGeom Old;
	std::vector<FSocketPlace> OldSockets;
	FTarvinTransformStats Stats;
	std::vector<std::string> Lines; ///< what the bake logged
};

/// Whether an angle is more than a ten-thousandth of a degree from a whole turn.
bool IsTurned(const FRotator& Rotation)
{
	const auto Off = [](double Angle) { return std::abs(std::remainder(Angle, 360.0)) > double(1e-4f); };
	return Off(Rotation.Pitch) || Off(Rotation.Yaw) || Off(Rotation.Roll);
}

/// Single precision, in any order of the same operations.
bool IsNear(float A, float B)
{
	return std::abs(A - B) <= 4e-6f * std::max(1.f, std::abs(B));
}

bool IsNear(const FVector& A, const FVector& B)
{
	return (A - B).Size() <= 1e-9 * (1.0 + B.Size());
}

std::string Text(const FVector& Vector)
{
	return Vector.ToString().ToUtf8();
}

class CollisionRule : public FEditorFixture
{
};
} // namespace

RC_GTEST_FIXTURE_PROP(CollisionRule, BallsTakeTheSmallestFactor, ())
{
	const FBakedSolid Solid;
	RC_ASSERT(Solid.New().SphereElems.Num() == Solid.Old.SphereElems.Num());
	for (int32 Index = 0; Index < Solid.Old.SphereElems.Num(); ++Index)
	{
		const FKSphereElem& Old = Solid.Old.SphereElems[Index];
		const FKSphereElem& New = Solid.New().SphereElems[Index];
		RC_ASSERT(IsNear(New.Center, Solid.Bake.TransformPosition(Old.Center)));
		RC_ASSERT(IsNear(New.Radius, Old.Radius * float(Solid.Scale().GetMin())));
	}
}

RC_GTEST_FIXTURE_PROP(CollisionRule, BoxesAreTurnedAndTakeTheFactorsOfTheMeshsAxes, ())
{
	const FBakedSolid Solid;
	RC_ASSERT(Solid.New().BoxElems.Num() == Solid.Old.BoxElems.Num());
	for (int32 Index = 0; Index < Solid.Old.BoxElems.Num(); ++Index)
	{
		const FKBoxElem& Old = Solid.Old.BoxElems[Index];
		const FKBoxElem& New = Solid.New().BoxElems[Index];
		RC_ASSERT(IsNear(New.Center, Solid.Bake.TransformPosition(Old.Center)));
		Solid.CheckTurn(Old.Rotation, New.Rotation);
		RC_ASSERT(IsNear(New.X, Old.X * float(Solid.Scale().X)));
		RC_ASSERT(IsNear(New.Y, Old.Y * float(Solid.Scale().Y)));
		RC_ASSERT(IsNear(New.Z, Old.Z * float(Solid.Scale().Z)));
	}
}

RC_GTEST_FIXTURE_PROP(CollisionRule, CapsulesTakeTheWiderFactorAcrossWithinTheirHeightAndAreNeverTooSmall, ())
{
	const FBakedSolid Solid;
	RC_ASSERT(Solid.New().SphylElems.Num() == Solid.Old.SphylElems.Num());
	for (int32 Index = 0; Index < Solid.Old.SphylElems.Num(); ++Index)
	{
		const FKSphylElem& Old = Solid.Old.SphylElems[Index];
		const FKSphylElem& New = Solid.New().SphylElems[Index];
		RC_ASSERT(IsNear(New.Center, Solid.Bake.TransformPosition(Old.Center)));
		Solid.CheckTurn(Old.Rotation, New.Rotation);
		const float Half = std::max((2.f * Old.Radius + Old.Length) * float(Solid.Scale().Z) / 2.f, LeastCapsule);
		const float Across = Old.Radius * float(std::max(Solid.Scale().X, Solid.Scale().Y));
		const float Radius = std::max(std::min(Across, Half), LeastCapsule);
		RC_ASSERT(IsNear(New.Radius, Radius));
		RC_ASSERT(std::abs(New.Length - std::max(2.f * (Half - Radius), LeastCapsule)) <= 4e-6f * (1.f + Half));
	}
}

RC_GTEST_FIXTURE_PROP(CollisionRule, HullsTakeEverythingIntoTheirPoints, ())
{
	const FBakedSolid Solid;
	RC_ASSERT(Solid.New().ConvexElems.Num() == Solid.Old.ConvexElems.Num());
	for (int32 Index = 0; Index < Solid.Old.ConvexElems.Num(); ++Index)
	{
		const FKConvexElem& Old = Solid.Old.ConvexElems[Index];
		const FKConvexElem& New = Solid.New().ConvexElems[Index];
		RC_ASSERT(New.VertexData.Num() == Old.VertexData.Num());
		FBox Box;
		for (int32 Point = 0; Point < Old.VertexData.Num(); ++Point)
		{
			const FVector InMesh = Old.GetTransform().TransformPosition(Old.VertexData[Point]);
			RC_ASSERT(IsNear(New.VertexData[Point], Solid.Bake.TransformPosition(InMesh)));
			Box += New.VertexData[Point];
		}
		RC_ASSERT(New.GetTransform() == FTransform());
		RC_ASSERT(New.IndexData.IsEmpty());
		RC_ASSERT(New.ElemBox == Box);
	}
}

RC_GTEST_FIXTURE_PROP(CollisionRule, OtherKindsStayAsTheyAre, ())
{
	const FBakedSolid Solid;
	RC_ASSERT(Solid.New().TaperedCapsuleElems == Solid.Old.TaperedCapsuleElems);
	RC_ASSERT(Solid.New().LevelSetElems == Solid.Old.LevelSetElems);
	RC_ASSERT(Solid.New().SkinnedLevelSetElems == Solid.Old.SkinnedLevelSetElems);
	RC_ASSERT(Solid.New().MLLevelSetElems == Solid.Old.MLLevelSetElems);
	RC_ASSERT(Solid.New().SkinnedTriangleMeshElems == Solid.Old.SkinnedTriangleMeshElems);
}

RC_GTEST_FIXTURE_PROP(CollisionRule, SocketsAreTurnedAndScaledAlongTheirOwnAxes, ())
{
	const FBakedSolid Solid;
	const FVector Signed = Solid.Bake.GetScale3D();
	const bool bEven = Solid.Scale().GetMax() == Solid.Scale().GetMin();
	for (std::size_t Index = 0; Index < Solid.OldSockets.size(); ++Index)
	{
		const FSocketPlace& Old = Solid.OldSockets[Index];
		const UStaticMeshSocket& New = *Solid.Mesh->Sockets[int32(Index)];
		RC_ASSERT(IsNear(New.RelativeLocation, Solid.Bake.TransformPosition(Old.Location)));
		Solid.CheckTurn(Old.Rotation, New.RelativeRotation);
		for (int32 Axis = 0; Axis < 3; ++Axis)
		{
			FVector Unit;
			Unit[Axis] = 1.0;
			const double Stretch = (Old.Rotation.Quaternion().RotateVector(Unit) * Signed).Size();
			const double Expected = Old.Scale[Axis] * (bEven ? Signed[Axis] : std::copysign(Stretch, Signed[Axis]));
			RC_ASSERT(std::abs(New.RelativeScale[Axis] - Expected) < 1e-9);
		}
	}
	RC_ASSERT(Solid.Stats.NumSocketsBaked == int32(Solid.OldSockets.size()));
}

RC_GTEST_FIXTURE_PROP(CollisionRule, FlagsAndLinesAreExactlyThoseThatApply, ())
{
	const FBakedSolid Solid;
	std::vector<std::string> Lines;
	for (std::size_t Index = 0; Index < Solid.OldSockets.size(); ++Index)
	{
		if (!Solid.IsEven() && IsTurned(Solid.OldSockets[Index].Rotation))
		{
			Lines.push_back("Solid: socket '" + Solid.Mesh->Sockets[int32(Index)]->SocketName.ToString().ToUtf8() +
							"' is rotated and the bake scale is non-uniform -- result is approximate");
		}
	}
	RC_ASSERT(Solid.Stats.bSocketsApproximate == !Lines.empty());

	const FKAggregateGeom& Old = Solid.Old;
	const int32 NumBaked = Old.SphereElems.Num() + Old.BoxElems.Num() + Old.SphylElems.Num() + Old.ConvexElems.Num();
	const int32 NumOthers = Old.GetElementCount() - NumBaked;
	const bool bTurnedBox = std::any_of(
		Old.BoxElems.begin(), Old.BoxElems.end(), [](const FKBoxElem& Box) { return IsTurned(Box.Rotation); });
	const bool bApproximate =
		!Solid.IsEven() && (bTurnedBox || !Old.SphereElems.IsEmpty() || !Old.SphylElems.IsEmpty());
	if (NumOthers > 0)
	{
		Lines.push_back("Solid: " + std::to_string(NumOthers) +
						" collision element(s) (tapered capsule / level set / skinned) were not transformed -- they "
						"keep their old transform");
	}
	if (bApproximate)
	{
		Lines.push_back("Solid: non-uniform scale (" + Text(Solid.Bake.GetScale3D()) +
						") -- sphere / capsule / rotated box collision is approximate");
	}
	RC_ASSERT(Solid.Stats.bCollisionApproximate == (bApproximate || NumOthers > 0));
	RC_ASSERT(Solid.Stats.NumCollisionElemsBaked == NumBaked);
	RC_ASSERT(Solid.Lines == Lines);
}
