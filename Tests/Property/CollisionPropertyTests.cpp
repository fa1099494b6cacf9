// SPDX-License-Identifier: MIT
#include "Property/CommandScene.h"

#include "Engine/BodySetup.h"
#include "Engine/CookedCollision.h"
#include "Engine/StaticMeshSocket.h"
#include "TarvinSelectionAction.h"

#include <cmath>
#include <optional>

namespace
{
/// How far a ray may stop from where it stopped before the bake. The casters are exact for balls and boxes, and stop a
/// little short of capsules and hulls, in proportion to their size.
double CasterTolerance(const FKAggregateGeom& Geometry)
{
	return !Geometry.ConvexElems.IsEmpty() ? 0.1 : !Geometry.SphylElems.IsEmpty() ? 0.02 : 1e-4;
}

class CollisionProperty : public FEditorFixture
{
};

double DrawNumber(double Min, double Max)
{
	return Min + (Max - Min) * double(*WorldGenerators::Index(10001)) / 10000.0;
}

FVector DrawPoint(double Extent)
{
	return FVector(DrawNumber(-Extent, Extent), DrawNumber(-Extent, Extent), DrawNumber(-Extent, Extent));
}

FRotator DrawRotator()
{
	return FRotator(DrawNumber(-90.0, 90.0), DrawNumber(-180.0, 180.0), DrawNumber(-180.0, 180.0));
}

/// A shape of one of the kinds that a bake transforms. Only one: a ray that grazes another would make the smallest
/// error a large one.
void AddShape(FKAggregateGeom& Geometry)
{
	const FVector Center = DrawPoint(60.0);
	switch (*WorldGenerators::Index(4))
	{
	case 0:
		Geometry.SphereElems.Add({Center, float(DrawNumber(2.0, 9.0))});
		break;
	case 1:
		Geometry.BoxElems.Add({Center, DrawRotator(), float(DrawNumber(3.0, 20.0)), float(DrawNumber(3.0, 20.0)),
			float(DrawNumber(3.0, 20.0))});
		break;
	case 2:
		Geometry.SphylElems.Add({Center, DrawRotator(), float(DrawNumber(3.0, 9.0)), float(DrawNumber(3.0, 20.0))});
		break;
	default:
		FKConvexElem Convex;
		for (const FVector& Corner : {FVector(-9, -7, -5), FVector(8, -6, -4), FVector(0, 9, -6), FVector(1, 0, 11)})
		{
			Convex.VertexData.Add(Corner + DrawPoint(1.0));
		}
		Convex.SetTransform(FTransform(DrawRotator(), Center, FVector(1.5, 0.75, 1.25)));
		Convex.UpdateElemBox();
		Geometry.ConvexElems.Add(Convex);
	}
}

/// The shape's middle, in the mesh's space.
FVector MiddleOfShape(const FKAggregateGeom& Geometry)
{
	return !Geometry.SphereElems.IsEmpty() ? Geometry.SphereElems[0].Center
		   : !Geometry.BoxElems.IsEmpty()  ? Geometry.BoxElems[0].Center
		   : !Geometry.SphylElems.IsEmpty()
			   ? Geometry.SphylElems[0].Center
			   : Geometry.ConvexElems[0].GetTransform().TransformPosition(FVector(0, -1, -1));
}

void AddCollisionAndSockets(UStaticMesh& Mesh)
{
	AddShape(Mesh.CreateBodySetup()->AggGeom);
	for (const TCHAR* Name : {TEXT("Grip"), TEXT("Tip")})
	{
		UStaticMeshSocket* const Socket = Mesh.AddSocket(FName(Name));
		Socket->RelativeLocation = DrawPoint(30.0);
		Socket->RelativeRotation = DrawRotator();
		Socket->RelativeScale = FVector(1.0, 2.0, 0.5);
	}
}

/// A component of even scale, mirrored or not, that alone uses a mesh with collision and sockets; selected.
UStaticMeshComponent* DrawComponent(UWorld* World)
{
	UStaticMesh* const Mesh = MakeUnevenMesh(TEXT("/Property/Solid"));
	AddCollisionAndSockets(*Mesh);
	const double Scale = DrawNumber(0.5, 4.0);
	const FVector Signs(*rc::gen::element(-1.0, 1.0), *rc::gen::element(-1.0, 1.0), *rc::gen::element(-1.0, 1.0));
	UStaticMeshComponent* const Component =
		MakeActor(World, Mesh, FTransform(DrawRotator().Quaternion(), DrawPoint(500.0), Signs * Scale));
	GEditor->SelectActor(Component->GetOwner(), true);
	return Component;
}

std::optional<FVector> HitInWorld(const UStaticMeshComponent* Component, const FVector& Start, const FVector& End)
{
	const FTransform& World = Component->GetComponentTransform();
	FCollisionHit Hit;
	const FCookedCollision& Cooked = Component->GetStaticMesh()->GetBodySetup()->GetCookedCollision();
	if (!Cooked.RayCast(World.InverseTransformPosition(Start), World.InverseTransformPosition(End), Hit))
	{
		return std::nullopt;
	}
	return World.TransformPosition(Hit.Point);
}

struct FRay
{
	FVector Start;
	FVector End;
};

/// Rays from far away through the middle of the shape.
std::vector<FRay> DrawRays(const UStaticMeshComponent* Component)
{
	const FVector Middle = MiddleOfShape(Component->GetStaticMesh()->GetBodySetup()->AggGeom);
	const FVector Target = Component->GetComponentTransform().TransformPosition(Middle);
	std::vector<FRay> Rays;
	for (int32 Count = 0; Count < 12; ++Count)
	{
		const FVector Direction = (DrawPoint(1.0) + FVector(0.01, 0.02, 0.03)).GetSafeNormal();
		Rays.push_back({Target + Direction * 2000.0, Target - Direction * 2000.0});
	}
	return Rays;
}

FMatrix SocketInWorld(const UStaticMeshComponent* Component, int32 Index)
{
	const UStaticMeshSocket& Socket = *Component->GetStaticMesh()->Sockets[Index];
	return FTransform(Socket.RelativeRotation, Socket.RelativeLocation, Socket.RelativeScale).ToMatrixWithScale() *
		   Component->GetComponentTransform().ToMatrixWithScale();
}

FTarvinRunResult Bake(UWorld* World)
{
	FTarvinRunResult Skips;
	const FTarvinOperation Operation = FTarvinOperation::RotationScaleBake();
	return FTarvinSelectionAction::Run(
		FTarvinSelectionAction::GatherFromSelection(Skips, Operation), World, FTarvinOnSharedAsset(), Operation);
}
} // namespace

