// SPDX-License-Identifier: MIT
#include "TarvinCollisionBake.h"

#include "Platform/CoreUObject.h"
#include "Platform/Engine.h"
#include "TarvinTolerance.h"
#include "TarvinTransformLog.h"
#include "TarvinTransformOp.h"

#include <algorithm>
#include <cmath>

namespace
{
/// Sizes below this are swollen to it: physics cannot work with thinner capsules.
constexpr float MinCapsuleSize = 0.1f;

double NormalizedAngle(double Angle)
{
	double Result = Angle - std::trunc(Angle / 360.0) * 360.0;
	Result = Result < 0.0 ? Result + 360.0 : Result;
	return Result > 180.0 ? Result - 360.0 : Result;
}

bool IsRotated(const FRotator& Rotation)
{
	return std::abs(NormalizedAngle(Rotation.Pitch)) > TarvinTolerance::Equal ||
		   std::abs(NormalizedAngle(Rotation.Yaw)) > TarvinTolerance::Equal ||
		   std::abs(NormalizedAngle(Rotation.Roll)) > TarvinTolerance::Equal;
}

/// Where an element with this rotation and centre comes to lie.
FTransform Placed(const FRotator& Rotation, const FVector& Center, const FTransform& Bake)
{
	return FTransform(Rotation.Quaternion(), Center, FVector::OneVector) * Bake;
}

float Scaled(float Size, double Factor)
{
	return Size * static_cast<float>(std::abs(Factor));
}

void BakeSphere(FKSphereElem& Sphere, const FTransform& Bake)
{
	const FVector Scale = Bake.GetScale3D().GetAbs();
	Sphere.Center = Bake.TransformPosition(Sphere.Center);
	Sphere.Radius = Scaled(Sphere.Radius, std::min({Scale.X, Scale.Y, Scale.Z}));
}

void BakeBox(FKBoxElem& Box, const FTransform& Bake)
{
	const FVector Scale = Bake.GetScale3D();
	const FTransform Place = Placed(Box.Rotation, Box.Center, Bake);
	Box.Center = Place.GetTranslation();
	Box.Rotation = Place.GetRotation().Rotator();
	// Exact for an unrotated box or a uniform scale only: the sizes lie along the box's own axes.
	Box.X = Scaled(Box.X, Scale.X);
	Box.Y = Scaled(Box.Y, Scale.Y);
	Box.Z = Scaled(Box.Z, Scale.Z);
}

void BakeCapsule(FKSphylElem& Capsule, const FTransform& Bake)
{
	const FVector Scale = Bake.GetScale3D().GetAbs();
	const FTransform Place = Placed(Capsule.Rotation, Capsule.Center, Bake);
	Capsule.Center = Place.GetTranslation();
	Capsule.Rotation = Place.GetRotation().Rotator();
	const float HalfHeight =
		std::max(Scaled(Capsule.Radius + Capsule.Radius + Capsule.Length, Scale.Z) * 0.5f, MinCapsuleSize);
	Capsule.Radius = std::max(std::min(Scaled(Capsule.Radius, std::max(Scale.X, Scale.Y)), HalfHeight), MinCapsuleSize);
	Capsule.Length = std::max(MinCapsuleSize, (HalfHeight - Capsule.Radius) * 2.0f);
}

void BakeConvex(FKConvexElem& Convex, const FTransform& Bake)
{
	const FTransform Placement = Convex.GetTransform();
	for (FVector& Vertex : Convex.VertexData)
	{
		Vertex = Bake.TransformPosition(Placement.TransformPosition(Vertex));
	}
	Convex.SetTransform(FTransform::Identity);
	Convex.IndexData.Reset();
	Convex.UpdateElemBox();
}

/// The kinds of shapes that cannot be transformed.
int32 CountUnsupported(const FKAggregateGeom& Geometry)
{
	return Geometry.TaperedCapsuleElems.Num() + Geometry.LevelSetElems.Num() + Geometry.SkinnedLevelSetElems.Num() +
		   Geometry.MLLevelSetElems.Num() + Geometry.SkinnedTriangleMeshElems.Num();
}

/// Transforms every supported shape, and says whether one of them cannot be exact.
bool BakeShapes(FKAggregateGeom& Geometry, const FTransform& Bake)
{
	const bool bUniform = TarvinTolerance::IsUniformScale(Bake.GetScale3D());
	bool bApproximate = !bUniform && (Geometry.SphereElems.Num() > 0 || Geometry.SphylElems.Num() > 0);
	for (FKSphereElem& Sphere : Geometry.SphereElems)
	{
		BakeSphere(Sphere, Bake);
	}
	for (FKBoxElem& Box : Geometry.BoxElems)
	{
		bApproximate = bApproximate || (!bUniform && IsRotated(Box.Rotation));
		BakeBox(Box, Bake);
	}
	for (FKSphylElem& Capsule : Geometry.SphylElems)
	{
		BakeCapsule(Capsule, Bake);
	}
	for (FKConvexElem& Convex : Geometry.ConvexElems)
	{
		BakeConvex(Convex, Bake);
	}
	return bApproximate;
}
} // namespace

