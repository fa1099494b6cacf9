// SPDX-License-Identifier: MIT
#include "Engine/CookedCollision.h"

#include <BulletCollision/CollisionDispatch/btCollisionWorld.h>
#include <BulletCollision/CollisionShapes/btBoxShape.h>
#include <BulletCollision/CollisionShapes/btCapsuleShape.h>
#include <BulletCollision/CollisionShapes/btConvexHullShape.h>
#include <BulletCollision/CollisionShapes/btMultiSphereShape.h>
#include <BulletCollision/CollisionShapes/btSphereShape.h>
#include <BulletCollision/NarrowPhaseCollision/btRaycastCallback.h>
#include <LinearMath/btConvexHullComputer.h>

#include <cmath>
#include <vector>

namespace
{
btVector3 ToBullet(const FVector& V)
{
	return btVector3(V.X, V.Y, V.Z);
}

FVector FromBullet(const btVector3& V)
{
	return FVector(V.x(), V.y(), V.z());
}

btTransform ToBullet(const FRotator& Rotation, const FVector& Center)
{
	const FQuat Quat = Rotation.Quaternion();
	return btTransform(btQuaternion(Quat.X, Quat.Y, Quat.Z, Quat.W), ToBullet(Center));
}

bool IsFinite(const FVector& V)
{
	return std::isfinite(V.X) && std::isfinite(V.Y) && std::isfinite(V.Z);
}

bool IsFinite(const FRotator& R)
{
	return std::isfinite(R.Pitch) && std::isfinite(R.Yaw) && std::isfinite(R.Roll);
}

bool IsSize(float Size)
{
	return std::isfinite(Size) && Size > 0.f;
}

/// The volume of a closed hull, as a sum of the pyramids from its first vertex.
double HullVolume(const btConvexHullComputer& Hull)
{
	double Volume = 0.0;
	for (int Face = 0; Face < Hull.faces.size(); ++Face)
	{
		const btConvexHullComputer::Edge* const First = &Hull.edges[Hull.faces[Face]];
		const btVector3 Apex = Hull.vertices[First->getSourceVertex()];
		for (const auto* Edge = First->getNextEdgeOfFace(); Edge->getTargetVertex() != First->getSourceVertex();
			 Edge = Edge->getNextEdgeOfFace())
		{
			const btVector3 Origin = Hull.vertices[0];
			const btVector3 B = Hull.vertices[Edge->getSourceVertex()] - Origin;
			const btVector3 C = Hull.vertices[Edge->getTargetVertex()] - Origin;
			Volume += std::abs((Apex - Origin).dot(B.cross(C))) / 6.0;
		}
	}
	return Volume;
}
} // namespace

const TCHAR* ToString(ECollisionShape Shape)
{
	static constexpr const TCHAR* Names[] = {
		TEXT("sphere"), TEXT("box"), TEXT("capsule"), TEXT("tapered capsule"), TEXT("convex")};
	return Names[static_cast<uint8>(Shape)];
}

struct FCookedCollision::FShapes
{
	struct FEntry
	{
		std::unique_ptr<btCollisionShape> Shape;
		btTransform Place;
		ECollisionShape Kind;
		int32 ElementIndex;
	};
	std::vector<FEntry> Entries;
	TArray<FString>& Problems;

	explicit FShapes(TArray<FString>& InProblems)
		: Problems(InProblems)
	{
	}

	void Refuse(ECollisionShape Kind, int32 Index, const TCHAR* Reason)
	{
		Problems.Add(FString::Printf(TEXT("%s %d %s"), ToString(Kind), Index, Reason));
	}

	void Add(ECollisionShape Kind, int32 Index, std::unique_ptr<btCollisionShape> Shape, const btTransform& Place)
	{
		Entries.push_back({std::move(Shape), Place, Kind, Index});
	}

	/// Whether sizes and place can make a shape; refuses the element otherwise.
	bool CanMake(ECollisionShape Kind, int32 Index, bool bSizes, const FVector& Center, const FRotator& Rotation)
	{
		if (!bSizes)
		{
			Refuse(Kind, Index, TEXT("has a size that is not above zero"));
		}
		else if (!IsFinite(Center) || !IsFinite(Rotation))
		{
			Refuse(Kind, Index, TEXT("has a place that is not finite"));
		}
		else
		{
			return true;
		}
		return false;
	}

	void AddSphere(int32 Index, const FKSphereElem& Sphere)
	{
		if (CanMake(ECollisionShape::Sphere, Index, IsSize(Sphere.Radius), Sphere.Center, FRotator()))
		{
			Add(ECollisionShape::Sphere, Index, std::make_unique<btSphereShape>(Sphere.Radius),
				ToBullet(FRotator(), Sphere.Center));
		}
	}

	void AddBox(int32 Index, const FKBoxElem& Box)
	{
		if (CanMake(
				ECollisionShape::Box, Index, IsSize(Box.X) && IsSize(Box.Y) && IsSize(Box.Z), Box.Center, Box.Rotation))
		{
			auto Shape = std::make_unique<btBoxShape>(btVector3(0.5 * Box.X, 0.5 * Box.Y, 0.5 * Box.Z));
			Shape->setMargin(0);
			Add(ECollisionShape::Box, Index, std::move(Shape), ToBullet(Box.Rotation, Box.Center));
		}
	}

