// SPDX-License-Identifier: MIT
#pragma once

#include "Core/SharedPointer.h"
#include "CoreUObject/Object.h"
#include "Engine/AggregateGeometry.h"

#include <future>

class FCookedCollision;

/// The simple collision of a mesh, and the shapes cooked from it. Its outer is the mesh.
class UBodySetup : public UObject
{
	DECLARE_CLASS(UBodySetup, UObject)

public:
	~UBodySetup() override;

	FKAggregateGeom AggGeom;

	/// Drops the cooked shapes.
	void InvalidatePhysicsData();

	/// Cooks the shapes now, unless they are those of the present collision. Elements that cannot be cooked are logged.
	void CreatePhysicsMeshes();

	/// Cooks on another thread, until `FinishCooking`. The collision must not change meanwhile.
	void BeginCooking();

	/// Waits for `BeginCooking` to end; returns at once when nothing is being cooked.
	void FinishCooking();

	/// Whether there are cooked shapes of the present collision.
	bool HasPhysicsData() const;

	/// The shapes of the present collision, cooked if need be.
	const FCookedCollision& GetCookedCollision();

	void Serialize(FArchive& Archive) override;
	void DropDerivedData() override;

private:
	using FCooked = TSharedPtr<const FCookedCollision>;

	static FCooked Cook(const FKAggregateGeom& Geometry);
	void TakeCooked(FCooked InCooked);

	FCooked Cooked;
	std::future<FCooked> Cooking;
};