RC_GTEST_FIXTURE_PROP(CollisionProperty, ShapesStayWhereRaysFoundThem, ())
{
	UStaticMeshComponent* const Component = DrawComponent(World());
	const std::vector<FRay> Rays = DrawRays(Component);
	const double Tolerance = CasterTolerance(Component->GetStaticMesh()->GetBodySetup()->AggGeom);
	std::vector<std::optional<FVector>> Before;
	for (const FRay& Ray : Rays)
	{
		Before.push_back(HitInWorld(Component, Ray.Start, Ray.End));
	}
	RC_ASSERT(Bake(World()).Baked == 1);
	for (std::size_t Index = 0; Index < Rays.size(); ++Index)
	{
		const std::optional<FVector> Now = HitInWorld(Component, Rays[Index].Start, Rays[Index].End);
		RC_ASSERT(Now.has_value() && Before[Index].has_value());
		RC_ASSERT((*Now - *Before[Index]).Size() < Tolerance);
	}
}

RC_GTEST_FIXTURE_PROP(CollisionProperty, SocketFramesStayWhereTheyAre, ())
{
	UStaticMeshComponent* const Component = DrawComponent(World());
	const FMatrix Before[] = {SocketInWorld(Component, 0), SocketInWorld(Component, 1)};
	RC_ASSERT(Bake(World()).Baked == 1);
	RC_ASSERT(SocketInWorld(Component, 0).Equals(Before[0], 1e-6));
	RC_ASSERT(SocketInWorld(Component, 1).Equals(Before[1], 1e-6));
}

RC_GTEST_FIXTURE_PROP(CollisionProperty, CookedShapesAreThoseOfTheNewFields, ())
{
	UStaticMeshComponent* const Component = DrawComponent(World());
	UBodySetup* const BodySetup = Component->GetStaticMesh()->GetBodySetup();
	BodySetup->CreatePhysicsMeshes();
	RC_ASSERT(Bake(World()).Baked == 1);
	RC_ASSERT(BodySetup->HasPhysicsData());
	RC_ASSERT(BodySetup->GetCookedCollision().GetSource() == BodySetup->AggGeom);
	RC_ASSERT(Undo());
	RC_ASSERT(BodySetup->GetCookedCollision().GetSource() == BodySetup->AggGeom);
}
