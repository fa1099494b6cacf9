// SPDX-License-Identifier: MIT
#include "Engine/BodySetup.h"

#include "Core/Log.h"
#include "Engine/CookedCollision.h"

DEFINE_CLASS(UBodySetup)
DEFINE_LOG_CATEGORY_STATIC(LogCollision, Log, All);

UBodySetup::~UBodySetup() = default;

void UBodySetup::InvalidatePhysicsData()
{
	FinishCooking();
	Cooked.Reset();
}

void UBodySetup::CreatePhysicsMeshes()
{
	FinishCooking();
	if (!HasPhysicsData())
	{
		TakeCooked(Cook(AggGeom));
	}
}

void UBodySetup::BeginCooking()
{
	FinishCooking();
	if (!HasPhysicsData())
	{
		Cooking = std::async(std::launch::async, &UBodySetup::Cook, AggGeom);
	}
}

void UBodySetup::FinishCooking()
{
	if (Cooking.valid())
	{
		TakeCooked(Cooking.get());
	}
}

bool UBodySetup::HasPhysicsData() const
{
	return Cooked.IsValid() && Cooked->GetSource() == AggGeom;
}

const FCookedCollision& UBodySetup::GetCookedCollision()
{
	CreatePhysicsMeshes();
	return *Cooked;
}

UBodySetup::FCooked UBodySetup::Cook(const FKAggregateGeom& Geometry)
{
	return MakeShared<FCookedCollision>(Geometry);
}

void UBodySetup::TakeCooked(FCooked InCooked)
{
	Cooked = InCooked;
	for (const FString& Problem : Cooked->GetProblems())
	{
		const FString MeshName = GetOuter() ? GetOuter()->GetName() : GetName();
		HOST_LOG(LogCollision, Warning, TEXT("%s: collision %s -- left out"), *MeshName, *Problem);
	}
}

void UBodySetup::Serialize(FArchive& Archive)
{
	Super::Serialize(Archive);
	Archive << AggGeom;
}

void UBodySetup::DropDerivedData()
{
	Super::DropDerivedData();
	InvalidatePhysicsData();
}