	void AddCapsule(int32 Index, const FKSphylElem& Capsule)
	{
		// A straight part of no length leaves a ball, which is a shape.
		const bool bSizes = IsSize(Capsule.Radius) && std::isfinite(Capsule.Length) && Capsule.Length >= 0.f;
		if (CanMake(ECollisionShape::Capsule, Index, bSizes, Capsule.Center, Capsule.Rotation))
		{
			Add(ECollisionShape::Capsule, Index, std::make_unique<btCapsuleShapeZ>(Capsule.Radius, Capsule.Length),
				ToBullet(Capsule.Rotation, Capsule.Center));
		}
	}

	void AddTaperedCapsule(int32 Index, const FKTaperedCapsuleElem& Capsule)
	{
		const bool bSizes = IsSize(Capsule.Radius0) && IsSize(Capsule.Radius1) && std::isfinite(Capsule.Length) &&
							Capsule.Length >= 0.f;
		if (CanMake(ECollisionShape::TaperedCapsule, Index, bSizes, Capsule.Center, Capsule.Rotation))
		{
			// The hull of its two end balls is the tapered capsule itself.
			const btVector3 Ends[] = {btVector3(0, 0, 0.5 * Capsule.Length), btVector3(0, 0, -0.5 * Capsule.Length)};
			const btScalar Radii[] = {Capsule.Radius0, Capsule.Radius1};
			Add(ECollisionShape::TaperedCapsule, Index, std::make_unique<btMultiSphereShape>(Ends, Radii, 2),
				ToBullet(Capsule.Rotation, Capsule.Center));
		}
	}

	void AddConvex(int32 Index, const FKConvexElem& Convex)
	{
		std::vector<btVector3> Points;
		for (const FVector& Vertex : Convex.VertexData)
		{
			const FVector Point = Convex.GetTransform().TransformPosition(Vertex);
			if (!IsFinite(Point))
			{
				Refuse(ECollisionShape::Convex, Index, TEXT("has a point that is not finite"));
				return;
			}
			Points.push_back(ToBullet(Point));
		}
		if (Points.size() < 4)
		{
			Refuse(ECollisionShape::Convex, Index, TEXT("has fewer than four points"));
			return;
		}
		FBox Box;
		for (const btVector3& Point : Points)
		{
			Box += FromBullet(Point);
		}
		btConvexHullComputer Hull;
		Hull.compute(&Points[0].x(), sizeof(btVector3), int(Points.size()), 0, 0);
		const double Size = Box.GetSize().Size();
		if (Hull.faces.size() < 4 || HullVolume(Hull) <= 1e-12 * Size * Size * Size)
		{
			Refuse(ECollisionShape::Convex, Index, TEXT("has no volume"));
			return;
		}
		auto Shape =
			std::make_unique<btConvexHullShape>(&Hull.vertices[0].x(), Hull.vertices.size(), int(sizeof(btVector3)));
		Shape->setMargin(0);
		Add(ECollisionShape::Convex, Index, std::move(Shape), btTransform::getIdentity());
	}
};

FCookedCollision::FCookedCollision(const FKAggregateGeom& InGeometry)
	: Geometry(InGeometry)
	, Shapes(std::make_unique<FShapes>(Problems))
{
	const auto AddAll = [this](const auto& Elements, auto Add)
	{
		for (int32 Index = 0; Index < Elements.Num(); ++Index)
		{
			(*Shapes.*Add)(Index, Elements[Index]);
		}
	};
	AddAll(Geometry.SphereElems, &FShapes::AddSphere);
	AddAll(Geometry.BoxElems, &FShapes::AddBox);
	AddAll(Geometry.SphylElems, &FShapes::AddCapsule);
	AddAll(Geometry.TaperedCapsuleElems, &FShapes::AddTaperedCapsule);
	AddAll(Geometry.ConvexElems, &FShapes::AddConvex);
}

FCookedCollision::~FCookedCollision() = default;

bool FCookedCollision::RayCast(const FVector& Start, const FVector& End, FCollisionHit& OutHit) const
{
	const btTransform From(btQuaternion::getIdentity(), ToBullet(Start));
	const btTransform To(btQuaternion::getIdentity(), ToBullet(End));
	FCollisionHit Best;
	bool bHit = false;
	for (const FShapes::FEntry& Entry : Shapes->Entries)
	{
		btCollisionObject Object;
		Object.setCollisionShape(Entry.Shape.get());
		Object.setWorldTransform(Entry.Place);
		btCollisionWorld::ClosestRayResultCallback Result(From.getOrigin(), To.getOrigin());
		// One caster stops up to a thousandth short of round shapes, the other misses flat ones.
		const bool bFlat = Entry.Kind == ECollisionShape::Box || Entry.Kind == ECollisionShape::Convex;
		Result.m_flags |= bFlat ? btTriangleRaycastCallback::kF_UseSubSimplexConvexCastRaytest
								: btTriangleRaycastCallback::kF_UseGjkConvexCastRaytest;
		btCollisionWorld::rayTestSingle(From, To, &Object, Entry.Shape.get(), Entry.Place, Result);
		if (Result.hasHit() && (!bHit || Result.m_closestHitFraction < Best.Fraction))
		{
			bHit = true;
			Best = {Result.m_closestHitFraction, FromBullet(Result.m_hitPointWorld),
				FromBullet(Result.m_hitNormalWorld).GetSafeNormal(), Entry.Kind, Entry.ElementIndex};
		}
	}
	if (bHit)
	{
		OutHit = Best;
	}
	return bHit;
}

int32 FCookedCollision::GetNumShapes() const
{
	return int32(Shapes->Entries.size());
}
