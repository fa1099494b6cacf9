// SPDX-License-Identifier: MIT
#include "TarvinGrouping.h"

#include "TarvinTolerance.h"

namespace
{
bool IsSameBake(const FTransform& A, const FTransform& B)
{
	return TarvinTolerance::IsSameRotation(A.GetRotation(), B.GetRotation()) &&
		   TarvinTolerance::IsSameScale(A.GetScale3D(), B.GetScale3D());
}
} // namespace

TArray<FTarvinGroup> FTarvinGrouping::Build(
	const TArray<FTarvinItem>& Items, TFunctionRef<bool(const FTarvinItem&, FTransform&)> ComputeBake)
{
	TArray<FTarvinGroup> Groups;
	// The groups of each asset, in order: a selection may hold thousands of assets, but few shapes of each.
	TMap<UStaticMesh*, TArray<int32>> GroupsOfMesh;
	for (int32 ItemIndex = 0; ItemIndex < Items.Num(); ++ItemIndex)
	{
		const FTarvinItem& Item = Items[ItemIndex];
		UStaticMesh* const Mesh = Item.Mesh;
		FTransform Bake;
		if (!IsValid(Mesh) || !ComputeBake(Item, Bake))
		{
			continue;
		}
		TArray<int32>& Candidates = GroupsOfMesh.FindOrAdd(Mesh);
		int32 Found = INDEX_NONE;
		for (const int32 Candidate : Candidates)
		{
			if (IsSameBake(Groups[Candidate].Bake, Bake))
			{
				Found = Candidate;
				break;
			}
		}
		if (Found == INDEX_NONE)
		{
			Found = Groups.Add({Mesh, Bake, {}, false});
			Candidates.Add(Found);
		}
		Groups[Found].ItemIndices.Add(ItemIndex);
	}
	for (FTarvinGroup& Group : Groups)
	{
		Group.bConflict = GroupsOfMesh.FindOrAdd(Group.Mesh).Num() > 1;
	}
	return Groups;
}

TArray<FTarvinGroup> FTarvinGrouping::Build(const TArray<FTarvinItem>& Items)
{
	return Build(Items, FTarvinOperation::RotationScaleBake().ComputeBake);
}