void TarvinCollisionBake::BakeSockets(UStaticMesh* Mesh, const FTransform& BakeTransform, FTarvinTransformStats& Stats)
{
	const bool bUniform = TarvinTolerance::IsUniformScale(BakeTransform.GetScale3D());
	for (const TObjectPtr<UStaticMeshSocket>& Entry : Mesh->Sockets)
	{
		UStaticMeshSocket* const Socket = Entry;
		if (!Socket)
		{
			continue;
		}
		Socket->Modify(true);
		if (!bUniform && IsRotated(Socket->RelativeRotation))
		{
			Stats.bSocketsApproximate = true;
			HOST_LOG(LogTarvinOp, Warning,
				TEXT("%s: socket '%s' is rotated and the bake scale is non-uniform -- result is approximate"),
				*Mesh->GetName(), *Socket->SocketName.ToString());
		}
		const FTransform Placement =
			FTransform(Socket->RelativeRotation.Quaternion(), Socket->RelativeLocation, Socket->RelativeScale) *
			BakeTransform;
		Socket->RelativeLocation = Placement.GetTranslation();
		Socket->RelativeRotation = Placement.GetRotation().Rotator();
		Socket->RelativeScale = Placement.GetScale3D();
		++Stats.NumSocketsBaked;
	}
}

void TarvinCollisionBake::BakeSimpleCollision(
	UStaticMesh* Mesh, const FTransform& BakeTransform, bool bRecreatePhysicsNow, FTarvinTransformStats& Stats)
{
	Mesh->WaitUntilAsyncPropertyReleased(EStaticMeshAsyncProperties::BodySetup);
	UBodySetup* const BodySetup = Mesh->GetBodySetup();
	if (!BodySetup || BodySetup->AggGeom.GetElementCount() == 0)
	{
		return;
	}
	BodySetup->Modify(true);
	FKAggregateGeom& Geometry = BodySetup->AggGeom;
	const bool bShapesApproximate = BakeShapes(Geometry, BakeTransform);
	Stats.bCollisionApproximate = Stats.bCollisionApproximate || bShapesApproximate;
	Stats.NumCollisionElemsBaked +=
		Geometry.SphereElems.Num() + Geometry.BoxElems.Num() + Geometry.SphylElems.Num() + Geometry.ConvexElems.Num();

	const bool bWasApproximate = Stats.bCollisionApproximate;
	if (const int32 NumUnsupported = CountUnsupported(Geometry); NumUnsupported > 0)
	{
		Stats.bCollisionApproximate = true;
		HOST_LOG(LogTarvinOp, Warning,
			TEXT("%s: %d collision element(s) (tapered capsule / level set / skinned) were not transformed -- they "
				 "keep their old "
				 "transform"),
			*Mesh->GetName(), NumUnsupported);
	}
	if (bWasApproximate)
	{
		HOST_LOG(LogTarvinOp, Warning,
			TEXT("%s: non-uniform scale (%s) -- sphere / capsule / rotated box collision is approximate"),
			*Mesh->GetName(), *BakeTransform.GetScale3D().ToString());
	}
	BodySetup->InvalidatePhysicsData();
	if (bRecreatePhysicsNow)
	{
		BodySetup->CreatePhysicsMeshes();
	}
}
