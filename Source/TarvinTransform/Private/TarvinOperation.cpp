// SPDX-License-Identifier: MIT
#include "TarvinOperation.h"

FTarvinOperation::FTarvinOperation() = default;
FTarvinOperation::FTarvinOperation(const FTarvinOperation& Other) = default;
FTarvinOperation::FTarvinOperation(FTarvinOperation&& Other) = default;
FTarvinOperation& FTarvinOperation::operator=(const FTarvinOperation& Other) = default;
FTarvinOperation::~FTarvinOperation() = default;

FTarvinOperation& FTarvinOperation::operator=(FTarvinOperation&& Other)
{
	ComputeBake = std::move(Other.ComputeBake);
	ComputeNewComponentTransform = std::move(Other.ComputeNewComponentTransform);
	bRejectUnrepresentableParent = Other.bRejectUnrepresentableParent;
	TransactionText = Other.TransactionText;
	FormatSummary = std::move(Other.FormatSummary);
	return *this;
}

FTarvinOperation FTarvinOperation::RotationScaleBake()
{
	FTarvinOperation Operation;
	Operation.ComputeBake = [](const FTarvinItem& Item, FTransform& OutBake)
	{
		OutBake = FTransform(Item.WorldTransform.GetRotation(), FVector::ZeroVector, Item.WorldTransform.GetScale3D());
		return true;
	};
	Operation.ComputeNewComponentTransform = [](const FTarvinItem& Item, const FTransform&)
	{ return FTransform(FQuat::Identity, Item.WorldTransform.GetTranslation(), FVector::OneVector); };
	Operation.bRejectUnrepresentableParent = true;
	Operation.TransactionText = NSLOCTEXT("TarvinTransform", "TarvinTransaction", "Bake Transform");
	Operation.FormatSummary = [](int32 BakedCount) { return FString::Printf(TEXT("Baked %d mesh(es)"), BakedCount); };
	return Operation;
}

FTarvinOperation FTarvinOperation::SetPivot(ETarvinPivotPosition Position)
{
	FTarvinOperation Operation;
	Operation.ComputeBake = [Position](const FTarvinItem& Item, FTransform& OutBake)
	{
		FVector Point = FVector::ZeroVector;
		const UStaticMesh* const Mesh = IsValid(Item.Mesh) ? Item.Mesh.Get() : nullptr;
		if (!TarvinPivot::ComputePivotPoint(Mesh, Position, Item.WorldTransform, Point))
		{
			return false;
		}
		OutBake = FTransform(FQuat::Identity, -Point, FVector::OneVector);
		return true;
	};
	// The component goes to where the pivot point lies in the world, so that the shifted mesh stays where it is.
	Operation.ComputeNewComponentTransform = [](const FTarvinItem& Item, const FTransform& Bake)
	{
		const FTransform& World = Item.WorldTransform;
		return FTransform(World.GetRotation(), World.TransformPosition(-Bake.GetTranslation()), World.GetScale3D());
	};
	Operation.bRejectUnrepresentableParent = false;
	Operation.TransactionText = NSLOCTEXT("TarvinTransform", "TarvinPivotTransaction", "Set Pivot");
	Operation.FormatSummary = [Position](int32 BakedCount)
	{
		return FString::Printf(
			TEXT("Pivot moved to %s on %d mesh(es)"), TarvinPivot::GetPositionName(Position), BakedCount);
	};
	return Operation;
}
