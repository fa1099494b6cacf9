// SPDX-License-Identifier: MIT
#pragma once

#include "ModuleFixture.h"
#include "TarvinSelectionAction.h"

#include <functional>

/// Runs operations on the selection, and writes down what the run asks about shared assets.
class FRunTest : public FModuleTest
{
protected:
	struct FQuestion
	{
		UStaticMesh* Mesh;
		int32 OtherUsers;
		bool bInPlaceAllowed;

		bool operator==(const FQuestion&) const = default;
	};

	using FAnswer = std::function<ETarvinSharedAssetChoice(const FQuestion&)>;

	/// Runs on the selection; every question gets the answer of that function.
	FTarvinRunResult Run(
		const FAnswer& Answer, const FTarvinOperation& Operation = FTarvinOperation::RotationScaleBake())
	{
		FTarvinRunResult Skips;
		const TArray<FTarvinItem> Items = FTarvinSelectionAction::GatherFromSelection(Skips, Operation);
		return RunOn(Items, Answer, Operation);
	}

	/// Runs on the selection, with one answer to every question.
	FTarvinRunResult Run(ETarvinSharedAssetChoice Answer = ETarvinSharedAssetChoice::Cancel,
		const FTarvinOperation& Operation = FTarvinOperation::RotationScaleBake())
	{
		return Run([Answer](const FQuestion&) { return Answer; }, Operation);
	}

	FTarvinRunResult RunOn(const TArray<FTarvinItem>& Items, const FAnswer& Answer,
		const FTarvinOperation& Operation = FTarvinOperation::RotationScaleBake())
	{
		FTarvinOnSharedAsset OnSharedAsset;
		OnSharedAsset.BindLambda(
			[&](UStaticMesh* Mesh, int32 OtherUsers, bool bInPlaceAllowed)
			{
				Questions.push_back({Mesh, OtherUsers, bInPlaceAllowed});
				return Answer(Questions.back());
			});
		return FTarvinSelectionAction::Run(Items, World(), OnSharedAsset, Operation);
	}

	static UStaticMesh* MeshOf(const UStaticMeshComponent* Component) { return Component->GetStaticMesh(); }

	std::vector<FQuestion> Questions;
};

/// The run's own counters: baked, components updated, duplicated, not baked.
inline std::vector<int32> Counts(const FTarvinRunResult& Result)
{
	return {Result.Baked, Result.ComponentsUpdated, Result.Duplicated, Result.NotBaked};
}

/// The residual of a bake: a place without rotation and scale.
inline FTransform At(const FVector& Location)
{
	return FTransform(Location);
}
